# SPDX-License-Identifier: MIT
"""A service that does what a test tells it: real replies of `hgagent serve`, and more."""
import json
import os
import socket
import subprocess
import threading


class StandInService:
    """Listens at a Unix socket; each client has a gateway of its own."""

    def __init__(self, hgagent, path):
        self.path = path
        self.hgagent = hgagent
        self.lines = []  # that clients sent, parsed where they are JSON
        self.epoch = 1
        self.answers = {}  # what a command is answered with in place of the gateway's reply: bytes, without id
        self.greeting = None  # bytes that every client gets first
        self.silent = set()  # commands that get no answer
        self.connections = []
        self.changed = threading.Condition()
        self.listener = None
        self.start()

    def start(self):
        if os.path.exists(self.path):
            os.unlink(self.path)
        self.listener = socket.socket(socket.AF_UNIX)
        self.listener.bind(self.path)
        self.listener.listen()
        threading.Thread(target=self.accept, args=(self.listener,), daemon=True).start()

    def stop(self):
        """Goes away, as a service that is ended."""
        self.listener.shutdown(socket.SHUT_RDWR)
        self.listener.close()
        os.unlink(self.path)
        with self.changed:
            connections, self.connections = self.connections, []
        for connection in connections:
            connection.shutdown(socket.SHUT_RDWR)

    def accept(self, listener):
        while True:
            try:
                connection, _ = listener.accept()
            except OSError:
                return
            with self.changed:
                self.connections.append(connection)
                self.changed.notify_all()
            threading.Thread(target=self.serve, args=(connection,), daemon=True).start()

    def serve(self, connection):
        with subprocess.Popen([self.hgagent, "serve"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL) as gateway:
            try:
                if self.greeting:
                    connection.sendall(self.greeting)
                for line in connection.makefile("rb"):
                    answer = self.answer_to(json.loads(line), line, gateway)
                    if answer is not None:
                        connection.sendall(answer + b"\n")
            except OSError:
                pass  # the client has gone
            finally:
                gateway.stdin.close()
                with self.changed:
                    if connection in self.connections:
                        self.connections.remove(connection)
                connection.close()

    def answer_to(self, request, line, gateway):
        with self.changed:
            self.lines.append(request)
            self.changed.notify_all()
        number = json.dumps(request["id"]).encode()
        name = request.get("command") or request.get("report")
        if "hello" in request:
            reply = {"protocol": "1.0", "service": "0.2.0", "epoch": f"{self.epoch:016x}"}
            return b'{"id":%s,"result":0,"reply":%s}' % (number, json.dumps(reply).encode())
        if "subscribe" in request or "unsubscribe" in request:
            return b'{"id":%s,"result":0}' % number
        if name in self.silent:
            return None
        if name in self.answers:
            return b'{"id":%s,%s}' % (number, self.answers[name])
        gateway.stdin.write(line)
        gateway.stdin.flush()
        return gateway.stdout.readline().rstrip(b"\n")

    def send(self, data):
        """To every client."""
        with self.changed:
            connections = list(self.connections)
        for connection in connections:
            try:
                connection.sendall(data)
            except OSError:
                pass  # the client has gone

    def wait_for(self, wanted):
        """Until a client has sent such a line; result: the line."""
        found = []

        def is_there():
            found[:] = [line for line in self.lines if wanted(line)]
            return bool(found)

        with self.changed:
            self.changed.wait_for(is_there)
        return found[0]
