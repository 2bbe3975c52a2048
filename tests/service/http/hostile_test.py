#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Clients that break the protocol, or use up what others need: hostile_test.py HGAGENT"""
import os
import random
import re
import signal
import socket
import struct

import websocket
from http_service import ServiceTest, read_all, unittest


class Hostile(ServiceTest):
    OPTIONS = ("--request-seconds=1", "--max-line=100000", "--max-clients=40", "--max-pending-output=300000")

    def head(self, more=""):
        return f"Host: {self.service.authority}\r\nAuthorization: Bearer {self.service.token}\r\n{more}"

    def status_of(self, request, finish=True):
        """The status of the first answer; 0 without one."""
        answer = self.service.raw(request if isinstance(request, bytes) else request.encode("latin-1"), finish)
        self.assertLessEqual(answer.count(b"HTTP/1.1 "), 1, request)
        found = re.match(rb"HTTP/1.[01] (\d+) ", answer)
        return int(found.group(1)) if found else 0

    def tearDown(self):
        self.assertTrue(self.service.is_alive())

    def test_smuggled_requests_are_refused(self):
        """Messages whose end is a matter of opinion, with a second request in them."""
        hidden = "GET /api/session HTTP/1.1\r\n" + self.head() + "\r\n"
        for fields in (f"Content-Length: 2\r\nContent-Length: {2 + len(hidden)}\r\n",
                       f"Content-Length: 2, {len(hidden)}\r\n",
                       "Content-Length: 2\r\nTransfer-Encoding: chunked\r\n",
                       "Transfer-Encoding: chunked\r\nContent-Length: 2\r\n",
                       "Transfer-Encoding: gzip, chunked\r\n",
                       "Transfer-Encoding: chunked, identity\r\n",
                       "Transfer-Encoding: identity\r\n",
                       "Transfer-Encoding: xchunked\r\n",
                       "Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n",
                       "Content-Length: +2\r\n", "Content-Length: -2\r\n", "Content-Length: 0x2\r\n",
                       "Content-Length: 2 2\r\n", "Content-Length:\r\n",
                       "Content-Length: 18446744073709551618\r\n",
                       "Content-Length : 2\r\n", "Content-Length\x00: 2\r\n", "Content Length: 2\r\n", ": 2\r\n",
                       "X: a\nContent-Length: 2\r\n", "X: a\rContent-Length: 2\r\n", "X: a\x00b\r\n"):
            status = self.status_of("POST /api/command/GET_SN_INFO HTTP/1.1\r\n" + self.head(fields) + "\r\n{}" + hidden)
            self.assertEqual(status, 400, fields)

    def test_malformed_requests_are_refused(self):
        for request in ("\r\n\r\n", "GET\r\n\r\n", "GET /\r\n\r\n", "GET / HTTP/1.1 \r\n\r\n", " GET / HTTP/1.1\r\n\r\n",
                        "G\x00T / HTTP/1.1\r\n\r\n", "GET  / HTTP/1.1\r\n\r\n", "GET / HTTP/x.1\r\n\r\n",
                        "GET / http/1.1\r\n\r\n", "GET / HTTP/1.1\n\n", "GET /\x7f HTTP/1.1\r\n\r\n", "\x16\x03\x01\x02\x00\x01\x00",
                        "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", "\x00" * 100):
            self.assertIn(self.status_of(request), (0, 400, 505), request)
        self.assertEqual(self.status_of("GET / HTTP/2.0\r\n" + self.head() + "\r\n"), 505)
        self.assertEqual(self.status_of("GET / HTTP/1.2\r\n" + self.head() + "\r\n"), 505)

    def test_a_reload_during_a_request_is_harmless(self):
        """The files of the console are replaced between a request's header and its end."""
        with socket.create_connection(("127.0.0.1", self.service.port)) as plain:
            plain.sendall(f"GET / HTTP/1.1\r\nHost: {self.service.authority}\r\nExpect: 100-continue\r\n"
                          "Transfer-Encoding: chunked\r\n\r\n".encode())
            self.assertTrue(plain.recv(100).startswith(b"HTTP/1.1 100 "))  # the header has been read
            self.service.process.send_signal(signal.SIGHUP)
            self.assertIn("loaded again", self.service.process.stderr.readline())
            plain.sendall(b"0\r\n\r\n")
            plain.shutdown(socket.SHUT_WR)
            self.assertTrue(read_all(plain).startswith(b"HTTP/1.1 200 "))

    def test_old_clients_are_served(self):
        self.assertEqual(self.status_of("GET / HTTP/1.0\r\n" + self.head() + "\r\n", finish=False), 200)

    def test_chunked_bodies(self):
        def chunked(body):
            return "POST /api/command/GET_SN_INFO HTTP/1.1\r\n" + self.head("Transfer-Encoding: chunked\r\nConnection: close\r\n\r\n") + body
        self.assertEqual(self.status_of(chunked("1\r\n{\r\n1\r\n}\r\n0\r\n\r\n"), finish=False), 200)
        self.assertEqual(self.status_of(chunked("2;a=b\r\n{}\r\n0\r\nTrailer: x\r\n\r\n"), finish=False), 200)
        for body in ("x\r\n", "-1\r\n", "2\r\n{}}\r\n0\r\n\r\n", "ffffffffffffffffff\r\n", "2\n{}\n0\n\n", "2 \r\n{}\r\n\r\n\r\n"):
            self.assertIn(self.status_of(chunked(body)), (0, 400), body)
        self.assertEqual(self.status_of(chunked("1869F\r\n" + "a" * 99999 + "\r\n64\r\n" + "a" * 100 + "\r\n")), 413)
        self.assertIn(self.status_of(chunked("2;" + "a" * 200000), finish=False), (400, 431))
        self.assertIn(self.status_of(chunked("0\r\n" + "a: b\r\n" * 50000), finish=False), (400, 431))

    def test_huge_headers_are_refused(self):
        for fields in ("X: " + "a" * 17000 + "\r\n", "X" * 17000 + ": a\r\n", "X: a\r\n" * 200, "X: a\r\n" * 3000):
            self.assertEqual(self.status_of("GET / HTTP/1.1\r\n" + self.head(fields) + "\r\n"), 431, fields[:20])
        self.assertEqual(self.status_of("GET /" + "a" * 17000 + " HTTP/1.1\r\n" + self.head() + "\r\n"), 431)
        self.assertEqual(self.status_of("G" * 17000), 431)

    def test_huge_bodies_are_refused_unread(self):
        for size in (100001, 2 ** 40, 2 ** 63):
            status = self.status_of("POST /api/command/GET_SN_INFO HTTP/1.1\r\n" + self.head(f"Content-Length: {size}\r\n") + "\r\n",
                                    finish=False)
            self.assertEqual(status, 413)
        self.assertEqual(self.status_of("POST /api/login HTTP/1.1\r\n" + self.head("Content-Length: 4097\r\n") + "\r\n", finish=False), 413)
        self.assertEqual(self.status_of("GET /api/session HTTP/1.1\r\n" + self.head("Content-Length: 1\r\n") + "\r\n", finish=False), 413)
        # With the expectation, the client learns before it sends the body.
        answer = self.service.raw(("POST /api/command/GET_SN_INFO HTTP/1.1\r\n" +
                                   self.head("Expect: 100-continue\r\nContent-Length: 200000\r\n") + "\r\n").encode(), finish=False)
        self.assertTrue(answer.startswith(b"HTTP/1.1 413 "), answer)

    def test_a_body_may_be_expected(self):
        with socket.create_connection(("127.0.0.1", self.service.port)) as plain:
            plain.sendall(("POST /api/command/GET_SN_INFO HTTP/1.1\r\n" +
                           self.head("Expect: 100-continue\r\nContent-Length: 2\r\nConnection: close\r\n") + "\r\n").encode())
            self.assertEqual(plain.recv(25), b"HTTP/1.1 100 Continue\r\n\r\n")
            plain.sendall(b"{}")
            self.assertTrue(read_all(plain).startswith(b"HTTP/1.1 200 "))

    def test_slow_requests_end(self):
        for sent in ("", "G", "GET / HTTP/1.1\r\nHost: a", "POST /api/command/GET_SN_INFO HTTP/1.1\r\n" +
                     self.head("Content-Length: 10\r\n") + "\r\n{"):
            status = self.status_of(sent, finish=False)
            self.assertEqual(status, 408 if sent else 0, sent)

    def test_a_request_that_never_gets_done_ends(self):
        """A byte now and then does not keep a connection open."""
        with socket.create_connection(("127.0.0.1", self.service.port)) as plain:
            plain.settimeout(0.2)
            plain.sendall(b"GET / HTTP/1.1\r\n")
            answer = b""
            for _ in range(1000):
                try:
                    plain.sendall(b"X: a\r\n")
                    answer += plain.recv(4096)
                    if b"408" in answer:
                        break
                except TimeoutError:
                    pass
            self.assertIn(b"HTTP/1.1 408 ", answer)

    def test_a_client_that_does_not_read_is_closed(self):
        with socket.socket() as plain:
            plain.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
            plain.connect(("127.0.0.1", self.service.port))
            request = ("GET /api/protocol.json HTTP/1.1\r\n" + self.head() + "\r\n").encode()
            plain.sendall(request * 20)
            plain.settimeout(None)
            # Nothing is read until the service has closed; the rest of the answers is lost.
            poll_until_closed(plain)
            self.assertLess(len(read_all(plain)), 20 * 200_000)

    def test_a_web_socket_that_does_not_read_is_closed(self):
        mine = self.service.web_socket(sockopt=[(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)])
        sent = 0
        try:
            while sent < 1000:  # 90 MB; the service stops reading, and closes, long before
                mine.send('{"id":"' + "a" * 90000 + '","hello":{}}')
                sent += 1
        except OSError:
            pass
        self.assertLess(sent, 300)
        mine.sock.close()

    def test_a_web_socket_that_does_not_read_is_closed_after_its_logout(self):
        """It never sees the close frame."""
        fields = self.ask("POST", "/api/login", {"token": self.service.token}, token=False)[1]
        cookie = fields["Set-Cookie"].split(";")[0]
        mine = self.service.web_socket([f"Cookie: {cookie}"], token=False,
                                       sockopt=[(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)])
        mine.settimeout(0.5)
        try:
            while True:  # until the service stops reading
                mine.send('{"id":"' + "a" * 90000 + '","hello":{}}')
        except (OSError, websocket.WebSocketException):
            pass
        self.ask("POST", "/api/logout", headers={"Cookie": cookie}, token=False)
        poll_until_closed(mine.sock)
        mine.sock.close()

    def test_many_connections_keep_nobody_out(self):
        held = []
        for number in range(1000):
            plain = socket.create_connection(("127.0.0.1", self.service.port))
            if number % 3 == 0:
                plain.sendall(b"GET / HTTP/1.1\r\n")
            held.append(plain)
            if number % 100 == 0:
                self.assertTrue(self.service.is_alive())
        for plain in held:
            plain.close()

    def test_sockets_in_use_are_not_closed_for_others(self):
        mine = [self.service.web_socket() for _ in range(5)]
        for _ in range(100):
            socket.create_connection(("127.0.0.1", self.service.port)).close()
            self.assertTrue(self.service.is_alive())
        for one in mine:
            one.send('{"hello":{}}')
            self.assertIn('"result":0', one.recv())
            one.close()

    def test_clients_that_go_at_any_time(self):
        request = ("POST /api/command/GET_SN_INFO HTTP/1.1\r\n" + self.head("Content-Length: 2\r\n") + "\r\n{}").encode()
        for end in range(0, len(request) + 1, 3):
            with socket.create_connection(("127.0.0.1", self.service.port)) as plain:
                plain.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
                plain.sendall(request[:end])

    def test_a_request_that_arrives_in_pieces(self):
        request = ("POST /api/command/GET_SN_INFO HTTP/1.1\r\n" +
                   self.head("Transfer-Encoding: chunked\r\nConnection: close\r\n") + "\r\n1\r\n{\r\n1\r\n}\r\n0\r\n\r\n").encode()
        with socket.create_connection(("127.0.0.1", self.service.port)) as plain:
            plain.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            for byte in request:
                plain.sendall(bytes([byte]))
            self.assertTrue(read_all(plain).startswith(b"HTTP/1.1 200 "))

    def test_rubbish(self):
        seed = int.from_bytes(os.urandom(4), "big")
        print("seed", seed)
        generator = random.Random(seed)
        whole = ("POST /api/command/GET_SN_INFO?secrets=show HTTP/1.1\r\n" +
                 self.head("Content-Length: 2\r\nCookie: a=b; c=d\r\nAccept-Encoding: gzip\r\n") + "\r\n{}").encode()
        for _ in range(300):
            request = bytearray(whole)
            for _ in range(generator.randint(1, 8)):
                at = generator.randrange(len(request))
                what = generator.randrange(3)
                if what == 0:
                    request[at] = generator.randrange(256)
                elif what == 1:
                    del request[at:at + generator.randrange(20)]
                else:
                    request[at:at] = bytes(generator.choice([b"\r\n", b"\0", b":", b"%", b" ", b"\xff", b"chunked", b"1", b"\r\n\r\n"]))
                if not request:
                    request = bytearray(b"a")
            self.service.raw(bytes(request))


class LongCommand(ServiceTest):
    OPTIONS = ("--request-seconds=1",)
    BEFORE = ("--fault=devapi_get_sn_info=0@2500ms",)

    def test_a_command_may_take_longer_than_its_request(self):
        """Also one whose body came with the header that asks whether it may come."""
        for expectation in ("", "Expect: 100-continue\r\n"):
            answer = self.service.raw(
                (f"POST /api/command/GET_SN_INFO HTTP/1.1\r\nHost: {self.service.authority}\r\n"
                 f"Authorization: Bearer {self.service.token}\r\n{expectation}Content-Length: 2\r\n"
                 "Connection: close\r\n\r\n{}").encode(), finish=False)
            self.assertIn(b"HTTP/1.1 200 OK", answer, expectation)


def poll_until_closed(plain):
    import select
    waiting = select.poll()
    waiting.register(plain, select.POLLRDHUP | select.POLLHUP | select.POLLERR)
    waiting.poll()


if __name__ == "__main__":
    unittest.main()
