#!/usr/bin/env bash
# Installs lumo and uses the installation like other projects: by find_package, by pkg-config, header by header.
#
#   install_test.sh static|shared SOURCE [BUILD]
#
# BUILD is the folder of a finished build of that kind; without it the library alone is built first. The environment
# gives CXX, CXXFLAGS and CMAKE_GENERATOR for all builds, the LUMO_VERSION to expect, and in LUMO_WITH_PROGRAM whether
# BUILD has the program (ON or OFF).
set -euo pipefail

readonly kind=$1 source=$2
build=${3:-}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Compilers that count coverage leave a file in the folder where they are started.
cd "$work"

fail()
{
  echo "install_test.sh: $*" >&2
  exit 1
}

# quietly COMMAND...: shows what it prints only if it fails.
quietly()
{
  "$@" > "$work/log" 2>&1 || {
    cat "$work/log" >&2
    fail "this failed: $*"
  }
}

build_library()
{
  local shared=OFF
  if [ "$kind" = shared ]; then shared=ON; fi
  quietly cmake -S "$source" -B "$build" -DCMAKE_BUILD_TYPE=None -DCMAKE_UNITY_BUILD=ON -DBUILD_SHARED_LIBS="$shared" \
    -DLUMO_BUILD_CLI=OFF -DLUMO_BUILD_TESTS=OFF
  quietly cmake --build "$build" --parallel 2
}

# Use a staging folder, so that nothing can depend on the prefix of the installation
install_lumo()
{
  DESTDIR=$work/stage quietly cmake --install "$build" --prefix /opt/lumo
  readonly root=$work/stage/opt/lumo
  libdir=$(find "$root" -name 'liblumo.*' -printf '%h\n' | sort -u)
  readonly libdir
  if [ ! -d "$libdir" ]; then fail "there should be one folder of libraries, not '$libdir'"; fi
  export PKG_CONFIG_PATH=$libdir/pkgconfig
}

check_files()
{
  local library=liblumo.a
  if [ "$kind" = shared ]; then library=liblumo.so.$LUMO_VERSION; fi
  if [ ! -f "$libdir/$library" ]; then fail "$library is not installed"; fi
  if [ -e "$root/include/lumo/calculators/helpers.h" ]; then fail "a private header is installed"; fi
  if [ -e "$root/include/lumo/calculators/solver_constants.h" ]; then fail "a private header is installed"; fi
  if ! cmp -s "$source/LICENSE" "$root/share/doc/lumo/LICENSE"; then fail "the licence is not installed"; fi
  if [ "$(pkg-config --modversion lumo)" != "$LUMO_VERSION" ]; then fail "lumo.pc has another version"; fi
}

# Each header can be included alone, and has the same meaning whatever macros its user defines.
check_headers()
{
  local headers cflags list
  headers=$(cd "$root/include" && find lumo -name '*.h' -print)
  read -ra cflags <<< "$CXXFLAGS $(pkg-config --cflags lumo)"
  quietly xargs -P 2 -I HEADER "$CXX" -std=c++20 "${cflags[@]}" -Wall -Wextra -Wpedantic -Werror -fsyntax-only \
    -include HEADER -x c++ /dev/null <<< "$headers"
  # A solver may have its own names, including macros, before it includes the headers.
  {
    echo '#define l_True 1'
    echo '#define l_False 2'
    echo '#define l_Undef 3'
    echo '#define lit_Undef 4'
    echo '#define lit_Error 5'
    echo '#define tlit_Undef 6'
    echo '#define NO_IDX 7'
    echo 'template <class T> class Heap {};'
    echo 'namespace dpll { class Heap {}; }'
    mapfile -t list <<< "$headers"
    printf '#include "%s"\n' "${list[@]}"
    echo 'namespace lumo { template <class T> class Heap {}; namespace dpll { class Literal {}; } }'
  } > "$work/own_names.cpp"
  quietly "$CXX" -std=c++20 "${cflags[@]}" -Wall -Wextra -Wpedantic -Werror -fsyntax-only "$work/own_names.cpp"
  if (cd "$root/include/lumo" && grep -rnE '^ *# *(if|ifdef|elif)\b|\bassert\(' .); then
    fail "an installed header depends on macros"
  fi
}

# check_embed PROGRAM N: checks that it is linked with a library of the right kind, and prints block N of its page.
check_embed()
{
  local needs=static
  if objdump -p "$1" | grep -q 'NEEDED *liblumo\.so\.'; then needs=shared; fi
  if [ "$needs" != "$kind" ]; then fail "$1 is linked with a $needs library"; fi
  awk -v block="$2" '$0 == "```text" { ++n; next } /^```/ && n == block { exit } n == block' \
    "$source/examples/embed/README.md" > "$work/expected"
  if [ ! -s "$work/expected" ]; then fail "the page of embed does not say what it prints"; fi
  "$1" > "$work/printed" || fail "$1 ends with status $?"
  diff "$work/expected" "$work/printed" || fail "$1 prints something else than its page says"
}

check_find_package()
{
  quietly cmake -S "$source/examples/embed" -B "$work/by-cmake" -DCMAKE_PREFIX_PATH="$root"
  quietly cmake --build "$work/by-cmake"
  check_embed "$work/by-cmake/embed" 1
  check_embed "$work/by-cmake/conversation" 2

  # Another minor version may have another interface.
  cat > "$work/version.cmake" <<'END'
find_package(lumo ${WANTED} QUIET CONFIG)
message(STATUS "found: ${lumo_FOUND}, seen: ${lumo_CONSIDERED_VERSIONS}")
END
  quietly cmake -DWANTED=0.0 -DCMAKE_PREFIX_PATH="$root" -P "$work/version.cmake"
  grep -qx -- "-- found: 0, seen: $LUMO_VERSION" "$work/log" \
    || fail "looking for another minor version: $(cat "$work/log")"

  cat > "$work/missing.cmake" <<'END'
find_package(lumo QUIET CONFIG)
message(STATUS "found: ${lumo_FOUND}, module path: ${CMAKE_MODULE_PATH}, since ${lumo_NOT_FOUND_MESSAGE}")
END
  quietly cmake -DCMAKE_DISABLE_FIND_PACKAGE_GMP=ON -DCMAKE_PREFIX_PATH="$root" -P "$work/missing.cmake"
  grep -qx -- "-- found: 0, module path: , since lumo needs GMP, .*" "$work/log" \
    || fail "looking for lumo without GMP: $(cat "$work/log")"
}

check_pkg_config()
{
  cp -r "$source/examples/embed" "$work/by-make"
  quietly make -C "$work/by-make"
  LD_LIBRARY_PATH=$libdir check_embed "$work/by-make/embed" 1
  LD_LIBRARY_PATH=$libdir check_embed "$work/by-make/conversation" 2
}

# A shared library exports exactly what its headers declare: names in the namespace lumo (functions, objects,
# typeinfo and virtual tables) that all occur in an installed header.
check_exports()
{
  local library=$libdir/liblumo.so.$LUMO_VERSION soname=liblumo.so.${LUMO_VERSION%%.*} name
  # Before 1.0, the minor version is part of the name.
  if [[ $LUMO_VERSION == 0.* ]]; then soname=liblumo.so.${LUMO_VERSION%.*}; fi
  objdump -p "$library" | grep -qE "SONAME +$soname\$" || fail "the library should be called $soname"
  for name in "$soname" liblumo.so; do
    if [ "$(readlink -f "$libdir/$name")" != "$library" ]; then fail "$name leads to something else"; fi
  done

  # Without parameters and template arguments
  nm -D --defined-only "$library" | awk '$2 != "A" { sub(/@.*/, "", $3); print $3 }' | c++filt -p \
    | sed -E 's/^(typeinfo name|typeinfo|vtable|TLS init function) for //; s/\[abi:[a-z0-9]*\]|<.*>|::operator.*//g' \
    | sort -u > "$work/exported"
  for name in gcd_cache Exception find_calculator QNumber::add_slow; do
    grep -qx "lumo::$name" "$work/exported" || fail "the library does not export lumo::$name"
  done
  if grep -v '^lumo::' "$work/exported"; then fail "the library exports these names"; fi
  find "$root/include" -name '*.h' -exec grep -ohE '\w+' {} + | sort -u > "$work/words"
  sed 's/.*:://; s/^~//' "$work/exported" | sort -u | comm -23 - "$work/words" > "$work/unknown"
  if [ -s "$work/unknown" ]; then
    cat "$work/unknown" >&2
    fail "the library exports these names, which no installed header has"
  fi
}

# A linker for another language, such as C or Rust, gets all options that it needs from pkg-config.
check_c_linker()
{
  local cc libs
  case $CXX in
    *clang++*) cc=${CXX/clang++/clang} ;;
    *g++*) cc=${CXX/g++/gcc} ;;
    *) cc=${CXX/c++/cc} ;;
  esac
  cat > "$work/main.c" <<'END'
extern long make_manager_and_count(void);
int main(void) { return make_manager_and_count() == 2 ? 0 : 1; }
END
  cat > "$work/part.cpp" <<'END'
#include "lumo/terms/term_manager.h"
extern "C" long make_manager_and_count() { return static_cast<long>(lumo::TermManager().get_num_terms()); }
END
  local -a cflags
  read -ra cflags <<< "$CXXFLAGS $(pkg-config --cflags lumo)"
  quietly "$CXX" -std=c++20 "${cflags[@]}" -c "$work/part.cpp" -o "$work/part.o"
  quietly "$cc" -c "$work/main.c" -o "$work/main.o"
  read -ra libs <<< "$(pkg-config --static --libs lumo)"
  quietly "$cc" "$work/main.o" "$work/part.o" "${libs[@]}" -o "$work/c-linked"
  LD_LIBRARY_PATH=$libdir "$work/c-linked" || fail "a program that C's linker made ends with status $?"
}

check_program()
{
  local printed
  printed=$("$root/bin/lumo" --version) || fail "the installed program does not start"
  if [ "$printed" != "lumo $LUMO_VERSION" ]; then fail "the installed program says that it is '$printed'"; fi
}

if [ -z "$build" ]; then
  build=$work/build
  LUMO_WITH_PROGRAM=OFF
  build_library
fi
install_lumo
check_files
# They are the same for both kinds of library, so one check is enough.
if [ $# -eq 3 ]; then check_headers; fi
check_find_package
check_pkg_config
# Sanitizers and counters need their own libraries, which pkg-config does not know.
if [[ "$CXXFLAGS" != *-fsanitize* && "$CXXFLAGS" != *--coverage* ]]; then check_c_linker; fi
if [ "$kind" = shared ]; then check_exports; fi
if [ "$LUMO_WITH_PROGRAM" = ON ]; then check_program; fi
