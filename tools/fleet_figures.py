#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Measures fleets of several sizes (docs/performance.md): how long until all gateways are up, what one takes of memory and a
request of processor time, and how they come back after a restart of the broker.

The picture, such as docs/images/fleet-figures.svg, needs python3-matplotlib."""
import argparse
import json
import pathlib
import sys
import tempfile
import time

import paho.mqtt.client as mqtt
from paho.mqtt.packettypes import PacketTypes
from paho.mqtt.properties import Properties

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / "tests" / "broker"), str(ROOT / "tests" / "fleet")]
import brokers  # noqa: E402  # pylint: disable=wrong-import-position
import fleets  # noqa: E402  # pylint: disable=wrong-import-position

COMMAND = "GET_HG_BASE_INFO"
IN_FLIGHT = 50


def processor_seconds(processes):
    """Of the processes' first threads, in user and kernel mode; the times in /proc/PID/stat are too coarse."""
    return sum(int(pathlib.Path(f"/proc/{process}/schedstat").read_text(encoding="ascii").split()[0])
               for process in processes) / 1e9


def private_kilobytes(processes):
    """The average of the processes."""
    total = 0
    for process in processes:
        for line in pathlib.Path(f"/proc/{process}/smaps_rollup").read_text(encoding="ascii").splitlines():
            if line.startswith(("Private_Clean:", "Private_Dirty:")):
                total += int(line.split()[1])
    return total / len(processes)


def available_kilobytes():
    for line in pathlib.Path("/proc/meminfo").read_text(encoding="ascii").splitlines():
        if line.startswith("MemAvailable:"):
            return int(line.split()[1])
    raise RuntimeError("/proc/meminfo has no MemAvailable")


class Platform:
    """Asks every gateway in turn, with a few requests in flight."""

    def __init__(self, port):
        self.client = mqtt.Client("figures", protocol=mqtt.MQTTv5)
        self.client.max_queued_messages_set(0)
        self.client.on_message = self.received
        self.client.connect("127.0.0.1", port, keepalive=600)
        self.client.subscribe("gateway/+/reply/figures")
        self.answered = 0
        self.failed = 0

    def received(self, _client, _data, message):
        self.answered += 1
        self.failed += json.loads(message.payload).get("result") != 0

    def ask(self, count, requests):
        self.answered = self.failed = sent = 0
        while self.answered < requests:
            while sent < requests and sent - self.answered < IN_FLIGHT:
                name = f"home-{sent % count + 1}"
                properties = Properties(PacketTypes.PUBLISH)
                properties.ResponseTopic = f"gateway/{name}/reply/figures"
                self.client.publish(f"gateway/{name}/command/{COMMAND}", b"{}", 0, properties=properties)
                sent += 1
            self.client.loop(0.01)
        if self.failed:
            raise RuntimeError(f"{self.failed} of {requests} requests failed")


def come_back(broker, fleet, count):
    """Restarts the broker. Result: seconds until all gateways are up, and how many were up at each second."""
    broker.stop()
    while fleet.metrics()["hgfleet_gateways", "up"] > 0:
        time.sleep(0.1)
    broker.start()
    start = time.monotonic()
    curve = []
    while not curve or curve[-1][1] < count:
        curve.append((round(time.monotonic() - start, 2), int(fleet.metrics()["hgfleet_gateways", "up"])))
        time.sleep(0.5)
    return curve[-1][0], curve


def measure(hgagent, count, requests):
    with tempfile.TemporaryDirectory() as folder:
        broker = brokers.Mosquitto(pathlib.Path(folder) / "broker", "max_queued_messages 0\nmax_inflight_messages 0\n")
        fleet = None
        try:
            available = available_kilobytes()
            start = time.monotonic()
            fleet = fleets.Fleet(hgagent, folder, broker, count)
            fleet.await_up()
            up = time.monotonic() - start
            processes = list(fleet.gateways().values())
            platform = Platform(broker.port.number)
            platform.ask(count, count)  # each once, as after a long pause
            memory = private_kilobytes(processes)
            total = (available - available_kilobytes()) / count
            before = processor_seconds(processes)
            broker_before = processor_seconds([broker.process.pid])
            start = time.monotonic()
            platform.ask(count, requests)
            took = time.monotonic() - start
            each = 1e6 * (processor_seconds(processes) - before) / requests
            each_broker = 1e6 * (processor_seconds([broker.process.pid]) - broker_before) / requests
            back, curve = come_back(broker, fleet, count)
            return {"gateways": count, "up_seconds": round(up, 1), "private_megabytes": round(memory / 1024, 3),
                    "total_megabytes": round(total / 1024, 3), "requests": requests, "answered_in_seconds": round(took, 1),
                    "microseconds_each": round(each, 1), "microseconds_of_broker": round(each_broker, 1),
                    "back_seconds": back, "curve": curve}
        finally:
            if fleet is not None:
                if fleet.process.poll() is None:
                    fleet.end()
                fleet.close()
            broker.close()


def draw(file, measured):
    """Processor time by the number of gateways, and how the gateways come back after a restart of the broker."""
    import matplotlib  # pylint: disable=import-outside-toplevel  # for those who want the picture
    matplotlib.use("svg")
    matplotlib.rcParams["svg.hashsalt"] = "fleet"  # the same figures make the same file
    from matplotlib import pyplot  # pylint: disable=import-outside-toplevel

    figure, (cost, back) = pyplot.subplots(1, 2, figsize=(10, 3.6), layout="constrained")
    counts = [figures["gateways"] for figures, _ in measured]
    for key, label in (("microseconds_each", "gateway"), ("microseconds_of_broker", "broker")):
        cost.plot(counts, [figures[key] for figures, _ in measured], marker="o", label=label)
    cost.set(title=f"Processor time of {COMMAND}", xlabel="gateways", ylabel="microseconds", xscale="log", ylim=(0, None))
    for figures, curve in measured:
        back.plot([second for second, _ in curve], [100 * up / figures["gateways"] for _, up in curve],
                  label=f"{figures['gateways']:,} gateways")
    back.set(title="Back after a restart of the broker", xlabel="seconds", ylabel="% of the gateways", ylim=(0, 101))
    for axes in (cost, back):
        axes.grid(alpha=0.4)
        axes.legend()
    figure.savefig(file, metadata={"Date": None})


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--hgagent", metavar="PATH", default=ROOT / "build/release/bin/hgagent")
    parser.add_argument("--requests", type=int, metavar="N", default=20_000, help="to each fleet, 20,000 unless given")
    parser.add_argument("--picture", metavar="FILE", help="file for the figures as curves, SVG")
    parser.add_argument("counts", metavar="COUNT", type=int, nargs="+", help="gateways of a fleet")
    given = parser.parse_args()
    measured = []
    for count in given.counts:
        figures = measure(given.hgagent, count, given.requests)
        measured.append((figures, figures.pop("curve")))
        print(json.dumps(figures), flush=True)
    if given.picture:
        draw(given.picture, measured)


if __name__ == "__main__":
    main()
