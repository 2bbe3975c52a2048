# SPDX-License-Identifier: MIT
"""Checks that built files have the usual hardening against memory errors.

Every file has to be linked with it. Its code is checked as well, except the plug-in's and, for
fortified copies, that of files without a copy whose length could be known.

usage: check_hardening.py READELF PLUGIN WITHOUT_COPIES... -- FILE..."""

import os
import re
import subprocess
import sys


def read(readelf, *arguments):
    return subprocess.run([readelf, "--wide", *arguments], check=True, capture_output=True,
                          text=True).stdout


def linking_faults(readelf, file):
    dynamic = read(readelf, "--dynamic", file)
    segments = read(readelf, "--program-headers", file)
    is_program = "Requesting program interpreter" in segments
    if is_program and not re.search(r"\(FLAGS_1\).*\bPIE\b", dynamic):
        yield "is a program at a fixed address"
    if "GNU_RELRO" not in segments:
        yield "keeps its relocated data writable"
    if not re.search(r"\(FLAGS(_1)?\).*\b(BIND_)?NOW\b", dynamic):
        yield "is bound as it runs, so its table of functions stays writable"
    if not re.search(r"GNU_STACK.*\bRW\b", segments):
        yield "asks for an executable stack"
    if "TEXTREL" in dynamic:
        yield "has relocations in its code"


def needed_by(readelf, file):
    return set(re.findall(r"\bUND (\w+)", read(readelf, "--dyn-syms", file)))


def stack_faults(readelf, file):
    if "__stack_chk_fail" not in needed_by(readelf, file):
        yield "does not guard its stack"


def copy_faults(readelf, file):
    checked = (name for name in needed_by(readelf, file) if re.fullmatch(r"__\w+_chk", name))
    if not any(checked):
        yield "does not check the lengths that the C library writes"


def main(readelf, *given):
    separator = given.index("--")
    others, files = given[:separator], given[separator + 1:]
    everything = others + files
    checks = ((linking_faults, everything), (stack_faults, everything[1:]), (copy_faults, files))
    faults = [f"{file}: {fault}" for check, of in checks for file in of
              for fault in check(readelf, file)]
    for fault in faults:
        print(fault)
    print(f"{', '.join(map(os.path.basename, everything))}: {len(faults)} faults")
    return 1 if faults or not files else 0


sys.exit(main(*sys.argv[1:]))
