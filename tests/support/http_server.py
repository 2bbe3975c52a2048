#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""http_server.py FOLDER WORK [--secure]: serves the files of a folder, well or badly.

It listens on a free port of 127.0.0.1, prints the port, and ends when its standard input ends. WORK
is a folder for its output: "requests" gets a line for each request, its path, after "PUT" and before
its Range where there is one; with --secure "certificate.pem" is the certificate to trust.

/NAME is a file, with Range, If-Range and ETag. Words before the name, as in /cut/no-etag/NAME,
make it misbehave:

  cut              closes the connection half-way, unless a Range is requested
  cut-once         closes the connection half-way at the first request of the path
  hold             stops half-way, until standard input says "release"
  hang             does not answer at all, until standard input says "release"
  drip             sends half of it, then one byte a tenth of a second
  late             answers after two seconds, except at the first request of the path
  less             announces 1000 bytes more than it sends
  more             announces half of what it sends
  no-range         sends the whole file regardless of the Range
  wrong-range      sends the file from its start as if that were the Range
  ignore-if-range  sends the Range even if the file has changed
  no-etag          has no ETag
  last-modified    has a Last-Modified
  redirect         redirects to the same path without this word
  status           answers with the name as the status

/redirect-loop redirects to itself, /redirect-to/ADDRESS to the address (with %-escapes), /lie/NAME
answers with the function NAME of lying_answers.py and the file new.image.

PUT bodies are kept in WORK: "uploads" gets a line for each, its path, and "upload_N" is the Nth body
from 1. Of the words, redirect (which keeps the method), status, hang, cut (no answer at all) and
chatter (an answer without an end) make a difference.
"""

import hashlib
import http.server
import itertools
import os
import ssl
import subprocess
import sys
import threading
import time
import urllib.parse

import lying_answers

folder, work = sys.argv[1:3]
secure = "--secure" in sys.argv[3:]
released = threading.Event()
log_lock = threading.Lock()
seen_paths = set()
upload_numbers = itertools.count(1)


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *_):
        pass

    def do_GET(self):
        asked = self.headers.get("Range", "")
        self.note("requests", f"{self.path} {asked}".rstrip())
        with log_lock:
            is_first = self.path not in seen_paths
            seen_paths.add(self.path)
        *words, name = self.path.partition("?")[0].lstrip("/").split("/")
        if "cut-once" in words and is_first or "cut" in words and not asked:
            words.append("ends half-way")
        if "late" in words and not is_first:
            time.sleep(2)
        if words == ["lie"]:
            self.lie(name)
        elif name == "redirect-loop":
            self.answer(302, {"Location": self.path}, b"moved")
        elif words == ["redirect-to"]:
            self.answer(302, {"Location": urllib.parse.unquote(name)}, b"moved")
        elif "redirect" in words:
            words.remove("redirect")
            self.answer(302, {"Location": "/" + "/".join([*words, name])}, b"moved")
        elif "status" in words:
            self.answer(int(name), {}, b"no image")
        else:
            self.send_file(words, name)

    def lie(self, name):
        self.close_connection = True
        with open(os.path.join(folder, "new.image"), "rb") as file:
            to = lying_answers.Connection(self.connection, file.read(), self.path)
        lying_answers.ANSWERS[name](to)

    @staticmethod
    def note(name, line):
        with log_lock, open(os.path.join(work, name), "a", encoding="utf-8") as log:
            log.write(line + "\n")

    def do_PUT(self):
        self.note("requests", f"PUT {self.path}")
        *words, name = self.path.partition("?")[0].lstrip("/").split("/")
        if "hang" in words:
            released.wait()
        body = self.rfile.read(int(self.headers["Content-Length"]))
        if "redirect" in words:
            words.remove("redirect")
            self.answer(307, {"Location": "/" + "/".join([*words, name])}, b"moved")
            return
        with open(os.path.join(work, f"upload_{next(upload_numbers)}"), "wb") as file:
            file.write(body)
        self.note("uploads", self.path)
        if "chatter" in words:
            self.begin(200, {})
            for _ in itertools.count():
                self.wfile.write(b"thank you very much\n")
        elif "cut" in words:
            self.close_connection = True
        else:
            self.answer(int(name) if "status" in words else 201, {}, b"")

    def answer(self, status, headers, body):
        self.begin(status, {**headers, "Content-Length": str(len(body))})
        self.wfile.write(body)

    def begin(self, status, headers):
        self.send_response(status)
        for name, value in headers.items():
            self.send_header(name, value)
        self.end_headers()

    def send_file(self, words, name):
        try:
            with open(os.path.join(folder, urllib.parse.unquote(name)), "rb") as file:
                body = file.read()
        except OSError:
            self.answer(404, {}, b"no such file")
            return
        if "hang" in words:
            released.wait()
        headers = {}
        validators = []
        if "no-etag" not in words:
            headers["ETag"] = '"' + hashlib.sha256(body).hexdigest()[:16] + '"'
            validators.append(headers["ETag"])
        if "last-modified" in words:
            headers["Last-Modified"] = "Thu, 01 Jan 2026 00:00:00 GMT"
            validators.append(headers["Last-Modified"])

        status = 200
        asked = self.headers.get("Range")
        condition = self.headers.get("If-Range")
        holds = condition is None or condition in validators or "ignore-if-range" in words
        if asked is not None and holds and "no-range" not in words:
            first = 0 if "wrong-range" in words else int(asked.removeprefix("bytes=").rstrip("-"))
            if first >= len(body):
                self.answer(416, {"Content-Range": f"bytes */{len(body)}"}, b"")
                return
            status = 206
            headers["Content-Range"] = f"bytes {first}-{len(body) - 1}/{len(body)}"
            body = body[first:]

        announced = len(body)
        if "less" in words:
            announced += 1000
        if "more" in words:
            announced //= 2
        self.begin(status, {**headers, "Content-Length": str(announced)})
        self.send_body(words, body)
        self.close_connection = True

    def send_body(self, words, body):
        half = len(body) // 2
        if not {"hold", "drip", "ends half-way"} & set(words):
            half = len(body)
        self.wfile.write(body[:half])
        if "hold" in words:
            released.wait()
        if "drip" in words:
            for byte in body[half:]:
                self.wfile.write(bytes([byte]))
                time.sleep(0.1)
        elif "ends half-way" not in words:
            self.wfile.write(body[half:])


class Server(http.server.ThreadingHTTPServer):
    def handle_error(self, *_):
        """A client that disconnects is not reported."""


def make_certificate():
    certificate = os.path.join(work, "certificate.pem")
    key = os.path.join(work, "key.pem")
    subprocess.run(
        ["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
         "-nodes", "-days", "2", "-subj", "/CN=test", "-addext", "subjectAltName=IP:127.0.0.1",
         "-keyout", key, "-out", certificate],
        check=True, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return certificate, key


def main():
    server = Server(("127.0.0.1", 0), Handler)
    if secure:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(*make_certificate())
        # The handshake takes place in the connection's own thread.
        server.socket = context.wrap_socket(
            server.socket, server_side=True, do_handshake_on_connect=False)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    print(server.server_address[1], flush=True)
    for line in sys.stdin:
        if line.strip() == "release":
            released.set()


main()
