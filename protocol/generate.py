#!/usr/bin/python3 -B
# SPDX-License-Identifier: MIT
"""Generates files from the descriptions.

From those of the commands, reports and events: docs/protocol.md, docs/messages.md, the manual page hg-protocol(7),
the JSON Schemas, the documents for AsyncAPI and OpenAPI, the types for TypeScript and Python, and protocol/complete,
which includes the descriptions of the device fields. From those of the device interface: device_access.h,
device_functions.h, device_facts.h, device_layout.h and docs/device_access.md.

usage: generate.py [--check]

With --check nothing is written: the program names each file that is not up to date, and fails.
"""

import json
import sys

import asyncapi
import device_facts_header
import device_functions_header
import device_header
import device_layout_header
import device_reference
import man_page
import messages_page
import openapi
import python_types
import reference
import schemas
import typescript_types
from descriptions import descriptions, events, reports
from device_interface import Interface, ROOT
from typed_model import Model

SCHEMA_FOLDER = ROOT / "protocol/schemas"
COMPLETE_FOLDER = ROOT / "protocol/complete"
INCLUDE_FOLDER = ROOT / "smart_router_service/include/smart_router_service"
LICENCE = "/* SPDX-License-Identifier: MIT */\n"


def made_files():
    """The text of each generated file, by its path."""
    commands = list(descriptions().values())
    happenings = list(events().values())
    described_reports = list(reports().values())
    introduction = (ROOT / "protocol/introduction.md").read_text(encoding="utf-8")
    interface = Interface()
    model = Model(commands, described_reports, happenings)
    messages = asyncapi.asyncapi(commands, described_reports, happenings)
    files = {
        INCLUDE_FOLDER / "device_access.h": device_header.device_header(interface),
        INCLUDE_FOLDER / "device_functions.h": device_functions_header.device_functions_header(interface),
        ROOT / "protocol/include/protocol/device_facts.h": device_facts_header.device_facts_header(interface),
        ROOT / "protocol/include/protocol/device_layout.h": device_layout_header.device_layout_header(interface),
        ROOT / "docs/device_access.md": device_reference.device_reference(interface, commands),
        ROOT / "docs/protocol.md": reference.reference(commands, described_reports, happenings, introduction),
        ROOT / "protocol/asyncapi.json": as_lines(messages, 3),
        ROOT / "protocol/openapi.json": as_lines(openapi.openapi(commands, described_reports, happenings), 3),
        ROOT / "protocol/types/hg_protocol.d.ts": typescript_types.typescript_types(model),
        ROOT / "protocol/types/hg_protocol.py": python_types.python_types(model),
        ROOT / "docs/messages.md": messages_page.messages_page(messages, commands),
        ROOT / "docs/man/hg-protocol.7": man_page.man_page(commands, happenings, introduction),
    }
    for command in commands:
        files[COMPLETE_FOLDER / f"{command['command']}.json"] = as_lines(command, 1)
        files[SCHEMA_FOLDER / f"{command['command']}.request.json"] = as_text(schemas.request_schema(command))
        files[SCHEMA_FOLDER / f"{command['command']}.reply.json"] = as_text(schemas.reply_schema(command))
    for event in happenings:
        files[SCHEMA_FOLDER / f"{event['event']}.event.json"] = as_text(schemas.event_schema(event))
    files[SCHEMA_FOLDER / "session.request.json"] = as_text(schemas.session_request_schema())
    files[SCHEMA_FOLDER / "session.line.json"] = as_text(schemas.session_line_schema(happenings))
    return {path: LICENCE + text if path.suffix == ".h" else text for path, text in files.items()}


def as_text(schema):
    return json.dumps(schema, indent=2, ensure_ascii=False) + "\n"


def as_lines(value, depth):
    """The object as JSON, with a line for each value down to a depth, so that a small change is one of few lines."""
    return lines_of(value, depth, 1) + "\n"


def lines_of(value, depth, level):
    if depth < level or not isinstance(value, dict) or not value:
        return json.dumps(value, ensure_ascii=False)
    parts = [f"{json.dumps(name)}: {lines_of(part, depth, level + 1)}" for name, part in value.items()]
    return "{" + (",\n" + " " * level).join(parts) + "}"


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
        print(f"{len(files)} files generated from {len(descriptions())} commands, {len(reports())} reports and "
              f"{len(events())} events")
        return 1 if stale or left_over or not descriptions() or not reports() or not events() else 0
    for path in stale:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(files[path], encoding="utf-8")
    for path in left_over:
        path.unlink()
    return 0


sys.exit(main(sys.argv[1:]))
