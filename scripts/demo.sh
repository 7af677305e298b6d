#!/usr/bin/env bash
# Builds the program lumo, lets it solve an example, and has the solver z3 confirm that the model that it prints
# makes the example's assertions true. Installs missing packages first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

if [ $# -ne 0 ]; then
  echo "demo.sh: it takes no arguments" >&2
  exit 1
fi
example=examples/solve/checksum.smt2
build=build/demo
log=build/demo-build.log

scripts/setup.sh run
mkdir -p build

echo "Building"
if ! {
  cmake --preset release -B "$build" -DLUMO_BUILD_CLI=ON -DLUMO_BUILD_TESTS=OFF -DLUMO_BUILD_BENCH=OFF \
    && cmake --build "$build"
} > "$log" 2>&1; then
  tail -n 60 "$log" >&2
  echo "demo.sh: the build failed; all of its output is in $log" >&2
  exit 1
fi

echo
echo "\$ cat $example"
cat "$example"
echo
echo "\$ lumo solve $example --model --stats"
output=$("$build/bin/lumo" solve "$example" --model --stats)
echo "$output"

# The example's assertions under definitions of its constants: the lines of the model between its parentheses
question=$(
  grep '^(set-logic ' "$example"
  sed -n 's/^  (define-fun/(define-fun/p' <<< "$output"
  grep '^(assert ' "$example"
  echo "(check-sat)"
)

echo
echo "\$ z3, asked for the example with these definitions"
answer=$(z3 -in <<< "$question") || true
echo "$answer"
if [ "$answer" != sat ]; then
  echo "demo.sh: z3 should have answered sat" >&2
  exit 1
fi
