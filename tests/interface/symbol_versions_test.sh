#!/usr/bin/env bash
# Every exported symbol has a version; and programs that were linked against a library without
# versions, as those before 1.0 were, run with this one.
#   symbol_versions_test.sh SOURCE_DIR COMPILER LIBRARY...
set -euo pipefail
source_dir=$1 compiler=$2
shift 2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

for library in "$@"; do
  if nm -D --defined-only "$library" | grep -v '@@ZRT4XML_[0-9.]*$\| A ZRT4XML_[0-9.]*$'; then
    echo "$library: exported without a version"
    exit 1
  fi
done

# A library of the same name without versions, only for linking.
cat >"$scratch/old.cc" <<'CC'
#include "parse_ev_list.hh"
__attribute__((visibility("default"))) int zrt4_parse_ev_list_readf(char*, std::vector<zrt4_ev_entry*>*) { return 77; }
__attribute__((visibility("default"))) void zrt4_print_ev_list(std::vector<zrt4_ev_entry*>*) {}
__attribute__((visibility("default"))) void zrt4_clean_ev_list(std::vector<zrt4_ev_entry*>*) {}
CC
cat >"$scratch/client.cc" <<'CC'
#include "parse_ev_list.hh"
int main(int, char** argv) {
  std::vector<zrt4_ev_entry*> list;
  const int errors = zrt4_parse_ev_list_readf(argv[1], &list);
  zrt4_print_ev_list(&list);
  zrt4_clean_ev_list(&list);
  return errors;
}
CC
name=$(readelf -d "$1" | sed -n 's/.*(SONAME).*\[\(.*\)\]/\1/p')
build() { "$compiler" -std=c++17 -I"$source_dir/include" -I"$source_dir/XML_tools" "$@"; }
mkdir "$scratch/old"
build -shared -fPIC "$scratch/old.cc" -Wl,-soname,"$name" -o "$scratch/old/$name"
build "$scratch/client.cc" "$scratch/old/$name" -o "$scratch/client"
if readelf --version-info "$scratch/client" | grep ZRT4XML; then
  echo "the old program asks for a version"
  exit 1
fi
# run LIBRARY...: the exit code
run() {
  local code=0 path
  path=$(for library in "$@"; do dirname "$library"; done | paste -s -d :)
  LD_LIBRARY_PATH=$path "$scratch/client" "$source_dir/examples/event_lists/orbit_feedback.xml" \
    >"$scratch/shown" 2>"$scratch/said" || code=$?
  echo $code
}
[ "$(run "$scratch/old/$name")" = 77 ] || { echo "it was not linked against the old library"; exit 1; }
[ "$(run "$@")" = 0 ] || { echo "it does not run with this one"; cat "$scratch/said"; exit 1; }
head -n 2 "$scratch/shown" | diff - <(printf 'Entry[0]\nEVENT TYPE:\tNORMAL\n')
[ ! -s "$scratch/said" ] || { echo "the dynamic linker tells something"; cat "$scratch/said"; exit 1; }
