#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What keeps strangers and pages of other sites out: safety_test.py HGAGENT"""
import json
import os
import pathlib
import re
import socket
import stat

import websocket
from http_service import ServiceTest, unittest


class Login(ServiceTest):
    def log_in(self, token=None, **named):
        return self.ask("POST", "/api/login", {"token": token or self.service.token}, token=False, **named)

    def cookie(self):
        status, fields, _ = self.log_in()
        self.assertEqual(status, 204)
        return fields["Set-Cookie"].split(";")[0]

    def test_a_worker_inherits_no_connection(self):
        connection = self.service.connect()
        self.ask("GET", "/", connection=connection)
        process = pathlib.Path(f"/proc/{self.service.process.pid}")
        sockets = []
        for descriptor in (process / "fd").iterdir():
            if int(descriptor.name) > 2 and os.readlink(descriptor).startswith("socket:"):
                sockets.append(descriptor.name)
                flags = re.search(r"^flags:\s*(\d+)$", (process / "fdinfo" / descriptor.name).read_text(), re.MULTILINE)
                self.assertTrue(int(flags.group(1), 8) & os.O_CLOEXEC, descriptor.name)
        self.assertGreaterEqual(len(sockets), 3)  # the two listeners and the connection
        connection.close()

    def test_everything_else_needs_a_login(self):
        for method, path in (("GET", "/api/session"), ("POST", "/api/command/GET_SN_INFO"), ("POST", "/api/report/topology"),
                             ("GET", "/api/events"), ("GET", "/api/socket"), ("GET", "/api/protocol.json"),
                             ("GET", "/api/openapi.json"), ("GET", "/metrics"), ("PUT", "/api/firmware"),
                             ("POST", "/api/logout"), ("GET", "/api/nothing")):
            status, fields, text = self.ask(method, path, token=False)
            self.assertEqual((status, fields["WWW-Authenticate"]), (401, "Bearer"), path)
            self.assertEqual(text, '{"error":"log in first"}')
        self.assertEqual(self.ask("GET", "/", token=False)[0], 200)

    def test_the_token_is_exchanged_for_a_cookie(self):
        status, fields, text = self.log_in()
        self.assertEqual((status, text), (204, ""))
        self.assertRegex(fields["Set-Cookie"], f"^hgagent-{self.service.port}=[0-9a-f]{{64}}; HttpOnly; SameSite=Strict; Path=/$")
        self.assertNotIn(self.service.token, fields["Set-Cookie"])
        cookie = fields["Set-Cookie"].split(";")[0]
        for sent in (cookie, "a=b; " + cookie, f"{cookie}; c=d", f"hgagent-1=x;{cookie}"):
            self.assertEqual(self.ask("GET", "/api/session", headers={"Cookie": sent}, token=False)[0], 200, sent)

    def test_logout_ends_the_session(self):
        cookie = {"Cookie": self.cookie()}
        other = {"Cookie": self.cookie()}
        status, fields, _ = self.ask("POST", "/api/logout", headers=cookie, token=False)
        self.assertEqual(status, 204)
        self.assertIn("Max-Age=0", fields["Set-Cookie"])
        self.assertEqual(self.ask("GET", "/api/session", headers=cookie, token=False)[0], 401)
        self.assertEqual(self.ask("GET", "/api/session", headers=other, token=False)[0], 200)

    def test_logout_of_a_session_that_is_used_as_a_bearer(self):
        session = {"Authorization": "Bearer " + self.cookie().split("=")[1]}
        self.assertEqual(self.ask("GET", "/api/session", headers=session)[0], 200)
        self.assertEqual(self.ask("POST", "/api/logout", headers=session)[0], 204)
        self.assertEqual(self.ask("GET", "/api/session", headers=session)[0], 401)

    def test_the_token_stays_valid_after_a_logout(self):
        self.assertEqual(self.ask("POST", "/api/logout")[0], 204)
        self.assertEqual(self.ask("GET", "/api/session")[0], 200)

    def test_a_user_where_there_are_none(self):
        self.assertEqual(self.ask("POST", "/api/login", {"user": "alice", "password": "x"}, token=False)[0], 401)

    def test_wrong_secrets(self):
        token = self.service.token
        for wrong in ("", "0" * 64, token[:-1], token + "0", token.upper() + " ", token[:-1] + ("0" if token[-1] != "0" else "1")):
            self.assertEqual(self.ask("GET", "/api/session", headers={"Authorization": "Bearer " + wrong})[0], 401)
            self.assertEqual(self.ask("GET", "/api/session", headers={"Cookie": f"hgagent-{self.service.port}={wrong}"},
                                      token=False)[0], 401)
        self.assertEqual(self.ask("GET", "/api/session", headers={"Authorization": "Basic " + token})[0], 401)
        # The token itself is no cookie: only the page that knows it gets one.
        self.assertEqual(self.ask("GET", "/api/session", headers={"Cookie": f"hgagent-{self.service.port}={token}"},
                                  token=False)[0], 401)
        for body in ({}, [], {"token": 7}, {"token": None}, {"user": "a", "password": "b"}, "", "{", "\xff"):
            status = self.ask("POST", "/api/login", body if isinstance(body, (dict, list)) else body.encode("latin-1"),
                              token=False)[0]
            self.assertIn(status, (400, 401, 429), body)

    def test_sessions_are_bounded(self):
        first = {"Cookie": self.cookie()}
        for _ in range(64):
            self.cookie()
        self.assertEqual(self.ask("GET", "/api/session", headers=first, token=False)[0], 401)

    def test_the_token_is_in_a_private_file_alone(self):
        file = self.service.folder / "s.console"
        self.assertEqual(stat.S_IMODE(file.stat().st_mode), 0o600)
        self.assertRegex(file.read_text(), f"^http://127.0.0.1:{self.service.port}/#token=[0-9a-f]{{64}}\n$")
        self.assertNotIn(self.service.token, "".join(self.service.lines))

    def test_no_cache_keeps_an_answer(self):
        self.assertEqual(self.ask("GET", "/api/session")[1]["Cache-Control"], "no-store")


class Expiry(ServiceTest):
    OPTIONS = ("--console-session-seconds=1",)

    def test_a_login_that_is_not_used_ends(self):
        fields = self.ask("POST", "/api/login", {"token": self.service.token}, token=False)[1]
        cookie = {"Cookie": fields["Set-Cookie"].split(";")[0]}
        # The service waits longer than the login lives before it closes an idle connection.
        with socket.create_connection(("127.0.0.1", self.service.port)) as plain:
            plain.settimeout(1.5)
            self.assertRaises(TimeoutError, plain.recv, 1)
        self.assertEqual(self.ask("GET", "/api/session", headers=cookie, token=False)[0], 401)
        self.assertEqual(self.ask("GET", "/api/session")[0], 200)


class OtherSites(ServiceTest):
    def status_with(self, **fields):
        named = {name.replace("_", "-"): value for name, value in fields.items()}
        return self.ask("GET", "/api/session", headers=named)[0]

    def test_dns_rebinding_is_refused(self):
        port = self.service.port
        for host in (f"127.0.0.1:{port}", f"localhost:{port}", f"LOCALHOST:{port}"):
            self.assertEqual(self.status_with(Host=host), 200, host)
        for host in ("evil.example", f"evil.example:{port}", "127.0.0.1", "localhost", f"127.0.0.1:{port + 1}",
                     f"127.0.0.1.evil.example:{port}", f"[::1]:{port}", f"0.0.0.0:{port}", f"127.1:{port}",
                     f"localhost.:{port}", f"user@127.0.0.1:{port}", f"127.0.0.1:{port}:{port}", f"127.0.0.1:0{port}", ""):
            self.assertEqual(self.status_with(Host=host), 421, host)
            # Not even the page itself.
            self.assertEqual(self.ask("GET", "/", headers={"Host": host}, token=False)[0], 421, host)

    def test_a_host_has_to_be_there_once(self):
        own = f"Host: {self.service.authority}\r\n"
        for fields in ("", own + "Host: evil.example\r\n", own + own):
            answer = self.service.raw(f"GET / HTTP/1.1\r\n{fields}\r\n".encode())
            self.assertTrue(answer.startswith(b"HTTP/1.1 400 "), answer)

    def test_other_origins_are_refused(self):
        own = self.service.authority
        self.assertEqual(self.status_with(Origin="http://" + own), 200)
        for origin in ("http://evil.example", "https://" + own, "http://localhost:" + own.split(":")[1], "null",
                       "http://127.0.0.1", f"http://{own}.evil.example", "file://", "", f"http://{own}/", "http://" + own[:-1]):
            self.assertEqual(self.status_with(Origin=origin), 403, origin)
            self.assertEqual(self.ask("POST", "/api/login", {"token": self.service.token}, {"Origin": origin}, token=False)[0],
                             403, origin)
        self.assertEqual(self.status_with(Origin="http://localhost:" + own.split(":")[1],
                                          Host="localhost:" + own.split(":")[1]), 200)

    def test_what_the_browser_says_of_the_site_counts(self):
        for site in ("cross-site", "same-site", "anything"):
            self.assertEqual(self.status_with(Sec_Fetch_Site=site), 403, site)
            # But a link to the page may be followed.
            self.assertEqual(self.ask("GET", "/", headers={"Sec-Fetch-Site": site}, token=False)[0], 200)
        for site in ("same-origin", "none"):
            self.assertEqual(self.status_with(Sec_Fetch_Site=site), 200, site)

    def test_no_other_site_may_read_an_answer(self):
        for fields in (self.ask("GET", "/api/session")[1], self.ask("GET", "/", token=False)[1]):
            self.assertNotIn("Access-Control-Allow-Origin", fields)
            self.assertEqual(fields["Cross-Origin-Resource-Policy"], "same-origin")

    def test_web_sockets_of_other_sites_are_refused(self):
        own = self.service.authority
        for fields, status in ((["Origin: http://evil.example"], 403), (["Origin: null"], 403),
                               (["Sec-Fetch-Site: cross-site"], 403)):
            with self.assertRaises(websocket.WebSocketBadStatusException) as refused:
                self.service.web_socket(fields)
            self.assertEqual(refused.exception.status_code, status)
        with self.assertRaises(websocket.WebSocketBadStatusException) as refused:
            self.service.web_socket(token=False)
        self.assertEqual(refused.exception.status_code, 401)
        with self.assertRaises(websocket.WebSocketBadStatusException) as refused:
            self.service.web_socket(host=f"evil.example:{self.service.port}")
        self.assertEqual(refused.exception.status_code, 421)
        self.service.web_socket([f"Origin: http://{own}"]).close()

    def test_a_target_with_another_host_is_refused(self):
        for target in ("http://evil.example/", "//", "evil.example:80", "*", "?", "#", "/#a"):
            answer = self.service.raw(f"GET {target} HTTP/1.1\r\nHost: {self.service.authority}\r\n\r\n".encode())
            self.assertRegex(answer, rb"^HTTP/1.1 40[01] ", target)


if __name__ == "__main__":
    unittest.main()
