#!/usr/bin/env bash
# scripts/check knows its checks, and tells what passed, failed and could not run; a copied tree is
# configured anew; arguments reach ctest. In a tree of stubs, whose name has a blank and signs of the
# shell.
#   scripts_test.sh SOURCE_DIR
set -euo pipefail
source_dir=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
tree="$scratch/a b & (ü)"
mkdir -p "$tree" "$scratch/bin"
cp -r "$source_dir/scripts" "$tree/"
cd "$tree"

failures=0
# same WHAT EXPECTED FOUND
same() {
  [ "$2" != "$3" ] || return 0
  printf '%s\n--- expected\n%s\n--- found\n%s\n' "$1" "$2" "$3"
  failures=$((failures + 1))
}
# result COMMAND...: its exit code; what it prints is in $scratch/shown
result() {
  local code=0
  "$@" >"$scratch/shown" 2>&1 </dev/null || code=$?
  echo "$code"
}

# Whatever installs, configures, builds or tests says so instead.
for program in apt-get sudo cmake ninja ctest npm; do
  printf '#!/bin/sh\nprintf "%%s\\n" "%s $*" >>"%s/called"\n' "$program" "$scratch" >"$scratch/bin/$program"
done
printf '#!/bin/sh\necho "install ok installed"\n' >"$scratch/bin/dpkg-query"
chmod +x "$scratch"/bin/*
export PATH=$scratch/bin:$PATH
called() { cat "$scratch/called" 2>/dev/null || true; rm -f "$scratch/called"; }

# --- the list of checks
same "scripts/check --help" 0 "$(result scripts/check --help)"
same "what --help calls" "" "$(called)"
same "what --help leaves" scripts "$(ls)"
same "checks in --help" "$(ls scripts/checks)" \
  "$(sed -n 's/^  \([a-z][a-z0-9]*\)  *[^ ].*/\1/p' "$scratch/shown" | LC_ALL=C sort)"
same "-h" 0 "$(result scripts/check -h)"
same "an unknown word" 2 "$(result scripts/check nonsense)"
same "an option" 2 "$(result scripts/check --all)"
same "what wrong usage calls" "" "$(called)"

# --- what passed, failed and could not run
for check in scripts/checks/*; do printf '#!/bin/sh\necho fine\n' >"$check"; done
same "all pass" 0 "$(result scripts/check)"
same "all of a release pass" 0 "$(result scripts/check all)"
same "how many passed" "$(ls scripts/checks | wc -l)" "$(grep -c ' passed, [0-9]* s$' "$scratch/shown")"
printf '#!/bin/sh\necho no network; exit 77\n' >scripts/checks/docs
same "one could not run" 77 "$(result scripts/check)"
same "why it could not" "docs         NOT RUN: no network" "$(grep '^docs ' "$scratch/shown")"
same "it alone" 77 "$(result scripts/check docs)"
printf '#!/bin/sh\necho this is wrong; exit 1\n' >scripts/checks/format
same "one fails" 1 "$(result scripts/check)"
same "its log" 1 "$(grep -c '^this is wrong$' "$scratch/shown")"
same "the failed one" "Failed: format" "$(grep '^Failed' "$scratch/shown")"
same "it alone" 1 "$(result scripts/check format)"
printf '#!/bin/sh\nprintf "<%%s>" "$@"\n' >scripts/checks/abi
same "arguments of a check" 0 "$(result scripts/check abi renew 'a b')"
same "as they arrive" "<renew><a b>abi passed, 0 s" "$(sed 's/, [0-9]* s$/, 0 s/' "$scratch/shown")"

# --- the tree that is built
called >/dev/null
mkdir -p build/release
echo "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" >build/release/CMakeCache.txt
touch build/release/build.ninja
same "scripts/test" 0 "$(result scripts/test -R 'a b')"
same "of this tree: built, with arguments for ctest" \
  "$(printf '%s\n' "cmake --build $PWD/build/release" "ctest --preset release -j $(nproc) -R a b")" "$(called)"
echo "CMAKE_HOME_DIRECTORY:INTERNAL=$scratch" >build/release/CMakeCache.txt
same "scripts/test in a copy" 0 "$(result scripts/test)"
same "configured anew" "cmake --preset release" "$(called | head -n 1)"

# --- what is missing
printf '#!/bin/sh\nexit 1\n' >"$scratch/bin/dpkg-query"
printf '#!/bin/sh\necho no such archive; exit 100\n' >"$scratch/bin/apt-get"
printf '#!/bin/sh\n[ "$1" = -u ] && echo 0\n' >"$scratch/bin/id"
chmod +x "$scratch/bin/id"
same "no network" 77 "$(result scripts/test)"
same "why it cannot" 1 "$(grep -c '^What is missing could not be installed' "$scratch/shown")"
# Who may run apt-get as root, and nothing else, and hand it no environment.
printf '#!/bin/sh\n[ "$1" = -u ] && echo 1000\n' >"$scratch/bin/id"
printf '#!/bin/sh\n[ "$1" = apt-get ] || exit 1\necho "$1 $2" >>"%s/called"\n' "$scratch" >"$scratch/bin/sudo"
called >/dev/null
same "apt-get only" 0 "$(result bash -c 'source scripts/lib.sh; need one')"
same "what is run as root" "$(printf '%s\n' 'apt-get update' 'apt-get install')" "$(called)"

[ "$failures" -eq 0 ] && echo "the scripts do what they say"
