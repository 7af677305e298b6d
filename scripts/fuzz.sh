#!/usr/bin/env bash
# Builds the fuzz targets and runs them, each from its seeds in fuzz/seeds/.
#
#   scripts/fuzz.sh SECONDS [TARGET...]      each target for that long
#   scripts/fuzz.sh --runs N [TARGET...]     each target for N inputs, the same ones every time; those that need
#                                            Z3 at each step, for a tenth of them
#
# TARGET is one of those that fuzz/CMakeLists.txt names, such as `numbers`; all of them if none is given.
#
# A run for a time continues where the last one stopped: it stores the inputs that reach new code in
# build/fuzz/corpus/TARGET. Inputs that crash a target, or on which it fails or takes too long, go to
# build/fuzz/crashes; `build/fuzz/fuzz/fuzz_TARGET FILE` repeats one. Prints one line for each target, and fails if
# one of them crashes. Installs missing packages first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly all_targets=(calculators model_reader numbers reader scripts solve terms theories trail_reader)
readonly build=build/fuzz

fail()
{
  echo "fuzz.sh: $*" >&2
  exit 1
}

usage()
{
  sed -nE '/^#   /s/^#   //p' "${BASH_SOURCE[0]}" >&2
  exit 1
}

limit=seconds
if [ "${1:-}" = --runs ]; then
  limit=runs
  shift
fi
amount=${1:-}
if ! [[ $amount =~ ^[1-9][0-9]*$ ]]; then usage; fi
shift
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then targets=("${all_targets[@]}"); fi
for target in "${targets[@]}"; do
  if [[ " ${all_targets[*]} " != *" $target "* ]]; then
    fail "unknown target '$target'; the targets are ${all_targets[*]}."
  fi
done

scripts/setup.sh fuzz
mkdir -p "$build/crashes" "$build/logs"
if ! {
  cmake --preset fuzz && cmake --build "$build" --target "${targets[@]/#/fuzz_}"
} > "$build/logs/build.log" 2>&1; then
  tail -n 60 "$build/logs/build.log" >&2
  fail "the build failed; all of its output is in $build/logs/build.log"
fi

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# The longest input of a target: longer ones take longer, and rarely find more.
longest_input()
{
  case "$1" in
    reader | model_reader | theories | trail_reader) echo 2048 ;;
    *) echo 512 ;;
  esac
}

# run_target TARGET: leaves libFuzzer's output in the target's log
run_target()
{
  local target=$1 corpus seeds=("fuzz/seeds/$1")
  local options=(
    "-artifact_prefix=$build/crashes/$target-" "-max_len=$(longest_input "$target")"
    -timeout=30 -rss_limit_mb=4096 -print_final_stats=1 -verbosity=1
  )
  case "$target" in
    *reader | theories) options+=(-dict=fuzz/smtlib.dict) ;;&
    theories) seeds+=(examples/theories) ;;
    reader) seeds+=(examples tests/data) ;;
  esac
  if [ "$limit" = runs ]; then
    corpus=$scratch/$target
    case "$target" in
      reader | scripts | solve) options+=(-seed=1 "-runs=$((amount / 10 + 1))") ;;
      *) options+=(-seed=1 "-runs=$amount") ;;
    esac
  else
    corpus=$build/corpus/$target
    options+=("-max_total_time=$amount")
  fi
  mkdir -p "$corpus"
  "$build/fuzz/fuzz_$target" "${options[@]}" "$corpus" "${seeds[@]}" > "$build/logs/$target.log" 2>&1 \
    < /dev/null
}

# last_match TARGET PATTERN: the last number after the pattern in the target's log, or 0
last_match()
{
  local found
  found=$(grep -aoE "$2 *[0-9]+" "$build/logs/$1.log" | tail -n 1 | grep -oE '[0-9]+$') || found=0
  echo "$found"
}

crashed=0
for target in "${targets[@]}"; do
  status=0
  run_target "$target" || status=$?
  executions=$(last_match "$target" 'stat::number_of_executed_units:')
  if [ "$executions" -eq 0 ]; then executions=$(last_match "$target" '^#'); fi
  printf '%-13s %10d executions %6d edges  %d crashes\n' "$target" "$executions" \
    "$(last_match "$target" ' cov:')" $((status != 0))
  if [ "$status" -ne 0 ]; then
    crashed=1
    tail -n 40 "$build/logs/$target.log" >&2
    echo "fuzz.sh: $target ended with status $status" >&2
  fi
done
exit "$crashed"
