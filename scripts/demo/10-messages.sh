#!/usr/bin/env bash
# Two nodes, an echo service on each: messages from another process, one of them forwarded between the nodes.
set -euo pipefail

run=$(mktemp -d)/board
export MOX_RUN=$run
cleanUp() {
    moxctl --quiet sim down >/dev/null 2>&1 || :
    rm -rf "$(dirname "$run")"
}
trap cleanUp EXIT

# say TEXT: what comes next. run COMMAND...: shows a command and its output, which then lies in $output.
say() { printf '\n# %s\n' "$*"; }
show() {
    printf '$ %s\n' "$*"
    status=0
    output=$("$@" 2>&1) || status=$?
    [[ -z $output ]] || printf '%s\n' "$output"
}
# expect PATTERN: the last output holds it; expectStatus N: the last command ended so.
expect() {
    grep -Eq -- "$1" <<<"$output" || { echo "demo: expected: $1" >&2; exit 1; }
}
expectStatus() {
    ((status == $1)) || { echo "demo: expected status $1, got $status" >&2; exit 1; }
}
# awaitLog PATTERN: the first node's log shows it within 5 s.
awaitLog() {
    for _ in {1..100}; do
        output=$(moxctl log tail Echo -n 50)
        if grep -E -- "$1" <<<"$output"; then
            return
        fi
        sleep 0.05
    done
    echo "demo: not in the log: $1" >&2
    exit 1
}

say "A board with two nodes; each starts the echo service MOXEchoExe"
show moxctl sim new "$run" --board echo-pair
expectStatus 0
show moxctl sim up
expectStatus 0
show moxctl sim status
expect '1011 +Echo .* waiting'
expect '1021 +Echo .* waiting'

say "A request from this process; the service answers with the same bytes"
show moxctl msg request 1011:0600 0x0601 --text "hello, board"
expectStatus 0
expect '0x0602 from 1011:0600'
expect 'hello, board'

say "A request that the first node forwards to the second (its address comes first) and answers when that one has answered"
show moxctl msg request 1011:0600 0x0603 --hex 00062110666f7277617264656421
expectStatus 0
expect '0x0604 from 1011:0600'
expect 'forwarded!'

say "A message that nobody handles: the service says so and goes on"
show moxctl msg send 1011:0600 0x9999
expectStatus 0
awaitLog 'Unknown message received: id=0x9999 receiver=0x10110600'

say "The debug flag, switched on from outside while the service runs: the lines that follow show more"
show moxctl rad set ECHO 1
expectStatus 0
show moxctl msg request 1011:0600 0x0601 --text "again"
expectStatus 0
awaitLog 'DBG .* echo of 5 bytes'

say "And down again"
show moxctl sim down
expectStatus 0
show moxctl sim status
expect '1011 +Echo +- +down'
expect '1021 +Echo +- +down'
