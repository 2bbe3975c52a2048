#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs hgagent serve with one failure at a time, and checks its answers, its exit status and the settings
that it has acknowledged.

    agent_sweep.py memory HGAGENT --library FAILING_ALLOCATION [--every N] [--only 17 | 17-]
    agent_sweep.py system_calls HGAGENT [--every N] [--only write:3]

memory: each allocation fails, alone and then with all that follow. system_calls: each system call fails
once, through strace. --every N runs only each Nth case. A failed case prints the options that repeat it.
"""
import argparse
import collections
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

NAME = "named by the sweep"
REQUESTS = [
    {"id": 1, "command": "GET_SN_INFO"},
    {"id": 2, "command": "SET_AD_BASE_INFO",
     "params": {"MAC": "8C:79:F5:62:1A:09", "DevType": "TV", "ByName": NAME, "AccessEnable": "1"}},
    {"id": 3, "command": "NO_SUCH", "params": {"number": 1}},
    {"id": 4, "notice": {"plugin_name": "sweep", "text": "text"}},
    {"id": 5, "command": "RESPONSE_ROUTER_VERSION",
     "params": {"VersionInfo": "\u4e2d", "Password": "secret"}},
    {"id": 6, "command": "GET_AD_BASE_INFO"},
]
INPUT = "".join(json.dumps(request) + "\n" for request in REQUESTS) + "rubbish\n"
ANSWERS = len(REQUESTS) + 1

# Calls that the process needs to run at all, or that never return.
NEVER_FAIL = {
    "execve": "there would be no process",
    "exit_group": "never returns",
    "rt_sigreturn": "never returns",
    "brk": "the kernel gives the old end instead of an error",
    "futex": "the C library ends the process when it fails in an unknown way",
}
ERRORS = collections.defaultdict(lambda: "EIO", mmap="ENOMEM", mprotect="ENOMEM",
                                 openat="EMFILE", fcntl="EMFILE", dup2="EMFILE", flock="ENOLCK")

# The agent's own exit statuses; 127 is the loader's.
GOOD = {0, 4, 5, 6}
LOADER = 127


class Sweep:
    def __init__(self, agent, folder):
        self.agent = agent
        self.folder = pathlib.Path(folder)
        self.fresh = self.folder / "fresh.json"
        self.state = self.folder / "state.json"
        self.faults = 0
        self.environment = dict(os.environ, SIMULATED_GATEWAY_TIME="1767225600")
        self.run_plain(self.fresh, "GET_SN_INFO")

    def run_plain(self, state, command):
        return subprocess.run([self.agent, "--state", state, "call", command], check=True,
                              env=self.environment, stdout=subprocess.PIPE).stdout.decode()

    def serve(self, before=(), **environment):
        shutil.copy(self.fresh, self.state)
        return subprocess.run(
            [*before, self.agent, "--state", self.state, "--log-level", "7", "--trace", "-", "serve"],
            input=INPUT.encode(), stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False,
            env={**self.environment, **environment})

    def judge(self, case, result, allowed, all_answered):
        """Counts and prints what is wrong with a run."""
        problems = []
        output, error = result.stdout.decode(), result.stderr.decode(errors="replace")
        if result.returncode not in allowed:
            problems.append(f"ended with {result.returncode}")
        if result.returncode != 0 and not error:
            problems.append("ended without an error message")
        if "terminate called" in error:
            problems.append("an exception was not caught")
        lines = output.split("\n")
        # Where the output itself has failed, the reader has lost the rest as well.
        if lines.pop() and result.returncode != 5:
            problems.append("the last line is incomplete")
        answers = {}
        count = 0
        for line in lines:
            try:
                answer = json.loads(line)
            except ValueError:
                problems.append(f"not JSON: {line[:200]}")
                continue
            if "id" in answer:
                count += 1
                answers[answer["id"]] = answer
        if result.returncode == 0 and count != ANSWERS:
            problems.append(f"{count} answers to {ANSWERS} lines")
        if all_answered and result.returncode == 0:
            failed = sum("error" in answers.get(request["id"], {"error": ""}) for request in REQUESTS)
            if failed > 1:
                problems.append(f"{failed} requests without an answer for one failure")
        acknowledged = answers.get(2, {}).get("reply", {}).get("Status") == "0"
        try:
            kept = NAME in self.run_plain(self.state, "GET_AD_BASE_INFO")
            if acknowledged and not kept:
                problems.append("an acknowledged setting is lost")
        except subprocess.CalledProcessError:
            problems.append("the state file no longer loads")
        if problems:
            self.faults += 1
            print(f"--only {case}: {'; '.join(problems)}\n{error[-600:]}")


def sweep_memory(sweep, options):
    counted = sweep.folder / "count"
    sweep.judge("none", sweep.serve(LD_PRELOAD=options.library, COUNT_ALLOCATIONS=str(counted)), {0}, True)
    total = int(counted.read_text())
    cases = [f"{number}{kind}" for number in range(0, total, options.every) for kind in ("", "-")]
    for case in [options.only] if options.only else cases:
        result = sweep.serve(LD_PRELOAD=options.library, FAILING_ALLOCATION=case)
        # The loader runs before any error can be reported.
        sweep.judge(case, result, GOOD | {LOADER}, not case.endswith("-"))
    return len(cases), f"{total} allocations"


def count_calls(trace):
    return collections.Counter(re.findall(r"^\d+ +(\w+)\(", trace, re.M))


def sweep_system_calls(sweep, options):
    log = sweep.folder / "strace"
    sweep.judge("none", sweep.serve(["strace", "-f", "-qq", "-o", log]), {0}, True)
    trace = log.read_text(errors="replace")
    # Calls before the agent's first one are the loader's, which handles its own errors.
    before = count_calls(trace[:trace.index("fcntl(0, F_GETFD")])
    calls = count_calls(trace)
    cases = [f"{name}:{number}" for name in sorted(calls) if name not in NEVER_FAIL
             for number in range(before[name] + 1, calls[name] + 1)]
    total = len(cases)
    cases = cases[::options.every]
    for case in [options.only] if options.only else cases:
        name, number = case.split(":")
        fault = f"inject={name}:error={ERRORS[name]}:when={number}"
        result = sweep.serve(["strace", "-f", "-qq", "-o", "/dev/null", "-e", f"trace={name}", "-e", fault])
        sweep.judge(case, result, GOOD | {LOADER}, False)
    return len(cases), f"{total} system calls"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n", maxsplit=1)[0])
    parser.add_argument("kind", choices=("memory", "system_calls"))
    parser.add_argument("agent", type=pathlib.Path)
    parser.add_argument("--library")
    parser.add_argument("--every", type=int, default=1)
    parser.add_argument("--only")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        sweep = Sweep(options.agent, folder)
        run = sweep_memory if options.kind == "memory" else sweep_system_calls
        cases, of_what = run(sweep, options)
    print(f"{cases} cases of {of_what}, {sweep.faults} faults")
    return 1 if sweep.faults or not cases else 0


if __name__ == "__main__":
    sys.exit(main())
