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
options_in() { sed -n 's/^ *\(-[-a-zA-Z]*\(, -[-a-z]*\)*\).*/\1/p' | tr -d ' ' | tr ',' '\n' | grep -x -e '-[a-zA-Z]' -e '--[a-z-]*'; }

# --- what the completion offers
compopt() { [ "$2" = nospace ] || offered=files; }
source "$pages/zrt4xml"
# completed WORD...: completes the last word
completed() {
  local COMP_LINE="$*" COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)) COMPREPLY=() offered=""
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
same "date in the manual page" "$(sed -n 's/^set(ZRT4_VERSION_DATE \([0-9-]*\)).*/\1/p' "$source_dir/CMakeLists.txt")" \
  "$(tail -n 1 page.txt | grep -o '[0-9]\{4\}-[0-9][0-9]-[0-9][0-9]')"
same "version in the manual page" 1 "$(grep -c "$(zrt4xml --version)" page.txt)"
same "what mandoc finds" "" "$(mandoc -Tlint -Wwarning "$pages/zrt4xml.1" || true)"
same "sections of the manual page" \
  "$(printf '%s\n' NAME SYNOPSIS DESCRIPTION OPTIONS COMMANDS EXAMPLES 'EXIT STATUS' ENVIRONMENT NOTES)" \
  "$(sed -n 's/^\([A-Z][A-Z ]*\)$/\1/p' page.txt)"

# --- values
channels=$source_dir/examples/channels/channels.xml
same "event types" "$(printf '%s\n' BEAM_ENERGY BEAM_ENERGY_BYPASS)" \
  "$(completed zrt4xml find "$channels" --event BEAM)"
same "after =" NORMAL "$(completed zrt4xml find "$channels" --event = NOR)"
same "just after =" 28 "$(completed zrt4xml find --event = | wc -l)"
while read -r event; do
  code=0
  zrt4xml find --name X --event "$event" "$channels" >/dev/null 2>&1 || code=$?
  same "completed event type $event: not found rather than wrong usage" 1 "$code"
done < <(completed zrt4xml find --event '')
same "kinds" camera "$(completed zrt4xml show --kind cam)"
same "forms" "$(printf '%s\n' xml variables text short csv)" "$(completed zrt4xml convert x --to '')"
same "files" "<files>" "$(completed zrt4xml show '')"
same "output file" "<files>" "$(completed zrt4xml convert x -o '')"

same "fields of conditions" "$(printf '%s\n' units)" "$(completed zrt4xml list x --where unit)"
same "fields inside a record" "$(printf '%s\n' bits.description bits.name bits.number)" \
  "$(completed zrt4xml list x --where bits.)"
same "fields behind a comma" name,stream "$(completed zrt4xml list x --columns name,str)"
same "fields to set" set_point "$(completed zrt4xml set x set_)"
same "fields that cannot be set" "" "$(completed zrt4xml set x bits)"
same "names of types in a condition" NORMAL "$(completed zrt4xml list x --where event_type = NOR)"
same "all names of types" "$(printf '%s\n' BPM_2010 BPM_S_2010 BPM_Z_2010)" \
  "$(completed zrt4xml set x --where units = mm data_type = | grep '^BPM_.*2010')"
same "texts to compare with" "" "$(completed zrt4xml set x --where units = m)"
same "what has a line each" "$(printf '%s\n' server_blocks statistics)" \
  "$(completed zrt4xml convert x --rows s)"
same "the file before them" "<files>" "$(completed zrt4xml set '')"

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

# completed_line TEXT: completes at the end of the line, as bash cuts it at blanks and colons
completed_line() {
  local COMP_LINE=$1 COMP_WORDS=() COMP_CWORD COMPREPLY=() offered="" rest=$1 word
  while [[ $rest =~ ^[[:blank:]]*(\"[^\"]*\"?|\'[^\']*\'?|:+|([^[:blank:]:\\]|\\.)+) ]]; do
    COMP_WORDS+=("${BASH_REMATCH[1]}")
    rest=${rest#"${BASH_REMATCH[0]}"}
  done
  [[ -z $rest ]] || COMP_WORDS+=("")
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  _zrt4xml
  [ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\n' "${COMPREPLY[@]}"
}
mkdir 'home folder'
cat >'home folder/colons.xml' <<'XML'
<CHANDESCRIPTIONS><CHANNEL><PROP>LINAC:RF:AMPL</PROP><NAME>RF::A</NAME></CHANNEL>
<CHANNEL><PROP>LINAC:RF:PHASE</PROP><NAME>a b:c</NAME></CHANNEL>
<CHANNEL><PROP>RF/$HOME</PROP></CHANNEL></CHANDESCRIPTIONS>
XML
cp 'home folder/colons.xml' .
# What bash puts behind the last colon that was typed.
same "a name up to a colon" "$(printf '%s\n' LINAC:RF:AMPL LINAC:RF:PHASE)" \
  "$(completed_line 'zrt4xml find colons.xml --name LIN')"
same "a name behind a colon" "$(printf '%s\n' RF:AMPL RF:PHASE)" \
  "$(completed_line 'zrt4xml find colons.xml --name LINAC:R')"
same "a name behind two colons" PHASE "$(completed_line 'zrt4xml find colons.xml --name LINAC:RF:P')"
same "a name just behind a colon" "$(printf '%s\n' AMPL PHASE)" \
  "$(completed_line 'zrt4xml find colons.xml --name LINAC:RF:')"
same "a name behind a pair of colons" A "$(completed_line 'zrt4xml find colons.xml --name RF::')"
same "a name with a blank and a colon" c "$(completed_line 'zrt4xml find colons.xml --name a\ b:')"
same "a name in double quotes" "$(printf '%s\n' LINAC:RF:AMPL LINAC:RF:PHASE)" \
  "$(completed_line 'zrt4xml find colons.xml --name "LINAC:R')"
same "a name in double quotes, with a blank" 'a b:c' "$(completed_line 'zrt4xml find colons.xml --name "a b')"
same "a name that double quotes would expand" 'RF::A' "$(completed_line 'zrt4xml find colons.xml --name "RF')"
same "a name that single quotes do not expand" "$(printf '%s\n' 'RF/$HOME' RF::A)" \
  "$(completed_line "zrt4xml find colons.xml --name 'RF")"
same "a name where colons cut no words" LINAC:RF:PHASE \
  "$(COMP_WORDBREAKS=" " completed zrt4xml find colons.xml --name LINAC:RF:P)"
for file in 'home\ folder/colons.xml' '"home folder/colons.xml"' "'home folder/colons.xml'" '~/colons.xml'; do
  same "a file named as $file" PHASE \
    "$(HOME=$PWD/home\ folder completed_line "zrt4xml find $file --name LINAC:RF:P")"
done

# --- an interactive bash does with it what the words above say
cat >bashrc <<TEXT
PS1='> '
bind 'set bell-style none'
bind 'set enable-bracketed-paste off'
PATH=$PWD/bin:\$PATH
source "$pages/zrt4xml"
zrt4xml_arguments() { printf 'got:%s\n' "\$*"; }
zrt4xml() { [ "\$1" = convert ] && "$tool" "\$@" || zrt4xml_arguments "\$@"; }
TEXT
typed() { # LINE: what the command gets after a TAB at its end
  { sleep 1; printf '%s\t' "$1"; sleep 0.5; printf '\nexit\n'; sleep 0.5; } |
    TERM=dumb script -qec "bash --noprofile --rcfile bashrc -i" /dev/null | tr -d '\r' |
    sed -n 's/^got://p'
}
same "typed: a name behind a colon" "find colons.xml --name LINAC:RF:PHASE" \
  "$(typed 'zrt4xml find colons.xml --name LINAC:RF:P')"
same "typed: a name in quotes" "find colons.xml --name LINAC:RF:PHASE" \
  "$(typed 'zrt4xml find colons.xml --name "LINAC:RF:P')"
same "typed: an event type" "find --event NORMAL" "$(typed 'zrt4xml find --event=NOR' | tr = ' ')"
same "typed: a subcommand" "stat" "$(typed 'zrt4xml sta')"

[ "$failures" -eq 0 ] && echo "they agree"
