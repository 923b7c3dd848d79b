# Shared by the steps of scripts/demo; sourced, not run. Makes a directory for the step, $work, with the run $MOX_RUN to
# be made in it; both go when the step ends.
# shellcheck shell=bash

set -euo pipefail

work=$(mktemp -d)
export MOX_RUN=$work/board
cleanUp() {
    moxctl --quiet sim down >/dev/null 2>&1 || :
    rm -rf "$work"
}
trap cleanUp EXIT

# say TEXT: what comes next. show COMMAND...: shows a command and its output, which then lies in $output, its status in
# $status.
say() { printf '\n# %s\n' "$*"; }
show() {
    local word line='$'
    for word in "$@"; do
        [[ $word == *[[:space:]]* ]] && word="'$word'"
        line+=" $word"
    done
    printf '%s\n' "${line//$work\//}"
    status=0
    output=$("$@" 2>&1) || status=$?
    [[ -z $output ]] || printf '%s\n' "${output//$work\//}"
}
wrong() {
    echo "demo: $*" >&2
    exit 1
}
# expect PATTERN: the last output holds it; expectStatus N: the last command ended so.
expect() {
    grep -Eq -- "$1" <<<"$output" || wrong "expected: $1"
}
expectStatus() {
    ((status == $1)) || wrong "expected status $1, got $status"
}
# must COMMAND...: shows a command that has to succeed.
must() {
    show "$@"
    expectStatus 0
}
# awaitLog SERVICE PATTERN: the first node's log shows it within 5 s.
awaitLog() {
    for _ in {1..100}; do
        output=$(moxctl log tail "$1" -n 50)
        if grep -E -- "$2" <<<"$output"; then
            return
        fi
        sleep 0.05
    done
    wrong "not in the log: $2"
}
