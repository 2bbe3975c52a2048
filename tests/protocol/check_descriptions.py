# SPDX-License-Identifier: MIT
"""Checks the protocol's descriptions against their schema, the plug-in's table of commands and the device
functions, and each example against its own description."""

import json
import re
import sys

import jsonschema

import protocol
from descriptions import name_of, reports, said_by_field
from device_interface import Interface

# The commands that cannot succeed in an example, with the reason; their examples show a described
# failure instead.
NO_SUCCESS_WITHOUT = {"HG_IMAGE_DOWNLOAD": "an image to download"}


def schema_faults():
    schema = json.loads((protocol.ROOT / "protocol/command.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    for file, description in protocol.as_written().items():
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
            yield f"{file.name}: protocol/device describes no {function}"
    for command in set(table) - set(described):
        yield f"{command} is in the table of commands but not described"
    for command in set(described) - set(table):
        yield f"{command} is described but not in the table of commands"


def missing_key_faults():
    """Each required key has the one reply to a request without it, and no reply names another key."""
    for file, description in protocol.as_written().items():
        keys = {}
        for key in description["request"]:
            keys[key["key"]] = key["required"]
            keys.update({f"{key['key']}.{inner['key']}": key["required"] and inner["required"]
                         for inner in key.get("items", [])})
        for part in ("without", "without_text"):
            named = [key for reply in description["replies"] for key in reply.get(part, [])]
            for key in sorted(set(named) - keys.keys()):
                yield f"{file.name}: {part} names {key}, which is no key of the request"
            for key in sorted({key for key in named if named.count(key) > 1}):
                yield f"{file.name}: two replies are {part} {key}"
            for key, required in keys.items():
                if part == "without" and required and key not in named:
                    yield f"{file.name}: no reply is {part} {key}, which is required"


def example_faults():
    for file, described in protocol.descriptions().items():
        description = protocol.parse(file.read_text(encoding="utf-8"))
        example = dict(dict(description)["example"])
        faults = [protocol.mismatch(example["reply"], example["request"], reply,
                                    described.get("case_sensitive", False))
                  for reply in described["replies"]
                  if reply["outcome"] == "success" or file.stem in NO_SUCCESS_WITHOUT]
        if all(faults):
            yield f"{file.name}: the example is not a described success: {'; '.join(faults)}"


def reply_keys(descriptions, command, list_key=None):
    """The keys of a command's successful replies, or of the elements of a list in them, by their names."""
    keys = {}
    for reply in descriptions.get(command, {}).get("replies", []):
        if reply["outcome"] == "success":
            keys |= {key["key"]: key for key in reply["keys"]}
    if list_key is None:
        return keys
    return {key["key"]: key for key in keys.get(list_key, {}).get("items", [])}


def relation_faults():
    """References to other commands: where values come from, and which command reads settings back."""
    descriptions = {description["command"]: description
                    for description in protocol.descriptions().values()}
    for name, description in descriptions.items():
        for key in description["request"]:
            place = key.get("found_in")
            if place and place["key"] not in reply_keys(descriptions, place["command"], place.get("list")):
                yield f"{name}: {key['key']} is not found in {place['command']}"
            if place and descriptions[place["command"]]["effect"] != "none":
                yield f"{name}: {place['command']} does more than report"
        back = description.get("read_back")
        if back:
            told = reply_keys(descriptions, back["command"], back.get("list"))
            yield from (f"{name}: {fault}" for fault in read_back_faults(description, back, told))


def read_back_faults(description, back, told):
    renamed, given, without = back.get("keys", {}), back.get("given", {}), back.get("without", [])
    changed = [back["change"]["key"]] if "change" in back else []
    request = {key["key"]: key for key in description["request"]}
    read = {key: told[renamed.get(key, key)] for key in request
            if renamed.get(key, key) in told and key not in {*given, *without}}
    if not read:
        yield f"{back['command']} reports none of the keys"
    for key in {*renamed, *given, *without, *changed} - set(request):
        yield f"{key} is not a key of the request"
    for key in {*renamed, *changed} - set(read):
        yield f"{back['command']} does not report {key}"
    for key in without:
        if request.get(key, {}).get("required"):
            yield f"{key} cannot be left out"
    if "list" in back and not any("found_in" in key for key in request.values()):
        yield f"nothing selects an element of {back['list']}"
    for key, place in read.items():
        wanted = {inner["key"] for inner in request[key].get("items", []) if inner["required"]}
        for inner in wanted - {inner["key"] for inner in place.get("items", [])}:
            yield f"{back['command']} does not report {inner} of {key}"


def field_faults(interface, described):
    """Whether the keys name the fields that they are copied to or from, and repeat nothing that the fields define."""
    for name, description in described.items():
        for keys, in_request in ((description["request"], True),
                                 *((reply["keys"], False) for reply in description["replies"])):
            yield from (f"{name}: {fault}" for fault in dict.fromkeys(
                fault for key in flat(keys)
                for fault in key_faults(interface, description["device_calls"], key, in_request)))


# Types and schemas show a meaning without the keys around it.
LEANS_ON_OTHERS = re.compile(r"(its|their|it|they|that|those|the same)\b(?! as [A-Z])")


def meaning_faults(described):
    """Whether each meaning can be understood alone, and does not repeat the values of its form."""
    for description in described:
        name = name_of(description)
        replies = [key for reply in description["replies"] for key in reply["keys"]]
        for key in flat([*description["request"], *replies]):
            meaning = key.get("meaning", "")
            if LEANS_ON_OTHERS.match(meaning):
                yield f"{name}: the meaning of {key['key']} depends on other keys: {meaning}"
            if "values" in key and any(f'"{value}"' in meaning for value in key["values"]):
                yield f"{name}: the meaning of {key['key']} repeats values of its form: {meaning}"


def flat(keys):
    for key in keys:
        yield key
        yield from flat(key.get("items", []))


def key_faults(interface, calls, key, in_request):
    if "field" in key:
        owner = interface.owner(key["field"])
        if owner is None or key["field"] not in reached(interface, calls, in_request):
            yield f"{key['key']} is not passed in {key['field']}"
            return
        for name in said_by_field(interface, owner, in_request):
            if name[0] in key:
                yield f"{name[0]} of {key['key']} is that of {key['field']}"
        return
    for path in reached(interface, calls, in_request):
        owner = interface.owner(path)
        said = dict(said_by_field(interface, owner, in_request))
        if owner["name"].lower() == key["key"].lower() and said.get("max_bytes") == key.get("max_bytes", 0):
            yield f"the width of {key['key']} is that of a field, such as {path}"
            return


def reached(interface, calls, in_request):
    """The fields and arguments that values of a request, or of a reply, can be passed in."""
    ways = ("in", "in_out", None) if in_request else ("out", "in_out")
    for function in calls:
        for argument in interface.functions.get(function, {}).get("arguments", []):
            if argument.get("way") in ways:
                yield f"{function}.{argument['name']}"
                yield from fields_within(interface, argument["type"])


def fields_within(interface, record):
    for field in interface.records.get(record, {"fields": []})["fields"]:
        yield f"{record}.{field['name']}"
        if field.get("type") != record:
            yield from fields_within(interface, field.get("type"))


def main():
    written = {description["command"]: description for description in protocol.as_written().values()}
    faults = [*schema_faults()] or [*table_faults(), *missing_key_faults(), *example_faults(), *relation_faults(),
                                    *field_faults(Interface(), written),
                                    *meaning_faults([*protocol.descriptions().values(), *reports().values()])]
    for fault in faults:
        print(fault)
    print(f"{len(protocol.descriptions())} descriptions, {len(faults)} faults")
    return 1 if faults or not protocol.descriptions() else 0


if __name__ == "__main__":
    sys.exit(main())
