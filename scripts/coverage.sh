#!/usr/bin/env bash
# Lists the lines and branches of lumo's own sources that the tests do not reach, and fails if there are too many.
#
#   scripts/coverage.sh
#
# Builds the tests with g++'s counters and assertions, runs all that start no threads, and prints a table: a row for
# each folder, and below it each of its files in which something was not reached, with the numbers of the lines. Ends
# with the closing lines of the test run. It fails if a test does, or if a folder misses its limit:
#
#   lumo/numbers/, lumo/calculators/   all lines, and all branches
#   the others                         95 % of the lines
#
# Three kinds of branches do not count: those that only an exception of a called function takes, those of assertions,
# and those on a line that says GCOVR_EXCL_BR_LINE, with the reason why no test can take them. Installs missing packages
# first. This shows the counts with the sources, in pages that know less about exceptions:
#
#   gcovr --exclude-throw-branches --html-details build/coverage/coverage.html build/coverage
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly full=(lumo/numbers lumo/calculators)
readonly others=(lumo/{terms,model,elimination,smtlib,solvers,commands,cli})
readonly build=build/coverage
readonly test_output=build/coverage-run.log

fail()
{
  echo "coverage.sh: $*" >&2
  exit 1
}

scripts/setup.sh coverage

# Counts of an earlier run would be added up.
if [ -d "$build" ]; then find "$build" -name '*.gcda' -delete; fi
mkdir -p build
# Threads that count at once lose counts, and a branch could look as if nothing reached it.
if ! scripts/test.sh coverage --exclude-regex '^threads_tests$' > "$test_output"; then
  cat "$test_output"
  fail "the tests come first"
fi

python3 scripts/coverage_table.py "$build" --full "${full[@]}" --most "${others[@]}" \
  || fail "the tests do not reach enough"
sed -nE '/^[0-9]+% tests passed/,$p' "$test_output"
