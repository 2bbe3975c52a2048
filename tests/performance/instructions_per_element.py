"""Counts the instructions that a handler of the plug-in spends on each element of a list, for lists of
growing size, and fails when a large list costs more for each element than a middle one."""

import pathlib
import re
import subprocess
import sys
import tempfile

COUNTS = (10, 1_000, 100_000)
TOLERANCE = 0.10


def instructions(program, handler, count):
    """What the handler and all that it calls execute for one list, less what the test's device does; parsing
    the request is not its work."""
    with tempfile.TemporaryDirectory() as directory:
        profile = pathlib.Path(directory) / "profile"
        subprocess.run(["valgrind", "--tool=callgrind", "--quiet", f"--toggle-collect={handler}",
                        "--toggle-collect=devapi_*", f"--callgrind-out-file={profile}",
                        program, str(count)], check=True)
        return int(re.search(r"^(?:summary|totals): (\d+)", profile.read_text(), re.M).group(1))


def main(program, handler):
    cost = {}
    for count in COUNTS:
        cost[count] = instructions(program, handler, count) / count
        print(f"{count:>8} elements: {cost[count]:10.1f} instructions for each")
    _, middle, large = (cost[count] for count in COUNTS)
    growth = large / middle - 1
    print(f"from {COUNTS[1]} to {COUNTS[2]} elements: {growth:+.1%} for each, {TOLERANCE:.0%} are tolerated; "
          f"{COUNTS[0]} carry what each list costs once")
    return 1 if abs(growth) > TOLERANCE or middle <= 0 else 0


sys.exit(main(*sys.argv[1:]))
