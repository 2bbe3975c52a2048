# SPDX-License-Identifier: MIT
"""What the gateway reports of the real system, compared with what the usual tools show."""
import json
import os
import pathlib
import time

import case
import network
from network import until


class ReadingTest(case.GatewayCase):
    def file(self, path):
        return self.network.gateway.run(["cat", path]).strip()

    def mac_of(self, device):
        return self.file(f"/sys/class/net/{device}/address").upper()

    def test_identity_is_that_of_the_bridge(self):
        agent = self.agent()
        self.assertEqual(agent.call("GET_SN_INFO")["MAC"], self.mac_of("br-lan"))
        self.assertEqual(agent.call("QUERY_SYSTEM_INFO")["IPV6"], "1")

    def test_base_information(self):
        agent = self.agent()
        base = agent.call("GET_HG_BASE_INFO")
        self.assertEqual((base["Mac"], base["ip"], base["LanIp"], base["WanGateWay"], base["Dns"], base["NetStatus"],
                          base["WiFiStatus1"], base["WanLinkMode"]),
                         (self.mac_of("br-lan"), network.LAN_ADDRESS, network.LAN_ADDRESS, network.WAN_GATEWAY,
                          network.NAME_SERVER, "1", "0", "Static"))
        uptime = float(self.file("/proc/uptime").split()[0])
        self.assertLess(abs(int(base["UpTime"]) - uptime), 10)
        self.assertTrue(0 <= int(base["Memory"]) <= 100 and 0 <= int(base["Cpu"]) <= 100, base)

    def test_name_is_kept_in_the_state(self):
        agent = self.agent()
        agent.call("SET_HG_BASE_INFO", Name="Lindenhof ä")
        agent.kill()
        agent.start()
        self.assertEqual(agent.call("GET_HG_BASE_INFO")["Name"], "Lindenhof ä")
        self.assertEqual(json.loads(agent.state.read_text(encoding="utf-8"))["name"], "Lindenhof ä")

    def test_home_page(self):
        page = self.agent().run("report", "home-page")
        self.assertEqual(page.returncode, 0, page.stderr)
        self.assertRegex(json.loads(page.stdout)["MemRate"], r"^\d+$")

    def test_lan_and_dhcp(self):
        agent = self.agent()
        lan = agent.call("GET_LAN_IP_INFO")
        self.assertEqual({key: lan[key] for key in ("GatewayLanIP", "SubnetMask", "StartIp", "EndIp")},
                         {"GatewayLanIP": "192.168.8.1", "SubnetMask": "255.255.255.0", "StartIp": "192.168.8.100",
                          "EndIp": "192.168.8.249"})
        self.assertEqual(agent.call("GET_HG_DHCP_INFO"), {
            "Status": "0", "Enable": "1", "IPAddress": "192.168.8.1", "SubNetMask": "255.255.255.0",
            "GateWay": "192.168.8.1"})

    def test_wan(self):
        agent = self.agent()
        self.assertEqual(agent.call("QUERY_WAN_NUM"), {"Status": "0", "NUM": "1", "Description": "Internet"})
        wan = agent.call("QUERY_WAN_INFO", WANName="Internet")
        self.assertEqual([wan[key] for key in ("IFNAME", "IPADDRESS", "SUBNETMASK", "GATEWAY", "CONNECTIONSTATUS", "DNS1",
                                               "IPV6_IPADDRESS", "IPV6_GATEWAY")],
                         ["wan0", network.WAN_ADDRESS, "255.255.255.0", network.WAN_GATEWAY, "Connected",
                          network.NAME_SERVER, network.WAN_ADDRESS6, network.WAN_GATEWAY6])
        self.assertIn("Internet", agent.refusal("QUERY_WAN_INFO", WANName="IPTV"))

    def test_port_counters_are_those_of_the_kernel(self):
        agent = self.agent()
        ports = {port["Port"]: port for port in agent.call("GET_PORT_STATISTICS")["port_stat_list"]}
        self.assertEqual(sorted(ports), ["LAN1", "LAN2", "WAN"])
        self.network.clients[0].run(f"ping -n -q -c 20 -i 0.01 -s 1000 {network.SERVER}")
        time.sleep(0.6)  # one snapshot
        after = {port["Port"]: port for port in agent.call("GET_PORT_STATISTICS")["port_stat_list"]}
        for port, key in (("WAN", "tx_traffic"), ("WAN", "rx_traffic"), ("LAN1", "tx_traffic"), ("LAN1", "rx_traffic")):
            self.assertGreater(int(after[port][key]) - int(ports[port][key]), 20 * 1000)
        self.assertLess(int(after["LAN2"]["tx_traffic"]) - int(ports["LAN2"]["tx_traffic"]), 20 * 1000)
        self.assertGreaterEqual(int(self.file("/sys/class/net/wan0/statistics/tx_bytes")),
                                int(after["WAN"]["tx_traffic"]))

    def test_uplink(self):
        agent = self.agent()
        link = agent.call("LINK_CHECK")
        self.assertEqual([link[key] for key in ("LanIP", "WanIp", "DnsCheck", "PingCheck")],
                         [network.LAN_ADDRESS, network.WAN_ADDRESS, "1", network.PING_TARGET])
        self.assertEqual(agent.call("GET_HG_UPLINK_STATUS")["UpLinkStatus"], "1")
        self.assertEqual(agent.call("GET_GATEWAY_NET_FAULT")["NetFaultReason"], "NULL")
        self.assertEqual(agent.call("HG_NETCONN_INSPECTION"),
                         {"Status": "0", "DnsStatus": "1", "WanStatus": "Connected"})
        self.network.internet.run("ip link set eth0 down")
        self.addCleanup(self.put_uplink_back)
        until(lambda: agent.call("GET_HG_UPLINK_STATUS")["UpLinkStatus"] == "0", "the uplink to be down")
        link = agent.call("LINK_CHECK")
        self.assertEqual((link["PingCheck"], link["DnsCheck"]), ("", "0"))
        self.assertEqual(agent.call("GET_GATEWAY_NET_FAULT")["NetFaultReason"], "LINK_DOWN")
        self.assertEqual(agent.call("HG_NETCONN_INSPECTION"),
                         {"Status": "0", "DnsStatus": "0", "WanStatus": "Disconnected"})

    def put_uplink_back(self):
        self.network.internet.run("ip link set eth0 up")
        self.network.restore_routes()

    def test_load(self):
        reply = self.agent().call("HG_RESOURCE_INSPECTION")
        self.assertEqual((reply["LanDevNum"], reply["ProtectedDevNum"]), ("2", "0"))

    def test_hosts(self):
        agent = self.agent()
        hosts = agent.hosts()
        self.assertEqual(len(hosts), 2)
        for client in self.network.clients:
            host = hosts[client.mac.upper()]
            self.assertEqual({key: host[key] for key in ("Name", "ip", "NetStatus", "AccessType", "AccessEnable", "UID")},
                             {"Name": client.name, "ip": client.address(), "NetStatus": "1", "AccessType": "cable",
                              "AccessEnable": "1", "UID": client.mac.upper().replace(":", "")})
            self.assertLess(abs(int(host["AccessTime"]) - time.time()), 3600)

    def test_software_is_a_package(self):
        agent = self.agent({"package": "dnsmasq-base"})
        version = self.network.gateway.run("dpkg-query --show --showformat ${Version} dnsmasq-base")
        self.assertEqual(agent.call("HG_GET_UPDATE_STATUS")["FWVersion"], version)
        self.assertEqual(agent.call("GET_UPDATE_STATUS")["MainRouter"]["FWVersion"], version)
        self.assertEqual(agent.call("GET_UPDATE_STATUS")["ChildRouter"], [])

    def test_topology(self):
        agent = self.agent()
        report = agent.call("GET_TSLINK_TOPOLOGY_INFO")
        main = report["MainRouter"]
        self.assertEqual(main["Mac"], self.mac_of("br-lan"))
        self.assertEqual(sorted(host["Name"] for host in main["MainBaseInfo"]), ["client1", "client2"])
        self.assertEqual(report.get("ChildRouter", []), [])
        drawing = agent.run("topology")
        self.assertEqual(drawing.returncode, 0, drawing.stderr)
        self.assertRegex(drawing.stdout, r"├─ client1 +cable\n└─ client2 +cable\n")

    def test_an_unplugged_client_is_offline_at_once(self):
        agent = self.agent()
        client, other = self.network.clients
        self.assertEqual(agent.host(client)["NetStatus"], "1")
        client.run("ip link set eth0 down")
        self.addCleanup(self.plug_in, client)
        began = time.monotonic()
        until(lambda: agent.host(client)["NetStatus"] == "0", "the client to be offline")
        waited = time.monotonic() - began
        host = agent.host(client)
        self.assertEqual((host["Name"], host["AccessTime"]), ("client1", "NULL"))
        self.assertEqual(agent.host(other)["NetStatus"], "1")
        # Far from the minutes after which the kernel would forget an address.
        self.assertLess(waited, 20)

    def plug_in(self, client):
        client.run("ip link set eth0 up")
        self.network.lease(client)


class NothingToReadTest(case.GatewayCase):
    """A machine that is not ready, and files that are not what dnsmasq writes."""

    CLIENTS = 1

    def test_a_sentence_for_what_is_missing(self):
        agent = self.agent({"lan_bridge": "br-none", "wan_port": "none0"})
        answer = agent.ask("GET_LAN_IP_INFO")
        self.assertEqual(answer["reply"]["Status"], "1")
        agent.await_log("br-none")

    def test_sentences_for_a_machine_that_does_not_route(self):
        self.network.gateway.run("sysctl -qw net.ipv4.ip_forward=0")
        self.addCleanup(self.network.gateway.run, "sysctl -qw net.ipv4.ip_forward=1")
        agent = self.agent()
        agent.call("GET_SN_INFO")
        agent.await_log("does not route: net.ipv4.ip_forward is 0")

    def test_sentences_for_programs_in_the_way(self):
        for program in ("NetworkManager", "firewalld"):
            folder = pathlib.Path("/run", program)
            folder.mkdir()
            self.addCleanup(folder.rmdir)
        agent = self.agent()
        agent.call("GET_SN_INFO")
        agent.await_log("NetworkManager is running")
        agent.await_log("firewalld is running")

    def test_an_unknown_key_of_the_configuration(self):
        agent = self.agent({"lan_brigde": "br-lan"})
        answer = agent.ask("GET_SN_INFO")
        self.assertEqual(answer["reply"]["Status"], "1")
        self.assertRegex(agent.await_log("lan_brigde"), r"linux_gateway.toml, line \d+: lan_brigde is not a key")

    def test_bridge_and_port_are_found(self):
        agent = self.agent(started=False)
        agent.configure({"state": str(agent.state), "dnsmasq_configuration": str(self.network.configuration)})
        agent.start()
        self.assertEqual(agent.call("GET_LAN_IP_INFO")["GatewayLanIP"], network.LAN_ADDRESS)
        self.assertEqual(agent.call("QUERY_WAN_INFO", WANName="Internet")["IFNAME"], "wan0")
        self.assertEqual(agent.host(self.network.clients[0])["Name"], "client1")

    def test_hostile_names_in_the_lease_file(self):
        names = (b"a" * 300, b"\xff\xfe\x80", b"\xe2\x82", b"a\x01b", b'"}],{"', b"%s%n", b"*", b"<b>", b"\xe2\x80\xae")
        end = int(time.time()) + 3600
        leases = self.own / "leases"
        leases.write_bytes(b"".join(f"{end} 02:00:5e:40:00:{number:02x} 192.168.8.{number + 20} ".encode() + name + b" *\n"
                                    for number, name in enumerate(names)))
        agent = self.agent({"lease_file": str(leases)})
        hosts = agent.hosts()
        for number, name in enumerate(names):
            host = hosts[f"02:00:5E:40:00:{number:02X}"]
            with self.subTest(name=name, shown=host["Name"]):
                self.assertEqual(host["ip"], f"192.168.8.{number + 20}")
                self.assertLess(len(host["Name"].encode()), 32)
                self.assertNotRegex(host["Name"], r"[\x00-\x1f]")
        self.assertEqual(hosts["02:00:5E:40:00:06"]["Name"], "NULL")
        self.assertEqual(agent.close(), 0)

    def test_leases_of_another_network(self):
        client = self.network.clients[0]
        end = int(time.time()) + 3600
        leases = self.own / "leases"
        leases.write_text(f"{end} {client.mac} {client.address()} here *\n{end} {client.mac} 192.168.9.20 there *\n"
                          f"{end} 02:00:5e:40:00:01 192.168.9.21 guest *\n", encoding="ascii")
        agent = self.agent({"lease_file": str(leases)})
        hosts = agent.hosts()
        self.assertEqual(list(hosts), [client.mac.upper()])
        self.assertEqual((agent.host(client)["Name"], agent.host(client)["ip"]), ("here", client.address()))

    def test_name_servers_are_listed_in_full(self):
        servers = ["192.0.2.53", "2001:db8:1111:2222:3333:4444:5555:6666", "2001:db8:1111:2222:3333:4444:5555:7777"]
        resolver = self.own / "resolv.conf"
        resolver.write_text("".join(f"nameserver {server}\n" for server in servers), encoding="ascii")
        agent = self.agent({"resolver_configuration": str(resolver)})
        self.assertEqual(agent.call("GET_HG_BASE_INFO")["Dns"], ",".join(servers[:2]))

    def test_lease_files_that_are_none(self):
        client = self.network.clients[0]
        line = f"{int(time.time()) + 3600} {client.mac} {client.address()} "
        noise = [b"\0" * 4096, line.encode() * 20000, b"", b"\n" * 70000, b"1 2", b"9" * 5000 + b" x y z w\n",
                 b"duid 00:01\n" + line.replace(client.address(), "fe80::1").encode() + b"x *\n"]
        for number, content in enumerate(noise if os.environ.get("WHOLE_TESTS") else noise[:2]):
            with self.subTest(number=number):
                leases = self.own / f"noise{number}"
                leases.write_bytes(content)
                agent = self.agent({"lease_file": str(leases)})
                self.assertEqual(agent.host(client)["NetStatus"], "1")
                self.assertEqual(agent.close(), 0)

    def test_a_lease_file_that_is_a_pipe_does_not_stop_it(self):
        pipe = self.own / "pipe"
        os.mkfifo(pipe)
        agent = self.agent({"lease_file": str(pipe)})
        self.assertEqual(agent.host(self.network.clients[0])["NetStatus"], "1")


if __name__ == "__main__":
    case.main()
