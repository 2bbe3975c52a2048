# SPDX-License-Identifier: MIT
"""Runs the example of docs/record_and_replay.md line by line, and compares the outputs that it shows:
page_test.py HGAGENT"""
import os
import pathlib
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs/record_and_replay.md"
EXAMPLE = "## From a fault on a router to a test\n"


def steps():
    """Each command with the output that the page shows."""
    found, in_code = [], False
    for line in PAGE.read_text(encoding="utf-8").partition(EXAMPLE)[2].splitlines(keepends=True):
        if line.startswith("```"):
            in_code = not in_code
        elif in_code and line.startswith("$ "):
            found.append([line[2:], ""])
        elif in_code:
            found[-1][1] += line
    return found


def main(hgagent):
    wrong = 0
    with tempfile.TemporaryDirectory() as folder:
        for name in ("examples", "smart_router_service"):
            os.symlink(ROOT / name, pathlib.Path(folder, name))
        environment = {**os.environ, "PATH": f"{pathlib.Path(hgagent).parent}:{os.environ['PATH']}",
                       "ASAN_OPTIONS": "verify_asan_link_order=0"}
        for command, output in steps():
            result = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, text=True,
                                    stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, check=False)
            if result.stdout != output:
                wrong += 1
                print(f"{command}shows\n{output}and prints\n{result.stdout}")
    print(f"{len(steps())} commands")
    return wrong or len(steps()) < 10


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]).resolve()))
