# SPDX-License-Identifier: MIT
"""Generates device_access.h from the descriptions of the device interface."""

import re
import textwrap

import device_interface
from device_sentences import result_sentences, rooms, sentence

COLUMNS = 100
TIE = "\x00"
END = f"{TIE}*/"

MADE = "This file is generated from protocol/device by protocol/generate.py."
TOP = """\
#ifndef SMART_ROUTER_SERVICE_DEVICE_ACCESS_H
#define SMART_ROUTER_SERVICE_DEVICE_ACCESS_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
"""
VERSION = """\
/* The version of this interface. With it, an agent can detect a library that was built for another
 * major version before it calls anything. */
#define DEVICE_ACCESS_VERSION_MAJOR {major} /* layouts of records, prototypes, meanings */
#define DEVICE_ACCESS_VERSION_MINOR {minor} /* additions */
/* Both in one number, as returned by device_access_version(). */
#define DEVICE_ACCESS_VERSION (DEVICE_ACCESS_VERSION_MAJOR * 65536 + DEVICE_ACCESS_VERSION_MINOR)

/* The only optional function: it returns DEVICE_ACCESS_VERSION. A library without it is assumed to
 * be compatible. The plug-in does not call it; "hgagent" refuses a library of another major
 * version. */
int32_t device_access_version(void);
"""
LAYOUT = """\
/* ---- Layout --------------------------------------------------------------------------------- */

/* The two sides are built by different vendors at different times, so a layout that differs must
 * not compile. */
#define DEVAPI_RECORD_SIZE(record, size)                                                           \\
    static_assert(sizeof(record) == (size), #record " has to be " #size " bytes")
#define DEVAPI_RECORD_FIELD(record, field, offset, width)                                          \\
    static_assert(offsetof(record, field) == (offset) && sizeof(((record *)0)->field) == (width),  \\
                  #record "." #field " has to be " #width " bytes at " #offset)

/* The layout of a record with pointers is only checked on 32-bit processors, the targets. */
#define DEVAPI_RECORD_SIZE_32(record, size)                                                        \\
    static_assert(sizeof(void *) != 4 || sizeof(record) == (size),                                 \\
                  #record " has to be " #size " bytes")
#define DEVAPI_RECORD_OFFSET_32(record, field, offset)                                             \\
    static_assert(sizeof(void *) != 4 || offsetof(record, field) == (offset),                      \\
                  #record "." #field " has to be at " #offset)
"""
BOTTOM = """\
#ifdef __cplusplus
}
#endif

#endif
"""


def device_header(interface):
    parts = [block_comment([*interface.introduction.strip().split("\n\n"), MADE]) + TOP,
             VERSION.format(**interface.version)]
    for subject in interface.subjects:
        parts.append(headline(subject["title"]))
        parts += [part_text(interface, part) for part in subject["interface"]]
    parts.append(LAYOUT)
    parts += [layout_text(interface, name) for name in interface.records]
    return "\n".join([*parts, BOTTOM])


def headline(title):
    return f"/* ---- {title} ".ljust(COLUMNS - 4, "-") + " */\n"


def part_text(interface, part):
    if "record" in part:
        return record_text(interface, part)
    if "function" in part:
        return function_comment(part) + wrapped_prototype(part)
    if "constants" in part:
        return constants_text(part)
    return block_comment([part["note"]])


def constants_text(part):
    text = comment(part["meaning"])
    rows = [(f"#define {constant['name']} {constant['value']}", constant.get("meaning"))
            for constant in part["constants"]]
    return text + aligned(rows)


# ---- Comments --------------------------------------------------------------------------------------


def comment(text):
    # A line that begins with a word and a colon would look like that of an argument.
    text = re.sub(r" (\w+:) ", rf"{TIE}\1 ", text)
    return "/* " + "\n * ".join(wrap(text + END, 3)) + "\n"


def block_comment(paragraphs):
    lines = [line for paragraph in paragraphs for line in [*wrap(paragraph, 3), ""]]
    return "/*\n" + "".join(f" * {line}".rstrip() + "\n" for line in lines[:-1]) + " */\n"


def wrap(text, indent):
    """Lines of text; what keeps together has a TIE for its blank."""
    lines = textwrap.wrap(text, COLUMNS - indent, break_long_words=False, break_on_hyphens=False)
    return [line.replace(TIE, " ") for line in lines]


def aligned(rows, indent=""):
    """Lines with a comment behind each, all in one column."""
    column = max(len(code) for code, _ in rows) + 1
    text = ""
    for code, note in rows:
        if note is None:
            text += f"{indent}{code}\n"
            continue
        at = len(indent) + column
        lines = wrap(note + END, at + 3)
        text += f"{indent}{code.ljust(column)}/* " + f"\n{' ' * (at + 3)}".join(lines) + "\n"
    return text


# ---- Records ---------------------------------------------------------------------------------------


def record_text(interface, record):
    name = record["record"]
    rows = [(declaration(field, name), field_note(interface, field)) for field in record["fields"]]
    return (comment(record["meaning"]) + f"typedef struct {name} {{\n"
            + aligned(rows, "    ") + f"}} {name};\n")


def declaration(field, record):
    kind = field.get("type", "char")
    star = "*" if "points_to" in field else ""
    of_its_own = "struct " if kind == record else ""
    length = field.get("width", field.get("length"))
    return f"{of_its_own}{kind} {star}{field['name']}{f'[{length}]' if length else ''};"


def field_note(interface, field):
    """The meaning, with the unit or the form unless the meaning itself has values in quotes."""
    form = interface.forms[field["form"]] if "form" in field and '"' not in field["meaning"] else {}
    brief = form.get("brief", form.get("unit", "")).replace(" ", TIE)
    meaning, semicolon, rest = field["meaning"].partition(";")
    return (meaning + (f", {brief}" if brief else "") + semicolon + rest
            + ("; a negative number means none" if field.get("negative") else ""))


def layout_text(interface, name):
    """Of a record with pointers, only what does not depend on their size is checked everywhere."""
    pointers = interface.has_pointers(name)
    text = f"DEVAPI_RECORD_SIZE{'_32' if pointers else ''}({name}, {interface.size(name)});\n"
    for field, offset in interface.layout(name):
        if "points_to" in field:
            text += f"DEVAPI_RECORD_OFFSET_32({name}, {field['name']}, {offset});\n"
        else:
            text += f"DEVAPI_RECORD_FIELD({name}, {field['name']}, {offset}, {interface.field_size(field)});\n"
    return text


# ---- Functions -------------------------------------------------------------------------------------


def wrapped_prototype(function):
    line = device_interface.prototype(function) + ";"
    if len(line) <= COLUMNS:
        return line + "\n"
    head, _, parameters = line.partition("(")
    indent = " " * (len(head) + 1)
    lines = wrap(re.sub(r"(?<!,) ", TIE, parameters), len(indent))
    return head + "(" + f"\n{indent}".join(lines) + "\n"


def function_comment(function):
    arguments = function.get("arguments", [])
    explained = [argument for argument in arguments if "meaning" in argument]
    opening = " ".join([function["does"], *sentence(rooms([each for each in arguments if each not in explained]))])
    ending = " ".join(result_sentences(function))
    if not explained:
        return comment(f"{opening} {ending}".rstrip())
    width = max(len(argument["name"]) for argument in explained) + 2
    lines = [line for argument in explained for line in argument_lines(argument, width)]
    text = [*wrap(opening, 3), "", *lines, "", *wrap(ending, 3)]
    return "/*\n" + "".join(f" * {line}".rstrip() + "\n" for line in text) + " */\n"


def argument_lines(argument, width):
    room = "; shorter than {width} bytes.".format(**argument) if "width" in argument else "."
    lines = wrap(argument["meaning"].removesuffix(".") + room, 3 + width)
    return [f"{argument['name']}:".ljust(width) + lines[0], *(" " * width + line for line in lines[1:])]
