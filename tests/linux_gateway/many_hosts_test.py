# SPDX-License-Identifier: MIT
"""A home with a hundred hosts, and neighbours that nobody would want."""
import json
import os
import random
import subprocess

import case
import network
from network import until

HOSTS = 100


class ManyHostsTest(case.GatewayCase):
    CLIENTS = 1

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        crowd = cls.crowd = cls.network.client(2)
        # Many devices on one network answer only for their own addresses.
        crowd.run("sysctl -qw net.ipv4.conf.all.arp_ignore=1 net.ipv4.conf.all.arp_announce=2 "
                  "net.ipv4.conf.all.rp_filter=0 net.ipv6.conf.all.disable_ipv6=1 net.ipv6.conf.default.disable_ipv6=1")
        crowd.run(["sh", "-c", f"for n in $(seq {HOSTS}); do echo link add h$n link eth0 address "
                   f"$(printf 02:00:5e:20:00:%02x $n) type macvlan mode bridge; echo link set h$n up; done | ip -batch -"])
        cls.lease_all()

    @classmethod
    def lease_all(cls):
        script = cls.folder / "address.sh"
        script.write_text('#!/bin/sh\n[ "$1" = bound ] && ip address add "$ip/24" dev "$interface" && '
                          'ping -n -q -c 1 -W 1 -I "$interface" 192.168.8.1 >/dev/null\nexit 0\n', encoding="ascii")
        script.chmod(0o755)
        cls.crowd.run(["sh", "-c", f"for n in $(seq {HOSTS}); do busybox udhcpc -q -n -f -t 20 -T 1 -i h$n -s {script} "
                       "-x hostname:host-$n & done; wait"])

    def test_a_hundred_hosts(self):
        agent = self.agent()
        hosts = agent.hosts()
        self.assertIn(len(hosts), (HOSTS + 1, HOSTS + 2))  # the last is the device below those of the hosts
        for number in range(1, HOSTS + 1):
            host = hosts[f"02:00:5E:20:00:{number:02X}"]
            self.assertEqual((host["Name"], host["NetStatus"]), (f"host-{number}", "1"))
        self.assertEqual(len({host["ip"] for host in hosts.values()}), len(hosts))
        self.assertEqual(agent.call("HG_RESOURCE_INSPECTION")["LanDevNum"], str(len(hosts)))
        self.assertEqual(len(agent.call("GET_TSLINK_TOPOLOGY_INFO")["MainRouter"]["MainBaseInfo"]), 32)
        listed = agent.run("hosts")
        self.assertEqual(len([line for line in listed.stdout.splitlines() if "host-" in line]), HOSTS, listed)

    def test_settings_for_all_of_them(self):
        agent = self.agent()
        macs = [f"02:00:5E:20:00:{number:02X}" for number in range(1, HOSTS + 1)]
        set_ones = macs if os.environ.get("WHOLE_TESTS") else macs[:20]
        for mac in set_ones:
            agent.call("SET_AD_BASE_INFO", MAC=mac, DevType="Other", ByName="a" * 31, AccessEnable="0", DownLimit="1000",
                       SpeedLimit="1")
        self.assertEqual({host["AccessEnable"] for mac, host in agent.hosts().items() if mac in set_ones}, {"0"})
        devices = macs[:64]
        agent.call("SET_GREENNET_DEVICE_LIST",
                   DeviceList=[{"Mac": mac, "Name": "x", "NotifyEnable": "1"} for mac in devices])
        self.assertEqual(sorted(entry["Mac"] for entry in agent.call("GET_GREENNET_DEVICE_LIST")["DeviceList"]), devices)
        agent.refusal("SET_GREENNET_DEVICE_LIST",
                      DeviceList=[{"Mac": mac, "Name": "x", "NotifyEnable": "1"} for mac in macs[:65]])
        agent.kill()
        agent.start()
        self.assertEqual({host["AccessEnable"] for mac, host in agent.hosts().items() if mac in set_ones}, {"0"})
        client = self.network.clients[0]
        self.assertTrue(client.reaches(network.SERVER))

    def test_thousands_of_neighbours(self):
        """A host that claims addresses by the thousand must not hide the others, nor stop anything."""
        gateway = self.network.gateway
        generator = random.Random(5)
        lines = [f"neighbour replace 192.168.{8 + number % 2}.{number % 250 + 2} dev br-lan nud stale lladdr "
                 f"02:{generator.randrange(256):02x}:{generator.randrange(256):02x}:00:{number >> 8:02x}:{number & 255:02x}"
                 for number in range(400)]
        lines += [f"neighbour replace 2001:db8:8::{number:x} dev br-lan nud stale lladdr "
                  f"06:00:00:00:{number >> 8:02x}:{number & 255:02x}" for number in range(0x1000, 0x1000 + 400)]
        gateway.run("sysctl -qw net.ipv4.neigh.default.gc_thresh3=16384 net.ipv6.neigh.default.gc_thresh3=16384",
                    check=False)
        subprocess.run(gateway.words("ip -batch -"), input="\n".join(lines), text=True, check=True)
        self.addCleanup(gateway.run, "ip neighbour flush dev br-lan")
        agent = self.agent()
        hosts = agent.hosts()
        self.assertLessEqual(len(hosts), 2000)
        self.assertEqual(hosts[self.network.clients[0].mac.upper()]["Name"], "client1")
        json.dumps(agent.call("GET_ATTACH_DEVICE_RIGHT"))


if __name__ == "__main__":
    case.main()
