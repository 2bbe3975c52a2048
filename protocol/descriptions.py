# SPDX-License-Identifier: MIT
"""Reads the descriptions of the commands and events, for generators and checks."""

import json

from device_interface import Interface, ROOT

ANY_TEXT = "any text"  # a form without information
USUAL_SECONDS = 30  # time limit of a command whose description has none


def as_written(folder="commands"):
    """The descriptions in a folder by file, in the order of their names."""
    files = sorted((ROOT / "protocol" / folder).glob("*.json"))
    return {file: json.loads(file.read_text(encoding="utf-8")) for file in files}


def descriptions(folder="commands"):
    """The same, with the information from the device fields added to the keys."""
    interface = Interface()
    found = as_written(folder)
    for description in found.values():
        complete(interface, description["request"], in_request=True)
        for reply in description["replies"]:
            complete(interface, reply["keys"], in_request=False)
    return found


def reports():
    """The descriptions of the reports, in the same form."""
    return descriptions("reports")


def events():
    """The descriptions of the events by file, in the order of their names."""
    return as_written("events")


def name_of(description):
    """The name of a command or report."""
    return description.get("command") or description["report"]


def complete(interface, keys, in_request):
    for key in keys:
        complete(interface, key.get("items", []), in_request)
        if "field" in key:
            key.update(said_by_field(interface, interface.owner(key["field"]) or {}, in_request))


def said_by_field(interface, owner, in_request):
    """The information about a key's value from the field of a record or the argument of a function."""
    if "width" in owner:
        yield "max_bytes", interface.number(owner["width"]) - (1 if in_request else 0)
    if "form" in owner:
        form = interface.forms[owner["form"]]
        yield "form", form["text"]
        yield from ((name, form[name]) for name in ("unit", "values", "pattern") if name in form)
        yield "example", owner.get("example", form["example"])
    if "secret" in owner:
        yield "secret", True


def keys_with_items(keys):
    """The keys, at any depth, whose values are objects with described keys, or arrays of such objects."""
    for key in keys:
        if "items" in key:
            yield key
            yield from keys_with_items(key["items"])


def limits(key, in_request):
    """Notes on a key's value in addition to its type and its meaning."""
    if "form" in key:
        known = key["form"] == ANY_TEXT or key["form"] in key.get("meaning", "")
        example = key["example"] if key.get("type") == "number" else json.dumps(key["example"], ensure_ascii=False)
        form = [*([] if known else [key["form"]]), *([f"in {key['unit']}"] if "unit" in key else []),
                *([] if "values" in key else [f"e.g. {example}"])]
        if form:
            yield ", ".join(form)
    if "max_bytes" in key:
        yield (f"{'truncated to' if in_request else 'at most'} {key['max_bytes']} "
               f"byte{'' if key['max_bytes'] == 1 else 's'}")
    if key.get("secret"):
        yield "secret"
