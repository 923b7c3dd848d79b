#!/usr/bin/env python3
"""Draws the firmware updates of a run as a sequence diagram (SVG), or tells their messages in words.

  moxctl --json msg monitor 0x0700 --count 5 >messages.jsonl &       what the client gets
  moxctl msg send 1011:0620 0x0623 --hex 07000000... --from 1011:0700
  moxctl --json log tail Firm -n 200 >log.json
  scripts/draw-messages.py --messages messages.jsonl --log log.json >update.svg
  scripts/draw-messages.py --messages messages.jsonl

Each message of the monitor is drawn where the service's log says that it was sent; messages that no line of the log
announces come last. The log lines of the firmware functions show what happens in between. Times are milliseconds
since the update was asked for.
"""
import argparse
import datetime
import json
import pathlib
import re
import sys
import xml.etree.ElementTree as ET

LIFELINES = [("client", "client"), ("service", "MOXFirmExe"), ("library", "libMOX"), ("files", "image files"),
             ("device", "device, flash")]
PLACE = {name: index for index, (name, _) in enumerate(LIFELINES)}

COMPONENTS = {1: "boot loader", 2: "BMU", 3: "FPGA"}
STEPS = {1: "asked", 2: "checking", 3: "flashing", 4: "done"}
STATES = {0: "not needed", 1: "needed", 2: "updated", 3: "partly updated", 4: "disabled", 5: "check failed",
          6: "update failed", 7: "unknown component", 8: "malformed"}
GOOD_STATES = (0, 1, 2, 4)

CALL, ANSWER, FAILURE = "call", "answer", "failure"

# Lines of the log that stand for a message of the service: pattern, id of the message, whether the client sent it.
ANNOUNCEMENTS = [
    (r"^\w+ update \d+ of 0x\w+: asked$", 0x0623, True),
    (r"^\w+ update \d+ of 0x\w+: (?:asked|checking|flashing|done)$", 0x0625, False),
    (r"^\w+ update \d+ of 0x\w+: .*, result -?\d+, ", 0x0624, False),
    (r"^\w+ check \d+ of 0x\w+: .*, result -?\d+, ", 0x0622, False),
]

# Lines of the log of what happens in between: pattern, from, to, what is written at the arrow, kind. The first that fits
# counts; other lines are left out.
HAPPENINGS = [
    (r"^(is_\w+_update_needed)\(\): \?$", "service", "library", r"\1()", CALL),
    (r"^find_binary_multiple\(\): Search string '(.*)'$", "library", "files", r"image of \1?", CALL),
    (r"^\w+\(\): \w+ file '(?:.*/)?([^/]*)' version \w+ \((-?\d+)\)$", "files", "library", r"\1, version \2", ANSWER),
    (r"^\w+\(\): no \w+ binary$", "files", "library", "none is for this board", FAILURE),
    (r"^\w+\(\): (\d+) compatible files are found", "files", "library", r"\1 are for this board", FAILURE),
    (r"^\w+\(\): active \w+ version '?(?:\w+ \()?(-?\d+)[)']$", "device", "library", r"active: version \1", ANSWER),
    (r"^(is_\w+_update_needed)\(\): (yes|no)$", "library", "service", r"\2", ANSWER),
    (r"^is_firmware_update_forced\(\): yes \w+ (\d+)$", "files", "service", r"force marker: \1", ANSWER),
    (r"^(update_\w+)\(\): start", "service", "library", r"\1()", CALL),
    (r"^\w+\(\): binary_crc\(\) failed (\d+)$", "files", "library", r"damaged (\1)", FAILURE),
    (r"^\w+\(\): binary '.*' is ok$", "files", "library", "CRC-32 is right", ANSWER),
    (r"^\w+\(\): \w+ (primary|secondary) slot update is ok$", "library", "device", r"\1 slot written", CALL),
    (r"^\w+\(\): (?:bmu|uboot) update is ok$", "library", "device", "written", CALL),
    (r"^\w+\(\): (ddal_\w+)\(\) failed with error (-?\d+) '(.*)'$", "device", "library", r"\3 (\2)", FAILURE),
]

WIDTH, LEFT, RIGHT, TOP, ROW, BOTTOM = 1000, 126, 84, 84, 27, 18
COLOURS = {CALL: "#24508c", ANSWER: "#3f7a3f", FAILURE: "#b3261e"}
TITLE = "A firmware update by message"
LINE, TEXT, PALE, PAPER, BOX = "#9aa4b2", "#1f2933", "#66707c", "#ffffff", "#eef2f7"
FONT = "Helvetica, Arial, sans-serif"


def word(payload, index):
    return int.from_bytes(payload[4 * index:4 * index + 4], "little") if len(payload) >= 4 * index + 4 else 0


def described(message):
    """What is written at a message's arrow, and how it is drawn."""
    number, payload = message["id"], message["payload"]
    title = f"0x{number:04x} "
    if number == 0x0625 and len(payload) == 12:
        return title + "progress: " + STEPS.get(word(payload, 2), "?"), ANSWER
    if number in (0x0622, 0x0624) and len(payload) == 148:
        state = word(payload, 2)
        result = int.from_bytes(payload[12:16], "little", signed=True)
        text = f"{STATES.get(state, '?')}, result {result}" + (", forced" if word(payload, 4) else "")
        return title + text, ANSWER if state in GOOD_STATES else FAILURE
    return title + f"{len(payload)} bytes", CALL


def inWords(message):
    """One line: what a message says, for who has no picture."""
    text = described(message)[0]
    path = message["payload"][20:148].split(b"\0")[0].decode(errors="replace") if len(message["payload"]) == 148 else ""
    return f"{text}, {path}" if path else text


def readMessages(text):
    messages = []
    for line in filter(str.strip, text.splitlines()):
        record = json.loads(line)
        messages.append({"id": int(record["id"], 16), "sender": int(record["sender"], 16),
                         "receiver": int(record["receiver"], 16), "payload": bytes.fromhex(record["payload"])})
    return messages


def readLog(text):
    """The lines of `log tail --json`, which is one list, or with -f an object a line."""
    text = text.strip()
    try:
        records = json.loads(text)
        records = records.get("lines", [records])
    except json.JSONDecodeError:
        records = [json.loads(line) for line in text.splitlines() if line.strip()]
    return [(datetime.datetime.fromisoformat(record["time"].replace("Z", "+00:00")), record["text"])
            for record in records]


class Diagram:
    """Collects arrows: when, from, to, text, kind. An arrow of None is a gap between two updates."""

    def __init__(self, messages, log):
        self.waiting = list(messages)
        self.arrows = []
        for time, text in log:
            if not self.announced(time, text):
                self.happened(time, text)
        for message in self.waiting:
            self.add(None, "service", "client", *described(message))

    def add(self, time, source, target, text, kind):
        self.arrows.append((time, source, target, text, kind))

    def announced(self, time, text):
        """Whether a line stands for messages, which are drawn then."""
        numbers = [(number, isRequest) for pattern, number, isRequest in ANNOUNCEMENTS if re.search(pattern, text)]
        for number, isRequest in numbers:
            if not isRequest:
                self.take(time, number)
                continue
            if self.arrows:
                self.arrows.append(None)
            self.add(time, "client", "service", f"0x{number:04x} update request: {text.split()[0]}", CALL)
        return bool(numbers)

    def take(self, time, number):
        for index, message in enumerate(self.waiting):
            if message["id"] == number:
                self.add(time, "service", "client", *described(self.waiting.pop(index)))
                return

    def happened(self, time, text):
        for pattern, source, target, template, kind in HAPPENINGS:
            match = re.search(pattern, text)
            if match:
                self.add(time, source, target, match.expand(template), kind)
                return


def xOf(lifeline):
    return LEFT + PLACE[lifeline] * (WIDTH - LEFT - RIGHT) / (len(LIFELINES) - 1)


def put(parent, tag, text=None, **attributes):
    element = ET.SubElement(parent, tag, {key.replace("_", "-"): str(value) for key, value in attributes.items()})
    element.text = text
    return element


def drawLifelines(svg, height, addresses):
    for name, title in LIFELINES:
        x = xOf(name)
        put(svg, "line", x1=x, y1=TOP - 24, x2=x, y2=height - BOTTOM + 8, stroke=LINE, stroke_dasharray="3 4")
        put(svg, "rect", x=x - 72, y=TOP - 68, width=144, height=44, rx=5, fill=BOX, stroke=LINE)
        put(svg, "text", title, x=x, y=TOP - 50, font_size=14, font_weight="bold", text_anchor="middle", fill=TEXT)
        put(svg, "text", addresses.get(name, ""), x=x, y=TOP - 33, font_size=11, text_anchor="middle", fill=PALE)


def drawGap(svg, y):
    put(svg, "line", x1=8, y1=y, x2=WIDTH - 8, y2=y, stroke=LINE)


def drawArrow(svg, y, begin, arrow):
    time, source, target, text, kind = arrow
    x1, x2 = xOf(source), xOf(target)
    tip = -8 if x2 > x1 else 8
    line = put(svg, "line", x1=x1, y1=y, x2=x2 + tip, y2=y, stroke=COLOURS[kind], stroke_width="1.4")
    if kind != CALL:
        line.set("stroke-dasharray", "6 3")
    put(svg, "path", d=f"M {x2} {y} l {tip} -4 v 8 z", fill=COLOURS[kind])
    put(svg, "text", text, x=(x1 + x2) / 2, y=y - 6, font_size=12, text_anchor="middle", stroke=PAPER, stroke_width=3,
        paint_order="stroke", fill=COLOURS[kind] if kind == FAILURE else TEXT)
    if time is not None:
        put(svg, "text", f"{(time - begin).total_seconds() * 1000:.1f} ms", x=46, y=y + 4, font_size=11,
            text_anchor="end", fill=PALE)


def addressText(address):
    return f"{address >> 16:04x}:{address & 0xFFFF:04x}"


def addressesOf(messages):
    if not messages:
        return {}
    return {"client": addressText(messages[0]["receiver"]), "service": addressText(messages[0]["sender"])}


def draw(messages, log, title):
    arrows = Diagram(messages, log).arrows
    height = TOP + ROW * len(arrows) + BOTTOM
    svg = ET.Element("svg", {"xmlns": "http://www.w3.org/2000/svg", "viewBox": f"0 0 {WIDTH} {height}",
                             "width": str(WIDTH), "height": str(height), "font-family": FONT, "role": "img"})
    put(svg, "title", title)
    put(svg, "rect", x=0, y=0, width=WIDTH, height=height, rx=8, fill=PAPER)
    drawLifelines(svg, height, addressesOf(messages))
    begin = None
    for row, arrow in enumerate(arrows):
        y = TOP + ROW * row + 6
        if arrow is None:
            drawGap(svg, y)
            begin = None
        else:
            begin = begin or arrow[0]
            drawArrow(svg, y, begin, arrow)
    ET.indent(svg)
    return ET.tostring(svg, encoding="unicode") + "\n"


def recorded(name):
    return (pathlib.Path(__file__).resolve().parent.parent / "docs/pictures" / name).read_text(encoding="utf-8")


def drawRecorded():
    messages = readMessages(recorded("firmware-update.messages.jsonl"))
    return messages, draw(messages, readLog(recorded("firmware-update.log.jsonl")), TITLE)


def selfTest():
    """The picture of the documents: drawn from what was recorded, well formed, with every message in its order."""
    messages, picture = drawRecorded()
    texts = [element.text for element in ET.fromstring(picture).iter("{http://www.w3.org/2000/svg}text")]
    labels = [text for text in texts if text and text.startswith("0x") and "request" not in text]
    wrong = []
    if labels != [described(message)[0] for message in messages]:
        wrong.append(f"drawn {labels}")
    if len(messages) < 5 or sum("update request" in (text or "") for text in texts) == 0:
        wrong.append("nothing recorded")
    if any(text is None for text in texts[len(LIFELINES) * 2:]):
        wrong.append("an arrow says nothing")
    alone = draw(messages, [], TITLE)
    if ET.fromstring(alone).find(".//{http://www.w3.org/2000/svg}path") is None:
        wrong.append("messages that no log announces are left out")
    if picture != recorded("firmware-update.svg"):
        wrong.append("docs/pictures/firmware-update.svg is another picture: scripts/draw-messages.py --recorded >...")
    print("\n".join(wrong) if wrong else f"draw-messages: {len(messages)} messages, all drawn")
    return 1 if wrong else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--messages", type=argparse.FileType(encoding="utf-8"),
                        help="standard output of `moxctl --json msg monitor`")
    parser.add_argument("--log", type=argparse.FileType(encoding="utf-8"),
                        help="standard output of `moxctl --json log tail Firm`; without it the messages are told in words")
    parser.add_argument("--title", default=TITLE, help="for who does not see the picture")
    parser.add_argument("--recorded", action="store_true", help="draw what was recorded in docs/pictures")
    parser.add_argument("--self-test", action="store_true", help="check that what was recorded gives the picture there")
    arguments = parser.parse_args()
    if arguments.self_test:
        return selfTest()
    if arguments.recorded:
        sys.stdout.write(drawRecorded()[1])
        return 0
    if arguments.messages is None:
        parser.error("--messages is missing")
    try:
        messages = readMessages(arguments.messages.read())
        log = readLog(arguments.log.read()) if arguments.log else None
    except (ValueError, KeyError, AttributeError) as failure:
        print(f"draw-messages: neither messages nor log of a run: {failure!r}", file=sys.stderr)
        return 1
    if log is None:
        print("\n".join(map(inWords, messages)))
    else:
        sys.stdout.write(draw(messages, log, arguments.title))
    return 0


if __name__ == "__main__":
    sys.exit(main())
