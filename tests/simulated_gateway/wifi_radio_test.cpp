// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <set>

namespace {

class WifiRadioTest : public GatewayTest {
  protected:
    void SetUp() override { ASSERT_EQ(open_home(house()), ""); }

    static std::vector<ScanEntry> scan()
    {
        const ScanResult result = reported_by(devapi_get_scan_ssid);
        std::vector<ScanEntry> networks;
        bool ended = false;
        for (ScanEntry *entry : result.entries) {
            EXPECT_FALSE(ended && entry != nullptr) << "a gap";
            ended = entry == nullptr;
            if (!ended) {
                networks.push_back(*entry);
                std::free(entry);
            }
        }
        return networks;
    }
    // One of them by name and band; an empty record when it was not found.
    static ScanEntry found(const std::string &name, const std::string &band)
    {
        for (const ScanEntry &network : scan()) {
            if (name == network.SSID && band == network.Band) {
                return network;
            }
        }
        return {};
    }
    static int count_of(const std::string &band)
    {
        int count = 0;
        for (const ScanEntry &network : scan()) {
            count += band == network.Band ? 1 : 0;
        }
        return count;
    }
    static std::vector<std::string> powers()
    {
        const ChannelPowerResult result = reported_by(devapi_scan_channel_power);
        const std::unique_ptr<ChannelPower, decltype(&std::free)> owner(result.entries, &std::free);
        std::vector<std::string> powers;
        for (int32_t at = 0; at < result.count; ++at) {
            powers.push_back(std::string(result.entries[at].name) + " " +
                             result.entries[at].dbpower);
        }
        return powers;
    }
};

// ---- Scans -------------------------------------------------------------------------------------

TEST_F(WifiRadioTest, AScanReportsTheNeighbours)
{
    const ScanEntry inn = found("Gasthof Krone", "5GHz");
    EXPECT_NEAR(std::atoi(inn.PowerLevel), -70, 3);
    EXPECT_STREQ(inn.ENCRYPT, "WPA2");
    EXPECT_STREQ(inn.WPACypher, "NONE");
    EXPECT_STREQ(inn.WPA2Cypher, "AES");
    EXPECT_STREQ(inn.Connected, "0");
    EXPECT_STREQ(found("FamilieBrandt", "2.4GHz").ENCRYPT, "WPA2/3");
    EXPECT_STREQ(found("Gasthof Krone Gäste", "2.4GHz").WPA2Cypher, "NONE");
    EXPECT_STREQ(found("NULL", "2.4GHz").ENCRYPT, "WPA2"); // hidden
}

TEST_F(WifiRadioTest, TheStrongestComeFirst)
{
    const std::vector<ScanEntry> networks = scan();
    ASSERT_GT(networks.size(), 10u);
    for (size_t at = 1; at < networks.size(); ++at) {
        EXPECT_LE(std::atoi(networks[at].PowerLevel), std::atoi(networks[at - 1].PowerLevel));
    }
}

TEST_F(WifiRadioTest, ScansVaryOverTimeAndRepeatAtTheSameTime)
{
    std::map<std::string, std::set<int>> signals;
    std::vector<std::string> last;
    for (int scans = 0; scans < 100; ++scans) {
        ASSERT_EQ(open_at(kTime + int64_t{5} * scans, {}), "");
        const std::vector<std::string> now = powers();
        EXPECT_EQ(powers(), now);
        EXPECT_NE(now, last);
        last = now;
        for (const ScanEntry &network : scan()) {
            signals[std::string(network.SSID) + " " + network.Band].insert(
                std::atoi(network.PowerLevel));
        }
    }
    EXPECT_EQ(signals.at("Gasthof Krone 2.4GHz"),
              (std::set<int>{-64, -63, -62, -61, -60, -59, -58}));
    // At the edge of the range it comes and goes.
    EXPECT_EQ(signals.at("Sternwarte 5GHz"), (std::set<int>{-88, -87, -86, -85, -84, -83}));
}

TEST_F(WifiRadioTest, OnlyNetworksInRangeAreFound)
{
    const nlohmann::json home = house({{"/neighbours/0/signal_dbm", -92}});
    for (int scans = 0; scans < 20; ++scans) {
        ASSERT_EQ(open_home(home, kTime + int64_t{5} * scans), "");
        EXPECT_STREQ(found("Gasthof Krone", "2.4GHz").SSID, "");
        EXPECT_STREQ(found("Gasthof Krone", "5GHz").SSID, "Gasthof Krone");
    }
}

TEST_F(WifiRadioTest, AScanFindsWhatTheChildRoutersRepeat)
{
    EXPECT_STREQ(found("Lindenhof-5G", "5GHz").ENCRYPT, "WPA2/3");
    EXPECT_STREQ(found("Lindenhof-Mesh", "5GHz").SSID, ""); // hidden
    EXPECT_STREQ(found("Lindenhof-8", "5GHz").SSID, "");    // off
    EXPECT_EQ(switch_ssid(5, "0"), 0);
    EXPECT_STREQ(found("Lindenhof-5G", "5GHz").SSID, "");
    SsidInfo info = ssid(1);
    set(info.SSID, "Unten");
    set(info.ENCRYPT, "WPA3");
    EXPECT_EQ(devapi_set_ssid_info(&info), 0);
    EXPECT_STREQ(found("Lindenhof", "2.4GHz").SSID, "");
    EXPECT_STREQ(found("Unten", "2.4GHz").ENCRYPT, "WPA3");

    ASSERT_EQ(open_home(house({{"/mesh/link_layer_up", false}})), "");
    EXPECT_STREQ(found("Lindenhof-5G", "5GHz").SSID, "");
}

TEST_F(WifiRadioTest, ARadioThatIsOffFindsNothing)
{
    EXPECT_GT(count_of("5GHz"), 0);
    for (const int32_t index : {5, 6, 7}) {
        EXPECT_EQ(switch_ssid(index, "0"), 0);
    }
    EXPECT_EQ(count_of("5GHz"), 0);
    EXPECT_GT(count_of("2.4GHz"), 0);

    ASSERT_EQ(open_home(house({{"/radios/0/enabled", false}, {"/radios/1/enabled", false}})), "");
    EXPECT_TRUE(scan().empty());
    const ChannelPowerResult nothing = reported_by(devapi_scan_channel_power);
    EXPECT_EQ(nothing.count, 0);
    EXPECT_EQ(nothing.entries, nullptr);
}

TEST_F(WifiRadioTest, ThePowersAreThoseOfTheScan)
{
    std::vector<std::string> scanned;
    for (const ScanEntry &network : scan()) {
        scanned.push_back(std::string(network.SSID) + " " + network.PowerLevel);
    }
    EXPECT_EQ(powers(), scanned);
}

TEST_F(WifiRadioTest, AScanHasRoomForSixty)
{
    const std::vector<nlohmann::json> sixty(60, house()["neighbours"][0]);
    ASSERT_EQ(open_home(house({{"/neighbours", sixty}})), "");
    EXPECT_EQ(scan().size(), 60u);
    EXPECT_EQ(powers().size(), 66u);
}

TEST_F(WifiRadioTest, AScanMarksTheNetworkThatTheRepeaterHasJoined)
{
    ASSERT_EQ(open_home(house({{"/repeater/neighbour", 6}})), "");
    EXPECT_STREQ(found("Gasthof Krone", "5GHz").Connected, "1");
    int connected = 0;
    for (const ScanEntry &network : scan()) {
        connected += std::string("1") == network.Connected ? 1 : 0;
    }
    EXPECT_EQ(connected, 1);
}

// ---- Channels ----------------------------------------------------------------------------------

TEST_F(WifiRadioTest, ListsTheChannelsThatCanBeSet)
{
    const WifiChannelList list = reported_by(devapi_get_all_wifi_channel_list);
    const auto may_set = [](int32_t ssid, int channel) {
        SsidInfo info = GatewayTest::ssid(ssid);
        set(info.Channel, std::to_string(channel));
        return devapi_set_ssid_info(&info) == 0;
    };
    const std::set<int> lower(list.channels_24g, list.channels_24g + list.count_24g);
    const std::set<int> upper(list.channels_5g, list.channels_5g + list.count_5g);
    EXPECT_EQ(lower.size(), 13u);
    EXPECT_EQ(upper.size(), 13u);
    for (int channel = 1; channel <= 200; ++channel) {
        EXPECT_EQ(may_set(1, channel), lower.contains(channel)) << channel;
        EXPECT_EQ(may_set(5, channel), upper.contains(channel)) << channel;
    }
}

TEST_F(WifiRadioTest, AHomeWithoutRadiosHasNoChannels)
{
    ASSERT_EQ(open_home(house_without_radios()), "");
    const WifiChannelList list = reported_by(devapi_get_all_wifi_channel_list);
    EXPECT_EQ(list.count_24g, 0);
    EXPECT_EQ(list.count_5g, 0);
    EXPECT_TRUE(scan().empty());
}

TEST_F(WifiRadioTest, TheTraceShowsHowMuchAScanFound)
{
    nlohmann::json home = house({{"/mesh/link_layer_up", false}});
    home["neighbours"].erase(7); // at the edge of the range
    ASSERT_EQ(open_home(home), "");
    scan();
    EXPECT_THAT(last_line(), HasSubstr("devapi_get_scan_ssid(result={networks=7}) = 0"));
    powers();
    EXPECT_THAT(last_line(), HasSubstr("devapi_scan_channel_power(result={networks=7}) = 0"));
}

} // namespace
