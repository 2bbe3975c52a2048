# SPDX-License-Identifier: MIT
"""What happens to the rules when somebody else removes them, and to the state when the agent is killed."""
import json
import os
import random
import re
import time

import case
import network
from network import until

KILLS = 100 if os.environ.get("WHOLE_TESTS") else 10
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

    def test_a_kill_leaves_old_or_new(self):
        """At moments all over the time that a setting takes, and a little longer."""
        chance = random.Random(17)
        agent = self.agent()
        self.set_right(agent, "ALLOW")
        began = time.monotonic()
        for right in ("DENY", "ALLOW") * 5:
            self.set_right(agent, right)
        longest = (time.monotonic() - began) / 10 * 1.3
        right = "ALLOW"
        old_and_new = {True: 0, False: 0}
        for number in range(KILLS):
            wanted = "ALLOW" if right == "DENY" else "DENY"
            name = f"name {number}"
            agent.send("SET_ATTACH_DEVICE_RIGHT", {"MAC": self.first.mac.upper(), "InternetAccessRight": wanted})
            time.sleep(chance.uniform(0, longest))
            agent.kill()
            agent.start()
            state = json.loads(agent.state.read_text(encoding="utf-8"))
            rights = {entry["MAC"]: entry["InternetAccessRight"]
                      for entry in agent.call("GET_ATTACH_DEVICE_RIGHT")["MACList"]}
            now = rights[self.first.mac.upper()]
            with self.subTest(number=number, before=right, wanted=wanted, now=now):
                self.assertIn(now, (right, wanted))
                self.assertEqual(self.kernel_blocks(), now == "DENY", self.table())
                self.assertIsInstance(state, dict)
                self.assertEqual([path.name for path in agent.folder.glob("*.damaged*")], [])
            old_and_new[now == wanted] += 1
            right = now
            agent.call("SET_HG_BASE_INFO", Name=name)
            self.assertEqual(agent.call("GET_HG_BASE_INFO")["Name"], name)
        print(f"{KILLS} kills: {old_and_new[False]} times the old, {old_and_new[True]} times the new")

    def test_a_second_agent_only_reads(self):
        agent = self.agent()
        self.set_right(agent, "DENY")
        second = agent.run("call", "SET_HG_BASE_INFO", "Name=second")
        self.assertEqual(second.returncode, 1)
        self.assertIn("another process", second.stderr)
        self.assertIn('"Status":"0"', agent.run("call", "GET_AD_BASE_INFO").stdout)
        self.assertTrue(self.kernel_blocks())


if __name__ == "__main__":
    case.main()
