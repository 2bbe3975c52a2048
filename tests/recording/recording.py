# SPDX-License-Identifier: MIT
"""Recordings, for their tests: the lines of a file, checked against the schema and their sequence."""

import functools
import json
import pathlib

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCHEMA = json.loads((ROOT / "protocol/recording.schema.json").read_text(encoding="utf-8"))
# The kinds of lines, by the member that only they have.
KINDS = {"recording": "head", "command": "request", "function": "request", "call": "call", "service": "service",
         "end": "end"}


def validator(kind):
    return jsonschema.Draft202012Validator({**SCHEMA, "oneOf": [{"$ref": f"#/$defs/{kind}"}]})


VALIDATORS = {kind: validator(kind) for kind in [*KINDS.values(), "reply"]}


def kind_of(line):
    return next((kind for member, kind in KINDS.items() if member in line), "reply")


def read(file):
    """The lines of a recording without padding; fails if the file does not end at a line."""
    text = pathlib.Path(file).read_bytes()
    assert text.endswith(b"\n"), f"{file} ends within a line: {text[-200:]}"
    return [line for line in map(json.loads, text.decode().splitlines()) if line]


@functools.cache
def problems_of(text):
    """What is wrong with a line by the schema."""
    line = json.loads(text)
    return [f"{text[:300]}: {error.message}: {[part.message for part in error.context]}"
            for error in VALIDATORS[kind_of(line)].iter_errors(line)]


def problems(lines):
    """What is wrong with lines: by the schema, and in the sequence."""
    found = []
    seq = None
    for line in lines:
        kind = kind_of(line)
        # Lines that differ in their numbers alone are validated once.
        counted = {name: min(line[name], 1) for name in ("seq", "thread", "time", "took") if line.get(name, -1) >= 0}
        found += problems_of(json.dumps(line | counted if kind != "head" else line))
        if kind == "head":
            seq = line["seq"]
        elif seq is None:
            found.append("the first line is no head")
        else:
            seq += 1
            if line["seq"] != seq or line.get("began", 0) >= seq:
                found.append(f"{json.dumps(line)[:300]}: it should be number {seq}")
    return found


def text_of(line, member):
    """The JSON text of a request or a reply."""
    if member + "_hex" in line:
        return bytes.fromhex(line[member + "_hex"])
    return json.dumps(line[member]).encode()
