# SPDX-License-Identifier: MIT
"""Generates docs/messages.md, the page for people, from the AsyncAPI document."""

import json

from reference import subject_title, table
from schemas import CODES

HEADER = "<!-- Generated from protocol/ by protocol/generate.py. -->\n# Messages on MQTT\n"
DOCUMENT = """
For programs, `protocol/asyncapi.json` describes the same as AsyncAPI 3.0, with the schema of each payload
in one file; `protocol/openapi.json` describes the HTTP interface of the service as OpenAPI 3.1, and
`protocol/types` has the types of all payloads for TypeScript and Python. The commands with their keys and examples
are in [protocol.md](protocol.md).
"""
BY_HAND = """
## By hand

With a gateway `lindenhof` and the clients of Mosquitto:

```
mosquitto_rr -V 5 -t gateway/lindenhof/command/GET_SN_INFO -m '{}' -e gateway/lindenhof/reply/me
mosquitto_sub -v -t 'gateway/lindenhof/event/#' -t gateway/lindenhof/state
```

A client with MQTT 3.1.1 subscribes before it sends:

```
mosquitto_sub -C 1 -t gateway/lindenhof/reply/me &
mosquitto_pub -t gateway/lindenhof/request/me -m '{"id": 1, "command": "GET_SN_INFO"}'
```
"""


def messages_page(document, commands):
    parts = [HEADER, document["info"]["description"].split("\n\nValues are")[0].rstrip() + "\n", DOCUMENT.strip() + "\n"]
    parts += ["## Topics\n", table(("Topic", "Direction", "Payload"), topic_rows(document)),
              "Events and the state have QoS 1, and an answer has the QoS of its request. QoS 1 is recommended: with QoS 0, "
              "a request or its answer can be lost. Only the state is retained. The parts of the topics:\n",
              table(("Part", "Meaning"), [(f"`{{{name}}}`", parameter_text(parameter)) for name, parameter
                                          in document["components"]["parameters"].items()])]
    parts += [BY_HAND.strip() + "\n", "## Requests\n", request_text(document)]
    parts += ["## Answers\n", document["channels"]["answers"]["description"] + "\n", answer_text(document)]
    parts += ["## Topics of commands\n", "Each topic is `{root}/{id}/command/` and the name. Commands that change "
              "something are in bold; the time limit of a command is 30 seconds unless another one is given.\n",
              table(("Subject", "Commands"), command_rows(commands))]
    parts += ["## Topics of reports\n", "Each topic is `{root}/{id}/report/` and the name.\n",
              table(("Report", "What it is", "Parameters"), report_rows(document))]
    parts += ["## Topics of events\n", "Each topic is `{root}/{id}/event/` and the name; the payload has the data of "
              "the [event](protocol.md#the-" + str(len(event_rows(document))) + "-events).\n",
              table(("Event", "When", "Payload"), event_rows(document))]
    parts += ["## State\n", document["channels"]["state"]["description"] + "\n", state_text(document)]
    return "\n".join(parts)


def parameter_text(parameter):
    more = [f"`{parameter['default']}` unless given"] if "default" in parameter else []
    return "; ".join([parameter["description"], *more])


def topic_rows(document):
    kinds = {"command": "parameters of the command as a JSON object; an empty payload is the same as `{}`",
             "report": "parameters of the report, as above", "event": "data of the event as a JSON object"}
    shown = set()
    for operation in document["operations"].values():
        channel = document["channels"][operation["channel"]["$ref"].rpartition("/")[2]]
        kind, _, rest = channel["address"].removeprefix("{root}/{id}/").partition("/")
        if kind in kinds and kind in shown:
            continue
        shown.add(kind)
        topic = "{root}/{id}/" + kind + ("/NAME" if kind in kinds else f"/{rest}" if rest else "")
        direction = "to the gateway" if operation["action"] == "receive" else "from the gateway"
        yield f"`{topic}`", direction, kinds.get(kind, channel["description"])
        if kind == "request":
            reply = document["channels"]["reply"]
            yield f"`{reply['address']}`", "from the gateway", reply["description"]
    yield "the response topic", "from the gateway", "answer to a command or report: result and reply, or an error"


def property_rows(trait, key):
    for name, schema in trait["headers"]["properties"].items():
        value = f"`{schema['const']}`" if "const" in schema else "text"
        yield f"user property `{name}`", value, schema["description"]
    names = {"correlationData": "correlation data", "responseTopic": "response topic"}
    for name, words in names.items():
        if name in trait["bindings"]["mqtt"]:
            yield words, key, trait["bindings"]["mqtt"][name]["description"]


def request_text(document):
    return table(("Property of MQTT 5", "Value", "Meaning"),
                 property_rows(document["components"]["messageTraits"]["request"], "chosen by the client"))


def answer_text(document):
    trait = document["components"]["messageTraits"]["answer"]
    shown = document["components"]["messages"]
    error = shown["error"]["examples"][0]["payload"]
    return "\n".join([
        table(("Property of MQTT 5", "Value", "Meaning"), property_rows(trait, "text")),
        "The payload has a `result` and a `reply`, or an `error` and a `code`. The `result` of a command is 0, or -3 if "
        "there is no such command, and the `reply` is then the unchanged parameters; that of a report is the result "
        "of its function:\n",
        fenced(shown["SET_HG_BASE_INFO.answer"]["examples"][0]["payload"]) + fenced(error),
        table(("`code`", "Meaning"), [(f"`{code}`", meaning) for code, (_, meaning) in CODES.items()])])


def fenced(payload):
    return "```json\n" + json.dumps(payload, ensure_ascii=False) + "\n```\n"


def command_rows(commands):
    subjects = {}
    for command in commands:
        name = f"[{command['command']}](protocol.md#{command['command'].lower()})"
        marked = name if command["effect"] == "none" else f"**{name}**"
        time = f" ({command['seconds']} s)" if "seconds" in command else ""
        subjects.setdefault(command["subject"], []).append(marked + time)
    return [(subject_title(subject), ", ".join(names)) for subject, names in sorted(subjects.items())]


def report_rows(document):
    for name, channel in document["channels"].items():
        if name.startswith("report."):
            payload = document["components"]["schemas"][f"{name}.request"]
            parameters = [f"`{key}`: {schema['description']}" for key, schema in payload.get("properties", {}).items()]
            yield f"`{name.removeprefix('report.')}`", channel["description"], "; ".join(parameters) or "–"


def event_rows(document):
    return [(f"`{name.removeprefix('event.')}`", channel["description"],
             f"`{json.dumps(example_of(document, channel), ensure_ascii=False)}`")
            for name, channel in document["channels"].items() if name.startswith("event.")]


def example_of(document, channel):
    message = next(iter(channel["messages"]))
    return document["components"]["messages"][message]["examples"][0]["payload"]


def state_text(document):
    schema = document["components"]["schemas"]["state"]
    rows = [(f"`{key}`", property["type"] if "format" not in property else property["format"], property["description"])
            for key, property in schema["properties"].items()]
    payload = [example["payload"] for example in document["components"]["messages"]["state"]["examples"]]
    return table(("Key", "Value", "Meaning"), rows) + "\n" + "".join(map(fenced, payload))
