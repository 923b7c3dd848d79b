#!/usr/bin/env python3
"""Runs clang-tidy over the files named on standard input, and only where something may have changed.

A file whose text, compile command, included headers and configuration are those of an earlier check that found
nothing would pass again: it counts as unchanged and is not looked at. What was looked at is remembered below
$XDG_CACHE_HOME (else ~/.cache), in mox-tidy, and holds for every checkout of the tree.

Prints the findings, then how many files were checked, unchanged and left over. Status: 0 nothing found, 1 something.
"""
import argparse
import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import threading
import time

TIDY = "clang-tidy-14"
REMEMBERED = 8  # sets of contents a compile command: one for each branch that is at work
FINDING = re.compile(r"^.+:\d+:\d+: (?:warning|error|fatal error): ")
ABORT = re.compile(r": (?:fatal )?error: ")


def contentsOf(path, known={}):
    """What the file holds, as a number; a file that is not there has none."""
    if path not in known:
        try:
            known[path] = hashlib.sha256(pathlib.Path(path).read_bytes()).hexdigest()
        except OSError:
            known[path] = None
    return known[path]


def includedBy(entry):
    """Every file that the compiler reads for a source, itself included; none when it does not compile."""
    words = shlex.split(entry["command"])
    if "-o" in words:
        del words[words.index("-o"):words.index("-o") + 2]
    words = [word for word in words if word not in ("-c", "-MD") and not word.endswith("ccache")]
    run = subprocess.run([*words, "-M", "-MT", "x"], cwd=entry["directory"], capture_output=True, text=True)
    if run.returncode != 0:
        return []
    names = run.stdout.replace("\\\n", " ").split(":", 1)[1].split()
    return sorted({os.path.normpath(os.path.join(entry["directory"], name)) for name in names})


def replaceText(file, text):
    """At once: who reads meanwhile gets the old text or the new one."""
    draft = file.with_name(f"{file.name}.{os.getpid()}.{threading.get_ident()}")
    draft.write_text(text, encoding="utf-8")
    draft.replace(file)


@functools.lru_cache(maxsize=None)
def configurationIn(folder):
    file = folder / ".clang-tidy"
    return file.read_text(encoding="utf-8") if file.is_file() else ""


def configurationOf(source):
    """A folder's configuration adds to those of the folders above it."""
    return "".join(configurationIn(folder) for folder in pathlib.Path(source).parents)


class Memory:
    """Checks that found nothing: a JSON file a compile command, with the contents that were looked at."""

    def __init__(self, top, folder):
        self.top, self.folder = str(top), folder
        version = subprocess.run([TIDY, "--version"], check=True, capture_output=True, text=True).stdout
        self.version = version
        folder.mkdir(parents=True, exist_ok=True)

    def _fileOf(self, entry):
        text = self.version + configurationOf(entry["file"]) + (entry["command"] + entry["file"]).replace(self.top, "")
        return self.folder / (hashlib.sha256(text.encode()).hexdigest() + ".json")

    def _read(self, entry):
        try:
            return json.loads(self._fileOf(entry).read_text(encoding="utf-8"))
        except (OSError, ValueError):
            return []

    def holds(self, entry):
        return any(all(contentsOf(name.replace("$TOP", self.top, 1)) == contents for name, contents in looked.items())
                   for looked in self._read(entry))

    def add(self, entry, files):
        looked = {name.replace(self.top, "$TOP", 1): contentsOf(name) for name in files}
        file = self._fileOf(entry)
        other = [one for one in self._read(entry) if one != looked]
        replaceText(file, json.dumps([looked, *other][:REMEMBERED]))


def oneCommandEach(entries, folder):
    """A database for clang-tidy, which otherwise looks at a source once for each program that it is compiled for."""
    folder.mkdir(exist_ok=True)
    replaceText(folder / "compile_commands.json", json.dumps(entries))  # other runs may read it
    return str(folder)


def check(entry, database, memory):
    """@return what was found, as lines; empty when nothing was"""
    files = includedBy(entry)  # before the check: what changes meanwhile is looked at again
    for name in files:
        contentsOf(name)
    run = subprocess.run([TIDY, "--quiet", "-p", database, entry["file"]], capture_output=True, text=True)
    if run.returncode == 0:
        if files:
            memory.add(entry, files)
        return []
    return run.stdout.splitlines() + [line for line in run.stderr.splitlines() if ABORT.search(line)]


def printFindings(lines, top, seen):
    """A finding in a header shows once for each source that includes it: each is printed once, with its excerpt."""
    shown = True
    for line in lines:
        if FINDING.match(line):
            shown = line not in seen
            seen.add(line)
        if shown:
            print(line.replace(str(top) + "/", ""), flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--top", type=pathlib.Path, required=True, help="root of the tree")
    parser.add_argument("--build", type=pathlib.Path, required=True, help="folder with compile_commands.json")
    parser.add_argument("--jobs", type=int, default=1)
    parser.add_argument("--seconds", type=float, help="start no file after this time")
    arguments = parser.parse_args()

    commands = json.loads((arguments.build / "compile_commands.json").read_text(encoding="utf-8"))
    entryOf = {os.path.normpath(os.path.join(entry["directory"], entry["file"])): entry for entry in commands}
    entries = [entryOf[name] for name in sys.stdin.read().split("\n") if name]
    cache = os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache")
    memory = Memory(arguments.top, pathlib.Path(cache) / "mox-tidy")
    end = time.monotonic() + arguments.seconds if arguments.seconds else float("inf")

    database = oneCommandEach(list(entryOf.values()), arguments.build / "tidy")
    changed = [entry for entry in entries if not memory.holds(entry)]
    left, failed, seen = 0, 0, set()
    with concurrent.futures.ThreadPoolExecutor(arguments.jobs) as pool:
        def checkInTime(entry):
            return None if time.monotonic() >= end else check(entry, database, memory)
        for found in pool.map(checkInTime, changed):
            left += found is None
            if found:
                failed += 1
                printFindings(found, arguments.top, seen)
    print(f"tidy: {len(changed) - left} checked, {len(entries) - len(changed)} unchanged since a check that found "
          f"nothing, {left} left for want of time; {failed} with findings")
    return 1 if failed else 0


sys.exit(main())
