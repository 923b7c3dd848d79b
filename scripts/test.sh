#!/usr/bin/env bash
# Builds one lane and runs its tests, on a fresh machine too. The last lines are ctest's summary.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/test.sh [PRESET] [ctest option...]

Installs what is missing, builds the preset (default: dev) below build/ and runs its tests.
Presets: dev asan tsan coverage tidy arm. What follows is passed to ctest:

  scripts/test.sh                      all tests
  scripts/test.sh -R WorkerSuspended   those whose name matches
  scripts/test.sh asan -L unit         the unit tests, with the sanitizers

MOX_JOBS sets how many jobs run side by side (default: the number of processors).
TEXT
}

# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

[[ ${1-} == -h || ${1-} == --help ]] && usage && exit 0
preset=dev
if (($#)) && [[ $1 != -* ]]; then
    preset=$1
    shift
fi
case $preset in
dev | asan | tsan | coverage | tidy | arm) ;;
*) misuse ;;
esac

groups=(build test)
[[ $preset == coverage || $preset == tidy || $preset == arm ]] && groups+=(lanes)
"$top/scripts/setup.sh" "${groups[@]}"
[[ $preset == arm ]] && "$top/scripts/arm-sysroot.sh" "$top/build/arm-sysroot"
configureAndBuild "$preset"

cd "$top"
run=(ctest --preset "$preset" --parallel "$jobs" "$@")
[[ $preset == arm ]] && run=("$top/scripts/arm-run.sh" "${run[@]}")
# Where addresses are randomised over more bits than the race detector leaves room for, it refuses to start.
randomBits=$(cat /proc/sys/vm/mmap_rnd_bits 2>/dev/null || echo 28)
if [[ $preset == tsan ]] && ((randomBits > 28)); then
    run=(setarch "$(uname -m)" -R "${run[@]}")
fi

# Shows what the sweeps have covered between the tests and ctest's summary.
export MOX_SWEEP_REPORT=$top/build/$preset/sweeps.txt
: >"$MOX_SWEEP_REPORT"
withSweeps() {
    local line
    while IFS= read -r line; do
        if [[ $line =~ ^[0-9]+%\ tests\ passed && -s $MOX_SWEEP_REPORT ]]; then
            sort "$MOX_SWEEP_REPORT"
            echo
        fi
        printf '%s\n' "$line"
    done
}
"${run[@]}" | withSweeps
