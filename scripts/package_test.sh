#!/usr/bin/env bash
# Tests Debian packages of lumo.
#
#   scripts/package_test.sh FOLDER              in a fresh Debian: installs the packages in FOLDER, uses them, removes
#                                               them, and fails if they leave a file behind
#   scripts/package_test.sh --unpacked FOLDER   only unpacks them here, and uses them from there
#
# Using them means to solve a script, to check the model, and to build and run the program in examples/embed/. The fresh
# Debian is a folder under build/ that debootstrap fills from the mirror that apt uses here: that takes root, a network,
# and some minutes. Installs missing packages first.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

readonly script=examples/solve/checksum.smt2
readonly root=$PWD/build/package-root
readonly log=build/package-test.log
# The tools that building examples/embed/ needs besides the packages
readonly tools=(g++ make pkgconf)

fail()
{
  echo "package_test.sh: $*" >&2
  exit 1
}

# quietly COMMAND...: appends its output to the log, and shows the end of the log if it fails.
quietly()
{
  "$@" >> "$log" 2>&1 || {
    tail -n 40 "$log" >&2
    fail "this failed: $*"
  }
}

# inside COMMAND...: in the fresh Debian
inside()
{
  env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive LC_ALL=C chroot "$root" "$@"
}

make_fresh_debian()
{
  local release mirror
  release=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
  # shellcheck disable=SC2016  # the dollar signs are for apt-get
  mirror=$(apt-get indextargets --format '$(CODENAME) $(REPO_URI)' 'Created-By: Packages' \
    | awk -v release="$release" '$1 == release { print $2; exit }')
  if [ -z "$mirror" ]; then fail "apt knows no mirror of Debian's $release"; fi
  quietly debootstrap --variant=minbase "$release" "$root" "$mirror"
}

# All files, except the records of apt and dpkg about their work
list_files()
{
  inside find / -xdev \( -path /proc -o -path /sys -o -path /dev -o -path /tmp -o -path /var/log -o -path /var/cache \
    -o -path /var/lib/dpkg -o -path /var/lib/apt \) -prune -o -print | sort
}

# use_packages PREFIX RUN...: RUN runs a command where the packages are; PREFIX precedes the names of their files.
use_packages()
{
  local prefix=$1 model expected
  shift
  cp -r "$script" examples/embed "$root/tmp/"
  model=$("$@" "$prefix/usr/bin/lumo" solve "$prefix/tmp/${script##*/}" --model) || fail "lumo solve: status $?"
  echo "$model" > "$root/tmp/model"
  "$@" "$prefix/usr/bin/lumo" check "$prefix/tmp/${script##*/}" --model "$prefix/tmp/model" > /dev/null \
    || fail "lumo does not accept its own model: $model"

  quietly "$@" make -C "$prefix/tmp/embed"
  # The first block of the page; the second one is about the other program.
  expected=$(awk '$0 == "```text" { inside = 1; next } inside && /^```$/ { exit } inside' examples/embed/README.md)
  if [ "$("$@" "$prefix/tmp/embed/embed")" != "$expected" ]; then fail "embed prints something else"; fi
}

try_unpacked()
{
  local package
  for package in "${packages[@]}"; do
    quietly dpkg-deb -x "$package" "$root"
  done
  mkdir "$root/tmp"
  local pc
  pc=$(find "$root" -name lumo.pc)
  use_packages "$root" env PKG_CONFIG_PATH="${pc%/*}"
}

try_installed()
{
  local package needs=""
  make_fresh_debian
  for package in "${packages[@]}"; do
    needs+=", $(dpkg-deb -f "$package" Depends)"
  done
  quietly inside apt-get -q -y update
  quietly inside apt-get -q -y satisfy --no-install-recommends "${needs#, }" "${tools[@]}"
  list_files > build/package-files-before

  cp "${packages[@]}" "$root/tmp/"
  quietly inside dpkg --install "${packages[@]/#*\///tmp/}"
  use_packages "" inside
  quietly inside dpkg --purge lumo liblumo-dev
  list_files | diff build/package-files-before - || fail "removing the packages does not leave what was there before"
}

unpacked=false
if [ "${1:-}" = --unpacked ]; then
  unpacked=true
  shift
fi
if [ $# -ne 1 ]; then
  sed -nE '/^#   /s/^#   //p' "${BASH_SOURCE[0]}" >&2
  exit 1
fi
packages=("$1"/lumo_*.deb "$1"/liblumo-dev_*.deb)
for package in "${packages[@]}"; do
  if [ ! -f "$package" ]; then fail "there is no $package"; fi
done

mkdir -p build
: > "$log"
rm -rf --one-file-system "$root"
mkdir "$root"
trap 'rm -rf --one-file-system "$root" build/package-files-before' EXIT
if $unpacked; then
  try_unpacked
  echo "The packages work from where they were unpacked."
else
  scripts/setup.sh ship
  if [ "$(id -u)" -ne 0 ]; then fail "a fresh Debian needs root; --unpacked does not"; fi
  try_installed
  echo "The packages can be installed, work, and can be removed."
fi
