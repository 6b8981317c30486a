#!/usr/bin/env bash
# Runs what README and docs/ show, against the installed library:
#   console  each "$ command" prints exactly what follows it; when it fails, "$ echo $?" comes next
#   sh       the commands succeed
#   cpp      a program, or the body of one, compiles without warnings and runs; an "output" block
#            right behind it is what it prints
#   cmake    the rest of a client's CMakeLists.txt
#   xml      a document that the tool reads cleanly
#   text     is only shown
#   xml wrong  a document of docs/check.md, of which another test asks what check finds
#   docs_test.sh BUILD_DIR SOURCE_DIR COMPILER
set -euo pipefail
build=$1 source_dir=$2 compiler=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# --- a place that looks like the source tree, with everything installed beside it
export PREFIX=$scratch/prefix LC_ALL=C.UTF-8 TZ=UTC
cmake --install "$build" --prefix "$PREFIX" >"$scratch/install.log"
libdir=$(dirname "$(find "$PREFIX" -name libZRT4XML.so)")
export PATH=$PREFIX/bin:$PATH PKG_CONFIG_PATH=$libdir/pkgconfig LD_LIBRARY_PATH=$libdir
export CMAKE_PREFIX_PATH=$PREFIX CMAKE_GENERATOR=Ninja CXX=$compiler
mkdir -p "$scratch/tree/scripts"
cd "$scratch/tree"
cp -r "$source_dir/examples" .
cp examples/event_lists/orbit_feedback.xml events.xml
cp examples/channels/channels.xml examples/cameras/minimal.xml examples/dictionaries/small.xml .
# The scripts build first, which is what led to this test; then they do this.
printf '#!/bin/sh\nexec zrt4xml "${@:---help}"\n' >scripts/run
for script in test check package docs bench; do
  printf '#!/bin/sh\nexec bash -n "%s"\n' "$source_dir/scripts/$script" >scripts/$script
done
chmod +x scripts/*

failures=0
# wrong WHERE WHAT FILE...
wrong() {
  printf '%s: %s\n' "$1" "$2"
  shift 2
  [ $# -eq 0 ] || cat "$@"
  failures=$((failures + 1))
}

# run_console BLOCK WHERE
run_console() {
  local line command="" status=0
  : >expected
  while IFS= read -r line || [ -n "$line" ]; do
    if [ "${line#\$ }" != "$line" ]; then
      run_command "$2"
      command=${line#\$ }
    else
      printf '%s\n' "$line" >>expected
    fi
  done <"$1"
  run_command "$2"
  [ "$status" -eq 0 ] || wrong "$2" "fails with $status: $command"
}
run_command() {
  [ -n "$command" ] || return 0
  local before=$status
  if [ "$before" -ne 0 ] && [ "$command" != 'echo $?' ]; then
    wrong "$1" "the command before fails with $before: $command"
  fi
  status=0
  (set +o pipefail; (exit "$before"); eval "$command") >found 2>&1 </dev/null || status=$?
  diff expected found >difference || wrong "$1" "prints something else: $command" difference
  : >expected
}

# run_program BLOCK WHERE [EXPECTED]
run_program() {
  if grep -q 'int main' "$1"; then
    cp "$1" client.cc
  else
    { printf '#include <clocale>\n#include <cstdio>\n#include "zrt4xml.hh"\nint main() {\n'; cat "$1"; echo '}'; } >client.cc
  fi
  "$compiler" -std=c++17 -Wall -Wextra -Werror client.cc $(pkg-config --cflags --libs zrt4xml) \
    -o client >log 2>&1 || { wrong "$2" "does not compile" log; return; }
  ./client >found 2>&1 </dev/null || wrong "$2" "fails with $?" found
  [ $# -lt 3 ] || diff "$3" found >difference || wrong "$2" "prints something else" difference
}

# run_commands BLOCK: one that says itself where the library is gets it from nowhere else.
run_commands() (
  ! grep -q 'PREFIX/lib' "$1" || unset PKG_CONFIG_PATH LD_LIBRARY_PATH
  exec bash -eu "$1"
)

run_cmake() {
  rm -rf project
  mkdir project
  cp client.cc project
  { printf 'cmake_minimum_required(VERSION 3.25)\nproject(client LANGUAGES CXX)\n'
    printf 'set(CMAKE_CXX_STANDARD 17)\nadd_executable(client client.cc)\n'; cat "$1"; } >project/CMakeLists.txt
  { cmake -S project -B project/build && cmake --build project/build; } >log 2>&1 ||
    wrong "$2" "does not build" log
}

# --- one file per block, named by its document, line and language
mkdir "$scratch/blocks"
count=0
for document in "$source_dir"/README.md "$source_dir"/docs/*.md; do
  awk -v into="$scratch/blocks" -v name="$(basename "$document")" '
    /^```/ { if (file) { close(file); file = "" }
             else { file = sprintf("%s/%s:%04d:%s", into, name, NR, substr($0, 4)); printf "" >file }
             next }
    file { print >file }' "$document"
done

for block in "$scratch"/blocks/*; do
  where=$(basename "$block")
  language=${where##*:}
  where=${where%:*}
  count=$((count + 1))
  case $language in
    console) run_console "$block" "$where" ;;
    sh) run_commands "$block" >log 2>&1 || wrong "$where" "fails" log ;;
    cpp)
      next=$(find "$scratch/blocks" -name "${where%:*}:*" | sort | grep -A1 -F "$block" | tail -n 1)
      case $next in
        *:output) run_program "$block" "$where" "$next" ;;
        *) run_program "$block" "$where" ;;
      esac
      ;;
    cmake) run_cmake "$block" "$where" ;;
    xml) zrt4xml show "$block" >log 2>&1 || wrong "$where" "is not read cleanly" log ;;
    output | text | json | python) ;;  # Python by its own tests
    'xml wrong'*) ;;  # what check says of it is compared by check_page_test.py
    *) wrong "$where" "a block in an unknown language '$language'" ;;
  esac
done
# What --help shows of find is found.
zrt4xml find --help | sed -n 's/^  \(zrt4xml find .*\)/\1/p' >examples.sh
[ "$(wc -l <examples.sh)" -ge 3 ] || wrong "find --help" "has no examples"
run_commands examples.sh >log 2>&1 || wrong "find --help" "an example finds nothing" log

[ "$count" -gt 10 ] || { echo "found only $count blocks"; exit 1; }
[ "$failures" -eq 0 ] && echo "$count blocks are true"
