# SPDX-License-Identifier: MIT
"""Prints what the plug-in needs on a router: its sections, the code of each handler and its stack.
size_report.py [--check] READELF OBJDUMP STRIP PLUGIN OBJECT...; with --check it fails when a limit is exceeded.

Code that only one exported function needs is counted as part of it; shared code is listed separately. The objects
have a section for each function, so their relocations show the dependencies."""

import collections
import lzma
import os
import pathlib
import re
import subprocess
import sys
import tempfile

MOST_FILE = 96 * 1024  # bytes of the stripped file
MOST_FILE_MIPS16 = 84 * 1024
MOST_COMPRESSED = 32 * 1024
PAGE = 4 * 1024
MOST_PRIVATE_PAGES = 1
MOST_STACK = 8 * 1024  # of a handler with all that it calls in the plug-in

SHOWN = 20  # frames


def run(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def sections_of(readelf, file):
    """Each section of a file: name, size and flags."""
    for line in run(readelf, "--section-headers", "--wide", file).splitlines():
        if match := re.match(r"\s*\[ *\d+\] (\S+)\s+\S+\s+[0-9a-f]{8} [0-9a-f]+ ([0-9a-f]+) \S+ +([A-Za-z]*) ", line):
            yield match[1], int(match[2], 16), match[3]


def private_pages(readelf, file):
    """The private pages of a process that has loaded the file: those that are written when it is loaded."""
    pages = set()
    for line in run(readelf, "--program-headers", "--wide", file).splitlines():
        if match := re.match(r"\s*LOAD +0x\w+ 0x(\w+) 0x\w+ 0x\w+ 0x(\w+) RW", line):
            start, size = int(match[1], 16), int(match[2], 16)
            pages |= set(range(start // PAGE, (start + size - 1) // PAGE + 1))
    return len(pages)


def exported_by(readelf, plugin):
    table = run(readelf, "--dyn-syms", "--wide", plugin)
    return set(re.findall(r" FUNC +GLOBAL +\S+(?: \[.*\])? +(?!UND)\S+ (\w+)$", table, re.M))


class Code:
    """The functions and constants of the objects, by their sections, and the dependencies between them."""

    def __init__(self, readelf, objdump, objects):
        self.size, self.frame = {}, {}
        self.needs = collections.defaultdict(set)
        for file in objects:
            self.read_object(readelf, objdump, file)

    def read_object(self, readelf, objdump, file):
        stem = pathlib.Path(file).name.partition(".")[0]
        local = set(re.findall(r" LOCAL +DEFAULT(?: \[.*\])? +\d+ (\S+)$",
                               run(readelf, "--symbols", "--wide", file), re.M))
        mergeable = set()

        def name_of(symbol):
            name = re.sub(r"^\.(text|rodata|data\.rel\.ro\.local|data\.rel\.ro)\.", "", symbol)
            return f"{stem}: {name}" if name in local or name.startswith("_ZL") else name

        for name, size, flags in sections_of(readelf, file):
            if "M" in flags:
                mergeable.add(name)
            elif re.match(r"\.(text|rodata)\.", name) and size:
                self.size[name_of(name)] = (size, name.startswith(".text"))
        function = None
        for line in run(readelf, "--relocs", "--wide", file).splitlines():
            if match := re.match(r"Relocation section '\.rel(\.\S+)'", line):
                function = name_of(match[1])
            elif match := re.match(r"[0-9a-f]{8}  [0-9a-f]{8} R_MIPS\w+ +[0-9a-f]{8} +(\S+)", line):
                if match[1] not in mergeable:
                    self.needs[function].add(name_of(match[1]))
        for line in run(objdump, "--disassemble", "--no-show-raw-insn", file).splitlines():
            if match := re.match(r"[0-9a-f]{8} <(\S+)>:", line):
                function = name_of(match[1])
            elif match := re.search(r"\taddiu\tsp,(?:sp,)?-(\d+)|\tsave\t(?:a[^,]*,)?(\d+),", line):
                self.frame[function] = self.frame.get(function, 0) + int(match[1] or match[2])

    def reached(self, root, stop):
        """All that the root depends on, including itself, without following those in stop."""
        found, waiting = {root}, [root]
        while waiting:
            for name in self.needs[waiting.pop()]:
                if name in self.size and name not in found and name not in stop:
                    found.add(name)
                    waiting.append(name)
        return found

    def depth(self, function, above=()):
        """The deepest stack of a function, including that of the functions it calls."""
        assert function not in above, f"{function} calls itself, so its stack has no limit"
        called = [name for name in self.needs[function] if self.size.get(name, (0, False))[1] and name != function]
        return self.frame.get(function, 0) + max((self.depth(name, (*above, function)) for name in called), default=0)


def demangled(names):
    plain = run("c++filt", *(name.rpartition(": ")[2] for name in names)).splitlines()
    for name, text in zip(names, plain):
        yield name.rpartition(": ")[0], re.sub(r"smart_router::|\(anonymous namespace\)::", "", text)


def main(readelf, objdump, strip, plugin, *objects, check=False):
    with tempfile.TemporaryDirectory() as directory:
        stripped = os.path.join(directory, "plugin.so")
        subprocess.run([strip, "-o", stripped, plugin], check=True)
        content = pathlib.Path(stripped).read_bytes()
        sections = list(sections_of(readelf, stripped))
        pages = private_pages(readelf, stripped)
        is_mips16 = "mips16" in run(readelf, "--file-header", stripped)
    compressed = len(lzma.compress(content, preset=9 | lzma.PRESET_EXTREME))
    for name, size, _ in sorted(sections, key=lambda section: -section[1]):
        print(f"{size:8} {name}")

    code = Code(readelf, objdump, objects)
    exported = exported_by(readelf, plugin) & code.size.keys()
    leads_to = {root: code.reached(root, exported - {root}) for root in exported}
    users = collections.Counter(name for names in leads_to.values() for name in names)

    def total(names, is_code):
        return sum(size for size, what in (code.size[name] for name in names) if what == is_code)

    print("\n    code  constants  stack  exported function, with what only it needs")
    depths = {root: code.depth(root) for root in exported}
    rows = {root: [name for name in names if users[name] == 1] for root, names in leads_to.items()}
    for root, own in sorted(rows.items(), key=lambda row: (-total(row[1], True), row[0])):
        print(f"{total(own, True):8} {total(own, False):10} {depths[root]:6}  {root}")
    shared = sorted((name for name in users if users[name] > 1), key=lambda name: (-code.size[name][0], name))
    print("\n    size  users  shared")
    for name, (file, text) in zip(shared, demangled(shared)):
        print(f"{code.size[name][0]:8} {users[name]:6}  {text}{f' ({file})' if file else ''}")
    largest = sorted(code.frame, key=lambda name: (-code.frame[name], name))[:SHOWN]
    print("\n   frame  function")
    for name, (_, text) in zip(largest, demangled(largest)):
        print(f"{code.frame[name]:8}  {text}")

    deepest = max(depths, key=depths.get)
    print()
    broken = 0
    for what, value, most in (("bytes of the file, stripped", len(content),
                               MOST_FILE_MIPS16 if is_mips16 else MOST_FILE),
                              ("bytes of it compressed", compressed, MOST_COMPRESSED),
                              ("pages of private memory", pages, MOST_PRIVATE_PAGES),
                              (f"bytes of stack in {deepest}", depths[deepest], MOST_STACK)):
        broken += value > most
        print(f"{value} {what}, at most {most}{'  <-- too much' if value > most else ''}")
    return 1 if check and broken else 0


if __name__ == "__main__":
    arguments = [argument for argument in sys.argv[1:] if argument != "--check"]
    sys.exit(main(*arguments, check=len(arguments) < len(sys.argv) - 1))
