# SPDX-License-Identifier: MIT
"""Generates the manual page hg-protocol(7) from the descriptions: a summary of requests and replies."""

import json
import re
import textwrap

from device_interface import ROOT

HEAD = r""".\" Generated from protocol/ by protocol/generate.py.
.Dd DATE
.Dt HG-PROTOCOL 7
.Os
.Sh NAME
.Nm hg-protocol
.Nd commands and events of the home-gateway plug-in
.Sh DESCRIPTION
"""
NOTATION = r""".Sh COMMANDS
The keys of each request and reply are listed in order.
Brackets enclose optional keys, and braces the keys of an object; dots after
the braces denote an array of such objects.
Units are in parentheses.
A failure that is listed as a text only is sent as
.Li \(dqStatus\(dq
.Li \(dq1\(dq
and
.Li \(dqFailReason\(dq
with this text.
The meaning of each key is shown by
.Ql hgagent describe NAME .
"""
EVENTS = r""".Sh EVENTS
Events report what happens without a request:
.Ql hgagent serve --events
and the service write lines
.Li {\(dqevent\(dq: NAME, \(dqdata\(dq: {...}} .
"""
WRAPPING = {"break_long_words": False, "break_on_hyphens": False}

TAIL = r""".Sh SEE ALSO
.Xr hgagent 1
"""


def man_page(descriptions, events, introduction):
    parts = [HEAD.replace("DATE", date_of_pages()), introduction_text(introduction), NOTATION, ".Bl -tag -width 4n\n"]
    for description in descriptions:
        parts += entry(description)
    parts += [".El\n", EVENTS, ".Bl -tag -width 4n\n"]
    for event in events:
        parts += event_entry(event)
    return "".join([*parts, ".El\n", TAIL])


def date_of_pages():
    """The date of all manual pages, which is written in that of hgagent(1)."""
    page = (ROOT / "docs/man/hgagent.1").read_text(encoding="utf-8")
    return re.search(r"^\.Dd (.+)$", page, re.MULTILINE)[1]


def event_entry(event):
    yield f".It Ic {event['event']}\n"
    yield text_lines(f"{event['summary']}: {event['when']}. {event.get('details', '')}".strip())
    yield ".Bl -tag -width \"Data:\" -compact\n"
    yield part("Data", key_list(event["data"], in_request=False) or "no keys")
    yield ".El\n"


def introduction_text(introduction):
    return ".Pp\n".join(re.sub(r"`(.*?)`", r"\\fB\1\\fR", text_lines(paragraph))
                        for paragraph in introduction.strip().split("\n\n"))


def entry(description):
    yield f".It Ic {description['command']}\n"
    yield text_lines(f"{description['summary']}. {description.get('details', '')}".strip())
    yield ".Bl -tag -width \"Failures:\" -compact\n"
    if "seconds" in description:
        yield part("Time", f"up to {description['seconds']} seconds")
    yield part("Request", key_list(description["request"], in_request=True) or "no keys")
    reasons = []
    for reply in description["replies"]:
        keys = key_list(reply["keys"], in_request=False)
        if reply["outcome"] == "success":
            yield part("Reply", rf"{keys or 'nothing'} \(en {reply['when']}")
        else:
            reasons.append(keys.removeprefix('Status "1", FailReason ') or "nothing")
    if reasons:
        yield part("Failures", "; ".join(dict.fromkeys(reasons)))
    yield ".El\n"


def part(head, text):
    return f".It {head}:\n{text_lines(text)}"


def key_list(keys, in_request):
    return ", ".join(key_text(key, in_request) for key in keys)


def key_text(key, in_request):
    text = key["key"]
    if "text" in key:
        text += " " + json.dumps(key["text"], ensure_ascii=False)
    if "one_of" in key:
        text += " " + "|".join(json.dumps(one) for one in key["one_of"])
    if "unit" in key:
        text += f" ({key['unit']})"
    if "items" in key:
        text += " {" + key_list(key["items"], in_request) + "}" + ("..." if key["type"] == "array" else "")
    optional = not key["required"] if in_request else key.get("optional")
    return f"[{text}]" if optional else text


def text_lines(text):
    """Text as lines of a manual page: a new line for each sentence, and none that is parsed as a macro."""
    sentences = re.split(r"(?<=[.:;]) (?=[A-Z])", text.replace("  ", r"\~\~"))
    lines = [line for sentence in sentences for line in textwrap.wrap(sentence, 78, **WRAPPING)]
    return "".join((r"\&" if line[0] in ".'" else "") + line + "\n" for line in lines)
