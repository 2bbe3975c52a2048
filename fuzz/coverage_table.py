#!/usr/bin/env python3
"""Prints what llvm-cov exports as one line for each file, the poorest first, and a total."""

import json
import os
import sys


def row(name, lines):
    return f"{lines['percent']:6.2f} %  {lines['covered']:6} of {lines['count']:6}  {name}"


def main():
    data = json.load(sys.stdin)["data"][0]
    files = sorted(data["files"], key=lambda file: (file["summary"]["lines"]["percent"], file["filename"]))
    for file in files:
        print(row(os.path.relpath(file["filename"]), file["summary"]["lines"]))
    print(row("total", data["totals"]["lines"]))


main()
