// SPDX-License-Identifier: MIT
#include "enforcement/packet_filter.h"

#include "network_namespace.h"
#include "system/error.h"

#include <gmock/gmock.h>

namespace linux_gateway {
namespace {

using testing::HasSubstr;
using testing::Not;

class PacketFilterTest : public NetworkNamespaceTest {
  protected:
    PacketFilter filter;
    Blocks blocks{kBridge, {}, {"192.168.8.1", "fd00:8::1"}};
};

TEST_F(PacketFilterTest, HasNoTablesWithoutBlocks)
{
    filter.apply(blocks);
    EXPECT_FALSE(has_tables());
    EXPECT_TRUE(filter.is_intact());
}

TEST_F(PacketFilterTest, BlocksHostsInBothDirections)
{
    blocks.hosts = {{host(1), std::nullopt}};
    filter.apply(blocks);
    const std::string text = tables();
    EXPECT_THAT(text, HasSubstr("iifname \"lan0\" oifname != \"lan0\" ether saddr @blocked drop"));
    EXPECT_THAT(text, HasSubstr("ether daddr @blocked ip saddr != @own_ipv4 drop"));
    EXPECT_THAT(
        text, HasSubstr("ether daddr @blocked ip6 saddr != fe80::/10 ip6 saddr != @own_ipv6 drop"));
    EXPECT_THAT(text, HasSubstr("elements = { 192.168.8.1 }"));
    EXPECT_THAT(text, HasSubstr("elements = { fd00:8::1 }"));
    EXPECT_THAT(text, HasSubstr("elements = { 02:00:00:00:00:01 }"));
    EXPECT_TRUE(filter.is_intact());
}

TEST_F(PacketFilterTest, LetsTheKernelEndABlock)
{
    blocks.hosts = {{host(1), 3600}, {host(2), std::nullopt}};
    filter.apply(blocks);
    EXPECT_THAT(tables(), HasSubstr("02:00:00:00:00:01 timeout 1h expires 59m"));
    EXPECT_THAT(tables(), HasSubstr("02:00:00:00:00:02 }"));
}

TEST_F(PacketFilterTest, IsIntactWhileTheTimeOfABlockPasses)
{
    blocks.hosts = {{host(1), 3600}};
    filter.apply(blocks);
    const std::string before = tables();
    while (tables() == before) {
    }
    EXPECT_TRUE(filter.is_intact());
}

TEST_F(PacketFilterTest, ReplacesItsBlocks)
{
    blocks.hosts = {{host(1), std::nullopt}};
    filter.apply(blocks);
    blocks.hosts = {{host(2), std::nullopt}};
    filter.apply(blocks);
    EXPECT_THAT(tables(), Not(HasSubstr("02:00:00:00:00:01")));
    EXPECT_THAT(tables(), HasSubstr("02:00:00:00:00:02"));
    EXPECT_TRUE(filter.is_intact());
    blocks.hosts.clear();
    filter.apply(blocks);
    EXPECT_FALSE(has_tables());
}

TEST_F(PacketFilterTest, RemovesTablesOfAnEarlierProcess)
{
    run("nft add table bridge linux_gateway");
    filter.apply(blocks);
    EXPECT_FALSE(has_tables());
    run("nft add table inet linux_gateway && nft add chain inet linux_gateway stray");
    blocks.hosts = {{host(1), std::nullopt}};
    filter.apply(blocks);
    EXPECT_THAT(tables(), Not(HasSubstr("stray")));
}

TEST_F(PacketFilterTest, LeavesOtherTablesAlone)
{
    run("nft add table inet filter && nft add table ip linux_gateway");
    blocks.hosts = {{host(1), std::nullopt}};
    filter.apply(blocks);
    blocks.hosts.clear();
    filter.apply(blocks);
    EXPECT_EQ(run("nft list tables"), "table inet filter\ntable ip linux_gateway\n");
}

TEST_F(PacketFilterTest, NoticesEveryKindOfChange)
{
    blocks.hosts = {{host(1), std::nullopt}, {host(2), 3600}};
    for (const char *change :
         {"nft flush ruleset", "nft delete table inet linux_gateway",
          "nft delete table bridge linux_gateway", "nft flush chain bridge linux_gateway output",
          "nft flush chain inet linux_gateway forward", "nft flush set inet linux_gateway blocked",
          "nft delete element bridge linux_gateway own_ipv4 '{ 192.168.8.1 }'",
          "nft add element inet linux_gateway blocked '{ 02:00:00:00:00:09 }'",
          "nft insert rule inet linux_gateway forward accept"}) {
        filter.apply(blocks);
        ASSERT_TRUE(filter.is_intact());
        run(change);
        EXPECT_FALSE(filter.is_intact()) << change;
    }
}

TEST_F(PacketFilterTest, HoldsManyHosts)
{
    for (uint16_t number = 0; number < 500; ++number) {
        blocks.hosts[host(number)] = number % 2 == 0 ? std::optional<int64_t>(3600) : std::nullopt;
    }
    filter.apply(blocks);
    EXPECT_TRUE(filter.is_intact());
    EXPECT_THAT(tables(), HasSubstr("02:00:00:00:01:f3"));
}

TEST_F(PacketFilterTest, KeepsItsBlocksIfAnApplyFails)
{
    blocks.hosts = {{host(1), std::nullopt}};
    filter.apply(blocks);
    const std::string before = tables();
    Blocks wrong = blocks;
    wrong.own_addresses = {"no address"};
    EXPECT_THROW(filter.apply(wrong), Error);
    EXPECT_EQ(tables(), before);
    EXPECT_TRUE(filter.is_intact());
}

} // namespace
} // namespace linux_gateway
