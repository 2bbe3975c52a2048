// SPDX-License-Identifier: MIT
#include "enforcement/download_limits.h"

#include "network_namespace.h"
#include "system/error.h"

#include <gmock/gmock.h>

namespace linux_gateway {
namespace {

using testing::HasSubstr;
using testing::Not;

class DownloadLimitsTest : public NetworkNamespaceTest {
  protected:
    DownloadLimits limits;

    static std::string queueing()
    {
        return run("tc qdisc show dev lan0; tc class show dev lan0; tc filter show dev lan0");
    }
    std::string refusal(const std::map<Mac, uint64_t> &wanted)
    {
        try {
            limits.apply(kBridge, wanted);
            return "none";
        } catch (const Error &error) {
            return error.what();
        }
    }
};

TEST_F(DownloadLimitsTest, LeaveTheBridgeAloneIfThereAreNone)
{
    const std::string before = queueing();
    limits.apply(kBridge, {});
    EXPECT_EQ(queueing(), before);
    EXPECT_TRUE(limits.is_intact());
}

TEST_F(DownloadLimitsTest, AreAClassAndAFilterForEachHost)
{
    limits.apply(kBridge, {{host(0x1234), 20'000'000}, {host(2), 512'000}});
    const std::string text = queueing();
    EXPECT_THAT(text, HasSubstr("qdisc htb 6c67: root"));
    EXPECT_THAT(text, HasSubstr("rate 20Mbit ceil 20Mbit"));
    EXPECT_THAT(text, HasSubstr("rate 512Kbit ceil 512Kbit"));
    EXPECT_THAT(text, HasSubstr("match 00000200/0000ffff at -16"));
    EXPECT_THAT(text, HasSubstr("match 00001234/ffffffff at -12"));
    EXPECT_TRUE(limits.is_intact());
}

TEST_F(DownloadLimitsTest, AreChangedOneByOne)
{
    limits.apply(kBridge, {{host(1), 1'000'000}, {host(2), 2'000'000}, {host(3), 3'000'000}});
    limits.apply(kBridge, {{host(2), 2'000'000}, {host(3), 5'000'000}, {host(4), 4'000'000}});
    const std::string text = queueing();
    EXPECT_THAT(text, Not(HasSubstr("rate 1Mbit")));
    EXPECT_THAT(text, Not(HasSubstr("rate 3Mbit")));
    EXPECT_THAT(text, HasSubstr("rate 2Mbit"));
    EXPECT_THAT(text, HasSubstr("rate 4Mbit"));
    EXPECT_THAT(text, HasSubstr("rate 5Mbit"));
    EXPECT_THAT(text, Not(HasSubstr("match 00000001/ffffffff")));
    EXPECT_THAT(text, HasSubstr("match 00000004/ffffffff"));
    EXPECT_THAT(text, HasSubstr("class htb 6c67:1 ")); // used again
    EXPECT_THAT(text, Not(HasSubstr("class htb 6c67:4 ")));
    EXPECT_TRUE(limits.is_intact());
}

TEST_F(DownloadLimitsTest, LeaveNothingBehind)
{
    const std::string before = queueing();
    limits.apply(kBridge, {{host(1), 1'000'000}});
    limits.apply(kBridge, {});
    EXPECT_EQ(queueing(), before);
}

TEST_F(DownloadLimitsTest, ReplaceThoseOfAnEarlierProcess)
{
    DownloadLimits earlier;
    earlier.apply(kBridge, {{host(1), 1'000'000}, {host(2), 2'000'000}});
    limits.apply(kBridge, {{host(3), 3'000'000}});
    EXPECT_THAT(queueing(), Not(HasSubstr("rate 1Mbit")));
    EXPECT_THAT(queueing(), HasSubstr("rate 3Mbit"));
    EXPECT_FALSE(earlier.is_intact());
    DownloadLimits later;
    later.apply(kBridge, {});
    EXPECT_THAT(queueing(), Not(HasSubstr("htb")));
}

TEST_F(DownloadLimitsTest, DoNotReplaceTheRootOfAnotherProgram)
{
    run("tc qdisc add dev lan0 root handle 7: bfifo");
    EXPECT_EQ(refusal({{host(1), 1'000'000}}), "lan0 has another program's queueing root (bfifo)");
    limits.apply(kBridge, {});
    EXPECT_THAT(queueing(), HasSubstr("qdisc bfifo 7:"));
    run("tc qdisc delete dev lan0 root");
    run("tc qdisc add dev lan0 root handle 7: htb");
    EXPECT_THAT(refusal({{host(1), 1'000'000}}), HasSubstr("(htb)"));
    run("tc qdisc delete dev lan0 root");
    EXPECT_EQ(refusal({{host(1), 1'000'000}}), "none");
}

TEST_F(DownloadLimitsTest, NameTheRootOfAnotherProgram)
{
    EXPECT_EQ(limits.foreign_root(kBridge), std::nullopt);
    EXPECT_EQ(limits.foreign_root("none0"), std::nullopt);
    run("tc qdisc add dev lan0 root tbf rate 500mbit burst 64kb latency 50ms");
    EXPECT_EQ(limits.foreign_root(kBridge), "tbf");
    run("tc qdisc replace dev lan0 root handle 7: htb");
    EXPECT_EQ(limits.foreign_root(kBridge), "htb");
    run("tc qdisc delete dev lan0 root");
    limits.apply(kBridge, {{host(1), 1'000'000}});
    EXPECT_EQ(limits.foreign_root(kBridge), std::nullopt);
}

TEST_F(DownloadLimitsTest, NeedTheBridge)
{
    run("ip link delete lan0");
    EXPECT_EQ(refusal({{host(1), 1'000'000}}), "there is no bridge lan0 for download limits");
    EXPECT_EQ(refusal({}), "none");
}

TEST_F(DownloadLimitsTest, NoticeEveryKindOfChange)
{
    const std::map<Mac, uint64_t> wanted = {{host(1), 1'000'000}, {host(2), 2'000'000}};
    for (const char *change :
         {"tc qdisc delete dev lan0 root", "tc filter delete dev lan0 parent 6c67: prio 1",
          "tc filter delete dev lan0 parent 6c67: handle 800::1 prio 1 u32",
          "tc class change dev lan0 parent 6c67: classid 6c67:1 htb rate 9mbit quantum 1514",
          "tc class add dev lan0 parent 6c67: classid 6c67:9 htb rate 9mbit quantum 1514",
          "ip link delete lan0; ip link add lan0 type bridge"}) {
        limits.apply(kBridge, wanted);
        ASSERT_TRUE(limits.is_intact());
        run(change);
        EXPECT_FALSE(limits.is_intact()) << change;
    }
    limits.apply(kBridge, wanted);
    EXPECT_TRUE(limits.is_intact());
}

TEST_F(DownloadLimitsTest, HoldManyHostsAndRefuseMoreThanTheKernelCan)
{
    std::map<Mac, uint64_t> wanted;
    for (uint16_t number = 0; number < 500; ++number) {
        wanted[host(number)] = 1'000'000;
    }
    limits.apply(kBridge, wanted);
    EXPECT_TRUE(limits.is_intact());
    EXPECT_THAT(queueing(), HasSubstr("match 000001f3/ffffffff"));
    for (uint16_t number = 0; number <= 4095; ++number) {
        wanted[host(number)] = 1'000'000;
    }
    EXPECT_EQ(refusal(wanted), "there are too many download limits");
    EXPECT_EQ(refusal({{host(1), 1'000'000}}), "none");
}

TEST_F(DownloadLimitsTest, MayBeTheSmallestAndTheLargest)
{
    limits.apply(kBridge, {{host(1), 1'000}, {host(2), 10'000'000'000}, {host(3), UINT64_MAX}});
    EXPECT_THAT(queueing(), HasSubstr("rate 1Kbit"));
    EXPECT_THAT(queueing(), HasSubstr("rate 10Gbit"));
    EXPECT_TRUE(limits.is_intact());
}

} // namespace
} // namespace linux_gateway
