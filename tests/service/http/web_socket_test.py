#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The lines of `serve` as messages of a WebSocket: web_socket_test.py HGAGENT"""
import json
import os
import socket
import struct

import websocket
from http_service import Service, ServiceTest, read_all, unittest

QUESTION = '{"id":1,"command":"GET_SN_INFO"}'
ANSWER = ('{"id":1,"result":0,"reply":{"Status":"0","MAC":"3C:6A:D2:10:4F:20","tslinkstatus":"1",'
          '"DeviceType":"HGU-AX3000"}}')


def frame(opcode, payload=b"", final=True, masked=True, length=None, reserved=0):
    size = len(payload) if length is None else length
    head = bytes([(0x80 if final else 0) | reserved | opcode])
    mask = 0x80 if masked else 0
    if size < 126:
        head += bytes([mask | size])
    elif size < 65536:
        head += bytes([mask | 126]) + struct.pack(">H", size)
    else:
        head += bytes([mask | 127]) + struct.pack(">Q", size)
    return head + (b"\0\0\0\0" if masked else b"") + payload


class WebSocket(ServiceTest):
    OPTIONS = ("--max-line=100000", "--request-seconds=3", "--reboot-seconds=0")

    def setUp(self):
        super().setUp()
        self.socket = self.service.web_socket()
        self.addCleanup(self.socket.close)

    def ask_line(self, line):
        self.socket.send(line)
        return self.socket.recv()

    def raw_socket(self):
        """After the handshake, to send any bytes."""
        plain = socket.create_connection(("127.0.0.1", self.service.port))
        self.addCleanup(plain.close)
        plain.sendall(f"GET /api/socket HTTP/1.1\r\nHost: {self.service.authority}\r\nUpgrade: websocket\r\n"
                      f"Connection: Upgrade\r\nSec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\nSec-WebSocket-Version: 13\r\n"
                      f"Authorization: Bearer {self.service.token}\r\n\r\n".encode())
        head = b""
        while not head.endswith(b"\r\n\r\n"):
            head += plain.recv(1)
        self.assertTrue(head.startswith(b"HTTP/1.1 101 "), head)
        return plain

    def close_code(self, *frames):
        """The code with which the service closes after these frames."""
        plain = self.raw_socket()
        plain.sendall(b"".join(frames))
        answer = read_all(plain)
        while answer and answer[0] != 0x88:
            size = answer[1]
            answer = answer[2 + size:] if size < 126 else answer[4 + struct.unpack(">H", answer[2:4])[0]:]
        return struct.unpack(">H", answer[2:4])[0] if len(answer) >= 4 else None

    def test_answers_lines(self):
        self.assertEqual(self.ask_line(QUESTION), ANSWER)
        self.assertEqual(json.loads(self.ask_line('{"id":"h","hello":{}}'))["reply"]["protocol"][0], "1")
        answer = json.loads(self.ask_line('{"id":2,"report":"topology"}'))
        self.assertEqual((answer["id"], answer["result"]), (2, 0))
        for number in range(40):
            self.socket.send(json.dumps({"id": number, "command": "GET_SN_INFO"}))
        for number in range(40):
            self.assertEqual(json.loads(self.socket.recv())["id"], number)

    def test_a_message_may_have_several_lines(self):
        self.assertEqual(self.ask_line(QUESTION.replace(",", ",\r\n")), ANSWER)
        for message in ("\n", "{}\n{}", QUESTION + "\n" + QUESTION, '{"id":1,"command":"GET\n_SN_INFO"}', "\r"):
            answer = json.loads(self.ask_line(message))
            self.assertEqual(answer["code"], "bad-request", message)
        self.assertEqual(self.ask_line(QUESTION), ANSWER)

    def test_hides_secrets_unless_asked(self):
        request = {"id": 1, "command": "GET_WIFI_INFO", "params": {"SSIDIndex": "1"}}
        self.assertIn('"***"', self.ask_line(json.dumps(request)))
        request["secrets"] = "show"
        self.assertNotIn('"***"', self.ask_line(json.dumps(request)))
        request["secrets"] = True
        self.assertIn('"***"', self.ask_line(json.dumps(request)))

    def test_brings_events(self):
        self.assertEqual(self.ask_line('{"id":1,"subscribe":"*"}'), '{"id":1,"result":0}')
        other = self.service.web_socket()
        other.send('{"id":1,"command":"RP_HG_REBOOT"}')
        names = []
        while "reboot.begun" not in names:
            message = json.loads(self.socket.recv())
            names.append(message.get("event"))
        other.close()

    def test_bad_lines_are_answered(self):
        for line in ("rubbish", "", " ", "{", "[]", "null", "\x00", '{"id":1}', "[" * 50000):
            self.assertEqual(json.loads(self.ask_line(line))["code"], "bad-request", line[:20])
        self.assertEqual(self.ask_line(QUESTION), ANSWER)

    def test_a_message_may_come_in_fragments(self):
        plain = self.raw_socket()
        plain.sendall(frame(1, QUESTION[:5].encode(), final=False) + frame(9, b"ping") + frame(0, QUESTION[5:].encode()))
        got = b""
        while ANSWER.encode() not in got:
            got += plain.recv(4096)
        self.assertIn(bytes([0x8a, 4]) + b"ping", got)

    def test_broken_frames_end_the_connection(self):
        text = QUESTION.encode()
        for name, frames, code in (
                ("unmasked", [frame(1, text, masked=False)], 1002),
                ("reserved bit", [frame(1, text, reserved=0x40)], 1002),
                ("unknown opcode", [frame(3, text)], 1002),
                ("unknown control frame", [frame(11)], 1002),
                ("fragmented ping", [frame(9, final=False)], 1002),
                ("long ping", [frame(9, b"a" * 126)], 1002),
                ("continuation of nothing", [frame(0, text)], 1002),
                ("new message within a message", [frame(1, text, final=False), frame(1, text)], 1002),
                ("not UTF-8", [frame(1, b"\xff\xfe")], 1007),
                ("surrogate", [frame(1, b"\xed\xa0\x80")], 1007),
                ("cut UTF-8", [frame(1, b"\xe2\x82")], 1007),
                ("binary", [frame(2, text)], 1003),
                ("too long", [frame(1, b"", length=100001)], 1009),
                ("much too long", [frame(1, b"", length=2 ** 62)], 1009),
                ("too long in fragments", [frame(1, b"a" * 60000, final=False), frame(0, b"a" * 60000)], 1009),
                ("close with a bad code", [frame(8, struct.pack(">H", 1005))], 1002),
                ("close with half a code", [frame(8, b"\x03")], 1002),
                ("close with bad text", [frame(8, struct.pack(">H", 1000) + b"\xff")], 1002),
                ("orderly close", [frame(8, struct.pack(">H", 1000))], 1000)):
            with self.subTest(name):
                self.assertEqual(self.close_code(*frames), code)
        self.assertEqual(self.ask_line(QUESTION), ANSWER)

    def test_messages_behind_a_close_are_ignored(self):
        plain = self.raw_socket()
        plain.sendall(frame(8, struct.pack(">H", 1000)) + frame(1, QUESTION.encode()))
        self.assertNotIn(b"result", read_all(plain))

    def test_a_bad_handshake_is_refused(self):
        good = {"Upgrade": "websocket", "Connection": "Upgrade", "Sec-WebSocket-Key": "AAAAAAAAAAAAAAAAAAAAAA==",
                "Sec-WebSocket-Version": "13"}
        for name, value in (("Upgrade", "h2c"), ("Upgrade", None), ("Connection", "close"), ("Connection", None),
                            ("Sec-WebSocket-Key", None), ("Sec-WebSocket-Version", "12"), ("Sec-WebSocket-Version", None)):
            fields = {key: text for key, text in {**good, name: value}.items() if text is not None}
            status, _, _ = self.ask("GET", "/api/socket", headers=fields)
            self.assertIn(status, (400, 426), (name, value))
        self.assertEqual(self.ask("POST", "/api/socket", headers=good)[0], 405)

    def test_input_behind_an_unfinished_handshake_is_refused(self):
        answer = self.service.raw(f"GET /api/socket HTTP/1.1\r\nHost: {self.service.authority}\r\nUpgrade: websocket\r\n"
                                  f"Connection: Upgrade\r\nSec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==\r\n"
                                  f"Sec-WebSocket-Version: 13\r\nAuthorization: Bearer {self.service.token}\r\n\r\n".encode() +
                                  frame(1, QUESTION.encode()))
        self.assertTrue(answer.startswith(b"HTTP/1.1 400 "), answer)

    def test_logout_closes_the_socket(self):
        fields = self.ask("POST", "/api/login", {"token": self.service.token}, token=False)[1]
        cookie = "Cookie: " + fields["Set-Cookie"].split(";")[0]
        mine = self.service.web_socket([cookie], token=False)
        self.ask("POST", "/api/logout", headers={"Cookie": cookie[8:]}, token=False)
        opcode, data = mine.recv_data()
        self.assertEqual((opcode, data[:2]), (8, struct.pack(">H", 1008)))
        self.assertEqual(self.ask_line(QUESTION), ANSWER)


class Shutdown(unittest.TestCase):
    def test_open_sockets_are_closed_in_order(self):
        service = Service()
        self.addCleanup(service.close)
        mine = service.web_socket()
        mine.send('{"id":1,"subscribe":"*"}')
        self.assertEqual(mine.recv(), '{"id":1,"result":0}')
        idle = socket.create_connection(("127.0.0.1", service.port))
        stream = socket.create_connection(("127.0.0.1", service.port))
        stream.sendall(f"GET /api/events HTTP/1.1\r\nHost: {service.authority}\r\n"
                       f"Authorization: Bearer {service.token}\r\n\r\n".encode())
        self.assertTrue(stream.recv(12).startswith(b"HTTP/1.1 200"))
        service.process.terminate()
        opcode, data = mine.recv_data()
        while opcode == 1:
            opcode, data = mine.recv_data()
        self.assertEqual((opcode, data[:2]), (8, struct.pack(">H", 1001)))
        self.assertEqual(read_all(idle), b"")
        idle.close()
        read_all(stream)
        stream.close()
        self.assertEqual(service.stop(), 0)
        self.assertFalse(os.path.exists(service.folder / "s.console"))


if __name__ == "__main__":
    unittest.main()
