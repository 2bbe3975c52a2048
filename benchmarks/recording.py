#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""What a recording costs: recording.py HGAGENT [--check].

Prints a Markdown table of processor times and instructions of hgagent serve for a command, with and without --record;
the file is in memory. With --check only the instructions are counted, and more than the limit is a failure.
"""

import json
import os
import pathlib
import resource
import statistics
import subprocess
import sys
import tempfile

import measure

MOST = 2.5  # of the instructions and of the processor time without a recording
CASES = {"GET_SN_INFO": (100, 600, 100_000, []), "GET_AD_BASE_INFO": (10, 60, 10_000, [])}
REPETITIONS = 3
MEMORY = "/dev/shm"


def processor_time(server, command, requests):
    """Microseconds for one request, by the user and by the kernel; those of the start are few."""
    with tempfile.TemporaryFile() as lines:
        lines.write(requests * (json.dumps({"id": 1, "command": command}).encode() + b"\n"))
        lines.seek(0)
        before = resource.getrusage(resource.RUSAGE_CHILDREN)
        subprocess.run(server, stdin=lines, stdout=subprocess.DEVNULL, check=True,
                       env=os.environ | {"SIMULATED_GATEWAY_TIME": "1767268800"})
        after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime) * 1e6 / requests


def median_time(agent, command, requests, options):
    return statistics.median(processor_time([agent, *options(), "serve"], command, requests)
                             for _ in range(REPETITIONS))


def main(agent, *options):
    broken = False
    if not options:
        print("| Command | processor time | with `--record` | ratio | instructions | with `--record` | ratio |")
        print("| --- | --- | --- | --- | --- | --- | --- |")
    with tempfile.TemporaryDirectory(dir=MEMORY if os.access(MEMORY, os.W_OK) else None) as folder:
        file = pathlib.Path(folder, "recording.jsonl")

        def recorded():
            for part in pathlib.Path(folder).iterdir():
                part.unlink()
            return ["--record", str(file)]

        for command, (few, many, requests, given) in CASES.items():
            plain = measure.count_serving(agent, command, few, many, *given)[0]
            record = measure.count_serving(agent, command, few, many, *given, *recorded())[0]
            broken = broken or record > MOST * plain
            if options:
                print(f"{command}: {plain:,.0f} instructions, {record:,.0f} with --record, {record / plain:.2f} of it")
                continue
            times = [median_time(agent, command, requests, which) for which in (list, recorded)]
            broken = broken or times[1] > MOST * times[0]
            print(f"| `{command}` | {times[0]:.1f} µs | {times[1]:.1f} µs | {times[1] / times[0]:.2f} "
                  f"| {plain:,.0f} | {record:,.0f} | {record / plain:.2f} |")
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
