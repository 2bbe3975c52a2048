#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Sends the cases of json_cases.py to one `hgagent serve`: json_cases_test.py HGAGENT [COUNT [SEED]].

Each line gets exactly one answer, which is one line of JSON. A second parser, Python's, decides which
lines are valid: what it refuses has to be refused, and what it accepts has to be answered with the
values that it read.
"""

import json
import math
import os
import subprocess
import sys
import tempfile
import unittest

import json_cases

AGENT = sys.argv[1]
COUNT = int(sys.argv[2]) if len(sys.argv) > 2 else 2000
SEED = int(sys.argv[3]) if len(sys.argv) > 3 else 1

KNOWN = {path.stem for path in json_cases.COMMANDS.glob("*.json")}
NO_SUCH_COMMAND = -3

# Either answer is allowed: it is not specified whether a number too large for a double is accepted.
EITHER = object()


class Members(list):
    """An object's members in their order, repeated keys included."""

    def first(self, key):
        return next((value for name, value in self if name == key), None)

    def has(self, key):
        return any(name == key for name, _ in self)


class Number(str):
    """A number as it was written."""


def is_text(item):
    return isinstance(item, str) and not isinstance(item, Number)


class Reader:
    """Reads JSON as serve does: strings in UTF-8, none with a NUL."""

    def __init__(self):
        self.has_huge_number = False

    def number(self, text):
        self.has_huge_number = self.has_huge_number or math.isinf(float(text))
        return Number(text)

    @staticmethod
    def refuse(text):
        raise ValueError(text)

    def check(self, text):
        if "\0" in text or any("\ud800" <= letter <= "\udfff" for letter in text):
            self.refuse("a NUL, or half of a surrogate pair")

    def check_all(self, root):
        items = [root]
        while items:
            item = items.pop()
            if isinstance(item, Members):
                for key, value in item:
                    self.check(key)
                    items.append(value)
            elif isinstance(item, list):
                items.extend(item)
            elif isinstance(item, str):
                self.check(item)

    def read(self, line):
        """Raises a ValueError, or a RecursionError for what is nested too deep."""
        item = json.loads(line.decode("utf-8-sig"), object_pairs_hook=Members, parse_int=self.number,
                          parse_float=self.number, parse_constant=self.refuse)
        self.check_all(item)
        return item


def expected(line):
    """The id, and the result: None for an error, or EITHER."""
    reader = Reader()
    if len(line) > json_cases.MAX_LINE:
        return None, None
    try:
        call = reader.read(line)
    except (ValueError, RecursionError):
        return None, None
    if reader.has_huge_number:
        return EITHER, EITHER
    if not isinstance(call, Members):
        return None, None
    notice, params = call.first("notice"), call.first("params")
    if not call.has("command") and call.has("notice"):
        is_good = isinstance(notice, Members) and all(is_text(notice.first(key)) for key in ("plugin_name", "text"))
        return call.first("id"), 0 if is_good else None
    command = call.first("command")
    if not is_text(command) or (call.has("params") and not isinstance(params, Members)):
        return call.first("id"), None
    return call.first("id"), 0 if command in KNOWN else NO_SUCH_COMMAND


def serve(lines):
    """The answers without notices, and the output on standard error."""
    # The leak check guesses where a library keeps thread-local data, and may guess wrong.
    environment = {"ASAN_OPTIONS": "intercept_tls_get_addr=0"} | os.environ
    with tempfile.TemporaryFile() as log:
        done = subprocess.run([AGENT, "--log-level", "0", "serve"], input=b"".join(line + b"\n" for line in lines),
                              stdout=subprocess.PIPE, stderr=log, env=environment, check=False)
        log.seek(0)
        return done.returncode, done.stdout, log.read().decode(errors="replace")


def read_answer(line):
    """An answer returns the parameters unchanged, so it is nested deeper than they are."""
    limit = sys.getrecursionlimit()
    sys.setrecursionlimit(2 * limit)
    try:
        return Reader().read(line)
    finally:
        sys.setrecursionlimit(limit)


class JsonCasesTest(unittest.TestCase):
    def test_each_line_has_its_answer(self):
        lines = json_cases.cases(SEED, COUNT)
        self.assertEqual(len(set(lines)), COUNT)
        status, output, log = serve(lines)
        self.assertEqual(status, 0, log[-4000:])
        # Only suggestions for misspelt commands, one line each, for any name.
        for said in log.splitlines():
            self.assertRegex(said, '^hgagent: no command ".*"; the nearest (is|are) ')
        self.assertTrue(output.endswith(b"\n"))
        answers = [(line, read_answer(line)) for line in output.split(b"\n")[:-1]]
        answers = [(line, answer) for line, answer in answers if not answer.has("notice")]
        self.assertEqual(len(answers), len(lines))
        counts = {}
        for line, (written, answer) in zip(lines, answers):
            wanted_id, wanted = expected(line)
            keys = [key for key, _ in answer]
            with self.subTest(line=line[:300], answer=written[:300]):
                self.assertIn(keys, (["id", "error", "code"], ["id", "result", "reply"], ["id", "result"]))
                if wanted is EITHER:
                    continue
                result = answer.first("result")
                self.assertEqual(None if result is None else int(result), wanted)
                self.assertEqual(answer.first("id"), wanted_id)
            counts[wanted] = counts.get(wanted, 0) + 1
        # Both are frequent, so that a server that refuses everything, or nothing, does not pass.
        self.assertGreater(counts[None], COUNT // 3)
        self.assertGreater(counts[0], COUNT // 10)
        self.assertGreater(counts[NO_SUCH_COMMAND], COUNT // 50)

    def test_the_same_seed_gives_the_same_cases(self):
        self.assertEqual(json_cases.cases(SEED, 200), json_cases.cases(SEED, 200))
        self.assertNotEqual(json_cases.cases(SEED, 200)[3:], json_cases.cases(SEED + 1, 200)[3:])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
