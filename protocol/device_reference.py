# SPDX-License-Identifier: MIT
"""Generates docs/device_access.md from the descriptions of the device interface."""

import re

from descriptions import ANY_TEXT
from device_interface import field_kind, prototype
from device_sentences import result_sentences, rooms, sentence
from reference import code, table

HEADER = """\
<!-- Generated from protocol/device by protocol/generate.py. -->
# The device interface
"""
FORMS = """\
## The forms of values

Most vocabularies are defined by the device library: the plug-in passes a text on, and clients interpret it. The
forms below are those of the simulated gateway, and a good starting point. Where the plug-in reads a text itself,
the table of the record specifies how; every library has to comply with that.
"""


def device_reference(interface, commands):
    paragraphs = [each for each in interface.introduction.strip().split("\n\n") if not each.startswith("Forms:")]
    parts = [HEADER, "\n\n".join(map(marked, paragraphs)) + "\n",
             "Declared in `smart_router_service/device_access.h`. "
             "[adding-a-command.md](adding-a-command.md) describes how to add to it.\n",
             FORMS, table(("Form", "Value", "Unit", "Example"), form_rows(interface.forms))]
    for subject in interface.subjects:
        parts.append(f"## {subject['title']}\n")
        for part in subject["interface"]:
            parts += part_texts(interface, part, commands)
    return "\n".join(parts)


def marked(paragraph):
    """Prints the heading of a paragraph in bold."""
    head, colon, text = paragraph.partition(": ")
    if paragraph == "Conventions":
        return "## Conventions"
    return f"**{head}.** {text[0].upper()}{text[1:]}" if colon and len(head) < 20 else paragraph


def form_rows(forms):
    for name, form in forms.items():
        yield f"`{name}`", form["text"], form.get("unit", ""), code(form["example"])


def part_texts(interface, part, commands):
    if "note" in part:
        yield part["note"] + "\n"
    elif "constants" in part:
        yield part["meaning"] + "\n"
        yield table(("Constant", "Value", "Meaning"),
                    [(f"`{each['name']}`", str(each["value"]), each.get("meaning", "")) for each in part["constants"]])
    elif "record" in part:
        yield f"### {part['record']}\n"
        where = " on 32-bit processors" if interface.has_pointers(part["record"]) else ""
        yield f"{part['meaning']} {interface.size(part['record'])} bytes{where}.\n"
        yield table(("Offset", "Bytes", "Field", "Meaning", "Value"), field_rows(interface, part))
    else:
        yield from function_texts(part, commands)


def field_rows(interface, record):
    for field, offset in interface.layout(record["record"]):
        length = f"[{field['length']}]" if "length" in field else ""
        kind = "" if field_kind(field) == "text" else f"`{field['type']}{' *' if 'points_to' in field else ''}{length}` "
        notes = [field["meaning"],
                 *(["a negative number means none"] if field.get("negative") else []),
                 *([f"`{field['counted_by']}` entries"] if "counted_by" in field else []),
                 *([f"freed by the plug-in with `{field['freed_with']}()`"] if "freed_with" in field else []),
                 *(["secret"] if field.get("secret") else [])]
        yield (str(offset), str(interface.field_size(field)), f"`{field['name']}`", kind + "; ".join(notes),
               value_text(interface, field))


def value_text(interface, owner):
    """The form of a value as text, with an example."""
    if "form" not in owner:
        return ""
    form = interface.forms[owner["form"]]
    example = owner.get("example", form["example"])
    parts = [*([] if form["text"] == ANY_TEXT else [form["text"]]), *([f"in {form['unit']}"] if "unit" in form else []),
             *([] if "values" in form else [f"e.g. {code(example)}"])]
    return (", ".join(parts) + (f"; empty: {owner['empty']}" if "empty" in owner else "")
            + (f". **Read by the plug-in:** {owner['read_as']}" if "read_as" in owner else ""))


def function_texts(function, commands):
    name = function["function"]
    yield f"### {name}\n"
    yield f"```c\n{prototype(function)};\n```\n"
    arguments = function.get("arguments", [])
    explained = [f"`{each['name']}`: {each['meaning'].removesuffix('.')}." for each in arguments if "meaning" in each]
    text = " ".join([function["does"], *explained, *sentence(rooms(arguments)), *result_sentences(function),
                     effect_text(function["effect"])])
    yield re.sub(r"(?<!`)\*(\w+)", r"`*\1`", text) + "\n"
    callers = [f"[{command['command']}](protocol.md#{command['command'].lower()})" for command in commands
               if name in command["device_calls"]]
    if callers:
        yield f"Called by {', '.join(callers)}.\n"


def effect_text(effect):
    if effect["kind"] == "changes":
        other = f" by `{effect['put_back_with']}()`" if "put_back_with" in effect else ""
        return f"It can be undone{other}; `{effect['read_with']}()` returns the previous state."
    return {"reads": "It changes nothing.", "lasting": "It cannot be undone."}[effect["kind"]]
