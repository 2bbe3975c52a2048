# SPDX-License-Identifier: MIT
"""The JSON Schemas have to refuse what a description does not allow, except order, repeated keys and bytes."""

import unittest

import jsonschema

import protocol  # noqa: F401  (it finds the schemas' module)
import schemas

DESCRIBED = {
    "command": "SET_THING",
    "summary": "Sets a thing",
    "request": [
        {"key": "Name", "required": True, "max_bytes": 4, "meaning": "its name"},
        {"key": "Mode", "required": False, "meaning": "its mode"},
        {"key": "List", "required": False, "type": "array", "max_items": 2, "meaning": "its parts",
         "items": [{"key": "Id", "required": True, "meaning": "one of them"}]},
    ],
    "replies": [
        {"outcome": "success", "when": "it was set", "keys": [
            {"key": "Status", "text": "0"},
            {"key": "Mode", "one_of": ["a", "b"], "optional": True},
            {"key": "Count", "type": "number"},
            {"key": "List", "type": "array", "items": [{"key": "Id", "max_bytes": 2}]},
        ]},
        {"outcome": "failure", "when": "it was set too late", "keys": [
            {"key": "Status", "text": "1"},
            {"key": "List", "type": "array", "items": [{"key": "Id", "max_bytes": 2}]},
            {"key": "Status", "text": "2"},
        ]},
    ],
}


def accepts(schema, value):
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema).is_valid(value)


class SchemaTest(unittest.TestCase):
    def test_requests(self):
        schema = schemas.request_schema(DESCRIBED)
        for request in ({"Name": "long name"}, {"Name": "", "Other": 7, "Mode": "x"},
                        {"Name": "x", "List": [{"Id": "1"}, {"Id": "2", "More": 1}]}):
            self.assertTrue(accepts(schema, request), request)
        for request in ({}, {"Name": 7}, {"Name": "x", "Mode": 1}, {"Name": "x", "List": {}},
                        {"Name": "x", "List": [7]}, {"Name": "x", "List": [{}]},
                        {"Name": "x", "List": [{"Id": "1"}] * 3}, []):
            self.assertFalse(accepts(schema, request), request)

    def test_replies(self):
        schema = schemas.reply_schema(DESCRIBED)
        whole = {"Status": "0", "Mode": "a", "Count": 1, "List": [{"Id": "12"}]}
        for reply in (whole, {**whole, "Left": 1}, {"Status": "2", "List": []}):
            self.assertTrue(accepts(schema, reply), reply)
        for change in ({"Status": "1"}, {"Mode": "c"}, {"Count": "1"}, {"List": {}}, {"List": [7]},
                       {"List": [{}]}, {"List": [{"Id": "1", "More": "x"}]}):
            self.assertFalse(accepts(schema, {**whole, **change}), change)
        self.assertFalse(accepts(schema, {"Status": "0", "Count": 1}))
        self.assertFalse(accepts(schema, {"Status": "1", "List": []}))

    def test_what_no_schema_can_require_is_a_note(self):
        text = {"key": "Rate", "required": True, "meaning": "the rate", "max_bytes": 7, "form": "whole number",
                "unit": "kbit/s", "values": ["1", "2"], "pattern": "[12]", "example": "2"}
        schema = schemas.request_schema({**DESCRIBED, "request": [text]})
        self.assertEqual(schema["properties"]["Rate"], {
            "description": 'the rate; whole number, in kbit/s; truncated to 7 bytes', "type": "string",
            "examples": ["2"], "x-max-bytes": 7, "x-unit": "kbit/s", "x-values": ["1", "2"],
            "x-pattern": "[12]"})
        self.assertTrue(accepts(schema, {"Rate": "much more than 7 bytes"}))


unittest.main()
