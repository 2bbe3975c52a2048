# SPDX-License-Identifier: MIT
"""Brokers that carry less than others, or refuse the gateway."""
import json
import re
import zlib

import case
import trial


class LimitsTest(case.BrokerCase):
    def report(self, client, **more):
        client.publish("gateway/gw/report/topology", b"", response=client.reply, correlation=b"report", **more)
        return client.await_message(lambda message: message.correlation == b"report")

    def check_too_large(self, answer, limit):
        self.assertEqual(answer.code, "too-large", answer.payload)
        sizes = [int(size) for size in re.findall(r"\d{4,}", answer.body["error"])]
        self.assertEqual(len(sizes), 2, answer.payload)
        self.assertGreater(sizes[0], limit)
        self.assertEqual(sizes[1], limit)

    def crowded(self, broker):
        return self.trusted(broker, device=False, whole_options=("--scenario", "crowded_mesh"))

    def test_maximum_packet_of_16_kib(self):
        """Even compressed the report has 23 KB."""
        broker = self.mosquitto("max_packet_size 16384")
        running = self.crowded(broker)
        client = self.caller(broker)
        self.check_too_large(self.report(client, user=[("accept-encoding", "gzip")]), 16384)
        self.assertEqual(client.ask("GET_SN_INFO").body["result"], 0)
        self.assertEqual(running.end(), 0)

    def test_maximum_packet_of_128_kib(self):
        broker = self.mosquitto("max_packet_size 131072")
        self.crowded(broker)
        client = self.caller(broker)
        self.check_too_large(self.report(client), 131072)
        small = self.report(client, user=[("accept-encoding", "gzip")])
        self.assertEqual(small.user["content-encoding"], "gzip")
        self.assertLess(len(small.payload), 32768)
        whole = zlib.decompress(small.payload, 31)
        self.assertGreater(len(whole), 131072)
        self.assertEqual(json.loads(whole)["result"], 0)

    def test_configured_maximum(self):
        broker = self.mosquitto()
        self.trusted(broker, "--max-packet", "2000", device=False, whole_options=("--scenario", "three_storey_house"))
        self.check_too_large(self.report(self.caller(broker)), 2000)

    def test_answers_just_below_and_above_the_maximum_packet(self):
        """Regardless of the size of its topic and properties, an answer arrives or is refused; none is lost."""
        broker = self.mosquitto("max_packet_size 1024")
        self.trusted(broker, device=False)
        codes = set()
        for length in (1, 10, 100, 200):
            client = self.caller(broker, name="c" * length)
            for correlation in range(1, 400, 13):
                answer = client.ask("GET_HG_BASE_INFO", correlation=b"x" * correlation)
                codes.add(answer.code)
        self.assertEqual(codes, {None, "too-large"})

    def test_receive_maximum_of_10(self):
        broker = self.mosquitto("max_inflight_messages 10")
        running = self.trusted(broker)
        counted = trial.run(self.caller(broker), running.executed, 300, in_flight=100)
        self.assertTrue(counted.kept_promise(), counted)

    def test_room_for_a_single_answer(self):
        """Requests that wait until the broker has acknowledged an answer go on without another request."""
        broker = self.mosquitto()
        self.trusted(broker, "--max-pending-output", "1")
        client = self.caller(broker)
        for number in range(10):
            client.publish("gateway/gw/command/GET_SN_INFO", response=client.reply, correlation=str(number).encode())
        for number in range(10):
            wanted = str(number).encode()
            client.await_message(lambda message, wanted=wanted: message.correlation == wanted)

    def test_no_retained_messages(self):
        broker = self.mosquitto("retain_available false")
        self.trusted(broker)
        client = self.caller(broker)
        client.subscribe("gateway/gw/state")
        client.publish("gateway/gw/state/get")
        state = client.await_message(lambda message: message.topic == "gateway/gw/state")
        self.assertIs(state.body["online"], True)
        self.assertEqual(client.ask("GET_SN_INFO").body["result"], 0)

    def test_questions_for_the_state_have_the_rate_of_the_role(self):
        broker = self.mosquitto()
        policy = self.folder / "policy.toml"
        policy.write_text('[roles.a]\nmembers = ["topic-root:gateway"]\nallow = ["*"]\nrate = 0.001\nburst = 3\n',
                          encoding="ascii")
        running = self.service("--broker", broker.url, "--id", "gw", "--policy", policy, device=False)
        client = self.caller(broker)
        client.subscribe("gateway/gw/state")
        client.await_message(lambda message: message.retained)
        for _ in range(10):
            client.publish("gateway/gw/state/get")
        self.assertEqual(client.ask("GET_SN_INFO").code, "rate-limited")
        self.assertEqual([message.topic for message in client.messages], ["gateway/gw/state"] * 3)
        running.await_line("the state is not published again")

    def test_two_gateways_of_one_id_below_different_roots(self):
        """They have different client identifiers, so neither takes the session of the other."""
        broker = self.mosquitto()
        roots = ("gateway", "lab", "lab/upper")
        for root in roots:
            self.trusted(broker, "--root", root, name=root.replace("/", "-"), device=False)
        for root in roots * 2:
            self.assertEqual(self.caller(broker, root=root, name=f"caller-{root}").ask("GET_SN_INFO").body["result"], 0)
        connected = re.findall(r"as (\S+) \(p5", broker.log())
        self.assertEqual([name for name in connected if not name.startswith("caller")],
                         ["gw", "gw@lab", "gw@lab@upper"])

    def test_quality_of_service_0_only(self):
        broker = self.mosquitto("max_qos 0")
        self.trusted(broker)
        client = self.caller(broker, qos=0)
        self.assertEqual(client.ask("GET_SN_INFO").body["result"], 0)

    def test_short_keep_alive(self):
        broker = self.mosquitto("max_keepalive 10")
        self.trusted(broker)
        self.assertEqual(self.caller(broker).ask("GET_SN_INFO").body["result"], 0)

    def test_broker_refuses(self):
        passwords = self.folder / "passwords"
        passwords.touch(mode=0o600)
        broker = self.mosquitto(f"password_file {passwords}", anonymous=False)
        running = self.trusted(broker, connected=False)
        running.await_line("uthori")
        self.assertEqual(running.ask('{"id":1,"command":"GET_SN_INFO"}')["result"], 0)
        self.assertEqual(running.end(), 0)

    def test_another_client_takes_the_session(self):
        """Somebody else with the same client identifier: the broker disconnects the gateway, which comes back."""
        broker = self.mosquitto()
        running = self.trusted(broker)
        identifier = re.search(r"as (\S+) \(p5", broker.log()).group(1)
        other = self.caller(broker, name=identifier)
        other.client.disconnect()
        running.await_broker()
        self.assertEqual(self.caller(broker).ask("GET_SN_INFO").body["result"], 0)


if __name__ == "__main__":
    case.main()
