# SPDX-License-Identifier: MIT
"""Checks the traffic of the tests against the JSON Schemas: each reply has to be valid, and so has the
request of each success; each schema that can refuse requests has to have refused one. Each line that the
agent wrote while it served has to be valid as well, and each described event has to have occurred. With
--part, after a part of the tests, no schema has to have refused a request, and no event to have occurred."""

import json
import sys

import jsonschema

import protocol
from descriptions import events

MISSING = object()


def main(traffic_file, is_part):
    sys.stdout.reconfigure(errors="backslashreplace")
    descriptions = {description["command"]: description
                    for description in protocol.descriptions().values()}
    schemas = {(command, kind): read_schema(command, kind)
               for command in descriptions for kind in ("request", "reply")}
    demanding = {command for command, description in descriptions.items()
                 if any(key["required"] for key in description["request"])}
    faults = []
    with open(traffic_file, encoding="utf-8", errors="surrogateescape") as lines:
        records = dict.fromkeys(lines)
    session = read_schema("session", "line")
    untold = {event["event"] for event in events().values() if event["made_by"] == "serve"}
    for line in records:
        record = json.loads(line)
        if "line" in record:
            faults += [f"a line of serve: {error.message[:200]}\n  {line[:1000]}"
                       for error in session.iter_errors(record["line"])]
            untold.discard(dict(record["line"]).get("event"))
            continue
        command = record["command"]
        for error in schemas[command, "reply"].iter_errors(record["reply"]):
            faults.append(f"{command}: the reply: {error.json_path}: {error.message[:200]}\n  {line[:1000]}")
        ordered = dict(protocol.parse(line))
        description = descriptions[command]
        spelling = str if description.get("case_sensitive") else str.lower
        request = as_read(ordered["request"], description["request"], spelling)
        error = next(schemas[command, "request"].iter_errors(request), None)
        if error:
            demanding.discard(command)
            if succeeded(ordered, description):
                faults.append(f"{command}: succeeded though in the request {error.json_path}: "
                              f"{error.message[:200]}\n  {line[:1000]}")
    if not is_part:
        faults += [f"{command}: no test has sent a request that the schema refuses"
                   for command in sorted(demanding)]
        faults += [f"{event}: no test has received it" for event in sorted(untold)]
    for fault in faults:
        print(fault)
    print(f"{len(records)} exchanges and lines, {len(schemas)} schemas, {len(faults)} faults")
    return 1 if faults or not records else 0


def read_schema(command, kind):
    schema = json.loads((protocol.ROOT / f"protocol/schemas/{command}.{kind}.json")
                        .read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


def succeeded(record, description):
    """Whether the reply can only be a success: some commands reply alike to a success and a failure."""
    case_sensitive = description.get("case_sensitive", False)
    outcomes = {reply["outcome"] for reply in description["replies"]
                if not protocol.mismatch(record["reply"], record["request"], reply, case_sensitive)}
    return outcomes == {"success"}


def as_read(pairs, keys, spelling):
    """An object as a command reads it: the first of each key, in the spelling of the description; a key
    with a value of another type counts as missing, and elements that are not read are removed."""
    described = {spelling(key["key"]): key for key in keys}
    found = {}
    for name, value in pairs:
        key = described.get(spelling(name))
        if key and key["key"] not in found:
            found[key["key"]] = value_as_read(value, key, spelling)
    return {name: value for name, value in found.items() if value is not MISSING}


def value_as_read(value, key, spelling):
    kind = key.get("type", "text")
    if kind == "any":
        return value
    if kind == "text":
        return value if isinstance(value, str) else MISSING
    if isinstance(value, protocol.Object):
        return as_read(value, key.get("items", []), spelling) if kind == "object" else MISSING
    if kind == "array" and isinstance(value, list):
        return [as_read(element, key.get("items", []), spelling)
                if isinstance(element, protocol.Object) else element
                for element in value[:key.get("max_items")]]
    return MISSING


sys.exit(main(sys.argv[1], "--part" in sys.argv[2:]))
