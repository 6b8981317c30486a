#!/usr/bin/env bash
# In a fresh Debian root, a clean clone of the last commit: scripts/run and scripts/test succeed with
# nothing prepared by hand, and leave the clone clean. Needs to be root.
#   fresh_clone_test.sh SOURCE_DIR
source_dir=$1
source "$source_dir/scripts/lib.sh"
source "$source_dir/scripts/debian_root.sh"

make_scratch_root
git clone --quiet --no-local "$source_dir" "$fresh/zrt4xml"

# succeeds SCRIPT: its standard output is in $scratch/shown
succeeds() {
  local begin=$SECONDS
  in_debian_root "$fresh" "/zrt4xml/scripts/$1" >"$scratch/shown" 2>"$scratch/log" ||
    { cat "$scratch/log"; tail -n 200 "$scratch/shown"; exit 1; }
  echo "- scripts/$1 succeeds, after $((SECONDS - begin)) seconds"
}
succeeds run
for kind in event_lists channels dictionaries cameras; do
  grep -q "^\$ zrt4xml show examples/$kind/" "$scratch/shown" || { echo "shows no $kind"; exit 1; }
done
succeeds test
grep -q '^100% tests passed, 0 tests failed' "$scratch/shown" || { cat "$scratch/shown"; exit 1; }
[ -z "$(git -C "$fresh/zrt4xml" status --porcelain)" ] || { echo "the clone is not clean"; exit 1; }
