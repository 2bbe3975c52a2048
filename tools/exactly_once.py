#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Counts what becomes of requests on a broker while something fails, and prints a table: for each kind of failure, for
clients without and with the rule of repeating a request until it is answered, and for comparison a responder without
the answer cache.

The build needs the targets hgagent, smart_router_service, counting_device and broker_responder.
"""
import argparse
import collections
import json
import pathlib
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests/broker"))

import brokers  # noqa: E402
import caller  # noqa: E402
import ejabberd  # noqa: E402
import service  # noqa: E402
import trial  # noqa: E402

CREDENTIALS = "gw@localhost", "any"
# How long clients have after a repair until the next failure.
PAUSE_SECONDS = 0.3


class Bare:
    """The responder without a cache, with the interface of a Service."""

    def __init__(self, build, folder, port):
        folder.mkdir(parents=True)
        self.counts = folder / "executed"
        self.counts.touch()
        self.words = [build / "bin/broker_responder", str(port), "gateway/gw/command/+", "1",
                      '{"result":0,"reply":{"Status":"0"}}', self.counts]
        self.start()

    def start(self):
        self.process = subprocess.Popen(self.words, stdout=subprocess.PIPE, text=True)
        self.process.stdout.readline()

    def await_broker(self):
        self.process.stdout.readline()

    def restart(self):
        self.close()
        self.start()

    def executed(self):
        lines = map(json.loads, self.counts.read_text(encoding="utf-8").splitlines())
        return collections.Counter(line.get("Name") for line in lines)

    def close(self):
        self.process.kill()
        self.process.wait()
        self.process.stdout.close()


def stop(running, broker):
    broker.stop()
    broker.start()
    running.await_broker()


def kill(running, broker):
    broker.kill()
    broker.start()
    running.await_broker()


def kill_worker(running, _broker):
    running.kill_worker()


def kill_service(running, _broker):
    running.restart()
    running.await_broker()


# (what fails, whether the broker keeps sessions and how often it saves them, what causes it, for hgagent alone)
FAILURES = (
    ("nothing", None, None, False),
    ("broker stopped and started", "default", stop, False),
    ("broker killed, autosave of 1 s", "1", kill, False),
    ("broker killed, autosave of 30 min", "default", kill, False),
    ("broker killed, no persistence", None, kill, False),
    ("worker killed", None, kill_worker, True),
    ("service killed, clients name its epoch", "default", kill_service, True),
    ("service killed, clients name no epoch", "default", kill_service, True),
)


def epoch_of(client):
    """Gives the epoch that the client knows at that moment."""
    client.subscribe("gateway/gw/state")
    known = client.await_message(lambda message: message.topic == "gateway/gw/state").body["epoch"]

    def properties():
        nonlocal known
        while client.messages:
            message = client.messages.pop()
            if message.topic == "gateway/gw/state" and message.body.get("online"):
                known = message.body["epoch"]
                client.messages.clear()
        return [("epoch", known)]
    return properties


def count(options, folder, failure, bare, rule):
    name, saves, fail, _ = failure
    persistence = "" if saves is None else brokers.persistence(folder / "broker", None if saves == "default" else saves)
    broker = brokers.Mosquitto(folder / "broker", "max_queued_messages 0\n" + persistence)
    running = None
    try:
        if bare:
            running = Bare(options.build, folder / "service", broker.port.number)
        else:
            running = service.Service(
                options.build / "bin/hgagent", folder / "service",
                ["--broker", broker.url, "--id", "gw", "--trust", "--max-answers", "1000000",
                 "--max-answer-bytes", "1000000000"],
                options.build / "tests/broker/counting_device.so")
            running.await_broker()
        client = caller.Caller([broker.port.number])
        user = epoch_of(client) if "its epoch" in name else lambda: ()

        def disturb():
            fail(running, broker)
            time.sleep(PAUSE_SECONDS)
        return trial.run(client, running.executed, options.requests, options.in_flight, rule,
                         disturb if fail is not None else None, options.failures, user)
    finally:
        if running is not None:
            running.close()
        broker.close()


def count_in_cluster(options, folder, whose, rule):
    """The client is connected to the second node, the gateway to the first; one of them is killed."""
    cluster = ejabberd.Cluster(folder / "cluster", 3)
    running = None
    try:
        credentials = folder / "credentials"
        credentials.write_text("\n".join(CREDENTIALS), encoding="ascii")
        credentials.chmod(0o600)
        addresses = [word for port in cluster.ports for word in ("--broker", f"mqtt://127.0.0.1:{port}")]
        running = service.Service(
            options.build / "bin/hgagent", folder / "service",
            [*addresses, "--id", "gw", "--trust", "--broker-credentials", credentials, "--max-answers", "1000000",
             "--max-answer-bytes", "1000000000"],
            options.build / "tests/broker/counting_device.so")
        running.await_broker()
        first, second, third = cluster.ports
        client = caller.Caller([second, third], credentials=("caller@localhost", "any"))
        began = time.monotonic()
        for _ in range(200):
            client.ask("GET_SN_INFO")
        milliseconds = (time.monotonic() - began) * 5
        print(f"{whose}: {milliseconds:.2f} ms for each request through two nodes of "
              f"{', '.join(f'{node.memory():.0f} MB' for node in cluster.nodes)}", file=sys.stderr)

        def kill_node():
            if whose == "the gateway's node killed":
                cluster.nodes[0].kill()
                running.await_broker()
            else:
                cluster.nodes[1].kill()
        return trial.run(client, running.executed, options.requests, options.in_flight, rule,
                         kill_node if "killed" in whose else None, 1)
    finally:
        if running is not None:
            running.close()
        cluster.close()


def print_row(*cells):
    print("| " + " | ".join(map(str, cells)) + " |", flush=True)


def print_tally(name, gateway, rule, tally):
    print_row(name, gateway, "with" if rule else "without", tally.failures, tally.sent, tally.answered,
              tally.outcome_unknown, tally.once, tally.twice, tally.never)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--requests", type=int, metavar="N", default=10_000, help="10,000 unless given")
    parser.add_argument("--in-flight", type=int, metavar="N", default=16, help="requests without an answer, at most; 16 unless given")
    parser.add_argument("--failures", type=int, metavar="N", default=4, help="of each kind, 4 unless given")
    parser.add_argument("--only", metavar="TEXT", default="", help="the kinds of failure that contain this text")
    parser.add_argument("--cluster", action="store_true",
                        help="a cluster of three ejabberd nodes instead of a mosquitto (tools/cluster.sh)")
    parser.add_argument("--build", type=pathlib.Path, metavar="FOLDER", default=ROOT / "build/release")
    options = parser.parse_args()
    print_row("What fails", "Gateway", "Rule", "Failures", "Sent", "Answered", "of these outcome unknown",
              "Executed once", "twice", "never")
    print_row("---", "---", "---", *["---:"] * 7)
    broken = False
    with tempfile.TemporaryDirectory() as work:
        work = pathlib.Path(work)
        if options.cluster:
            for number, whose in enumerate(("nothing", "the client's node killed", "the gateway's node killed")):
                if options.only not in whose:
                    continue
                for rule in (False, True):
                    tally = count_in_cluster(options, work / f"{number}-{rule}", whose, rule)
                    print_tally(whose, "hgagent", rule, tally)
                    broken = broken or rule and not tally.kept_promise()
            return 1 if broken else 0
        for number, failure in enumerate(one for one in FAILURES if options.only in one[0]):
            for bare in (False, True):
                for rule in (False, True):
                    if bare and failure[3]:
                        continue
                    tally = count(options, work / f"{number}-{bare}-{rule}", failure, bare, rule)
                    print_tally(failure[0], "bare responder" if bare else "hgagent", rule, tally)
                    # Without an epoch the promise ends with the service.
                    broken = broken or not bare and rule and "no epoch" not in failure[0] and not tally.kept_promise()
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main())
