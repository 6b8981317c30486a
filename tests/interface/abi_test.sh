#!/usr/bin/env bash
# Compares record layouts, signatures and symbols of the libraries (64-bit, with debug information)
# with the baseline that callers were built against. After a deliberate change, which a new SONAME
# goes with unless it only adds: renew the baseline.
#   abi_test.sh BUILD_DIR SOURCE_DIR [renew]
set -euo pipefail
build=$1 source_dir=$2 mode=${3:-compare}
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cmake --install "$build" --component development --prefix "$scratch" >"$scratch/install.log"
headers=$scratch/include/zrt4xml
ours=(--drop-private-types --suppressions "$source_dir/tests/interface/abi/not_ours.ini")

failures=0
for library in "$build/XML_tools/libZRT4XML.so" "$build/event_util/libZRT4evutl.so"; do
  baseline=$source_dir/tests/interface/abi/$(basename "$library" .so).abi
  if [ "$mode" = renew ]; then
    abidw "${ours[@]}" --headers-dir "$headers" --exported-interfaces-only --no-corpus-path \
      --no-comp-dir-path --no-show-locs --no-elf-needed --no-parameter-names --type-id-style hash \
      "$library" | sed "s# path='[^']*/# path='#" >"$baseline"
  else
    abidiff "${ours[@]}" --headers-dir2 "$headers" "$baseline" "$library" ||
      failures=$((failures + 1))
  fi
done
[ "$failures" -eq 0 ]
