# SPDX-License-Identifier: MIT
"""Checks the descriptions of the events against their schema, and each example against its description."""

import json
import sys

import jsonschema

import protocol
import schemas
from descriptions import events


def faults_of(name, event, description_schema):
    """What is wrong with the description of one event, in the file of this name."""
    errors = list(jsonschema.Draft202012Validator(description_schema).iter_errors(event))
    yield from (f"{error.json_path}: {error.message}" for error in errors)
    if errors:
        return
    if event["event"] != name:
        yield f"describes {event['event']}"
    keys = [key["key"] for key in event["data"]]
    if len(set(keys)) < len(keys):
        yield "describes a key twice"
    for key in event["data"]:
        if "one_of" in key and key.get("type", "text") != "text":
            yield f"{key['key']} has texts but is not a text"
    data = jsonschema.Draft202012Validator(schemas.data_schema(event))
    yield from (f"the example: {error.json_path}: {error.message}" for error in data.iter_errors(event["example"]))
    if [key for key in event["example"] if key in keys] != [key for key in keys if key in event["example"]]:
        yield "the example has the keys in another order"
    yield from (f"the example: {key} is not described" for key in event["example"] if key not in keys)


def main():
    schema = json.loads((protocol.ROOT / "protocol/event.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    described = events()
    faults = [f"{file.name}: {fault}" for file, event in described.items()
              for fault in faults_of(file.stem, event, schema)]
    for fault in faults:
        print(fault)
    print(f"{len(described)} events, {len(faults)} faults")
    return 1 if faults or not described else 0


if __name__ == "__main__":
    sys.exit(main())
