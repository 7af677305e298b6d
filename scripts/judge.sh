#!/usr/bin/env bash
# Solves all .smt2 files of a folder with lumo, and has other solvers judge its answers and models.
#
#   scripts/judge.sh [DIR [SECONDS]]
#
# DIR is tests/data if none is given, SECONDS the limit of each run of a solver, 20 if none is given. The expected
# answer is what the file states with (set-info :status ...), or else the one in DIR/index.tsv. z3 and cvc5 get
# each file together with lumo's model as further assertions, and must find it satisfiable. The environment
# variable LUMO names the program; without it, the script builds it in build/release.
#
# Prints a line for each file and a summary; ends with an error if an answer or a model is wrong.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
folder=${1:-$root/tests/data}
seconds=${2:-20}

lumo=${LUMO:-$root/build/release/bin/lumo}
if [ ! -x "$lumo" ]; then
  echo "judge.sh: there is no program $lumo; build it with: cmake --preset release && cmake --build --preset release" >&2
  exit 2
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

expected_status()
{
  local stated
  stated=$(sed -nE 's/^\(set-info :status (sat|unsat|unknown)\).*/\1/p' "$1" | tail -n 1)
  if [ -z "$stated" ] && [ -f "$folder/index.tsv" ]; then
    stated=$(awk -F '\t' -v name="$(basename "$1")" '$1 == name { print $2 }' "$folder/index.tsv")
  fi
  echo "${stated:-unknown}"
}

# The file's own text up to its query, then each definition of the model as an assertion.
make_question()
{
  sed -E '/^\((check-sat|get-model|get-value .*|exit)\)/,$d' "$1"
  sed -nE 's/^ *\(define-fun (\|[^|]*\||[^ ]+) \(\) (Bool|\(_ BitVec [0-9]+\)) ([^ ]+)\)$/(assert (= \1 \3))/p' "$2"
  echo "(check-sat)"
}

# ask SOLVER FILE: prints its answer without surrounding warnings, or its other output.
ask()
{
  local said
  said=$(timeout "$seconds" "$1" "$2" 2>&1 || true)
  { grep -xE 'sat|unsat|unknown' <<< "$said" || echo "${said:-nothing}"; } | head -n 1 | cut -c 1-60
}

wrong=0
undecided=0
num_files=0
num_models=0
declare -A confirmed=([z3]=0 [cvc5]=0)
printf '%-34s %-8s %-8s %8s  %-8s %-8s\n' file status lumo seconds z3 cvc5
for file in "$folder"/*.smt2; do
  num_files=$((num_files + 1))
  status=$(expected_status "$file")
  start=$(date +%s.%N)
  failure=0
  "$lumo" solve --model --timeout "$seconds" "$file" > "$work/out" 2> "$work/err" || failure=$?
  end=$(date +%s.%N)
  answer=$(head -n 1 "$work/out")
  verdict=
  if [ "$failure" -ne 0 ]; then
    answer="error $failure"
    verdict="WRONG: $(head -n 1 "$work/err")"
  elif [ "$answer" = unknown ]; then
    undecided=$((undecided + 1))
  elif [ "$status" != unknown ] && [ "$answer" != "$status" ]; then
    verdict=WRONG
  fi

  declare -A judged=([z3]=- [cvc5]=-)
  if [ "$answer" = sat ]; then
    num_models=$((num_models + 1))
    make_question "$file" "$work/out" > "$work/question.smt2"
    # If the model is not read completely, only a part of it would be judged.
    if [ "$(grep -c '^ *(define-fun' "$work/out")" -ne "$(grep -cE '^(\(declare-const|\(declare-fun)' "$file")" ]; then
      verdict='WRONG: the model is not of all constants'
    fi
    for solver in z3 cvc5; do
      judged[$solver]=$(ask "$solver" "$work/question.smt2")
      if [ "${judged[$solver]}" = sat ]; then
        confirmed[$solver]=$((confirmed[$solver] + 1))
      else
        verdict=${verdict:-"WRONG MODEL"}
      fi
    done
  fi
  if [ -n "$verdict" ]; then wrong=$((wrong + 1)); fi
  printf '%-34s %-8s %-8s %8.2f  %-8s %-8s %s\n' "$(basename "$file")" "$status" "$answer" \
    "$(awk -v a="$start" -v b="$end" 'BEGIN { print b - a }')" "${judged[z3]}" "${judged[cvc5]}" "$verdict"
done

echo
echo "$num_files files: $wrong wrong, $undecided unknown; $num_models models," \
  "of which z3 accepts ${confirmed[z3]} and cvc5 ${confirmed[cvc5]}"
[ "$wrong" -eq 0 ]
