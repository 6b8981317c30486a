# Shared by the scripts: where the project is, what it needs, how it is built. Sourced, not run.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

build_packages="g++ cmake ninja-build pkg-config libxerces-c-dev libcli11-dev nlohmann-json3-dev zlib1g-dev libgtest-dev libgmock-dev mandoc bsdextrautils python3-jsonschema locales libxml2-utils python3-rnc2rng pybind11-dev python3-dev python3-numpy python3-pandas python3-pytest mypy"
clang_packages="clang libclang-rt-14-dev lld googletest"
speed_packages="valgrind"
bench_packages="libbenchmark-dev libxml2-dev libpugixml-dev libtinyxml2-dev libexpat1-dev"
package_packages="dpkg-dev file"
page_packages="chromium chromium-driver python3-selenium poppler-utils fonts-dejavu-core"

say() { printf '%s\n' "$*" >&2; }

# Ends a script that cannot do its work here; the reason is its last line.
could_not_run=77
cannot() { say "$@"; exit "$could_not_run"; }

# locked NAME COMMAND...: while another script is in the same lock, waits.
locked() {
  local lock
  mkdir -p "$root/build"
  exec {lock}>"$root/build/$1.lock"
  flock "$lock"
  "${@:2}"
  exec {lock}>&-
}

# Those of the named Debian packages that are missing, each after a blank.
missing_of() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || printf ' %s' "$package"
  done
}

# Installs those of the named Debian packages that are missing.
need() {
  [ -z "$(missing_of "$@")" ] || locked packages install_missing "$@"
}

install_missing() {
  local missing as_root="" log
  missing=$(missing_of "$@")
  [ -n "$missing" ] || return 0
  export DEBIAN_FRONTEND=noninteractive
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null ||
      cannot "Not root, and there is no sudo, to install what is missing: apt-get install$missing"
    # Who may run only apt-get as root may not hand it the environment; then nobody is at the
    # terminal to answer.
    as_root="sudo --preserve-env=DEBIAN_FRONTEND"
    $as_root apt-get --version >/dev/null 2>&1 || as_root=sudo
  fi
  say "Installing:$missing"
  log=$(mktemp)
  if ! { $as_root apt-get update -qq &&
         TERM=dumb $as_root apt-get install -y -qq --no-install-recommends $missing; } </dev/null >"$log" 2>&1; then
    cat "$log" >&2
    rm "$log"
    cannot "What is missing could not be installed. Run by hand: apt-get install$missing"
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

# Configures a preset when it is new, or was configured for another tree that this one is a copy of.
configure() {
  local preset=$1 build=$root/build/$1 tree
  tree=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' "$build/CMakeCache.txt" 2>/dev/null || true)
  [ "$tree" -ef "$root" ] || rm -rf "$build"
  [ -f "$build/build.ninja" ] ||
    (cd "$root" && logged "$build/configure.log" cmake --preset "$preset")
}

# Configures a preset when it is new and builds the given targets.
build() {
  say "Building ($1) ..."
  locked "$1" configure_and_build "$@"
}

configure_and_build() {
  local preset=$1
  shift
  configure "$preset"
  logged "$root/build/$preset/build.log" cmake --build "$root/build/$preset" ${*:+--target "$@"}
}

# run_tests PRESET [OPTION...]
run_tests() { (cd "$root" && ctest --preset "$1" -j "$(nproc)" "${@:2}"); }

# copy_tree DIR: what stands in the work tree now, but for what git ignores.
copy_tree() {
  mkdir -p "$1"
  git -C "$root" ls-files -z --cached --others --exclude-standard --deduplicate |
    (cd "$root" && while IFS= read -r -d '' file; do [ ! -e "$file" ] || printf '%s\0' "$file"; done) |
    tar --create --directory "$root" --null --files-from - | tar --extract --directory "$1"
}
