# SPDX-License-Identifier: MIT
"""What the tests of the platform's side have in common: NAME_test.py HGAGENT PROJECT_FOLDER [TEST...]"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

HGAGENT = sys.argv.pop(1)
PROJECT = pathlib.Path(sys.argv.pop(1))
sys.path.insert(0, str(PROJECT / "tests/broker"))

import brokers  # noqa: E402  (in the folder that has just been added)
import fake_gateways  # noqa: E402

EXAMPLES = {path.stem: json.loads(path.read_text(encoding="utf-8"))["example"]["reply"]
            for path in (PROJECT / "protocol/commands").glob("*.json")}
MIX = """
[[request]]
command = "GET_HG_BASE_INFO"
weight = 2
[[request]]
command = "GET_LED_STATUS"
[[request]]
command = "SET_HG_BASE_INFO"
weight = 3
value = "Home {sequence}"
"""


class Running:
    """hgagent fleet drive or campaign as a process, and what it reports."""

    def __init__(self, folder, name, words):
        self.report_file = folder / f"{name}.json"
        self.process = subprocess.Popen([HGAGENT, "fleet", *words, "--json", str(self.report_file)],
                                        stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)

    def end(self):
        self.out, self.err = self.process.communicate()
        self.status = self.process.returncode
        self.report = json.loads(self.report_file.read_text(encoding="utf-8")) if self.report_file.exists() else None
        return self


class PlatformCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.mix = self.folder / "mix.toml"
        self.mix.write_text(MIX, encoding="utf-8")

    def broker(self):
        broker = brokers.Mosquitto(self.folder / "broker", "max_queued_messages 0")
        self.addCleanup(broker.close)
        return broker

    def fakes(self, broker, *prefixes, first=1, count=5):
        names = [f"{prefix}-{number}" for prefix in prefixes for number in range(first, first + count)]
        fakes = fake_gateways.FakeGateways(broker.port.number, names, EXAMPLES)
        self.addCleanup(fakes.close)
        fakes.up.wait()
        return fakes

    def start(self, broker, prefix, *words, count=5):
        words = [words[0], "--broker", broker.url, "--prefix", prefix, "--count", str(count), *words[1:]]
        running = Running(self.folder, prefix, words)
        self.addCleanup(lambda: (running.process.kill(), running.process.wait()))
        return running

    def drive(self, broker, prefix, *words, rate=80, time="3s", repeat=0.4, **more):
        return self.start(broker, prefix, "drive", "--rate", str(rate), "--for", time, "--mix", str(self.mix),
                          "--repeat", str(repeat), *words, **more)

    def run_words(self, *words):
        return Running(self.folder, "words", words).end()


# Tests that take long, for nightly runs.
long = unittest.skipUnless(os.environ.get("WHOLE_TESTS"), "WHOLE_TESTS is not set")
main = unittest.main
