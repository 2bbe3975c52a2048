# SPDX-License-Identifier: MIT
"""Compares what built plug-ins export and need with the reviewed lists.

usage: check_symbols.py READELF EXPORTS_MAP COMMANDS_H NEEDED_TXT PLUGIN...

What a plug-in needs varies with the optimisation: each plug-in may need only what the list has, and the
plug-ins together have to need all of it, except what depends on the compiler."""

import pathlib
import re
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "protocol"))

from device_interface import Interface  # noqa: E402

EXPECTED_FLAGS = {"NOW", "NODELETE"}
MUSL, GLIBC = "libc.so", "libc.so.6"


def read(readelf, *arguments):
    return subprocess.run([readelf, "--wide", *arguments], check=True, capture_output=True,
                          text=True).stdout


def exports_in(map_file):
    with open(map_file, encoding="utf-8") as text:
        listed = re.sub(r"/\*.*?\*/", "", text.read(), flags=re.S)
    return set(re.findall(r"^\s+(\w+);", listed.split("local:")[0], re.M))


def handlers_in(command_table):
    with open(command_table, encoding="utf-8") as text:
        return set(re.findall(r'COMMAND\("\w+",\s*(\w+)\)', text.read()))


def needed_in(list_file):
    sections = {}
    with open(list_file, encoding="utf-8") as lines:
        for line in map(str.strip, lines):
            if line.startswith("["):
                section = sections.setdefault(line[1:-1], set())
            elif line and not line.startswith("#"):
                section.add(line)
    return sections


def symbols(readelf, plugin):
    """The dynamic symbols: exported ones, and undefined ones by their binding."""
    exported, undefined = set(), {"GLOBAL": set(), "WEAK": set()}
    for line in read(readelf, "--dyn-syms", plugin).splitlines():
        fields = line.split()
        if len(fields) < 8 or fields[4] not in undefined:
            continue
        binding, section, name = fields[4], fields[6], fields[7].split("@")[0]
        if section == "UND":
            undefined[binding].add(name)
        else:
            exported.add(name)
    return exported, undefined


def faults_of(readelf, plugin):
    dynamic = read(readelf, "--dynamic", plugin)
    flags = set(re.findall(r"\w+", " ".join(re.findall(r"\(FLAGS(?:_1)?\)\s+(.*)", dynamic))))
    if not EXPECTED_FLAGS <= flags:
        yield f"lacks the flags {sorted(EXPECTED_FLAGS - flags)}"
    if "TEXTREL" in dynamic:
        yield "has relocations in its code"
    segments = read(readelf, "--program-headers", plugin)
    if "GNU_RELRO" not in segments and ".data.rel.ro" in read(readelf, "--section-headers", plugin):
        yield "keeps its relocated data writable"
    if re.search(r"GNU_STACK.*RWE", segments):
        yield "requires an executable stack"


def main(readelf, map_file, command_table, list_file, *plugins):
    exports, needed = exports_in(map_file) | handlers_in(command_table), needed_in(list_file)
    libraries, weak = needed.pop("libraries"), needed.pop("weak")
    strong = set(Interface().functions).union(*needed.values())
    required = strong - needed["compiler"]
    faults, ever_undefined = [], set()
    for plugin in plugins:
        exported, undefined = symbols(readelf, plugin)
        ever_undefined |= undefined["GLOBAL"]
        found = re.findall(r"\(NEEDED\).*\[(.*)\]", read(readelf, "--dynamic", plugin))
        found = {GLIBC if library == MUSL else library for library in found}
        for what, names in (("exports beyond the map and the table", exported - exports),
                            ("does not export", exports - exported),
                            ("needs beyond the list", undefined["GLOBAL"] - strong),
                            ("needs weakly beyond the list", undefined["WEAK"] - weak),
                            ("needs other libraries", found ^ libraries)):
            faults += [f"{plugin}: {what}: {name}" for name in sorted(names)]
        faults += [f"{plugin}: {fault}" for fault in faults_of(readelf, plugin)]
    faults += [f"listed but never needed: {name}" for name in sorted(required - ever_undefined)]
    for fault in faults:
        print(fault)
    print(f"{len(plugins)} plug-ins, {len(exports)} exports, {len(strong)} needed symbols, "
          f"{len(faults)} faults")
    return 1 if faults or not plugins or not exports else 0


sys.exit(main(*sys.argv[1:]))
