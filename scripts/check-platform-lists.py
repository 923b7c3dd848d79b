#!/usr/bin/env python3
"""Compares the functions that the platform's headers declare with the families' lists, and looks for missing texts.

Fails, naming each, when a declared function is in no list, a listed one is not declared, one is listed twice, or a
declaration has no `///` text directly above it. Functions with `...` are not listed, yet documented like the others.
Usage: check-platform-lists.py [include folder]
"""
import pathlib
import re
import sys

ATTRIBUTE = re.compile(r"__attribute__\s*\(\((?:[^()]|\((?:[^()]|\([^()]*\))*\))*\)\)")
LISTED = re.compile(r"\bMOX_(?:FUNCTION0?\s*\([^,]+,\s*|PROCEDURE0?\s*\(\s*)(\w+)")


def blanked(match):
    return re.sub(r"[^\n]", " ", match.group())


def codeOnly(text):
    """The text without comments, preprocessor lines, attributes and linkage braces, every line where it was."""
    text = re.sub(r"/\*.*?\*/|//[^\n]*", blanked, text, flags=re.S)
    text = re.sub(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", blanked, text, flags=re.M)
    text = ATTRIBUTE.sub(blanked, text)
    return re.sub(r'extern\s+"C"\s*\{?', blanked, text)


def statements(code):
    """Each statement that ends with a semicolon outside of braces, with its offset; of braces only `{` is kept."""
    depth, kept, start = 0, "", 0
    for offset, char in enumerate(code):
        if char == "}":
            depth = max(0, depth - 1)
            if depth == 0 and "(" in kept:  # a function's body has no semicolon behind it
                kept = ""
        elif char == ";" and depth == 0:
            yield start, kept
            kept = ""
        elif depth == 0 and (kept or not char.isspace()):
            start = start if kept else offset
            kept += char
        depth += char == "{"


def declaredFunctions(header):
    """Name, line number, whether it is variadic and whether it is documented, of each function."""
    text = header.read_text(encoding="utf-8")
    lines = text.splitlines()
    for start, statement in statements(codeOnly(text)):
        if re.match(r"(typedef|static|static_assert|_Static_assert)\b", statement) or "{" in statement:
            continue
        name = re.search(r"(\w+)\s*\(", statement)
        if name:
            line = text.count("\n", 0, start)
            above = lines[line - 1].strip() if line else ""
            yield name.group(1), line + 1, "..." in statement, above.startswith("///")


def main(folder):
    faults, declared, listed = [], {}, {}
    for header in sorted(h for family in ("pal", "ddal") for h in (folder / family).glob("*.h")):
        for name, line, variadic, documented in declaredFunctions(header):
            declared.setdefault(name, variadic)
            if not documented:
                faults.append(f"{header}:{line}: {name} has no /// text directly above")
    for family in sorted((folder / "families").glob("*.def")):
        for name in LISTED.findall(re.sub(r"//[^\n]*", "", family.read_text(encoding="utf-8"))):
            if name in listed:
                faults.append(f"{family}: {name} is also in {listed[name]}")
            listed[name] = family
    faults += [f"{name} is declared but in no list" for name, variadic in declared.items()
               if not variadic and name not in listed]
    faults += [f"{family}: {name} is listed but not declared" for name, family in listed.items()
               if name not in declared]
    faults += [f"{listed[name]}: {name} has ... and cannot be listed" for name, variadic in declared.items()
               if variadic and name in listed]
    if not declared or not listed:
        faults.append(f"{folder}: no functions found")
    print("\n".join(faults + [f"{len(declared)} functions declared, {len(listed)} listed, {len(faults)} faults"]))
    return 1 if faults else 0


if __name__ == "__main__":
    here = pathlib.Path(__file__).resolve().parent.parent
    sys.exit(main(pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else here / "Platform/include"))
