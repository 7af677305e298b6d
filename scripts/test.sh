#!/usr/bin/env bash
# Builds lumo with its tests, runs all of them and prints the closing lines of the run.
#
#   scripts/test.sh [PRESET [ARGUMENT...]]
#
# PRESET is one of CMakePresets.json, debug if none is given; ctest gets the arguments. Installs missing packages first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [[ ${1:-} == -* ]]; then
  sed -nE '/^#   /s/^#   //p' "${BASH_SOURCE[0]}" >&2
  exit 1
fi
preset=${1:-debug}
readonly arguments=("${@:2}")
build=build/$preset
build_log=build/$preset-build.log
test_log=build/$preset-test.log

scripts/setup.sh test
mkdir -p build

echo "Building ($preset)"
if ! {
  cmake --preset "$preset" -DLUMO_BUILD_CLI=ON -DLUMO_BUILD_TESTS=ON && cmake --build "$build"
} > "$build_log" 2>&1; then
  tail -n 60 "$build_log" >&2
  echo "test.sh: the build failed; all of its output is in $build_log" >&2
  exit 1
fi

echo "Testing"
status=0
ctest --test-dir "$build" --no-tests=error --no-label-summary --output-on-failure --parallel "$(nproc)" \
  "${arguments[@]}" > "$test_log" 2>&1 || status=$?
if [ "$status" -ne 0 ]; then
  # The output of failed tests, without the lines about passed ones
  sed -E '/^ *Start +[0-9]+:/d; / Test +#[0-9]+: .* Passed /d; /^[0-9]+% tests passed/,$d' "$test_log" \
    | tail -n 200
fi
sed -nE '/^[0-9]+% tests passed/,$p' "$test_log"
exit "$status"
