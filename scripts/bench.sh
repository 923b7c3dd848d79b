#!/usr/bin/env bash
# Measures libMOX beside its peers, in an optimised build of its own.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: scripts/bench.sh [option of Benchmarks/run.sh...]

Installs what is missing, peers included, builds below build/bench as the release lane does, and runs
Benchmarks/run.sh with the folder of that build and the options given.
TEXT
}

# shellcheck source=common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

[[ ${1-} == -h || ${1-} == --help ]] && usage && exit 0
"$top/scripts/setup.sh" build bench
cd "$top"
cmake --preset release -B build/bench -DMOX_BUILD_BENCHMARKS=ON >/dev/null
cmake --build build/bench --parallel "$jobs"
exec "$top/Benchmarks/run.sh" "$top/build/bench" "$@"
