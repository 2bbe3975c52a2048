#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""HTTP for programs: api_test.py HGAGENT"""
import gzip
import hashlib
import json
import os
import pathlib
import re
import socket

from http_service import CONSOLE_PAGE, ServiceTest, unittest

SN_INFO = ('{"result":0,"reply":{"Status":"0","MAC":"3C:6A:D2:10:4F:20","tslinkstatus":"1",'
           '"DeviceType":"HGU-AX3000"}}')
HOSTS = '/api/report/topology'


class Api(ServiceTest):
    FILES = (
        ("console/index.html", CONSOLE_PAGE),
        ("console/assets/app-1A2B3C4D.js", "let a = 1;\n" * 100),
        ("console/assets/app-1A2B3C4D.js.gz", "packed by the build"),
        ("console/assets/style.css", "p { color: red }"),
        ("console/assets/secret.key", "not a type of the console"),
        ("outside.txt", "not for clients"),
    )
    OPTIONS = ("--console-folder=FOLDER/console",)

    def test_runs_a_command(self):
        status, fields, text = self.ask("POST", "/api/command/GET_SN_INFO", {})
        self.assertEqual((status, text), (200, SN_INFO))
        self.assertEqual(fields["Content-Type"], "application/json")
        self.assertEqual(self.ask("POST", "/api/command/GET_SN_INFO")[2], SN_INFO)

    def test_runs_a_report(self):
        status, answer = self.ask_json("POST", HOSTS)
        self.assertEqual((status, answer["result"]), (200, 0))

    def test_a_body_may_have_several_lines(self):
        status, fields, text = self.ask("POST", "/api/command/GET_SN_INFO", '\n{\r\n  "a" : \n[1,\n2]}\n')
        self.assertEqual((status, text), (200, SN_INFO.replace('"Status"', '"a":[1,2],"Status"')), fields)

    def test_a_body_has_to_be_one_object(self):
        for body in ("[]", "7", '"text"', "null", "{", "{}}", "{} {}", '{},"command":"RP_HG_REBOOT"',
                     '{}\n{"command":"RP_HG_REBOOT"}', '{"a":"line\nend"}', "\x00", '{"a":\xff}',
                     "[" * 100000):
            status, answer = self.ask_json("POST", "/api/command/GET_SN_INFO", body.encode("latin-1"))
            self.assertEqual((status, answer["code"]), (400, "bad-request"), body[:40])

    def test_errors_have_the_status_of_their_code(self):
        status, answer = self.ask_json("POST", "/api/report/NO_SUCH_REPORT")
        self.assertEqual((status, answer["code"]), (400, "bad-request"))
        self.assertNotIn("id", answer)
        status, answer = self.ask_json("POST", "/api/command/NO_SUCH_COMMAND")
        self.assertEqual((status, answer["result"]), (200, -3))

    def test_a_name_may_be_anything(self):
        for name in ("%22%7D%0A", "%00", "%FF", "a/b", "..", "%2e%2e", "A" * 8000):
            status, _, text = self.ask("POST", "/api/command/" + name)
            self.assertIn(status, (200, 400), text)
        self.assertTrue(self.service.is_alive())

    def test_unknown_paths_and_methods(self):
        self.assertEqual(self.ask("GET", "/api/nothing")[0], 404)
        self.assertEqual(self.ask("GET", "/api")[0], 404)
        self.assertEqual(self.ask("POST", "/api/command/")[0], 404)
        status, fields, _ = self.ask("GET", "/api/command/GET_SN_INFO")
        self.assertEqual((status, fields["Allow"]), (405, "POST"))
        status, fields, _ = self.ask("DELETE", "/api/session")
        self.assertEqual((status, fields["Allow"]), (405, "GET"))
        self.assertEqual(self.ask("HEAD", "/api/events")[0], 405)
        self.assertEqual(self.ask("OPTIONS", "/api/login")[0], 405)
        self.assertEqual(self.ask("POST", "/")[0], 405)

    def test_says_who_one_is_and_what_one_may_do(self):
        status, session = self.ask_json("GET", "/api/session")
        self.assertEqual(status, 200)
        self.assertEqual(session["who"], "console")
        self.assertEqual((session["role"], session["secrets"], session["control"]), ("owner", True, True))
        self.assertIn("RP_HG_REBOOT", session["commands"])
        self.assertIn("topology", session["reports"])
        self.assertEqual(session["device"], "simulated")
        self.assertRegex(session["epoch"], "^[0-9a-f]{16}$")

    def test_describes_the_protocol(self):
        status, fields, text = self.ask("GET", "/api/protocol.json")
        described = json.loads(text)
        self.assertEqual((status, fields["Content-Type"]), (200, "application/json"))
        self.assertIn("GET_SN_INFO", [one["command"] for one in described["commands"]])
        self.assertIn("reboot.begun", [one["event"] for one in described["events"]])
        status, again, _ = self.ask("GET", "/api/protocol.json", headers={"If-None-Match": fields["ETag"]})
        self.assertEqual((status, again["ETag"]), (304, fields["ETag"]))
        connection = self.service.connect()
        connection.request("GET", "/api/protocol.json", headers={
            "Accept-Encoding": "gzip", "Authorization": "Bearer " + self.service.token})
        response = connection.getresponse()
        self.assertEqual(response.headers["Content-Encoding"], "gzip")
        self.assertNotEqual(response.headers["ETag"], fields["ETag"])
        self.assertEqual(gzip.decompress(response.read()).decode(), text)
        connection.close()

    def test_every_documented_path_exists(self):
        status, _, text = self.ask("GET", "/api/openapi.json")
        self.assertEqual(status, 200)
        paths = json.loads(text)["paths"]
        self.assertIn("/api/command/GET_SN_INFO", paths)
        for path, methods in paths.items():
            if path == "/api/events":
                continue
            # With a method that none of them has, an unknown path is answered differently.
            status, fields, _ = self.ask("TRACE", path)
            self.assertEqual(status, 405, path)
            for method in methods:
                if method in ("get", "post", "put"):
                    self.assertIn(method.upper(), fields["Allow"], path)

    def test_serves_the_console(self):
        status, fields, text = self.ask("GET", "/", token=False)
        self.assertEqual((status, text), (200, CONSOLE_PAGE))
        self.assertEqual(fields["Content-Type"], "text/html; charset=utf-8")
        self.assertEqual(fields["Cache-Control"], "no-cache")
        self.assertIn("default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; "
                      "connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'",
                      fields["Content-Security-Policy"])
        self.assertEqual(fields["X-Content-Type-Options"], "nosniff")
        self.assertEqual(fields["Referrer-Policy"], "no-referrer")
        status, fields, text = self.ask("GET", "/assets/app-1A2B3C4D.js", token=False)
        self.assertEqual((status, text), (200, "let a = 1;\n" * 100))
        self.assertEqual(fields["Content-Type"], "text/javascript; charset=utf-8")
        self.assertEqual(fields["Cache-Control"], "public, max-age=31536000, immutable")
        status, fields, text = self.ask("GET", "/assets/app-1A2B3C4D.js", token=False,
                                        headers={"Accept-Encoding": "br, gzip"})
        self.assertEqual((status, text), (200, "packed by the build"))
        self.assertEqual(fields["Content-Encoding"], "gzip")
        status, fields, text = self.ask("HEAD", "/assets/style.css", token=False)
        self.assertEqual((status, text, fields["Content-Length"]), (200, "", "16"))

    def test_serves_nothing_else(self):
        for path in ("/../outside.txt", "/assets/../../outside.txt", "/%2e%2e/outside.txt", "/assets/%2e%2e/index.html",
                     "//etc/passwd", "/index.html.gz", "/assets/secret.key", "/assets/", "/assets", "/./", "/\\..\\outside.txt",
                     "/..%5coutside.txt", "/assets/app-1A2B3C4D.js.gz", "/%00", "/index.html%00.css"):
            status, _, text = self.ask("GET", path, token=False)
            self.assertEqual(status, 401, path)
            self.assertNotIn("not for clients", text)
            self.assertEqual(self.ask("GET", path)[0], 404, path)

    def test_a_connection_serves_many_requests(self):
        connection = self.service.connect()
        for _ in range(5):
            self.assertEqual(self.ask("POST", "/api/command/GET_SN_INFO", {}, connection=connection)[2], SN_INFO)
        self.assertEqual(self.ask("GET", "/nothing", connection=connection)[0], 404)
        self.assertEqual(self.ask("GET", "/api/session", connection=connection)[0], 200)
        connection.close()

    def test_answers_requests_that_come_at_once_in_their_order(self):
        head = f"Host: {self.service.authority}\r\nAuthorization: Bearer {self.service.token}\r\n"
        one = f"POST /api/command/GET_SN_INFO HTTP/1.1\r\n{head}Content-Length: 2\r\n\r\n{{}}"
        two = f"GET /nothing HTTP/1.1\r\n{head}\r\n"
        last = f"GET /api/session HTTP/1.1\r\n{head}Connection: close\r\n\r\n"
        answers = self.service.raw((one + two + one + last).encode(), finish=False).decode()
        self.assertEqual(re.findall(r"HTTP/1.1 (\d+)", answers), ["200", "404", "200", "200"])

    def test_sends_events(self):
        with socket.create_connection(("127.0.0.1", self.service.port)) as plain:
            plain.sendall(f"GET /api/events?pattern=policy.* HTTP/1.1\r\nHost: {self.service.authority}\r\n"
                          f"Authorization: Bearer {self.service.token}\r\n\r\n".encode())
            stream = plain.makefile("rb")
            head = b""
            while not head.endswith(b"\r\n\r\n"):
                head += stream.readline()
            self.assertIn(b"Content-Type: text/event-stream\r\n", head)
            self.assertNotIn(b"Content-Length", head)

    def test_refuses_a_bad_pattern(self):
        status, answer = self.ask_json("GET", "/api/events?pattern=" + "a" * 129)
        self.assertEqual((status, answer["code"]), (400, "bad-request"))

    def test_hides_secrets_unless_asked(self):
        status, _, text = self.ask("POST", "/api/command/GET_WIFI_INFO", {"SSIDIndex": "1"})
        self.assertEqual(status, 200)
        self.assertIn('"***"', text)
        shown = self.ask("POST", "/api/command/GET_WIFI_INFO?secrets=show", {"SSIDIndex": "1"})[2]
        self.assertNotIn('"***"', shown)

    def test_counts_requests(self):
        self.ask("POST", "/api/command/GET_LAN_IP_INFO")
        self.ask("POST", "/api/command/NO_SUCH_COMMAND")
        status, fields, text = self.ask("GET", "/metrics")
        self.assertEqual((status, fields["Content-Type"]), (200, "text/plain; version=0.0.4; charset=utf-8"))
        self.assertRegex(text, r'hgagent_request_duration_seconds_count\{command="GET_LAN_IP_INFO",result="success"\} [1-9]')
        self.assertNotIn("NO_SUCH_COMMAND", text)
        self.assertIn('hgagent_worker_restarts_total 0\n', text)
        self.assertRegex(text, r"process_resident_memory_bytes [1-9]\d{6}")
        for line in text.splitlines():
            self.assertRegex(line, r"^(# (HELP|TYPE) [a-z_]+ .+|[a-z_]+(\{([a-z_]+=\"[^\"\\]*\",?)+\})? [0-9.e+-]+)$")

    def test_stores_firmware(self):
        image = os.urandom(3_000_000)
        status, stored = self.ask_json("PUT", "/api/firmware", image)
        self.assertEqual(status, 200)
        self.assertEqual(stored["size"], len(image))
        self.assertEqual(stored["sha256"], hashlib.sha256(image).hexdigest())
        self.assertEqual(stored["md5"], hashlib.md5(image).hexdigest())
        path = pathlib.Path(stored["url"].removeprefix("file://"))
        self.assertEqual(path.read_bytes(), image)
        # A second one replaces the first; what is cut off leaves nothing.
        status, other = self.ask_json("PUT", "/api/firmware", image[:100])
        self.service.raw(f"PUT /api/firmware HTTP/1.1\r\nHost: {self.service.authority}\r\nContent-Length: 1000\r\n"
                         f"Authorization: Bearer {self.service.token}\r\n\r\nimage".encode())
        self.assertEqual([f"file://{one}" for one in path.parent.iterdir()], [other["url"]])
        self.assertEqual(self.ask("PUT", "/api/firmware", b"")[0], 400)
        status, fields, _ = self.ask("PUT", "/api/firmware", None, {"Content-Length": str(64 * 2 ** 20 + 1)})
        self.assertEqual(status, 413)
        self.assertEqual([f"file://{one}" for one in path.parent.iterdir()], [other["url"]])

    def test_one_upload_at_a_time(self):
        with socket.create_connection(("127.0.0.1", self.service.port)) as plain:
            plain.sendall(f"PUT /api/firmware HTTP/1.1\r\nHost: {self.service.authority}\r\nContent-Length: 1000\r\n"
                          f"Expect: 100-continue\r\nAuthorization: Bearer {self.service.token}\r\n\r\n".encode())
            self.assertEqual(plain.recv(100), b"HTTP/1.1 100 Continue\r\n\r\n")
            status, answer = self.ask_json("PUT", "/api/firmware")
            self.assertEqual((status, answer["code"]), (503, "busy"))
            plain.sendall(b"a" * 1000)
            self.assertTrue(plain.recv(100).startswith(b"HTTP/1.1 200 "))
        self.assertEqual(self.ask("PUT", "/api/firmware", b"image")[0], 200)

    def test_the_same_key_runs_a_change_once(self):
        body = {"SSIDIndex": "1", "SSID": "once"}
        first = self.ask("POST", "/api/command/SET_WIFI_INFO", body, {"Idempotency-Key": "k1"})
        again = self.ask("POST", "/api/command/SET_WIFI_INFO", body, {"Idempotency-Key": "k1"})
        self.assertEqual(first[2], again[2])
        status, answer = self.ask_json("POST", "/api/command/SET_WIFI_INFO", {"SSIDIndex": "2"},
                                       {"Idempotency-Key": "k1"})
        self.assertEqual((status, answer["code"]), (400, "bad-request"))
        self.assertEqual(self.ask("POST", "/api/command/GET_SN_INFO", {}, {"Idempotency-Key": "k" * 257})[0], 400)


class WithoutConsole(ServiceTest):
    OPTIONS = ("--console-folder=FOLDER/nothing",)

    def test_serves_the_interface_alone(self):
        status, _, text = self.ask("GET", "/", token=False)
        self.assertEqual(status, 200)
        self.assertIn("no console", text)
        self.assertEqual(self.ask("GET", "/api/session")[0], 200)


if __name__ == "__main__":
    unittest.main()
