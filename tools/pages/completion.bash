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

# Fields, behind those that a comma ends; what they are compared with or set to is typed, but for
# names of types.
_zrt4xml_fields() {
  local field before=""
  [[ $cur == *,* ]] && before=${cur%,*},
  for field in "$@"; do
    [[ $before$field == "$cur"* ]] && COMPREPLY+=("$before$field")
  done
  compopt -o nospace
}

_zrt4xml_files() { compopt -o default; }

# A file as it was typed, without its quotes.
_zrt4xml_unquoted() {
  local file=$1
  [[ $file == "~/"* ]] && file=$HOME/${file:2}
  case $file in
    \'*) file=${file//\'/} ;;
    \"*) file=${file//\"/} ;;
    *) file=${file//\\/} ;;
  esac
  printf '%s' "$file"
}

# A name as it has to be typed to stand for itself, behind the opening quote where there is one;
# fails when it cannot.
_zrt4xml_quoted() {
  case $cur in
    \'*) [[ $1 != *\'* ]] && printf '%s' "$1" ;;
    \"*) [[ $1 != *[\"\$\`\\!]* ]] && printf '%s' "$1" ;;
    *) printf '%q' "$1" ;;
  esac
}

# DAQ names and properties of the channels in the files on the command line.
_zrt4xml_channels() {
  local name quoted file typed=${cur#[\'\"]} known=""
  # Bash replaces only what stands behind the last colon.
  [[ $cur != [\'\"]* && $COMP_WORDBREAKS == *:* ]] && known=${cur%"${cur##*:}"}
  for file in "${words[@]:2}"; do
    file=$(_zrt4xml_unquoted "$file")
    [[ $file != -* && -f $file ]] || continue
    while IFS= read -r name; do
      [[ -n $name ]] && quoted=$(_zrt4xml_quoted "$name") || continue
      [[ $name == "$typed"* || $quoted == "$typed"* ]] && COMPREPLY+=("${quoted#"$known"}")
    done < <("${words[0]}" convert --to text "$file" 2>/dev/null |
      awk -F '\t' 'NF >= 10 { print $3; print $4 }' | LC_ALL=C sort -u)
  done
}

# Sets `words` to what was typed and `at` to the place of the word to complete: COMP_WORDS has "a:b"
# as three words.
_zrt4xml_typed() {
  local rest=$COMP_LINE word i
  words=()
  for ((i = 0; i < ${#COMP_WORDS[@]}; ++i)); do
    word=${COMP_WORDS[i]}
    if [[ $i -gt 0 && $rest != [[:blank:]]* && ($word == :* || ${COMP_WORDS[i - 1]} == *:) ]]; then
      words[${#words[@]} - 1]+=$word
    else
      words+=("$word")
    fi
    rest=${rest#"${rest%%[![:blank:]]*}"}
    rest=${rest#"$word"}
    [[ $i -eq $COMP_CWORD ]] && at=$((${#words[@]} - 1))
  done
}

_zrt4xml() {
  local words at cur before command="" option i is_value=""
  COMPREPLY=()
  _zrt4xml_typed
  cur=${words[at]} before=$((at - 1))
  # "--event=NORMAL" comes as three words, as does the condition "units=mm".
  if [[ $cur == "=" ]]; then
    cur="" is_value=yes
  elif [[ ${words[before]} == "=" ]]; then
    before=$((before - 1)) is_value=yes
  fi
  option=${words[before]}
  for ((i = 1; i < at; ++i)); do
    [[ ${words[i]} == -* ]] && continue
    command=${words[i]}
    break
  done

  if _zrt4xml_value "$command $option"; then
    return
  elif [[ -n $is_value ]]; then
    _zrt4xml_names "$option"
  elif [[ $cur == -* ]]; then
    _zrt4xml_options "$command"
  elif [[ -z $command ]]; then
    _zrt4xml_commands
  elif [[ $command == set && $at -gt $((i + 1)) ]]; then
    _zrt4xml_settable
  else
    _zrt4xml_files
  fi
}

complete -F _zrt4xml zrt4xml
