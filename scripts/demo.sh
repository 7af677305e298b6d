#!/usr/bin/env bash
# Builds the program lumo, lets it invert an example, and has the solver z3 confirm that the values it finds make
# the example's assertions true. Installs what is missing first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

example=examples/demo.smt2
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
echo "\$ lumo invert $example"
definitions=$("$build/cli/lumo" invert "$example")
echo "$definitions"

# The example with the definitions in place of the declarations of what they define. The declarations that are
# left come first, since a definition may mention what they declare.
defined_names=$(sed -nE 's/^\(define-fun ([^ ]+) .*/\1/p' <<< "$definitions")
question=$(
  awk -v names="$defined_names" '
    BEGIN { split(names, list, "\n"); for (i in list) defined[list[i]] = 1 }
    /^\(declare-(const|fun) / && $2 in defined { next }
    /^\((declare-const|declare-fun|set-logic) /' "$example"
  echo "$definitions"
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
