#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Lines for `hgagent serve` that violate the grammar of JSON, or are only just valid.

    json_cases.py [--seed SEED] [--count COUNT] >FILE

Each case is a line: mostly a request of the protocol after a change, such as a truncated string, a
number like 01, or a thousand nested brackets. Some are still valid requests. The same seed always
gives the same cases.
"""

import argparse
import itertools
import json
import pathlib
import random
import sys

COMMANDS = pathlib.Path(__file__).resolve().parents[2] / "protocol/commands"

# Their examples are changed. None of them starts a worker, which would take seconds, or uses the
# network.
NAMES = (
    "GET_SN_INFO", "GET_HG_BASE_INFO", "GET_WIFI_INFO", "GET_QOS_INFO", "GET_AD_BASE_INFO",
    "GET_TSLINK_TOPOLOGY_INFO", "SET_AD_BASE_INFO", "SET_HG_GUEST_SSID", "SET_GREENNET_DEVICE_LIST",
    "SET_QOS_CLASSIFICATION_INFO", "SET_WIFI_SLEEP_SCHEDULE", "SET_HG_DHCP_INFO",
)

MAX_LINE = 1024 * 1024  # of serve, by default

MARKS = b'{}[]:,"'
STRAYS = (
    b",", b",,", b":", b"::", b"{", b"}", b"[", b"]", b'"', b'""', b"'", b"\\", b"/", b"//", b"/**/", b"#",
    b";", b"=", b"=>", b"...", b"$", b"`", b"()", b"<!--", b"nul", b"nulll", b"true", b"True", b"FALSE",
    b"undefined", b"NaN", b"Infinity", b"-Infinity", b"None", b"0", b"-", b"+", b".", b"e", b"\0", b"\x01",
    b"\x0b", b"\x0c", b"\x1b[2J", b"\x7f", b"\x85", b"\xc2\x85", b"\xc2\xa0", b"\xe2\x80\xa8",
    b"\xe3\x80\x80", b"\xef\xbb\xbf", b"\xff", b"\xfe\xff", b" ", b"\t", b"\r",
)
NUMBERS = (
    b"00", b"01", b"-01", b"+1", b".5", b"5.", b"-.5", b"1.e5", b"1e", b"1e+", b"1E-", b"-", b"--1", b"0x10",
    b"0b1", b"0o7", b"1_000", b"1,000", b"1 000", b"1e1.5", b"1.2.3", b"1e400", b"-1e400", b"1e-400", b"1e308",
    b"4.9e-324", b"-0", b"-0.0", b"0e0", b"0E+0", b"9007199254740993", b"9223372036854775807",
    b"9223372036854775808", b"-9223372036854775809", b"18446744073709551616", b"12345678901234567890",
    b"2147483648", b"-2147483649", b"1.7976931348623157e308", b"1.7976931348623159e308", b"0.1e1", b"1E5",
    b"NaN", b"inf", b"-inf", b"1f", b"1L", b"1n", b"\xef\xbc\x91", b"1" * 310, b"0." + b"3" * 500,
    b"1" + b"0" * 5000, b"-" + b"9" * 20000, b"1e" + b"9" * 400, b"0" * 100,
)
TEXTS = (
    rb"\a", rb"\x41", rb"\0", rb"\'", rb"\U0041", rb"\u", rb"\u1", rb"\u12", rb"\u123", rb"\u123g", rb"\u-001",
    rb"\u+001", rb"\u 041", rb"\ud800", rb"\udbff", rb"\udc00", rb"\udfff", rb"\ud800\ud800", rb"\udc00\ud800",
    rb"\ud800A", rb"\ud83d\ude00", rb"\uD83D\uDE00", rb"\u0000", rb"a\u0000b", rb"\u0001", rb"\u001f",
    rb"\u007f", rb"\u0085", rb"\u202e", rb"\u2028", rb"\ufeff", rb"\ufffe", rb"\uffff", rb"\b\f\n\r\t\/\\",
    rb"\"", b"\\", rb"\\\ "[:-1], b"\\\\\\", b"\x00", b"\x01", b"\x08", b"\t", b"\r", b"\x1b", b"\x1f", b"\x7f",
    b"\x80", b"\xbf", b"\xc0\x80", b"\xc1\xbf", b"\xc2", b"\xc3\x28", b"\xe0\x80\x80", b"\xe0\x9f\xbf",
    b"\xe2\x82", b"\xe2\x28\xa1", b"\xed\x9f\xbf", b"\xed\xa0\x80", b"\xed\xbf\xbf",
    b"\xed\xa0\xbd\xed\xb8\x80", b"\xee\x80\x80", b"\xef\xbf\xbe", b"\xef\xbf\xbf", b"\xf0\x80\x80\x80",
    b"\xf0\x8f\xbf\xbf", b"\xf0\x90\x80\x80", b"\xf0\x9f\x98", b"\xf4\x8f\xbf\xbf", b"\xf4\x90\x80\x80",
    b"\xf5\x80\x80\x80", b"\xf8\x88\x80\x80\x80", b"\xfc\x84\x80\x80\x80\x80", b"\xfe", b"\xff", b"\xc4\xe3",
    b"%s%s%n", b"x" * 5000, b"\\u4e2d" * 3000, b"\xe4\xb8\xad" * 3000, b"\\" * 4001, b"\\" * 4000,
)
SINGLE = (
    b"", b" ", b"\t \r", b"\x0b", b"\xc2\xa0", b"null", b"true", b"false", b"0", b"-0", b"1e5", b'"text"', b'""',
    b"[]", b"[[]]", b"[{}]", b"{", b"}", b"{}", b" {} ", b"{}\r", b"{}{}", b"{} {}", b"{},", b",{}", b"[{}",
    b"{]", b"[}", b"(", b"rubbish", b"GET_SN_INFO", b"<xml/>", b"---", b"'{}'", b'"{}"', b'{"}', b'{"a"}',
    b'{"a":}', b"{:1}", b"{a:1}", b"{1:1}", b"{null:1}", b"{'a':1}", b'{"a":1,}', b'{,"a":1}', b'{"a":1,,"b":2}',
    b'{"a":1 "b":2}', b'{"a" 1}', b'{"a"::1}', b'{"a",1}', b'{"a"=1}', b'{"a":1;"b":2}', b'{["a"]:1}', b'{"":1}',
    b"\xef\xbb\xbf{}", b"\xef\xbb\xbf", b"\xef\xbb{}", b"\xff\xfe{\0}\0", b"\xfe\xff\0{\0}", b"\0", b"{}\0",
    b"\x00{}", b"\x1e{}", b")]}',{}", b"while(1);{}", b"/**/{}", b"//{}", b"#{}", b"{}//", b"{}#",
)


def one_line(item):
    return json.dumps(item, ensure_ascii=False, separators=(",", ":")).encode()


def requests():
    for name in NAMES:
        description = json.loads((COMMANDS / f"{name}.json").read_text(encoding="utf-8"))
        yield name, description["example"]["request"]


class Breaker:
    """Generates cases, each with the next of its methods to change a request."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.requests = list(requests())
        self.ways = [getattr(self, name) for name in sorted(dir(self)) if name.startswith("way_")]

    def cases(self):
        """Endlessly, without repetition, and none with a line feed, which would make two lines of it."""
        seen = set()
        for way in itertools.cycle(self.ways):
            case = way()
            if b"\n" not in case and case not in seen:
                seen.add(case)
                yield case

    # ---- Places of a change -------------------------------------------------------------------

    def call(self, **other):
        name, params = self.random.choice(self.requests)
        return {"id": self.random.randrange(1000), "command": name, "params": params} | other

    def line(self, **other):
        return one_line(self.call(**other))

    def chosen(self, choices):
        return self.random.choice(choices)

    def insert(self, line, part):
        at = self.random.randrange(len(line) + 1)
        return line[:at] + part + line[at:]

    def place_of(self, line, letters):
        return self.chosen([at for at, byte in enumerate(line) if byte in letters])

    # A line with the part in place of a value: the id, the parameters, or one of them.
    def with_value(self, part):
        where = self.random.randrange(4)
        if where == 0:
            return self.line(id="@").replace(b'"@"', part, 1)
        if where == 1:
            return self.line(params="@").replace(b'"@"', part, 1)
        if where == 2:
            return self.line(params={"a": "@"}).replace(b'"@"', part, 1)
        return self.line(params={"a": [1, "@", {}]}).replace(b'"@"', part, 1)

    # The same within a string: a value, a key, the name of a command, or a key of the envelope.
    def with_text(self, part):
        where = self.random.randrange(5)
        if where == 0:
            return self.line(id="a@b").replace(b"@", part, 1)
        if where == 1:
            return self.line(command="GET_SN_INFO@").replace(b"@", part, 1)
        if where == 2:
            return self.line(params={"@": "a"}).replace(b"@", part, 1)
        if where == 3:
            return self.line(params={"a": "@"}).replace(b"@", part, 1)
        return b'{"co@mmand":"GET_SN_INFO"}'.replace(b"@", part, 1)

    # ---- Methods of a change ------------------------------------------------------------------

    def way_cut_off(self):
        line = self.line()
        return line[: self.random.randrange(len(line))]

    def way_cut_at_the_front(self):
        line = self.line()
        return line[self.random.randrange(1, len(line)) :]

    def way_mark_missing(self):
        line = self.line()
        at = self.place_of(line, MARKS)
        return line[:at] + line[at + 1 :]

    def way_mark_twice(self):
        line = self.line()
        at = self.place_of(line, MARKS)
        return line[:at] + line[at : at + 1] + line[at:]

    def way_mark_exchanged(self):
        line = bytearray(self.line())
        line[self.place_of(line, MARKS)] = self.chosen(MARKS)
        return bytes(line)

    def way_stray(self):
        return self.insert(self.line(), self.chosen(STRAYS))

    def way_stray_at_a_mark(self):
        line = self.line()
        at = self.place_of(line, MARKS) + self.random.randrange(2)
        return line[:at] + self.chosen(STRAYS) + line[at:]

    def way_stray_at_the_end(self):
        line, stray = self.line(), self.chosen(STRAYS)
        return line + stray if self.random.randrange(2) else stray + line

    def way_number(self):
        return self.with_value(self.chosen(NUMBERS))

    def way_text(self):
        return self.with_text(self.chosen(TEXTS))

    def way_bare_text(self):
        return self.with_value(self.chosen(TEXTS + STRAYS))

    def way_single(self):
        return self.chosen(SINGLE)

    def way_single_as_value(self):
        return self.with_value(self.chosen(SINGLE))

    def way_two_on_a_line(self):
        return self.line() + self.chosen((b"", b" ", b",", b";", b"\r", b"\0", b"\x1e")) + self.line()

    def way_byte(self):
        line = bytearray(self.line())
        line[self.random.randrange(len(line))] = self.random.randrange(256)
        return bytes(line)

    def way_bit(self):
        line = bytearray(self.line())
        for _ in range(self.random.randrange(1, 4)):
            line[self.random.randrange(len(line))] ^= 1 << self.random.randrange(8)
        return bytes(line)

    def way_deep(self):
        depth = self.chosen((50, 150, 2000, 50000))  # cJSON reads a thousand levels
        open_, close = self.chosen(((b"[", b"]"), (b'{"a":', b"}"), (b'[{"a":', b"}]"), (b"[[[", b"]"), (b"[", b"]]")))
        return self.with_value(open_ * depth + b"1" + close * depth)

    def way_deep_and_open(self):
        depth = self.chosen((20, 2000, 200000))
        return self.chosen((b"", b'{"params":')) + self.chosen((b"[", b'{"a":', b'[{"":', b"{", b"]", b"}")) * depth

    def way_repeated_keys(self):
        keys = [b'"id":%d' % self.random.randrange(9), b'"id":null', b'"command":"GET_SN_INFO"', b'"command":7',
                b'"command":"NO_SUCH"', b'"params":{}', b'"params":[]', b'"params":{"a":1,"a":2}', b'"Command":"a"',
                b'"notice":{"plugin_name":"a","text":"b"}', b'"notice":1', b'"":""']
        return b"{" + b",".join(self.chosen(keys) for _ in range(self.random.randrange(1, 9))) + b"}"

    def way_other_types(self):
        values = (None, True, 0, -1.5, "", "GET_SN_INFO", [], {}, ["GET_SN_INFO"], {"command": "GET_SN_INFO"})
        return self.line(**{self.chosen(("id", "command", "params", "notice")): self.chosen(values)})

    def way_notice(self):
        values = (None, 1, "", "text", "\u202e", "{}", "[1", [], {}, "x" * 3000)
        notice = {key: self.chosen(values) for key in ("plugin_name", "text", "other") if self.random.randrange(4)}
        return one_line({"id": self.chosen(values), "notice": notice})

    def way_unknown_command(self):
        name, other = self.chosen(self.requests)[0], self.chosen((" ", "x", "_", "\u0131", "\x7f", "%s"))
        at = self.random.randrange(len(name) + 1)
        return self.line(command=self.chosen((name.lower(), name[:at] + other + name[at:], name[:at])))

    def way_escapes(self):
        """A valid request with every character written as an escape."""
        name = self.chosen(self.requests)[0]
        escaped = "".join(f"\\u{ord(letter):04{self.chosen('xX')}}" for letter in name)
        return self.line(command="@").replace(b"@", escaped.encode(), 1)

    def way_white_space(self):
        space = self.chosen((b" ", b"\t", b"\r", b"  \t\r ", b" " * 3000, b"\x0b", b"\x0c", b"\xc2\xa0"))
        return json.dumps(self.call(), separators=("@,@", "@:@")).encode().replace(b"@", space)

    def way_long(self):
        size = self.chosen((100, 5000, 70000))
        members = self.chosen((b'"a":1', b'"a":"b"', b'"a":[]', b'"command":"GET_SN_INFO"'))
        return self.line(params="@").replace(b'"@"', b"{" + b",".join([members] * (size // 10)) + b"}", 1)

    def way_other_encoding(self):
        encoding = self.chosen(("utf-16-le", "utf-16-be", "utf-32-le", "utf-7", "cp037", "utf-8-sig"))
        return self.line().decode().encode(encoding)

    def way_spliced(self):
        one, other = self.line(), self.line()
        return one[: self.random.randrange(len(one))] + other[self.random.randrange(len(other)) :]

    def way_text_and_stray(self):
        return self.insert(self.with_text(self.chosen(TEXTS)), self.chosen(STRAYS))

    def way_number_and_mark(self):
        line = bytearray(self.with_value(self.chosen(NUMBERS)))
        line[self.place_of(line, MARKS)] = self.chosen(MARKS)
        return bytes(line)


def cases(seed, count):
    # Around the longest line that is accepted; only its length matters.
    line = b'{"id":1,"command":"GET_SN_INFO"}'
    fixed = [line.ljust(MAX_LINE + more) for more in (-1, 0, 1)]
    return list(itertools.islice(itertools.chain(fixed, Breaker(seed).cases()), count))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--count", type=int, default=2000)
    options = parser.parse_args()
    for case in cases(options.seed, options.count):
        sys.stdout.buffer.write(case + b"\n")


if __name__ == "__main__":
    main()
