#!/usr/bin/env python3
"""Refuses an #include that breaks the direction of the layers.

Services, Tools -> Firmware -> Common -> Board -> Platform/include -> one of Platform/{host,mock,target}

What a file may include follows from the folder it lies in: the table ROOMS. Each violation is printed with file,
line and rule; the exit status is then 1.
"""
import argparse
import pathlib
import re
import sys
import tempfile

SUFFIXES = {".h", ".hpp", ".c", ".cpp", ".def", ".inc"}
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')

# Folders that an include may be relative to, beside the folder of the including file.
ROOTS = [".", "Platform/include", "Platform/include/families", "Platform", "Board/include", "Common/include",
         "Firmware/include", "TestKit/include", "Services/Kit/include", "Board/src", "Common/src", "Firmware/src",
         "TestKit/src", "Tools", "Tools/moxctl", "Tests", "Benchmarks"]

PLATFORM = ["Platform/include"]
LIBRARY = ["Firmware/include", "Common/include", "Board/include"] + PLATFORM

# room -> what it may include beside itself. The longest matching folder is a file's room.
ROOMS = {
    "Platform/include": [],
    "Platform/host": PLATFORM,
    "Platform/mock": PLATFORM + ["Platform/host"],
    "Platform/target": PLATFORM,
    "Board": PLATFORM,
    "Common": ["Board/include"] + PLATFORM,
    "Firmware": ["Common/include", "Board/include"] + PLATFORM,
    "TestKit": LIBRARY + ["Platform/host", "Platform/mock"],
    "Services/Kit": LIBRARY,
    "Services": LIBRARY + ["Services/Kit/include"],
    "Tools": LIBRARY + ["Platform/host", "TestKit/include"],
}
# The tests that lie beside a service, as templates for authors of others: what the test kit and the doubles offer, and
# the helpers of the tree's other tests.
SERVICE_TEST = re.compile(r"Services/[^/]+/test/")
SERVICE_TESTS = "A service's test"
ROOMS[SERVICE_TESTS] = ROOMS["Services"] + ["Services", "TestKit/include", "Platform/mock", "Tests/support"]
# Tests and benchmarks look into every room.
FREE = ["Tests", "Benchmarks"]

# Nothing but zlib, the boost headers and the C++ library reaches the board with libMOX.
BOARD_ROOMS = ["Platform/include", "Platform/target", "Board", "Common", "Firmware"]
HOST_LIBRARIES = re.compile(r"^(lmdb\.h|pugixml\.hpp|archive(_entry)?\.h|nats(\.h|/)|"
                            r"nlohmann/|spdlog/|fmt/|CLI/|gtest/|gmock/|benchmark/)")


def isBelow(path, folder):
    return path == folder or path.startswith(folder + "/")


def roomOf(path):
    if SERVICE_TEST.match(path):
        return SERVICE_TESTS
    rooms = [room for room in ROOMS if isBelow(path, room)]
    return max(rooms, key=len) if rooms else None


class Tree:
    def __init__(self, top):
        self.top = top
        self.files = sorted(
            p.relative_to(top).as_posix()
            for folder in {room.split("/")[0] for room in list(ROOMS) + FREE}
            for p in (top / folder).rglob("*")
            if p.suffix in SUFFIXES and p.is_file())
        self.known = set(self.files)

    def resolve(self, includer, name):
        """The file of the tree that the include means, or None when it lies outside of the tree."""
        folders = [str(pathlib.PurePosixPath(includer).parent)] + ROOTS
        for folder in folders:
            path = normalised(folder + "/" + name)
            if path in self.known:
                return path
        # Some target may have an include folder of its own: take the file by its tail, the includer's room first.
        tails = [path for path in self.files if path.endswith("/" + normalised(name))]
        tails.sort(key=lambda path: roomOf(path) != roomOf(includer))
        return tails[0] if tails else None


def normalised(path):
    parts = []
    for part in path.split("/"):
        if part == ".." and parts and parts[-1] != "..":
            parts.pop()
        elif part not in (".", ""):
            parts.append(part)
    return "/".join(parts)


def violation(includer, target, name):
    """The rule that the include breaks, or None."""
    room = roomOf(includer)
    if room is None:
        return None
    if target is None:
        if room in BOARD_ROOMS and HOST_LIBRARIES.match(name):
            return f"{room} reaches the board, and {name} does not"
        return None
    if "include" in includer.split("/") and "src" in target.split("/"):
        return "a public header includes no private one"
    services = {"Services", SERVICE_TESTS}
    if {room, roomOf(target)} <= services and target.split("/")[1] not in (includer.split("/")[1], "Kit"):
        return "a service includes no other service"
    if roomOf(target) == room:
        return None
    if any(isBelow(target, allowed) for allowed in ROOMS[room]):
        return None
    return f"{room} may include only itself" + "".join(f", {allowed}" for allowed in ROOMS[room])


def check(top):
    tree = Tree(top)
    found = []
    for includer in tree.files:
        text = (top / includer).read_text(encoding="utf-8", errors="replace")
        for number, line in enumerate(text.splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            rule = violation(includer, tree.resolve(includer, match[2]), match[2])
            if rule:
                found.append((includer, number, match[2], rule))
    return found


# includer, what it includes, whether that is allowed. The other file exists in the fixture as `made`.
FIXTURES = [
    ("Platform/include/pal/A.h", "pal/B.h", "Platform/include/pal/B.h", True),
    ("Platform/include/pal/A.h", "mox/Board.h", "Board/include/mox/Board.h", False),
    ("Platform/host/pal/A.cpp", "host/run/Run.hpp", "Platform/host/run/Run.hpp", True),
    ("Platform/host/pal/A.cpp", "mox/Worker.hpp", "Common/include/mox/Worker.hpp", False),
    ("Platform/host/pal/A.cpp", "mock/Mock.hpp", "Platform/mock/Mock.hpp", False),
    ("Platform/mock/A.cpp", "host/run/Run.hpp", "Platform/host/run/Run.hpp", True),
    ("Platform/mock/A.cpp", "mox/Board.h", "Board/include/mox/Board.h", False),
    ("Platform/target/A.cpp", "pal/B.h", "Platform/include/pal/B.h", True),
    ("Platform/target/A.cpp", "host/run/Run.hpp", "Platform/host/run/Run.hpp", False),
    ("Board/src/A.cpp", "ddal/B.h", "Platform/include/ddal/B.h", True),
    ("Board/src/A.cpp", "mox/Worker.hpp", "Common/include/mox/Worker.hpp", False),
    ("Common/src/A.cpp", "mox/Board.h", "Board/include/mox/Board.h", True),
    ("Common/src/A.cpp", "Tables.hpp", "Board/src/Tables.hpp", False),
    ("Common/src/A.cpp", "mox/Firmware.h", "Firmware/include/mox/Firmware.h", False),
    ("Firmware/src/A.cpp", "mox/Worker.hpp", "Common/include/mox/Worker.hpp", True),
    ("Firmware/src/A.cpp", "Services/Kit/include/kit/Main.hpp", "Services/Kit/include/kit/Main.hpp", False),
    ("Services/Echo/A.cpp", "mox/Firmware.h", "Firmware/include/mox/Firmware.h", True),
    ("Services/Echo/A.cpp", "host/run/Run.hpp", "Platform/host/run/Run.hpp", False),
    ("Services/Echo/A.cpp", "../Fan/Fan.hpp", "Services/Fan/Fan.hpp", False),
    ("Services/Echo/A.cpp", "kit/Main.hpp", "Services/Kit/include/kit/Main.hpp", True),
    ("Services/Echo/A.cpp", "testkit/Clock.hpp", "TestKit/include/testkit/Clock.hpp", False),
    ("Services/Echo/test/ATest.cpp", "testkit/Clock.hpp", "TestKit/include/testkit/Clock.hpp", True),
    ("Services/Echo/test/ATest.cpp", "Echo.hpp", "Services/Echo/Echo.hpp", True),
    ("Services/Echo/test/ATest.cpp", "../../Fan/Fan.hpp", "Services/Fan/Fan.hpp", False),
    ("Services/Echo/test/ATest.cpp", "mock/Mock.hpp", "Platform/mock/Mock.hpp", True),
    ("Services/Echo/test/ATest.cpp", "support/Image.hpp", "Tests/support/Image.hpp", True),
    ("Services/Echo/test/ATest.cpp", "host/run/Run.hpp", "Platform/host/run/Run.hpp", False),
    ("Services/Echo/Echo.cpp", "mock/Mock.hpp", "Platform/mock/Mock.hpp", False),
    ("Services/Kit/src/A.cpp", "testkit/Clock.hpp", "TestKit/include/testkit/Clock.hpp", False),
    ("Tools/moxctl/A.cpp", "host/run/Run.hpp", "Platform/host/run/Run.hpp", True),
    ("Tools/moxctl/A.cpp", "mock/Mock.hpp", "Platform/mock/Mock.hpp", False),
    ("TestKit/src/A.cpp", "mock/Mock.hpp", "Platform/mock/Mock.hpp", True),
    ("TestKit/src/A.cpp", "moxctl/Verb.hpp", "Tools/moxctl/Verb.hpp", False),
    ("Common/include/mox/A.hpp", "mox/B.hpp", "Common/include/mox/B.hpp", True),
    ("Common/include/mox/A.hpp", "../../src/Registry.hpp", "Common/src/Registry.hpp", False),
    ("Tests/unit/A.cpp", "../../Common/src/Registry.hpp", "Common/src/Registry.hpp", True),
    ("Platform/host/store/A.cpp", "lmdb.h", None, True),
    ("Common/src/A.cpp", "zlib.h", None, True),
    ("Common/src/A.cpp", "spdlog/spdlog.h", None, False),
]


def selfTest():
    wrong = 0
    for includer, name, made, allowed in FIXTURES:
        with tempfile.TemporaryDirectory() as folder:
            top = pathlib.Path(folder)
            for path in filter(None, (includer, made)):
                (top / path).parent.mkdir(parents=True, exist_ok=True)
                (top / path).write_text("")
            (top / includer).write_text(f"// first line\n#include <{name}>\n")
            found = check(top)
        asExpected = not found if allowed else [(f[0], f[1]) for f in found] == [(includer, 2)]
        if not asExpected:
            wrong += 1
            print(f"{includer} including {name}: expected {'nothing' if allowed else 'a violation'}, got {found}")
    print(f"check-layers: {len(FIXTURES) - wrong} passed, {wrong} failed")
    return 1 if wrong else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--self-test", action="store_true", help="check this check with one good and one bad file a rule")
    parser.add_argument("--root", type=pathlib.Path, default=pathlib.Path(__file__).resolve().parent.parent,
                        help="the tree to look at (default: this one)")
    arguments = parser.parse_args()
    if arguments.self_test:
        return selfTest()
    found = check(arguments.root)
    for includer, number, name, rule in found:
        print(f"{includer}:{number}: #include of {name}: {rule}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
