#!/usr/bin/env bash
# Runs a command in which the kernel starts 32-bit ARM programs by itself, through the emulator: so programs of the
# tree may start each other, in mount namespaces too, as they do on the board.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/arm-run.sh [--sysroot DIR] COMMAND [ARG...]

Where the machine has no such setting of its own (Debian's package qemu-user-binfmt makes one), the command gets it
in a user namespace of its own, which changes nothing outside and needs no privileges, but a kernel from 6.7 on.

  --sysroot DIR   root file system of the programs (default: build/arm-sysroot, made by scripts/arm-sysroot.sh)
TEXT
}

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
sysroot=$top/build/arm-sysroot
case ${1-} in
-h | --help) usage && exit 0 ;;
--sysroot)
    sysroot=$2
    shift 2
    ;;
esac
(($#)) || { usage >&2 && exit 2; }

# Programs of the tree name the loader and the libraries there.
export MOX_SANDBOX_READABLE=$sysroot${MOX_SANDBOX_READABLE:+:$MOX_SANDBOX_READABLE}
kernelRunsArm() {
    "$sysroot/lib/ld-linux-armhf.so.3" --version >/dev/null 2>&1
}
kernelRunsArm && exec "$@"

if [[ ${MOX_ARM_NAMESPACE-} ]]; then
    echo "arm-run: the kernel cannot be told how to start ARM programs here; install qemu-user-binfmt" >&2
    exit 1
fi
emulator=$(command -v qemu-arm || command -v qemu-arm-static) || {
    echo "arm-run: qemu-arm is missing: scripts/setup.sh lanes" >&2
    exit 1
}

# The first 20 bytes of a 32-bit little-endian ARM program or position independent one, and which bits of them count.
magic='\x7fELF\x01\x01\x01\x00\x00\x00\x00\x00\x00\x00\x00\x00\x02\x00\x28\x00'
mask='\xff\xff\xff\xff\xff\xff\xff\x00\xff\xff\xff\xff\xff\xff\xff\xff\xfe\xff\xff\xff'
export MOX_ARM_NAMESPACE=":qemu-arm:M::$magic:$mask:$emulator:PF"

# A namespace keeps the user's own identity; a privileged one may bring all users along, so that tests can change to one.
mapAllUsers() {
    local process=$1 kind
    until [[ $(readlink "/proc/$process/ns/user") != $(readlink /proc/self/ns/user) ]]; do
        sleep 0.01
    done
    for kind in gid uid; do
        awk '{ print $1, $1, $3 }' "/proc/self/${kind}_map" >"/proc/$process/${kind}_map"
    done
}
users=(--map-root-user)
if ((EUID == 0)); then
    users=()
    # The writer is nobody's child, so that the command, which takes the place of this script, need not wait for it.
    (mapAllUsers $$ </dev/null >/dev/null 2>&1 &)
fi
# shellcheck disable=SC2016  # expanded inside of the namespace
inside='
    registry=/proc/sys/fs/binfmt_misc
    mount -t binfmt_misc none $registry && printf %s "$MOX_ARM_NAMESPACE" >$registry/register
    exec "$@"'
# Who becomes root after the start gets its privileges with it.
# shellcheck disable=SC2016
exec unshare --user "${users[@]}" --mount -- bash -c '
    for ((tries = 0; tries < 1000; tries++)); do
        [[ $(</proc/self/uid_map) ]] && break
        sleep 0.01
    done
    exec setpriv --reuid=0 --regid=0 --keep-groups -- bash -c "$@"' arm-run "$inside" arm-run "$0" --sysroot "$sysroot" "$@"
