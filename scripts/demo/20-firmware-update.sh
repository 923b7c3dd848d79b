#!/usr/bin/env bash
# A firmware update from message to flash: a client asks the service MOXFirmExe to update the board's FPGA; then with
# images that are none for it, and with a flash memory that breaks.
# shellcheck source=../demo-common.sh
source "$(dirname "${BASH_SOURCE[0]}")/../demo-common.sh"

draw=$(dirname "${BASH_SOURCE[0]}")/../draw-messages.py
images=$work/images
kor=$MOX_RUN/nodes/1011/fs/ffs/run/boot # what the first board finds in /ffs/run/boot
korFlash=$MOX_RUN/nodes/1011/flash
velFlash=$MOX_RUN/nodes/1021/flash
boardOfKor=0x00500000
boardOfVel=0x00B00000
name=KOR-TIRVO2-QE # the names of the first board's FPGA images begin so
mkdir "$images"
: >"$work/messages.jsonl"

# place FILE...: these files of $images, and no others, lie on the first board's flash file system.
place() {
    rm -f "$kor"/*.bin
    for file in "$@"; do
        cp "$images/$file" "$kor/"
    done
    printf '/ffs/run/boot of 1011: %s\n' "$*"
}
# flashHolds SLOT PAYLOAD: the FPGA's slot holds the payload, byte for byte.
flashHolds() {
    must cmp "$korFlash/fpga-10001-$1.bin" "$images/$2"
    printf 'equal, %s bytes\n' "$(stat -c %s "$images/$2")"
}
# update TICKET MESSAGES PATTERN: has the FPGA updated, shows the messages that come back, and expects the pattern in them.
update() {
    local said=$work/said got=$work/got.jsonl monitor
    : >"$said"
    moxctl --json msg monitor 0x0700 --count "$2" --timeout 20 >"$got" 2>"$said" &
    monitor=$!
    for _ in {1..100}; do
        [[ -s $said ]] && break
        sleep 0.05
    done
    must moxctl msg send 1011:0620 0x0623 --hex "$(printf '%02x000000' "$1")0300000000000000" --from 1011:0700
    wait "$monitor" || wrong "expected $2 messages, got: $("$draw" --messages "$got")"
    cat "$got" >>"$work/messages.jsonl"
    output=$("$draw" --messages "$got")
    printf '%s\n' "$output"
    expect "$3"
}

say "Two boards of different type, each with an FPGA of its own and the firmware service"
must moxctl sim new "$MOX_RUN" --board firm-pair
must moxctl sim up
cp -r "$velFlash" "$work/flash-of-vel"

say "Images for the first board's FPGA: version 11, and 9, which is older; one that is meant for the second board; one that is damaged"
for version in 9 11; do
    head -c 200000 /dev/urandom >"$images/bits-$version"
    # With a mark at its end, from which a simulated FPGA learns its version.
    must moxctl image create "$images/bits-$version" "$images/$name-$version.bin" --version "$version" --hwswid "$boardOfKor" --mark
    must moxctl image extract "$images/$name-$version.bin" "$images/payload-$version"
done
must moxctl image create "$images/bits-11" "$images/$name-wrong.bin" --version 11 --hwswid "$boardOfVel" --mark
cp "$images/$name-11.bin" "$images/$name-damaged.bin"
printf 'X' | dd of="$images/$name-damaged.bin" bs=1 seek=1000 conv=notrunc status=none
show moxctl image verify "$images/$name-damaged.bin"
expectStatus 4

say "Which one is the board's, and is it needed? The other board's image beside it is passed over"
place "$name-11.bin" "$name-wrong.bin"
must moxctl fw check fpga --explain
expect "$name-11.bin"

say "A message asks for the update; the service tells each step to its sender, whose address a monitor has registered"
update 1 5 '0x0624 updated, result 0, /ffs/run/boot/KOR-TIRVO2-QE-11.bin'

say "Both slots hold the image's payload"
flashHolds 1 payload-11
flashHolds 2 payload-11

say "After a reset the FPGA runs version 11, and nothing is left to do"
must moxctl sim reset
update 2 4 '0x0624 not needed, result 0'

say "Two images for the board: the service does not choose"
place "$name-11.bin" "$name-9.bin"
update 3 4 '0x0624 check failed, result -8'

say "Only the other board's image: none for this one"
place "$name-wrong.bin"
update 4 4 '0x0624 check failed, result -7'

say "A damaged image, and an operator who forces the update: its CRC-32 is wrong, and nothing is flashed"
place "$name-damaged.bin"
must moxctl fw force fpga 1 # it is no newer one either
update 5 5 '0x0624 update failed, result -1, forced'
flashHolds 1 payload-11

say "The older image, which the FPGA follows, while writing the second slot fails: the first one is new already"
place "$name-9.bin"
must moxctl ddal fault add ddal_fpga_update_mod --nth=2 --return DDAL_IO_ERROR
update 6 5 '0x0624 partly updated, result -4'
flashHolds 1 payload-9
flashHolds 2 payload-11

say "Once more without the fault"
must moxctl ddal fault clear --all
update 7 5 '0x0624 updated, result 0, /ffs/run/boot/KOR-TIRVO2-QE-9.bin'
flashHolds 1 payload-9
flashHolds 2 payload-9

say "The second board's flash memory is as it was"
must diff -r "$work/flash-of-vel" "$velFlash"

say "The log of it all"
show moxctl log tail Firm --feature FIRM -n 100
expect 'fpga update 1 of 0x10110700: updated, result 0'
expect 'fpga update 6 of 0x10110700: partly updated, result -4'

say "The same as a picture: build/dev/firmware-update.svg"
moxctl --json log tail Firm -n 10000 >"$work/log.json"
"$draw" --messages "$work/messages.jsonl" --log "$work/log.json" >"$MOX_BUILD/firmware-update.svg"
python3 -c "import sys, xml.dom.minidom; xml.dom.minidom.parse(sys.argv[1])" "$MOX_BUILD/firmware-update.svg" ||
    wrong "the picture is not well formed"
must moxctl sim down
