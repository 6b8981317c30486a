# Fresh Debian roots for the checks that need one: of this machine's release, from the archive that
# this machine is set up for. Sourced, not run; for root only.

debian_release=$(. /etc/os-release && echo "$VERSION_CODENAME")

# make_debian_root DIR [ARCHITECTURE]
make_debian_root() {
  local fresh=$1 architecture=${2:-$(dpkg --print-architecture)} archive
  [ "$(id -u)" -eq 0 ] || { echo "a Debian root is made by root only" >&2; return 1; }
  archive=$(apt-get indextargets --format '$(REPO_URI) $(RELEASE)' 'Created-By: Packages' |
    awk -v release="$debian_release" '$2 == release { print $1; exit }')
  mkdir -p "$fresh"
  debootstrap --variant=minbase --arch="$architecture" "$debian_release" "$fresh" "$archive" \
    >"$fresh.log" 2>&1 || { tail "$fresh.log" >&2; return 1; }
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
