#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Generates files from the descriptions.

From those of the commands and events: docs/protocol.md, the manual page hg-protocol(7), the JSON Schemas and
protocol/complete, which includes the descriptions of the device fields. From those of the device
interface: device_access.h, device_functions.h, device_facts.h, device_layout.h and
docs/device_access.md.

usage: generate.py [--check]

With --check nothing is written: the program names each file that is not up to date, and fails.
"""

import json
import sys

import device_facts_header
import device_functions_header
import device_header
import device_layout_header
import device_reference
import man_page
import reference
import schemas
from descriptions import descriptions, events
from device_interface import Interface, ROOT

SCHEMA_FOLDER = ROOT / "protocol/schemas"
COMPLETE_FOLDER = ROOT / "protocol/complete"
INCLUDE_FOLDER = ROOT / "smart_router_service/include/smart_router_service"
LICENCE = "/* SPDX-License-Identifier: MIT */\n"


def made_files():
    """The text of each generated file, by its path."""
    commands = list(descriptions().values())
    happenings = list(events().values())
    introduction = (ROOT / "protocol/introduction.md").read_text(encoding="utf-8")
    interface = Interface()
    files = {
        INCLUDE_FOLDER / "device_access.h": device_header.device_header(interface),
        INCLUDE_FOLDER / "device_functions.h": device_functions_header.device_functions_header(interface),
        ROOT / "protocol/include/protocol/device_facts.h": device_facts_header.device_facts_header(interface),
        ROOT / "protocol/include/protocol/device_layout.h": device_layout_header.device_layout_header(interface),
        ROOT / "docs/device_access.md": device_reference.device_reference(interface, commands),
        ROOT / "docs/protocol.md": reference.reference(commands, happenings, introduction),
        ROOT / "docs/man/hg-protocol.7": man_page.man_page(commands, happenings, introduction),
    }
    for command in commands:
        files[COMPLETE_FOLDER / f"{command['command']}.json"] = as_lines(command)
        files[SCHEMA_FOLDER / f"{command['command']}.request.json"] = as_text(schemas.request_schema(command))
        files[SCHEMA_FOLDER / f"{command['command']}.reply.json"] = as_text(schemas.reply_schema(command))
    for event in happenings:
        files[SCHEMA_FOLDER / f"{event['event']}.event.json"] = as_text(schemas.event_schema(event))
    files[SCHEMA_FOLDER / "session.request.json"] = as_text(schemas.session_request_schema())
    files[SCHEMA_FOLDER / "session.line.json"] = as_text(schemas.session_line_schema(happenings))
    return {path: LICENCE + text if path.suffix == ".h" else text for path, text in files.items()}


def as_text(schema):
    return json.dumps(schema, indent=2, ensure_ascii=False) + "\n"


def as_lines(command):
    """The description as JSON, with a line for each part."""
    parts = [f"{json.dumps(name)}: {json.dumps(value, ensure_ascii=False)}" for name, value in command.items()]
    return "{" + ",\n ".join(parts) + "}\n"


def main(arguments):
    if arguments not in ([], ["--check"]):
        print(__doc__, file=sys.stderr)
        return 2
    files = made_files()
    stale = [path for path, text in files.items()
             if not path.exists() or path.read_text(encoding="utf-8") != text]
    left_over = [path for folder in (SCHEMA_FOLDER, COMPLETE_FOLDER) for path in folder.glob("*")
                 if path not in files]
    if arguments:
        for path in stale:
            print(f"{path.relative_to(ROOT)} is not current; run protocol/generate.py")
        for path in left_over:
            print(f"{path.relative_to(ROOT)} belongs to no description; run protocol/generate.py")
        print(f"{len(files)} files generated from {len(descriptions())} commands and {len(events())} events")
        return 1 if stale or left_over or not descriptions() or not events() else 0
    for path in stale:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(files[path], encoding="utf-8")
    for path in left_over:
        path.unlink()
    return 0


sys.exit(main(sys.argv[1:]))
