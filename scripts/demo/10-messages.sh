#!/usr/bin/env bash
# Two nodes, an echo service on each: messages from another process, one of them forwarded between the nodes.
# shellcheck source=../demo-common.sh
source "$(dirname "${BASH_SOURCE[0]}")/../demo-common.sh"

say "A board with two nodes; each starts the echo service MOXEchoExe"
must moxctl sim new "$MOX_RUN" --board echo-pair
must moxctl sim up

say "A request from this process; the service answers with the same bytes"
must moxctl msg request 1011:0600 0x0601 --text "hello, board"
expect '0x0602 from 1011:0600'
expect 'hello, board'

say "A request that the first node forwards to the second (its address comes first) and answers when that one has answered"
must moxctl msg request 1011:0600 0x0603 --hex 00062110666f7277617264656421
expect '0x0604 from 1011:0600'
expect 'forwarded!'

say "A message that nobody handles: the service says so and goes on"
must moxctl msg send 1011:0600 0x9999
awaitLog Echo 'Unknown message received: id=0x9999 receiver=0x10110600'

say "And down again"
must moxctl sim down
show moxctl sim status
expect '1011 +Echo +- +down'
expect '1021 +Echo +- +down'
