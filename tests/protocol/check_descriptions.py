"""Holds the protocol's descriptions against their schema, against the plug-in's table of commands and
against the device functions, and each example against its own description."""

import json
import sys

import jsonschema

import protocol

# The commands that cannot succeed in an example, with what they would need; the example shows a
# described failure instead.
NO_SUCCESS_WITHOUT = {"HG_IMAGE_DOWNLOAD": "an image to download"}


def schema_faults():
    schema = json.loads((protocol.ROOT / "protocol/command.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    for file, description in protocol.descriptions().items():
        for error in validator.iter_errors(description):
            yield f"{file.name}: {error.json_path}: {error.message}"


def table_faults():
    table = protocol.command_table()
    described = {}
    for file, description in protocol.descriptions().items():
        command = description["command"]
        described[command] = description
        if file.stem != command:
            yield f"{file.name}: describes {command}"
        if table.get(command, description["handler"]) != description["handler"]:
            yield f"{file.name}: the handler in the table is {table[command]}"
        for function in set(description["device_calls"]) - protocol.device_functions():
            yield f"{file.name}: device_access.h declares no {function}"
    for command in set(table) - set(described):
        yield f"{command} is in the table of commands but not described"
    for command in set(described) - set(table):
        yield f"{command} is described but not in the table of commands"


def example_faults():
    for file in protocol.descriptions():
        description = protocol.parse(file.read_text(encoding="utf-8"))
        example = dict(dict(description)["example"])
        described = json.loads(file.read_text(encoding="utf-8"))
        faults = [protocol.mismatch(example["reply"], example["request"], reply,
                                    described.get("case_sensitive", False))
                  for reply in described["replies"]
                  if reply["outcome"] == "success" or file.stem in NO_SUCCESS_WITHOUT]
        if all(faults):
            yield f"{file.name}: the example is no described success: {'; '.join(faults)}"


def main():
    faults = [*schema_faults()] or [*table_faults(), *example_faults()]
    for fault in faults:
        print(fault)
    print(f"{len(protocol.descriptions())} descriptions, {len(faults)} faults")
    return 1 if faults or not protocol.descriptions() else 0


sys.exit(main())
