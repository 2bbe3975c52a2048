# SPDX-License-Identifier: MIT
"""Generates docs/protocol.md from the descriptions: every command with its request, replies and example."""

import itertools
import json

from descriptions import limits
from device_sentences import listed

HEADER = "<!-- Generated from protocol/ by protocol/generate.py. -->\n# The protocol\n"
SCHEMAS = """
For programs, `protocol/schemas` has two JSON Schemas (2020-12) for each command, `NAME.request.json` and
`NAME.reply.json`. They cannot express the order of keys, or repeated keys. Widths in bytes, units and forms are
only notes: `x-max-bytes`, `x-unit`, `x-values`, `x-pattern`. `protocol/complete` has the complete description
of each command in one JSON file. The device functions that a command calls are described in
[device_access.md](device_access.md).

The examples are recorded: a new simulated gateway with `SIMULATED_GATEWAY_TIME=1767225600` returns exactly these
replies, except for the `AccessTime` of GET_TSLINK_TOPOLOGY_INFO, which uses the computer's clock.
"""

EVENTS = """
Events report what happens without a request: [`hgagent serve --events`](agent.md#events---events) writes a line
`{"event": NAME, "data": {...}}` for each, between its answers, and the service sends it to clients that have subscribed.
`protocol/schemas` has a JSON Schema of each event's data, `NAME.event.json`, and two of the lines:
`session.request.json` for those that a client writes, `session.line.json` for those that it reads.
"""


REPORTS = """
Reports are what the plug-in builds for its agent without a command: [`hgagent report`](agent.md#reports-report) and
`{"report": NAME, "params": {...}}` request them. The request's keys are the parameters. The `result` of an answer is
that of the function, 0 for success.
"""


def reference(descriptions, reports, events, introduction):
    subjects = {}
    for description in descriptions:
        subjects.setdefault(description["subject"], []).append(description)
    parts = [HEADER, introduction.rstrip() + "\n", SCHEMAS.strip() + "\n",
             f"## The {len(descriptions)} commands\n"]
    parts += [f"**{subject_title(subject)}**: "
              + ", ".join(f"[{one['command']}](#{one['command'].lower()})" for one in subjects[subject])
              + "\n" for subject in sorted(subjects)]
    for subject in sorted(subjects):
        parts.append(f"## {subject_title(subject)}\n")
        for description in subjects[subject]:
            parts += command_parts(description)
    parts.append(f"## The {len(reports)} reports\n")
    parts.append(REPORTS.strip() + "\n")
    for report in reports:
        parts += report_parts(report)
    parts.append(f"## The {len(events)} events\n")
    parts.append(EVENTS.strip() + "\n")
    for event in events:
        parts += event_parts(event)
    return "\n".join(parts)


def event_parts(event):
    yield f"### {event['event']}\n"
    by = {"serve": "`hgagent serve`", "service": "the service"}[event["made_by"]]
    yield (f"{event['summary']}: {event['when']}. Sent by {by}."
           f"{' ' + event['details'] if 'details' in event else ''}\n")
    if event["data"]:
        yield table(("Key", "Value", "Meaning"),
                    [(f"`{key['key']}`", value(key),
                      key["meaning"] + ("; not always present" if key.get("optional") else ""))
                     for key in event["data"]])
    yield "```json\n" + json.dumps({"event": event["event"], "data": event["example"]}, ensure_ascii=False) + "\n```\n"


def subject_title(subject):
    """The title of a group of commands, with abbreviations in their usual spelling."""
    words = [{"wan": "WAN", "wifi": "Wi-Fi", "qos": "QoS"}.get(word, word) for word in subject.split("_")]
    return words[0][0].upper() + " ".join(words)[1:]


def command_parts(description):
    yield f"### {description['command']}\n"
    yield f"{description['summary']}.{' ' + description['details'] if 'details' in description else ''}\n"
    calls = ", ".join(f"`{call}`" for call in description["device_calls"]) or "none"
    time = f" It may take {description['seconds']} seconds." if "seconds" in description else ""
    yield f"Handler `{description['handler']}`. Device calls: {calls}.{time}\n"
    yield from call_parts(description)


def report_parts(report):
    yield f"### {report['report']}\n"
    builder = f" Function `{report['builder']}`." if "builder" in report else ""
    yield f"{report['summary']}.{' ' + report['details'] if 'details' in report else ''}{builder}\n"
    yield from call_parts(report)


def call_parts(description):
    """Request, replies and example."""
    capitals = " (case-sensitive)" if description.get("case_sensitive") else ""
    if description["request"]:
        yield f"**Request**{capitals}\n"
        yield table(("Key", "", "Meaning"), request_rows(description["request"]))
    else:
        yield "**Request**: no keys.\n"

    shown, earlier = [], []
    plain = [reply for reply in description["replies"] if is_plain_failure(reply)]
    for reply in description["replies"]:
        if reply not in plain:
            yield f"**Reply, {reply['outcome']}**: {reply['when']}." + removed_note(reply, description) + "\n"
            if reply["keys"]:
                yield table(("Key", "Value", "Meaning"), collapsed(reply_rows(reply["keys"], shown), earlier))
    if plain:
        yield "**Failures**: `Status` is `\"1\"`, followed by `FailReason`:\n"
        yield table(("`FailReason`", "When", "Removed"),
                    [(code(reply["keys"][1]["text"]), reply["when"], removed_keys(reply, description) or "–")
                     for reply in plain])

    example = description["example"]
    yield "**Example**\n"
    yield "```json\n{}\n{}\n```\n".format(*(json.dumps(example[side], ensure_ascii=False)
                                           for side in ("request", "reply")))


def is_plain_failure(reply):
    """Whether a reply consists of a status and a constant reason, as almost all failures do."""
    keys = [(key["key"], key.get("text")) for key in reply["keys"]]
    return len(keys) == 2 and keys[0] == ("Status", "1") and keys[1][0] == "FailReason" and keys[1][1]


def removed_keys(reply, description):
    names = reply.get("removes", [])
    if_text = reply.get("removes_if_text", [])
    texts = ", ".join(f"`{name}`" for name in names)
    if len(names) > 1 and {*names, *if_text} == {key["key"] for key in description["request"]}:
        texts = "all request keys"
    only = listed([f"`{name}`" for name in if_text])
    return texts + (f"; {only} only if they are strings" if only else "")


def removed_note(reply, description):
    names = removed_keys(reply, description)
    return f" Removed: {names}." if names else ""


def request_rows(keys, path=""):
    for key in keys:
        name = path + key["key"]
        kind = key.get("type", "text")
        need = "required" if key["required"] else "optional"
        meaning = "; ".join([key["meaning"], *limits(key, in_request=True)])
        yield f"`{name}`", need if kind == "text" else f"{need}, {kind}", meaning
        yield from request_rows(key.get("items", []), below(name, kind))


def reply_rows(keys, shown, path=""):
    for key in keys:
        name = path + key["key"]
        notes = [*([key["meaning"]] if "meaning" in key else []), *limits(key, in_request=False),
                 *(["not always present"] if key.get("optional") else [])]
        # Items that are listed for an earlier reply of the command are not repeated.
        known = "items" in key and key in shown
        yield f"`{name}`", value(key), "; ".join([*notes, *(["keys as above"] if known else [])])
        if "items" in key and not known:
            shown.append(key)
            yield from reply_rows(key["items"], shown, below(name, key["type"]))


def collapsed(rows, earlier):
    """The rows of a reply, with one row in place of each three or more that follow each other in an earlier reply."""
    rows = list(rows)
    at = 0
    while at < len(rows):
        length = max((repeated(rows[at:], before) for before in earlier), default=0)
        if length > 2:
            yield f"{rows[at][0]} to {rows[at + length - 1][0]}", "", "as above"
        else:
            length = 1
            yield rows[at]
        at += length
    earlier.append(rows)


def repeated(rows, before):
    """How many of the rows, from the first one, follow each other in those of an earlier reply."""
    if rows[0] not in before:
        return 0
    pairs = zip(rows, before[before.index(rows[0]):])
    return sum(1 for _ in itertools.takewhile(lambda pair: pair[0] == pair[1], pairs))


def below(name, kind):
    return f"{name}[]." if kind == "array" else f"{name}."


def value(key):
    if "text" in key:
        return code(key["text"])
    if "one_of" in key:
        return " or ".join(map(code, key["one_of"]))
    return key.get("type", "string")


def code(text):
    return f"`{json.dumps(text, ensure_ascii=False)}`"


def table(heads, rows):
    lines = [heads, ["---"] * len(heads), *rows]
    return "".join("| " + " | ".join(cell.replace("|", "\\|") for cell in line) + " |\n" for line in lines)
