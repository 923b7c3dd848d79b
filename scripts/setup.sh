#!/usr/bin/env bash
# Installs the Debian packages that the project needs, by name and only those that are missing.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/setup.sh [--check] [GROUP...]

Groups (default: build test):
  build   compiler, build tools, the libraries that libMOX, the workstation platform and the tools are built on
  test    what the tests need
  lanes   the second compiler, the cross compiler and emulator, format and static checks, coverage
  bench   benchmark library and the peers that libMOX is measured against
  all     every group

  --check   print what is missing, one package a line, and install nothing; status 1 when something is missing
TEXT
}

declare -A packagesOf=(
    [build]="g++ cmake ninja-build ccache pkg-config python3 git
        zlib1g-dev libboost-dev libpugixml-dev liblmdb-dev libspdlog-dev libfmt-dev
        nlohmann-json3-dev libcli11-dev libarchive-dev bubblewrap"
    [test]="libgtest-dev libgmock-dev binutils"
    [lanes]="clang-14 clang-format-14 clang-tidy-14 libclang-rt-14-dev shellcheck gcovr
        g++-arm-linux-gnueabihf qemu-user googletest"
    [bench]="libbenchmark-dev libcaf-dev libconcurrentqueue-dev libzmq3-dev cppzmq-dev"
)

check=0
groups=()
while (($#)); do
    case $1 in
    -h | --help) usage && exit 0 ;;
    --check) check=1 ;;
    build | test | lanes | bench) groups+=("$1") ;;
    all) groups+=(build test lanes bench) ;;
    *) usage >&2 && exit 2 ;;
    esac
    shift
done
((${#groups[@]})) || groups=(build test)

isInstalled() {
    [[ $(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null) == installed ]]
}

missing=()
for group in "${groups[@]}"; do
    for package in ${packagesOf[$group]}; do
        isInstalled "$package" || missing+=("$package")
    done
done

if ((check)); then
    ((${#missing[@]})) || exit 0
    printf '%s\n' "${missing[@]}"
    exit 1
fi
((${#missing[@]})) || exit 0

asRoot=()
if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
        echo "setup: as root, install: ${missing[*]}" >&2
        exit 1
    fi
    asRoot=(sudo)
fi

echo "setup: installing ${missing[*]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt() {
    "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300 "$@" </dev/null >"$log" 2>&1
}
# An index that cannot be fetched is no failure as long as the packages can be.
apt update || echo "setup: going on with the lists as they are: $(grep '^E:' "$log" | head -n 1)" >&2
if ! apt install -y --no-install-recommends "${missing[@]}"; then
    echo "setup: installation failed:" >&2
    tail -n 20 "$log" >&2
    exit 1
fi
