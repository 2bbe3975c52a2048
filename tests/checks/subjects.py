#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The handlers, device functions and unit tests of a subject are in the files with its name: fails on any that is
elsewhere."""
import functools
import json
import pathlib
import re
import sys

LIBRARIES = ("simulated_gateway/device", "linux_gateway/device")


def found_in(folder, pattern):
    """The files of a folder in which a pattern finds each name."""
    places = {}
    for file in sorted(pathlib.Path(folder).glob("*.cpp")):
        for name in re.findall(pattern, file.read_text(encoding="utf-8"), re.M):
            places.setdefault(name, []).append(file.stem)
    return places


def suite_of(command):
    return "".join(word.capitalize() for word in command.split("_"))


def main():
    commands = [json.loads(file.read_text(encoding="utf-8")) for file in pathlib.Path("protocol/commands").glob("*.json")]
    device = [json.loads(file.read_text(encoding="utf-8")) for file in pathlib.Path("protocol/device").glob("*.json")
              if file.stem != "interface"]
    functions = {part["function"]: subject["subject"] for subject in device for part in subject["interface"]
                 if "function" in part}
    handlers = found_in("smart_router_service", r"^(?:HANDLER\(|int32_t )(json_\w+)(?:,|\(cJSON \*obj\)$)")
    suites = found_in("tests/unit", r"^TEST(?:_F|_P)?\((\w+), ")
    subjects = {command["subject"] for command in commands}
    faults = []

    def tests(subject, file):
        """Whether a file of tests has this subject: the longest that its name begins with, as wifi_batch and not wifi."""
        return subject == max((one for one in subjects if file.startswith(one + "_")), key=len, default=None)

    def expect(name, files, subject, folder, are_right):
        if not files or not all(map(are_right, files)):
            places = ", ".join(sorted({f"{file}.cpp" for file in files})) or "no file"
            faults.append(f"{name} belongs in {folder}/{subject}.cpp; it is in {places}")

    for command in commands:
        subject = command["subject"]
        expect(command["handler"], handlers.get(command["handler"], []), subject, "smart_router_service", subject.__eq__)
        if files := suites.get(suite_of(command["command"])):
            expect(suite_of(command["command"]), files, f"{subject}_test", "tests/unit",
                   functools.partial(tests, subject))
    for library in LIBRARIES:
        places = found_in(library, r"^(?:int32_t|void) (devapi_\w+)\(")
        for name, subject in functions.items():
            if files := places.get(name):  # one that is not supported has no code of its own
                expect(name, files, subject, library, subject.__eq__)
    print(*faults, sep="\n", end="\n" if faults else "")
    print(f"{len(commands)} commands, {len(functions)} device functions, {len(faults)} faults")
    return 1 if faults or not commands or not functions else 0


if __name__ == "__main__":
    sys.exit(main())
