#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The platform's side of a gateway on an MQTT 5 broker, with python3-paho-mqtt:

gateway_client.py HOST:PORT GATEWAY rename NAME | hosts | bedtime MAC START END | firmware URL

A request is repeated with the same correlation data until it is answered: a change is executed at most once. It names
the epoch of the gateway's service: after a restart of that, the answer is that the outcome is unknown.
"""
import json
import queue
import sys
import time
import uuid

import paho.mqtt.client as mqtt
from paho.mqtt.packettypes import PacketTypes
from paho.mqtt.properties import Properties

REPEAT_SECONDS = 5
NOT_EXECUTED = ("busy", "rate-limited", "rebooting")  # after these a request is repeated as well


class Refused(Exception):
    """The command was not executed, has failed, or its outcome is unknown."""


class Gateway:
    def __init__(self, host, port, name, root="gateway"):
        self.base = f"{root}/{name}"
        self.reply_topic = f"{self.base}/reply/{uuid.uuid4().hex}"
        self.messages, self.epoch, self.events = queue.Queue(), None, []
        self.client = mqtt.Client(protocol=mqtt.MQTTv5)
        self.client.on_connect, self.client.on_subscribe = self.on_connect, self.on_subscribe
        self.client.on_message = lambda client, data, message: self.messages.put(message)
        self.client.connect(host, port)
        self.client.loop_start()

    def on_connect(self, client, data, flags, reason, properties):
        client.subscribe([(topic, mqtt.SubscribeOptions(qos=1))
                          for topic in (self.reply_topic, f"{self.base}/state", f"{self.base}/event/+")])

    def on_subscribe(self, client, data, message_id, reasons, properties):
        client.publish(f"{self.base}/state/get")
        self.messages.put(None)  # what waits for an answer is repeated at once

    def next_message(self, end):
        """The next message, or None after a new connection and at the end of the time."""
        try:
            message = self.messages.get(timeout=max(end - time.monotonic(), 0))
        except queue.Empty:
            return None
        if message and message.topic == f"{self.base}/state" and not message.retain:
            self.epoch = json.loads(message.payload).get("epoch")
        elif message and message.topic.startswith(f"{self.base}/event/"):
            self.events.append((message.topic.rpartition("/")[2], json.loads(message.payload)))
        return message

    def call(self, command, params=None, seconds=60):
        """The reply to the command. Raises Refused or TimeoutError."""
        end = time.monotonic() + seconds
        while self.epoch is None and time.monotonic() < end:
            self.next_message(end)
        properties = Properties(PacketTypes.PUBLISH)
        properties.ResponseTopic = self.reply_topic
        properties.CorrelationData = uuid.uuid4().bytes
        properties.UserProperty = ("epoch", self.epoch or "")
        while (left := end - time.monotonic()) > 0:
            if self.client.is_connected():
                properties.MessageExpiryInterval = max(int(left), 1)
                self.client.publish(f"{self.base}/command/{command}", json.dumps(params or {}), 1, properties=properties)
            answer = self.answer_to(properties.CorrelationData, min(end, time.monotonic() + REPEAT_SECONDS))
            if answer and answer.get("code") not in NOT_EXECUTED:
                return checked(answer)
            time.sleep(REPEAT_SECONDS if answer else 0)
        raise TimeoutError(f"no answer within {seconds} seconds")

    def answer_to(self, correlation, end):
        while message := self.next_message(end):
            if message.topic == self.reply_topic and message.properties.CorrelationData == correlation:
                return json.loads(message.payload)
        return None

    def next_event(self, seconds):
        end = time.monotonic() + seconds
        while not self.events:
            if time.monotonic() >= end:
                raise TimeoutError(f"no event within {seconds} seconds")
            self.next_message(end)
        return self.events.pop(0)


def checked(answer):
    if "error" in answer:
        raise Refused(f"{answer['error']} ({answer['code']})")
    if answer["reply"].get("Status", "0") != "0":
        raise Refused(answer["reply"].get("FailReason"))
    return answer["reply"]


def rename(gateway, name):
    gateway.call("SET_HG_BASE_INFO", {"Name": name})


def hosts(gateway):
    for host in gateway.call("GET_AD_BASE_INFO")["BaseInfo"]:
        print(host["Mac"], host["ip"], host["Name"])


def bedtime(gateway, mac, start, end):
    keys = ("Mac", "Name", "NotifyEnable")
    devices = [{key: device[key] for key in keys} for device in gateway.call("GET_GREENNET_DEVICE_LIST")["DeviceList"]]
    if mac not in [device["Mac"] for device in devices]:
        devices.append({"Mac": mac, "Name": mac, "NotifyEnable": "0"})
        gateway.call("SET_GREENNET_DEVICE_LIST", {"DeviceList": devices})
    period = {"StartTime": start, "EndTime": end, "Enable": "1", "DaysOfWeek": "1234567"}
    gateway.call("SET_GREENNET_PROTECT_PERIOD_LIST", {"Mac": mac, "Sleep": [period]})
    gateway.call("SET_GREENNET_ENABLE", {"Enable": "1"})


def firmware(gateway, url):
    gateway.call("IMAGE_DOWNLOAD", {"MainRouter": {"UpdateUrl": url}})
    while (event := gateway.next_event(600))[0] != "reboot.ended":
        name, data = event
        if name == "update.failed":
            raise Refused(data["reason"])
        if name == "update.progress":
            print(f"{data['percent']} %", flush=True)
        elif name == "reboot.begun":
            print(f"reboots for {data['seconds']} seconds", flush=True)
    print(gateway.call("GET_HG_BASE_INFO")["FWVersion"])


def main():
    _, broker, name, action, *words = sys.argv + [""] * (4 - len(sys.argv))
    host, _, port = broker.rpartition(":")
    if not port.isdigit() or len(words) != {"rename": 1, "hosts": 0, "bedtime": 3, "firmware": 1}.get(action):
        sys.exit("usage: gateway_client.py HOST:PORT GATEWAY rename NAME | hosts | bedtime MAC START END | firmware URL")
    try:
        gateway = Gateway(host, int(port), name)
        {"rename": rename, "hosts": hosts, "bedtime": bedtime, "firmware": firmware}[action](gateway, *words)
    except (Refused, OSError) as problem:  # a TimeoutError is an OSError
        sys.exit(f"{broker}: {problem}")
    gateway.client.disconnect()
    gateway.client.loop_stop()


if __name__ == "__main__":
    main()
