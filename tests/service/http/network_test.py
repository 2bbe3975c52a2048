#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""TLS and users with passwords: network_test.py HGAGENT"""
import http.client
import json
import os
import pathlib
import signal
import socket
import ssl
import subprocess
import tempfile
import warnings

import websocket
from http_service import HGAGENT, Service, read_all, unittest

POLICY = """
[roles.viewers]
members = ["http-user:alice"]
allow = ["effect:none", "report:*", "event:*"]
[roles.others]
members = ["way-in:http"]
allow = ["GET_SN_INFO"]
"""


def password_line(user, password):
    """As docs/service.md says."""
    made = subprocess.run(["argon2", "a salt that is random", "-id", "-e", "-m", "12", "-t", "1"], input=password, check=True,
                          capture_output=True, text=True)
    return f"{user}:{made.stdout}"


def make_certificate(folder, name="server"):
    subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                    "-subj", "/CN=test", "-addext", "subjectAltName=IP:127.0.0.1,DNS:gateway.test", "-days", "2",
                    "-keyout", f"{folder}/{name}.key", "-out", f"{folder}/{name}.crt"], check=True, capture_output=True)


class Network(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.holder = tempfile.TemporaryDirectory()
        cls.folder = pathlib.Path(cls.holder.name)
        make_certificate(cls.folder)
        cls.lines = password_line("alice", "right") + password_line("bob", "bob's")
        (cls.folder / "passwords").write_text(cls.lines)
        (cls.folder / "passwords").chmod(0o600)
        (cls.folder / "policy.toml").write_text(POLICY)
        cls.options = [f"--console-certificate={cls.folder}/server.crt", f"--console-key={cls.folder}/server.key",
                       f"--console-passwords={cls.folder}/passwords", f"--policy={cls.folder}/policy.toml",
                       "--console-name=gateway.test"]

    @classmethod
    def tearDownClass(cls):
        cls.holder.cleanup()

    def setUp(self):
        self.service = Service(*self.options, console="0.0.0.0:0")
        self.addCleanup(self.service.close)
        self.tls = ssl.create_default_context(cafile=self.folder / "server.crt")

    def connect(self):
        return http.client.HTTPSConnection("127.0.0.1", self.service.port, context=self.tls)

    def ask(self, method, path, body=None, headers=None):
        connection = self.connect()
        connection.request(method, path, body=None if body is None else json.dumps(body), headers=headers or {})
        response = connection.getresponse()
        text = response.read().decode()
        connection.close()
        return response.status, response.headers, text

    def log_in(self, user, password):
        """Result: the status, and the field of the cookie."""
        status, fields, _ = self.ask("POST", "/api/login", {"user": user, "password": password})
        return status, {"Cookie": (fields["Set-Cookie"] or "").split(";")[0]}

    def test_users_have_the_roles_of_the_policy(self):
        self.assertEqual(self.service.scheme, "https")
        status, fields, _ = self.ask("POST", "/api/login", {"user": "alice", "password": "right"})
        self.assertEqual(status, 204)
        self.assertRegex(fields["Set-Cookie"], "; HttpOnly; SameSite=Strict; Path=/; Secure$")
        alice = {"Cookie": fields["Set-Cookie"].split(";")[0]}
        session = json.loads(self.ask("GET", "/api/session", headers=alice)[2])
        self.assertEqual((session["who"], session["role"], session["secrets"], session["control"]),
                         ("http-user:alice", "viewers", False, False))
        self.assertIn("GET_WIFI_INFO", session["commands"])
        self.assertNotIn("RP_HG_REBOOT", session["commands"])
        for secrets in ("", "?secrets=show"):
            text = self.ask("POST", "/api/command/GET_WIFI_INFO" + secrets, {"SSIDIndex": "1"}, alice)[2]
            self.assertIn('"***"', text)
        status, _, text = self.ask("POST", "/api/command/RP_HG_REBOOT", {}, alice)
        self.assertEqual((status, json.loads(text)["code"]), (403, "denied"))
        self.assertIn("viewers", json.loads(text)["rule"])
        status, _, text = self.ask("PUT", "/api/firmware", None, alice)
        self.assertEqual((status, json.loads(text)["code"]), (403, "denied"))
        status, bob = self.log_in("bob", "bob's")
        self.assertEqual(json.loads(self.ask("GET", "/api/session", headers=bob)[2])["commands"], ["GET_SN_INFO"])
        # Programs may send the same value as a bearer.
        self.assertEqual(self.ask("GET", "/api/session",
                                  headers={"Authorization": "Bearer " + bob["Cookie"].split("=")[1]})[0], 200)

    def test_there_is_no_token(self):
        self.assertIsNone(self.service.token)
        self.assertFalse((self.service.folder / "s.console").exists())
        for token in ("", "0" * 64):
            self.assertEqual(self.ask("POST", "/api/login", {"token": token})[0], 401)
            self.assertEqual(self.ask("GET", "/api/session", headers={"Authorization": "Bearer " + token})[0], 401)

    def test_logins_are_limited(self):
        for user, password in (("alice", "wrong"), ("nobody", "right"), ("alice", ""), ("", "")):
            self.assertEqual(self.log_in(user, password)[0], 401, user)
        statuses = [self.log_in("alice", "wrong")[0] for _ in range(8)]
        self.assertIn(429, statuses)
        self.assertEqual(self.log_in("alice", "right")[0], 429)

    def test_a_removed_user_is_logged_out(self):
        _, alice = self.log_in("alice", "right")
        _, bob = self.log_in("bob", "bob's")
        socket_of_alice = websocket.create_connection(
            f"wss://127.0.0.1:{self.service.port}/api/socket", header=[f"Cookie: {alice['Cookie']}"], suppress_origin=True,
            sslopt={"ca_certs": str(self.folder / "server.crt")})
        (self.folder / "passwords").write_text(password_line("alice", "other") + self.lines.splitlines()[1] + "\n")
        self.service.process.send_signal(signal.SIGHUP)
        opcode, _ = socket_of_alice.recv_data()
        self.assertEqual(opcode, 8)
        self.assertEqual(self.ask("GET", "/api/session", headers=alice)[0], 401)
        self.assertEqual(self.ask("GET", "/api/session", headers=bob)[0], 200)
        (self.folder / "passwords").write_text(self.lines)

    def test_a_bad_reload_changes_nothing(self):
        _, alice = self.log_in("alice", "right")
        (self.folder / "passwords").write_text("rubbish\n")
        self.service.process.send_signal(signal.SIGHUP)
        said = self.service.process.stderr.readline() + self.service.process.stderr.readline()
        self.assertIn("passwords:1: the line is not USER:HASH", said)
        self.assertEqual(self.ask("GET", "/api/session", headers=alice)[0], 200)
        (self.folder / "passwords").write_text(self.lines)

    def test_a_new_certificate_is_used(self):
        make_certificate(self.service.folder, "new")
        before = (self.folder / "server.crt").read_bytes(), (self.folder / "server.key").read_bytes()
        try:
            for kind in ("crt", "key"):
                (self.folder / f"server.{kind}").write_bytes((self.service.folder / f"new.{kind}").read_bytes())
            self.service.process.send_signal(signal.SIGHUP)
            self.assertIn("loaded again", self.service.process.stderr.readline())
            self.assertRaises(ssl.SSLCertVerificationError, self.ask, "GET", "/")
            self.tls = ssl.create_default_context(cafile=self.folder / "server.crt")
            self.assertEqual(self.ask("GET", "/")[0], 200)
        finally:
            (self.folder / "server.crt").write_bytes(before[0])
            (self.folder / "server.key").write_bytes(before[1])

    def test_hosts_are_checked(self):
        port = self.service.port
        for host in (f"127.0.0.1:{port}", f"localhost:{port}", f"gateway.test:{port}"):
            self.assertEqual(self.ask("GET", "/", headers={"Host": host})[0], 200, host)
        for host in (f"evil.example:{port}", f"0.0.0.0:{port}", "gateway.test"):
            self.assertEqual(self.ask("GET", "/", headers={"Host": host})[0], 421, host)
        self.assertEqual(self.ask("GET", "/", headers={"Origin": f"http://127.0.0.1:{port}"})[0], 403)
        self.assertEqual(self.ask("GET", "/", headers={"Origin": f"https://127.0.0.1:{port}"})[0], 200)

    def test_what_is_no_tls_gets_no_answer(self):
        for data in (b"GET / HTTP/1.1\r\nHost: localhost\r\n\r\n", b"\x16\x03\x01\xff\xff" + b"a" * 100, b"\0" * 1000,
                     os.urandom(3000)):
            with socket.create_connection(("127.0.0.1", self.service.port)) as plain:
                plain.sendall(data)
                self.assertNotIn(b"HTTP", read_all(plain))
        self.assertEqual(self.ask("GET", "/")[0], 200)

    def test_old_versions_are_refused(self):
        old = ssl.SSLContext(ssl.PROTOCOL_TLS_CLIENT)
        old.check_hostname = False
        old.verify_mode = ssl.CERT_NONE
        old.set_ciphers("ALL:@SECLEVEL=0")
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", DeprecationWarning)
            old.minimum_version = old.maximum_version = ssl.TLSVersion.TLSv1_1
        with socket.create_connection(("127.0.0.1", self.service.port)) as plain:
            self.assertRaises((ssl.SSLError, ConnectionResetError), old.wrap_socket, plain)
        for version in (ssl.TLSVersion.TLSv1_2, ssl.TLSVersion.TLSv1_3):
            new = ssl.create_default_context(cafile=self.folder / "server.crt")
            new.minimum_version = new.maximum_version = version
            self.tls = new
            self.assertEqual(self.ask("GET", "/")[0], 200)

    def test_big_answers_arrive_whole(self):
        _, alice = self.log_in("alice", "right")
        described = json.loads(self.ask("GET", "/api/protocol.json", headers=alice)[2])
        self.assertGreater(len(described["commands"]), 100)
        connection = self.connect()
        for _ in range(3):
            connection.request("POST", "/api/report/topology", headers=alice)
            with connection.getresponse() as response:
                self.assertEqual(json.loads(response.read())["result"], 0)
        connection.close()


class Start(unittest.TestCase):
    """What is refused before anything is served."""

    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = pathlib.Path(holder.name)

    def refusal(self, *options, status=2):
        ended = subprocess.run([HGAGENT, "run", f"--socket={self.folder}/s.sock", *options], check=False,
                               capture_output=True, text=True, stdin=subprocess.DEVNULL)
        self.assertEqual(ended.returncode, status, ended.stderr)
        return ended.stderr

    def test_a_network_needs_tls_and_passwords(self):
        said = self.refusal("--console=0.0.0.0:0")
        self.assertIn("need TLS", said)
        self.assertIn("need users with passwords", said)
        self.assertIn("certificate and key are given together",
                      self.refusal("--console=127.0.0.1:0", "--console-certificate=a"))

    def test_bad_addresses(self):
        for address in ("localhost", "127.0.0.1", "127.0.0.1:", ":80", "127.0.0.1:65536", "127.0.0.1:-1", "host.example:80",
                        "::1:80", "[::1]", "127.0.0.1:80x", "[127.0.0.1]:80"):
            self.assertIn("is not ADDRESS:PORT", self.refusal("--console=" + address), address)

    def test_an_address_in_use(self):
        with socket.create_server(("127.0.0.1", 0)) as taken:
            said = self.refusal(f"--console=127.0.0.1:{taken.getsockname()[1]}", status=4)
            self.assertIn("cannot listen at 127.0.0.1:", said)

    def test_password_files(self):
        make_certificate(self.folder)
        good = password_line("alice", "right")
        file = self.folder / "passwords"
        options = (f"--console=127.0.0.1:0", f"--console-passwords={file}")
        for text, mode, problem in (
                (good, 0o640, "may be used by others than its owner"),
                (good, 0o604, "may be used by others than its owner"),
                (good + good, 0o600, ':2: "alice" is there already'),
                ("alice\n", 0o600, ":1: the line is not USER:HASH"),
                ("# a comment\n\nalice:right\n", 0o600, ":3: the line is not USER:HASH"),
                (good.replace("argon2id", "argon2i"), 0o600, ":1: the line is not USER:HASH"),
                (good.replace("m=4096", "m=4194304"), 0o600, ":1: the line is not USER:HASH"),
                (":" + good.split(":")[1], 0o600, ":1: the line is not USER:HASH")):
            file.write_text(text)
            file.chmod(mode)
            said = self.refusal(*options, status=4)
            self.assertIn(problem, said)
            self.assertNotIn("argon2id$", said)
        file.unlink()
        self.assertIn("No such file", self.refusal(*options, status=4))
        os.mkfifo(file, 0o600)
        self.assertIn("is not a file of passwords", self.refusal(*options, status=4))

    def test_certificates(self):
        make_certificate(self.folder)
        make_certificate(self.folder, "other")
        for certificate, key, problem in (("nothing", "server.key", "cannot use the certificate"),
                                          ("server.key", "server.key", "cannot use the certificate"),
                                          ("server.crt", "other.key", "cannot use the key"),
                                          ("server.crt", "server.crt", "cannot use the key")):
            said = self.refusal("--console=127.0.0.1:0", f"--console-certificate={self.folder}/{certificate}",
                                f"--console-key={self.folder}/{key}", status=4)
            self.assertIn(problem, said)

    def test_no_pass_phrase_is_asked_for(self):
        """Without a terminal, OpenSSL would take it from standard input."""
        make_certificate(self.folder)
        subprocess.run(["openssl", "pkey", "-aes256", "-passout", "pass:secret", "-in", f"{self.folder}/server.key",
                        "-out", f"{self.folder}/locked.key"], check=True)
        with subprocess.Popen([HGAGENT, "run", f"--socket={self.folder}/s.sock", "--console=127.0.0.1:0",
                               f"--console-certificate={self.folder}/server.crt",
                               f"--console-key={self.folder}/locked.key"],
                              stdin=subprocess.PIPE, stderr=subprocess.PIPE, text=True, start_new_session=True) as process:
            process.stdin.write("secret\n")
            process.stdin.close()
            line = process.stderr.readline()
            if "cannot use the key" not in line:
                process.kill()
        self.assertEqual(process.returncode, 4, line)


if __name__ == "__main__":
    unittest.main()
