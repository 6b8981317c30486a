# Fresh Debian roots for the checks that need one: of this machine's release, from the archive that
# this machine is set up for. Sourced behind lib.sh, not run.

debian_release=$(. /etc/os-release && echo "$VERSION_CODENAME")

need_debian_root() {
  [ "$(id -u)" -eq 0 ] || cannot "Not root, who alone can make a Debian root"
  need debootstrap
  unshare --mount true 2>/dev/null || cannot "No mounts are allowed here, which a Debian root needs"
}

# in_i386_root COMMAND...: in the root for 32-bit x86, which is kept for the next time, with what
# stands in the work tree now as /project, and what was built there before. One command at a time.
in_i386_root() { locked i386 with_project_in_i386_root "$@"; }

with_project_in_i386_root() {
  local fresh=$root/build/i386/root made=$root/build/i386/made
  need_debian_root
  if [ "$(cat "$made" 2>/dev/null)" != "$debian_release" ]; then
    say "Making a 32-bit Debian root ..."
    rm -rf --one-file-system "$fresh"
    make_debian_root "$fresh" i386
    echo "$debian_release" >"$made"
  fi
  mkdir -p "$fresh/project"
  find "$fresh/project" -mindepth 1 -maxdepth 1 ! -name build -exec rm -rf {} +
  copy_tree "$fresh/project"
  in_debian_root "$fresh" "$@"
}

# make_scratch_root [ARCHITECTURE]: a root for one test, removed at its end. Sets scratch and, in it,
# fresh.
make_scratch_root() {
  need_debian_root
  scratch=$(mktemp -d)
  fresh=$scratch/root
  trap 'rm -rf --one-file-system "$scratch"' EXIT
  make_debian_root "$fresh" "$@"
}

# make_debian_root DIR [ARCHITECTURE]
make_debian_root() {
  local fresh=$1 architecture=${2:-$(dpkg --print-architecture)} archive
  archive=$(apt-get indextargets --format '$(REPO_URI) $(RELEASE)' 'Created-By: Packages' |
    awk -v release="$debian_release" '$2 == release { print $1; exit }')
  mkdir -p "$fresh"
  debootstrap --variant=minbase --arch="$architecture" "$debian_release" "$fresh" "$archive" \
    >"$fresh.log" 2>&1 || { tail "$fresh.log" >&2; cannot "debootstrap could not make a Debian root"; }
  cp -r /etc/apt/apt.conf.d "$fresh/etc/apt/"  # the way to the archive
  rm -f "$fresh"/etc/apt/apt.conf.d/docker-*  # they empty the archive of downloads and the docs
  echo force-unsafe-io >"$fresh/etc/dpkg/dpkg.cfg.d/quick"
  in_debian_root "$fresh" apt-get update -qq
}

# in_debian_root DIR COMMAND...: the mounts that a command finds there end with it.
in_debian_root() {
  local fresh=$1
  shift
  cp /etc/resolv.conf /etc/hosts "$fresh/etc/"
  unshare --mount --propagation private sh -euc '
    fresh=$1
    shift
    mount -t proc proc "$fresh/proc"
    mkdir -p "$fresh/dev/pts"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$fresh/dev/pts"
    exec chroot "$fresh" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
      DEBIAN_FRONTEND=noninteractive "$@"' sh "$fresh" "$@"
}
