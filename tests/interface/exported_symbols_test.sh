#!/usr/bin/env bash
# Compares what the libraries export, without versions, with the reviewed list. In the list, XMLSize_t stands for the
# type that it is on the processor of the first library.
#   exported_symbols_test.sh LIST LIBRARY...
set -euo pipefail
list=$1
shift
case $(od -An -tu1 -j4 -N1 "$1" | tr -d ' ') in  # the word size, in the head of every library
  1) size="unsigned int" ;;
  2) size="unsigned long" ;;
esac
nm -DC --defined-only --without-symbol-versions "$@" | sed -n 's/^[0-9a-f]* [B-Z] //p' | LC_ALL=C sort -u |
  diff <(sed "s/XMLSize_t/$size/" "$list") - ||
  { echo "The exported symbols differ from $list"; exit 1; }
