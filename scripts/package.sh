#!/usr/bin/env bash
# Makes Debian packages of lumo: lumo, with the program, and liblumo-dev, with the library and its headers. Prints where
# they are. Installs missing packages first.
#
#   scripts/package.sh
#
# scripts/package_test.sh tests them.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly build=build/package
readonly log=build/package-build.log

scripts/setup.sh ship
mkdir -p build
echo "Building"
rm -f "$build"/*.deb
if ! {
  cmake --preset release -B "$build" -DCMAKE_INSTALL_PREFIX=/usr -DBUILD_SHARED_LIBS=OFF -DLUMO_INSTALL=ON \
    -DLUMO_BUILD_CLI=ON -DLUMO_BUILD_TESTS=OFF -DLUMO_BUILD_BENCH=OFF \
    && cmake --build "$build" && cpack --config "$build/CPackConfig.cmake" -G DEB -B "$build"
} > "$log" 2>&1; then
  tail -n 60 "$log" >&2
  echo "package.sh: the build failed; all of its output is in $log" >&2
  exit 1
fi
ls "$build"/*.deb
