#!/usr/bin/env bash
# What would dangle or be lost with zrt4xml.hh does not compile, and says why; what is right beside
# it does.
#   zrt4xml_header_misuse_test.sh SOURCE_DIR COMPILER
set -euo pipefail
source_dir=$1 compiler=$2
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failures=0

# The header is compiled once, which is most of the work.
flags=(-std=c++17 -Wall -Wextra -Werror -I"$source_dir/XML_tools" -I"$source_dir/event_util"
  -I"$source_dir/include")
printf '#include "zrt4xml.hh"\nzrt4::channel_list made();\n' >"$scratch/all.hh"
case $(basename "$compiler") in
  clang*) precompiled=$scratch/all.hh.pch ;;
  *) precompiled=$scratch/all.hh.gch ;;
esac
"$compiler" "${flags[@]}" -x c++-header "$scratch/all.hh" -o "$precompiled"

# compiles STATEMENTS: as the body of a function; what the compiler says is in $scratch/said
compiles() {
  printf 'void use() {\n%s\n}\n' "$1" >"$scratch/use.cc"
  LC_ALL=C "$compiler" "${flags[@]}" -fsyntax-only -include "$scratch/all.hh" "$scratch/use.cc" \
    >"$scratch/said" 2>&1
}
# refused BECAUSE STATEMENTS
refused() {
  if compiles "$2"; then
    printf 'compiles: %s\n' "$2"
  elif ! grep -q -i -e "$1" "$scratch/said"; then
    printf 'is refused for another reason than "%s": %s\n' "$1" "$2"
    cat "$scratch/said"
  else
    return 0
  fi
  failures=$((failures + 1))
}
accepted() {
  compiles "$1" && return 0
  printf 'does not compile: %s\n' "$1"
  cat "$scratch/said"
  failures=$((failures + 1))
}

accepted 'zrt4::channel_list list = made(); for (chan_descr_2010& channel : list) channel.count = 0;'
accepted 'for (const chan_descr_2010& channel : made()) (void)channel;  // lives as long as the loop'
refused delete 'auto first = made().begin(); (void)first;'
refused delete 'auto last = made().end(); (void)last;'
refused delete 'const chan_descr_2010& channel = made()[0]; (void)channel;'
refused delete 'const char* units = made()[0].units; (void)units;'
refused delete 'auto* channel = made().find("A"); (void)channel;'
refused delete 'auto* channel = made().find_by_daq_name("A"); (void)channel;'
refused delete 'auto* event = zrt4::event_list().find(ZRT4_EV_ENV); (void)event;'
refused delete 'auto* entry = zrt4::env_dictionary().find(1); (void)entry;'
refused delete 'auto* entry = zrt4::env_dictionary_2010().find("A"); (void)entry;'
refused delete 'auto* feature = zrt4::camera_features().find("A"); (void)feature;'
refused delete 'auto* records = made().get(); (void)records;'
refused delete 'zrt4::channel_list list; auto first = std::move(list).begin(); (void)first;'

accepted 'int reason = made().write_file("a.xml", zrt4::dialect::variables); (void)reason;'
refused 'nodiscard\|unused' 'made().write_file("a.xml");'
refused 'nodiscard\|unused' 'made().write_text();'

accepted 'zrt4::channel_list list = made(); zrt4::channel_list other(std::move(list));'
refused delete 'zrt4::channel_list list; zrt4::channel_list copy = list;'
refused delete 'zrt4::channel_list list, other; other = list;'
refused delete 'zrt4::xml_session session; zrt4::xml_session copy = session;'
refused delete 'zrt4::xml_session session; zrt4::xml_session moved = std::move(session);'

accepted 'std::vector<chan_descr_2010*> records; zrt4::channel_list list(std::move(records));'
refused 'no matching\|cannot bind' 'std::vector<chan_descr_2010*> records; zrt4::channel_list list(records);'
refused 'no matching\|discards\|const' 'const zrt4::channel_list list; clean_chan_desr_list(list.get());'

accepted 'zrt4::event_list list; if (list.read_file("x") != 0) return;'
refused nodiscard 'zrt4::event_list list; list.read_file("x");'
refused nodiscard 'zrt4::event_list list; list.read_text("<BMR/>");'
refused nodiscard 'zrt4::env_dictionary list; list.read_text("<ENVINDEXDICT/>");'
refused nodiscard 'zrt4::camera_features list; list.read_file("x");'
refused nodiscard 'zrt4::channel_list list; list.release();'
refused nodiscard 'zrt4::xml_session();  // ends at once'

[ "$failures" -eq 0 ] && echo "misuse does not compile"
