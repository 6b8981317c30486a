#!/bin/sh
# Installs into a scratch prefix and builds the example client against it, by find_package and by
# pkg-config; every installed header must compile alone and twice.
#   install_test.sh BUILD_DIR SOURCE_DIR COMPILER
set -eu
build=$1 source=$2 compiler=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix=$scratch/prefix

cmake --install "$build" --prefix "$prefix" >"$scratch/install.log"

cmake -S "$source/examples/client" -B "$scratch/client" -G Ninja \
  -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_PREFIX_PATH="$prefix" >"$scratch/configure.log"
cmake --build "$scratch/client" >"$scratch/build.log" || { cat "$scratch/build.log"; exit 1; }

libdir=$(dirname "$(find "$prefix" -name libZRT4XML.so)")
export PKG_CONFIG_PATH="$libdir/pkgconfig"
flags=$(pkg-config --cflags --libs zrt4xml)
"$compiler" -std=c++17 -Wall -Wextra -Werror "$source/examples/client/wanted_channels.cc" $flags \
  -Wl,-rpath,"$libdir" -o "$scratch/by_pkg_config"

list=$source/examples/event_lists/orbit_feedback.xml
"$scratch/client/wanted_channels" "$list" >"$scratch/by_cmake.txt"
"$scratch/by_pkg_config" "$list" >"$scratch/by_pkg_config.txt"
cat >"$scratch/expected.txt" <<'TEXT'
NORMAL LINAC.DAQ/BPM.SERVER.L1 LINAC.BPM/L1.03/X
NORMAL LINAC.DAQ/BPM.SERVER.L1 LINAC.BPM/L1.03/Y
NORMAL LINAC.DAQ/BPM.SERVER.L1 LINAC.BPM/L1.03/CHARGE
NORMAL LINAC.DAQ/TOROID.SERVER (all channels)
TEXT
diff "$scratch/expected.txt" "$scratch/by_cmake.txt"
diff "$scratch/expected.txt" "$scratch/by_pkg_config.txt"

"$prefix/bin/zrt4xml" show "$list" >/dev/null

docs=$prefix/share/doc/libzrt4xml-dev
for page in README.md docs/callers.md docs/tool.md docs/types.md examples/client/CMakeLists.txt; do
  cmp "$source/$page" "$docs/$page"
done
"$prefix/bin/zrt4xml" stat "$docs/examples/channels/channels.xml" >/dev/null
cmp "$source/docs/zrt4xml.schema.json" "$prefix/share/zrt4xml/zrt4xml.schema.json"

cflags=$(pkg-config --cflags zrt4xml)
for header in "$prefix"/include/zrt4xml/*.hh; do
  name=$(basename "$header")
  printf '#include "%s"\n#include "%s"\n' "$name" "$name" |
    "$compiler" -std=c++17 -Wall -Wextra -Wpedantic -Werror -fsyntax-only $cflags -x c++ - ||
    { echo "header $name does not compile alone"; exit 1; }
done
echo "installed, linked and run"
