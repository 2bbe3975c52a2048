# SPDX-License-Identifier: MIT
"""Every query and setting of the library under valgrind and under strace, for a build without sanitizers."""
import pathlib
import re
import subprocess

import case

SUPPRESSIONS = pathlib.Path(__file__).resolve().parents[1] / "support/libnftables.supp"
VALGRIND = ("valgrind", "--quiet", "--leak-check=full", "--show-leak-kinds=definite", "--errors-for-leak-kinds=definite",
            "--error-exitcode=9", f"--suppressions={SUPPRESSIONS}")


# systemd allows these in every filter, to start the program; glibc asks for its limits by prlimit64.
ALWAYS = {"execve", "prlimit64"}


def system_calls(name):
    """The names in one of systemd's sets, with the sets in it."""
    listed = subprocess.run(["systemd-analyze", "--no-pager", "syscall-filter", name], capture_output=True, text=True,
                            check=True).stdout
    names = set(re.findall(r"^ +([@a-z_0-9-]+)$", listed, re.M)) - {name}
    return {call for each in names for call in (system_calls(each) if each.startswith("@") else {each})}


class MemoryTest(case.GatewayCase):
    def test_memory(self):
        agent = self.agent(prefix=VALGRIND)
        self.work(agent)
        self.assertEqual(agent.close(), 0, "\n".join(agent.log))
        self.assertEqual([line for line in agent.log if line.startswith("==")], [])

    def test_system_calls_are_those_of_the_unit(self):
        trace = self.own / "agent/trace"
        agent = self.agent(prefix=("strace", "-f", "-qq", "-e", "signal=none", "-o", str(trace)))
        self.work(agent)
        self.assertEqual(agent.close(), 0, "\n".join(agent.log))
        calls = re.findall(r"^\d+ +([a-z_0-9]+)\(", trace.read_text(encoding="utf-8", errors="replace"), re.M)
        self.assertGreater(len(set(calls)), 30)
        allowed = system_calls("@system-service") - system_calls("@privileged") - system_calls("@resources")
        self.assertGreater(len(allowed), 100)
        self.assertEqual(set(calls) - allowed - ALWAYS, set())
        self.assertEqual(calls.count("execve"), 1)  # its own start

    def work(self, agent):
        for command in ("GET_AD_BASE_INFO", "LINK_CHECK", "GET_TSLINK_TOPOLOGY_INFO", "GET_PORT_STATISTICS",
                        "GET_HG_BASE_INFO", "GET_UPDATE_STATUS", "GET_LAN_IP_INFO", "GET_HG_DHCP_INFO", "QUERY_WAN_NUM",
                        "HG_RESOURCE_INSPECTION", "HG_NETCONN_INSPECTION", "GET_ATTACH_DEVICE_RIGHT", "GET_SN_INFO",
                        "QUERY_SYSTEM_INFO", "GET_HG_UPLINK_STATUS", "GET_GATEWAY_NET_FAULT"):
            agent.call(command)
        agent.call("QUERY_WAN_INFO", WANName="Internet")
        mac = self.network.clients[0].mac.upper()
        for right in ("DENY", "ALLOW", "DENY"):
            agent.call("SET_ATTACH_DEVICE_RIGHT", MAC=mac, InternetAccessRight=right)
        for limit in ("20000", "0", "30000"):
            agent.call("SET_AD_BASE_INFO", MAC=mac, DevType="Tablet", ByName="Tablet", AccessEnable="1", DownLimit=limit,
                       SpeedLimit="1")
        agent.call("SET_GREENNET_ENABLE", Enable="1")
        agent.call("SET_GREENNET_DEVICE_LIST", DeviceList=[{"Mac": mac, "Name": "Jonas", "NotifyEnable": "1"}])
        agent.call("SET_GREENNET_PROTECT_PERIOD_LIST", Mac=mac, Sleep=[
            {"StartTime": "00:00", "EndTime": "23:59", "Enable": "1", "DaysOfWeek": "1234567"}])
        agent.call("GET_GREENNET_PROTECT_PERIOD_LIST", Mac=mac)
        agent.refusal("SET_ATTACH_DEVICE_RIGHT", MAC="x", InternetAccessRight="DENY")
        self.network.gateway.run("nft flush ruleset")
        agent.await_log("put back")
        self.network.gateway.run("tc qdisc delete dev br-lan root")
        agent.await_log("put back")


if __name__ == "__main__":
    case.main()
