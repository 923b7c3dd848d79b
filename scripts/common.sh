# Shared by the scripts of this folder; sourced, not run. Sets `top`, the root of the tree, and stays silent.
# shellcheck shell=bash

top=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# How many jobs run side by side: MOX_JOBS, else one for each processor.
jobs=${MOX_JOBS:-$(nproc)}

die() {
    echo "$(basename "$0"): $*" >&2
    exit 1
}

# misuse: for a wrong command line; the caller has defined usage().
misuse() {
    usage >&2
    exit 2
}

# configureAndBuild PRESET [target...]: what a lane builds (default: all), with little to read unless it fails.
configureAndBuild() {
    local preset=$1
    shift
    (cd "$top" && cmake --preset "$preset" >/dev/null)
    cmake --build "$top/build/$preset" --parallel "$jobs" ${1+--target "$@"}
}

# The project's own sources that match the patterns given, newline-separated, relative to the root.
ownFiles() {
    git -C "$top" ls-files --cached --others --exclude-standard -- "$@"
}
