# SPDX-License-Identifier: MIT
"""A service with HTTP, and clients of it."""
import http.client
import json
import pathlib
import re
import signal
import socket
import subprocess
import sys
import tempfile
import unittest

import websocket

HGAGENT = sys.argv.pop(1)
CONSOLE_PAGE = "<!DOCTYPE html><title>page</title>"


class Service:
    """`hgagent run --console` on a free port of 127.0.0.1, in a folder of its own."""

    def __init__(self, *options, console="127.0.0.1:0", files=(), before=()):
        self.holder = tempfile.TemporaryDirectory()
        self.folder = pathlib.Path(self.holder.name)
        for name, text in files:
            path = self.folder / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text)
        self.command = [HGAGENT, *before, "run", f"--socket={self.folder}/s.sock", f"--console={console}",
                        *[option.replace("FOLDER", str(self.folder)) for option in options]]
        self.start()

    def start(self):
        self.process = subprocess.Popen(self.command, stderr=subprocess.PIPE, text=True)
        self.lines = []
        while True:
            line = self.process.stderr.readline()
            if not line:
                raise RuntimeError("the service has ended: " + "".join(self.lines))
            self.lines.append(line)
            if line.startswith("listening on http"):
                break
        found = re.search(r"listening on (https?)://(\[.*\]|[^:/]*):(\d+)/\n", "".join(self.lines))
        self.scheme, self.host, self.port = found.group(1), found.group(2), int(found.group(3))
        self.authority = f"{self.host}:{self.port}"
        file = self.folder / "s.console"
        self.token = file.read_text().strip().split("#token=")[1] if file.exists() else None

    def stop(self):
        """Result: the exit status."""
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        self.process.stderr.read()
        return self.process.wait()

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.stderr.close()
        self.process.wait()
        self.holder.cleanup()

    def connect(self):
        return http.client.HTTPConnection("127.0.0.1", self.port)

    def ask(self, method, path, body=None, headers=None, token=True, connection=None):
        """Result: status, header fields, and the body as text. token: as a bearer of it."""
        own = connection or self.connect()
        fields = dict(headers or {})
        if token and "Authorization" not in fields:
            fields["Authorization"] = "Bearer " + self.token
        if isinstance(body, (dict, list)):
            body = json.dumps(body)
        own.request(method, path, body=body, headers=fields)
        response = own.getresponse()
        data = response.read()
        if connection is None:
            own.close()
        return response.status, response.headers, data.decode("utf-8", "surrogateescape")

    def ask_json(self, *arguments, **named):
        status, _, text = self.ask(*arguments, **named)
        return status, json.loads(text)

    def raw(self, data, finish=True):
        """Sends the bytes as they are. Result: all that comes back until the service closes."""
        with socket.create_connection(("127.0.0.1", self.port)) as plain:
            plain.sendall(data)
            if finish:
                plain.shutdown(socket.SHUT_WR)
            return read_all(plain)

    def web_socket(self, headers=(), token=True, **options):
        fields = list(headers)
        if token:
            fields.append("Authorization: Bearer " + self.token)
        return websocket.create_connection(f"ws://{self.authority}/api/socket", header=fields,
                                           suppress_origin=True, **options)

    def is_alive(self):
        status, _ = self.ask_json("POST", "/api/command/GET_SN_INFO")
        return status == 200 and self.process.poll() is None


def read_all(plain):
    data = b""
    while True:
        try:
            part = plain.recv(65536)
        except ConnectionResetError:
            return data
        if not part:
            return data
        data += part


class ServiceTest(unittest.TestCase):
    """One service for the tests of a class."""

    OPTIONS = ()
    BEFORE = ()
    FILES = ()
    CONSOLE = "127.0.0.1:0"

    @classmethod
    def setUpClass(cls):
        cls.service = Service(*cls.OPTIONS, console=cls.CONSOLE, files=cls.FILES, before=cls.BEFORE)

    @classmethod
    def tearDownClass(cls):
        status = cls.service.stop()
        cls.service.close()
        if status != 0:
            raise AssertionError(f"the service has ended with {status}")

    def setUp(self):
        self.ask = self.service.ask
        self.ask_json = self.service.ask_json
