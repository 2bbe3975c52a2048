# SPDX-License-Identifier: MIT
"""The sample clients in Python of examples/platform, with a real service and broker."""
import json
import pathlib
import signal
import subprocess
import sys

import case

CLIENTS = pathlib.Path(__file__).resolve().parents[2] / "examples/platform"
PHONE = "DA:41:7C:0E:92:B3"


class Actions:
    """What both clients do, with a service in self.running."""

    def client(self, *words, **more):
        return subprocess.Popen([sys.executable, "-B", *self.program(), *words], stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, text=True, **more)

    def run_client(self, *words):
        """Standard output of a client that succeeds."""
        with self.client(*words) as process:
            output, message = process.communicate()
        self.assertEqual((process.returncode, message), (0, ""))
        return output

    def refused(self, *words):
        """The message of a client that fails."""
        with self.client(*words) as process:
            output, message = process.communicate()
        self.assertEqual(process.returncode, 1, output)
        return message

    def ask(self, command, params=None):
        return self.running.ask(json.dumps({"id": 1, "command": command, "params": params or {}}))["reply"]

    def test_rename(self):
        self.start(device=False)
        self.run_client("rename", "Attic")
        self.assertEqual(self.ask("GET_HG_BASE_INFO")["Name"], "Attic")

    def test_wrong_usage(self):
        self.start()
        for words in ((), ("hosts", "all"), ("bedtime", PHONE), ("reset",)):
            self.assertTrue(self.refused(*words).startswith("usage: "), words)

    def test_hosts(self):
        self.start(device=False)
        self.assertIn(PHONE, self.run_client("hosts"))

    def test_bedtime(self):
        self.start(device=False)
        self.run_client("bedtime", PHONE, "21:00", "06:30")
        self.assertEqual(self.ask("GET_GREENNET_ENABLE")["Enable"], "1")
        periods = self.ask("GET_GREENNET_PROTECT_PERIOD_LIST", {"Mac": PHONE})
        self.assertEqual([(one["StartTime"], one["EndTime"]) for one in periods["Sleep"]], [("21:00", "06:30")])

    def test_firmware(self):
        """To the end of the reboot."""
        image = self.folder / "firmware.img"
        subprocess.run([pathlib.Path(case.HGAGENT).with_name("hg-mkimage"), "--product", "HGU-AX3000", "--version", "V9.1.4",
                        image], check=True, stdout=subprocess.DEVNULL)
        self.start("--reboot-seconds", "1", device=False, whole_options=("--firmware-folder", self.folder))
        *percents, reboot, version = self.run_client("firmware", image.as_uri()).splitlines()
        self.assertEqual((percents[-1], reboot, version), ("100 %", "reboots for 1 seconds", "V9.1.4"))
        self.assertNotEqual(self.refused("firmware", (self.folder / "none").as_uri()), "")


class SocketClientTest(Actions, case.BrokerCase):
    def program(self):
        return CLIENTS / "socket_client.py", self.running.socket

    def start(self, *options, **more):
        self.running = self.service(*options, connected=False, **more)

    def test_the_service_ends(self):
        held = self.pipe()
        self.start(environment={"HELD": str(held)})
        with self.client("rename", "wait") as process:
            while not self.running.executed():
                self.assertIsNone(process.poll())
            self.running.restart(signal.SIGKILL)
            self.assertIn("the service has ended", process.communicate()[1])
        self.assertEqual((process.returncode, self.running.executed()), (1, {"wait": 1}))

    def test_while_the_gateway_reboots(self):
        """Requests are refused meanwhile, and repeated."""
        self.start("--reboot-seconds", "2", device=False)
        self.assertEqual(self.ask("RP_HG_REBOOT")["Status"], "0")
        self.run_client("rename", "Attic")
        self.assertEqual(self.ask("GET_HG_BASE_INFO")["Name"], "Attic")

    def test_no_service(self):
        self.start()
        self.running.end()
        self.assertIn(str(self.running.socket), self.refused("hosts"))

    def test_a_failure(self):
        self.start(device=False, whole_options=("--fault", "devapi_set_hg_base_info=-1"))
        self.assertIn("set hg base info failed", self.refused("rename", "Attic"))


class BrokerClientTest(Actions, case.BrokerCase):
    def setUp(self):
        super().setUp()
        self.broker = self.mosquitto()

    def program(self):
        return CLIENTS / "gateway_client.py", f"127.0.0.1:{self.broker.port.number}", "gw"

    def start(self, *options, **more):
        self.running = self.trusted(self.broker, *options, **more)

    def test_no_broker(self):
        self.start()
        self.broker.kill()
        self.assertTrue(self.refused("hosts").startswith(f"127.0.0.1:{self.broker.port.number}: "))

    def test_failures_meanwhile(self):
        held = self.pipe()
        self.start(environment={"HELD": str(held)})
        with self.client("rename", "wait") as process:
            while not self.running.executed():
                self.assertIsNone(process.poll())
            self.broker.kill()
            self.broker.start()
            self.running.await_broker()
            self.release(held)
            process.communicate()
        self.assertEqual((process.returncode, self.running.executed()), (0, {"wait": 1}))
        with self.client("rename", "wait again") as process:
            while len(self.running.executed()) < 2:
                self.assertIsNone(process.poll())
            self.running.restart(signal.SIGKILL)
            self.assertIn("(outcome-unknown)", process.communicate()[1])
        self.assertEqual((process.returncode, self.running.executed()), (1, {"wait": 1, "wait again": 1}))


if __name__ == "__main__":
    case.main()
