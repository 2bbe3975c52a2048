#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Sends a long mixture of commands to one `hgagent serve`, and fails when its private memory, its
descriptors or its threads grow after a warm-up.

The requests are the examples of protocol/commands in an order that depends on a seed; some are
repeated with missing keys, so that failures are part of the mixture. Workers run as well, but without
the sleep before they begin.
"""
import argparse
import json
import os
import pathlib
import random
import subprocess
import sys
import threading

ROOT = pathlib.Path(__file__).resolve().parent.parent
SETTLED = 10_000  # commands after which nothing may grow
TOLERATED_KIB = 256  # fluctuation through malloc's rounding


def requests():
    lines = []
    for path in sorted((ROOT / "protocol/commands").glob("*.json")):
        description = json.loads(path.read_text(encoding="utf-8"))
        params = description["example"]["request"]
        for variant in [params] + [{k: v for k, v in params.items() if k != key} for key in params]:
            lines.append((description["command"], variant))
    return lines


class Process:
    """The memory, descriptors and threads of a process."""

    def __init__(self, pid):
        self.folder = pathlib.Path(f"/proc/{pid}")

    def private_kib(self):
        lines = (self.folder / "smaps_rollup").read_text(encoding="ascii").splitlines()
        return sum(int(line.split()[1]) for line in lines if line.startswith("Private_"))

    def descriptors(self):
        return len(os.listdir(self.folder / "fd"))

    def threads(self):
        return len(os.listdir(self.folder / "task"))


def send(stream, count, seed):
    chosen = random.Random(seed)
    mixture = requests()
    for number in range(count):
        command, params = chosen.choice(mixture)
        request = {"id": number, "command": command, "params": params}
        stream.write(json.dumps(request, separators=(",", ":")) + "\n")
    stream.flush()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--commands", type=int, metavar="N", default=1_000_000, help="1,000,000 unless given")
    parser.add_argument("--build", type=pathlib.Path, metavar="FOLDER", default=ROOT / "build/release")
    parser.add_argument("--seed", type=int, metavar="N", default=1, help="of the order, 1 unless given")
    options = parser.parse_args()
    if options.commands < 2 * SETTLED:
        parser.error(f"--commands has to be at least {2 * SETTLED}")

    environment = {
        **os.environ,
        "SIMULATED_GATEWAY_TIME": "1767225600",
        "LD_PRELOAD": str(options.build / "tests/end_to_end/libsleepless.so"),
    }
    # A process that masks its secrets is not dumpable, so /proc does not show its memory.
    with subprocess.Popen([options.build / "bin/hgagent", "--show-secrets", "serve"],
                          env=environment, text=True,
                          stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL) as agent:
        writer = threading.Thread(target=send, args=(agent.stdin, options.commands, options.seed))
        writer.start()
        process = Process(agent.pid)
        answered = failed = 0
        seen = []
        print(f"{'commands':>10} {'private KiB':>12} {'descriptors':>12} {'threads':>8}")
        for line in agent.stdout:
            answer = json.loads(line)
            if "id" not in answer:
                continue
            if answer["id"] != answered or answer.get("result") != 0:
                sys.exit(f"unexpected answer: {line}")
            answered += 1
            failed += answer["reply"].get("Status") == "1"
            if answered in (100, 1_000) or answered % SETTLED == 0:
                seen.append((answered, process.private_kib(), process.descriptors(),
                             process.threads()))
                if answered in (100, 1_000, SETTLED) or answered % (options.commands // 10) == 0:
                    print("{:10} {:12} {:12} {:8}".format(*seen[-1]), flush=True)
            if answered == options.commands:
                break
        writer.join()
        agent.stdin.close()
        for _ in agent.stdout:  # notices
            pass
        status = agent.wait()

    print(f"{answered} commands, {failed} of them answered with a failure; exit status {status}")
    # The last quarter against the first: what a running worker needs is not growth.
    settled = [sample for sample in seen if sample[0] >= SETTLED]
    quarter = max(1, len(settled) // 4)
    faults = []
    for at, name, tolerated in ((1, "KiB of private memory", TOLERATED_KIB),
                                (2, "descriptors", 0), (3, "threads", 0)):
        before = max(sample[at] for sample in settled[:quarter])
        after = min(sample[at] for sample in settled[-quarter:])
        print(f"{name}: {before} at most in the first quarter, {after} at least in the last")
        if after > before + tolerated:
            faults.append(f"{name} have grown")
    if status != 0:
        faults.append(f"exit status {status}")
    sys.exit("\n".join(faults) if faults else 0)


if __name__ == "__main__":
    main()
