# SPDX-License-Identifier: MIT
"""Generates the types of the commands, reports and events for TypeScript."""

import json

from typed_model import Basic, ListOf, Literals, Named, Record

HEADER = """\
// SPDX-License-Identifier: MIT
// Generated from protocol/ by protocol/generate.py.
// The requests and replies of the commands and reports, the events, and the lines around them. A reply can have other
// keys as well: those of the request that the command does not know.
"""
FOOTER = """\
export type Command = keyof Commands;
export type Request<C extends Command> = Commands[C]["request"];
export type Reply<C extends Command> = Commands[C]["reply"];

export type Report = keyof Reports;
export type ReportRequest<R extends Report> = Reports[R]["request"];
export type ReportReply<R extends Report> = Reports[R]["reply"];

export type EventName = keyof Events;
/** An event, of the names N. */
export type Event<N extends EventName = EventName> = { [E in N]: { event: E; data: Events[E] } }[N];

/** Why there is no result. */
export interface Failed {
  /** For people. */
  error: string;
  /** For programs. */
  code: Code;
  /** The rule of the policy that refuses, with its place. */
  rule?: string;
}

/** A change of the simulated gateway, for the owner of the service alone. */
export type Control =
  | { faults: string[] }
  | { scenario: string }
  | { clock: string | null }
  | { trace: boolean }
  | { show: Record<string, never> };

/** The reply to the control "show". */
export interface ControlSettings {
  scenario: string;
  /** The scenarios that can be loaded. */
  scenarios: string[];
  /** The fault plan, with the calls that are left. */
  faults: string[];
  fault_kinds: { form: string; functions: string[] };
  /** The clock as set; null: it follows the machine's. */
  clock: string | null;
  /** Time of the clock, in UTC. */
  time: string;
  trace: boolean;
}

/** The answer to a command. */
export type Answer<C extends Command> = { result: 0; reply: Reply<C> } | Failed;
/** The answer to a report; the result is 0 for success. */
export type ReportAnswer<R extends Report> = { result: number; reply: ReportReply<R> } | Failed;
"""
BASIC = {"text": "string", "number": "number", "any": "unknown", "object": "Record<string, unknown>"}


def typescript_types(model):
    parts = [HEADER]
    for part in model.parts.values():
        parts.append(record(part) if isinstance(part, Record) else
                     f"{comment(part.note)}export type {part.name} = {' | '.join(part.members)};\n")
    parts.append("/** Each command with its request and reply. */\n" + table("Commands", calls(model.commands)))
    parts.append("/** Each report with its parameters and reply. */\n" + table("Reports", calls(model.reports)))
    parts.append("/** Each event with its data. */\n" + table("Events", model.events))
    parts.append(f"export type Code = {type_text(model.codes)};\n")
    parts.append(FOOTER)
    return "\n".join(parts)


def calls(found):
    return {name: f"{{ request: {request}; reply: {reply} }}" for name, (request, reply) in found.items()}


def table(name, types):
    rows = "".join(f"  {key_text(key)}: {value};\n" for key, value in types.items())
    return f"export interface {name} {{\n{rows}}}\n"


def key_text(key):
    return key if key.isidentifier() else json.dumps(key)


def record(part):
    if not part.fields:
        return f"{comment(part.note)}export type {part.name} = Record<string, never>;\n"
    rows = "".join(f"{comment(field.note, '  ')}  {key_text(field.name)}{'?' if field.optional else ''}: "
                   f"{type_text(field.type)};\n" for field in part.fields)
    return f"{comment(part.note)}export interface {part.name} {{\n{rows}}}\n"


def comment(note, indent=""):
    return f"{indent}/** {note.replace('*/', '*∕')} */\n" if note else ""


def type_text(kind):
    match kind:
        case Literals(texts):
            return " | ".join(json.dumps(text, ensure_ascii=False) for text in texts)
        case Basic(name):
            return BASIC[name]
        case Named(name):
            return name
        case ListOf(item):
            return f"{type_text(item)}[]"
