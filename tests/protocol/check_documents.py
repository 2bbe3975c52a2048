# SPDX-License-Identifier: MIT
"""Checks what the generators make for users of the network: in asyncapi.json and openapi.json each reference leads
somewhere and each example is valid; the types for Python accept the examples, and only them. Whether the documents
are valid themselves, and the types for TypeScript, is checked with packages of npm, see validate_documents.mjs."""

import json
import sys
import types
import typing

import jsonschema

import protocol
from descriptions import events, reports

sys.path.insert(0, str(protocol.ROOT / "protocol/types"))
import hg_protocol  # noqa: E402


def main():
    commands = list(protocol.descriptions().values())
    described = {"command": {one["command"] for one in commands},
                 "report": {one["report"] for one in reports().values()},
                 "event": {one["event"] for one in events().values()}}
    asyncapi, openapi = read("asyncapi"), read("openapi")
    faults = [*broken_references(asyncapi), *broken_references(openapi)]
    faults += [*message_faults(asyncapi), *body_faults(openapi)]
    topics = {channel["address"].removeprefix("{root}/{id}/")
              for channel in asyncapi["channels"].values() if channel["address"]}
    for kind, names in described.items():
        faults += [f"asyncapi.json has no topic for {kind}/{name}" for name in names if f"{kind}/{name}" not in topics]
        if kind != "event":
            faults += [f"openapi.json has no path for {name}" for name in names
                       if f"/api/{kind}/{name}" not in openapi["paths"]]
    header = (protocol.ROOT / "agent/protocol/protocol.h").read_text(encoding="utf-8")
    for document in (asyncapi, openapi):
        if f'kProtocolVersion[] = "{document["info"]["version"]}"' not in header:
            faults.append(f"{document['info']['title']}: the agent has another version of the protocol")
    faults += type_faults(commands, events().values())
    for fault in faults:
        print(fault)
    print(f"{len(topics)} topics, {len(openapi['paths'])} paths, {len(faults)} faults")
    return 1 if faults or not topics else 0


def read(name):
    return json.loads((protocol.ROOT / f"protocol/{name}.json").read_text(encoding="utf-8"))


def broken_references(document):
    for reference in set(references(document)):
        found = document
        for part in reference.removeprefix("#/").split("/"):
            found = found.get(part) if isinstance(found, dict) else None
        if found is None:
            yield f"{reference} leads nowhere"


def references(value):
    if isinstance(value, dict):
        if isinstance(value.get("$ref"), str):
            yield value["$ref"]
        for inner in value.values():
            yield from references(inner)
    elif isinstance(value, list):
        for inner in value:
            yield from references(inner)


def message_faults(document):
    for name, message in document["components"]["messages"].items():
        if not message.get("examples"):
            yield f"asyncapi.json: {name} has no example"
        for example in message.get("examples", []):
            yield from schema_faults(document, message["payload"], example["payload"], f"asyncapi.json: {name}")


def body_faults(document):
    for path, operations in document["paths"].items():
        for operation in operations.values():
            bodies = [operation.get("requestBody", {}), *operation["responses"].values()]
            for media in [media for body in bodies for media in body.get("content", {}).values()]:
                if "example" in media:
                    yield from schema_faults(document, media["schema"], media["example"], f"openapi.json: {path}")
            if "/command/" in path and len([body for body in bodies if "example" in str(body)]) < 2:
                yield f"openapi.json: {path} has not two examples"


def schema_faults(document, schema, example, where):
    validator = jsonschema.Draft202012Validator({**schema, "components": document["components"]})
    yield from (f"{where}: the example: {error.json_path}: {error.message[:200]}"
                for error in validator.iter_errors(example))


def type_faults(commands, happenings):
    def overloads(name):
        # The class itself has only a placeholder.
        method = types.SimpleNamespace(__module__="hg_protocol", __qualname__=f"{name}.__call__")
        return {typing.get_args(hints["name"])[0]: (hints["params"], hints["return"])
                for hints in map(typing.get_type_hints, typing.get_overloads(method))}

    for call, described in (("CallCommand", commands), ("CallReport", reports().values())):
        types_of = overloads(call)
        for one in described:
            name = one.get("command") or one["report"]
            for kind, side in zip(types_of[name], ("request", "reply")):
                if not fits(one["example"][side], kind):
                    yield f"hg_protocol.py: {name}: the {side} of the example does not fit {kind}"
            has_status = all(any(key["key"] == "Status" for key in reply["keys"]) for reply in one["replies"])
            if has_status and fits({"Status": 0}, types_of[name][1]):
                yield f"hg_protocol.py: {name}: a reply with a number as Status fits"
    for event in happenings:
        for value, is_right in (({"event": event["event"], "data": event["example"]}, True),
                                ({"event": event["event"], "data": []}, False), ({"event": "none", "data": {}}, False)):
            if fits(value, hg_protocol.Event) != is_right:
                yield f"hg_protocol.py: {value} {'does not fit' if is_right else 'fits'}"


def fits(value, kind):
    """Whether a value has a type of hg_protocol. Further keys are no fault, as in the protocol."""
    origin = typing.get_origin(kind)
    if kind is typing.Any:
        return True
    if typing.is_typeddict(kind):
        hints = typing.get_type_hints(kind)
        return (isinstance(value, dict) and all(key in value for key in kind.__required_keys__)
                and all(fits(value[key], hint) for key, hint in hints.items() if key in value))
    if origin in (typing.Union, types.UnionType):
        return any(fits(value, member) for member in typing.get_args(kind))
    if origin is typing.Literal:
        return value in typing.get_args(kind)
    if origin is list:
        return isinstance(value, list) and all(fits(item, typing.get_args(kind)[0]) for item in value)
    if origin is dict:
        return isinstance(value, dict)
    return isinstance(value, (int, float) if kind is float else kind)


sys.exit(main())
