#!/usr/bin/env python3
"""Makes the ready-made board descriptions of one unit from the table UNITS.

Without options the files are written; --check compares them and names those that differ, with status 1. Descriptions of
several nodes, such as echo-pair, are written by hand and left alone.
"""
import argparse
import collections
import json
import pathlib
import sys

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "Platform/host/board/descriptions"
WIDTH = 118

NO_ROW = "No unit type and version belong to its identifier: services see an unknown unit, and know it by its unit id."

Unit = collections.namedtuple("Unit", "name family id hwSwId code serial more comment", defaults=({}, ""))


def versions(family, text, codes, serial, rows):
    """One unit for each (letter, identifier)."""
    return [Unit(f"{family}{letter}", family, f"{family}{letter}".upper(), hwSwId, f"{codes + number}A.101",
                 f"{serial}{number + 1}160100001", {}, text.format(letter))
            for number, (letter, hwSwId) in enumerate(rows)]


def wim(name, boardType, text, cards=(1, 0, 0), location="primary"):
    return Unit(name, "wim", "WIMA", 0x00A00000, "474001A.101", f"W{boardType}160100001",
                {"boardType": boardType, "cards": cards, "location": location},
                f"One unit of the Wim line, {text} (raw board type {boardType}).")


KOR = [("a", 0x00500000), ("b", 0x00501000), ("c", 0x00502000), ("d", 0x00503000), ("e", 0x00505000),
       ("f", 0x00506000), ("g", 0x00507000), ("h", 0x00508000), ("i", 0x00509000)]
ZUP = [("a", 0x00203000), ("b", 0x00204000), ("c", 0x00207000), ("d", 0x00208000), ("e", 0x00209000),
       ("f", 0x0020B000), ("g", 0x0020C000), ("h", 0x0020F000), ("i", 0x00210000), ("j", 0x00211000),
       ("k", 0x00216000), ("l", 0x00212000), ("m", 0x00213000), ("n", 0x00214000)]
JEP = [("a", 0x00600000), ("b", 0x00601000), ("c", 0x00602000), ("d", 0x00603000)]

UNITS = [
    *versions("kor", "One unit of type Kor, version {}, and the BMUs of the extension boards that it may have.", 471234,
              "K", KOR),
    *versions("zup", "One extension unit of type Zup, version {}, beside the Kor unit that it belongs to.", 472111, "Z",
              ZUP),
    Unit("zupy", "zup", "ZUPY", 0x00217000, "472135A.101", "ZY160100001", {},
         "One extension unit of type Zup, whose BMU images bear another name than those of the other versions. Its "
         "type is known by its identifier, its version is not."),
    *versions("jep", "One unit of type Jep, version {}.", 473001, "J", JEP),
    *versions("dax", "One unit of type Dax, version {}.", 475001, "D", [("a", 0x0FD01000), ("b", 0x0FD02000)]),
    *versions("lom", "One unit of type Lom, version {}.", 476001, "L", [("a", 0x0FE01000), ("b", 0x0FE02000)]),
    Unit("vel", "vel", "VELA", 0x00700000, "477001A.101", "V1160100001", {}, "One unit of type Vel. " + NO_ROW),
    Unit("vem", "vel", "VEMA", 0x00800000, "478001A.101", "V2160100001", {}, "One unit of type Vem. " + NO_ROW),
    # The backup area and a blank primary one: what a broken update of the boot loader leaves.
    wim("wim", 1, "a single board with a TDD radio card in slot 0; its boot loader runs from the backup area",
        location="backup"),
    wim("wim-master", 2, "a master board with a TDD radio card in slot 0"),
    wim("wim-slave", 3, "a slave board with FDD radio cards in slots 0 and 1", (2, 2, 0)),
    wim("wim-pico", 4, "a pico board with an FDD radio card", (2, 0, 0)),
    wim("wim-plumb-4x4", 5, "a PLUMB 4x4 board with two TDD radio cards", (1, 1, 0)),
    wim("wim-pico-db", 6, "a pico dual-band board with mixed radio cards", (3, 3, 0)),
    wim("wim-single-7", 7, "a single board with an FDD radio card", (2, 0, 0)),
    wim("wim-pico-db-8", 8, "a pico dual-band board with a TDD (MBIO2) radio card", (6, 0, 0)),
    wim("wim-pico-db-9", 9, "a pico dual-band board without a radio card", (0, 0, 0)),
]


def number(value, digits=1):
    return f"0x{value:0{digits}X}"


def fpga(fpgaId, version, slots=1, **more):
    shown = number(version) if version > 0xFF else version
    areas = [{"slot": slot, "version": shown} for slot in range(1, slots + 1)]
    return {"id": fpgaId if fpgaId == 1 else number(fpgaId), "activeVersion": shown, "slots": areas, **more}


def information(resets, connectivity=None):
    values = [{"category": 0, "key": 15, "value": resets}]
    return values + ([] if connectivity is None else [{"category": 3, "key": 6, "value": connectivity}])


def kor(unit):
    bmus = [fpga(board << 16 | 1, 5) for board in (2, 3, 4)]
    more = [fpga(0x10002, 0x160109, 2)] if unit.name == "kore" else []
    supply = {"ac": False, "samples": 8, "inputVoltageMv": 48000, "inputCurrentMa": 2500, "outputVoltageMv": 12000,
              "outputCurrentMa": 9500, "inputPowerMw": 120000}
    memory = {"address": "0x90000000", "size": "0x1000000"}
    return {
        "fpgas": [fpga(1, 7), fpga(0x10001, 0x160109, 2), *more, *bmus],
        "rapidIo": {"ownId": "0x1011", "endpoints": ["0x1031", "0x1041"],
                    "switches": [{"device": "0x10F0", "ports": 8}],
                    "memories": [{"device": "0x1031", **memory}, {"device": "0x1041", **memory}]},
        "power": {"supplies": [supply], "feeds": [{"number": 0, "on": True}, {"number": 1, "on": False}]},
        "alarms": {"external": 0, **({"eac2": 0} if unit.name == "kore" else {}), "outputs": 6},
        "systemInformation": information(3, 1),
        "bipDomain": 0, "sfpPorts": 2, "ethernetPorts": 6,
        "radio": {"cpriModules": 2, "cpriLinks": 3, "cpriContainers": 24, "rp3Streams": 64, "rp3Groups": 8}}


def zup(unit):
    control = {"resetControl": True} if unit.id in ("ZUPA", "ZUPB", "ZUPM", "ZUPN") else {}
    return {"fpgas": [fpga(1, 5, **control)],
            "rapidIo": {"ownId": "0x1231", "endpoints": ["0x1011"],
                        "memories": [{"device": "0x1011", "address": "0x10000000", "size": "0x100000"}]},
            "systemInformation": information(0, 0), "ethernetPorts": 2}


def plain(_):
    return {"fpgas": [fpga(1, 3)], "rapidIo": {"ownId": "0x1011"}, "systemInformation": information(0),
            "ethernetPorts": 4}


def vel(_):
    return {"fpgas": [fpga(1, 3), fpga(0x70001, 12, 2)], "rapidIo": {"ownId": "0x1011"},
            "systemInformation": information(0), "ethernetPorts": 4}


def wimDevices(unit):
    cards = [{"category": 0, "key": 12, "indexKind": 5, "index": slot, "value": card}
             for slot, card in enumerate(unit.more["cards"])]
    return {"systemInformation": information(0) + cards, "sfpPorts": 1, "ethernetPorts": 2}


DEVICES = {"kor": kor, "zup": zup, "jep": plain, "dax": plain, "lom": plain, "vel": vel, "wim": wimDevices}


def node(unit):
    isZup = unit.family == "zup"
    identity = {"id": unit.id, "hwSwId": number(unit.hwSwId, 8), "productionCode": unit.code,
                "serialNumber": unit.serial}
    if unit.family == "kor":
        identity.update(dieId="00112233445566778899aabbccddeeff", dieIdQuality="good")
    identity["slot"] = {"zup": 1, "jep": 4}.get(unit.family, 0)
    if "boardType" in unit.more:
        identity["boardType"] = unit.more["boardType"]
    described = {"id": "0x1231" if isZup else "0x1011", "name": "Zup in slot 1, first processor" if isZup else
                 f"{unit.id[:3].capitalize()}, first processor", "unit": identity}
    if isZup:
        described["otherUnits"] = [{"number": 1, "id": "KORA", "hwSwId": "0x00500000", "serialNumber": "K1160100001"}]
    if unit.family == "kor":
        described["module"] = {"id": "MDAA", "productionCode": "511001A.101", "serialNumber": "M1160100001"}
    described["devices"] = {
        "boot": {"location": unit.more.get("location", "primary"), "version": "20160115", "linuxActive": 53},
        "flash": [{"id": 53, "path": "/ffs/fs1"}, {"id": 54, "path": "/ffs/fs2"}], **DEVICES[unit.family](unit)}
    return described


def tags(unit):
    if unit.family == "kor":
        return {"tags": [{"name": "sys.unit.ownboard", "type": "u8", "value": "0x10"},
                         {"name": "sys.hwapi.version", "value": "workstation"}]}
    if unit.family == "zup":
        return {"tags": [{"name": "app.hwapi.ips.zup1.ipv6.hostname.cpua", "value": "zup0s1cpua"}]}
    return {}


def written(value, indent=0, room=WIDTH):
    """JSON in which everything that fits stands on one line."""
    line = json.dumps(value).replace("{", "{ ").replace("}", " }")
    if not isinstance(value, (dict, list)) or (len(line) <= room and indent > 0):
        return line
    inner = " " * (indent + 2)
    isObject = isinstance(value, dict)
    begins = [f"{json.dumps(key)}: " for key in value] if isObject else [""] * len(value)
    items = [begin + written(item, indent + 2, WIDTH - indent - 2 - len(begin) - 1)
             for begin, item in zip(begins, value.values() if isObject else value)]
    opening, closing = "{}" if isObject else "[]"
    return f"{opening}\n{inner}" + f",\n{inner}".join(items) + f"\n{' ' * indent}{closing}"


def comment(text):
    lines = ["//"]
    for word in text.split():
        if len(lines[-1]) + 1 + len(word) > WIDTH:
            lines.append("//")
        lines[-1] += " " + word
    return "\n".join(lines + ["// Made by scripts/make-boards.py: change its table, or make a copy of this file."])


def description(unit):
    whole = {"$schema": "../board.schema.json", "name": unit.name, "nodes": [node(unit)], **tags(unit)}
    return f"{comment(unit.comment)}\n{written(whole)}\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true", help="change nothing, name the files that differ")
    options = parser.parse_args()
    differing = []
    for unit in UNITS:
        path, text = FOLDER / f"{unit.name}.json", description(unit)
        if path.exists() and path.read_text(encoding="utf-8") == text:
            continue
        differing.append(path)
        if not options.check:
            path.write_text(text, encoding="utf-8")
    for path in differing:
        print(f"{path}: {'differs from the table' if options.check else 'written'}")
    print(f"{len(UNITS)} boards, {len(differing)} {'differ' if options.check else 'written'}")
    return 1 if options.check and differing else 0


if __name__ == "__main__":
    sys.exit(main())
