# SPDX-License-Identifier: MIT
"""Counts instructions and heap allocations with callgrind. As a program it checks that the plug-in stays within the
limits: measure.py handlers|elements|dispatch|serving PROGRAM."""

import dataclasses
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

MOST_INSTRUCTIONS = 0.75  # of a handler, relative to the hand-written baseline
MOST_ALLOCATIONS = 0.70
MOST_GROWTH = 0.05  # of what an element of a list costs, from the shorter list to the longer one
FLAT_SIZES = (100, 100_000)
MOST_FOR_A_NAME = 6  # a binary search takes up to seven comparisons
MOST_FOR_A_REQUEST = 15_000  # to serve, GET_SN_INFO
MOST_FOR_A_HOST = 40_000  # of a list of serve's

ALLOCATORS = {"malloc", "calloc", "realloc"}


@dataclasses.dataclass
class Cost:
    instructions: int
    allocations: int


def read_profile(path):
    """The label that the program gave to the profile (None if it ended without one), and its cost."""
    label, instructions, allocations = None, 0, 0
    names = {}
    function = callee = None
    for line in path.read_text(errors="replace").splitlines():
        if match := re.match(r"(c?fn)=\((\d+)\)(?: (.*))?", line):
            kind, number, name = match.groups()
            if name is not None:
                names[number] = name
            if kind == "fn":
                function = names[number]
            else:
                callee = names[number]
        elif match := re.match(r"calls=(\d+)", line):
            if callee in ALLOCATORS and function not in ALLOCATORS:
                allocations += int(match[1])
        elif match := re.match(r"desc: Trigger: Client Request: (.*)", line):
            label = match[1]
        elif match := re.match(r"totals: (\d+)", line):
            instructions = int(match[1])
    return label, Cost(instructions, allocations)


def count(command, *options, stdin=None, environment=None):
    """The costs of each profile that the program writes, by label, in the order in which it writes them."""
    with tempfile.TemporaryDirectory() as directory:
        profile = pathlib.Path(directory) / "profile"
        subprocess.run(["valgrind", "--tool=callgrind", "--quiet", f"--callgrind-out-file={profile}",
                        *options, *command], check=True, stdin=stdin, stdout=subprocess.DEVNULL,
                       env=environment)
        parts = sorted(pathlib.Path(directory).glob("profile.*"), key=lambda path: int(path.suffix[1:]))
        return dict(map(read_profile, parts + [profile]))


def count_parts(*command):
    """The costs of the code that the program marks for measuring, minus those of the device."""
    costs = count(command, "--instr-atstart=no", "--toggle-collect=devapi_*", "--collect-atstart=yes")
    costs.pop(None, None)
    return costs


def count_sides(program, which, sizes):
    """The costs of the plug-in and of the hand-written baseline, by the name of the case."""
    costs = count_parts(program, which, *map(str, sizes))
    cases = dict.fromkeys(label.split("|")[0] for label in costs)
    return {case: (costs[f"{case}|plug-in"], costs[f"{case}|floor"]) for case in cases}


def count_serving(agent, command, few, many, *options):
    """The instructions of an agent that serves for one more request, and the length of the list in the reply; at a
    constant time, so that the home is always the same."""
    request = json.dumps({"id": 1, "command": command}).encode() + b"\n"
    server = [agent, *options, "serve"]
    environment = os.environ | {"SIMULATED_GATEWAY_TIME": "1767268800"}

    def instructions(requests):
        with tempfile.TemporaryFile() as lines:
            lines.write(requests * request)
            lines.seek(0)
            return count(server, stdin=lines, environment=environment)[None].instructions

    answer = subprocess.run(server, input=request, stdout=subprocess.PIPE, env=environment, check=True).stdout
    elements = sum(len(value) for value in json.loads(answer)["reply"].values() if isinstance(value, list))
    return (instructions(many) - instructions(few)) / (many - few), elements


def count_serving_record(agent):
    return count_serving(agent, "GET_SN_INFO", 100, 1_100)[0]


def count_serving_list(agent):
    """The instructions, and the hosts of the list."""
    return count_serving(agent, "GET_AD_BASE_INFO", 2, 12, "--scenario", "crowded_mesh")


def check_handlers(program):
    broken = 0
    for case, (plugin, floor) in count_sides(program, "handler", [10, 100]).items():
        instructions = plugin.instructions / floor.instructions
        allocations = plugin.allocations / floor.allocations
        kept = instructions <= MOST_INSTRUCTIONS and allocations <= MOST_ALLOCATIONS
        broken += not kept
        print(f"{case}: {plugin.instructions} instructions, {instructions:.2f} of the baseline; "
              f"{plugin.allocations} allocations, {allocations:.2f} of it{'' if kept else '  <-- too many'}")
    return broken


def check_elements(program):
    broken = 0
    costs = count_sides(program, "handler", FLAT_SIZES)
    short, long = FLAT_SIZES
    lists = [case for case in costs if case.endswith(f", {short} elements")]
    for case in lists:
        per_short = costs[case][0].instructions / short
        per_long = costs[case.replace(str(short), str(long))][0].instructions / long
        growth = per_long / per_short - 1
        kept = abs(growth) <= MOST_GROWTH
        broken += not kept
        print(f"{case}: {per_short:.1f} instructions for each, {per_long:.1f} in a list of {long}: "
              f"{growth:+.1%}{'' if kept else '  <-- too much'}")
    return broken or not lists


def check_dispatch(program):
    costs = {name: cost.instructions for name, cost in count_parts(program).items()}
    cheapest, dearest = min(costs, key=costs.get), max(costs, key=costs.get)
    ratio = costs[dearest] / costs[cheapest]
    print(f"{len(costs)} names: from {costs[cheapest]} instructions for {cheapest} "
          f"to {costs[dearest]} for {dearest}, a ratio of {ratio:.2f}")
    return ratio > MOST_FOR_A_NAME


def check_serving(program):
    record = count_serving_record(program)
    whole_list, hosts = count_serving_list(program)
    print(f"GET_SN_INFO: {record:,.0f} instructions; GET_AD_BASE_INFO: {whole_list:,.0f}, "
          f"{whole_list / hosts:,.0f} for each of {hosts} hosts")
    return record > MOST_FOR_A_REQUEST or whole_list / hosts > MOST_FOR_A_HOST


def main(what, program):
    checks = {"handlers": check_handlers, "elements": check_elements, "dispatch": check_dispatch,
              "serving": check_serving}
    return 1 if checks[what](program) else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
