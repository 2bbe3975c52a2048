# SPDX-License-Identifier: MIT
"""The stock clients of mosquitto talk to a gateway."""
import json
import signal
import subprocess

import case


class ClientsTest(case.BrokerCase):
    def setUp(self):
        super().setUp()
        self.broker = self.mosquitto()

    def tool(self, name, *words):
        return [f"mosquitto_{name}", "-p", str(self.broker.port.number), *words]

    def run_tool(self, name, *words, **more):
        return subprocess.run(self.tool(name, *words), check=True, capture_output=True, text=True, **more).stdout

    def watch(self, *words):
        """A mosquitto_sub that has subscribed, and writes "TOPIC PAYLOAD"."""
        # It flushes neither what it reports nor what it receives.
        watcher = subprocess.Popen(["stdbuf", "-oL", *self.tool("sub", "-v", "-d", *words)], stdout=subprocess.PIPE,
                                   text=True)

        def end():
            watcher.kill()
            watcher.wait()
            watcher.stdout.close()
        self.addCleanup(end)
        while "Subscribed" not in (line := watcher.stdout.readline()):
            self.assertTrue(line, "mosquitto_sub has ended")
        return watcher

    def next_message(self, watcher):
        while True:
            line = watcher.stdout.readline()
            self.assertTrue(line, "mosquitto_sub has ended")
            if line.startswith("gateway/"):
                topic, _, payload = line.partition(" ")
                return topic, json.loads(payload)

    def test_mosquitto_rr(self):
        self.trusted(self.broker)
        answer = self.run_tool("rr", "-V", "5", "-t", "gateway/gw/command/GET_SN_INFO", "-n",
                               "-e", "gateway/gw/reply/rr", "-D", "publish", "correlation-data", "42")
        self.assertEqual(json.loads(answer)["reply"]["DeviceType"], "COUNTING")

    def test_mosquitto_pub_of_version_3(self):
        running = self.trusted(self.broker)
        watcher = self.watch("-V", "311", "-q", "1", "-t", "gateway/gw/reply/shell")
        self.run_tool("pub", "-V", "311", "-q", "1", "-t", "gateway/gw/request/shell", "-m",
                      '{"id":1,"command":"SET_HG_BASE_INFO","params":{"Name":"Attic"}}')
        self.assertEqual(self.next_message(watcher),
                         ("gateway/gw/reply/shell", {"id": 1, "result": 0, "reply": {"Status": "0"}}))
        self.assertEqual(running.executed(), {"Attic": 1})

    def test_state_and_last_will(self):
        running = self.trusted(self.broker)
        watcher = self.watch("-q", "1", "-t", "gateway/gw/state")
        topic, state = self.next_message(watcher)
        self.assertEqual((topic, state["online"]), ("gateway/gw/state", True))
        running.end(signal.SIGKILL)
        self.assertEqual(self.next_message(watcher), ("gateway/gw/state", {"online": False}))
        running.start()
        _, again = self.next_message(watcher)
        self.assertIs(again["online"], True)
        self.assertNotEqual(again["epoch"], state["epoch"])

    def test_events(self):
        running = self.trusted(self.broker, device=False)
        watcher = self.watch("-q", "1", "-t", "gateway/gw/event/+")
        subprocess.run([case.HGAGENT, "notice", "--socket", running.socket, "--plugin-name", "parental_control",
                        "A new phone"], check=True, stdout=subprocess.DEVNULL)
        topic, notice = self.next_message(watcher)
        while topic != "gateway/gw/event/notice":
            topic, notice = self.next_message(watcher)
        self.assertEqual(notice["Plugin_Name"], "parental_control")


if __name__ == "__main__":
    case.main()
