#!/usr/bin/env bash
# Shows the system at work on a simulated board, on a fresh machine too. The last line is "demo: PASS".
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/demo.sh [STEP...]

Installs what is missing, builds, and runs the steps of scripts/demo in order (default: all). A step that fails ends
the demo with its status.
TEXT
}

# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

[[ ${1-} == -h || ${1-} == --help ]] && usage && exit 0
"$top/scripts/setup.sh" build test
configureAndBuild dev Services/all Tools/all # tests would treble the time

shopt -s nullglob
steps=("$top"/scripts/demo/*.sh)
if (($#)); then
    steps=()
    for step in "$@"; do
        [[ -f $top/scripts/demo/$step.sh ]] || die "no step $step in scripts/demo"
        steps+=("$top/scripts/demo/$step.sh")
    done
fi
((${#steps[@]})) || die "no step in scripts/demo"

# What every step is told: where the programs are.
export MOX_BUILD=$top/build/dev
export PATH=$MOX_BUILD/bin:$PATH
for step in "${steps[@]}"; do
    echo "== $(basename "$step" .sh)"
    bash "$step" </dev/null
done
echo "demo: PASS"
