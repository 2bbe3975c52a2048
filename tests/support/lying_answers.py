# SPDX-License-Identifier: MIT
"""The invalid answers of a hostile server: ANSWERS has a function for each, by name. It gets a
Connection and writes its answer; when it returns, the connection is closed. An endless answer
continues until the client disconnects, which ends it with an OSError.
"""

import itertools
import os
import socket
import struct
import time


class Connection:
    """The connection of a client that has requested an image."""

    def __init__(self, connection, image, path):
        self.socket = connection
        self.image = image
        self.path = path

    def send(self, *parts):
        for part in parts:
            self.socket.sendall(part if isinstance(part, bytes) else part.encode())

    def head(self, status, *headers):
        self.send(f"HTTP/1.1 {status} Answer\r\n", *(f"{line}\r\n" for line in headers), "\r\n")

    def flood(self, block):
        for _ in itertools.count():
            self.send(block * (65536 // len(block)))

    def drip(self, block):
        """Slow, but too fast to count as stalled."""
        for _ in itertools.count():
            self.send(block)
            time.sleep(0.05)

    def stay_silent(self):
        self.socket.recv(1)

    def reset(self):
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        os.close(self.socket.detach())  # before anything else shuts it down cleanly


ANSWERS = {}
CHUNKED = "Transfer-Encoding: chunked"


def answer(function):
    ANSWERS[function.__name__.replace("_", "-")] = function
    return function


# ---- The connection ends or stalls --------------------------------------------------------------


@answer
def nothing(_):
    pass


@answer
def reset(to):
    to.reset()


@answer
def reset_half_way(to):
    to.head(200, f"Content-Length: {len(to.image)}")
    to.send(to.image[: len(to.image) // 2])
    to.reset()


@answer
def silence(to):
    to.stay_silent()


@answer
def silence_half_way(to):
    to.head(200, f"Content-Length: {len(to.image)}")
    to.send(to.image[: len(to.image) // 2])
    to.stay_silent()


@answer
def cut_headers(to):
    to.send("HTTP/1.1 200 Answer\r\nContent-Len")


@answer
def truncated(to):
    to.head(200, f"Content-Length: {len(to.image)}")
    to.send(to.image[:-1])


# ---- Not HTTP -----------------------------------------------------------------------------------


@answer
def no_headers(to):
    to.send(to.image)


@answer
def tls_alert(to):
    to.send(b"\x15\x03\x03\x00\x02\x02\x28")


@answer
def version_from_the_future(to):
    to.send("HTTP/7.3 200 Answer\r\n\r\n", to.image)


@answer
def protocol_switch(to):
    to.head(101, "Connection: Upgrade", "Upgrade: firmware")
    to.send(to.image)
    to.stay_silent()


# ---- Wrong lengths ------------------------------------------------------------------------------


@answer
def announces_less(to):
    to.head(200, f"Content-Length: {len(to.image) // 2}")
    to.send(to.image)


@answer
def announces_more(to):
    to.head(200, f"Content-Length: {len(to.image) + 1000}")
    to.send(to.image)


@answer
def negative_length(to):
    to.head(200, "Content-Length: -5")
    to.send(to.image)


@answer
def a_terabyte(to):
    to.head(200, f"Content-Length: {1 << 40}")
    to.stay_silent()


@answer
def length_beyond_64_bits(to):
    to.head(200, "Content-Length: 99999999999999999999999")
    to.stay_silent()


@answer
def image_without_end(to):
    to.head(200)
    to.send(to.image)
    to.flood(b"x")


@answer
def nonsense_without_end(to):
    to.head(200)
    to.flood(b"nonsense")


# ---- Chunks -------------------------------------------------------------------------------------


@answer
def chunk_without_size(to):
    to.head(200, CHUNKED)
    to.send("zz\r\n", to.image)


@answer
def endless_size_of_a_chunk(to):
    to.head(200, CHUNKED)
    to.flood(b"f")


@answer
def endless_extension_of_a_chunk(to):
    to.head(200, CHUNKED)
    to.send("4;")
    to.flood(b"x")


@answer
def cut_chunk(to):
    to.head(200, CHUNKED)
    to.send(f"{len(to.image):x}\r\n", to.image[:1000])


@answer
def endless_trailers(to):
    to.head(200, CHUNKED)
    to.send(f"{len(to.image):x}\r\n", to.image, "\r\n0\r\n")
    to.flood(b"a: b\r\n")


# ---- Headers ------------------------------------------------------------------------------------


@answer
def endless_headers(to):
    to.send("HTTP/1.1 200 Answer\r\n")
    to.flood(b"a: b\r\n")


@answer
def endless_header(to):
    to.send("HTTP/1.1 200 Answer\r\nA: ")
    to.flood(b"a")


@answer
def endless_continues(to):
    to.flood(b"HTTP/1.1 100 Continue\r\n\r\n")


@answer
def compressed(to):
    to.head(200, "Content-Encoding: gzip")
    to.send(b"\x1f\x8b\x08" + bytes(100))


# ---- Redirects ----------------------------------------------------------------------------------


@answer
def redirect_loop(to):
    to.head(302, f"Location: {to.path}", "Content-Length: 0")


@answer
def redirect_to_nowhere(to):
    to.head(302, "Content-Length: 0")


@answer
def redirect_to_a_file(to):
    to.head(302, "Location: file:///etc/hostname", "Content-Length: 0")


@answer
def redirect_to_another_protocol(to):
    to.head(302, "Location: gopher://127.0.0.1/1", "Content-Length: 0")


@answer
def redirect_with_endless_chunks(to):
    to.head(302, "Location: /new.image", CHUNKED)
    to.flood(b"1000\r\n" + b"x" * 0x1000 + b"\r\n")


@answer
def redirect_that_drips(to):
    to.head(302, "Location: /new.image", CHUNKED)
    to.drip(b"400\r\n" + b"x" * 0x400 + b"\r\n")


# ---- Ranges and speed ---------------------------------------------------------------------------


@answer
def range_that_nobody_asked_for(to):
    first = len(to.image) // 2
    to.head(206, f"Content-Range: bytes {first}-{len(to.image) - 1}/{len(to.image)}")
    to.send(to.image[first:])


@answer
def range_not_satisfiable(to):
    to.head(416, f"Content-Range: bytes */{len(to.image)}", "Content-Length: 0")


@answer
def drip(to):
    to.head(200, "Content-Length: 60000000")
    to.send(to.image[:404])
    to.drip(b"x" * 0x400)


@answer
def drip_of_headers(to):
    to.send("HTTP/1.1 200 Answer\r\n")
    to.drip(b"A: " + b"a" * 100 + b"\r\n")
