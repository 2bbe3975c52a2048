# SPDX-License-Identifier: MIT
"""Recordings, for their tests: the lines of a file, checked against the schema and their sequence."""

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


def problems(lines):
    """What is wrong with lines: by the schema, and in the sequence."""
    found = []
    seq = None
    for line in lines:
        kind = kind_of(line)
        found += [f"{json.dumps(line)[:300]}: {error.message}: {[part.message for part in error.context]}"
                  for error in VALIDATORS[kind].iter_errors(line)]
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
