# SPDX-License-Identifier: MIT
"""Generates the AsyncAPI 3 document of the messages of a gateway on an MQTT broker."""

from components import (LICENCE, NOTES, PROTOCOL_VERSION, command_answer, component, component_schemas, report_answer,
                        summary_of)
from reference import subject_title
from schemas import session_line_schema, session_request_schema

INTRODUCTION = """\
What `hgagent run --broker` receives and sends. A client with MQTT 5 publishes the parameters of a command on the topic
of the command, with a response topic below `{root}/{id}/reply/` and correlation data; the gateway publishes the answer
there. A client with MQTT 3.1.1 publishes a line, as `hgagent serve` reads it, and receives the answer on its own reply
topic. If no answer arrives within the client's time limit, the client repeats the request with the same response topic
and correlation data. A command that changes something is still carried out only once: its answer is kept for ten
minutes, and a repetition gets the kept answer.
"""
JSON = "application/json"
QOS = 1


def asyncapi(commands, reports, events):
    channels = {}
    operations = {}
    messages = {}
    for description in commands:
        name = description["command"]
        title = f"{name}: {description['summary']}"
        messages[f"{name}.request"] = request_message(name, description, component(f"{name}.request"))
        messages[f"{name}.answer"] = answer_message(name, description, command_answer(description))
        channels[name] = channel(f"command/{name}", title, summary_of(description), f"{name}.request")
        operations[name] = request_operation(name, description, subject_title(description["subject"]))
    for description in reports:
        name = f"report.{description['report']}"
        title = f"{description['report']}: {description['summary']}"
        messages[f"{name}.request"] = request_message(name, description, component(f"{name}.request"))
        messages[f"{name}.answer"] = answer_message(name, description, report_answer(description))
        channels[name] = channel(f"report/{description['report']}", title, summary_of(description), f"{name}.request")
        operations[name] = request_operation(name, description, "Reports")
    answers = [name for name in messages if name.endswith(".answer")]
    messages["error"] = ERROR
    for event in events:
        messages[f"{event['event']}.event"] = event_message(event)
        name = f"event.{event['event']}"
        channels[name] = channel(f"event/{event['event']}", f"The event {event['event']}",
                                 f"{event['summary']}: {event['when']}.", f"{event['event']}.event")
        operations[name] = send_operation(name, f"{event['event']}.event", event["summary"], "Events")
    add_lines(channels, operations, messages, events)
    add_state(channels, operations, messages)
    channels["answers"] = {
        "address": None,
        "title": "Answers",
        "description": "Answers are published on the response topic of the request. It has to be below "
                       "`{root}/{id}/reply/` unless the configuration of the service adds others; wildcards, and "
                       "topics that begin with `$`, are not allowed.",
        "messages": {name: {"$ref": f"#/components/messages/{name}"} for name in [*answers, "error"]},
    }
    return {
        "asyncapi": "3.0.0",
        "info": {"title": "Home gateway: messages on MQTT", "version": PROTOCOL_VERSION,
                 "description": INTRODUCTION + "\n" + NOTES,
                 "license": {"name": LICENCE["name"]}},
        "defaultContentType": JSON,
        "servers": {
            "broker": server("secure-mqtt", "8883", "A broker"),
            "local-broker": server("mqtt", "1883", "A broker on the gateway's own machine, without TLS"),
        },
        "channels": channels,
        "operations": operations,
        "components": {
            "messages": messages,
            "messageTraits": {"request": REQUEST_TRAIT, "answer": ANSWER_TRAIT},
            "operationTraits": {"at-least-once": {"bindings": {"mqtt": {"qos": QOS, "bindingVersion": "0.2.0"}}}},
            "parameters": PARAMETERS,
            "schemas": {**component_schemas(commands, reports, events), **line_schemas(events),
                        "state": state_schema()},
        },
    }


def server(protocol, port, description):
    return {"host": "{host}:" + port, "protocol": protocol, "protocolVersion": "5", "description": description,
            "variables": {"host": {"default": "localhost", "description": "name or address of the broker"}},
            "bindings": {"mqtt": {"cleanSession": False, "bindingVersion": "0.2.0"}}}


PARAMETERS = {
    "root": {"default": "gateway", "description": "the option --root of the service; it decides the role of the "
                                                   "clients that may publish below it"},
    "id": {"description": "identifies the gateway: the option --id of the service", "examples": ["lindenhof"]},
    "client": {"description": "identifies the client, which chooses it", "examples": ["app-7"]},
}

REQUEST_TRAIT = {
    "contentType": JSON,
    "headers": {
        "type": "object",
        "description": "User properties of MQTT 5; all of them can be left out.",
        "properties": {
            "epoch": {"type": "string", "description": "epoch of the state that the client knows. A restart of the "
                      "service changes the epoch: a command that may change something is then answered with "
                      "outcome-unknown instead of being carried out a second time"},
            "accept-encoding": {"const": "gzip", "description": "the answer may be compressed"},
        },
    },
    "bindings": {"mqtt": {
        "correlationData": {"type": "string", "description": "different for each request; the same one with the same "
                            "response topic identifies a repetition"},
        "responseTopic": {"type": "string", "description": "where the answer is published; a request without one "
                          "is carried out but not answered"},
        "bindingVersion": "0.2.0",
    }},
}
ANSWER_TRAIT = {
    "contentType": JSON,
    "headers": {
        "type": "object",
        "description": "User properties of MQTT 5.",
        "properties": {"content-encoding": {"const": "gzip", "description": "only if the payload is compressed"}},
    },
    "bindings": {"mqtt": {
        "correlationData": {"type": "string", "description": "that of the request"}, "bindingVersion": "0.2.0"}},
}
ERROR = {
    "title": "An answer without a result",
    "summary": "Why the request was not carried out, or its outcome is unknown",
    "traits": [{"$ref": "#/components/messageTraits/answer"}],
    "payload": component("error"),
    "examples": [{"name": "denied", "payload": {
        "error": "the policy refuses SET_ADMIN_INFO", "code": "denied", "rule": "policy.toml:12: deny SET_*"}}],
}


def channel(topic, title, description, message):
    names = [name for name in PARAMETERS if f"{{{name}}}" in "{root}/{id}/" + topic]
    return {
        "address": "{root}/{id}/" + topic,
        "title": title,
        "description": description,
        "parameters": {name: {"$ref": f"#/components/parameters/{name}"} for name in names},
        "messages": {message: {"$ref": f"#/components/messages/{message}"}},
    }


def request_message(name, description, payload):
    return {
        "title": f"Request of {name}",
        "summary": "No payload is the same as {}",
        "traits": [{"$ref": "#/components/messageTraits/request"}],
        "payload": payload,
        "examples": [{"name": "request", "payload": description["example"]["request"]}],
    }


def answer_message(name, description, payload):
    return {
        "title": f"Answer to {name}",
        "traits": [{"$ref": "#/components/messageTraits/answer"}],
        "payload": payload,
        "examples": [{"name": "answer", "payload": {"result": 0, "reply": description["example"]["reply"]}}],
    }


def request_operation(name, description, tag):
    operation = {
        "action": "receive",
        "channel": {"$ref": f"#/channels/{name}"},
        "title": name,
        "summary": description["summary"],
        "tags": [{"name": tag}],
        "traits": [{"$ref": "#/components/operationTraits/at-least-once"}],
        "messages": [{"$ref": f"#/channels/{name}/messages/{name}.request"}],
        "reply": {
            "channel": {"$ref": "#/channels/answers"},
            "messages": [{"$ref": f"#/channels/answers/messages/{name}.answer"},
                         {"$ref": "#/channels/answers/messages/error"}],
        },
    }
    notes = {key: description[key] for key in ("effect", "seconds") if key in description}
    return {**operation, **{f"x-{key}": value for key, value in notes.items()}}


def send_operation(name, message, summary, tag):
    return {
        "action": "send",
        "channel": {"$ref": f"#/channels/{name}"},
        "title": name,
        "summary": summary,
        "tags": [{"name": tag}],
        "traits": [{"$ref": "#/components/operationTraits/at-least-once"}],
        "messages": [{"$ref": f"#/channels/{name}/messages/{message}"}],
    }


def event_message(event):
    return {
        "title": f"The event {event['event']}",
        "summary": f"{event['summary']}: {event['when']}",
        "payload": component(f"{event['event']}.event"),
        "examples": [{"name": "event", "payload": event["example"]}],
    }


def line_schemas(events):
    request = session_request_schema()
    line = session_line_schema(events)
    answers = [branch for branch in line["anyOf"] if "id" in branch["required"]]
    del request["$schema"]
    request["anyOf"] = [branch for branch in request["anyOf"]
                        if branch["required"][0] in ("command", "report", "notice", "hello")]
    return {"line.request": {**request, "description": "One JSON object; other members are ignored, and of repeated "
                                                       "ones the first counts."},
            "line.answer": {"title": "The answer to a line", "anyOf": answers}}


def add_lines(channels, operations, messages, events):
    messages["line.request"] = {
        "title": "A request as a line",
        "summary": "For clients with MQTT 3.1.1; the id of the line identifies repetitions of it",
        "payload": component("line.request"),
        "examples": [{"name": "command", "payload": {"id": 1, "command": "GET_SN_INFO", "params": {}}}],
    }
    messages["line.answer"] = {
        "title": "The answer to a line",
        "payload": component("line.answer"),
        "examples": [{"name": "error", "payload": {"id": 1, "error": "the gateway reboots", "code": "rebooting"}}],
    }
    channels["request"] = channel("request/{client}", "Requests with MQTT 3.1.1",
                                  "A line as hgagent serve reads it. The answer is published on the topic of the "
                                  "same client below `reply`.", "line.request")
    channels["reply"] = channel("reply/{client}", "Answers with MQTT 3.1.1",
                                "The answers to the lines of a client.", "line.answer")
    operations["request"] = {
        "action": "receive",
        "channel": {"$ref": "#/channels/request"},
        "title": "request",
        "summary": "A request of a client with MQTT 3.1.1",
        "tags": [{"name": "Lines"}],
        "traits": [{"$ref": "#/components/operationTraits/at-least-once"}],
        "messages": [{"$ref": "#/channels/request/messages/line.request"}],
        "reply": {"channel": {"$ref": "#/channels/reply"},
                  "messages": [{"$ref": "#/channels/reply/messages/line.answer"}]},
    }


def state_schema():
    return {
        "title": "Whether the gateway is connected",
        "type": "object",
        "required": ["online"],
        "properties": {
            "online": {"type": "boolean", "description": "false in the last will, which the broker publishes "
                                                         "when the connection is lost"},
            "protocol": {"type": "string", "description": "version of the commands and lines", "examples": ["1.0"]},
            "service": {"type": "string", "description": "version of the service", "examples": ["0.2.0"]},
            "epoch": {"type": "string", "description": "identifies this start of the service"},
            "since": {"type": "string", "format": "date-time", "description": "when the service was started"},
        },
    }


def add_state(channels, operations, messages):
    messages["state"] = {
        "title": "Whether the gateway is connected",
        "payload": component("state"),
        "examples": [
            {"name": "online", "payload": {"online": True, "protocol": "1.0", "service": "0.2.0",
                                           "epoch": "5c9f0a7e2b41d863", "since": "2026-01-01T00:00:00Z"}},
            {"name": "offline", "payload": {"online": False}},
        ],
    }
    channels["state"] = channel("state", "State of the gateway",
                                "Whether the gateway is connected. Retained; when the connection is lost, the broker "
                                "publishes the last will.",
                                "state")
    messages["state.get"] = {
        "title": "A request for the state",
        "summary": "The payload is ignored",
        "payload": {},
        "examples": [{"name": "request", "payload": {}}],
    }
    channels["state.get"] = channel("state/get", "Requests for the state",
                                    "The gateway publishes its state again, for clients of brokers that do not retain "
                                    "messages.", "state.get")
    operations["state.get"] = {
        "action": "receive",
        "channel": {"$ref": "#/channels/state.get"},
        "title": "state.get",
        "summary": "Requests the state again",
        "tags": [{"name": "State"}],
        "traits": [{"$ref": "#/components/operationTraits/at-least-once"}],
        "messages": [{"$ref": "#/channels/state.get/messages/state.get"}],
        "reply": {"channel": {"$ref": "#/channels/state"}, "messages": [{"$ref": "#/channels/state/messages/state"}]},
    }
    operations["state"] = {
        **send_operation("state", "state", "Whether the gateway is connected", "State"),
        "bindings": {"mqtt": {"qos": QOS, "retain": True, "bindingVersion": "0.2.0"}},
    }
