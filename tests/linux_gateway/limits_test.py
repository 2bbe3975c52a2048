# SPDX-License-Identifier: MIT
"""Download limits: they hold for both families, for one host only, and next to other queueing."""
import json

import case
import network
from network import until

LIMIT = 20000  # kbit/s
FAR_MORE = 5 * LIMIT
FRAME = 1514
PAYLOADS = {network.SERVER: 1448, network.SERVER6: 1428}  # of a frame, with TCP's time stamps


class LimitsTest(case.GatewayCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.first, cls.second = cls.network.clients
        for client, port in ((cls.first, 5201), (cls.second, 5202)):
            cls.network.internet.start(["iperf3", "--server", "--port", str(port)], stdout=-3)
            until(lambda: client.works(f"iperf3 --client {network.SERVER} --port {port} --bytes 1K"), "iperf3")

    def rate(self, client, server, seconds=2):
        """kbit/s of a download after its first second, in whole frames."""
        port = 5201 if client is self.first else 5202
        report = json.loads(client.run(f"iperf3 --client {server} --port {port} --reverse --time {seconds} --omit 1 --json"))
        return report["end"]["sum_received"]["bits_per_second"] / 1000 * FRAME / PAYLOADS[server]

    def set_limit(self, agent, client, limit, switch="1"):
        agent.call("SET_AD_BASE_INFO", MAC=client.mac.upper(), DevType="Other", ByName="x", AccessEnable="1",
                   DownLimit=str(limit), SpeedLimit=switch)

    def test_a_limit_holds_for_both_families(self):
        agent = self.agent()
        self.set_limit(agent, self.first, LIMIT)
        for server in (network.SERVER, network.SERVER6):
            with self.subTest(server=server):
                rate = self.rate(self.first, server)
                print(f"limit of {LIMIT} kbit/s: {rate:.0f} kbit/s from {server}")
                self.assertLess(abs(rate - LIMIT), LIMIT / 10)
        self.assertGreater(self.rate(self.second, network.SERVER, 1), FAR_MORE)
        report = agent.call("GET_TSLINK_TOPOLOGY_INFO")["MainRouter"]["MainBaseInfo"]
        self.assertEqual({host["Name"]: (host["SpeedLimit"], host["DownLimit"]) for host in report},
                         {"client1": ("1", str(LIMIT)), "client2": ("0", "0")})
        self.set_limit(agent, self.first, LIMIT, switch="0")
        self.assertGreater(self.rate(self.first, network.SERVER, 1), FAR_MORE)

    def test_a_second_limit_leaves_the_first(self):
        agent = self.agent()
        self.set_limit(agent, self.first, LIMIT)
        self.set_limit(agent, self.second, LIMIT // 2)
        self.set_limit(agent, self.second, 0)
        rate = self.rate(self.first, network.SERVER)
        self.assertLess(abs(rate - LIMIT), LIMIT / 10)

    def test_the_queueing_of_somebody_else_is_left_alone(self):
        gateway = self.network.gateway
        gateway.run("tc qdisc add dev br-lan root tbf rate 500mbit burst 64kb latency 50ms")
        self.addCleanup(gateway.run, "tc qdisc delete dev br-lan root")
        before = gateway.run("tc qdisc show dev br-lan")
        agent = self.agent()
        agent.call("GET_SN_INFO")
        agent.await_log("br-lan has another program's queueing root (tbf): remove it, or do without download limits")
        reasons = agent.refusal("SET_AD_BASE_INFO", MAC=self.first.mac.upper(), DevType="Other", ByName="x",
                                AccessEnable="1", DownLimit=str(LIMIT), SpeedLimit="1")
        self.assertIn("br-lan", reasons)
        self.assertEqual(gateway.run("tc qdisc show dev br-lan"), before)
        agent.close()
        conformance = agent.run("conformance")
        self.assertEqual(conformance.returncode, 0, conformance.stdout)
        self.assertIn("br-lan has another program's queueing root (tbf)", conformance.stderr)
        self.assertEqual(gateway.run("tc qdisc show dev br-lan"), before)


if __name__ == "__main__":
    case.main()
