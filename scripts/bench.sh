#!/usr/bin/env bash
# Builds the benchmarks and compares lumo with its peers: prints a table of ratios, with their targets.
#
#   scripts/bench.sh [--json FILE] [--repetitions N] [--min-time SECONDS]
#
# Takes some minutes, on a machine that should have nothing else to do. Installs missing packages first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly build=build/bench
readonly log=build/bench-build.log

scripts/setup.sh bench
mkdir -p build
if ! {
  cmake --preset release -B "$build" -DLUMO_BUILD_BENCH=ON -DLUMO_BUILD_CLI=OFF -DLUMO_BUILD_TESTS=OFF \
    && cmake --build "$build"
} > "$log" 2>&1; then
  tail -n 60 "$log" >&2
  echo "bench.sh: the build failed; all of its output is in $log" >&2
  exit 1
fi

PYTHONDONTWRITEBYTECODE=1 exec python3 bench/report.py "$build/bench" "$@"
