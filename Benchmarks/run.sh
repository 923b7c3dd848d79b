#!/usr/bin/env bash
# Runs the benchmarks of a build and says which goals are held.
set -euo pipefail

usage() {
    cat <<'TEXT'
usage: Benchmarks/run.sh BUILD_FOLDER [--only in_process|between_processes|costs|firmware] [--repetitions N] [--case NAME]

Prints a table a suite (medians of N interleaved runs, 7 when not given) and a line a goal; a goal is a ratio to a peer
measured in the same run, so none is measured when --case leaves the peers out. Exit status 1 when a goal is missed. The machine should be otherwise idle.
TEXT
}

[[ ${1-} == -h || ${1-} == --help ]] && usage && exit 0
build=${1:?the build folder is missing (see --help)}
shift
suites=(in_process between_processes costs firmware)
while (($#)); do
    case $1 in
        --only) suites=("$2"); shift 2 ;;
        --repetitions) export MOX_BENCH_REPETITIONS=$2; shift 2 ;;
        --case) export MOX_BENCH_CASE=$2; shift 2 ;;
        *) usage >&2; exit 2 ;;
    esac
done

printf '# %s, %s processors, %s, load %s\n' "$(uname -sr)" "$(nproc)" \
    "$(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1)" "$(cut -d' ' -f1-3 /proc/loadavg)"
status=0
for suite in "${suites[@]}"; do
    case $suite in
        costs) "$build/bench/costs" "$build/bin/MOXEchoExe" || status=1 ;;
        in_process | between_processes | firmware) "$build/bench/$suite" || status=1 ;;
        *) usage >&2; exit 2 ;;
    esac
done
exit $status
