"""Counts the instructions that a handler of the plug-in spends on a report, and those of straight cJSON code for
the same report, and fails when the reports differ or the handler costs more."""

import pathlib
import re
import subprocess
import sys
import tempfile


def measure(program, which, function):
    """The report, and what the function and all that it calls execute for it, less what the device does."""
    with tempfile.TemporaryDirectory() as directory:
        profile = pathlib.Path(directory) / "profile"
        run = subprocess.run(["valgrind", "--tool=callgrind", "--quiet", f"--toggle-collect={function}",
                              "--toggle-collect=devapi_*", f"--callgrind-out-file={profile}", program, which],
                             check=True, stdout=subprocess.PIPE)
        count = int(re.search(r"^(?:summary|totals): (\d+)", profile.read_text(), re.M).group(1))
        return run.stdout, count


def main(program, handler, floor):
    report, cost = measure(program, "handler", handler)
    straight_report, straight_cost = measure(program, "floor", floor)
    if report != straight_report or straight_cost <= 0:
        print("the two do not report the same")
        return 1
    print(f"{len(report)} bytes: {cost} instructions, {straight_cost} for straight cJSON code, "
          f"{cost / straight_cost:.2f} of it")
    return 1 if cost > straight_cost else 0


sys.exit(main(*sys.argv[1:]))
