# SPDX-License-Identifier: MIT
"""The sample client in examples/platform with a real broker and service."""
import json
import pathlib
import signal
import subprocess
import sys

import case

CLIENT = pathlib.Path(__file__).resolve().parents[2] / "examples/platform/gateway_client.py"
PHONE = "DA:41:7C:0E:92:B3"


class SampleClientTest(case.BrokerCase):
    def setUp(self):
        super().setUp()
        self.broker = self.mosquitto()

    def client(self, *words, **more):
        return subprocess.Popen([sys.executable, "-B", CLIENT, f"127.0.0.1:{self.broker.port.number}", "gw", *words],
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, **more)

    def run_client(self, *words):
        """Standard output of a client that succeeds."""
        with self.client(*words) as process:
            output, message = process.communicate()
        self.assertEqual((process.returncode, message), (0, ""))
        return output

    def ask(self, running, command, params=None):
        return running.ask(json.dumps({"id": 1, "command": command, "params": params or {}}))["reply"]

    def test_rename(self):
        running = self.trusted(self.broker, device=False)
        self.run_client("rename", "Attic")
        self.assertEqual(self.ask(running, "GET_HG_BASE_INFO")["Name"], "Attic")

    def test_hosts(self):
        self.trusted(self.broker, device=False)
        self.assertIn(PHONE, self.run_client("hosts"))

    def test_bedtime(self):
        running = self.trusted(self.broker, device=False)
        self.run_client("bedtime", PHONE, "21:00", "06:30")
        self.assertEqual(self.ask(running, "GET_GREENNET_ENABLE")["Enable"], "1")
        periods = self.ask(running, "GET_GREENNET_PROTECT_PERIOD_LIST", {"Mac": PHONE})
        self.assertEqual([(one["StartTime"], one["EndTime"]) for one in periods["Sleep"]], [("21:00", "06:30")])

    def test_firmware(self):
        image = self.folder / "firmware.img"
        subprocess.run([pathlib.Path(case.HGAGENT).with_name("hg-mkimage"), "--product", "HGU-AX3000", "--version", "V9.1.4",
                        image], check=True, stdout=subprocess.DEVNULL)
        self.trusted(self.broker, "--reboot-seconds", "0", device=False,
                     whole_options=("--firmware-folder", self.folder))
        *percents, version = self.run_client("firmware", image.as_uri()).splitlines()
        self.assertEqual((percents[-1], version), ("100 %", "V9.1.4"))
        with self.client("firmware", (self.folder / "none").as_uri()) as process:
            self.assertIn("gw: ", process.communicate()[1])
        self.assertEqual(process.returncode, 1)

    def test_failures_meanwhile(self):
        held = self.pipe()
        running = self.trusted(self.broker, environment={"HELD": str(held)})
        with self.client("rename", "wait") as process:
            while not running.executed():
                self.assertIsNone(process.poll())
            self.broker.kill()
            self.broker.start()
            running.await_broker()
            self.release(held)
            process.communicate()
        self.assertEqual((process.returncode, running.executed()), (0, {"wait": 1}))
        with self.client("rename", "wait again") as process:
            while len(running.executed()) < 2:
                self.assertIsNone(process.poll())
            running.restart(signal.SIGKILL)
            self.assertIn("(outcome-unknown)", process.communicate()[1])
        self.assertEqual((process.returncode, running.executed()), (1, {"wait": 1, "wait again": 1}))


if __name__ == "__main__":
    case.main()
