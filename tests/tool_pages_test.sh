#!/usr/bin/env bash
# --help, the manual page, the completion and the README know the same subcommands and options, and
# the completion completes.
#   tool_pages_test.sh SOURCE_DIR TOOL PAGES_DIR
set -euo pipefail
source_dir=$1 tool=$2 pages=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
mkdir bin
ln -s "$tool" bin/zrt4xml
PATH=$PWD/bin:$PATH

failures=0
# same WHAT EXPECTED FOUND
same() {
  [ "$2" != "$3" ] || return 0
  printf '%s\n--- expected\n%s\n--- found\n%s\n' "$1" "$2" "$3"
  failures=$((failures + 1))
}
in_order() { LC_ALL=C sort -u; }

# --- what --help says
commands_in_help() { zrt4xml --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p'; }
options_in_help() {
  zrt4xml $1 --help | sed -n 's/^  \(-[^ ]*\).*/\1/p' | tr ',' '\n' | sed 's/\[.*//'
}

# --- what the manual page says, as a reader sees it
mandoc -Tascii "$pages/zrt4xml.1" | col -b >page.txt
section() { sed -n "/^   zrt4xml $1\$/,/^ *\(   zrt4xml [a-z]*\|[A-Z][A-Z ]*\)\$/p" page.txt | sed 1d; }
commands_in_manual() { sed -n 's/^   zrt4xml \([a-z]*\)$/\1/p' page.txt; }
options_in() { sed -n 's/^ *\(-[-a-z]*\(, -[-a-z]*\)*\).*/\1/p' | tr -d ' ' | tr ',' '\n' | grep -x -e '-[a-z]' -e '--[a-z-]*'; }

# --- what the completion offers
compopt() { offered=files; }
source "$pages/zrt4xml"
# completed WORD...: completes the last word
completed() {
  local COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=() offered=""
  _zrt4xml
  [ "$offered" = "" ] || echo "<files>"
  [ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\n' "${COMPREPLY[@]}"
}

commands=$(commands_in_help | in_order)
[ -n "$commands" ] || { echo "--help lists no subcommands"; exit 1; }
same "subcommands in the manual page" "$commands" "$(commands_in_manual | in_order)"
same "subcommands in the completion" "$commands" "$(completed zrt4xml '' | in_order)"
same "subcommands in the README" "$commands" \
  "$(sed -n 's/^| `zrt4xml \([a-z]*\).*/\1/p' "$source_dir/README.md" | in_order)"

same "options in the completion" "$(options_in_help '' | in_order)" "$(completed zrt4xml - | in_order)"
for command in $commands; do
  options=$(options_in_help "$command" | in_order)
  same "options of $command in the manual page" "$options" "$(section "$command" | options_in | in_order)"
  same "options of $command in the completion" "$options" "$(completed zrt4xml "$command" - | in_order)"
  sed -n "s/^| \`zrt4xml $command\\b\([^\`]*\)\`.*/\1/p" "$source_dir/README.md" |
    grep -o -e '-[-a-z]*' | grep -v -x -e - >in_readme.txt || true
  while read -r option; do
    same "option of $command in the README, unknown to --help" "$option" \
      "$(grep -x -e "$option" <<<"$options")"
  done <in_readme.txt
  description=$(zrt4xml "$command" --help | head -n 1)
  same "description of $command in the manual page" 1 \
    "$(section "$command" | tr -s ' \n' ' ' | grep -c -F "$description." || true)"
done
same "version in the manual page" 1 "$(grep -c "$(zrt4xml --version)" page.txt)"
same "what mandoc finds" "" \
  "$(mandoc -Tlint -Wwarning "$pages/zrt4xml.1" | grep -v 'missing date' || true)"

# --- values
channels=$source_dir/examples/channels/channels.xml
same "event types" "$(printf '%s\n' BEAM_ENERGY BEAM_ENERGY_BYPASS)" \
  "$(completed zrt4xml find "$channels" --event BEAM)"
same "after =" NORMAL "$(completed zrt4xml find "$channels" --event = NOR)"
same "just after =" 28 "$(completed zrt4xml find --event = | wc -l)"
while read -r event; do
  zrt4xml find --name X --event "$event" "$channels" >/dev/null 2>error.txt || true
  same "completed event type" "" "$(cat error.txt)"
done < <(completed zrt4xml find --event '')
same "kinds" camera "$(completed zrt4xml show --kind cam)"
same "forms" "$(printf '%s\n' xml variables text short)" "$(completed zrt4xml convert x --to '')"
same "files" "<files>" "$(completed zrt4xml show '')"
same "output file" "<files>" "$(completed zrt4xml convert x -o '')"

same "channel names" "$(printf '%s\n' BPM.3.L1.X LINAC.DIAG/BPM/3.L1/X.TRAIN)" \
  "$(completed zrt4xml find "$channels" --name '' | grep '3.L1.*X')"
same "channel names that begin so" "$(printf '%s\n' BPM.3.L1.X BPM.3.L1.Y)" \
  "$(completed zrt4xml find "$channels" --name BPM)"
same "no file, no names" "" "$(completed zrt4xml find --name '')"
same "other documents have no channels" "" \
  "$(completed zrt4xml find "$source_dir/examples/event_lists/orbit_feedback.xml" --name '')"
cat >hostile.xml <<'XML'
<CHANDESCRIPTIONS><CHANNEL><PROP>$(touch expanded)`touch expanded`</PROP><NAME>a b</NAME></CHANNEL>
</CHANDESCRIPTIONS>
XML
same "names are quoted" "$(printf '%s\n' '\$\(touch\ expanded\)\`touch\ expanded\`' 'a\ b')" \
  "$(completed zrt4xml find hostile.xml --name '')"
same "names are not expanded" "" "$(find . -name expanded)"

[ "$failures" -eq 0 ] && echo "they agree"
