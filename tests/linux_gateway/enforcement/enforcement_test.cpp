// SPDX-License-Identifier: MIT
#include "enforcement/enforcement.h"

#include "network_namespace.h"
#include "system/error.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cctype>
#include <chrono>
#include <cstdio>
#include <gmock/gmock.h>
#include <libmnl/libmnl.h>
#include <linux/netfilter.h>
#include <linux/netfilter/nf_tables.h>
#include <linux/netfilter/nfnetlink.h>
#include <sys/socket.h>
#include <thread>

namespace linux_gateway {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr int64_t kMinute = 60;
constexpr int64_t kNoon = 1'768'478'400; // 15 January 2026, a Thursday, in UTC
const std::set<int> kAllDays = {1, 2, 3, 4, 5, 6, 7};

class EnforcementTest : public NetworkNamespaceTest {
  protected:
    std::atomic<int64_t> time = kNoon;
    Enforcement enforcement{"UTC", [this] {
                                return time.load();
                            }};
    Rules rules{kBridge, {}, {}, {}, {}};

    void TearDown() override { enforcement.stop(); }

    static std::string queueing()
    {
        return run("tc qdisc show dev lan0 | sed 's/direct_packets_stat [0-9]*//';"
                   "tc class show dev lan0; tc filter show dev lan0");
    }
    static bool is_blocked(const Mac &mac)
    {
        std::string text = to_text(mac);
        std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
        return tables().find(text) != std::string::npos;
    }
    // The test's time limit ends a wait for what never happens.
    template <class Condition> static void wait_for(Condition condition)
    {
        while (!condition()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
};

TEST_F(EnforcementTest, LeavesNothingInTheKernelWithoutRules)
{
    const std::string before = queueing();
    EXPECT_EQ(enforcement.apply(rules), "");
    rules.blocked = {host(1)};
    rules.limits = {{host(2), 1'000'000}};
    EXPECT_EQ(enforcement.apply(rules), "");
    EXPECT_TRUE(is_blocked(host(1)));
    EXPECT_THAT(queueing(), HasSubstr("rate 1Mbit"));
    EXPECT_EQ(enforcement.apply({kBridge, {}, {}, {}, {}}), "");
    EXPECT_FALSE(has_tables());
    EXPECT_EQ(queueing(), before);
}

TEST_F(EnforcementTest, LeavesItsRulesInTheKernelWhenItStops)
{
    rules.blocked = {host(1)};
    enforcement.apply(rules);
    enforcement.stop();
    EXPECT_TRUE(is_blocked(host(1)));
}

// ---- The management host -----------------------------------------------------------------------

TEST_F(EnforcementTest, RefusesABlockOfTheManagementHost)
{
    rules.management_host = host(1);
    rules.blocked = {host(2)};
    ASSERT_EQ(enforcement.apply(rules), "");
    Rules wanted = rules;
    wanted.blocked.insert(host(1));
    EXPECT_EQ(enforcement.apply(wanted),
              "02:00:00:00:00:01 manages this gateway and cannot be blocked");
    wanted = rules;
    wanted.periods[host(1)] = {{0, 0, kAllDays}};
    EXPECT_EQ(enforcement.apply(wanted),
              "02:00:00:00:00:01 manages this gateway and cannot be blocked");
    EXPECT_FALSE(is_blocked(host(1)));
    EXPECT_TRUE(is_blocked(host(2)));
    wanted = rules;
    wanted.limits[host(1)] = 1'000'000;
    EXPECT_EQ(enforcement.apply(wanted), "");
}

TEST_F(EnforcementTest, LeavesTheManagementHostOutOfEarlierRules)
{
    rules.management_host = host(1);
    rules.blocked = {host(1), host(2)};
    rules.periods[host(1)] = {{0, 0, kAllDays}};
    EXPECT_EQ(enforcement.apply(rules), "");
    EXPECT_THAT(log(), HasSubstr("3 02:00:00:00:00:01 manages this gateway and is not blocked"));
    EXPECT_FALSE(is_blocked(host(1)));
    EXPECT_TRUE(is_blocked(host(2)));
    rules.blocked.insert(host(3));
    EXPECT_EQ(enforcement.apply(rules), "");
    EXPECT_FALSE(is_blocked(host(1)));
    EXPECT_TRUE(is_blocked(host(3)));
    rules.management_host = host(2);
    EXPECT_EQ(enforcement.apply(rules), "");
    EXPECT_TRUE(is_blocked(host(1)));
    EXPECT_FALSE(is_blocked(host(2)));
}

// ---- Periods -----------------------------------------------------------------------------------

TEST_F(EnforcementTest, BlocksAHostDuringItsPeriods)
{
    rules.periods[host(1)] = {{12 * 60 + 1, 12 * 60 + 31, kAllDays}};
    ASSERT_EQ(enforcement.apply(rules), "");
    EXPECT_FALSE(has_tables());
    time += kMinute;
    wait_for([] { return is_blocked(host(1)); });
    EXPECT_THAT(tables(), HasSubstr("timeout 30m "));
    wait_for([] { return log().find("begins") != std::string::npos; });
    time += 29 * kMinute;
    std::this_thread::sleep_for(std::chrono::milliseconds(1500)); // longer than the clock is read
    EXPECT_TRUE(is_blocked(host(1)));
    time += kMinute;
    wait_for([] { return !has_tables(); });
    wait_for([] { return log().find("ends") != std::string::npos; });
    EXPECT_EQ(log(), "6 02:00:00:00:00:01: a period without Internet access begins\n"
                     "6 02:00:00:00:00:01: a period without Internet access ends\n");
}

TEST_F(EnforcementTest, FollowsAClockThatIsSetBack)
{
    rules.periods[host(1)] = {{12 * 60, 13 * 60, kAllDays}};
    ASSERT_EQ(enforcement.apply(rules), "");
    EXPECT_TRUE(is_blocked(host(1)));
    time -= 10 * kMinute;
    wait_for([] { return !is_blocked(host(1)); });
    time += 20 * kMinute;
    wait_for([] { return is_blocked(host(1)); });
    EXPECT_THAT(tables(), HasSubstr("timeout 50m "));
    time += 10 * kMinute; // the kernel is to end it earlier then
    wait_for([] { return tables().find("timeout 40m ") != std::string::npos; });
}

TEST_F(EnforcementTest, BlocksForGoodEvenWithinPeriods)
{
    rules.blocked = {host(1)};
    rules.periods[host(1)] = {{12 * 60, 13 * 60, kAllDays}};
    ASSERT_EQ(enforcement.apply(rules), "");
    EXPECT_THAT(tables(), Not(HasSubstr("timeout 1h")));
    rules.periods.clear();
    ASSERT_EQ(enforcement.apply(rules), "");
    EXPECT_TRUE(is_blocked(host(1)));
}

TEST(EnforcementZone, HasToExist)
{
    EXPECT_THROW(Enforcement("Nowhere/Town"), Error);
}

// ---- Put back ----------------------------------------------------------------------------------

class PutBack : public EnforcementTest, public testing::WithParamInterface<const char *> {};
class TablesPutBack : public PutBack {};
class LimitsPutBack : public PutBack {};

TEST_P(TablesPutBack, AndLogged)
{
    rules.blocked = {host(1), host(2)};
    ASSERT_EQ(enforcement.apply(rules), "");
    const std::string before = tables();
    run(GetParam());
    wait_for([] { return !log().empty(); });
    EXPECT_EQ(log(),
              "3 another program has changed the tables linux_gateway of nftables: they have "
              "been put back\n");
    EXPECT_EQ(tables(), before);
}
INSTANTIATE_TEST_SUITE_P(After, TablesPutBack,
                         testing::Values("nft flush ruleset",
                                         "nft delete table bridge linux_gateway",
                                         "nft flush chain inet linux_gateway forward",
                                         "nft flush set inet linux_gateway blocked"));

TEST_P(LimitsPutBack, AndLogged)
{
    rules.limits = {{host(1), 1'000'000}, {host(2), 2'000'000}};
    ASSERT_EQ(enforcement.apply(rules), "");
    const std::string before = queueing();
    run(GetParam());
    wait_for([] { return !log().empty(); });
    EXPECT_EQ(log(), "3 another program has changed the download limits of lan0: they have been "
                     "put back\n");
    EXPECT_EQ(queueing(), before);
}
INSTANTIATE_TEST_SUITE_P(
    After, LimitsPutBack,
    testing::Values(
        "tc qdisc delete dev lan0 root", "tc filter delete dev lan0 parent 6c67: prio 1",
        "tc class change dev lan0 parent 6c67: classid 6c67:1 htb rate 9mbit quantum 1514"));

TEST_F(EnforcementTest, LimitsABridgeThatIsMadeAgain)
{
    rules.limits = {{host(1), 1'000'000}};
    ASSERT_EQ(enforcement.apply(rules), "");
    run("ip link delete lan0; ip link add lan0 type bridge");
    wait_for([] { return queueing().find("rate 1Mbit") != std::string::npos; });
}

TEST_F(EnforcementTest, PutsBackAgainAndAgain)
{
    rules.blocked = {host(1)};
    ASSERT_EQ(enforcement.apply(rules), "");
    for (size_t times = 1; times <= 3; ++times) {
        run("nft flush ruleset");
        wait_for([] { return is_blocked(host(1)); });
    }
}

TEST_F(EnforcementTest, DoesNotTakeItsOwnChangesForThoseOfOthers)
{
    for (uint16_t number = 0; number < 20; ++number) {
        rules.blocked.insert(host(number));
        rules.limits[host(number)] = 1'000'000;
        ASSERT_EQ(enforcement.apply(rules), "");
    }
    run("nft add table ip other && nft delete table ip other");
    std::this_thread::sleep_for(std::chrono::seconds(1)); // longer than it takes to put back
    EXPECT_EQ(log(), "");
}

TEST_F(EnforcementTest, ExceptsAddressesThatTheGatewayGetsLater)
{
    rules.blocked = {host(1)};
    ASSERT_EQ(enforcement.apply(rules), "");
    EXPECT_THAT(tables(), Not(HasSubstr("192.168.77.1")));
    std::this_thread::sleep_for(std::chrono::seconds(1)); // longer than its own changes matter
    run("ip address add 192.168.77.1/24 dev lan0 && ip address add fd00:77::1/64 dev lan0 nodad");
    wait_for([] {
        const std::string text = tables();
        return text.find("192.168.77.1") != std::string::npos &&
               text.find("fd00:77::1") != std::string::npos;
    });
    EXPECT_EQ(log(), "");
}

// ---- Flow tables of other programs
// ---------------------------------------------------------------

// The kernel may be without flow tables: the test says which there are, and sends the kernel's
// report of a change.
class FlowTableTest : public NetworkNamespaceTest {
  protected:
    std::atomic<int> tables = 0;
    Rules rules{kBridge, {host(1)}, {}, {}, {}};
    Enforcement enforcement{"UTC", system_time, [this] {
                                std::set<std::string> names;
                                for (int number = 1; number <= tables; ++number) {
                                    names.insert("t" + std::to_string(number));
                                }
                                return names;
                            }};

    void TearDown() override { enforcement.stop(); }

    static void report_change(int type)
    {
        std::array<char, 256> buffer{};
        nlmsghdr *message = mnl_nlmsg_put_header(buffer.data());
        message->nlmsg_type = static_cast<uint16_t>(NFNL_SUBSYS_NFTABLES << 8 | type);
        auto *family =
            static_cast<nfgenmsg *>(mnl_nlmsg_put_extra_header(message, sizeof(nfgenmsg)));
        family->nfgen_family = NFPROTO_INET;
        mnl_attr_put_strz(message, NFTA_FLOWTABLE_TABLE, "firewall");
        mnl_socket *socket = mnl_socket_open(NETLINK_NETFILTER);
        ASSERT_NE(socket, nullptr);
        sockaddr_nl group = {};
        group.nl_family = AF_NETLINK;
        group.nl_groups = 1U << (NFNLGRP_NFTABLES - 1);
        EXPECT_EQ(sendto(mnl_socket_get_fd(socket), message, message->nlmsg_len, 0,
                         reinterpret_cast<const sockaddr *>(&group), sizeof(group)),
                  message->nlmsg_len);
        mnl_socket_close(socket);
    }
    static void await_lines(int64_t count)
    {
        while (std::ranges::count(log(), '\n') < count) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    static std::string sentence(const std::string &table)
    {
        return "3 nftables has the flow table " + table +
               ": connections in it may bypass blocks and limits; remove it\n";
    }
};
constexpr std::chrono::seconds kLongerThanACheck{1};

TEST_F(FlowTableTest, IsReportedOnceWhenItIsAdded)
{
    ASSERT_EQ(enforcement.apply(rules), "");
    tables = 1;
    report_change(NFT_MSG_NEWFLOWTABLE);
    await_lines(1);
    report_change(NFT_MSG_NEWFLOWTABLE); // with another interface
    std::this_thread::sleep_for(kLongerThanACheck);
    tables = 2;
    report_change(NFT_MSG_NEWFLOWTABLE);
    await_lines(2);
    EXPECT_EQ(log(), sentence("t1") + sentence("t2"));
}

TEST_F(FlowTableTest, IsReportedAgainWhenItIsAddedAgain)
{
    ASSERT_EQ(enforcement.apply(rules), "");
    for (const int times : {1, 2}) {
        tables = 1;
        report_change(NFT_MSG_NEWFLOWTABLE);
        await_lines(times);
        tables = 0;
        report_change(NFT_MSG_DELFLOWTABLE);
        std::this_thread::sleep_for(kLongerThanACheck);
    }
    EXPECT_EQ(log(), sentence("t1") + sentence("t1"));
}

// Nothing is watched while nothing is enforced.
TEST_F(FlowTableTest, IsReportedWithTheFirstRules)
{
    ASSERT_EQ(enforcement.apply({kBridge, {}, {}, {}, {}}), "");
    tables = 1;
    ASSERT_EQ(enforcement.apply(rules), "");
    await_lines(1);
    EXPECT_EQ(log(), sentence("t1"));
}

// The gateway names those as it starts.
TEST_F(FlowTableTest, IsNotReportedIfItWasThereAtTheStart)
{
    tables = 1;
    ASSERT_EQ(enforcement.apply(rules), "");
    tables = 2;
    report_change(NFT_MSG_NEWFLOWTABLE);
    await_lines(1);
    EXPECT_EQ(log(), sentence("t2"));
}

// ---- Failures ----------------------------------------------------------------------------------

TEST_F(EnforcementTest, KeepsItsRulesIfALimitCannotBeSet)
{
    rules.blocked = {host(1)};
    ASSERT_EQ(enforcement.apply(rules), "");
    run("tc qdisc add dev lan0 root handle 7: bfifo");
    Rules wanted = rules;
    wanted.limits[host(2)] = 1'000'000;
    wanted.blocked.insert(host(2));
    EXPECT_THAT(enforcement.apply(wanted), HasSubstr("lan0 has another program's queueing root"));
    EXPECT_FALSE(is_blocked(host(2)));
    EXPECT_TRUE(is_blocked(host(1)));
    wanted.limits.clear();
    EXPECT_EQ(enforcement.apply(wanted), "");
    EXPECT_TRUE(is_blocked(host(2)));
}

// A program may keep others from changing a table while it runs.
TEST_F(EnforcementTest, KeepsItsLimitsIfABlockCannotBeSet)
{
    rules.limits = {{host(1), 1'000'000}};
    ASSERT_EQ(enforcement.apply(rules), "");
    FILE *owner = popen("nft -i >/dev/null", "w");
    ASSERT_NE(owner, nullptr);
    std::fputs("add table inet linux_gateway { flags owner; }\n", owner);
    std::fflush(owner);
    wait_for([] { return has_tables(); });
    Rules wanted = rules;
    wanted.limits[host(1)] = 2'000'000;
    wanted.blocked = {host(1)};
    EXPECT_THAT(enforcement.apply(wanted), HasSubstr("nftables: "));
    EXPECT_THAT(queueing(), HasSubstr("rate 1Mbit"));
    EXPECT_EQ(pclose(owner), 0);
    EXPECT_EQ(enforcement.apply(wanted), "");
    EXPECT_TRUE(is_blocked(host(1)));
}

TEST_F(EnforcementTest, WaitsForTheBridgeAtTheStart)
{
    run("ip link delete lan0");
    rules.blocked = {host(1)};
    rules.limits = {{host(1), 1'000'000}};
    EXPECT_EQ(enforcement.apply(rules), "");
    EXPECT_THAT(log(), HasSubstr("3 rules are not in force: there is no bridge lan0"));
    EXPECT_TRUE(is_blocked(host(1)));
    run("ip link add lan0 type bridge");
    wait_for([] { return queueing().find("rate 1Mbit") != std::string::npos; });
}

TEST_F(EnforcementTest, LeavesARootAloneThatReplacesItsOwn)
{
    rules.limits = {{host(1), 1'000'000}};
    ASSERT_EQ(enforcement.apply(rules), "");
    run("tc qdisc replace dev lan0 root handle 7: bfifo");
    wait_for([] { return !log().empty(); });
    EXPECT_THAT(log(),
                HasSubstr("3 rules are not in force: lan0 has another program's queueing root"));
    EXPECT_THAT(queueing(), HasSubstr("bfifo 7:"));
    rules.blocked = {host(1)};
    EXPECT_EQ(enforcement.apply(rules), "");
    run("tc qdisc delete dev lan0 root");
    wait_for([] { return queueing().find("rate 1Mbit") != std::string::npos; });
}

} // namespace
} // namespace linux_gateway
