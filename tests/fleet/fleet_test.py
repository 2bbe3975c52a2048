# SPDX-License-Identifier: MIT
"""The gateways of `hgagent fleet` on real brokers: who they are, what becomes of them, and what a fleet refuses.

  fleet_test.py HGAGENT [TEST...]"""
import json
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent.parent / "broker"))
import brokers  # noqa: E402  # pylint: disable=wrong-import-position
import caller  # noqa: E402  # pylint: disable=wrong-import-position
import fleets  # noqa: E402  # pylint: disable=wrong-import-position

HGAGENT = None

# With this seed and number the power is lost 3 s after the start, for 2 s.
LOSES_POWER = {"seed": 336, "number": 195}
# With these the device library crashes in the function behind the command.
CRASHES = {"seed": 1, "number": 1471, "command": "GET_HG_BASE_INFO"}


class FleetCase(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def broker(self, settings="", listener=""):
        broker = brokers.Mosquitto(self.folder / "broker", settings, listener)
        self.addCleanup(broker.close)
        return broker

    def fleet(self, broker, count, *options, **more):
        fleet = fleets.Fleet(HGAGENT, self.folder, broker, count, *options, **more)
        self.addCleanup(fleet.close)
        return fleet

    def gateway(self, broker, name):
        connection = caller.Caller([broker.port.number], gateway=name, name=f"for-{name}")
        self.addCleanup(connection.close)
        return connection

    def refused(self, *options, before=()):
        """The last message and the exit status of a fleet that does not start."""
        done = subprocess.run([*before, HGAGENT, "fleet", *map(str, options)], stderr=subprocess.PIPE, text=True,
                              check=False)
        lines = done.stderr.strip().splitlines()
        return lines[0 if lines[-1].startswith("Run with --help") else -1], done.returncode


class LifeTest(FleetCase):
    def test_gateways_differ_and_come_back_the_same(self):
        broker = self.broker()
        before = None
        for _ in range(2):
            fleet = self.fleet(broker, 3, "--first", 17, "--scenario", "single_router,operator_variant", "--seed", 5)
            fleet.await_up()
            macs = [self.gateway(broker, f"home-{number}").ask("GET_SN_INFO").body["reply"]["MAC"]
                    for number in (17, 18, 19)]
            self.assertEqual(len(set(macs)), 3)
            self.assertEqual(before or macs, macs)
            before = macs
            self.assertEqual(sorted(fleet.gateways()), ["home-17", "home-18", "home-19"])
            self.assertEqual(fleet.end(), 0)

    def test_everything_is_allowed_on_this_machine(self):
        broker = self.broker()
        self.fleet(broker, 1).await_up()
        gateway = self.gateway(broker, "home-1")
        self.assertEqual(gateway.ask("SET_HG_BASE_INFO", {"Name": "changed"}).body["result"], 0)
        self.assertEqual(gateway.ask("GET_HG_BASE_INFO").body["reply"]["Name"], "changed")

    def test_orderly_end_is_announced(self):
        broker = self.broker()
        fleet = self.fleet(broker, 2)
        fleet.await_up()
        watcher = self.gateway(broker, "home-1")
        watcher.subscribe("gateway/+/state")
        self.await_states(watcher, True)
        self.assertEqual(fleet.end(signal.SIGINT), 0)
        self.await_states(watcher, False)

    def await_states(self, watcher, online):
        """Returns when both gateways have published that state."""
        names = set()
        while names != {"home-1", "home-2"}:
            message = watcher.await_message(lambda message: message.topic.endswith("/state")
                                            and message.body["online"] == online)
            names.add(message.topic.split("/")[1])

    def test_dead_gateway_is_named_and_starts_again(self):
        fleet = self.fleet(self.broker(), 3)
        fleet.await_up()
        victim = fleet.gateways()["home-2"]
        os.kill(victim, signal.SIGKILL)
        self.assertRegex(fleet.await_line("home-2"), r"home-2 was killed by signal 9 \(Killed\); it starts again in ")
        while fleet.gateways().get("home-2", victim) == victim:
            time.sleep(0.05)
        fleet.await_metric(("hgfleet_restarts_total", "crash"), 1)
        fleet.await_metric(("hgfleet_gateways", "up"), 3)

    def test_gateways_end_with_the_fleet(self):
        fleet = self.fleet(self.broker(), 3)
        fleet.await_up()
        processes = fleet.gateways().values()
        self.assertEqual(len(processes), 3)
        fleet.end(signal.SIGKILL)
        while not all(map(fleets.has_gone, processes)):
            time.sleep(0.05)

    def test_all_come_back_after_the_broker(self):
        broker = self.broker()
        fleet = self.fleet(broker, 5, "--reconnect-spread", 2)
        fleet.await_up()
        broker.stop()
        broker.start()
        self.assertIn("5 of 5 gateways are up again after", fleet.await_line("again"))
        fleet.await_metric("hgfleet_lost_connections_total", 5)

    def test_metrics_that_cannot_be_written_are_reported(self):
        fleet = self.fleet(self.broker(), 1, metrics="none/metrics")
        self.assertTrue(fleet.await_line("cannot write").endswith("none/metrics: No such file or directory"))
        (self.folder / "none").mkdir()
        while not fleet.metrics_file.exists():
            time.sleep(0.05)

    @unittest.skipUnless("WHOLE_TESTS" in os.environ, "takes the 40 seconds that a command may take")
    def test_hung_gateway_is_killed(self):
        broker = self.broker()
        fleet = self.fleet(broker, 1, before=["--fault", "devapi_get_sn_info=0@3600000ms"])
        fleet.await_up()
        self.gateway(broker, "home-1").publish("gateway/home-1/command/GET_SN_INFO", b"{}")
        self.assertIn("home-1 hung in GET_SN_INFO and was killed; it starts again in ", fleet.await_line("hung"))

    def test_crash_is_named_with_its_command(self):
        broker = self.broker()
        fleet = self.fleet(broker, 1, before=["--fault", "devapi_get_sn_info=crash"])
        fleet.await_up()
        self.gateway(broker, "home-1").publish("gateway/home-1/command/GET_SN_INFO", b"{}")
        self.assertRegex(fleet.await_line("home-1 was"), r"home-1 was killed by signal 6 \(Aborted\) in GET_SN_INFO;")

    def test_rubbish_is_survived(self):
        broker = self.broker()
        fleet = self.fleet(broker, 1, before=["--fault", "devapi_get_hg_base_info=rubbish"])
        fleet.await_up()
        gateway = self.gateway(broker, "home-1")
        self.assertEqual(gateway.ask("GET_HG_BASE_INFO").body["result"], 0)
        self.assertEqual(fleet.metrics()["hgfleet_restarts_total", "crash"], 0)


class StatesTest(FleetCase):
    def setUp(self):
        super().setUp()
        self.states = self.folder / "states"

    def test_settings_survive_gateway_and_fleet(self):
        broker = self.broker()
        fleet = self.fleet(broker, 2, "--states", self.states)
        fleet.await_up()
        gateway = self.gateway(broker, "home-2")
        self.assertEqual(gateway.ask("SET_HG_BASE_INFO", {"Name": "kept"}).body["result"], 0)
        os.kill(fleet.gateways()["home-2"], signal.SIGKILL)
        fleet.await_line("home-2 was killed")
        self.assertEqual(gateway.ask("GET_HG_BASE_INFO").body["reply"]["Name"], "kept")
        self.assertEqual(fleet.end(), 0)
        self.fleet(broker, 2, "--states", self.states).await_up()
        self.assertEqual(gateway.ask("GET_HG_BASE_INFO").body["reply"]["Name"], "kept")

    def start(self, *options):
        return self.refused("--count", 1, "--broker", "mqtt://127.0.0.1:1", "--states", self.states, *options)

    def test_foreign_folder(self):
        self.states.mkdir()
        (self.states / "holiday.jpg").write_text("", encoding="ascii")
        self.assertEqual(self.start(), (f"hgagent: the folder of states {self.states} is not empty, and it is not that "
                                        "of a fleet", 4))

    def test_folder_that_is_not_described_yet(self):
        self.states.mkdir()
        (self.states / "fleet.lock").write_text("", encoding="ascii")
        self.fleet(self.broker(), 1, "--states", self.states).await_up()

    def test_folder_of_another_fleet(self):
        broker = self.broker()
        fleet = self.fleet(broker, 1, "--states", self.states)
        fleet.await_up()
        self.assertEqual(self.start(), (f"hgagent: the folder of states {self.states} is in use by another fleet", 4))
        fleet.end()
        for option, value, message in (("--seed", 2, "the seed 1, not 2"), ("--prefix", "h", 'the prefix "home", not "h"'),
                                       ("--scenario", "single_router",
                                        'the scenario "three_storey_house", not "single_router"')):
            self.assertEqual(self.start(option, value), (f"hgagent: the folder of states {self.states} is that of a "
                                                         f"fleet with {message}", 4))

    def test_damaged_folder(self):
        self.states.mkdir()
        (self.states / "fleet.json").write_text("[]", encoding="ascii")
        self.assertIn("has a fleet.json that is not a JSON object", self.start()[0])
        (self.states / "fleet.json").write_text("{}", encoding="ascii")
        self.assertIn("has no format in its fleet.json", self.start()[0])

    def test_no_folder(self):
        self.states.write_text("", encoding="ascii")
        self.assertIn("cannot be created", self.start()[0])

    def test_full_disk(self):
        """A file system of 64 KB, in a namespace of its own."""
        script = ('mount -t tmpfs -o size=64k none "$1" && shift && exec "$@"')
        self.states.mkdir()
        inside = ["unshare", "--user", "--map-root-user", "--mount", "sh", "-c", script, "sh", str(self.states)]
        message, status = self.refused("--count", 100, "--broker", "mqtt://127.0.0.1:1", "--states", self.states,
                                       before=inside)
        self.assertRegex(message, r"needs about 12 MB for 100 gateways, and its disk has 0 MB left")
        self.assertEqual(status, 4)

    def test_state_that_cannot_be_read(self):
        folder = self.states / "0"
        folder.mkdir(parents=True)
        (self.states / "fleet.json").write_text(
            json.dumps({"format": "hgagent fleet", "version": 1, "seed": 1, "prefix": "home",
                        "scenario": "three_storey_house"}), encoding="ascii")
        (folder / "home-1.json").write_text("{", encoding="ascii")
        message, status = self.start()
        self.assertRegex(message, r"no gateway can be started: .*home-1\.json")
        self.assertEqual(status, 4)


class ChurnTest(FleetCase):
    def test_power_is_lost_and_comes_back(self):
        broker = self.broker()
        fleet = self.fleet(broker, 1, "--churn", "--states", self.folder / "states", "--seed", LOSES_POWER["seed"],
                           "--first", LOSES_POWER["number"])
        name = f"home-{LOSES_POWER['number']}"
        fleet.await_up()
        before = fleet.gateways()[name]
        while fleet.gateways().get(name, before) == before:
            time.sleep(0.05)
        fleet.await_metric(("hgfleet_restarts_total", "power"), 1)
        self.assertEqual(self.gateway(broker, name).ask("GET_SN_INFO").body["result"], 0)
        state = self.folder / "states" / "0" / f"{name}.json"
        self.assertEqual(json.loads(state.read_text(encoding="utf-8"))["boot_count"], 2)
        self.assertEqual(fleet.metrics()["hgfleet_restarts_total", "crash"], 0)
        self.assertIn(f"fleet: {name} loses its power for ", fleet.log.read_text(encoding="utf-8"))

    def test_weak_library_crashes(self):
        broker = self.broker()
        name = f"home-{CRASHES['number']}"
        fleet = self.fleet(broker, 1, "--churn", "--states", self.folder / "states", "--seed", CRASHES["seed"],
                           "--first", CRASHES["number"])
        fleet.await_up()
        self.gateway(broker, name).publish(f"gateway/{name}/command/{CRASHES['command']}", b"{}")
        self.assertIn(f"(Aborted) in {CRASHES['command']}; ", fleet.await_line(f"{name} was killed"))


class BadInputTest(FleetCase):
    def test_options(self):
        local = ("--broker", "mqtt://127.0.0.1:1")
        for options, message in (
                (("--count", 1), "--broker is required"),
                (local, "--count is required"),
                (("--count", 0, *local), "--count"),
                (("--count", 1, "--broker", "nonsense"), "--broker: "),
                (("--count", 1, "--broker", "mqtt://broker.example"), "use mqtts://, or --insecure"),
                (("--count", 1, "--broker", "mqtts://broker.example"), "needs a --policy"),
                (("--count", 1, *local, "--churn"), "--churn needs --states"),
                (("--count", 1, *local, "--scenario", "a=x"), '--scenario: "x" is no weight'),
                (("--count", 1, *local, "--prefix", "a/b"), "--prefix: "),
                (("--count", 10, *local, "--prefix", "a" * 62), "--prefix: the id of a gateway has at most 64 bytes"),
                (("--count", 1, *local, "--prefix", "a" * 60, "--root", "b" * 90), "--prefix: the client identifier "),
                (("--count", 1, *local, "--root", "#"), "the root of the topics "),
                (("--count", 2, *local, "--first", 99999999), "the last number is 99999999")):
            with self.subTest(options):
                said, status = self.refused(*options)
                self.assertIn(message, said)
                self.assertEqual(status, 2)

    def test_unknown_scenario(self):
        message, status = self.refused("--count", 1, "--broker", "mqtt://127.0.0.1:1", "--scenario", "no_such")
        self.assertIn('there is no scenario "no_such"', message)
        self.assertEqual(status, 4)

    def test_policy_elsewhere(self):
        policy = self.folder / "policy.toml"
        policy.write_text("[roles.a]\nmembers = 7\n", encoding="ascii")
        message, status = self.refused("--count", 1, "--broker", "mqtts://broker.example", "--policy", policy)
        self.assertIn("policy.toml:2: ", message)
        self.assertEqual(status, 2)

    def test_too_few_descriptors(self):
        message, status = self.refused("--count", 1, "--broker", "mqtt://127.0.0.1:1",
                                       before=["sh", "-c", 'ulimit -n 24; exec "$@"', "sh"])
        self.assertEqual(message, "hgagent: a gateway needs 32 descriptors, and a process may have 24 (ulimit -n)")
        self.assertEqual(status, 4)

    def test_too_little_memory(self):
        message, status = self.refused("--count", 99999999, "--broker", "mqtt://127.0.0.1:1")
        self.assertRegex(message, r"99999999 gateways need about \d+ MB of memory, and \d+ MB are free: at most \d+")
        self.assertEqual(status, 4)

    def test_broker_refuses_some(self):
        broker = self.broker(listener="max_connections 4")
        fleet = self.fleet(broker, 8)
        # The broker takes one more where the test has looked whether it listens.
        self.assertRegex(fleet.await_line("no connection"), "[34] of 8 gateways have no connection, such as home-.: ")
        self.assertIn(fleet.metrics()["hgfleet_gateways", "up"], (4, 5))

    def test_no_broker(self):
        broker = self.broker()
        broker.stop()
        fleet = self.fleet(broker, 2)
        self.assertRegex(fleet.await_line("no connection"), "2 of 2 gateways have no connection.*Connection refused")
        broker.start()
        fleet.await_up()

    def test_two_fleets_with_the_same_gateways(self):
        broker = self.broker()
        self.fleet(broker, 3).await_up()
        other = self.fleet(broker, 3)
        self.assertIn("is another fleet with these numbers on the broker?", other.await_line("taken over"))
        self.assertRegex(other.log.read_text(encoding="utf-8"),
                         "home-.: .*; 3 times in a row soon after it was made: is there another client ")


if __name__ == "__main__":
    HGAGENT = sys.argv.pop(1)
    unittest.main()
