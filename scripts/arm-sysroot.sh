#!/usr/bin/env bash
# Makes a root file system for the 32-bit ARM build: libraries and headers of Debian's armhf packages, unpacked
# below one folder. The machine's own package state is neither read nor changed, and no privileges are needed.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/arm-sysroot.sh [--force] [DIR]

Unpacks the armhf packages that the ARM build needs into DIR (default: build/arm-sysroot).
Does nothing when DIR was made with the same list of packages before.

  --force   make it anew
TEXT
}

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
packages=(libc6-dev libstdc++-12-dev libgcc-s1 zlib1g-dev libboost-dev libpugixml-dev liblmdb-dev
    libspdlog-dev libfmt-dev libarchive-dev nlohmann-json3-dev libcli11-dev)
revision=1

force=0
dir=$top/build/arm-sysroot
while (($#)); do
    case $1 in
    -h | --help) usage && exit 0 ;;
    --force) force=1 ;;
    -*) usage >&2 && exit 2 ;;
    *) dir=$1 ;;
    esac
    shift
done

stamp=$dir/.mox-sysroot
wanted="$revision ${packages[*]}"
if ((!force)) && [[ -f $stamp && $(<"$stamp") == "$wanted" ]]; then
    exit 0
fi

if [[ -e $dir && ! -f $stamp && -n $(ls -A "$dir") ]]; then
    echo "arm-sysroot: $dir is not empty and was not made by this script" >&2
    exit 1
fi

mkdir -p "$(dirname "$dir")"
work=$(mktemp -d "$dir.new.XXXXXX")
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/root" "$work/apt/state/lists/partial" "$work/apt/cache/archives/partial" "$work/apt/log"
: >"$work/apt/status"

# The sources and keys are the machine's own; everything that apt writes goes into the working folder. Its hooks
# serve the machine's package state, so they are switched off.
cat >"$work/apt/apt.conf" <<TEXT
APT::Architecture "armhf";
APT::Architectures { "armhf"; };
APT::Install-Recommends "false";
APT::Sandbox::User "";
APT::Get::Assume-Yes "true";
Dir::State "$work/apt/state";
Dir::State::status "$work/apt/status";
Dir::Cache "$work/apt/cache";
Dir::Log "$work/apt/log";
Debug::NoLocking "true";
Acquire::Languages "none";
Acquire::Retries "3";
TEXT
cat >"$work/apt/hooks.conf" <<'TEXT'
#clear APT::Update::Pre-Invoke;
#clear APT::Update::Post-Invoke;
#clear APT::Update::Post-Invoke-Success;
#clear DPkg::Post-Invoke;
#clear DPkg::Pre-Install-Pkgs;
TEXT

privateApt() {
    APT_CONFIG=$work/apt/apt.conf apt-get -c "$work/apt/hooks.conf" -qq "$@" </dev/null
}

# What is downloaded is the list and all that it depends on, as seen from a machine with nothing installed.
logged() {
    if ! "$@" >"$work/apt/out" 2>&1; then
        echo "arm-sysroot: failed: $*" >&2
        tail -n 20 "$work/apt/out" >&2
        exit 1
    fi
}

echo "arm-sysroot: fetching armhf packages"
# One index that cannot be had (a mirror in the middle of an update) leaves the others usable; whether they are
# enough shows in the next step.
if ! privateApt update >"$work/apt/out" 2>&1; then
    echo "arm-sysroot: going on without the indexes that could not be fetched:" >&2
    sed -n 's/^E: Failed to fetch [^ ]*\/dists\/\([^ ]*\).*/  \1/p' "$work/apt/out" >&2
fi
logged privateApt --download-only install "${packages[@]}"

for package in "$work"/apt/cache/archives/*.deb; do
    dpkg-deb --extract "$package" "$work/root"
done

# Links from the root of the file system would lead to the machine's own files.
while IFS= read -r -d '' link; do
    target=$(readlink "$link")
    ln -sfnr "$work/root$target" "$link"
done < <(find "$work/root" -type l -lname '/*' -print0)

# The dynamic loader's path is compiled into every program, so it has to exist in the root's /lib.
if [[ ! -e $work/root/lib/ld-linux-armhf.so.3 ]]; then
    mkdir -p "$work/root/lib"
    ln -sfn arm-linux-gnueabihf/ld-linux-armhf.so.3 "$work/root/lib/ld-linux-armhf.so.3"
fi

rm -rf "$work/root/usr/share/doc" "$work/root/usr/share/man" "$work/root/usr/share/locale"
printf '%s\n' "$wanted" >"$work/root/.mox-sysroot"
rm -rf "$dir"
mv "$work/root" "$dir"
echo "arm-sysroot: $dir ($(du -sh "$dir" | cut -f1))"
