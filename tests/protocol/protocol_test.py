# SPDX-License-Identifier: MIT
"""The comparison of replies with descriptions has to find every type of difference."""

import unittest

import protocol

DESCRIBED = {
    "removes": ["Name", "Gone"],
    "keys": [
        {"key": "Status", "text": "0"},
        {"key": "Mode", "one_of": ["a", "b"], "optional": True},
        {"key": "Count", "type": "number", "optional": True},
        {"key": "List", "type": "array", "items": [{"key": "Id", "max_bytes": 2}]},
    ],
}
REQUEST = '{"name":"x","Other":1,"Name":"y"}'


def why(reply, request=REQUEST, described=None, case_sensitive=False):
    return protocol.mismatch(protocol.parse(reply), protocol.parse(request), described or DESCRIBED,
                             case_sensitive)


class MismatchTest(unittest.TestCase):
    def test_what_is_described_matches(self):
        for added in ('"Status":"0","List":[]', '"Status":"0","Mode":"b","List":[{"Id":"12"}]',
                      '"Status":"0","Count":-1.5,"List":[{"Id":""},{"Id":"1"}]'):
            self.assertIsNone(why('{"Other":1,"Name":"y",' + added + "}"), added)

    def test_every_difference_is_found(self):
        for added, expected in (
                ('"Status":"1","List":[]', "Status: should be"),
                ('"Status":0,"List":[]', "Status: should be a text"),
                ('"List":[],"Status":"0"', "Status should be where List is"),
                ('"Status":"0"', "List should be where the end is"),
                ('"Status":"0","Mode":"c","List":[]', "Mode: "),
                ('"Status":"0","Count":"1","List":[]', "Count: should be a number"),
                ('"Status":"0","Count":true,"List":[]', "Count: should be a number"),
                ('"Status":"0","List":{}', "List: should be an array"),
                ('"Status":"0","List":["x"]', "List: its elements"),
                ('"Status":"0","List":[{"Id":"123"}]', "List: Id: 3 bytes"),
                ('"Status":"0","List":[{}]', "List: Id should be"),
                ('"Status":"0","List":[{"Id":"1","Id":"1"}]', "List: Id is not described"),
                ('"Status":"0","List":[],"Status":"0"', "Status is not described")):
            found = why('{"Other":1,"Name":"y",' + added + "}")
            self.assertIsNotNone(found, added)
            self.assertTrue(found.startswith(expected), found)

    def test_the_request_is_followed(self):
        tail = '"Status":"0","List":[]}'
        for rest in ('{"name":"x","Other":1,"Name":"y",', '{"name":"x","Other":1,', '{"Other":1,',
                     '{"Name":"y","Other":1,', '{"Other":2,"Name":"y",', "{"):
            self.assertIn("should be left as", why(rest + tail) or "", rest)

    def test_case_matters_where_the_description_says_so(self):
        tail = '"Status":"0","List":[]}'
        left = '{"name":"x","Other":1,'
        self.assertIsNone(why(left + tail, case_sensitive=True))
        self.assertIn("should be left", why(left + tail))
        self.assertIn("should be left", why('{"Other":1,"Name":"y",' + tail, case_sensitive=True))
        described = {"removes_if_text": ["Mode"], "keys": []}
        self.assertIsNone(why('{"mode":"x"}', '{"mode":"x"}', described, case_sensitive=True))

    def test_a_key_may_be_repeated(self):
        described = {"keys": [{"key": "a", "text": "1"}, {"key": "b"}, {"key": "a", "text": "2"}]}
        self.assertIsNone(why('{"a":"1","b":"","a":"2"}', "{}", described))
        self.assertIn("a: should be", why('{"a":"2","b":"","a":"1"}', "{}", described))
        self.assertIn("should be where the end", why('{"a":"1","b":""}', "{}", described))

    def test_a_key_without_text_may_stay(self):
        described = {"removes_if_text": ["Mode"], "keys": []}
        self.assertIsNone(why("{}", '{"mode":"x"}', described))
        self.assertIsNone(why('{"Mode":7}', '{"Mode":7}', described))
        self.assertIn("should be left", why("{}", '{"Mode":7}', described))
        self.assertIn("is not described", why('{"Mode":"x"}', '{"Mode":"x"}', described))

    def test_a_key_may_be_described_twice(self):
        described = {"keys": [{"key": "Status", "text": "1"}, {"key": "Status", "text": "0"}]}
        self.assertIsNone(why('{"Status":"1","Status":"0"}', "{}", described))
        self.assertIn("Status should be", why('{"Status":"1"}', "{}", described))
        self.assertIn("Status: should be", why('{"Status":"0","Status":"0"}', "{}", described))

    def test_bytes_are_counted_not_characters(self):
        described = {"keys": [{"key": "a", "max_bytes": 2}]}
        self.assertIsNone(why('{"a":"é"}', "{}", described))
        self.assertIn("4 bytes", why('{"a":"éé"}', "{}", described))


unittest.main()
