#!/usr/bin/env bash
# Installs the Debian packages that building lumo needs and that are missing.
#
#   scripts/setup.sh [run|test|check|bench|fuzz|coverage|docs|ship]...
#
# run (the default) has the packages for the library and the program, test adds those for the tests, check the tools of
# a full check, bench the benchmarks, fuzz the fuzz targets, coverage the tools that measure which code the tests reach,
# docs those that make the reference, ship those that make and test Debian packages. Prints and does nothing if all
# packages are installed. Needs root or sudo.
set -euo pipefail

fail()
{
  echo "setup.sh: $*" >&2
  exit 1
}

wanted=()

add_group()
{
  case "$1" in
    run) wanted+=(g++ cmake ninja-build libgmp-dev libz3-dev libcli11-dev z3) ;;
    test) add_group run && wanted+=(libgtest-dev cvc5 python3 make pkgconf groff-base yosys) ;;
    check) add_group test && wanted+=(clang clang-format clang-tidy git shellcheck) ;;
    bench) add_group run && wanted+=(cvc5 python3 libbenchmark-dev libflint-dev libabsl-dev gnuplot-nox) ;;
    fuzz) add_group run && wanted+=(clang libclang-rt-dev) ;;
    coverage) add_group test && wanted+=(gcovr) ;;
    docs) wanted+=(doxygen python3) ;;
    ship) add_group run && wanted+=(debootstrap dpkg-dev file make pkgconf) ;;
    *) fail "unknown group '$1'; the groups are run, test, check, bench, fuzz, coverage, docs and ship." ;;
  esac
}

if [ $# -eq 0 ]; then set -- run; fi
for group in "$@"; do
  add_group "$group"
done

installed=$'\n'
if command -v dpkg-query > /dev/null; then
  # It also fails if it does not know one of the names; that name is then not in its output.
  # shellcheck disable=SC2016  # the dollar signs are for dpkg-query
  installed+=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "${wanted[@]}" 2> /dev/null || true)
  installed+=$'\n'
fi

missing=()
for package in "${wanted[@]}"; do
  if [[ $installed != *$'\n'"$package installed"$'\n'* && " ${missing[*]} " != *" $package "* ]]; then
    missing+=("$package")
  fi
done
if [ ${#missing[@]} -eq 0 ]; then exit 0; fi

if ! command -v apt-get > /dev/null; then
  fail "there is no apt-get here, so please install these packages yourself: ${missing[*]}"
fi
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  if ! command -v sudo > /dev/null; then
    fail "neither root nor sudo is at hand, so please let root install these packages: ${missing[*]}"
  fi
  as_root=(sudo)
fi

log=$(mktemp)
trap 'rm -f "$log"' EXIT

run_apt()
{
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 "$@" \
    < /dev/null >> "$log" 2>&1
}

echo "Installing ${missing[*]}"
# A package source that does not answer matters only if the installation then fails, so continue.
run_apt update || true
if ! run_apt install --no-install-recommends "${missing[@]}"; then
  tail -n 20 "$log" >&2
  fail "apt-get could not install these packages: ${missing[*]}"
fi
