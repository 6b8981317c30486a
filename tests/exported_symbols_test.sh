#!/bin/sh
# Compares what the libraries export with the reviewed list.
#   exported_symbols_test.sh LIST LIBRARY...
set -eu
list=$1
shift
nm -DC --defined-only "$@" | sed -n 's/^[0-9a-f]* [A-Z] //p' | LC_ALL=C sort -u | diff "$list" - ||
  { echo "The exported symbols differ from $list"; exit 1; }
