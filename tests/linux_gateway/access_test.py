# SPDX-License-Identifier: MIT
"""Who may reach the Internet: blocks and their limits, and what they leave alone."""
import os
import pathlib
import re
import subprocess
import time

import case
import namespaces
import network
from network import until


def received(client):
    """Bytes that the client has received."""
    return int(client.run("cat /sys/class/net/eth0/statistics/rx_bytes"))


class AccessTest(case.GatewayCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.network.internet.start(["socat", "TCP6-LISTEN:9000,ipv6only=0,fork,reuseaddr",
                                    "SYSTEM:while head -c 20000 /dev/zero; do sleep 0.01; done"], stderr=subprocess.DEVNULL)
        cls.first, cls.second = cls.network.clients
        for client in cls.network.clients:
            until(lambda: client.works(f"socat -u /dev/null TCP:{network.SERVER}:9000"), "the server")

    def download(self, client, server):
        download = client.start(["socat", "-u", f"TCP:{server}:9000", "OPEN:/dev/null"])
        self.addCleanup(download.wait)
        self.addCleanup(download.kill)

    def grows(self, client):
        """Whether the client's download goes on."""
        before = received(client)
        time.sleep(0.3)
        # A blocked client still gets what the gateway itself sends: announcements, and questions for its address.
        return received(client) - before > 20000

    def check_block(self, agent, block, allow):
        for client in self.network.clients:
            self.download(client, network.SERVER)
            self.download(client, f"[{network.SERVER6}]")
            until(lambda: self.grows(client), "the download to begin")
        block()
        self.assertEqual((self.grows(self.first), self.grows(self.second)), (False, True))
        for server in (network.SERVER, network.SERVER6):
            self.assertTrue(self.first.misses(server))
            self.assertTrue(self.second.reaches(server))
        # The LAN stays.
        self.assertTrue(self.first.reaches(network.LAN_ADDRESS))
        self.assertTrue(self.first.reaches(self.second.address()))
        self.assertEqual(agent.host(self.first)["AccessEnable"], "0")
        self.assertEqual(self.rights(agent), {"client1": "DENY", "client2": "ALLOW"})
        allow()
        self.assertTrue(self.first.reaches(network.SERVER))
        self.assertTrue(self.first.reaches(network.SERVER6))
        until(lambda: self.grows(self.first), "the download to go on")
        self.assertEqual(agent.host(self.first)["AccessEnable"], "1")

    def rights(self, agent):
        return {entry["name"]: entry["InternetAccessRight"] for entry in agent.call("GET_ATTACH_DEVICE_RIGHT")["MACList"]}

    def set_right(self, agent, client, right):
        agent.call("SET_ATTACH_DEVICE_RIGHT", MAC=client.mac.upper(), InternetAccessRight=right)

    def base(self, client, access="1", **more):
        return {"MAC": client.mac.upper(), "DevType": "Tablet", "ByName": "Tablet of Jonas", "AccessEnable": access, **more}

    def test_a_right_that_is_denied(self):
        agent = self.agent()
        self.check_block(agent, lambda: self.set_right(agent, self.first, "DENY"),
                         lambda: self.set_right(agent, self.first, "ALLOW"))

    def test_access_that_is_switched_off(self):
        agent = self.agent()
        self.check_block(agent, lambda: agent.call("SET_AD_BASE_INFO", **self.base(self.first, "0")),
                         lambda: agent.call("SET_AD_BASE_INFO", **self.base(self.first)))
        self.assertEqual(agent.host(self.first)["ByName"], "Tablet of Jonas")
        self.assertEqual(agent.host(self.first)["DevType"], "Tablet")

    def test_another_address_does_not_help(self):
        agent = self.agent()
        self.set_right(agent, self.first, "DENY")
        self.first.run("ip address add 192.168.8.77/24 dev eth0")
        self.addCleanup(self.first.run, "ip address delete 192.168.8.77/24 dev eth0")
        self.assertFalse(self.first.works(f"ping -n -c 1 -W 0.3 -I 192.168.8.77 {network.SERVER}"))

    def test_a_block_is_in_force_after_a_restart(self):
        agent = self.agent()
        self.set_right(agent, self.first, "DENY")
        agent.kill()
        self.assertTrue(self.first.misses(network.SERVER))
        self.network.gateway.run("nft flush ruleset")
        self.network.gateway.run("nft -f -", input=network.USERS_RULES)
        self.assertTrue(self.first.reaches(network.SERVER))
        agent.start()
        agent.call("GET_SN_INFO")
        self.assertTrue(self.first.misses(network.SERVER))
        self.assertTrue(self.second.reaches(network.SERVER))

    def test_the_management_host_is_never_blocked(self):
        for named in (self.first.address(), self.first.mac):
            with self.subTest(named=named):
                agent = self.agent({"management_host": named})
                reasons = agent.refusal("SET_ATTACH_DEVICE_RIGHT", MAC=self.first.mac.upper(), InternetAccessRight="DENY")
                self.assertIn("manages this gateway", reasons)
                self.assertIn("manages this gateway", agent.refusal("SET_AD_BASE_INFO", **self.base(self.first, "0")))
                self.assertTrue(self.first.reaches(network.SERVER))
                self.assertEqual(agent.host(self.first)["AccessEnable"], "1")
                self.set_right(agent, self.second, "DENY")
                self.assertTrue(self.second.misses(network.SERVER))
                self.set_right(agent, self.second, "ALLOW")
                agent.close()

    def test_a_blocked_host_that_turns_out_to_be_the_management_host(self):
        address = "2001:db8:8::77"
        agent = self.agent({"management_host": address})
        self.set_right(agent, self.first, "DENY")
        self.assertTrue(self.first.misses(network.SERVER))
        self.first.run(f"ip address add {address}/64 dev eth0 nodad")
        self.addCleanup(self.first.run, f"ip address delete {address}/64 dev eth0")
        self.first.run(f"ping -n -c 1 -w 5 -I {address} {network.LAN_ADDRESS6}")
        network.until(lambda: agent.call("GET_SN_INFO") and not self.first.misses(network.SERVER), "access")

    def picture(self):
        """What belongs to the machine's user."""
        gateway = self.network.gateway
        return [gateway.run(command) for command in (
            "nft -s list table ip nat", "ip -o address show", "ip route show", "ip -6 route show", "ip rule show",
            "ip -o link show")]

    def kernel(self):
        return self.network.gateway.run("nft -s list ruleset"), self.network.gateway.run("tc qdisc show"), \
            self.network.gateway.run("tc filter show dev br-lan")

    def without_lifetimes(self, picture):
        return [re.sub(r"(valid_lft|preferred_lft|expires|promiscuity) \S+", "", text).replace("qdisc htb", "qdisc noqueue")
                for text in picture]

    def test_nothing_else_is_touched_and_no_trace_is_left(self):
        before, kernel = self.picture(), self.kernel()
        agent = self.agent()
        self.set_right(agent, self.first, "DENY")
        agent.call("SET_AD_BASE_INFO", **self.base(self.second, DownLimit="20000", SpeedLimit="1"))
        self.assertEqual(self.without_lifetimes(self.picture()), self.without_lifetimes(before))
        self.assertNotEqual(self.kernel(), kernel)
        self.assertEqual(agent.close(), 0)
        self.assertEqual(self.kernel(), kernel)
        self.assertEqual(self.without_lifetimes(self.picture()), self.without_lifetimes(before))

    def test_it_runs_with_two_capabilities_and_without_children(self):
        agent = self.agent()
        self.set_right(agent, self.first, "DENY")
        for command in ("GET_AD_BASE_INFO", "LINK_CHECK", "GET_UPDATE_STATUS", "HG_RESOURCE_INSPECTION"):
            agent.call(command)
        process = pathlib.Path(f"/proc/{agent.process.pid}")
        status = dict(line.split(":\t", 1) for line in (process / "status").read_text(encoding="utf-8").splitlines())
        for capabilities in ("CapInh", "CapPrm", "CapEff", "CapBnd", "CapAmb"):
            self.assertEqual(int(status[capabilities], 16), 0x3000, capabilities)  # CAP_NET_ADMIN, CAP_NET_RAW
        self.assertEqual(status["NoNewPrivs"], "1")
        if namespaces.may_change_users():
            self.assertEqual(status["Uid"].split(), ["65534"] * 4)
        for thread in (process / "task").iterdir():
            self.assertEqual((thread / "children").read_text(encoding="ascii"), "")

    def test_hostile_settings(self):
        agent = self.agent()
        for mac in ("", "NULL", "02:00:5e:10:00", "02:00:5e:10:00:01:02", "zz:00:5e:10:00:01", "ff:ff:ff:ff:ff:ff",
                    "00:00:00:00:00:00", "01:00:5e:00:00:01", "192.168.8.100", "a" * 4000, "02:00:5e:10:00:01\n",
                    '"; flush ruleset; "'):
            for command, parameters in (("SET_ATTACH_DEVICE_RIGHT", {"MAC": mac, "InternetAccessRight": "DENY"}),
                                        ("SET_AD_BASE_INFO", {**self.base(self.first, "0"), "MAC": mac})):
                with self.subTest(mac=mac[:30], command=command):
                    agent.refusal(command, **parameters)
        for right in ("", "NULL", "MAYBE", "DENY ", "x" * 4000):
            agent.refusal("SET_ATTACH_DEVICE_RIGHT", MAC=self.first.mac, InternetAccessRight=right)
        for limit in ("-2", "1.5", "x", "99999999999999999999", " 5", "0x10"):
            agent.refusal("SET_AD_BASE_INFO", **self.base(self.first, DownLimit=limit, SpeedLimit="1"))
        self.assertEqual(self.rights(agent), {"client1": "ALLOW", "client2": "ALLOW"})
        self.assertTrue(self.first.reaches(network.SERVER))

    def test_a_full_disk_changes_nothing(self):
        agent = self.agent(started=False)
        full = self.own / "full"
        full.mkdir()
        subprocess.run(["mount", "-t", "tmpfs", "-o", "size=8k,mode=777", "full", str(full)], check=True)
        self.addCleanup(subprocess.run, ["umount", "-l", str(full)], check=True)
        agent.configure({"lan_bridge": "br-lan", "wan_port": "wan0", "lease_file": str(self.network.leases),
                         "state": str(full / "state.json"), "remove_at_exit": True})
        agent.start()
        agent.call("SET_HG_BASE_INFO", Name="before")
        (full / "filler").write_bytes(b"x" * 4096)
        self.assertIn("No space left", agent.refusal("SET_ATTACH_DEVICE_RIGHT", MAC=self.first.mac, InternetAccessRight="DENY"))
        self.assertTrue(self.first.reaches(network.SERVER))
        self.assertEqual(self.rights(agent)["client1"], "ALLOW")
        (full / "filler").unlink()
        self.set_right(agent, self.first, "DENY")
        self.assertTrue(self.first.misses(network.SERVER))

    def test_a_damaged_state_is_kept_aside(self):
        damages = [b"", b'{"hosts": 5}', b"{", b"\xff\xfe", b"[]", b'{"name": "' + b"x" * 100000, b"null", b"\0" * 100]
        for damage in damages if os.environ.get("WHOLE_TESTS") else damages[:2]:
            with self.subTest(damage=damage[:20]):
                agent = self.agent(started=False)
                agent.state.write_bytes(damage)
                os.chown(agent.state, *([os.stat(agent.folder).st_uid] * 2))
                agent.start()
                agent.call("GET_SN_INFO")
                self.set_right(agent, self.first, "DENY")
                self.assertTrue(self.first.misses(network.SERVER))
                self.set_right(agent, self.first, "ALLOW")
                kept = [path for path in agent.folder.iterdir() if path.name.startswith("state.json.damaged")
                        and path.read_bytes() == damage]
                self.assertEqual(len(kept), 1, list(agent.folder.iterdir()))
                self.assertIn("state.json", agent.await_log("is damaged"))
                self.assertEqual(agent.close(), 0)
                for path in agent.folder.glob("state.json*"):
                    path.unlink()


if __name__ == "__main__":
    case.main()
