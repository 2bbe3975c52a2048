// SPDX-License-Identifier: MIT
#include "core/obstacles.h"
#include "system/flow_tables.h"

#include <gmock/gmock.h>

using namespace linux_gateway;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

TEST(ObstaclesTest, FlowTablesAreFoundInTheListing)
{
    EXPECT_THAT(flow_tables_in(R"({"nftables": [{"metainfo": {"version": "1.0.6"}},
        {"flowtable": {"family": "inet", "name": "ft", "table": "firewall", "handle": 2,
                       "hook": "ingress", "prio": 0, "dev": ["eth0", "eth1"]}},
        {"flowtable": {"family": "ip", "name": "ft", "table": "nat"}}]})"),
                ElementsAre("ft (table inet firewall)", "ft (table ip nat)"));
    for (const char *without : {"", "[]", "{}", "{\"nftables\": 1}", "{\"nftables\": [1, null]}",
                                R"({"nftables": [{"metainfo": {"version": "1.0.6"}}]})"}) {
        EXPECT_THAT(flow_tables_in(without), IsEmpty()) << without;
    }
    EXPECT_THAT(flow_tables_in(R"({"nftables": [{"flowtable": {"name": 1}}]})"), SizeIs(1));
    EXPECT_THAT(flow_tables_in(R"({"nftables": [{"flowtable": 1}]})"), SizeIs(1));
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
