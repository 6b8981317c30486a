#!/usr/bin/env bash
# Makes the Debian packages and installs them into a fresh Debian root; there, builds a client by
# CMake and by pkg-config, runs it and the tool, and removes the packages without a trace. Takes
# its Debian from the archives that this machine is set up for. Needs to be root.
#   package_test.sh SOURCE_DIR [ARCHITECTURE]
source_dir=$1 architecture=${2:-$(dpkg --print-architecture)}
source "$source_dir/scripts/lib.sh"
source "$source_dir/scripts/debian_root.sh"

need lintian
make_scratch_root "$architecture"
packages=$("$source_dir/scripts/package" --arch "$architecture")
[ "$(wc -l <<<"$packages")" -eq 4 ] || { echo "not four packages: $packages"; exit 1; }

echo "- lintian finds nothing that is not overridden with a reason"
xargs -d '\n' lintian --fail-on error,warning --allow-root <<<"$packages" || exit 1

echo "- every package tells its changes and its copyright, the library the version of each symbol"
while read -r package; do
  [ "$(dpkg-deb --field "$package" Architecture)" = "$architecture" ] || { echo "$package: for another machine"; exit 1; }
  name=$(dpkg-deb --field "$package" Package)
  dpkg-deb --contents "$package" >"$scratch/contents"
  for file in changelog.gz copyright; do
    grep -q " ./usr/share/doc/$name/$file$" "$scratch/contents" || { echo "$name lacks $file"; exit 1; }
  done
done <<<"$packages"
dpkg-deb --ctrl-tarfile "$(grep /libzrt4xml1_ <<<"$packages")" | tar -xO ./symbols >"$scratch/symbols"
grep -q '^ _Z15event_name_itoai@ZRT4XML_1.0 1.0.0$' "$scratch/symbols" ||
  { cat "$scratch/symbols"; exit 1; }
if grep '^ ' "$scratch/symbols" | grep -v '@ZRT4XML_1.0 1.0.0$'; then echo "without a version"; exit 1; fi

mkdir "$fresh/packages"
xargs -d '\n' cp -t "$fresh/packages/" <<<"$packages"
cp -r "$source_dir/examples" "$fresh/packages/"

in_fresh() { in_debian_root "$fresh" "$@"; }
install() { in_fresh apt-get install -y -qq --no-install-recommends "$@" >>"$scratch/apt.log" 2>&1 ||
  { tail -n 30 "$scratch/apt.log"; exit 1; }; }
made() { (cd "$fresh" && printf '/%s' packages/"$1"_*.deb); }
install g++ cmake ninja-build pkg-config dpkg-dev
install python3-numpy  # stays behind otherwise, because other packages suggest it

# Everything that stands in the root, without the package manager's own books and caches.
content() {
  (cd "$fresh" && find . -xdev \( -path ./proc -o -path ./tmp -o -path ./packages -o -path ./dev \
    -o -path ./var/lib/dpkg -o -path ./var/lib/apt -o -path ./var/cache -o -path ./var/log \) \
    -prune -o -print | LC_ALL=C sort)
}
content >"$scratch/before"

echo "- the tool alone brings what it needs"
install $(made libzrt4xml1) $(made zrt4xml)
in_fresh zrt4xml show /packages/examples/event_lists/orbit_feedback.xml >"$scratch/shown"
head -n 2 "$scratch/shown" | diff - <(printf 'Entry[0]\nEVENT TYPE:\tNORMAL\n')
in_fresh sh -c 'gzip -t /usr/share/man/man1/zrt4xml.1.gz'
in_fresh bash -c 'compopt() { :; }; source /usr/share/bash-completion/completions/zrt4xml
  COMP_WORDS=(zrt4xml find --event NOR) COMP_CWORD=3; _zrt4xml; [ "${COMPREPLY[*]}" = NORMAL ]'

echo "- a client by CMake and by pkg-config"
install $(made libzrt4xml-dev)
cat >"$fresh/packages/expected" <<'TEXT'
NORMAL LINAC.DAQ/BPM.SERVER.L1 LINAC.BPM/L1.03/X
NORMAL LINAC.DAQ/BPM.SERVER.L1 LINAC.BPM/L1.03/Y
NORMAL LINAC.DAQ/BPM.SERVER.L1 LINAC.BPM/L1.03/CHARGE
NORMAL LINAC.DAQ/TOROID.SERVER (all channels)
TEXT
in_fresh sh -euc 'cd /packages
  cmake -S examples/client -B client -G Ninja >client.log && cmake --build client >>client.log ||
    { cat client.log; exit 1; }
  g++ -std=c++17 examples/client/wanted_channels.cc $(pkg-config --cflags --libs zrt4xml) -o by_pkg_config
  client/wanted_channels examples/event_lists/orbit_feedback.xml | diff expected -
  ./by_pkg_config examples/event_lists/orbit_feedback.xml | diff expected -
  for header in /usr/include/zrt4xml/*.hh; do
    echo "#include \"${header##*/}\"" | g++ -std=c++17 -fsyntax-only $(pkg-config --cflags zrt4xml) -x c++ -
  done'

echo "- a package of a client depends on the version that brought what it uses"
in_fresh sh -euc 'mkdir -p /packages/debian && cd /packages && echo Source: client >debian/control
  dpkg-shlibdeps -O by_pkg_config' | grep 'libzrt4xml1 (>= 1.0.0)'

echo "- the library cannot be removed under the tool's feet"
if in_fresh dpkg --remove libzrt4xml1 >/dev/null 2>&1; then echo "it was"; exit 1; fi

echo "- Python: the first session of its page, after one command"
mkdir "$fresh/packages/session"
cp -r "$source_dir/examples" "$fresh/packages/session/"
awk '/^```/ { if (inside) exit; inside = $0 == "```python"; next } inside' "$source_dir/docs/python.md" \
  >"$fresh/packages/session/first.txt"
[ -s "$fresh/packages/session/first.txt" ] || { echo "docs/python.md has no first session"; exit 1; }
install $(made python3-zrt4xml)
in_fresh sh -euc 'cd /packages/session
  python3 -B -c "import doctest, sys
failed, tried = doctest.testfile(\"/packages/session/first.txt\", False)
print(\"examples tried:\", tried)
sys.exit(failed != 0 or tried < 10)"
  python3 -B examples/python/subsystems.py examples/channels/channels.xml | grep -q "^DIAG: "'
if in_fresh python3 -B -c 'import pandas' 2>/dev/null; then echo "pandas came along"; exit 1; fi

echo "- removed without a trace"
in_fresh apt-get purge -y -qq --auto-remove libzrt4xml1 libzrt4xml-dev zrt4xml python3-zrt4xml >>"$scratch/apt.log" 2>&1
content | diff "$scratch/before" - || { echo "something is left, or was taken along"; exit 1; }
if in_fresh ldconfig -p | grep ZRT4; then exit 1; fi
echo "packages installed, used and removed"
