#!/usr/bin/env bash
# The grammars take every example, every document in docs/ and whatever the writers write, and
# refuse each wrong document at the right line, as RELAX NG in both syntaxes and as XML Schema; so
# does the tool. With "jing", that validator is asked besides.
#   grammars_test.sh SOURCE_DIR TOOL GRAMMARS_DIR WRITTEN_DOCUMENTS [NUMBER [SEED [jing]]]
set -euo pipefail
source_dir=$1 tool=$2 grammars=$3 write_documents=$4 number=${5:-400} seed=${6:-1}
forms="rng rnc.rng xsd"
[ "${7:-}" != jing ] || forms+=" jing.rng jing.rnc jing.xsd"
kinds="events channels variables dictionary"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir "$scratch/right" "$scratch/wrong" "$scratch/grammars"
cp "$grammars"/* "$scratch/grammars/"
cd "$scratch"

failures=0
wrong() {
  echo "$@"
  failures=$((failures + 1))
}

# What a compact grammar means, in the syntax that xmllint reads; rnc2rng knows no types of values.
for kind in $kinds; do
  sed 's/xsd:int "/"/' "grammars/$kind.rnc" >"$kind.rnc"
  /usr/bin/python3 -m rnc2rng "$kind.rnc" "grammars/$kind.rnc.rng" >/dev/null ||
    wrong "$kind.rnc cannot be read"
done

# validated KIND FOLDER: what the grammars say of KIND_*.xml in FOLDER, as FORM:FILE:LINE or
# FORM:FILE:refused.
validated() {
  local form
  for form in $forms; do
    find "$2" -name "$1_*.xml" -print0 | { xargs -0 -r $(validator "$1" $form) 2>&1 || true; } |
      sed -n -e "s#^\($PWD/\|\)\([^:]*\.xml\):\([0-9]*\):.*#$form:\2:\3#p" \
        -e "s#^\([^:]*\.xml\) \(fails to validate\|validation generated an internal error\)#$form:\1:refused#p"
  done | sort -u
}
# validator KIND FORM
validator() {
  case $2 in
    jing.rnc) echo "jing -c grammars/$1.rnc" ;;
    jing.*) echo "jing grammars/$1.${2#jing.}" ;;
    xsd) echo "xmllint --noout --schema grammars/$1.xsd" ;;
    *) echo "xmllint --noout --relaxng grammars/$1.$2" ;;
  esac
}

# strict KIND FOLDER: the same of the tool.
strict() {
  find "$2" -name "$1_*.xml" -print0 |
    xargs -0 -r "$tool" check --strict --json >answer.json 2>/dev/null || true
  /usr/bin/python3 - <<'PYTHON'
import json
for document in json.load(open("answer.json"))["documents"]:
    for found in document["findings"]:
        print(f'{document["file"]}:{found["line"]}')
PYTHON
}

# --- what is right
kind_of() {
  case $(grep -o -m 1 '<\(BMR\|CHANDESCRIPTIONS\|DAQvariables\|ENVINDEXDICT\)\b' "$1" | head -n 1) in
    '<BMR') echo events ;;
    '<CHANDESCRIPTIONS') echo channels ;;
    '<DAQvariables') echo variables ;;
    '<ENVINDEXDICT') echo dictionary ;;
  esac
}
examples=0
while read -r file; do
  kind=$(kind_of "$file")
  [ -n "$kind" ] || continue
  examples=$((examples + 1))
  cp "$file" "right/${kind}_example_$examples.xml"
done < <(find "$source_dir/examples" -name '*.xml')
awk '/^```/ { if (file) { close(file); file = "" } else if ($0 == "```xml") file = sprintf("block_%d.xml", ++n); next }
  file { print >file }' "$source_dir"/docs/*.md
for file in block_*.xml; do
  kind=$(kind_of "$file")
  [ -z "$kind" ] || cp "$file" "right/${kind}_$file"
done
[ "$examples" -ge 9 ] || wrong "found only $examples examples"
"$write_documents" right "$number" "$seed" >/dev/null
for kind in $kinds; do
  validated "$kind" right >refused
  [ ! -s refused ] || wrong "$kind.*: refuses what is right: $(head -n 5 refused)"
done

# --- what is wrong
count=0
while read -r kind lines document; do
  count=$((count + 1))
  file=wrong/${kind}_$count.xml
  printf '%b\n' "$document" >"$file"
  echo "$file ${lines%/*} ${lines#*/}" >>"wanted_$kind"
done < <(grep -v '^#' "$source_dir/tests/tool/wrong_documents.txt")
[ "$count" -ge 100 ] || wrong "only $count wrong documents"
for kind in $kinds; do
  validated "$kind" wrong >refused
  strict "$kind" wrong | sed 's/^/strict:/' >>refused
  while read -r file line line_around; do
    for form in $forms strict; do
      case $form in
        jing.*)  # tells of what is missing where its element ends
          grep -q -F "$form:$file:" refused || wrong "$form takes $(cat "$file")"
          continue
          ;;
        rng | rnc.rng) wanted=$line_around ;;
        *) wanted=$line ;;
      esac
      [ $form = strict ] || grep -q -x -F "$form:$file:refused" refused ||
        wrong "$kind.$form takes $(cat "$file")"
      grep -q -x -F "$form:$file:$wanted" refused ||
        wrong "$form: $file:$wanted is not told, but $(grep -F "$form:$file:" refused | tr '\n' ' ') of $(cat "$file")"
    done
  done <"wanted_$kind"
done

# --- what editors find them by
name_of() { if [ "$1" = xsd ]; then echo schema; else echo relaxng; fi; }
for kind in $kinds; do
  file=$(find right -name "${kind}_example_*.xml" | head -n 1)
  for form in rng xsd; do
    XML_CATALOG_FILES=$PWD/grammars/catalog.xml \
      xmllint --nonet --noout "--$(name_of $form)" "urn:zrt4xml:$kind.$form" "$file" 2>log ||
      wrong "catalog.xml does not find $kind.$form: $(cat log)"
  done
  [ -f "grammars/$kind.rnc" ] && grep -q "uri=\"$kind.rnc\"" grammars/schemas.xml ||
    wrong "schemas.xml does not find $kind.rnc"
done

[ "$failures" -eq 0 ] && echo "$(find right -name '*.xml' | wc -l) documents are right, $count wrong"
