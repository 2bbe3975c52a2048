#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A client of a service on this machine, on its Unix socket, with Python alone:

socket_client.py SOCKET rename NAME | hosts | bedtime MAC START END | firmware URL

A request that was not executed is repeated. On a socket no answer gets lost while both sides live, so there is nothing
else to repeat: when the connection breaks, the service has ended, and whether a change was executed has to be read from
the gateway.
"""
import collections
import json
import socket
import sys
import time

REPEAT_SECONDS = 1
# Answers that say that nothing has been executed.
NOT_EXECUTED = ("busy", "rate-limited", "rebooting")


class Refused(Exception):
    """The command was not executed, has failed, or its outcome is unknown."""


class Gateway:
    def __init__(self, path):
        self.connection = socket.socket(socket.AF_UNIX)
        self.connection.connect(path)
        self.unread = b""
        self.last_id = 0
        self.events = collections.deque()

    def next_line(self, end):
        while b"\n" not in self.unread:
            self.connection.settimeout(max(end - time.monotonic(), 0.001))
            received = self.connection.recv(65536)
            if not received:
                raise Refused("the service has ended")
            self.unread += received
        line, _, self.unread = self.unread.partition(b"\n")
        return json.loads(line)

    def ask(self, request, end):
        """The answer to a line. Events that come before it are kept."""
        self.last_id += 1
        self.connection.settimeout(max(end - time.monotonic(), 0.001))
        self.connection.sendall(json.dumps({"id": self.last_id, **request}).encode() + b"\n")
        while True:
            line = self.next_line(end)
            if "event" in line:
                self.events.append((line["event"], line["data"]))
            elif line["id"] == self.last_id:
                return line

    def call(self, command, params=None, seconds=60):
        """The reply to the command. Raises Refused or TimeoutError."""
        end = time.monotonic() + seconds
        while True:
            answer = self.ask({"command": command, "params": params or {}}, end)
            if answer.get("code") not in NOT_EXECUTED:
                return checked(answer)
            if time.monotonic() + REPEAT_SECONDS >= end:
                raise TimeoutError(f"not executed within {seconds} seconds: {answer['error']}")
            time.sleep(REPEAT_SECONDS)

    def subscribe(self, pattern, seconds=60):
        answer = self.ask({"subscribe": pattern}, time.monotonic() + seconds)
        if "error" in answer:
            raise Refused(f"{answer['error']} ({answer['code']})")

    def next_event(self, seconds):
        end = time.monotonic() + seconds
        while not self.events:
            line = self.next_line(end)
            if "event" in line:
                self.events.append((line["event"], line["data"]))
        return self.events.popleft()


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
    for pattern in ("update.*", "reboot.*"):
        gateway.subscribe(pattern)
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
    _, address, action, *words = sys.argv + [""] * (3 - len(sys.argv))
    if len(words) != {"rename": 1, "hosts": 0, "bedtime": 3, "firmware": 1}.get(action):
        sys.exit("usage: socket_client.py SOCKET rename NAME | hosts | bedtime MAC START END | firmware URL")
    try:
        gateway = Gateway(address)
        {"rename": rename, "hosts": hosts, "bedtime": bedtime, "firmware": firmware}[action](gateway, *words)
    except (Refused, OSError) as problem:  # a TimeoutError is an OSError
        sys.exit(f"{address}: {problem}")


if __name__ == "__main__":
    main()
