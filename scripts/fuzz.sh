#!/usr/bin/env bash
# Has clang's fuzzer look for inputs that break what reads bytes from outside.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/fuzz.sh [TARGET [SECONDS]]

Builds the fuzz targets below build/fuzz and runs one (default: all, one after the other) for SECONDS (default: 60).
Targets: image description tag_file datagram
What the fuzzer has learnt is kept in build/fuzz/corpus for the next time. An input that breaks a target is written to
build/fuzz/findings, and the status is 1; `build/fuzz/Tests/fuzz/fuzz_TARGET FILE` runs it again.
TEXT
}

# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

[[ ${1-} == -h || ${1-} == --help ]] && usage && exit 0
(($# <= 2)) || misuse
targets=(image description tag_file datagram)
if (($#)); then
    [[ " ${targets[*]} " == *" $1 "* ]] || misuse
    targets=("$1")
fi
seconds=${2-60}
[[ $seconds =~ ^[1-9][0-9]*$ ]] || misuse

"$top/scripts/setup.sh" build test lanes
configureAndBuild fuzz "${targets[@]/#/fuzz_}"
cd "$top/build/fuzz"
mkdir -p findings
status=0
for target in "${targets[@]}"; do
    mkdir -p "corpus/$target"
    mapfile -t seeds <"Tests/fuzz/fuzz_$target.seeds"
    echo "== $target"
    "Tests/fuzz/fuzz_$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
        -close_fd_mask=3 -verbosity=0 -artifact_prefix="findings/$target-" "corpus/$target" "${seeds[@]}" || status=1
done
exit $status
