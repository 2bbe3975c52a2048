// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

class GatewayInspectionTest : public GatewayTest {
  protected:
    // Clients, security, channel, congestion, power and firewall.
    static std::string shown(const WifiInspectInfo &info)
    {
        return std::string(info.WiFiDevNum) + " " + info.Security + " " + info.Channel + " " +
               info.Congestion + " " + info.PowerLevel + " " + info.FireWallEnable;
    }
    static std::string wifi()
    {
        WifiInspectInfo info = {};
        EXPECT_EQ(devapi_inspect_hg_wifi(&info), 0);
        return shown(info);
    }
    static std::string optimize(const std::string &channel)
    {
        WifiInspectInfo info = {};
        set(info.Channel, channel);
        return devapi_optimize_hg_wifi(&info) == 0 ? shown(info) : "refused";
    }
    static std::string optimize(const std::string &channel, const std::string &power)
    {
        WifiInspectInfo info = {};
        set(info.Channel, channel);
        set(info.PowerLevel, power);
        return devapi_optimize_wifi_channel_power(&info) == 0 ? shown(info) : "refused";
    }
    template <auto call> static NetInspectInfo net()
    {
        NetInspectInfo info = {};
        EXPECT_EQ(call(&info), 0);
        return info;
    }
    template <auto call> static std::string resources()
    {
        ResourceInfo info = {};
        EXPECT_EQ(call(&info), 0);
        return std::string(info.CpuPercent) + " " + info.MemPercent + " " + info.LanDevNum + " " +
               info.ProtectedDevNum;
    }
    static std::string uplink()
    {
        char status[8] = {};
        EXPECT_EQ(devapi_get_uplink_status(status, sizeof(status)), 0);
        return status;
    }
    static std::string fault()
    {
        char reason[16] = {};
        EXPECT_EQ(devapi_get_net_fault_info(reason), 0);
        return reason;
    }

    std::string open_home(const nlohmann::json &home)
    {
        return open_at(kTime,
                       {.scenario = write("home.json", home.dump()), .trace = path("trace")});
    }
    static nlohmann::json house_without_wan(const std::string &fault)
    {
        nlohmann::json home = house();
        home["wan"]["connected"] = false;
        home["wan"]["fault"] = fault;
        return home;
    }
    static nlohmann::json neighbour(const std::string &band, int channel, int signal_dbm)
    {
        return {{"band", band},
                {"channel", channel},
                {"signal_dbm", signal_dbm},
                {"encryption", "WPA2"}};
    }
    static nlohmann::json house_between(const std::vector<nlohmann::json> &neighbours)
    {
        nlohmann::json home = house();
        home["neighbours"] = neighbours;
        return home;
    }
};

TEST_F(GatewayInspectionTest, TheWifiIsMeasuredOnTheModel)
{
    ASSERT_EQ(open_at(kTime, {}), "");
    // On channel 6: -61 dBm counts 17, -68 dBm 13, and channel 3 at -79 dBm two fifths of 8.
    EXPECT_EQ(wifi(), "8 MEDIUM 6 33 100 1");
}

TEST_F(GatewayInspectionTest, OnlyHostsThatAreOnlineByRadioAreClients)
{
    nlohmann::json home = house();
    home["hosts"][2]["online"] = false;
    home["hosts"][2].erase("signal_dbm");
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(wifi().substr(0, 2), "7 ");
    EXPECT_EQ(resources<devapi_inspect_hg_resource>().substr(5), " 10 2");
}

TEST_F(GatewayInspectionTest, SecurityIsThatOfTheWeakestEnabledNetwork)
{
    const auto security_with = [&](const char *encryption) {
        nlohmann::json home = house();
        for (nlohmann::json &ssid : home["ssids"]) {
            ssid["encryption"] = "WPA3";
            ssid["password"] = "long-enough";
        }
        home["ssids"][1]["encryption"] = encryption;
        home["ssids"][3] = {
            {"name", "x"}, {"band", "2.4GHz"}, {"enabled", false}, {"encryption", "OPEN"}};
        EXPECT_EQ(open_home(home), "");
        const std::string words = wifi();
        return words.substr(2, words.find(' ', 2) - 2);
    };
    EXPECT_EQ(security_with("OPEN"), "LOW");
    EXPECT_EQ(security_with("WPA2"), "MEDIUM");
    EXPECT_EQ(security_with("WPA2/3"), "HIGH");
    EXPECT_EQ(security_with("WPA3"), "HIGH");
}

TEST_F(GatewayInspectionTest, AnOptimisationMovesTheChannelAndALaterInspectionShowsIt)
{
    ASSERT_EQ(open_at(kTime, {.state_file = path("state")}), "");
    EXPECT_EQ(optimize("6"), "8 MEDIUM 11 6 100 1");
    EXPECT_EQ(wifi(), "8 MEDIUM 11 6 100 1");
    ASSERT_EQ(open_at(kTime, {.state_file = path("state")}), "");
    EXPECT_EQ(wifi(), "8 MEDIUM 11 6 100 1");
    // A channel that is the best already stays.
    EXPECT_EQ(optimize("6"), "8 MEDIUM 11 6 100 1");
}

TEST_F(GatewayInspectionTest, TheChannelOfTheRequestSelectsTheRadio)
{
    ASSERT_EQ(open_at(kTime, {.state_file = path("state")}), "");
    EXPECT_EQ(optimize("36"), "8 MEDIUM 149 4 100 1");
    EXPECT_EQ(wifi(), "8 MEDIUM 6 33 100 1");
    const nlohmann::json radios = json_of(path("state")).at("home").at("radios");
    EXPECT_EQ(radios.at(0).at("channel"), 6);
    EXPECT_EQ(radios.at(1).at("channel"), 149);
}

TEST_F(GatewayInspectionTest, ThePowerIsSetWithTheChannel)
{
    ASSERT_EQ(open_at(kTime, {}), "");
    EXPECT_EQ(optimize("6", "50"), "8 MEDIUM 11 6 50 1");
    EXPECT_EQ(wifi(), "8 MEDIUM 11 6 50 1");
    EXPECT_EQ(optimize("11", "0"), "8 MEDIUM 11 6 0 1");
}

TEST_F(GatewayInspectionTest, AmongEqualChannelsTheOneInUseStaysAndElseTheLowestIsTaken)
{
    ASSERT_EQ(open_home(house_between({})), "");
    EXPECT_EQ(optimize("1"), "8 MEDIUM 6 0 100 1");
    EXPECT_EQ(optimize("36"), "8 MEDIUM 44 0 100 1");
    ASSERT_EQ(open_home(house_between({neighbour("2.4GHz", 6, -50)})), "");
    EXPECT_EQ(optimize("6"), "8 MEDIUM 1 0 100 1");
    ASSERT_EQ(open_home(house_between({neighbour("5GHz", 36, -50)})), "");
    EXPECT_EQ(optimize("44"), "8 MEDIUM 149 0 100 1");
}

TEST_F(GatewayInspectionTest, CongestionGrowsWithSignalAndProximityUpToAHundred)
{
    const auto congestion_with = [&](const std::vector<nlohmann::json> &neighbours) {
        EXPECT_EQ(open_home(house_between(neighbours)), "");
        WifiInspectInfo info = {};
        EXPECT_EQ(devapi_inspect_hg_wifi(&info), 0);
        return std::string(info.Congestion);
    };
    EXPECT_EQ(congestion_with({neighbour("2.4GHz", 6, -55)}), "20");
    EXPECT_EQ(congestion_with({neighbour("2.4GHz", 6, -45)}), "25");
    EXPECT_EQ(congestion_with({neighbour("2.4GHz", 7, -55)}), "16");
    EXPECT_EQ(congestion_with({neighbour("2.4GHz", 2, -55)}), "4");
    EXPECT_EQ(congestion_with({neighbour("2.4GHz", 11, -55)}), "0");
    EXPECT_EQ(congestion_with({neighbour("2.4GHz", 6, -100)}), "0");
    EXPECT_EQ(congestion_with({neighbour("5GHz", 36, -30)}), "0");
    EXPECT_EQ(congestion_with(std::vector(6, neighbour("2.4GHz", 6, -20))), "100");
}

TEST_F(GatewayInspectionTest, AnOptimisationWithoutAChannelOfARadioIsRefused)
{
    ASSERT_EQ(open_at(kTime, {.trace = path("trace")}), "");
    for (const char *channel : {"", "six", "6a", " 6"}) {
        EXPECT_EQ(optimize(channel), "refused");
        EXPECT_EQ(reason(), "Channel is not a number");
    }
    EXPECT_EQ(optimize("0"), "refused");
    EXPECT_EQ(reason(), "Channel 0 does not belong to any radio");
    EXPECT_EQ(optimize("20", "50"), "refused");
    EXPECT_EQ(reason(), "Channel 20 does not belong to any radio");
    EXPECT_EQ(optimize("6", ""), "refused");
    EXPECT_EQ(reason(), "PowerLevel is not a number");
    EXPECT_EQ(optimize("6", "101"), "refused");
    EXPECT_EQ(reason(), "/home/radios/0/power_percent: 101 is not within 0 to 100");
    WifiInspectInfo filled = {};
    std::memset(&filled, '6', sizeof(filled));
    EXPECT_EQ(devapi_optimize_hg_wifi(&filled), -1);
    EXPECT_EQ(reason(), "Channel 66666666 does not belong to any radio");
    EXPECT_EQ(wifi(), "8 MEDIUM 6 33 100 1");
}

TEST_F(GatewayInspectionTest, ARadioThatIsOffOrNotThereIsNotOptimised)
{
    nlohmann::json home = house();
    home["radios"][1]["enabled"] = false;
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(optimize("36"), "refused");
    EXPECT_EQ(reason(), "the radio of 5GHz is off");

    home["radios"] = home["ssids"] = home["guest_networks"] = nlohmann::json::array();
    home["hosts"] = nlohmann::json::array();
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(optimize("36"), "refused");
    WifiInspectInfo info = {};
    EXPECT_EQ(devapi_inspect_hg_wifi(&info), -1);
    EXPECT_EQ(reason(), "there is no radio");
}

TEST_F(GatewayInspectionTest, TheTraceShowsWhatAnOptimisationChose)
{
    ASSERT_EQ(open_at(kTime, {.trace = path("trace")}), "");
    optimize("6");
    EXPECT_NE(lines(path("trace")).back().find("devapi_optimize_hg_wifi(info={WiFiDevNum=\"8\", "),
              std::string::npos);
    uplink();
    EXPECT_NE(
        lines(path("trace")).back().find("devapi_get_uplink_status(status=\"1\", size=8) = 0 in "),
        std::string::npos);
}

TEST_F(GatewayInspectionTest, EverythingIsInspectedTogether)
{
    ASSERT_EQ(open_at(kTime, {}), "");
    WifiInspectInfo wifi_info = {};
    FwInspectInfo firmware = {};
    NetInspectInfo net_info = {};
    EXPECT_EQ(devapi_inspect_hg(&wifi_info, &firmware, &net_info), 0);
    EXPECT_EQ(shown(wifi_info), wifi());
    EXPECT_STREQ(firmware.FWVersion, "V2.4.1");
    EXPECT_STREQ(net_info.WanStatus, "Connected");
    EXPECT_STREQ(net_info.NetStatus, "1");
    EXPECT_STREQ(net_info.WanIP, "100.72.18.203");
    EXPECT_STREQ(net_info.NetMask, "255.255.255.255");
    EXPECT_EQ(devapi_inspect_hg(nullptr, &firmware, &net_info), -1);
    EXPECT_EQ(devapi_inspect_hg(&wifi_info, nullptr, &net_info), -1);
    EXPECT_EQ(devapi_inspect_hg(&wifi_info, &firmware, nullptr), -1);
}

TEST_F(GatewayInspectionTest, AConnectionWithoutFault)
{
    ASSERT_EQ(open_at(kTime, {}), "");
    EXPECT_STREQ(net<devapi_inspect_net_connect>().DnsStatus, "1");
    EXPECT_STREQ(net<devapi_inspect_net_connect>().WanStatus, "Connected");
    EXPECT_EQ(uplink(), "1");
    EXPECT_EQ(fault(), "NULL");
}

TEST_F(GatewayInspectionTest, AFaultIsNamedAndEndsWithARepair)
{
    for (const char *reason : {"NO_ADDRESS", "AUTH_FAILED", "DNS_FAILED"}) {
        ASSERT_EQ(open_home(house_without_wan(reason)), "");
        EXPECT_EQ(fault(), reason);
        EXPECT_EQ(uplink(), "0");
        const NetInspectInfo broken = net<devapi_inspect_net_connect>();
        EXPECT_STREQ(broken.DnsStatus, "0");
        EXPECT_STREQ(broken.WanStatus, "Disconnected");
        EXPECT_STREQ(broken.NetStatus, "0");
        EXPECT_STREQ(broken.WanIP, "NULL");
        EXPECT_STREQ(broken.NetMask, "NULL");
        EXPECT_STREQ(net<devapi_inspect_net_quality>().NetQuality, "NONE");
        EXPECT_STREQ(net<devapi_optimize_net_connect>().DnsStatus, "1");
        EXPECT_EQ(fault(), "NULL");
        EXPECT_EQ(uplink(), "1");
    }
}

TEST_F(GatewayInspectionTest, ARepairFixesNeitherACableNorMissingAddresses)
{
    ASSERT_EQ(open_home(house_without_wan("LINK_DOWN")), "");
    EXPECT_STREQ(net<devapi_optimize_net_connect>().DnsStatus, "0");
    EXPECT_EQ(fault(), "LINK_DOWN");
    nlohmann::json home = house_without_wan("AUTH_FAILED");
    home["wan"].erase("gateway");
    ASSERT_EQ(open_home(home), "");
    EXPECT_STREQ(net<devapi_optimize_net_connect>().DnsStatus, "0");
    EXPECT_EQ(fault(), "NO_ADDRESS");
}

TEST_F(GatewayInspectionTest, ARepairLeavesAWorkingConnectionUnchanged)
{
    const Options kept = {.state_file = path("state")};
    ASSERT_EQ(open_at(kTime, kept), "");
    ASSERT_EQ(open_at(kTime + 60, kept), "");
    EXPECT_STREQ(net<devapi_optimize_net_connect>().DnsStatus, "1");
    HgBaseInfo base = {};
    EXPECT_EQ(devapi_get_hg_base_info(&base), 0);
    EXPECT_STREQ(base.WanUptime, "60");
}

TEST_F(GatewayInspectionTest, TheQualityIsThatOfTheDelayAndGetsBetter)
{
    ASSERT_EQ(open_at(kTime, {}), "");
    EXPECT_STREQ(net<devapi_inspect_net_quality>().NetQuality, "FAIR");
    EXPECT_STREQ(net<devapi_optimize_net_quality>().NetQuality, "GOOD");
    EXPECT_STREQ(net<devapi_inspect_net_quality>().NetQuality, "GOOD");
    HgBaseInfo base = {};
    EXPECT_EQ(devapi_get_hg_base_info(&base), 0);
    EXPECT_STREQ(base.QosAcceleratorEnable, "1");

    nlohmann::json far_away = house();
    far_away["ordinary_day"]["delay_ms"] = 300;
    ASSERT_EQ(open_home(far_away), "");
    EXPECT_STREQ(net<devapi_optimize_net_quality>().NetQuality, "POOR");
}

TEST_F(GatewayInspectionTest, FreedResourcesStayFreeForAWhile)
{
    const Options kept = {.state_file = path("state")};
    const auto memory = [] {
        ResourceInfo info = {};
        EXPECT_EQ(devapi_inspect_hg_resource(&info), 0);
        return std::stoi(info.MemPercent);
    };
    ASSERT_EQ(open_at(kTime, kept), "");
    const std::string before = resources<devapi_inspect_hg_resource>();
    EXPECT_GE(memory(), 45);
    const std::string after = resources<devapi_optimize_hg_resource>();
    EXPECT_NE(after, before);
    EXPECT_EQ(resources<devapi_inspect_hg_resource>(), after);
    EXPECT_LT(memory(), 40);
    EXPECT_TRUE(after.ends_with(" 11 2")) << after;
    ASSERT_EQ(open_at(kTime + 599, kept), "");
    EXPECT_LT(memory(), 40);
    ASSERT_EQ(open_at(kTime + 600, kept), "");
    EXPECT_GE(memory(), 45);

    resources<devapi_optimize_hg_resource>();
    EXPECT_LT(memory(), 40);
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_GE(memory(), 45);
}

TEST_F(GatewayInspectionTest, AShortBufferIsNotOverrun)
{
    ASSERT_EQ(open_at(kTime, {.trace = path("trace")}), "");
    char status[8];
    std::memset(status, 'x', sizeof(status));
    EXPECT_EQ(devapi_get_uplink_status(status, 1), 0);
    EXPECT_EQ(status[0], '\0');
    EXPECT_EQ(status[1], 'x');
    EXPECT_EQ(devapi_get_uplink_status(status, 0), -1);
    EXPECT_EQ(devapi_get_uplink_status(status, INT32_MIN), -1);
    EXPECT_EQ(devapi_get_uplink_status(nullptr, 8), -1);
    EXPECT_EQ(devapi_get_net_fault_info(nullptr), -1);
}

TEST_F(GatewayInspectionTest, NullRecordsAreFailedCalls)
{
    ASSERT_EQ(open_at(kTime, {}), "");
    EXPECT_EQ(devapi_inspect_net_quality(nullptr), -1);
    EXPECT_EQ(devapi_optimize_net_quality(nullptr), -1);
    EXPECT_EQ(devapi_inspect_net_connect(nullptr), -1);
    EXPECT_EQ(devapi_optimize_net_connect(nullptr), -1);
    EXPECT_EQ(devapi_inspect_hg_wifi(nullptr), -1);
    EXPECT_EQ(devapi_optimize_hg_wifi(nullptr), -1);
    EXPECT_EQ(devapi_optimize_wifi_channel_power(nullptr), -1);
    EXPECT_EQ(devapi_inspect_hg_resource(nullptr), -1);
    EXPECT_EQ(devapi_optimize_hg_resource(nullptr), -1);
}

} // namespace
