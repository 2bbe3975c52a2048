// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

class GatewayInspectionTest : public GatewayTest {
  protected:
    void SetUp() override { ASSERT_EQ(open_home(house()), ""); }

    // Clients, security, channel, congestion, power and firewall.
    static std::string shown(const WifiInspectInfo &info)
    {
        return std::string(info.WiFiDevNum) + " " + info.Security + " " + info.Channel + " " +
               info.Congestion + " " + info.PowerLevel + " " + info.FireWallEnable;
    }
    static std::string wifi() { return shown(reported_by(devapi_inspect_hg_wifi)); }
    static std::string optimize(const std::string &channel)
    {
        auto info = record_with<WifiInspectInfo>({{"Channel", channel}});
        return devapi_optimize_hg_wifi(&info) == 0 ? shown(info) : "refused";
    }
    static std::string optimize(const std::string &channel, const std::string &power)
    {
        auto info = record_with<WifiInspectInfo>({{"Channel", channel}, {"PowerLevel", power}});
        return devapi_optimize_wifi_channel_power(&info) == 0 ? shown(info) : "refused";
    }
    static std::string resources(int32_t (*query)(ResourceInfo *) = devapi_inspect_hg_resource)
    {
        const ResourceInfo info = reported_by(query);
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

    static nlohmann::json neighbour(const std::string &band, int channel, int signal_dbm)
    {
        return {{"band", band},
                {"channel", channel},
                {"signal_dbm", signal_dbm},
                {"encryption", "WPA2"}};
    }
    static nlohmann::json house_between(const std::vector<nlohmann::json> &neighbours)
    {
        return house({{"/neighbours", neighbours}});
    }
};

TEST_F(GatewayInspectionTest, OnlyHostsThatAreOnlineByRadioAreClients)
{
    nlohmann::json home = house();
    home["hosts"][2]["online"] = false;
    home["hosts"][2].erase("signal_dbm");
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(wifi().substr(0, 2), "7 ");
    EXPECT_EQ(resources().substr(5), " 10 2");
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
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(optimize("6"), "8 MEDIUM 11 6 100 1");
    EXPECT_EQ(wifi(), "8 MEDIUM 11 6 100 1");
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(wifi(), "8 MEDIUM 11 6 100 1");
    // A channel that is the best already stays.
    EXPECT_EQ(optimize("6"), "8 MEDIUM 11 6 100 1");
}

TEST_F(GatewayInspectionTest, TheChannelOfTheRequestSelectsTheRadio)
{
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(optimize("36"), "8 MEDIUM 149 4 100 1");
    EXPECT_EQ(wifi(), "8 MEDIUM 6 33 100 1");
    const nlohmann::json radios = json_of(path("state")).at("home").at("radios");
    EXPECT_EQ(radios.at(0).at("channel"), 6);
    EXPECT_EQ(radios.at(1).at("channel"), 149);
}

TEST_F(GatewayInspectionTest, ThePowerIsSetWithTheChannel)
{
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
        return std::string(reported_by(devapi_inspect_hg_wifi).Congestion);
    };
    // In the house: -61 dBm counts 17, -68 dBm 13, and channel 3 at -79 dBm two fifths of 8.
    EXPECT_EQ(wifi(), "8 MEDIUM 6 33 100 1");
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
    EXPECT_EQ(reason(devapi_optimize_hg_wifi(&filled)),
              "Channel 66666666 does not belong to any radio");
    EXPECT_EQ(wifi(), "8 MEDIUM 6 33 100 1");
}

TEST_F(GatewayInspectionTest, ARadioThatIsOffOrNotThereIsNotOptimised)
{
    ASSERT_EQ(open_home(house({{"/radios/1/enabled", false}})), "");
    EXPECT_EQ(optimize("36"), "refused");
    EXPECT_EQ(reason(), "the radio of 5GHz is off");

    ASSERT_EQ(open_home(house_without_radios()), "");
    EXPECT_EQ(optimize("36"), "refused");
    WifiInspectInfo info = {};
    EXPECT_EQ(reason(devapi_inspect_hg_wifi(&info)), "there is no radio");
}

TEST_F(GatewayInspectionTest, TheTraceShowsWhatAnOptimisationChose)
{
    optimize("6");
    EXPECT_THAT(last_line(), HasSubstr("devapi_optimize_hg_wifi(info={WiFiDevNum=\"8\", "));
    uplink();
    EXPECT_THAT(last_line(), HasSubstr("devapi_get_uplink_status(status=\"1\", size=8) = 0 in "));
}

TEST_F(GatewayInspectionTest, EverythingIsInspectedTogether)
{
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
}

TEST_F(GatewayInspectionTest, AFaultIsNamedAndEndsWithARepair)
{
    for (const char *reason : {"NO_ADDRESS", "AUTH_FAILED", "DNS_FAILED"}) {
        ASSERT_EQ(open_home(house_without_wan(reason)), "");
        EXPECT_EQ(fault(), reason);
        EXPECT_EQ(uplink(), "0");
        const NetInspectInfo broken = reported_by(devapi_inspect_net_connect);
        EXPECT_STREQ(broken.DnsStatus, "0");
        EXPECT_STREQ(broken.WanStatus, "Disconnected");
        EXPECT_STREQ(broken.NetStatus, "0");
        EXPECT_STREQ(broken.WanIP, "NULL");
        EXPECT_STREQ(broken.NetMask, "NULL");
        EXPECT_STREQ(reported_by(devapi_inspect_net_quality).NetQuality, "NONE");
        EXPECT_STREQ(reported_by(devapi_optimize_net_connect).DnsStatus, "1");
        EXPECT_EQ(fault(), "NULL");
        EXPECT_EQ(uplink(), "1");
    }
}

TEST_F(GatewayInspectionTest, ARepairFixesNeitherACableNorMissingAddresses)
{
    ASSERT_EQ(open_home(house_without_wan("LINK_DOWN")), "");
    EXPECT_STREQ(reported_by(devapi_optimize_net_connect).DnsStatus, "0");
    EXPECT_EQ(fault(), "LINK_DOWN");
    nlohmann::json home = house_without_wan("AUTH_FAILED");
    home["wan"].erase("gateway");
    ASSERT_EQ(open_home(home), "");
    EXPECT_STREQ(reported_by(devapi_optimize_net_connect).DnsStatus, "0");
    EXPECT_EQ(fault(), "NO_ADDRESS");
}

TEST_F(GatewayInspectionTest, ARepairLeavesAWorkingConnectionUnchanged)
{
    ASSERT_EQ(open_when(kTime), "");
    ASSERT_EQ(open_when(kTime + 60), "");
    EXPECT_STREQ(reported_by(devapi_optimize_net_connect).DnsStatus, "1");
    EXPECT_STREQ(base().WanUptime, "60");
}

TEST_F(GatewayInspectionTest, TheQualityIsThatOfTheDelayAndGetsBetter)
{
    EXPECT_STREQ(reported_by(devapi_inspect_net_quality).NetQuality, "FAIR");
    EXPECT_STREQ(reported_by(devapi_optimize_net_quality).NetQuality, "GOOD");
    EXPECT_STREQ(reported_by(devapi_inspect_net_quality).NetQuality, "GOOD");
    EXPECT_STREQ(base().QosAcceleratorEnable, "1");

    ASSERT_EQ(open_home(house({{"/ordinary_day/delay_ms", 300}})), "");
    EXPECT_STREQ(reported_by(devapi_optimize_net_quality).NetQuality, "POOR");
}

TEST_F(GatewayInspectionTest, FreedResourcesStayFreeForAWhile)
{
    ASSERT_EQ(open_when(kTime), "");
    const auto memory = [] {
        return std::stoi(reported_by(devapi_inspect_hg_resource).MemPercent);
    };
    const std::string before = resources();
    EXPECT_GE(memory(), 45);
    const std::string after = resources(devapi_optimize_hg_resource);
    EXPECT_NE(after, before);
    EXPECT_EQ(resources(), after);
    EXPECT_LT(memory(), 40);
    EXPECT_TRUE(after.ends_with(" 11 2")) << after;
    ASSERT_EQ(open_when(kTime + 599), "");
    EXPECT_LT(memory(), 40);
    ASSERT_EQ(open_when(kTime + 600), "");
    EXPECT_GE(memory(), 45);

    resources(devapi_optimize_hg_resource);
    EXPECT_LT(memory(), 40);
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_GE(memory(), 45);
}

TEST_F(GatewayInspectionTest, AShortBufferIsNotOverrun)
{
    char status[8];
    std::memset(status, 'x', sizeof(status));
    EXPECT_EQ(devapi_get_uplink_status(status, 1), 0);
    EXPECT_EQ(status[0], '\0');
    EXPECT_EQ(status[1], 'x');
    EXPECT_EQ(devapi_get_uplink_status(status, 0), -1);
    EXPECT_EQ(devapi_get_uplink_status(status, INT32_MIN), -1);
}

} // namespace
