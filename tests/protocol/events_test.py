# SPDX-License-Identifier: MIT
"""Breaks the description of an event, and the lines of a session, and expects an error for each."""

import json
import unittest

import jsonschema

import protocol
import schemas
from check_events import faults_of
from descriptions import events

GOOD = {
    "event": "door.opened",
    "summary": "A door has been opened",
    "when": "somebody opens a door",
    "made_by": "serve",
    "data": [
        {"key": "door", "one_of": ["front", "back"], "meaning": "which door it is"},
        {"key": "times", "type": "number", "meaning": "how often until now"},
        {"key": "who", "optional": True, "meaning": "who has opened it"},
    ],
    "example": {"door": "front", "times": 3},
}


def faults(**change):
    schema = json.loads((protocol.ROOT / "protocol/event.schema.json").read_text(encoding="utf-8"))
    event = {name: value for name, value in {**GOOD, **change}.items() if value is not None}
    return list(faults_of("door.opened", event, schema))


class EventTest(unittest.TestCase):
    def test_descriptions(self):
        self.assertEqual(faults(), [])
        self.assertEqual(faults(details="Doors have hinges."), [])
        key = GOOD["data"][0]
        for change in ({"event": "door.closed"}, {"event": "Door"}, {"event": "door.*"}, {"summary": None},
                       {"summary": ""}, {"when": None}, {"made_by": None}, {"made_by": "door"}, {"data": None},
                       {"data": [key, key]}, {"data": [{"key": "door"}]}, {"data": [{**key, "width": 7}]},
                       {"data": [{**key, "type": "number"}]}, {"data": [{**key, "type": "list"}]},
                       {"example": None}, {"example": {}}, {"example": {"door": "front"}},
                       {"example": {"door": "side", "times": 3}}, {"example": {"door": "front", "times": "3"}},
                       {"example": {"times": 3, "door": "front"}},
                       {"example": {**GOOD["example"], "colour": "red"}}, {"more": 1}):
            self.assertNotEqual(faults(**change), [], change)

    def test_lines_of_a_gateway(self):
        described = [GOOD, next(event for event in events().values() if event["event"] == "update.progress")]
        schema = jsonschema.Draft202012Validator(schemas.session_line_schema(described))
        answer = {"id": 1, "result": 0, "reply": {}}
        error = {"id": None, "error": "why", "code": "busy"}
        event = {"event": "door.opened", "data": {"door": "back", "times": 1}}
        for line in (answer, {**answer, "id": [1]}, {**answer, "reasons": ["x"]}, {"id": 1, "result": 0}, error,
                     {**error, "rule": "a:1"}, event, {"notice": "any"}, {"reasons": ["x"]},
                     {"progress": {"task": "firmware", "percent": 7}}):
            self.assertTrue(schema.is_valid(line), line)
        for line in ([], {}, {"result": 0}, {"id": 1}, {**answer, "result": "0"}, {**answer, "reply": []},
                     {**answer, "reasons": [1]}, {**answer, "error": "why"}, {"id": 1, "error": "why"},
                     {**error, "code": "unknown"}, {**error, "error": 7}, {**event, "event": "door.closed"},
                     {**event, "data": {}}, {**event, "data": {"door": "side", "times": 1}}, {**event, "id": 1},
                     {"event": "door.opened"}, {"progress": {"task": "firmware"}}, {"notice": 1, "more": 1}):
            self.assertFalse(schema.is_valid(line), line)

    def test_lines_to_a_gateway(self):
        schema = jsonschema.Draft202012Validator(schemas.session_request_schema())
        for line in ({"command": "X"}, {"id": 1, "command": "X", "params": {"a": 1}}, {"report": "x"},
                     {"notice": {"plugin_name": "x", "text": "y"}}, {"hello": {}}, {"subscribe": "update.*"},
                     {"unsubscribe": "*"}, {"command": "X", "more": 1}):
            self.assertTrue(schema.is_valid(line), line)
        for line in ([], {}, {"id": 1}, {"command": 1}, {"command": "X", "params": []}, {"report": {}},
                     {"notice": {"text": "y"}}, {"hello": 1}, {"subscribe": ["x"]}):
            self.assertFalse(schema.is_valid(line), line)


unittest.main()
