# SPDX-License-Identifier: MIT
"""What the documents of the interfaces on a network share: the schemas of all requests, replies and events
as components, and the texts about them."""

import schemas

PROTOCOL_VERSION = "1.0"  # as in agent/protocol/protocol.h
LICENCE = {"name": "MIT", "identifier": "MIT"}

NOTES = f"""\
Values are strings unless a schema says otherwise, including numbers and switches: `"1"`, not `1`. A reply has
`"Status": "0"` for success; almost all other replies have `"Status": "1"` and a constant text in `FailReason`.

Requests: {schemas.REQUEST_NOTE} The description of a command says if its keys are case-sensitive instead.

Replies: {schemas.REPLY_NOTE}

Limits of texts are in bytes, which a schema cannot count, and forms are those of the simulated gateway: both are
only notes, `x-max-bytes`, `x-unit`, `x-values` and `x-pattern`."""


def summary_of(description):
    details = f" {description['details']}" if "details" in description else ""
    case = " Its request keys are case-sensitive." if description.get("case_sensitive") else ""
    return f"{description['summary']}.{details}{case}"


def component(name):
    return {"$ref": f"#/components/schemas/{name}"}


def component_schemas(commands, reports, events):
    """The schemas by their names: NAME.request and NAME.reply of commands and reports, NAME.event."""
    found = {"error": error_schema()}
    for description in [*commands, *reports]:
        name = description.get("command") or f"report.{description['report']}"
        request = schemas.request_schema(description)
        add(found, f"{name}.request", {**request, "description": summary_of(description)})
        add(found, f"{name}.reply", {**schemas.reply_schema(description), "description": summary_of(description)})
    for event in events:
        add(found, f"{event['event']}.event", schemas.event_schema(event))
    return found


def add(found, name, schema):
    """Adds a schema, with its definitions as components of their own."""
    schema = dict(schema)
    del schema["$schema"]
    for definition, value in schema.pop("$defs", {}).items():
        found[f"{name}.{definition}"] = with_components(value, name)
    found[name] = with_components(schema, name)


def with_components(value, name):
    if isinstance(value, dict):
        return {key: f"#/components/schemas/{name}.{inner.rpartition('/')[2]}" if key == "$ref"
                else with_components(inner, name) for key, inner in value.items()}
    return [with_components(inner, name) for inner in value] if isinstance(value, list) else value


def error_schema():
    return {
        "title": "An answer without a result",
        "type": "object",
        "required": ["error", "code"],
        "properties": {
            "error": {"type": "string", "description": "why there is no result, for people",
                      "examples": ["the gateway reboots"]},
            "code": {"enum": list(schemas.CODES), "description": "the same for programs: "
                     + "; ".join(f"{code}: {meaning}" for code, (_, meaning) in schemas.CODES.items())},
            "rule": {"type": "string", "description": "for denied: the rule of the policy, with its place",
                     "examples": ["policy.toml:12: deny SET_*"]},
        },
        "additionalProperties": False,
    }


def result_schema(title, reply, result):
    return {
        "title": title,
        "type": "object",
        "required": ["result", "reply"],
        "properties": {"result": result, "reply": reply},
    }


def command_answer(description):
    return result_schema(f"Answer to {description['command']}", component(f"{description['command']}.reply"),
                         {"const": 0, "description": "the command was found; the reply says whether it succeeded"})


def report_answer(description):
    return result_schema(f"The report {description['report']}", component(f"report.{description['report']}.reply"),
                         {"type": "integer", "description": "result of the report's function, 0 for success"})
