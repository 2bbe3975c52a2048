// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include <cstdlib>
#include <map>

using testing::Key;
using testing::UnorderedElementsAre;

namespace {

class PortsTest : public HouseTest {
  protected:
    struct Counters {
        int64_t sent;
        int64_t received;
        int64_t packets_sent;
        int64_t packets_received;
    };
    using Statistics = std::map<std::string, Counters>;

    static Statistics statistics()
    {
        PortStatisticsInfo info = reported_by(devapi_get_port_statistics_info);
        Statistics statistics;
        for (int32_t at = 0; at < info.count; ++at) {
            const PortStatistics &entry = info.entries[at];
            statistics[entry.Port] = {std::stoll(entry.tx_traffic), std::stoll(entry.rx_traffic),
                                      std::stoll(entry.tx_packets), std::stoll(entry.rx_packets)};
        }
        std::free(info.entries);
        return statistics;
    }
    // The bindings in one line: "1 Internet: NULL; 2 IPTV: LAN4".
    static std::string bindings()
    {
        const PortBindingInfo info = reported_by(devapi_get_port_binding_info);
        std::string text;
        for (int32_t at = 0; at < info.count; ++at) {
            const PortBinding &entry = info.entries[at];
            text += (at == 0 ? "" : "; ") + std::string(entry.Index) + " " + entry.WANName + ": " +
                    entry.BoundPorts;
        }
        return text;
    }
    std::string refused(const std::string &index, const std::string &bound) const
    {
        const std::string before = bindings();
        std::string why = reason(devapi_set_port_binding(index.c_str(), bound.c_str()));
        EXPECT_EQ(bindings(), before);
        return why;
    }
};

TEST_F(PortsTest, ThereIsACounterForEachPort)
{
    EXPECT_THAT(statistics(),
                UnorderedElementsAre(Key("WAN"), Key("LAN1"), Key("LAN2"), Key("LAN3"), Key("LAN4"),
                                     Key("2.4GHz"), Key("5GHz")));
    for (const auto &[port, counters] : statistics()) {
        EXPECT_EQ(counters.sent + counters.received, 0) << port;
        EXPECT_EQ(counters.packets_sent + counters.packets_received, 0) << port;
    }
    ASSERT_EQ(open_home(house({{"/ports", {{"lan", 1}, {"bindings", nlohmann::json::array()}}}})),
              "");
    EXPECT_EQ(statistics().size(), 4u);
}

TEST_F(PortsTest, TheyCountTheTrafficOfTheHostsOverTime)
{
    ASSERT_EQ(open_when(kTime + 10), "");
    const Statistics first = statistics();
    // The rates of the hosts are rounded down, so their sum is a little less than the home's rate.
    EXPECT_NEAR(static_cast<double>(first.at("WAN").sent), std::stod(base().UpSpeed) * 1250, 2e4);
    EXPECT_NEAR(static_cast<double>(first.at("WAN").received), std::stod(base().DownSpeed) * 1250,
                2e4);
    EXPECT_EQ(statistics().at("WAN").sent, first.at("WAN").sent); // the clock is stopped

    ASSERT_EQ(open_when(kTime + 3600), "");
    const Statistics second = statistics();
    for (const auto &[port, counters] : second) {
        EXPECT_GE(counters.sent, first.at(port).sent) << port;
        EXPECT_GE(counters.received, first.at(port).received) << port;
        EXPECT_GE(counters.packets_sent, first.at(port).packets_sent) << port;
        EXPECT_GE(counters.packets_received, first.at(port).packets_received) << port;
    }
    EXPECT_GT(second.at("WAN").packets_sent, first.at("WAN").packets_sent);
}

TEST_F(PortsTest, TheWanCarriesTheTrafficOfTheOtherPorts)
{
    ASSERT_EQ(open_when(kTime + 7200), "");
    const Statistics counted = statistics();
    int64_t sent = 0;
    int64_t received = 0;
    for (const auto &[port, counters] : counted) {
        if (port != "WAN") {
            sent += counters.sent;
            received += counters.received;
        }
    }
    EXPECT_EQ(counted.at("WAN").sent, received);
    EXPECT_EQ(counted.at("WAN").received, sent);
    EXPECT_GT(counted.at("LAN1").sent, 0); // the first floor
    EXPECT_GT(counted.at("2.4GHz").received, 0);
    EXPECT_EQ(counted.at("LAN4").sent, 0); // nobody's
}

TEST_F(PortsTest, TheSameHomeCountsTheSame)
{
    ASSERT_EQ(open_when(kTime + 600), "");
    const int64_t first = statistics().at("WAN").sent;
    ASSERT_EQ(open_kept_home(house()), "");
    ASSERT_EQ(open_when(kTime + 600), "");
    EXPECT_EQ(statistics().at("WAN").sent, first);
    ASSERT_EQ(open_kept_home(house({{"/ordinary_day/seed", 4711}})), "");
    ASSERT_EQ(open_when(kTime + 600), "");
    EXPECT_NE(statistics().at("WAN").sent, first);
}

TEST_F(PortsTest, ABlockedHostNoLongerCounts)
{
    nlohmann::json home = house({{"/mesh/enabled", false}, {"/mesh/link_layer_up", false}});
    home["hosts"] = {home["hosts"][3], home["hosts"][1]};
    home["hosts"][1].erase("presence_percent");
    ASSERT_EQ(open_kept_home(home), "");
    ASSERT_EQ(open_when(kTime + 100), "");
    const Statistics before = statistics();
    EXPECT_GT(before.at("2.4GHz").sent, 0);
    ASSERT_EQ(
        set_by(devapi_set_attach_device_right, {{"MAC", home["hosts"][0]["mac"].get<std::string>()},
                                                {"InternetAccessRight", "DENY"}}),
        0);
    ASSERT_EQ(open_when(kTime + 200), "");
    EXPECT_EQ(statistics().at("2.4GHz").sent, before.at("2.4GHz").sent);
    EXPECT_GT(statistics().at("LAN1").sent, before.at("LAN1").sent);
}

// Traffic is counted up to the time the guest leaves, and redistributed from then on.
TEST_F(PortsTest, WhenAGuestNetworkEndsTheOthersShareItsRates)
{
    nlohmann::json home = house(
        {{"/guest_networks/0/seconds", 100}, {"/hosts/0/ssid", 2}, {"/hosts/0/signal_dbm", -50}});
    home["hosts"][0].erase("presence_percent");
    ASSERT_EQ(open_kept_home(home), "");
    EXPECT_STREQ(host(1).NetStatus, "1");
    ASSERT_EQ(open_when(kTime + 100), "");
    int64_t sum = 0;
    for (int32_t index = 1; index <= 12; ++index) {
        sum += std::stoll(host(index).DownSpeed);
    }
    EXPECT_STREQ(host(1).NetStatus, "0");
    EXPECT_NEAR(static_cast<double>(sum), std::stod(base().DownSpeed), 12);
}

TEST_F(PortsTest, ABootResetsThem)
{
    ASSERT_EQ(open_when(kTime + 600), "");
    EXPECT_GT(statistics().at("WAN").sent, 0);
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_EQ(statistics().at("WAN").sent, 0);
}

TEST_F(PortsTest, AClockFarAheadAddsNoMoreThanTheCountersHold)
{
    for (int64_t time = 1; time < 100; ++time) {
        ASSERT_EQ(open_when(INT64_MAX / 100 * time), "");
        const Counters wan = statistics().at("WAN");
        EXPECT_GT(wan.sent, 0);
        EXPECT_GE(wan.packets_sent, 0);
    }
}

TEST_F(PortsTest, PortsAreBoundToWanConnections)
{
    EXPECT_EQ(bindings(), "1 Internet: NULL; 2 IPTV: LAN4; 3 Management: NULL; 4 Voice: NULL");
    EXPECT_EQ(devapi_set_port_binding("4", "SSID3,LAN2"), 0);
    EXPECT_EQ(devapi_set_port_binding("1", "LAN1"), 0);
    EXPECT_EQ(bindings(),
              "1 Internet: LAN1; 2 IPTV: LAN4; 3 Management: NULL; 4 Voice: LAN2,SSID3");
    // A port leaves the connection that it was bound to.
    EXPECT_EQ(devapi_set_port_binding("2", "LAN1,LAN2"), 0);
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(bindings(),
              "1 Internet: NULL; 2 IPTV: LAN1,LAN2; 3 Management: NULL; 4 Voice: SSID3");
    EXPECT_EQ(devapi_set_port_binding("2", "NULL"), 0);
    EXPECT_EQ(devapi_set_port_binding("4", ""), 0);
    EXPECT_EQ(bindings(), "1 Internet: NULL; 2 IPTV: NULL; 3 Management: NULL; 4 Voice: NULL");
}

TEST_F(PortsTest, AllPortsMayBeBoundToOne)
{
    const std::string all = "LAN1,LAN2,LAN3,LAN4,SSID1,SSID2,SSID3,SSID4,SSID5,SSID6,SSID7,SSID8";
    EXPECT_EQ(devapi_set_port_binding("3", all.c_str()), 0);
    EXPECT_EQ(bindings(),
              "1 Internet: NULL; 2 IPTV: NULL; 3 Management: " + all + "; 4 Voice: NULL");
}

TEST_F(PortsTest, WrongBindingsAreRefused)
{
    EXPECT_EQ(refused("0", "LAN1"), "there is no WAN connection 0");
    EXPECT_EQ(refused("5", "LAN1"), "there is no WAN connection 5");
    EXPECT_EQ(refused("-1", "LAN1"), "there is no WAN connection -1");
    EXPECT_EQ(refused("", "LAN1"), "index is not a number");
    EXPECT_EQ(refused("IPTV", "LAN1"), "index is not a number");
    EXPECT_EQ(refused("1", "LAN5"), "there is no port \"LAN5\"");
    EXPECT_EQ(refused("1", "LAN0"), "there is no port \"LAN0\"");
    EXPECT_EQ(refused("1", "SSID9"), "there is no port \"SSID9\"");
    EXPECT_EQ(refused("1", "WAN"), "there is no port \"WAN\"");
    EXPECT_EQ(refused("1", "lan1"), "there is no port \"lan1\"");
    EXPECT_EQ(refused("1", "LAN1,"), "there is no port \"\"");
    EXPECT_EQ(refused("1", "LAN1, LAN2"), "there is no port \" LAN2\"");
    EXPECT_EQ(refused("1", "LAN1,LAN2,LAN1"), "ports names LAN1 twice");
    EXPECT_EQ(refused("1", "LAN1\xff"), "there is no port \"LAN1\\xff\"");
}

} // namespace
