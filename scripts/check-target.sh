#!/usr/bin/env bash
# Cross-compiles the services as for the board and sees that they ask its platform for nothing that is not declared.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/check-target.sh

Builds every service below build/target with MOX_PLATFORM=target for 32-bit ARM. The board's two platform libraries
are not here: empty ones take their place, and what the services leave undefined is compared with Platform/include.
Names the symbols that nothing there declares; status 1 when there is one.
TEXT
}

# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

[[ ${1-} == -h || ${1-} == --help ]] && usage && exit 0
(($# == 0)) || misuse
cd "$top"
"$top/scripts/setup.sh" build lanes
"$top/scripts/arm-sysroot.sh" "$top/build/arm-sysroot"
build=build/target
compiler=arm-linux-gnueabihf

mkdir -p "$build/empty"
for library in pal ddal; do
    "$compiler-gcc" -shared -x c /dev/null -o "$build/empty/lib$library.so"
done
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/arm-linux-gnueabihf.cmake -DMOX_PLATFORM=target -DMOX_BUILD_TESTS=OFF \
    -DMOX_PAL_LIBRARY="$top/$build/empty/libpal.so" -DMOX_DDAL_LIBRARY="$top/$build/empty/libddal.so" \
    -DCMAKE_EXE_LINKER_FLAGS=-Wl,--unresolved-symbols=ignore-all --no-warn-unused-cli >/dev/null
cmake --build "$build" --parallel "$jobs"

# One service with the whole library, of which a program links only what it uses.
mapfile -t objects < <(find "$build"/{Board,Common,Firmware,Services/Firm} -name '*.o')
"$compiler-g++" --sysroot="$top/build/arm-sysroot" -Wl,--warn-unresolved-symbols -o "$build/everything" \
    "${objects[@]}" -lz >"$build/link.log" 2>&1 || die "the library does not link: $(cat "$build/link.log")"
mapfile -t symbols < <(sed -nE "s/.*undefined references? to [\`']([^']*)'.*/\1/p" "$build/link.log" | sort -u)
((${#symbols[@]} > 0)) || die "no symbol of the platform is undefined: something took its place"

# isDeclared SYMBOL: a C function by its name, a member by its class and its name, without arguments and tags.
isDeclared() {
    local name=${1%%(*}
    name=${name%%[*}
    local part
    for part in ${name//::/ }; do
        grep --quiet --recursive --word-regexp --fixed-strings -- "${part#\~}" Platform/include || return 1
    done
}

undeclared=()
for symbol in "${symbols[@]}"; do
    isDeclared "$symbol" || undeclared+=("$symbol")
done
echo "target: library and services need ${#symbols[@]} symbols of the platform; not declared: ${undeclared[*]:-none}"
((${#undeclared[@]} == 0))
