# SPDX-License-Identifier: MIT
"""A broker or a name server that does not answer delays nothing else."""
import os
import signal
import socket
import struct

import case

QUERY = '{"id":1,"command":"GET_SN_INFO"}'


class ForgetfulBroker:
    """A connection of a broker that accepts everything and acknowledges messages only on request."""

    def __init__(self, listener):
        self.connection, _ = listener.accept()
        self.input = self.connection.makefile("rb")

    def packet(self):
        """The next packet: its first byte, and what follows its length."""
        kind = self.input.read(1)[0]
        length = shift = 0
        while True:
            byte = self.input.read(1)[0]
            length |= (byte & 0x7f) << shift
            shift += 7
            if byte < 0x80:
                return kind, self.input.read(length)

    def state(self, acknowledges=False):
        """The next state that is published; everything before it is accepted."""
        while True:
            kind, body = self.packet()
            if kind >> 4 == 1:  # CONNECT
                self.connection.sendall(bytes([0x20, 3, 0, 0, 0]))
            elif kind >> 4 == 8:  # SUBSCRIBE
                granted = 0
                at = 3 + body[2]
                while at < len(body):
                    at += 3 + struct.unpack_from(">H", body, at)[0]
                    granted += 1
                self.connection.sendall(bytes([0x90, 3 + granted]) + body[:2] + bytes([0] + [1] * granted))
            elif kind >> 4 == 3:  # PUBLISH
                at = 2 + struct.unpack_from(">H", body)[0]
                topic = body[2:at]
                if kind & 6:
                    if acknowledges:
                        self.connection.sendall(bytes([0x40, 2]) + body[at:at + 2])
                    at += 2
                if topic.endswith(b"/gw/state"):
                    return body[at + 1 + body[at]:]

    def close(self):
        self.input.close()
        self.connection.close()


class SilenceTest(case.BrokerCase):
    def silent_listener(self):
        """A port that accepts connections and never answers."""
        listener = socket.create_server(("127.0.0.1", 0))
        self.addCleanup(listener.close)
        return listener

    def test_silent_broker(self):
        listener = self.silent_listener()
        broker = self.mosquitto()
        running = self.service("--broker", f"mqtt://127.0.0.1:{listener.getsockname()[1]}", "--broker", broker.url,
                               "--id", "gw", "--trust", connected=False)
        connection, _ = listener.accept()
        self.addCleanup(connection.close)
        self.assertTrue(connection.recv(1))  # its CONNECT, which is not answered
        self.assertEqual(running.ask(QUERY)["result"], 0)
        # After a while it tries the other one.
        running.await_broker()
        self.assertEqual(self.caller(broker).ask("GET_SN_INFO").body["result"], 0)
        self.assertEqual(running.end(), 0)

    def test_broker_that_acknowledges_nothing(self):
        """The state is published once per connection, however often it was not acknowledged before."""
        listener = self.silent_listener()
        running = self.service("--broker", f"mqtt://127.0.0.1:{listener.getsockname()[1]}", "--id", "gw", "--trust",
                               connected=False)
        for _ in range(2):
            broker = ForgetfulBroker(listener)
            self.assertIn(b'"online":true', broker.state())
            broker.close()
        broker = ForgetfulBroker(listener)
        self.addCleanup(broker.close)
        running.await_broker()
        self.assertIn(b'"online":true', broker.state(acknowledges=True))
        running.process.send_signal(signal.SIGTERM)
        self.assertIn(b'"online":false', broker.state(acknowledges=True))
        self.assertEqual(running.process.wait(), 0)

    def test_broker_that_says_why_it_disconnects(self):
        """The first time another client takes the session nothing is said of a series."""
        listener = self.silent_listener()
        running = self.service("--broker", f"mqtt://127.0.0.1:{listener.getsockname()[1]}", "--id", "gw", "--trust",
                               "--root", "lab", connected=False)
        broker = ForgetfulBroker(listener)
        self.addCleanup(broker.close)
        broker.state()
        broker.connection.sendall(bytes([0xe0, 2, 0x8e, 0]))  # DISCONNECT: session taken over
        line = running.await_line("is lost")
        self.assertTrue(line.endswith(" is lost: another client has connected as gw@lab"), line)

    def test_broker_whose_host_is_silent(self):
        """A listener whose queue is full does not even answer the first packet."""
        listener = socket.socket()
        self.addCleanup(listener.close)
        listener.bind(("127.0.0.1", 0))
        listener.listen(0)
        fillers = []
        for _ in range(4):
            filler = socket.socket()
            self.addCleanup(filler.close)
            filler.setblocking(False)
            filler.connect_ex(listener.getsockname())
            fillers.append(filler)
        running = self.service("--broker", f"mqtt://127.0.0.1:{listener.getsockname()[1]}", "--id", "gw", "--trust",
                               connected=False)
        for _ in range(20):
            self.assertEqual(running.ask(QUERY)["result"], 0)
        self.assertEqual(running.end(), 0)
        self.assertEqual(running.lines, [f"listening on unix:{running.socket}"])

    def test_silent_name_server(self):
        held = self.pipe()
        lookups = self.folder / "lookups"
        lookups.touch()
        broker = self.mosquitto()
        policy = self.folder / "policy.toml"
        policy.write_text('[roles.all]\nmembers = ["topic-root:gateway"]\nallow = ["*"]\n', encoding="ascii")
        options = os.environ.get("ASAN_OPTIONS", "intercept_tls_get_addr=0")
        running = self.service(
            "--broker", broker.url, "--broker", "mqtts://silent.test", "--id", "gw", "--policy", policy,
            environment={
                "LD_PRELOAD": str(case.LIBRARIES / "silent_names.so"), "HELD": str(held), "LOOKUPS": str(lookups),
                "ASAN_OPTIONS": options + ":verify_asan_link_order=0"})
        broker.stop()
        while not lookups.read_text(encoding="ascii"):
            self.assertEqual(running.ask(QUERY)["result"], 0)
        # The lookup lasts until the service ends.
        self.assertEqual(running.ask(QUERY)["result"], 0)
        self.assertEqual(running.end(), 0)

    def test_broker_stops_answering(self):
        """The broker stops in the middle of a request; the socket is still served, and so is the broker when it resumes."""
        broker = self.mosquitto()
        running = self.trusted(broker)
        client = self.caller(broker)
        self.assertEqual(client.ask("GET_SN_INFO").body["result"], 0)
        broker.suspend()
        request = client.request("GET_SN_INFO")
        for _ in range(20):
            self.assertEqual(running.ask(QUERY)["result"], 0)
        broker.resume()
        while not request.answers:
            client.turn()


if __name__ == "__main__":
    case.main()
