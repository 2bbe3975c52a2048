# SPDX-License-Identifier: MIT
"""Runs the commands that the documents show, and compares their outputs.

usage: outputs_test.py BUILD STANDING_CLOCK MINIMAL_DEVICE

In a document's code, the lines after "$ " that run a program of the project and are followed by an
output are run, with the clock stopped at the time of the protocol's examples. "…" in an output stands
for omitted text.
"""
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
DOCUMENTS = ("README.md", "docs/agent.md", "docs/porting.md", "docs/service.md",
             "examples/README.md")
PROGRAM = re.compile(r"(build/release/bin/)?(hgagent|minimal_host) ")
# They need a web server, a device library with faults, or another program: broker_page_test.py runs those with
# a broker.
NOT_RUN = ("--url http://", "conformance --allow-writes", "--broker ", "run --console")


def shown_in(document):
    """Each command with the lines of its output."""
    shown, in_code = [], False
    for line in (ROOT / document).read_text(encoding="utf-8").splitlines():
        if line.lstrip().startswith("```"):
            in_code = not in_code
            shown.append(None)
        elif in_code and line.startswith("$ "):
            shown.append((line[2:], []))
        elif in_code and shown[-1]:
            shown[-1][1].append(line)
    return [one for one in shown if one and one[1] and PROGRAM.match(one[0])
            and not any(word in one[0] for word in NOT_RUN)]


def pattern_of(lines):
    text = re.escape("\n".join(lines) + "\n")
    text = text.replace("\n…\\\n", "\n(.*\n)*?")  # a separate line
    return re.compile(re.sub(r"(\\ )?…", ".*", text))


def main(build, standing_clock, minimal_device):
    environment = {
        **os.environ,
        "SIMULATED_GATEWAY_TIME": "1767225600",
        "LD_PRELOAD": standing_clock,
        "ASAN_OPTIONS": "verify_asan_link_order=0:detect_leaks=0",
        "TZ": "UTC",
        "LC_ALL": "C.UTF-8",
    }
    wrong = number = 0
    for document in DOCUMENTS:
        for command, lines in shown_in(document):
            command = PROGRAM.sub(rf"{build}/bin/\2 ", command)
            command = command.replace("build/libmy_device.so", minimal_device)
            result = subprocess.run(["bash", "-c", command], env=environment, text=True,
                                    encoding="utf-8", stdout=subprocess.PIPE, check=False, cwd=ROOT)
            number += 1
            if not pattern_of(lines).fullmatch(result.stdout):
                wrong += 1
                print(f"{document}: {command}\nshows\n" + "\n".join(lines) +
                      f"\nand prints\n{result.stdout}")
    print(f"{number} outputs")
    return wrong or number < len(DOCUMENTS)


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
