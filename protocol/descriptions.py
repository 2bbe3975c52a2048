"""The descriptions of the commands, as everything reads them that is made from them or checked by them."""

import json
import pathlib

ROOT = pathlib.Path(__file__).resolve().parent.parent


def descriptions():
    """The descriptions by file, in the order of the commands' names."""
    files = sorted((ROOT / "protocol/commands").glob("*.json"))
    return {file: json.loads(file.read_text(encoding="utf-8")) for file in files}


def keys_with_items(keys):
    """Those of the keys, at any depth, that hold objects whose keys are described."""
    for key in keys:
        if "items" in key:
            yield key
            yield from keys_with_items(key["items"])


def limits(key, in_request):
    """What a reader has to know of a key's value beyond its type and its meaning."""
    if "max_bytes" in key:
        yield f"{'cut at' if in_request else 'at most'} {key['max_bytes']} bytes"
    if key.get("secret"):
        yield "secret"
