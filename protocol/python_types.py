# SPDX-License-Identifier: MIT
"""Generates the types of the commands, reports and events for Python."""

import json
import keyword

from typed_model import Basic, ListOf, Literals, Named, Record

HEADER = '''\
# SPDX-License-Identifier: MIT
# Generated from protocol/ by protocol/generate.py.
"""The requests and replies of the commands and reports, the events, and the lines around them. A reply can have
other keys as well: those of the request that the command does not know."""

from typing import Any, Literal, NotRequired, Protocol, TypedDict, Union, overload
'''
BASIC = {"text": "str", "number": "float", "any": "Any", "object": "dict[str, Any]"}


def python_types(model):
    parts = [HEADER]
    for part in model.parts.values():
        parts.append(record(part) if isinstance(part, Record) else
                     f"{comment(part.note)}{part.name} = Union[{', '.join(part.members)}]\n")
    parts.append(literal("Command", model.commands) + literal("Report", model.reports)
                 + literal("EventName", model.events) + literal("Code", model.codes.texts))
    parts += [FAILED, CONTROL]
    events = [f"_Event{name.removesuffix('Data')}" for name in model.events.values()]
    parts += [f"class {name}(TypedDict):\n    event: Literal[{json.dumps(event)}]\n    data: {data}\n"
              for name, (event, data) in zip(events, model.events.items())]
    parts.append(f"Event = Union[{', '.join(events)}]\n")
    parts.append(protocol("CallCommand", "A function that carries out a command and returns its reply.",
                          model.commands))
    parts.append(protocol("CallReport", "A function that requests a report.", model.reports))
    return "\n\n".join(parts)


FAILED = '''\
class Failed(TypedDict):
    """Why there is no result."""

    # for people
    error: str
    # for programs
    code: Code
    # the rule of the policy that refuses, with its place
    rule: NotRequired[str]
'''


CONTROL = '''\
class FaultKinds(TypedDict):
    """What can be part of a fault plan."""

    form: str
    functions: list[str]


class ControlSettings(TypedDict):
    """The reply to the control "show" of the simulated gateway."""

    scenario: str
    # the scenarios that can be loaded
    scenarios: list[str]
    # the fault plan, with the calls that are left
    faults: list[str]
    fault_kinds: FaultKinds
    # the clock as set; None: it follows the machine's
    clock: Union[str, None]
    # time of the clock, in UTC
    time: str
    trace: bool
'''


def literal(name, texts):
    return f"{name} = Literal[{', '.join(map(json.dumps, texts))}]\n"


def protocol(name, note, calls):
    overloads = "".join(
        f"\n    @overload\n    def __call__(self, name: Literal[{json.dumps(one)}], params: {request}) -> {reply}: ...\n"
        for one, (request, reply) in calls.items())
    return f'class {name}(Protocol):\n    """{note}"""\n{overloads}'


def record(part):
    note = part.note.replace("\\", "\\\\").replace('"""', "'''")
    rows = "".join(f"{comment(field.note, '    ')}    {name_text(field.name)}: "
                   + (f"NotRequired[{type_text(field.type)}]" if field.optional else type_text(field.type)) + "\n"
                   for field in part.fields)
    return f'class {part.name}(TypedDict):\n    """{note}"""\n' + (f"\n{rows}" if rows else "")


def name_text(name):
    if not name.isidentifier() or keyword.iskeyword(name):
        raise ValueError(f"{name} cannot be a field of a class in Python")
    return name


def comment(note, indent=""):
    return f"{indent}# {note}\n" if note else ""


def type_text(kind):
    match kind:
        case Literals(texts):
            return f"Literal[{', '.join(json.dumps(text, ensure_ascii=False) for text in texts)}]"
        case Basic(name):
            return BASIC[name]
        case Named(name):
            return name
        case ListOf(item):
            return f"list[{type_text(item)}]"
