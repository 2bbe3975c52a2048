# SPDX-License-Identifier: MIT
"""What the gateway reports of the real system."""
import case
import network
from network import until


class ReadingTest(case.GatewayCase):
    def test_identity(self):
        agent = self.agent()
        reply = agent.call("GET_SN_INFO")
        self.assertEqual(reply["MAC"], self.mac_of("br-lan"))

    def mac_of(self, device):
        return self.network.gateway.run(f"cat /sys/class/net/{device}/address").strip().upper()


if __name__ == "__main__":
    case.main()
