# SPDX-License-Identifier: MIT
"""Runs the compilations that the documents show, exactly as written, and checks that they leave nothing
outside of build/.

usage: commands_test.py BUILD_FOLDER

The commands run in a folder that looks like the project's own, with the build in place of build/release.
"""

import os
import pathlib
import re
import subprocess
import sys
import tempfile

from outputs_test import ROOT, pattern_of

DOCUMENTS = ("docs/porting.md", "examples/README.md")
RUN = re.compile(r"(cc|build/release/bin/hgagent|build/minimal_host) ")


def shown_in(document):
    """Each command with its output."""
    text = (ROOT / document).read_text(encoding="utf-8").replace("\\\n", "")
    for block in re.findall(r"^```\n(.*?)^```", text, re.M | re.S):
        for part in re.split(r"^\$ ", block, flags=re.M)[1:]:
            command, *output = part.splitlines()
            if RUN.match(command):
                yield command, output


def main(build):
    wrong = compiled = 0
    with tempfile.TemporaryDirectory() as folder:
        tree = pathlib.Path(folder)
        for entry in ROOT.iterdir():
            if entry.name != "build":
                (tree / entry.name).symlink_to(entry)
        (tree / "build").mkdir()
        (tree / "build/release").symlink_to(build)
        before = set(tree.iterdir())
        for document in DOCUMENTS:
            for command, output in shown_in(document):
                run = subprocess.run(["bash", "-c", command], cwd=tree, env={**os.environ, "LC_ALL": "C.UTF-8"},
                                     text=True, encoding="utf-8", capture_output=True, check=False)
                compiles = command.startswith("cc ")
                compiled += compiles
                printed = run.stdout + run.stderr
                # Output on standard error may be missing from the document.
                as_shown = not printed if compiles else any(
                    pattern_of(output).fullmatch(text) for text in (run.stdout, printed))
                if (compiles and run.returncode != 0) or not as_shown:
                    wrong += 1
                    print(f"{document}: {command}\nprints\n{printed}")
        left = {entry.name for entry in set(tree.iterdir()) - before}
    if left:
        print(f"left behind outside of build/: {', '.join(sorted(left))}")
    print(f"{compiled} compilations")
    return wrong or left or compiled < 3


if __name__ == "__main__":
    sys.exit(1 if main(pathlib.Path(sys.argv[1]).resolve()) else 0)
