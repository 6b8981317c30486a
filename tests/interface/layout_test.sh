#!/usr/bin/env bash
# Whether files lie where they belong, so that a name tells who may use what.
#   layout_test.sh SOURCE_DIRECTORY INSTALLED_HEADER...
set -euo pipefail
shopt -s nullglob
cd "$1"
shift
installed=" ${*##*/} "
longest=600  # lines of a file
failed=0

wrong() {
  echo "$1"
  failed=1
}

# The library's own folder: what is installed, and the source of each. Everything else has a room.
for file in XML_tools/*; do
  [ -d "$file" ] && continue
  case $file in
    XML_tools/CMakeLists.txt) ;;
    *.hh) [[ $installed == *" ${file##*/} "* ]] || wrong "$file: not installed, so it belongs in a room" ;;
    *.cc) [ -f "${file%.cc}.hh" ] || wrong "$file: no header of its stem, so it belongs in a room" ;;
    *) wrong "$file: neither header nor source" ;;
  esac
done

private=" "
for file in XML_tools/*/*.hh; do private+="${file##*/} "; done

tests=$(tr '\n' ' ' <tests/CMakeLists.txt)
# Whether a file may include a private header.
looks_inside() {
  case $1 in
    XML_tools/*.cc | XML_tools/*/* | tools/* | python/*) return 0 ;;
    bench/peers.cc) [ "$2" = name_table.hh ] ;;  # so that only the parsers differ
    tests/*_test.cc)
      local name=${1##*/}
      [[ $tests =~ zrt4_test\([a-z]+\ +${name%_test.cc}\ [^\)]*zrt4xml_internal ]]
      ;;
    *) return 1 ;;
  esac
}

folders=(include event_util XML_tools tools python tests fuzz bench examples)
while IFS=: read -r file line; do
  header=${line#*\"}
  header=${header%\"*}
  case $header in */*) wrong "$file: includes \"$header\" by its path" ;; esac
  [[ $private != *" ${header##*/} "* ]] || looks_inside "$file" "$header" ||
    wrong "$file: includes \"$header\", which is private"
done < <(grep -rE --include='*.cc' --include='*.hh' '^ *# *include *"' "${folders[@]}")

while read -r lines file; do
  [ "$lines" -le $longest ] || wrong "$file: $lines lines, more than $longest"
done < <(find "${folders[@]}" \( -name '*.cc' -o -name '*.hh' \) -exec wc -l {} \; )

while read -r name; do
  wrong "$name: a header's name, borne by several files"
done < <(find include event_util XML_tools tools python tests -name '*.hh' -printf '%f\n' | sort | uniq -d)

exit $failed
