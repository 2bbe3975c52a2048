# SPDX-License-Identifier: MIT
"""Gateways on a broker that answer a few commands, each as its name says: `good-1` well, `forget-1` and the others
with one fault. All are one client of the broker, in a thread of paho."""
import json
import threading
import uuid

import paho.mqtt.client as mqtt
from paho.mqtt.packettypes import PacketTypes
from paho.mqtt.properties import Properties

NEW_FIRMWARE = "V9.9.9"
OLD_FIRMWARE = "V1.0.0"
# Number 647 has a faulty library in a fleet with --churn and the seed 1.
SILENT = ("silent-1", "spared-647", "blamed-647")


class Gateway:
    def __init__(self, name):
        self.name = name
        self.fault = name.rsplit("-", 1)[0]
        self.epoch = uuid.uuid4().hex
        self.home = "Home"
        self.firmware = OLD_FIRMWARE
        self.changes = 0
        self.executed = 0  # changes, also those of a repetition
        self.seen = set()
        self.answers = {}


class FakeGateways:
    """examples: the example reply of each command."""

    def __init__(self, port, names, examples, root="gateway"):
        self.root = root
        self.examples = examples
        self.gateways = {name: Gateway(name) for name in names}
        self.client = mqtt.Client(client_id="fake", protocol=mqtt.MQTTv5)
        self.client.on_connect = self.on_connect
        self.client.on_message = self.on_message
        self.client.max_queued_messages_set(0)
        self.client.max_inflight_messages_set(1000)
        self.client.reconnect_delay_set(0.1, 0.5)
        self.up = threading.Event()
        self.client.connect("127.0.0.1", port)
        self.client.loop_start()

    def close(self):
        self.client.disconnect()
        self.client.loop_stop()

    def on_connect(self, client, *_):
        client.subscribe([(f"{self.root}/+/{topic}", mqtt.SubscribeOptions(qos=1)) for topic in ("command/+", "state/get")])
        for gateway in self.gateways.values():
            self.announce(gateway)
        self.up.set()

    def announce(self, gateway):
        self.publish(gateway, "state", {"online": True, "epoch": gateway.epoch}, retain=True)

    def publish(self, gateway, topic, body, properties=None, retain=False):
        payload = body if isinstance(body, str) else json.dumps(body)
        self.client.publish(f"{self.root}/{gateway.name}/{topic}", payload, qos=1, retain=retain, properties=properties)

    def on_message(self, _client, _data, message):
        _root, name, kind, command = message.topic.split("/")
        gateway = self.gateways.get(name)
        if gateway is None:
            return
        if kind == "state":
            self.announce(gateway)
            return
        correlation = message.properties.CorrelationData
        key = (message.properties.ResponseTopic, correlation)
        if gateway.fault == "lazy" and key not in gateway.seen:
            gateway.seen.add(key)  # as if it were lost
            return
        body = gateway.answers.get(key)
        if body is None:
            body = self.run(gateway, command, json.loads(message.payload))
            if command.startswith("SET_") and gateway.fault != "twice":
                gateway.answers[key] = body
        if body is not None:
            properties = Properties(PacketTypes.PUBLISH)
            properties.CorrelationData = correlation
            self.client.publish(message.properties.ResponseTopic, body if isinstance(body, str) else json.dumps(body),
                                qos=1, properties=properties)

    def run(self, gateway, command, params):
        """The answer, or None."""
        if gateway.name in SILENT:
            return None
        reply = json.loads(json.dumps(self.examples[command]))
        if command == "SET_HG_BASE_INFO":
            return self.change(gateway, params, reply)
        if command == "GET_HG_BASE_INFO":
            reply["Name"] = gateway.home
            if gateway.fault == "order":
                reply["Status"] = reply.pop("Status")
            if gateway.fault == "missing":
                del reply["Mac"]
        if command == "GET_LED_STATUS" and gateway.fault == "no_json":
            return "{"
        if command == "GET_LED_STATUS" and gateway.fault == "no_reply":
            return {"result": 0}
        if command == "GET_LED_STATUS" and gateway.fault == "reason":
            return {"result": 0, "reply": {"Status": "1", "FailReason": "no such text"}}
        if command == "HG_GET_UPDATE_STATUS":
            reply["FWVersion"] = gateway.firmware
        if command == "PLATEFORM_UPDATE_IMMEDIATE":
            threading.Timer(0.3, self.update, [gateway]).start()
        return {"result": 0, "reply": reply}

    def change(self, gateway, params, reply):
        gateway.changes += 1
        gateway.executed += 1
        nth = gateway.changes % 5 == 0
        if gateway.fault == "denied":
            return {"error": "the policy refuses it", "code": "denied"}
        if not (nth and gateway.fault == "forget"):
            gateway.home = params["Name"] if not (nth and gateway.fault == "unknown" and gateway.changes % 2 == 0) else gateway.home
        if nth and gateway.fault == "unknown":
            return {"error": "the worker has crashed", "code": "outcome-unknown"}
        return {"result": 0, "reply": reply}

    def update(self, gateway):
        if gateway.fault == "broken" and int(gateway.name.rsplit("-", 1)[1]) % 2:
            self.publish(gateway, "event/update.failed", {"reason": "the flash is full"})
            return
        self.publish(gateway, "event/update.succeeded", {"version": NEW_FIRMWARE})
        gateway.firmware = NEW_FIRMWARE
