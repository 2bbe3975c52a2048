// SPDX-License-Identifier: MIT
#include "system/network_reader.h"

#include "network_namespace.h"

#include <chrono>
#include <gmock/gmock.h>
#include <string>
#include <thread>

namespace linux_gateway {
namespace {

// Two uplinks with addresses of both families.
class DefaultRouteTest : public NetworkNamespaceTest {
  protected:
    void SetUp() override
    {
        NetworkNamespaceTest::SetUp();
        if (IsSkipped()) {
            return;
        }
        for (const char number : {'1', '2'}) {
            const std::string port = std::string("wan") + number;
            run("ip link add " + port + " type veth peer name " + port + "peer && ip link set " +
                port + " up && ip link set " + port + "peer up");
            run("ip address add 198.51." + std::string(1, number) + ".2/24 dev " + port);
            run("ip address add 2001:db8:" + std::string(1, number) + "::2/64 dev " + port +
                " nodad");
        }
    }
    void TearDown() override
    {
        if (!IsSkipped()) {
            run("ip link delete wan1 && ip link delete wan2");
        }
    }

    static Network read(const std::string &wan_port = "")
    {
        NetworkSources sources;
        sources.lan_bridge = kBridge;
        sources.wan_port = wan_port;
        return NetworkReader().read(sources);
    }
    // The kernel notices a change of the carrier a little later.
    static void await_wan(const std::string &name)
    {
        while (read().wan_name != name) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
};

TEST_F(DefaultRouteTest, MayHaveSeveralNextHops)
{
    run("ip route add default nexthop via 198.51.1.1 dev wan1 weight 1"
        " nexthop via 198.51.2.1 dev wan2 weight 3");
    const Network network = read();
    EXPECT_EQ(network.wan_name, "wan2"); // which has most of the traffic
    EXPECT_TRUE(network.has_ipv4_route);
    EXPECT_EQ(network.gateway_ipv4, "198.51.2.1");
    EXPECT_TRUE(network.is_wan_connected());
    const Network named = read("wan1");
    EXPECT_TRUE(named.has_ipv4_route);
    EXPECT_EQ(named.gateway_ipv4, "198.51.1.1");
}

TEST_F(DefaultRouteTest, IsTheFirstOfEqualNextHops)
{
    run("ip route add default nexthop via 198.51.2.1 dev wan2 nexthop via 198.51.1.1 dev wan1");
    EXPECT_EQ(read().wan_name, "wan2");
    EXPECT_EQ(read("lan0").has_ipv4_route, false);
}

TEST_F(DefaultRouteTest, AvoidsANextHopWithoutACarrier)
{
    run("ip route add default nexthop via 198.51.1.1 dev wan1 weight 3"
        " nexthop via 198.51.2.1 dev wan2 weight 1");
    EXPECT_EQ(read().wan_name, "wan1");
    run("ip link set wan1peer down");
    await_wan("wan2");
    run("ip link set wan2peer down");
    await_wan("wan1");
}

TEST_F(DefaultRouteTest, MayHaveSeveralNextHopsOfIpv6)
{
    run("ip -6 route add default nexthop via 2001:db8:1::1 dev wan1 weight 1"
        " nexthop via 2001:db8:2::1 dev wan2 weight 3");
    const Network network = read();
    EXPECT_EQ(network.wan_name, "wan2");
    EXPECT_TRUE(network.has_ipv6_route);
    EXPECT_EQ(network.gateway_ipv6, "2001:db8:2::1");
    EXPECT_EQ(read("wan1").gateway_ipv6, "2001:db8:1::1");
}

TEST_F(DefaultRouteTest, MayBeAGroupOfNextHopObjects)
{
    run("ip nexthop add id 1 via 198.51.1.1 dev wan1 && ip nexthop add id 2 via 198.51.2.1 dev "
        "wan2"
        " && ip nexthop add id 3 group 1,1/2,3 && ip route add default nhid 3");
    EXPECT_EQ(read().gateway_ipv4, "198.51.2.1");
    run("ip nexthop flush");
}

TEST_F(DefaultRouteTest, WithALowerMetricCountsFirst)
{
    run("ip route add default metric 200 nexthop via 198.51.2.1 dev wan2 nexthop via 198.51.1.1 "
        "dev wan1");
    run("ip route add default via 198.51.1.1 metric 100");
    EXPECT_EQ(read().wan_name, "wan1");
    EXPECT_EQ(read("wan2").gateway_ipv4, "198.51.2.1");
}

} // namespace
} // namespace linux_gateway
