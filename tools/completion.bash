# Completes zrt4xml in bash. The tables at the end are written from the definition of the command
# line.
#
# Nothing that stands in a document is ever expanded by the shell: names are compared and quoted,
# not handed to compgen.

# The words that begin with what was typed.
_zrt4xml_words() {
  local word
  for word in "$@"; do
    [[ $word == "$cur"* ]] && COMPREPLY+=("$word")
  done
}

_zrt4xml_files() { compopt -o default; }

# DAQ names and properties of the channels in the files on the command line.
_zrt4xml_channels() {
  local name file
  for file in "${COMP_WORDS[@]:2}"; do
    [[ $file != -* && -f $file ]] || continue
    while IFS= read -r name; do
      [[ -n $name && $name == "$cur"* ]] && COMPREPLY+=("$(printf '%q' "$name")")
    done < <("${COMP_WORDS[0]}" convert --to text "$file" 2>/dev/null |
      awk -F '\t' 'NF >= 10 { print $3; print $4 }' | LC_ALL=C sort -u)
  done
}

_zrt4xml() {
  local cur=${COMP_WORDS[COMP_CWORD]} before=$((COMP_CWORD - 1)) command="" option i
  COMPREPLY=()
  # "--event=NORMAL" comes as three words.
  if [[ $cur == "=" ]]; then
    cur=""
  elif [[ ${COMP_WORDS[before]} == "=" ]]; then
    before=$((before - 1))
  fi
  option=${COMP_WORDS[before]}
  for ((i = 1; i < COMP_CWORD; ++i)); do
    [[ ${COMP_WORDS[i]} == -* ]] && continue
    command=${COMP_WORDS[i]}
    break
  done

  if _zrt4xml_value "$command $option"; then
    return
  elif [[ $cur == -* ]]; then
    _zrt4xml_options "$command"
  elif [[ -z $command ]]; then
    _zrt4xml_commands
  else
    _zrt4xml_files
  fi
}

complete -F _zrt4xml zrt4xml
