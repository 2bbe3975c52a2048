# SPDX-License-Identifier: MIT
"""Replays a long recording, whose length must make no difference to the memory that the replay needs:
memory_test.py HGAGENT COMMANDS"""
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tools"))
import recording_tour  # noqa: E402

TOLERATED_KIB = 512  # fluctuation through malloc's rounding


def repeated(lines, commands, path):
    """Writes the lines of a session again and again, as one session with so many commands."""
    head, *session = [line for line in lines if line.strip() != "{}"]
    session = [re.sub(r'"began":\d+,', "", line) for line in session if '"end":true' not in line]
    number = written = 0
    with path.open("w", encoding="utf-8") as file:
        print(head, file=file)
        while written < commands:
            for line in session:
                number += 1
                written += '"command":' in line[:80]
                file.write(re.sub(r'^{"seq":\d+', f'{{"seq":{number}', line) + "\n")
        file.write(json.dumps({"seq": number + 1, "thread": 1, "time": 0, "end": True}) + "\n")


def peak_of(pid):
    """The largest size that a process and those that it started have had so far."""
    try:
        status = pathlib.Path(f"/proc/{pid}/status").read_text(encoding="ascii")
        children = pathlib.Path(f"/proc/{pid}/task/{pid}/children").read_text(encoding="ascii").split()
    except OSError:
        return 0
    own = re.search(r"VmHWM:\s+(\d+)", status)
    return max([int(own[1]) if own else 0, *map(peak_of, children)])


def peak_kib(hgagent, path, commands):
    peak = 0
    with subprocess.Popen([hgagent, "replay", path], stdout=subprocess.PIPE, text=True) as process:
        while process.poll() is None:
            peak = max(peak, peak_of(process.pid))
            time.sleep(0.01)
        output = process.stdout.read()
    found = re.search(r": (\d+) commands, (\d+) calls: no difference", output)
    assert found and int(found[1]) >= commands and peak > 0, output
    print(f"{found[1]} commands, {found[2]} calls, {path.stat().st_size >> 20} MiB: {peak} KiB at most", flush=True)
    return peak


def main(hgagent, commands):
    with tempfile.TemporaryDirectory() as folder:
        folder = pathlib.Path(folder)
        requests = [line for line in recording_tour.requests() if '"GET_' in line]
        recording_tour.record(hgagent, folder / "once.jsonl", requests, ["--scenario", "single_router"])
        lines = (folder / "once.jsonl").read_text(encoding="utf-8").splitlines()
        peaks = []
        for count in (commands // 10, commands):
            path = folder / "long.jsonl"
            repeated(lines, count, path)
            peaks.append(peak_kib(hgagent, path, count))
    if peaks[1] > peaks[0] + TOLERATED_KIB:
        sys.exit(f"the memory grows: {peaks[0]} KiB, then {peaks[1]} KiB")


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2]))
