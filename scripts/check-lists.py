#!/usr/bin/env python3
"""Compares what lies on disk with what the build lists, and looks at the shape of files.

- Every source below a built folder is named in a CMakeLists.txt or *.cmake of the tree: a test file that nobody
  compiles is a test that nobody runs.
- Each ...Test.cpp below Tests, and in the test folder of a service, holds a test.
- No file of code is longer than 500 lines, has blanks at the end of a line, or lines that end in CRLF.
"""
import argparse
import pathlib
import re
import subprocess
import sys
import tempfile

BUILT = ["Platform", "Board", "Common", "Firmware", "TestKit", "Services", "Tools", "Tests", "Benchmarks"]
CODE = {".cpp", ".c", ".hpp", ".h"}
MOST_LINES = 500
TEST = re.compile(r"^\s*(TEST|TEST_F|TEST_P|TYPED_TEST|TYPED_TEST_P)\s*\(", re.MULTILINE)


def trackedFiles(top):
    listed = subprocess.run(["git", "-C", str(top), "ls-files", "--cached", "--others", "--exclude-standard", "-z"],
                            check=True, capture_output=True, text=True).stdout
    return sorted(name for name in listed.split("\0") if name and (top / name).is_file())


def listedSources(top, files):
    """The sources that some list of the build names: relative to the list's folder, or to the root of the tree."""
    found = set()
    for name in files:
        if not (name.endswith("CMakeLists.txt") or name.endswith(".cmake")):
            continue
        folder = (top / name).parent
        text = re.sub(r"#.*", "", (top / name).read_text(encoding="utf-8"))
        text = re.sub(r"\$\{(PROJECT|CMAKE)_SOURCE_DIR\}", str(top), text)
        text = re.sub(r"\$\{CMAKE_CURRENT_(SOURCE|LIST)_DIR\}", str(folder), text)
        for word in re.findall(r'[^\s()";]+\.(?:cpp|c)\b', text):
            found.add((folder / word).resolve())
    return found


def unlisted(top, files):
    listed = listedSources(top, files)
    for name in files:
        isSource = name.endswith((".cpp", ".c")) and name.split("/")[0] in BUILT
        if isSource and "/data/" not in name and (top / name).resolve() not in listed:
            yield f"{name}: no list of the build names it"


def withoutTest(top, files):
    for name in files:
        if re.match(r"(Tests/(unit|contract|scenario|sweep|abi)|Services/[^/]+/test)/.*Test\.cpp$", name):
            if not TEST.search((top / name).read_text(encoding="utf-8")):
                yield f"{name}: holds no test"


def shape(top, files):
    for name in files:
        path = top / name
        if path.suffix not in CODE or name.split("/")[0] not in BUILT:
            continue
        data = path.read_bytes()
        if data.count(b"\n") > MOST_LINES:
            yield f"{name}: {data.count(chr(10).encode())} lines, more than {MOST_LINES}"
        if b"\r\n" in data:
            yield f"{name}: CRLF line ends"
        if data and not data.endswith(b"\n"):
            yield f"{name}: no line end at the end"
        for number, line in enumerate(data.split(b"\n"), 1):
            if line.endswith((b" ", b"\t")):
                yield f"{name}:{number}: trailing blanks"


def check(top):
    files = trackedFiles(top)
    return [*unlisted(top, files), *withoutTest(top, files), *shape(top, files)]


# path -> text of a tree, and the beginnings of the findings that are expected in it.
FIXTURES = [
    ({"Tests/unit/CMakeLists.txt": "mox_test(a SOURCES ATest.cpp)\n", "Tests/unit/ATest.cpp": "TEST(A, B) {}\n"}, []),
    ({"Tests/unit/CMakeLists.txt": "# ATest.cpp\n", "Tests/unit/ATest.cpp": "TEST(A, B) {}\n"},
     ["Tests/unit/ATest.cpp: no list"]),
    ({"Tests/unit/CMakeLists.txt": "x(${PROJECT_SOURCE_DIR}/Tests/unit/ATest.cpp)\n", "Tests/unit/ATest.cpp": "\n"},
     ["Tests/unit/ATest.cpp: holds no test"]),
    ({"Common/CMakeLists.txt": "x(src/A.cpp)\n", "Common/src/A.cpp": "\n" * MOST_LINES}, []),
    ({"Common/CMakeLists.txt": "x(src/A.cpp)\n", "Common/src/A.cpp": "\n" * (MOST_LINES + 1)},
     ["Common/src/A.cpp: 501 lines"]),
    ({"Common/include/mox/A.hpp": "int a; \n"}, ["Common/include/mox/A.hpp:1: trailing blanks"]),
    ({"Common/include/mox/A.hpp": "int a;\r\n"}, ["Common/include/mox/A.hpp: CRLF"]),
    ({"Common/include/mox/A.hpp": "int a;"}, ["Common/include/mox/A.hpp: no line end"]),
]


def selfTest():
    wrong = 0
    for texts, expected in FIXTURES:
        with tempfile.TemporaryDirectory() as folder:
            top = pathlib.Path(folder).resolve()
            subprocess.run(["git", "init", "-q", str(top)], check=True)
            for name, text in texts.items():
                (top / name).parent.mkdir(parents=True, exist_ok=True)
                (top / name).write_bytes(text.encode())
            found = check(top)
        if len(found) != len(expected) or any(not f.startswith(e) for f, e in zip(found, expected)):
            wrong += 1
            print(f"{list(texts)}: expected {expected}, got {found}")
    print(f"check-lists: {len(FIXTURES) - wrong} passed, {wrong} failed")
    return 1 if wrong else 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--self-test", action="store_true", help="check this check with good and bad trees")
    parser.add_argument("--root", type=pathlib.Path, default=pathlib.Path(__file__).resolve().parent.parent,
                        help="the tree to look at (default: this one)")
    arguments = parser.parse_args()
    if arguments.self_test:
        return selfTest()
    found = check(arguments.root.resolve())
    print("\n".join(found), end="\n" if found else "")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
