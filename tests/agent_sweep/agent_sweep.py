#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs hgagent serve, or call, with one failure at a time, and checks its answers, its exit status and the
settings that it has acknowledged.

    agent_sweep.py memory HGAGENT --library FAILING_ALLOCATION [--call] [--whole] [--every N] [--only 17 | 17-]
    agent_sweep.py system_calls HGAGENT [--call] [--every N] [--only write:3]

memory: allocations fail, alone and then with all that follow. Of those with the same call stack the first and the
middle one are taken; --whole takes all. system_calls: each system call fails once, through strace. --every N runs
only each Nth case. A failed case prints the options that repeat it.
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
SETTING = REQUESTS[1]
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

LOADER = 127


class Sweep:
    """Runs one subcommand, and counts and prints what is wrong with each run."""
    # The agent's own exit statuses.
    good: set
    arguments: tuple
    input: str

    def __init__(self, agent, folder):
        self.agent = agent
        self.folder = pathlib.Path(folder)
        self.fresh = self.folder / "fresh.json"
        self.state = self.folder / "state.json"
        self.faults = 0
        self.loaded = {}
        self.environment = dict(os.environ, SIMULATED_GATEWAY_TIME="1767225600")
        self.devices_in(self.fresh)

    def devices_in(self, state):
        """What a later run reads from the state file, None if it refuses the file."""
        result = subprocess.run([self.agent, "--state", state, "call", "GET_AD_BASE_INFO"], check=False,
                                env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        return result.stdout.decode() if result.returncode == 0 else None

    def has_setting(self):
        """Whether the state file has the setting, None if it does not load. Most runs leave the same file."""
        content = self.state.read_bytes()
        if content not in self.loaded:
            devices = self.devices_in(self.state)
            self.loaded[content] = None if devices is None else NAME in devices
        return self.loaded[content]

    def run(self, before=(), **environment):
        shutil.copy(self.fresh, self.state)
        return subprocess.run(
            [*before, self.agent, "--state", self.state, "--log-level", "7", "--trace", "-", *self.arguments],
            input=self.input.encode(), stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False,
            env={**self.environment, **environment})

    def judge(self, case, result, allowed, all_answered):
        problems = []
        error = result.stderr.decode(errors="replace")
        if result.returncode not in allowed:
            problems.append(f"ended with {result.returncode}")
        if result.returncode != 0 and not error:
            problems.append("ended without an error message")
        if "terminate called" in error:
            problems.append("an exception was not caught")
        lines = result.stdout.decode().split("\n")
        # Where the output itself has failed, the reader has lost the rest as well.
        if lines.pop() and result.returncode != 5:
            problems.append("the last line is incomplete")
        answers = []
        for line in lines:
            try:
                answers.append(json.loads(line))
            except ValueError:
                problems.append(f"not JSON: {line[:200]}")
        is_acknowledged = self.judge_answers(answers, result.returncode, all_answered, problems)
        is_kept = self.has_setting()
        if is_kept is None:
            problems.append("the state file no longer loads")
        elif is_acknowledged and not is_kept:
            problems.append("an acknowledged setting is lost")
        if problems:
            self.faults += 1
            print(f"--only {case}: {'; '.join(problems)}\n{error[-600:]}", flush=True)

    def judge_answers(self, answers, status, all_answered, problems):
        """Adds to the problems, and returns whether the setting was acknowledged."""
        raise NotImplementedError


class Serve(Sweep):
    good = {0, 4, 5, 6}
    arguments = ("serve",)
    input = INPUT

    def judge_answers(self, answers, status, all_answered, problems):
        answers = [answer for answer in answers if "id" in answer]
        if status == 0 and len(answers) != ANSWERS:
            problems.append(f"{len(answers)} answers to {ANSWERS} lines")
        by_id = {answer["id"]: answer for answer in answers}
        if all_answered and status == 0:
            failed = sum("error" in by_id.get(request["id"], {"error": ""}) for request in REQUESTS)
            if failed > 1:
                problems.append(f"{failed} requests without an answer for one failure")
        return by_id.get(SETTING["id"], {}).get("reply", {}).get("Status") == "0"


class Call(Sweep):
    good = {0, 1, 4, 5, 6}
    arguments = ("call", SETTING["command"], "-")
    input = json.dumps(SETTING["params"])

    def judge_answers(self, answers, status, all_answered, problems):
        is_acknowledged = [answer.get("Status") for answer in answers] == ["0"]
        if len(answers) > 1:
            problems.append(f"{len(answers)} answers")
        # With 5 the reply did not reach its reader; and where no allocation succeeds any more, a library's destructor
        # may lack memory after the reply, for which the loader ends the process.
        if is_acknowledged != (status == 0) and status not in (5, LOADER):
            problems.append(f"ended with {status} after {answers}")
        return is_acknowledged


def chosen_allocations(stacks):
    """The numbers of the first and of the middle allocation of each call stack."""
    numbers = collections.defaultdict(list)
    for number, stack in enumerate(stacks):
        numbers[stack].append(number)
    return sorted({one for of_stack in numbers.values() for one in (of_stack[0], of_stack[len(of_stack) // 2])})


def sweep_memory(sweep, options):
    file = sweep.folder / "stacks"
    sweep.judge("none", sweep.run(LD_PRELOAD=options.library, ALLOCATION_STACKS=str(file)), {0}, True)
    stacks = file.read_text().split()
    numbers = range(len(stacks)) if options.whole else chosen_allocations(stacks)
    cases = [f"{number}{kind}" for number in numbers[::options.every] for kind in ("", "-")]
    for case in [options.only] if options.only else cases:
        result = sweep.run(LD_PRELOAD=options.library, FAILING_ALLOCATION=case)
        # The loader runs before any error can be reported.
        sweep.judge(case, result, sweep.good | {LOADER}, not case.endswith("-"))
    return len(cases), f"{len(stacks)} allocations with {len(set(stacks))} call stacks"


def count_calls(trace):
    return collections.Counter(re.findall(r"^\d+ +(\w+)\(", trace, re.M))


def sweep_system_calls(sweep, options):
    log = sweep.folder / "strace"
    sweep.judge("none", sweep.run(["strace", "-f", "-qq", "-o", log]), {0}, True)
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
        result = sweep.run(["strace", "-f", "-qq", "-o", "/dev/null", "-e", f"trace={name}", "-e", fault])
        sweep.judge(case, result, sweep.good | {LOADER}, False)
    return len(cases), f"{total} system calls"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n", maxsplit=1)[0])
    parser.add_argument("kind", choices=("memory", "system_calls"))
    parser.add_argument("agent", type=pathlib.Path)
    parser.add_argument("--library")
    parser.add_argument("--call", action="store_true")
    parser.add_argument("--whole", action="store_true")
    parser.add_argument("--every", type=int, default=1)
    parser.add_argument("--only")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        sweep = (Call if options.call else Serve)(options.agent, folder)
        run = sweep_memory if options.kind == "memory" else sweep_system_calls
        cases, of_what = run(sweep, options)
    print(f"{cases} cases of {of_what}, {sweep.faults} faults")
    return 1 if sweep.faults or not cases else 0


if __name__ == "__main__":
    sys.exit(main())
