#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""hgagent fleet drive with gateways that have one fault each: what is not as it should be has to be found."""
import shutil
import subprocess
import threading
import time

import platform_case


class DriveTest(platform_case.PlatformCase):
    def check_sums(self, report, planned=240):
        self.assertEqual(report["planned"], planned)
        self.assertEqual(sum(report["endings"].values()) + report["held_back"], planned)
        self.assertEqual(report["requests"], sum(report["endings"].values()))
        ledger = report["ledger"]
        self.assertEqual(ledger["confirmed"] + ledger["refused"] + ledger["unknown"],
                         sum(report["commands"]["SET_HG_BASE_INFO"]["endings"].values()))

    def await_load(self, fakes, running):
        """Returns when changes are being made."""
        while not any(gateway.changes > 3 for gateway in fakes.gateways.values()):
            if running.process.poll() is not None:
                self.fail(running.end().err)
            time.sleep(0.05)

    def test_each_fault_is_found(self):
        faults = ("good", "lazy", "unknown", "forget", "twice", "order", "missing", "reason", "no_json", "no_reply",
                  "denied", "silent")
        broker = self.broker()
        fakes = self.fakes(broker, *faults)
        running = {fault: self.drive(broker, fault, "--timeout", "2" if fault == "silent" else "60") for fault in faults}
        ended = {fault: one.end() for fault, one in running.items()}
        reports = {fault: one.report for fault, one in ended.items()}
        for fault, one in ended.items():
            with self.subTest(fault):
                self.assertEqual(one.status, 0 if fault in ("good", "lazy", "unknown") else 1, one.out + one.err)
                self.check_sums(one.report)
                self.assertEqual(one.report["good"], one.status == 0)

        good = reports["good"]
        self.assertEqual(good["endings"]["success"], 240 - good["held_back"])
        self.assertEqual(good["ledger"]["as_set"], 5)
        for counted in ("compared", "asked_again", "confirmed"):
            self.assertGreater(good["ledger"][counted], 0, good)
        # Every change that was executed has been confirmed once, whatever was asked for again.
        self.assertEqual(sum(one.executed for name, one in fakes.gateways.items() if name.startswith("good-")),
                         good["ledger"]["confirmed"])
        self.assertGreaterEqual(reports["lazy"]["broker"]["repetitions"], reports["lazy"]["requests"])
        self.assertGreater(reports["unknown"]["ledger"]["unknown"], 0)
        self.assertGreater(reports["forget"]["ledger"]["lost"], 0)
        self.assertGreater(reports["twice"]["ledger"]["executed_twice"], 0, reports["twice"]["ledger"])
        for fault in ("order", "missing", "reason", "no_json", "no_reply"):
            self.assertGreater(reports[fault]["endings"]["invalid"], 0, fault)
        self.assertIn("Status is missing", " ".join(reports["order"]["problems"]))
        self.assertIn("Mac is missing", " ".join(reports["missing"]["problems"]))
        self.assertGreater(reports["denied"]["codes"]["denied"], 0)
        self.assertGreater(reports["silent"]["endings"]["unanswered"], 0)
        self.assertIn("silent-1: ", " ".join(reports["silent"]["problems"]))

    @platform_case.long
    def test_broker_restarts(self):
        broker = self.broker()
        fakes = self.fakes(broker, "good")
        running = self.drive(broker, "good", "--metrics", str(self.folder / "metrics"), time="4s")
        self.await_load(fakes, running)
        broker.stop()
        broker.start()
        one = running.end()
        self.assertEqual(one.status, 0, one.out + one.err)
        self.check_sums(one.report, 320)
        self.assertGreaterEqual(one.report["broker"]["interruptions"], 1)
        # The driver itself waits before it connects again.
        self.assertGreater(one.report["milliseconds"]["max"], 400)
        metrics = (self.folder / "metrics").read_text(encoding="utf-8")
        self.assertIn('hgdrive_requests_total{command="GET_HG_BASE_INFO",ending="success"} ', metrics)
        self.assertIn('hgdrive_request_duration_seconds_bucket{command="GET_HG_BASE_INFO",le="+Inf"} ', metrics)

    def test_time_counts_from_the_intended_moment(self):
        """A broker that stands still for a second delays all requests of that second, also those not sent yet."""
        broker = self.broker()
        fakes = self.fakes(broker, "good")
        running = self.drive(broker, "good", repeat=30, time="4s")
        self.await_load(fakes, running)
        broker.suspend()
        threading.Timer(1.5, broker.resume).start()
        one = running.end()
        self.assertEqual(one.status, 0, one.out + one.err)
        self.assertGreater(one.report["milliseconds"]["max"], 1300)
        # Of 320 at least those of one second waited for half of it on average: not a single one.
        self.assertGreater(one.report["milliseconds"]["p90"], 300)

    @platform_case.long
    def test_gateways_with_a_given_fault(self):
        """What the plan of a fleet with --churn makes fail is counted, and nothing else is forgiven."""
        broker = self.broker()
        self.fakes(broker, "spared", "blamed", first=645)
        words = ["--first", "645", "--churn"]
        # The end does not wait for a gateway with a given fault as long as for the others.
        spared = self.drive(broker, "spared", *words, "--timeout", "86400")
        blamed = self.drive(broker, "blamed", *words, "--timeout", "2", "--seed", "2")
        self.assertEqual(spared.end().status, 0, spared.out + spared.err)
        self.check_sums(spared.report)
        self.assertGreater(spared.report["endings"]["weak_gateway"], 0)
        self.assertEqual(spared.report["ledger"]["settings"], 4)
        self.assertEqual(blamed.end().status, 1, blamed.out)
        self.assertGreater(blamed.report["endings"]["unanswered"], 0)
        self.assertEqual(blamed.report["endings"]["weak_gateway"], 0)

    def test_missing_gateways(self):
        broker = self.broker()
        self.fakes(broker, "good", count=2)
        one = self.drive(broker, "good", "--wait", "2", time="1s", count=3).end()
        self.assertEqual(one.status, 1, one.out)
        self.assertGreaterEqual(one.report["gateways"]["missing"], 1)
        one = self.drive(broker, "nobody", "--wait", "0.5").end()
        self.assertEqual(one.status, 1)
        self.assertIn("none of 5 gateways has announced itself", one.err)

    def test_wrong_usage(self):
        good = ["--broker", "mqtt://127.0.0.1:1", "--count", "1", "--rate", "1", "--for", "1s"]
        cases = [
            (["--rate", "0.5"], "less than one request"),
            (["--for", "0s"], "is not a time"), (["--for", "3 days"], "is not a time"),
            (["--watch", "fleet"], "is not NAME=PID"), (["--watch", "A=1"], "is not NAME=PID"),
            (["--broker", "http://x"], "--broker"), (["--broker", "mqtt://192.0.2.1"], "is on another machine"),
            (["--first", "99999999", "--count", "2"], "beyond the number"), (["--prefix", "a/b"], "a/b-1"),
            (["--root", "#"], ""), (["--broker-key", "x"], "together"), (["--mix", "/nowhere"], "cannot be opened"),
        ]
        for words, text in cases:
            given = {good[at]: good[at + 1] for at in range(0, len(good), 2)}
            given.update({words[at]: words[at + 1] for at in range(0, len(words), 2)})
            with self.subTest(words):
                one = self.run_words("drive", *[word for pair in given.items() for word in pair])
                self.assertEqual(one.status, 2, one.err)
                self.assertIn(text, one.err)
        one = self.run_words("drive", *good)
        self.assertEqual(one.status, 4, one.err)
        self.assertIn("cannot connect to mqtt://127.0.0.1:1", one.err)
        mixes = [
            ("", "has to be given at least once"), ("request = 1", "has to be a list"), ("request = [1]", "has to be a table"),
            ('[[request]]\nweight = 1', "command: has to be given"), ('[[request]]\ncommand = "GET_X"', "no command"),
            ('[[request]]\ncommand = "HG_LOCAL_RECOVERY"', "would take back"),
            ('[[request]]\ncommand = "GET_LED_STATUS"\nweight = 0', "above 0"),
            ('[[request]]\ncommand = "GET_LED_STATUS"\nvalue = "1"', "only a setting"),
            ('[[request]]\ncommand = "GET_LED_STATUS"\nparams = "["', "params"),
            ('[[request]]\ncommand = "GET_WIFI_INFO"', "params: has to be given"),
            ('[[request]]\ncommand = "SET_LAN_IP_INFO"', "has to be a key"),
            ('[[request]]\ncommand = "SET_UPNP_STATE"\nkey = "Nothing"', "has to be a key"),
            ('[[request]]\ncommand = "SET_UPNP_STATE"\n[[request]]\ncommand = "SET_UPNP_STATE"', "given twice"),
            ('[[request]]\ncommand = "GET_LED_STATUS"\nspeed = 1', "there is no such key"),
        ]
        for text, problem in mixes:
            with self.subTest(text):
                self.mix.write_text(text, encoding="utf-8")
                one = self.run_words("drive", *good, "--mix", str(self.mix))
                self.assertEqual(one.status, 2, one.err)
                self.assertIn(problem, one.err)

    def test_no_run_without_the_template_of_its_page(self):
        alone = self.folder / "bin" / "hgagent"  # without what is installed beside it
        alone.parent.mkdir()
        shutil.copy(platform_case.HGAGENT, alone)
        one = subprocess.run([alone, "fleet", "drive", "--broker", "mqtt://127.0.0.1:1", "--count", "1", "--rate", "1", "--for",
                              "1s", "--page", self.folder / "page.html"], capture_output=True, text=True, check=False)
        self.assertEqual(one.returncode, 2, one.stderr)
        self.assertIn("made without Node.js", one.stderr)


if __name__ == "__main__":
    platform_case.main()
