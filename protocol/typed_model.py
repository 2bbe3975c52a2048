# SPDX-License-Identifier: MIT
"""The requests, replies, reports and events as records with typed fields, from which the generators of types for
programming languages write theirs."""

import dataclasses
import typing

from descriptions import limits, name_of
from reference import is_plain_failure
from schemas import CODES, is_required


@dataclasses.dataclass(frozen=True)
class Literals:
    """One of these texts."""

    texts: tuple


@dataclasses.dataclass(frozen=True)
class Basic:
    kind: str  # text, number, any, object


@dataclasses.dataclass(frozen=True)
class Named:
    name: str


@dataclasses.dataclass(frozen=True)
class ListOf:
    item: typing.Any


@dataclasses.dataclass(frozen=True)
class Field:
    name: str
    type: typing.Any
    optional: bool
    note: str


@dataclasses.dataclass(frozen=True)
class Record:
    name: str
    note: str
    fields: tuple


@dataclasses.dataclass(frozen=True)
class Union:
    name: str
    note: str
    members: tuple


class Model:
    """Records and unions in the order in which each one's parts come before it, and the maps of their names."""

    def __init__(self, commands, reports, events):
        self.parts = {}
        self.commands = {one["command"]: self.call(one, pascal(one["command"])) for one in commands}
        self.reports = {one["report"]: self.call(one, f"Report{pascal(one['report'])}") for one in reports}
        self.events = {one["event"]: self.event(one) for one in events}
        self.codes = Literals(tuple(CODES))

    def call(self, description, prefix):
        """The names of the types of request and reply."""
        request = self.record(f"{prefix}Request", f"{name_of(description)}: {description['summary']}.",
                              description["request"], True)
        return request, self.reply(description, prefix)

    def reply(self, description, prefix):
        name = name_of(description)
        members = []
        plain = [reply for reply in description["replies"] if is_plain_failure(reply)]
        for reply in description["replies"]:
            if reply not in plain:
                members.append(self.record(f"{prefix}{reply['outcome'].capitalize()}",
                                           f"{name}, {reply['outcome']}: {reply['when']}.",
                                           [*kept_keys(description, [reply]), *reply["keys"]], False, prefix))
        if plain:
            reasons = dict.fromkeys(reply["keys"][1]["text"] for reply in plain)
            when = "; ".join(f'"{reply["keys"][1]["text"]}": {reply["when"]}' for reply in plain)
            members.append(self.record(f"{prefix}Failure", f"{name}, failure.", [
                *kept_keys(description, plain), {"key": "Status", "text": "1"},
                {"key": "FailReason", "one_of": list(reasons), "meaning": when}], False, prefix))
        union = Union(f"{prefix}Reply", f"Reply of {name}.", tuple(dict.fromkeys(members)))
        self.parts[union.name] = union
        return union.name

    def event(self, description):
        words = "".join(map(pascal, description["event"].split(".")))
        return self.record(f"{words}Data", f"{description['event']}: {description['summary']}.", description["data"],
                           False)

    def record(self, name, note, keys, in_request, prefix=None):
        fields = {}
        for key in keys:
            # Of a repeated key, a parser keeps the last one.
            fields.pop(key["key"], None)
            notes = [*([key["meaning"]] if "meaning" in key else []), *limits(key, in_request)]
            fields[key["key"]] = Field(key["key"], self.type_of(key, prefix or name, in_request),
                                       not is_required(key, in_request), "; ".join(notes))
        return self.add(Record(name, note, tuple(fields.values())))

    def type_of(self, key, prefix, in_request):
        kind = key.get("type", "text")
        if kind == "text" and ("text" in key or "one_of" in key):
            return Literals(tuple(key.get("one_of", [key.get("text")])))
        if "items" not in key:
            return ListOf(Basic("any")) if kind == "array" else Basic(kind)
        item = Named(self.record(f"{prefix}{pascal(key['key'])}", f"{key['key']}: {key.get('meaning', 'an element')}.",
                                 key["items"], in_request))
        return ListOf(item) if kind == "array" else item

    def add(self, part):
        """Adds a record, under another name if there is a different one with its name. Result: the name."""
        name, number = part.name, 1
        while name in self.parts and self.parts[name] != dataclasses.replace(part, name=name):
            number += 1
            name = f"{part.name}{number}"
        self.parts[name] = dataclasses.replace(part, name=name)
        return name


def kept_keys(description, replies):
    """The request's keys that one of the replies can still have, as optional ones of the reply."""
    kept = []
    for key in description["request"]:
        if any(key["key"] not in reply.get("removes", []) for reply in replies):
            is_text = "type" not in key and all(key["key"] not in reply.get("removes_if_text", []) for reply in replies)
            kept.append({"key": key["key"], "type": "text" if is_text else "any", "optional": True,
                         "meaning": "unchanged from the request"})
    return kept


def pascal(name):
    """SET_HG_BASE_INFO and agent-topology as SetHgBaseInfo and AgentTopology; MainRouter stays as it is."""
    words = name.replace("-", "_").split("_")
    return "".join(word.capitalize() if word.isupper() else word[:1].upper() + word[1:] for word in words)
