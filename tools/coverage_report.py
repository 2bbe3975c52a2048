#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Prints which lines and branches of the plug-in its unit tests have reached, by file.

Reads the counters of the programs in the build folder with gcov. Fails when a line or a branch was not reached,
unless the line has a comment UNREACHABLE with the reason.
"""
import argparse
import json
import pathlib
import subprocess
import sys
from collections import defaultdict

PLUGIN = pathlib.Path(__file__).resolve().parent.parent / "smart_router_service"

# The macro also checks for a null array, which its users have always done before. Its other branch is
# covered if the lines in the loop and after it are.
LOOP_MACRO = "cJSON_ArrayForEach"


def counted_lines(folder):
    """The plug-in's lines in the objects below the folder; a line is repeated for each copy of it."""
    counters = sorted(folder.rglob("*.gcda"))
    run = subprocess.run(["gcov", "--json-format", "--branch-probabilities", "--stdout", *counters],
                         check=True, stdout=subprocess.PIPE, text=True)
    for report in map(json.loads, run.stdout.splitlines()):
        for source in report["files"]:
            path = pathlib.Path(report["current_working_directory"], source["file"]).resolve()
            if path.is_relative_to(PLUGIN):
                for line in source["lines"]:
                    yield path, line


def branches_of(line):
    """The branches of a line except those of exceptions, which only the tests have."""
    counts = [branch["count"] for branch in line["branches"] if not branch["throw"]]
    return [((line["line_number"], len(counts), at), hits) for at, hits in enumerate(counts)]


def count(build_folder):
    """How often each line and each branch of a line was reached, by file."""
    lines = defaultdict(lambda: defaultdict(int))
    branches = defaultdict(lambda: defaultdict(int))
    for path, line in counted_lines(build_folder / "smart_router_service"):
        lines[path][line["line_number"]] += line["count"]
        for key, hits in branches_of(line):
            branches[path][key] += hits
    # The linker takes any copy of an inline function or a template, even one in a test, so the test's
    # counts are added to the plug-in's.
    for path, line in counted_lines(build_folder / "tests"):
        if line["line_number"] in lines[path]:
            lines[path][line["line_number"]] += line["count"]
        for key, hits in branches_of(line):
            if key in branches[path]:
                branches[path][key] += hits
    return lines, branches


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build_folder", type=pathlib.Path)
    lines, branches = count(parser.parse_args().build_folder.resolve())
    totals = [0, 0, 0, 0]
    missing = []
    print(f"{'lines':>11} {'branches':>11}")
    for path in sorted(lines):
        text = path.read_text().splitlines()
        explained = {number for number, line in enumerate(text, 1)
                     if "UNREACHABLE" in line or LOOP_MACRO in line}
        of_lines = {line: hits for line, hits in lines[path].items() if line not in explained}
        of_branches = {key: hits for key, hits in branches[path].items() if key[0] in of_lines}
        figures = [sum(map(bool, of_lines.values())), len(of_lines),
                   sum(map(bool, of_branches.values())), len(of_branches)]
        totals = [total + figure for total, figure in zip(totals, figures)]
        print("{:5}/{:5} {:5}/{:5}".format(*figures), path.relative_to(PLUGIN))
        missing += [f"{path}:{line}: not reached" for line, hits in of_lines.items() if not hits]
        missing += [f"{path}:{line}: branch {at + 1} of {number} not taken"
                    for (line, number, at), hits in of_branches.items()
                    if not hits and of_lines[line]]
    print("{:5}/{:5} {:5}/{:5} in total".format(*totals))
    print("\n".join(missing), end="\n" if missing else "")
    return 1 if missing or not totals[0] else 0


if __name__ == "__main__":
    sys.exit(main())
