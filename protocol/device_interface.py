# SPDX-License-Identifier: MIT
"""Reads the descriptions of the device interface, for generators and checks. Run as a program, it prints
the names of the functions."""

import json
import pathlib

ROOT = pathlib.Path(__file__).resolve().parent.parent
FOLDER = ROOT / "protocol/device"
POINTER_SIZE = 4  # the layout of records with pointers is that on 32-bit processors
INTEGER_SIZES = {"int16_t": 2, "int32_t": 4, "intptr_t": POINTER_SIZE}


class Interface:
    """All subjects in the order of the header, and their records, functions and constants by name."""

    def __init__(self, folder=FOLDER):
        def read(name):
            return json.loads((folder / f"{name}.json").read_text(encoding="utf-8"))

        interface = read("interface")
        self.version = interface["version"]
        self.forms = interface["forms"]
        self.introduction = (folder / "introduction.md").read_text(encoding="utf-8")
        self.subjects = [read(name) for name in interface["subjects"]]
        parts = [part for subject in self.subjects for part in subject["interface"]]
        self.records = {part["record"]: part for part in parts if "record" in part}
        self.functions = {part["function"]: part for part in parts if "function" in part}
        self.constants = {constant["name"]: constant["value"]
                          for part in parts for constant in part.get("constants", [])}

    def number(self, value):
        """The value of a length, a width or a result, given as a number or as the name of a constant."""
        return self.constants[value] if isinstance(value, str) else value

    def owner(self, path):
        """The field or argument at a path, RECORD.FIELD or FUNCTION.ARGUMENT; None if there is none."""
        whole, _, part = path.partition(".")
        parts = (self.records.get(whole, {}).get("fields", [])
                 + self.functions.get(whole, {}).get("arguments", []))
        return next((each for each in parts if each["name"] == part), None)

    def alignment(self, kind):
        if kind in self.records:
            return max(self.alignment(field_kind(field)) for field in self.records[kind]["fields"])
        return {"text": 1, "pointer": POINTER_SIZE}.get(kind) or INTEGER_SIZES[kind]

    def field_size(self, field):
        kind = field_kind(field)
        if kind == "text":
            return field["width"]
        size = {"pointer": POINTER_SIZE}.get(kind) or INTEGER_SIZES.get(kind) or self.size(kind)
        return size * self.number(field.get("length", 1))

    def layout(self, record):
        """The fields of a record, each with its offset, which static assertions compare with the compiler's."""
        offset = 0
        for field in self.records[record]["fields"]:
            offset = round_up(offset, self.alignment(field_kind(field)))
            yield field, offset
            offset += self.field_size(field)

    def size(self, record):
        field, offset = list(self.layout(record))[-1]
        return round_up(offset + self.field_size(field), self.alignment(record))

    def has_pointers(self, record):
        return any("points_to" in field for field in self.records[record]["fields"])


def field_kind(field):
    return "pointer" if "points_to" in field else field.get("type", "text")


def round_up(offset, alignment):
    return (offset + alignment - 1) // alignment * alignment


def is_chain(record):
    """Whether the record is a node of a list."""
    return any(field.get("points_to") == "next" for field in record["fields"])


def prototype(function):
    """The declaration of the function in C."""
    parameters = ", ".join(map(parameter, function.get("arguments", []))) or "void"
    return f"{function_type(function)} {function['function']}({parameters})"


def function_type(function):
    return "int32_t" if "result" in function else "void"


def parameter(argument):
    kind = {"text": "char"}.get(argument["type"], argument["type"])
    way = argument.get("way")
    if way is None:
        return f"{kind} {argument['name']}"
    stars = "**" if argument["type"] == "text" and "freed_with" in argument else "*"
    return f"{'const ' if way == 'in' else ''}{kind} {stars}{argument['name']}"


if __name__ == "__main__":
    print("\n".join(Interface().functions))
