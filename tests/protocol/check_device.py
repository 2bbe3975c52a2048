# SPDX-License-Identifier: MIT
"""Checks the descriptions of the device interface against their schema, each other and the descriptions
of the commands."""

import json
import re
import sys

import jsonschema

import protocol
from device_interface import FOLDER, INTEGER_SIZES, Interface, field_kind
from device_sentences import filled_arguments

FAILING = ("not 0", "-1", "not 1")
EXPORTS = protocol.ROOT / "smart_router_service/exports.map"


def all_faults(interface, commands):
    return [*schema_faults(interface)] or [*rule_faults(interface, commands)]


def rule_faults(interface, commands):
    yield from naming_faults(interface)
    yield from record_faults(interface)
    yield from function_faults(interface, commands)
    yield from form_faults(interface)


def schema_faults(interface):
    schema = json.loads((protocol.ROOT / "protocol/device.schema.json").read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    subject = jsonschema.Draft202012Validator(schema)
    whole = jsonschema.Draft202012Validator({"$ref": "#/$defs/interface", "$defs": schema["$defs"]})
    described = {"version": interface.version, "subjects": [each["subject"] for each in interface.subjects], "forms": interface.forms}
    for name, validator, text in [("interface", whole, described),
                                  *((each["subject"], subject, each) for each in interface.subjects)]:
        for error in validator.iter_errors(text):
            error = jsonschema.exceptions.best_match([error])
            owner = next((each[key] for each in ancestors(text, error) for key in ("name", "function", "record")
                          if key in each), "")
            yield f"{name}.json: {error.json_path} ({owner}): {error.message[:200]}"


def ancestors(text, error):
    """The objects that contain the error, the innermost first."""
    found = [text]
    for step in error.absolute_path:
        found.append(found[-1][step])
    return [each for each in reversed(found) if isinstance(each, dict)]


def naming_faults(interface):
    files = {file.stem for file in FOLDER.glob("*.json")} - {"interface"}
    for name in files ^ {subject["subject"] for subject in interface.subjects}:
        yield f"{name}.json and the subjects of interface.json do not agree"
    parts = [part for subject in interface.subjects for part in subject["interface"]]
    for kind, found in (("record", interface.records), ("function", interface.functions)):
        names = [part[kind] for part in parts if kind in part]
        yield from (f"{name} is described twice" for name in found if names.count(name) > 1)


def known_type(interface, name):
    return name == "text" or name in interface.records or name in INTEGER_SIZES


def known_amount(interface, amount):
    return isinstance(amount, int) or amount in interface.constants


def record_faults(interface):
    for name, record in interface.records.items():
        fields = {field["name"]: field for field in record["fields"]}
        if len(fields) < len(record["fields"]):
            yield f"{name}: a field is described twice"
        for field in record["fields"]:
            yield from (f"{name}.{field['name']}: {fault}" for fault in field_faults(interface, field, fields))


def field_faults(interface, field, fields):
    if not known_type(interface, field.get("type", "text")):
        yield f"there is no {field['type']}"
    if not known_amount(interface, field.get("length", 1)):
        yield f"there is no constant {field['length']}"
    count = fields.get(field.get("counted_by"))
    if "counted_by" in field and (count is None or field_kind(count) not in INTEGER_SIZES):
        yield f"{field['counted_by']} is not a number of this record"
    if field.get("points_to") == "array" and count is None:
        yield "nothing gives their number"
    if field_kind(field) == "text" and not field.get("reserved") and "form" not in field:
        yield "a text without a form"


def function_faults(interface, commands):
    exported = set(re.findall(r"^\s+(\w+);", EXPORTS.read_text(encoding="utf-8"), re.M))
    callers = {}
    for command in commands:
        for function in command["device_calls"]:
            callers.setdefault(function, set()).add(command["command"])
    for name, function in interface.functions.items():
        arguments = {argument["name"]: argument for argument in function.get("arguments", [])}
        for argument in arguments.values():
            yield from (f"{name}: {argument['name']}: {fault}"
                        for fault in argument_faults(interface, argument, arguments))
        for key in ("read_with", "put_back_with"):
            if function["effect"].get(key, name) not in interface.functions:
                yield f"{name}: there is no {function['effect'][key]}"
        result = function.get("result", {})
        for known in result.get("known", []):
            if not known_amount(interface, known["result"]):
                yield f"{name}: there is no constant {known['result']}"
        filled = list(filled_arguments(function))
        for each in [result, *result.get("callers", [])]:
            if "then" in each and not filled:
                yield f"{name}: it fills nothing that could be {each['then']}"
            if filled and each.get("failure") in FAILING and not {"then", "so"} & each.keys():
                yield f"{name}: what becomes of {' and '.join(filled)} is not said"
        who = {each for caller in result.get("callers", []) for each in caller["who"]}
        told = {each for each in who if not each.startswith("json_")}
        if who:
            yield from (f"{name}: the rule of {each} is missing" for each in callers.get(name, set()) - told)
        yield from (f"{name}: {each} does not call it" for each in told - callers.get(name, set()))
        yield from (f"{name}: {each} is not exported" for each in who - told - exported)


def argument_faults(interface, argument, arguments):
    kind, way = argument["type"], argument.get("way")
    if not known_type(interface, kind):
        yield f"there is no {kind}"
    if not known_amount(interface, argument.get("width", 1)):
        yield f"there is no constant {argument['width']}"
    if kind == "text":
        if way == "out" and not {"width", "size", "freed_with"} & argument.keys():
            yield "a text to write without a width"
        if way == "in_out" or way is None:
            yield "a text is written or read"
        if "form" not in argument:
            yield "a text without a form"
    if "size" in argument and arguments.get(argument["size"], {}).get("type") != "int32_t":
        yield f"{argument['size']} is not a size"
    if way is None and kind in interface.records:
        yield "a record by value"
    for path in (*argument.get("given", []), *argument.get("filled", []), *argument.get("may_fill", [])):
        if not has_field(interface, kind, path):
            yield f"{kind} has no {path}"


def has_field(interface, record, path):
    name, _, rest = path.partition(".")
    for field in interface.records.get(record, {"fields": []})["fields"]:
        if field["name"] == name:
            return not rest or has_field(interface, field["type"], rest)
    return False


def form_faults(interface):
    """Whether each value has its form and fits into its field, and each form mentions its values."""
    used = set()
    for path, owner in values(interface):
        form = interface.forms.get(owner["form"])
        used.add(owner["form"])
        if form is None:
            yield f"{path}: there is no form {owner['form']}"
            continue
        example = owner.get("example", form["example"])
        width = interface.number(owner.get("width", 1 << 20))
        if len(example.encode()) >= width:
            yield f"{path}: {example} does not fit into {width} bytes"
        if not re.fullmatch(form.get("pattern", ".*"), example) or example not in form.get("values", [example]):
            yield f"{path}: {example} does not have the form {owner['form']}"
    yield from (f"interface.json: no value has the form {name}" for name in interface.forms.keys() - used)
    for name, form in interface.forms.items():
        yield from (f"interface.json: {name} does not mention {value}" for value in form.get("values", [])
                    if value not in form["text"])


def values(interface):
    for name, record in interface.records.items():
        yield from ((f"{name}.{field['name']}", field) for field in record["fields"] if "form" in field)
    for name, function in interface.functions.items():
        yield from ((f"{name}: {argument['name']}", argument)
                    for argument in function.get("arguments", []) if "form" in argument)


def main():
    interface = Interface()
    faults = all_faults(interface, list(protocol.descriptions().values()))
    for fault in faults:
        print(fault)
    print(f"{len(interface.functions)} functions, {len(interface.records)} records, {len(faults)} faults")
    return 1 if faults or not interface.functions else 0


if __name__ == "__main__":
    sys.exit(main())
