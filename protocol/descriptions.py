"""The descriptions of the commands and of the events, as everything reads them that is made from them or checked by them."""

import json

from device_interface import Interface, ROOT

ANY_TEXT = "any text"  # a form that says nothing
USUAL_SECONDS = 30  # that a command may take which says nothing else


def as_written():
    """The descriptions by file, in the order of the commands' names."""
    files = sorted((ROOT / "protocol/commands").glob("*.json"))
    return {file: json.loads(file.read_text(encoding="utf-8")) for file in files}


def descriptions():
    """The same, with what the device fields say of the keys."""
    interface = Interface()
    found = as_written()
    for description in found.values():
        complete(interface, description["request"], in_request=True)
        for reply in description["replies"]:
            complete(interface, reply["keys"], in_request=False)
    return found


def events():
    """The descriptions of the events by file, in the order of their names."""
    files = sorted((ROOT / "protocol/events").glob("*.json"))
    return {file: json.loads(file.read_text(encoding="utf-8")) for file in files}


def complete(interface, keys, in_request):
    for key in keys:
        complete(interface, key.get("items", []), in_request)
        if "field" in key:
            key.update(said_by_field(interface, interface.owner(key["field"]) or {}, in_request))


def said_by_field(interface, owner, in_request):
    """What the field of a record, or the argument of a function, says of a key's value."""
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
    """Those of the keys, at any depth, that hold objects whose keys are described."""
    for key in keys:
        if "items" in key:
            yield key
            yield from keys_with_items(key["items"])


def limits(key, in_request):
    """What a reader has to know of a key's value beyond its type and its meaning."""
    if "form" in key:
        form = [*([] if key["form"] == ANY_TEXT else [key["form"]]), *([key["unit"]] if "unit" in key else []),
                f"as in {json.dumps(key['example'], ensure_ascii=False)}"]
        yield ", ".join(form)
    if "max_bytes" in key:
        yield f"{'cut at' if in_request else 'at most'} {key['max_bytes']} bytes"
    if key.get("secret"):
        yield "secret"
