# SPDX-License-Identifier: MIT
"""What single requests are answered with, proper ones and others."""
import json
import time
import zlib

import caller
import case

NAME = "SET_HG_BASE_INFO"


class RequestsTest(case.BrokerCase):
    def start(self, *options, **more):
        self.broker = self.mosquitto()
        self.running = self.trusted(self.broker, *options, **more)
        return self.caller(self.broker)

    def send(self, client, topic, payload, **more):
        """The answer to a message at the topic."""
        client.publish(topic, payload, response=client.reply, correlation=b"raw", **more)
        return client.await_message(lambda message: message.correlation == b"raw")

    def test_answers_with_the_correlation(self):
        client = self.start()
        answer = client.ask("GET_SN_INFO", correlation=bytes(range(256)))
        self.assertEqual(answer.body, {"result": 0, "reply": {
            "Status": "0", "MAC": "02:00:5E:10:00:02", "tslinkstatus": "0", "DeviceType": "COUNTING"}})
        self.assertFalse(answer.retained)

    def test_empty_payload_is_an_empty_object(self):
        client = self.start()
        self.assertEqual(self.send(client, "gateway/gw/command/GET_SN_INFO", b"").body["result"], 0)

    def test_payloads_that_are_no_object(self):
        client = self.start()
        for payload in (b"{", b"[]", b"7", b"null", b'"text"', b"\xff\xfe", b"{} {}", b"\0", b"x" * 70000, b"[" * 5000):
            with self.subTest(payload[:10]):
                answer = self.send(client, "gateway/gw/command/GET_SN_INFO", payload)
                self.assertEqual(answer.code, "bad-request", answer.payload)
        self.assertEqual(client.ask("GET_SN_INFO").body["result"], 0)

    def test_ten_megabytes(self):
        client = self.start()
        payload = json.dumps({"Name": "x" * 10_000_000}).encode()
        self.assertEqual(self.send(client, f"gateway/gw/command/{NAME}", payload).code, "too-large")
        self.assertEqual(client.ask("GET_SN_INFO").body["result"], 0)
        self.assertEqual(sum(self.running.executed().values()), 0)

    def test_unknown_commands_and_topics(self):
        client = self.start()
        self.assertEqual(self.send(client, "gateway/gw/command/NO_SUCH", b"").body, {"result": -3, "reply": {}})
        for topic in ("gateway/gw/command/", "gateway/gw/command/A/B", "gateway/gw/command", "gateway/gw", "gateway/gw/",
                      "gateway/gw/request/", "gateway/gw/event/notice", "gateway/gw/command/" + "x" * 300):
            client.publish(topic, b"{}", response=client.reply)
        self.assertEqual(client.ask("GET_SN_INFO").body["result"], 0)

    def test_no_response_topic(self):
        client = self.start()
        client.publish(f"gateway/gw/command/{NAME}", b'{"Name":"silent"}')
        self.assertEqual(client.ask(NAME, {"Name": "loud"}).body["result"], 0)
        self.assertEqual(self.running.executed(), {"silent": 1, "loud": 1})
        self.assertEqual(client.messages, [])

    def test_response_topics_elsewhere(self):
        client = self.start()
        watcher = self.caller(self.broker, name="watcher")
        watcher.subscribe("#", "$SYS/answers/#")
        elsewhere = ("gateway/other/command/SET_HG_BASE_INFO", f"gateway/gw/command/{NAME}", "gateway/gw/state",
                     "gateway/gw/reply", "gateway/gw/reply/", "gateway/gw/event/notice", "$SYS/answers/1", "answers",
                     "gateway/gw/reply/../command/X", "gateway/gw2/reply/x", "Gateway/gw/reply/x")
        allowed = ("gateway/gw/reply/../command/X",)
        for number, topic in enumerate(elsewhere):
            client.publish(f"gateway/gw/command/{NAME}", json.dumps({"Name": f"n{number}"}).encode(), response=topic,
                           correlation=b"astray")
        self.assertEqual(client.ask("GET_SN_INFO").body["result"], 0)
        watcher.await_message(lambda message: message.topic == client.reply)
        astray = [message.topic for message in watcher.messages if message.correlation == b"astray"
                  and not message.payload.startswith(b'{"Name"')]  # which are the requests
        self.assertEqual(set(astray) - set(allowed), set())
        self.assertEqual(self.running.executed(), {f"n{elsewhere.index(*allowed)}": 1})

    def test_configured_response_topics(self):
        client = self.start("--response-topic", "platform/answers/")
        client.subscribe("platform/answers/#")
        client.publish("gateway/gw/command/GET_SN_INFO", b"", response="platform/answers/7", correlation=b"7")
        self.assertEqual(client.await_message(lambda message: message.topic == "platform/answers/7").body["result"], 0)

    def test_duplicates(self):
        client = self.start()
        for _ in range(5):
            request = client.request(NAME, {"Name": "often"}, correlation=b"same")
        while not request.answers:
            client.turn()
        # Those that came while the first was running were answered with it; from now on each is answered.
        client.ask("GET_SN_INFO")
        before = len(request.answers)
        client.send(request)
        while len(request.answers) == before:
            client.turn()
        self.assertEqual({answer.payload for answer in request.answers}, {b'{"result":0,"reply":{"Status":"0"}}'})
        self.assertEqual(self.running.executed(), {"often": 1})
        # The same correlation of another client is another request.
        other = self.caller(self.broker, name="other")
        other.ask(NAME, {"Name": "often"}, correlation=b"same")
        self.assertEqual(self.running.executed(), {"often": 2})

    def test_a_key_of_another_request(self):
        client = self.start()
        client.ask(NAME, {"Name": "first"}, correlation=b"same")
        again = client.request(NAME, {"Name": "second"}, correlation=b"same")
        again.params = {"Name": "second"}
        client.send(again)
        while len(again.answers) < 3:
            client.turn()
        self.assertEqual(self.running.executed(), {"first": 1})
        self.assertEqual(again.answers[-1].code, "bad-request", again.answers[-1].payload)

    def test_repeated_while_it_runs(self):
        held = self.pipe()
        client = self.start(environment={"HELD": str(held)})
        request = client.request(NAME, {"Name": "wait"})
        while not self.running.executed():
            client.turn()
        for _ in range(3):
            client.send(request)
        # The state comes when the gateway has read them all.
        client.subscribe("gateway/gw/state")
        client.publish("gateway/gw/state/get")
        client.await_message(lambda message: message.topic.endswith("/state") and not message.retained)
        self.assertEqual(request.answers, [])
        self.release(held)
        while not request.answers:
            client.turn()
        self.assertEqual(request.answers[0].body["result"], 0)
        client.ask("GET_SN_INFO")
        self.assertEqual(len(request.answers), 1)
        self.assertEqual(self.running.executed(), {"wait": 1})

    def test_expired_requests(self):
        held = self.pipe()
        client = self.start(environment={"HELD": str(held)})
        client.request(NAME, {"Name": "wait"})
        while not self.running.executed():
            client.turn()
        expired = client.request(NAME, {"Name": "expired"}, expiry=1)
        began = time.monotonic()
        while time.monotonic() < began + 1.5:
            client.turn()
        self.release(held)
        client.ask(NAME, {"Name": "later"}, expiry=600)
        self.assertEqual([answer.code for answer in expired.answers], ["timeout"])
        self.assertEqual(self.running.executed(), {"wait": 1, "later": 1})

    def test_worker_dies_during_a_command(self):
        client = self.start()
        request = client.request(NAME, {"Name": "die"})
        while not request.answers:
            client.turn()
        self.assertEqual(request.answers[0].code, "outcome-unknown", request.answers[0].payload)
        client.send(request)
        while len(request.answers) < 2:
            client.turn()
        self.assertEqual(request.answers[1].payload, request.answers[0].payload)
        self.assertEqual(self.running.executed(), {"die": 1})

    def test_epoch_of_another_start(self):
        client = self.start()
        foreign = [("epoch", "0123")]
        self.assertEqual(client.ask(NAME, {"Name": "old"}, user=foreign).code, "outcome-unknown")
        self.assertEqual(client.ask("GET_SN_INFO", user=foreign).body["result"], 0)
        self.assertEqual(sum(self.running.executed().values()), 0)

    def test_compressed_answers(self):
        client = self.start(device=False, whole_options=("--scenario", "three_storey_house"),
                            environment={"SIMULATED_GATEWAY_TIME": "1767225600"})

        def topology(correlation, user=()):
            client.publish("gateway/gw/report/topology", b"", response=client.reply, correlation=correlation,
                           user=list(user))
            return client.await_message(lambda message: message.correlation == correlation)

        # It has the seconds for which stations have been connected: they have to be the same in both answers.
        plain, small, after = None, None, None
        while plain is None or plain.body != after.body:
            plain = topology(b"plain")
            small = topology(b"gzip", [("accept-encoding", "gzip")])
            after = topology(b"after")
        self.assertEqual(small.user["content-encoding"], "gzip")
        self.assertNotIn("content-encoding", plain.user)
        self.assertEqual(json.loads(zlib.decompress(small.payload, 31)), plain.body)
        self.assertLess(len(small.payload), len(plain.payload))

    def test_state(self):
        client = self.start()
        client.ask("GET_SN_INFO")  # the state has been published before
        client.subscribe("gateway/gw/state")
        state = client.await_message(lambda message: message.topic == "gateway/gw/state")
        self.assertTrue(state.retained)
        self.assertIs(state.body["online"], True)
        self.assertIn("epoch", state.body)
        client.publish("gateway/gw/state/get")
        again = client.await_message(lambda message: message.topic == "gateway/gw/state")
        self.assertEqual(again.body, state.body)
        # A clean end says so as well.
        self.assertEqual(self.running.end(), 0)
        offline = client.await_message(lambda message: message.topic == "gateway/gw/state")
        self.assertIs(offline.body["online"], False)

    def test_clients_of_version_3_1_1(self):
        self.start()
        client = self.caller(self.broker, name="old", protocol=caller.mqtt.MQTTv311)
        for line, result in (
                ('{"id":"a","command":"GET_SN_INFO"}', 0),
                (f'{{"id":7,"command":"{NAME}","params":{{"Name":"line"}}}}', 0),
                (f'{{"id":7,"command":"{NAME}","params":{{"Name":"line"}}}}', 0)):
            client.publish("gateway/gw/request/old", line.encode())
            answer = client.await_message(lambda message: message.topic == client.reply).body
            self.assertEqual((answer["id"], answer["result"]), (json.loads(line)["id"], result))
        self.assertEqual(self.running.executed(), {"line": 1})
        client.publish("gateway/gw/request/old", b"no JSON")
        self.assertEqual(client.await_message(lambda message: message.topic == client.reply).code, "bad-request")


if __name__ == "__main__":
    case.main()
