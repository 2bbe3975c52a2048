# SPDX-License-Identifier: MIT
"""Generates the JSON Schemas of requests and replies, of events and of the lines around them."""

from descriptions import keys_with_items, limits, name_of

DIALECT = "https://json-schema.org/draft/2020-12/schema"

# What a schema cannot express is in its description.
REQUEST_NOTE = ("Keys are matched ignoring case; a schema has only one spelling of them. "
                "Of a repeated key the first one counts. Other keys are not an error: they stay in the object.")
CASE_SENSITIVE_NOTE = ("Keys are case-sensitive. Of a repeated key the first one counts. "
                       "Other keys are not an error: they stay in the object.")
REPLY_NOTE = ("The request's keys that were not removed come first, then these keys, in the order of "
              "this schema. A schema can express neither an order nor repeated keys; of repeated keys "
              "it validates the last one, as most parsers do.")
FORM_NOTE = (" Limits are in bytes, which a schema cannot count, and forms are those of one device library: both "
             "are only notes here, with names that begin with x-.")


def request_schema(description):
    note = CASE_SENSITIVE_NOTE if description.get("case_sensitive") else REQUEST_NOTE
    return {
        "$schema": DIALECT,
        "title": f"Request of {name_of(description)}",
        "description": f"{description['summary']}. {note}{FORM_NOTE}",
        **object_schema(description["request"], in_request=True),
    }


def reply_schema(description):
    shared = shared_keys(description["replies"])
    replies = [{"title": f"{reply['outcome']}: {reply['when']}",
                **object_schema(reply["keys"], in_request=False, shared=shared)}
               for reply in description["replies"]]
    schema = {
        "$schema": DIALECT,
        "title": f"Reply of {name_of(description)}",
        "description": f"{description['summary']}. {REPLY_NOTE}{FORM_NOTE}",
        "anyOf": replies,
    }
    if shared:
        schema["$defs"] = {name: typed_schema(key, False, []) for name, key in shared}
    return schema


def shared_keys(replies):
    """The keys with described items that several replies have in common, each with a unique name."""
    found = []
    for key in (key for reply in replies for key in keys_with_items(reply["keys"])):
        entry = next((entry for entry in found if entry[0] == key), None)
        if entry is None:
            found.append([key, 1])
        else:
            entry[1] += 1
    repeated = [key for key, count in found if count > 1]
    names = [key["key"] for key in repeated]
    return [(name + (str(names[:at].count(name) + 1) if name in names[:at] else ""), key)
            for at, (name, key) in enumerate(zip(names, repeated))]


def object_schema(keys, in_request, shared=(), closed=False):
    schema = {"type": "object"}
    required = [key["key"] for key in keys if is_required(key, in_request)]
    if required:
        schema["required"] = list(dict.fromkeys(required))
    properties = {}
    for key in keys:
        # Of a repeated key, the last one is validated.
        properties.pop(key["key"], None)
        properties[key["key"]] = key_schema(key, in_request, shared)
    if properties:
        schema["properties"] = properties
    if closed:
        schema["additionalProperties"] = False
    return schema


def is_required(key, in_request):
    return key["required"] if in_request else not key.get("optional")


def key_schema(key, in_request, shared):
    name = next((name for name, other in shared if other == key), None)
    return {"$ref": f"#/$defs/{name}"} if name else typed_schema(key, in_request, shared)


def typed_schema(key, in_request, shared):
    notes = [*([key["meaning"]] if "meaning" in key else []), *limits(key, in_request)]
    schema = {"description": "; ".join(notes)} if notes else {}
    kind = key.get("type", "text")
    if kind == "text":
        schema.update(text_schema(key))
    elif kind != "any":
        schema["type"] = kind
    if "items" in key:
        items = object_schema(key["items"], in_request, shared, closed=not in_request)
        if "max_items" in key:
            schema["maxItems"] = key["max_items"]
        if kind == "array":
            schema["items"] = items
        else:
            schema.update(items)
    return schema


def text_schema(key):
    if "text" in key:
        return {"const": key["text"]}
    if "one_of" in key:
        return {"enum": key["one_of"]}
    schema = {"type": "string"}
    if "example" in key:
        schema["examples"] = [key["example"]]
    # The plug-in accepts any text, and truncates one that is too long.
    schema.update({f"x-{name}": key[key_name] for name, key_name in NOTES.items() if key_name in key})
    return schema


def event_schema(description):
    """The data of an event."""
    return {
        "$schema": DIALECT,
        "title": f"Data of the event {description['event']}",
        "description": f"{description['summary']}: {description['when']}."
                       + (f" {description['details']}" if "details" in description else ""),
        **data_schema(description),
    }


def data_schema(description):
    return object_schema(description["data"], in_request=False)


# The codes of an answer without a result, the same for every transport: the HTTP status and the meaning of each.
CODES = {
    "bad-request": (400, "the request is invalid"),
    "denied": (403, "the policy refuses it"),
    "too-large": (413, "the request or its answer is larger than a limit"),
    "rate-limited": (429, "the client sends too many requests"),
    "outcome-unknown": (502, "the request may have been carried out, and the reply is lost"),
    "busy": (503, "nothing has been done; the same request may succeed later"),
    "rebooting": (503, "nothing has been done, since the gateway is rebooting"),
    "timeout": (504, "the command took longer than it may, or the request has expired"),
}

# What a line can control of the simulated gateway.
CONTROL = {
    "description": "What to change; the reply is empty, except for show",
    "type": "object",
    "minProperties": 1,
    "maxProperties": 1,
    "additionalProperties": False,
    "properties": {
        "faults": {"description": "The new fault plan; an empty one clears it", "type": "array",
                   "items": {"type": "string", "examples": ["devapi_get_sn_info=-1*2"]}},
        "scenario": {"description": "The built-in scenario to load; the current one is reset", "type": "string"},
        "clock": {"description": "A time at which the clock stops, \"+SECONDS\" by which it moves forward, or null for "
                                 "the machine's clock", "type": ["string", "null"],
                  "examples": ["2026-01-01T00:00:00", "+3600"]},
        "trace": {"description": "Whether device calls are reported as events", "type": "boolean"},
        "show": {"description": "Requests the settings", "type": "object"},
    },
}


def session_request_schema():
    """A line that hgagent serve and the service read."""
    params = {"type": "object", "description": "The request of the command, or what the report takes"}
    return {
        "$schema": DIALECT,
        "title": "A line to a gateway",
        "description": "One JSON object on a line. Other members are ignored; of repeated ones the first counts.",
        "type": "object",
        "properties": {"id": {"description": "Any value; the answer has the same"}},
        "anyOf": [
            {"title": "a command", "required": ["command"],
             "properties": {"command": {"type": "string"}, "params": params}},
            {"title": "a report", "required": ["report"],
             "properties": {"report": {"type": "string"}, "params": params}},
            {"title": "a notice to the app", "required": ["notice"],
             "properties": {"notice": {"type": "object", "required": ["plugin_name", "text"],
                                       "properties": {"plugin_name": {"type": "string"},
                                                      "text": {"type": "string"}}}}},
            {"title": "control of the simulated gateway", "required": ["control"],
             "properties": {"control": CONTROL}},
            {"title": "a request for the versions", "required": ["hello"],
             "properties": {"hello": {"type": "object"}}},
            {"title": "a subscription to events, only for a service", "required": ["subscribe"],
             "properties": {"subscribe": {"type": "string"}}},
            {"title": "the end of a subscription", "required": ["unsubscribe"], "properties": {"unsubscribe": {"type": "string"}}},
        ],
    }


def session_line_schema(events):
    """A line that hgagent serve and the service write."""
    reasons = {"type": "array", "items": {"type": "string"}}
    progress = next(event for event in events if event["event"] == "update.progress")

    def line(title, required, **properties):
        return {"title": title, "type": "object", "required": required, "properties": properties,
                "additionalProperties": False}

    return {
        "$schema": DIALECT,
        "title": "A line from a gateway",
        "description": "An answer has an id; every other line comes by itself, between answers.",
        "anyOf": [
            line("an answer", ["id", "result"], id={}, result={"type": "integer"}, reply={"type": "object"},
                 reasons=reasons),
            line("an answer without a result", ["id", "error", "code"], id={}, error={"type": "string"},
                 code={"enum": list(CODES)}, rule={"type": "string"}),
            *(line(f"the event {event['event']}", ["event", "data"], event={"const": event["event"]},
                   data=data_schema(event)) for event in events),
            line("a notice to the app, without --events", ["notice"], notice={}),
            line("progress, without --events", ["progress"], progress=data_schema(progress)),
            line("reasons from the device library, with --reasons", ["reasons"], reasons=reasons),
        ],
    }


NOTES = {"max-bytes": "max_bytes", "unit": "unit", "values": "values", "pattern": "pattern"}
