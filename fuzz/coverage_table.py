#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints the export of llvm-cov as one line for each file of the given folders, lowest coverage first, and
a total.

    llvm-cov export -summary-only ... | coverage_table.py FOLDER...
"""

import json
import os
import sys


def row(name, lines, covered):
    return f"{100 * covered / lines:6.2f} %  {covered:6} of {lines:6}  {name}"


def main():
    table = []
    for file in json.load(sys.stdin)["data"][0]["files"]:
        name = os.path.relpath(file["filename"])
        lines = file["summary"]["lines"]
        if name.split(os.sep)[0] in sys.argv[1:] and lines["count"] > 0:
            table.append((name, lines["count"], lines["covered"]))
    for entry in sorted(table, key=lambda entry: entry[2] / entry[1]):
        print(row(*entry))
    for folder in sys.argv[1:]:
        rows = [entry for entry in table if entry[0].startswith(folder + os.sep)]
        print(row("all of " + folder, *(sum(column) for column in list(zip(*rows))[1:])))


main()
