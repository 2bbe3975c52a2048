#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Records every command, report and a notice in every home of the simulated gateway, one recording for each home.

Each command is sent with the example of its description, then with each of its keys missing. One more recording
is of what goes wrong: each device call of a command fails in turn, and each value of its request is another one.
"""
import argparse
import itertools
import json
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SCENARIOS = sorted(path.stem for path in (ROOT / "simulated_gateway/scenarios").glob("*.json"))
LARGEST = "crowded_mesh"
# The home goes on after them in another process, or is another one.
LEFT_OUT = {"RP_HG_REBOOT", "HG_LOCAL_RECOVERY"}
# Its failure is logged with the address of a text.
NOT_REPEATABLE = "devapi_get_attach_device_right"
# What a device call does: it fails, with either of two results, returns another one, or succeeds and writes nothing.
# Where the plug-in calls until a failure, it ends.
FAULTS = ("-1", "-2", "1*20", "0*20")
# What the value of a request is replaced with: a text longer than any field, an empty one, other types.
VALUES = ("x" * 300, "", 7, None)


def commands():
    """Their descriptions."""
    for path in sorted((ROOT / "protocol/commands").glob("*.json")):
        description = json.loads(path.read_text(encoding="utf-8"))
        if description["command"] not in LEFT_OUT:
            yield description


def requests():
    """The lines for hgagent serve."""
    for description in commands():
        params = description["example"]["request"]
        for variant in [params] + [{k: v for k, v in params.items() if k != key} for key in params]:
            yield json.dumps({"command": description["command"], "params": variant})
    for path in sorted((ROOT / "protocol/reports").glob("*.json")):
        description = json.loads(path.read_text(encoding="utf-8"))
        if description["report"] != "image-upgrade":  # it replies nothing
            yield json.dumps({"report": description["report"], "params": {}})
    yield json.dumps({"notice": {"plugin_name": "tour", "text": "The tour ends."}})


def replaced(value, new):
    """The JSON value once for each value in it, which is the new one there."""
    parts = value.items() if isinstance(value, dict) else enumerate(value) if isinstance(value, list) else ()
    for key, part in parts:
        for changed in (new, *replaced(part, new)):
            copy = value.copy()
            copy[key] = changed
            yield copy


def failures():
    """The lines for hgagent serve of what goes wrong, in a home in which every setting has been made."""
    for description in commands():
        yield json.dumps({"command": description["command"], "params": description["example"]["request"]})
    for description in commands():
        params = description["example"]["request"]
        line = json.dumps({"command": description["command"], "params": params})
        for call in description["device_calls"]:
            for fault in FAULTS if call != NOT_REPEATABLE else ():
                yield json.dumps({"control": {"faults": [f"{call}={fault}"]}})
                yield line
        yield json.dumps({"control": {"faults": []}})
        for new in VALUES:
            for changed in replaced(params, new):
                yield json.dumps({"command": description["command"], "params": changed})


def corpus():
    """The inputs of the fuzzers as lines for hgagent serve, without those that would need a network."""
    lines = []
    for target in ("fuzz_request", "fuzz_session", "fuzz_serve"):
        for path in sorted((ROOT / "fuzz/corpus" / target).iterdir()):
            text = path.read_bytes().decode(errors="surrogateescape").replace("\0", "")
            if target == "fuzz_request":
                command, _, request = text.partition("\n")
                lines.append((command, request.replace("\n", " ")))
            elif target == "fuzz_session":
                lines += [line.partition(" ")[::2] for line in text.splitlines() if line[:1] not in ("@", "!", "")]
            else:
                lines += text.split("\n")
    lines = [line if isinstance(line, str) else f'{{"command":{json.dumps(line[0])},"params":{line[1] or "{}"}}}'
             for line in lines]
    return [line for line in lines if not re.search(r"\w:\\?/\\?/", line) and not any(
        command in line for command in LEFT_OUT)]


def record(hgagent, recording, lines, options=(), sleepless=None):
    """Lets the agent record the lines; returns its answers. With the library, its workers do not sleep."""
    recording.unlink(missing_ok=True)
    environment = {**os.environ, "SIMULATED_GATEWAY_TIME": "1767225600"}
    if sleepless:
        environment.update(LD_PRELOAD=str(sleepless), ASAN_OPTIONS="verify_asan_link_order=0:detect_leaks=0")
    process = subprocess.run([hgagent, "--record", recording, *options, "serve"], env=environment,
                             input="".join(f"{line}\n" for line in lines).encode(errors="surrogateescape"),
                             check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    return process.stdout.splitlines()


def record_tour(hgagent, folder, sleepless=None):
    """Returns the recordings."""
    folder.mkdir(parents=True, exist_ok=True)
    recordings = []
    for scenario in SCENARIOS:
        recordings.append(folder / f"{scenario}.jsonl")
        record(hgagent, recordings[-1], requests(), ["--scenario", scenario], sleepless)
    recordings.append(folder / "failures.jsonl")
    record(hgagent, recordings[-1], failures(), ["--scenario", LARGEST], sleepless)
    return recordings


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folder", type=pathlib.Path, help="folder of the recordings")
    parser.add_argument("--build", type=pathlib.Path, metavar="FOLDER", default=ROOT / "build/release")
    parser.add_argument("--commands", type=int, metavar="N",
                        help="send so many lines instead, in the same order again and again, to the default home only")
    options = parser.parse_args()
    hgagent = options.build / "bin/hgagent"
    sleepless = options.build.resolve() / "tests/end_to_end/libsleepless.so"
    if options.commands:
        options.folder.mkdir(parents=True, exist_ok=True)
        lines = itertools.islice(itertools.cycle(list(requests())), options.commands)
        record(hgagent, options.folder / "commands.jsonl", lines, sleepless=sleepless)
        return 0
    for recording in record_tour(hgagent, options.folder, sleepless):
        print(recording)
    return 0


if __name__ == "__main__":
    sys.exit(main())
