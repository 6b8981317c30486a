#!/usr/bin/env bash
# In a folder with a blank, signs of the shell and an umlaut in its name: the tree builds, installs
# after scripts/run alone, and its tests pass. A copy of it, build and all, builds itself.
#   odd_path_test.sh SOURCE_DIR
source "$1/scripts/lib.sh"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
place="$scratch/a b & (ü)"
mkdir "$place"

copy_tree "$place/tree"
cd "$place/tree"

# quietly COMMAND...: shows its output only when it fails
quietly() {
  "$@" >"$scratch/log" 2>&1 </dev/null || { cat "$scratch/log"; echo "fails: $*"; exit 1; }
  echo "- succeeds, after $SECONDS seconds: $*"
}
quietly scripts/run
quietly cmake --install build/release --prefix "$place/prefix"
"$place/prefix/bin/zrt4xml" check examples/channels/channels.xml >/dev/null
test -s "$place/prefix/share/man/man1/zrt4xml.1"
quietly scripts/test

cp -r "$place/tree" "$place/copy"
touch "$scratch/before"
quietly "$place/copy/scripts/run"
grep -q -x "CMAKE_HOME_DIRECTORY:INTERNAL=$place/copy" "$place/copy/build/release/CMakeCache.txt"
[ -z "$(find "$place/tree" -newer "$scratch/before" -type f)" ] ||
  { echo "the copy has built the tree that it was copied from"; exit 1; }
