// SPDX-License-Identifier: MIT
#include "core/obstacles.h"
#include "system/flow_tables.h"

#include <gmock/gmock.h>

using namespace linux_gateway;
using testing::AnyOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

namespace {

TEST(ObstaclesTest, AFlowTableIsFoundInTheListing)
{
    EXPECT_EQ(flow_table_in(R"({"nftables": [{"metainfo": {"version": "1.0.6"}},
        {"flowtable": {"family": "inet", "name": "ft", "table": "firewall", "handle": 2,
                       "hook": "ingress", "prio": 0, "dev": ["eth0", "eth1"]}}]})"),
              "ft");
    for (const char *without : {"", "[]", "{}", "{\"nftables\": 1}", "{\"nftables\": [1, null]}",
                                R"({"nftables": [{"metainfo": {"version": "1.0.6"}}]})"}) {
        EXPECT_EQ(flow_table_in(without), std::nullopt) << without;
    }
    EXPECT_EQ(flow_table_in(R"({"nftables": [{"flowtable": {"name": 1}}]})"), "");
    EXPECT_EQ(flow_table_in(R"({"nftables": [{"flowtable": 1}]})"), "");
}

TEST(ObstaclesTest, AnUnreadableLeaseFileOrAMissingServerIsNamed)
{
    Configuration configuration;
    configuration.lan_bridge = "br0";
    configuration.lease_file = "/no/such/leases";
    EXPECT_THAT(obstacles(configuration, Network()),
                Contains(AnyOf(HasSubstr("/no/such/leases"), HasSubstr("start dnsmasq"))));
}

TEST(ObstaclesTest, AWanPortThatIsNotThereIsNamed)
{
    const auto sentence = HasSubstr("WAN port");
    Network network;
    EXPECT_THAT(obstacles(Configuration(), network), Contains(HasSubstr("no default route")));
    network.wan_name = "wan7";
    EXPECT_THAT(obstacles(Configuration(), network),
                Contains(HasSubstr("there is no WAN port \"wan7\"")));
    network.wan.emplace();
    EXPECT_THAT(obstacles(Configuration(), network), Not(Contains(sentence)));
}

} // namespace
