# SPDX-License-Identifier: MIT
"""The protocol's descriptions, and JSON with repeated keys, for the tests of the protocol."""

import json
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "protocol"))

from descriptions import as_written, descriptions  # noqa: E402,F401
from device_interface import Interface  # noqa: E402


class Object(list):
    """A JSON object as its list of (key, value) pairs: in order, repeated keys included."""


def parse(text):
    return json.loads(text, object_pairs_hook=Object)


def command_table():
    """The plug-in's table: each command's name with its handler, in order."""
    text = (ROOT / "smart_router_service/commands.h").read_text(encoding="utf-8")
    return dict(re.findall(r'COMMAND\("(\w+)",\s*(\w+)\)', text))


def device_functions():
    """The functions that the device-access library has to provide."""
    return set(Interface().functions)


def mismatch(reply, request, described, case_sensitive=False):
    """Why a reply is not the described one for this request, or None when it is."""
    rest = Object(request)
    spelling = str if case_sensitive else str.lower
    conditional = described.get("removes_if_text", [])
    for name in [*described.get("removes", []), *conditional]:
        first = next((pair for pair in rest if spelling(pair[0]) == spelling(name)), None)
        if first is not None and (name not in conditional or isinstance(first[1], str)):
            rest.remove(first)
    if reply[: len(rest)] != rest:
        return f"the request's keys should be left as {[key for key, _ in rest]}; \"removes\" names all others"
    return object_mismatch(reply[len(rest):], described["keys"])


def object_mismatch(pairs, keys):
    """Why the pairs are not the described keys in their order, or None when they are."""
    position = 0
    for key in keys:
        if position < len(pairs) and pairs[position][0] == key["key"]:
            why = value_mismatch(pairs[position][1], key)
            if why:
                return f"{key['key']}: {why}"
            position += 1
        elif not key.get("optional"):
            found = pairs[position][0] if position < len(pairs) else "the end"
            return f"{key['key']} should be where {found} is"
    if position < len(pairs):
        return f"{pairs[position][0]} is not described"
    return None


def value_mismatch(value, key):
    kind = key.get("type", "text")
    if kind == "text":
        return text_mismatch(value, key)
    if kind == "number":
        return None if type(value) in (int, float) else "should be a number"
    if kind == "object":
        if not isinstance(value, Object):
            return "should be an object"
        return object_mismatch(value, key["items"]) if "items" in key else None
    if kind == "array":
        if not isinstance(value, list) or isinstance(value, Object):
            return "should be an array"
        for element in value if "items" in key else []:
            if not isinstance(element, Object):
                return "its elements should be objects"
            why = object_mismatch(element, key["items"])
            if why:
                return why
    return None


def text_mismatch(value, key):
    if not isinstance(value, str):
        return "should be a text"
    if "text" in key and value != key["text"]:
        return f'should be "{key["text"]}", not "{value[:200]}"'
    if "one_of" in key and value not in key["one_of"]:
        return f'"{value[:200]}" is none of {key["one_of"]}'
    length = len(value.encode("utf-8", "surrogateescape"))
    if length > key.get("max_bytes", length):
        return f"{length} bytes are more than {key['max_bytes']}"
    return None
