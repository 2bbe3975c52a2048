#!/usr/bin/env python3
"""Which folder may include which: fails on an include that the list below does not allow, on an entry
of the list that nothing includes by, and on a way round from a folder back to itself."""
import graphlib
import pathlib
import re
import subprocess
import sys

ALLOWED = """
agent                        agent/commands agent/conformance agent/host agent/io agent/protocol
agent/commands               agent/client agent/conformance agent/host agent/io agent/protocol plugin_headers
agent/client                 agent/protocol
agent                        agent/service agent/service/worker
agent/service                agent/service/common agent/service/gate agent/service/ways_in agent/service/worker
agent/service                agent/commands agent/io agent/protocol
agent/service/ways_in        agent/service/common agent/service/gate
agent/service/gate           agent/service/common agent/service/worker
agent/service/gate           agent/commands agent/host agent/io agent/protocol
agent/service/worker         agent/service/common agent/commands agent/host agent/io agent/protocol
agent/service/common         agent/io agent/protocol
agent/conformance            agent/host agent/io agent/protocol plugin_headers device_facts
agent/host                   agent/io agent/protocol plugin_headers device_facts gateway_header line_output
agent/protocol               agent/io embedded_texts
agent/io                     line_output
simulated_gateway/device     simulated_gateway/core simulated_gateway/firmware simulated_gateway/io
simulated_gateway/device     simulated_gateway/model simulated_gateway/simulation plugin_headers
simulated_gateway/core       simulated_gateway/firmware simulated_gateway/io simulated_gateway/model
simulated_gateway/core       simulated_gateway/simulation
simulated_gateway/core       plugin_headers device_facts gateway_header line_output
simulated_gateway/simulation simulated_gateway/io simulated_gateway/model
simulated_gateway/firmware   simulated_gateway/io simulated_gateway/model gateway_header
simulated_gateway/model      simulated_gateway/io plugin_headers embedded_texts
smart_router_service         plugin_headers
"""
# Folders that parts of the project include each other by, and what they are called above.
SHARED = {
    "smart_router_service/include": "plugin_headers",
    "simulated_gateway/include": "gateway_header",
    "protocol/include": "device_facts",
    "line_output": "line_output",
}
PARTS = ("agent", "simulated_gateway", "smart_router_service")


def folder_of(included, part):
    """The folder of the list that a header lies in; None for one that is nowhere."""
    if included.startswith("embedded/"):  # made while building
        return "embedded_texts"
    if pathlib.Path(part, included).is_file():
        return str(pathlib.Path(part, included).parent)
    return next((name for folder, name in SHARED.items() if pathlib.Path(folder, included).is_file()), None)


def main():
    allowed = {(folder, target) for folder, *targets in map(str.split, ALLOWED.strip().splitlines())
               for target in targets}
    files = subprocess.run(["git", "ls-files", *PARTS], check=True, capture_output=True, text=True)
    faults = []
    used = set()
    for file in map(pathlib.Path, files.stdout.split()):
        if file.suffix not in (".h", ".cpp"):
            continue
        part = file.parts[0]
        folder = next((name for shared, name in SHARED.items() if file.is_relative_to(shared)),
                      str(file.parent))
        for included in re.findall(r'^\s*#\s*include\s*"(.*)"', file.read_text(encoding="utf-8"), re.M):
            target = folder_of(included, part)
            used.add((folder, target))
            if target is None:
                faults.append(f'{file}: "{included}" is in none of the known folders')
            elif target != folder and (folder, target) not in allowed:
                faults.append(f'{file}: {folder} may not include "{included}" of {target}')
    faults += [f"{folder} does not include {target} any more: take it out of {sys.argv[0]}"
               for folder, target in sorted(allowed - used)]
    order = graphlib.TopologicalSorter()
    for folder, target in allowed:
        order.add(folder, target)
    try:
        order.prepare()
    except graphlib.CycleError as error:
        faults.append("the list goes round: " + " -> ".join(reversed(error.args[1])))
    print(*faults, sep="\n", end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
