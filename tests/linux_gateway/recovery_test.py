# SPDX-License-Identifier: MIT
"""What happens to the rules when somebody else removes them, and to the state when the agent is killed."""
import collections
import fcntl
import json
import os
import random
import re
import time

import case
import namespaces
import network
from agent import NOBODY
from network import until

KILLS = 100 if os.environ.get("WHOLE_TESTS") else 10
SETTINGS = 12  # in a row, of which a kill interrupts one
LIMIT = {"DownLimit": "20000", "SpeedLimit": "1"}


class RecoveryTest(case.GatewayCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.first, cls.second = cls.network.clients

    def set_right(self, agent, right):
        agent.call("SET_ATTACH_DEVICE_RIGHT", MAC=self.first.mac.upper(), InternetAccessRight=right)

    def set_limit(self, agent, client):
        agent.call("SET_AD_BASE_INFO", MAC=client.mac.upper(), DevType="Other", ByName="x", AccessEnable="1", **LIMIT)

    def table(self):
        return self.network.gateway.run("nft -s list table inet linux_gateway", check=False) or \
            self.network.gateway.run("nft -s list table bridge linux_gateway", check=False)

    def queues(self):
        shown = [self.network.gateway.run(f"tc {what} show dev br-lan") for what in ("qdisc", "class", "filter")]
        return re.sub(r"direct_packets_stat \d+|(?<=bfifo )\w+:|(?<=leaf )\w+:", "", "".join(shown))

    def await_put_back(self, agent, read, removed):
        wanted = read()
        self.assertNotEqual(wanted, "")
        began = time.monotonic()
        self.network.gateway.run(removed)
        until(lambda: read() == wanted, "what was removed")
        print(f"after {removed}: {time.monotonic() - began:.3f} s")
        return agent.await_log("put back")

    def test_rules_that_are_removed_are_put_back(self):
        agent = self.agent()
        self.set_right(agent, "DENY")
        self.addCleanup(self.network.gateway.run, "nft -f -", input=network.USERS_RULES)
        for removed in ("nft flush ruleset", "nft delete table inet linux_gateway", "nft flush ruleset"):
            with self.subTest(removed=removed):
                self.await_put_back(agent, self.table, removed)
                self.assertTrue(self.first.misses(network.SERVER))

    def test_a_queueing_root_that_is_removed_is_put_back(self):
        agent = self.agent()
        self.set_limit(agent, self.second)
        self.await_put_back(agent, self.queues, "tc qdisc delete dev br-lan root")

    def test_a_bridge_that_is_made_again(self):
        agent = self.agent()
        self.set_limit(agent, self.second)
        wanted = self.queues()
        gateway = self.network.gateway
        gateway.run("ip link delete br-lan")
        for command in ("ip link add br-lan type bridge forward_delay 0",
                        f"ip address add {network.LAN_ADDRESS}/24 dev br-lan",
                        f"ip address add {network.LAN_ADDRESS6}/64 dev br-lan nodad", "ip link set br-lan up",
                        "ip link set lan1 master br-lan", "ip link set lan2 master br-lan"):
            gateway.run(command)
        until(lambda: self.queues() == wanted, "the limit")
        until(lambda: self.first.reaches(network.LAN_ADDRESS), "the LAN")
        until(lambda: agent.host(self.first)["NetStatus"] == "1", "the hosts")

    def kernel_blocks(self):
        return self.first.mac in self.table()

    def setting(self, generator):
        """A command with its parameters, and what it changes."""
        client = generator.choice(self.network.clients)
        allowed = generator.choice("01")
        if (kind := generator.randrange(4)) == 0:
            name = f"name {generator.randrange(10000)}"
            return "SET_HG_BASE_INFO", {"Name": name}, {"name": name}
        if kind == 1:
            return "SET_GREENNET_ENABLE", {"Enable": allowed}, {"green_net": allowed == "1"}
        mac = client.mac
        changed = {(mac, "blocked"): allowed == "0"}
        if kind == 2:
            right = "ALLOW" if allowed == "1" else "DENY"
            return "SET_ATTACH_DEVICE_RIGHT", {"MAC": mac.upper(), "InternetAccessRight": right}, changed
        limit, alias = generator.choice((0, 1500, 20000)), f"alias {generator.randrange(10000)}"
        return ("SET_AD_BASE_INFO", {"MAC": mac.upper(), "DevType": "Other", "ByName": alias, "AccessEnable": allowed,
                                     "DownLimit": str(limit), "SpeedLimit": "1"},
                changed | {(mac, "down_limit_kbps"): limit, (mac, "alias"): alias})

    def stored(self, agent):
        """What the settings have changed, in the state file; and whether periods are in force."""
        state = json.loads(agent.state.read_text(encoding="utf-8"))
        hosts = {host["mac"].lower(): host for host in state["hosts"]}
        values = {(client.mac, key): hosts.get(client.mac, {}).get(key, none) for client in self.network.clients
                  for key, none in (("blocked", False), ("down_limit_kbps", 0), ("alias", ""))}
        return ({"name": state["name"], "green_net": state["green_net"], **values},
                state["green_net"] and state["access_restricted"] and state["green_hosts"][0]["protected"])

    def check_kernel(self, stored, has_periods):
        blocked = {client.mac for client in self.network.clients if stored[client.mac, "blocked"]}
        if has_periods:
            blocked.add(self.second.mac)
        for family in ("inet", "bridge"):
            table = self.network.gateway.run(f"nft list table {family} linux_gateway", check=False)
            self.assertEqual(set(re.findall(r"(?:[0-9a-f]{2}:){5}[0-9a-f]{2}", table)), blocked, table)
        classes = self.network.gateway.run("tc class show dev br-lan")
        rates = {"1500Kbit": 1500, "20Mbit": 20000}
        limits = [limit for client in self.network.clients if (limit := stored[client.mac, "down_limit_kbps"])]
        self.assertEqual(sorted(rates[rate] for rate in re.findall(r"class htb .* rate (\w+)", classes)), sorted(limits),
                         classes)

    def kill_within(self, agent, settings, moment):
        """Sends the settings, and kills the agent at the moment; how many it has acknowledged."""
        for command, params, _ in settings:
            agent.send(command, params)
        time.sleep(moment)
        agent.process.kill()
        answers = [json.loads(line) for line in agent.process.stdout.read().split("\n")[:-1]]
        agent.close_pipes()
        self.assertEqual({answer["reply"].get("Status", "0") for answer in answers if "id" in answer} - {"0"}, set(), answers)
        return sum("id" in answer for answer in answers)

    def test_a_kill_loses_no_setting_that_was_acknowledged(self):
        """At moments all over the time that several settings take; KILL_SEED gives others."""
        seed = os.environ.get("KILL_SEED", "17")
        generator = random.Random(seed)
        agent = self.agent()
        agent.call("SET_GREENNET_ENABLE", Enable="1")
        agent.call("SET_GREENNET_DEVICE_LIST",
                   DeviceList=[{"Mac": self.second.mac.upper(), "Name": "Jonas", "NotifyEnable": "1"}])
        agent.call("SET_GREENNET_PROTECT_PERIOD_LIST", Mac=self.second.mac.upper(), Sleep=[
            {"StartTime": "00:00", "EndTime": "00:00", "Enable": "1", "DaysOfWeek": "1234567"}])
        before, has_periods = self.stored(agent)
        self.assertTrue(has_periods)
        began = time.monotonic()
        for command, params, changed in (trial := [self.setting(generator) for _ in range(SETTINGS)]):
            agent.call(command, **params)
            before |= changed
        longest = time.monotonic() - began
        counts = collections.Counter()
        for number in range(KILLS):
            settings = [self.setting(generator) for _ in range(len(trial))]
            acknowledged = self.kill_within(agent, settings, generator.uniform(0, longest))
            for _, _, changed in settings[:acknowledged]:
                before |= changed
            after = before | (settings[acknowledged][2] if acknowledged < len(settings) else {})
            agent.start()
            agent.call("GET_SN_INFO")
            stored, has_periods = self.stored(agent)
            with self.subTest(seed=seed, number=number, acknowledged=acknowledged):
                for key, value in stored.items():
                    self.assertIn(value, (before[key], after[key]), key)
                self.check_kernel(stored, has_periods)
                if stored["name"]:
                    self.assertEqual(agent.call("GET_HG_BASE_INFO")["Name"], stored["name"])
                self.assertEqual([path.name for path in agent.folder.glob("*.damaged*")], [])
            counts["acknowledged"] += acknowledged
            counts["done without an answer"] += before != after and stored == after
            counts["not done"] += before != after and stored == before
            before = stored
        print(f"{KILLS} kills: {dict(counts)}")

    # ---- A second process ------------------------------------------------------------------------

    def right(self, agent):
        rights = {entry["MAC"]: entry["InternetAccessRight"] for entry in agent.call("GET_ATTACH_DEVICE_RIGHT")["MACList"]}
        return rights[self.first.mac.upper()]

    def test_a_second_agent_only_reads(self):
        agent = self.agent()
        self.set_right(agent, "DENY")
        second = agent.run("call", "SET_HG_BASE_INFO", "Name=second")
        self.assertEqual(second.returncode, 1)
        self.assertIn("another process", second.stderr)
        self.assertIn('"Status":"0"', agent.run("call", "GET_AD_BASE_INFO").stdout)
        self.assertTrue(self.kernel_blocks())

    def test_a_second_agent_reads_what_the_first_has_set(self):
        first = self.agent()
        first.call("GET_SN_INFO")
        second = self.agent()
        for right in ("DENY", "ALLOW"):
            self.set_right(first, right)
            until(lambda: self.right(second) == right, f"the right {right}")

    def test_a_second_agent_takes_over_when_the_first_ends(self):
        first = self.agent()
        self.set_right(first, "DENY")
        second = self.agent(words=("--log-level", "6", "serve", "--reasons"))
        second.await_log("another process controls this gateway")
        first.kill()
        second.await_log("this process controls the gateway from now on")
        self.assertEqual(self.right(second), "DENY")
        self.assertTrue(self.kernel_blocks())
        self.await_put_back(second, self.table, "nft delete table inet linux_gateway")
        first.start()
        self.assertIn("another process", first.refusal("SET_HG_BASE_INFO", Name="first"))
        self.set_limit(second, self.second)
        self.assertEqual(second.close(), 0)
        until(lambda: first.ask("SET_HG_BASE_INFO", Name="first")["reply"]["Status"] == "0", "the first to take over", every=0.2)
        stored, _ = self.stored(first)
        self.assertEqual((stored[self.first.mac, "blocked"], stored[self.second.mac, "down_limit_kbps"]), (True, 20000))
        until(self.kernel_blocks, "the rules, which the second has removed")

    def test_a_process_of_one_command_does_not_keep_a_worker_from_setting(self):
        """The worker is started again while a short process has the state file."""
        state = self.own / "agent" / "state.json"
        worker = self.agent(started=False)
        with state.with_name("state.json.lock").open("w", encoding="ascii") as lock:
            if namespaces.may_change_users():
                os.chown(lock.name, NOBODY, NOBODY)
            fcntl.flock(lock, fcntl.LOCK_EX)
            worker.start()
            self.assertIn("another process", worker.refusal("SET_HG_BASE_INFO", Name="x"))
        until(lambda: worker.ask("SET_HG_BASE_INFO", Name="x")["reply"]["Status"] == "0", "the worker to take over", every=0.2)


if __name__ == "__main__":
    case.main()
