#include "gateway_fixture.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <set>

namespace {

class WifiRadioTest : public GatewayTest {
  protected:
    // ---- Sleep schedule ------------------------------------------------------------------------

    static WifiSleepInfo period(const std::string &start, const std::string &end)
    {
        WifiSleepInfo info = {};
        set(info.Enable, "1");
        set(info.StartTime, start);
        set(info.EndTime, end);
        set(info.DaysOfWeek, "1,7");
        return info;
    }
    // As the plug-in adds one: with both calls.
    static int32_t add(WifiSleepInfo info)
    {
        const int32_t added = devapi_add_wifi_timer(&info);
        return added != 0 ? added : devapi_set_wifi_sleep_info(&info);
    }
    // The periods as the plug-in asks for them.
    static std::vector<std::string> schedule()
    {
        std::vector<std::string> periods;
        for (int32_t k = 1; k <= 3; ++k) {
            WifiSleepInfo info = {};
            info.StartTimer = 2 * k - 1;
            info.EndTimer = 2 * k;
            if (devapi_get_wifi_sleep_info(&info) == 0) {
                periods.push_back(std::string(info.Enable) + " " + info.StartTime + "-" +
                                  info.EndTime + " " + info.DaysOfWeek);
            }
        }
        return periods;
    }
    using Periods = std::vector<std::string>;

    // ---- Scans ---------------------------------------------------------------------------------

    static std::vector<ScanEntry> scan()
    {
        ScanResult result = {};
        EXPECT_EQ(devapi_get_scan_ssid(&result), 0);
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
    // One of them by name and band; an empty one when it is not there.
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
        ChannelPowerResult result = {};
        EXPECT_EQ(devapi_scan_channel_power(&result), 0);
        const std::unique_ptr<ChannelPower, decltype(&std::free)> owner(result.entries, &std::free);
        std::vector<std::string> powers;
        for (int32_t at = 0; at < result.count; ++at) {
            powers.push_back(std::string(result.entries[at].name) + " " +
                             result.entries[at].dbpower);
        }
        return powers;
    }
    static int32_t switch_ssid(int32_t index, const char *enable)
    {
        SsidInfo info = {};
        info.SSIDIndex = index;
        EXPECT_EQ(devapi_get_ssid_info(&info), 0);
        set(info.Enable, enable);
        return devapi_set_ssid_info(&info);
    }
};

// ---- Sleep schedule ----------------------------------------------------------------------------

TEST_F(WifiRadioTest, ReportsThePeriodsOfTheScenario)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(schedule(), Periods({"1 23:30-05:45 1,2,3,4,7", "0 01:00-08:00 5,6"}));
}

TEST_F(WifiRadioTest, HasRoomForThreePeriods)
{
    ASSERT_EQ(open({.state_file = path("state"), .trace = path("trace")}), "");
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    EXPECT_EQ(schedule(), Periods());
    EXPECT_EQ(add(period("22:00", "06:00")), 0);
    EXPECT_EQ(add(period("12:00", "12:30")), 0);
    EXPECT_EQ(add(period("14:00", "14:30")), 0);
    EXPECT_EQ(add(period("16:00", "16:30")), -1);
    EXPECT_EQ(reason(), "all timers are in use");
    ASSERT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_EQ(schedule(), Periods({"1 22:00-06:00 1,7", "1 12:00-12:30 1,7", "1 14:00-14:30 1,7"}));
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    EXPECT_EQ(schedule(), Periods());
}

TEST_F(WifiRadioTest, NumbersTheTimersWhateverTheRecordSays)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    WifiSleepInfo info = period("22:00", "06:00");
    EXPECT_EQ(devapi_add_wifi_timer(&info), 0);
    EXPECT_EQ(info.StartTimer, 1);
    EXPECT_EQ(info.EndTimer, 2);
    EXPECT_EQ(devapi_add_wifi_timer(&info), 0);
    EXPECT_EQ(info.StartTimer, 3);
    EXPECT_EQ(info.EndTimer, 4);
}

TEST_F(WifiRadioTest, APeriodIsSetByItsTimers)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    WifiSleepInfo info = period("22:00", "06:00");
    info.StartTimer = 3;
    info.EndTimer = 4;
    EXPECT_EQ(devapi_set_wifi_sleep_info(&info), 0);
    EXPECT_EQ(schedule(), Periods({"1 23:30-05:45 1,2,3,4,7", "1 22:00-06:00 1,7"}));
}

TEST_F(WifiRadioTest, TimersThatAreNoPeriodAreRefused)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    const std::pair<int32_t, int32_t> pairs[] = {{0, 0},
                                                 {1, 4},
                                                 {2, 3},
                                                 {3, 2},
                                                 {1, 1},
                                                 {5, 6},
                                                 {7, 8},
                                                 {-1, 0},
                                                 {0, 1},
                                                 {-3, -2},
                                                 {INT32_MAX, INT32_MIN},
                                                 {INT32_MIN, INT32_MAX}};
    for (const auto &[start, end] : pairs) {
        WifiSleepInfo info = period("22:00", "06:00");
        info.StartTimer = start;
        info.EndTimer = end;
        const std::string why = "there is no period with the timers " + std::to_string(start) +
                                " and " + std::to_string(end);
        EXPECT_EQ(devapi_get_wifi_sleep_info(&info), -1);
        EXPECT_EQ(reason(), why);
        EXPECT_EQ(devapi_set_wifi_sleep_info(&info), -1);
        EXPECT_EQ(reason(), why);
    }
}

TEST_F(WifiRadioTest, BadTextsOfAPeriodAreRefused)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    EXPECT_EQ(devapi_del_all_wifi_timerinfo(), 0);
    const auto refused = [&](auto field, const std::string &text) {
        WifiSleepInfo info = period("22:00", "06:00");
        set(info.*field, text);
        EXPECT_EQ(devapi_add_wifi_timer(&info), -1);
        return reason();
    };
    EXPECT_EQ(refused(&WifiSleepInfo::Enable, "yes"), "Enable \"yes\" is none of \"0\", \"1\"");
    EXPECT_EQ(refused(&WifiSleepInfo::Enable, ""), "Enable \"\" is none of \"0\", \"1\"");
    EXPECT_EQ(refused(&WifiSleepInfo::StartTime, "24:00"),
              "StartTime \"24:00\" is no time like \"04:30\"");
    EXPECT_EQ(refused(&WifiSleepInfo::EndTime, ""), "EndTime \"\" is no time like \"04:30\"");
    EXPECT_EQ(refused(&WifiSleepInfo::DaysOfWeek, "Mon"),
              "DaysOfWeek \"Mon\" is no list of days like \"1,3,7\"");
    EXPECT_EQ(refused(&WifiSleepInfo::EndTime, "22:00"), "/home/wifi_sleep/0: ends when it starts");
    WifiSleepInfo brim = period("22:00", "06:00");
    fill_to_the_brim(brim.StartTime, '1');
    EXPECT_EQ(devapi_add_wifi_timer(&brim), -1);
    EXPECT_EQ(schedule(), Periods());
}

// ---- Scans -------------------------------------------------------------------------------------

TEST_F(WifiRadioTest, AScanReportsTheNeighbours)
{
    ASSERT_EQ(open_at(kTime, {}), "");
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
    ASSERT_EQ(open_at(kTime, {}), "");
    const std::vector<ScanEntry> networks = scan();
    ASSERT_GT(networks.size(), 10u);
    for (size_t at = 1; at < networks.size(); ++at) {
        EXPECT_LE(std::atoi(networks[at].PowerLevel), std::atoi(networks[at - 1].PowerLevel));
    }
}

TEST_F(WifiRadioTest, AFreshScanVariesAndTheSameTimeIsTheSame)
{
    std::map<std::string, std::set<int>> signals;
    std::vector<std::string> last;
    for (int scans = 0; scans < 100; ++scans) {
        ASSERT_EQ(open_at(kTime + 5 * scans, {}), "");
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
    // On the edge of the reach it comes and goes.
    EXPECT_EQ(signals.at("Sternwarte 5GHz"), (std::set<int>{-88, -87, -86, -85, -84, -83}));
}

TEST_F(WifiRadioTest, OnlyWhatIsInReachIsHeard)
{
    nlohmann::json home = house();
    home["neighbours"][0]["signal_dbm"] = -92;
    for (int scans = 0; scans < 20; ++scans) {
        ASSERT_EQ(open_at(kTime + 5 * scans, {.scenario = write("home.json", home.dump())}), "");
        EXPECT_STREQ(found("Gasthof Krone", "2.4GHz").SSID, "");
        EXPECT_STREQ(found("Gasthof Krone", "5GHz").SSID, "Gasthof Krone");
    }
}

TEST_F(WifiRadioTest, AScanHearsWhatTheChildRoutersRepeat)
{
    ASSERT_EQ(open_at(kTime, {}), "");
    EXPECT_STREQ(found("Lindenhof-5G", "5GHz").ENCRYPT, "WPA2/3");
    EXPECT_STREQ(found("Lindenhof-Mesh", "5GHz").SSID, ""); // hidden
    EXPECT_STREQ(found("Lindenhof-8", "5GHz").SSID, "");    // off
    EXPECT_EQ(switch_ssid(5, "0"), 0);
    EXPECT_STREQ(found("Lindenhof-5G", "5GHz").SSID, "");
    SsidInfo info = {};
    info.SSIDIndex = 1;
    EXPECT_EQ(devapi_get_ssid_info(&info), 0);
    set(info.SSID, "Unten");
    set(info.ENCRYPT, "WPA3");
    EXPECT_EQ(devapi_set_ssid_info(&info), 0);
    EXPECT_STREQ(found("Lindenhof", "2.4GHz").SSID, "");
    EXPECT_STREQ(found("Unten", "2.4GHz").ENCRYPT, "WPA3");

    nlohmann::json home = house();
    home["mesh"]["link_layer_up"] = false;
    ASSERT_EQ(open_at(kTime, {.scenario = write("home.json", home.dump())}), "");
    EXPECT_STREQ(found("Lindenhof-5G", "5GHz").SSID, "");
}

TEST_F(WifiRadioTest, ARadioThatIsOffHearsNothing)
{
    ASSERT_EQ(open_at(kTime, {}), "");
    EXPECT_GT(count_of("5GHz"), 0);
    for (const int32_t index : {5, 6, 7}) {
        EXPECT_EQ(switch_ssid(index, "0"), 0);
    }
    EXPECT_EQ(count_of("5GHz"), 0);
    EXPECT_GT(count_of("2.4GHz"), 0);

    nlohmann::json home = house();
    home["radios"][0]["enabled"] = home["radios"][1]["enabled"] = false;
    ASSERT_EQ(open_at(kTime, {.scenario = write("home.json", home.dump())}), "");
    EXPECT_TRUE(scan().empty());
    ChannelPowerResult nothing = {};
    EXPECT_EQ(devapi_scan_channel_power(&nothing), 0);
    EXPECT_EQ(nothing.count, 0);
    EXPECT_EQ(nothing.entries, nullptr);
}

TEST_F(WifiRadioTest, ThePowersAreThoseOfTheScan)
{
    ASSERT_EQ(open_at(kTime, {}), "");
    std::vector<std::string> scanned;
    for (const ScanEntry &network : scan()) {
        scanned.push_back(std::string(network.SSID) + " " + network.PowerLevel);
    }
    EXPECT_EQ(powers(), scanned);
}

TEST_F(WifiRadioTest, AScanHasRoomForSixty)
{
    nlohmann::json home = house();
    const nlohmann::json neighbour = home["neighbours"][0];
    home["neighbours"] = std::vector<nlohmann::json>(60, neighbour);
    ASSERT_EQ(open({.scenario = write("home.json", home.dump())}), "");
    EXPECT_EQ(scan().size(), 60u);
    EXPECT_EQ(powers().size(), 66u);
}

TEST_F(WifiRadioTest, AScanMarksTheNetworkThatTheRepeaterHasJoined)
{
    nlohmann::json home = house();
    home["repeater"]["neighbour"] = 6;
    ASSERT_EQ(open({.scenario = write("home.json", home.dump())}), "");
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
    ASSERT_EQ(open({.trace = path("trace")}), "");
    WifiChannelList list = {};
    EXPECT_EQ(devapi_get_all_wifi_channel_list(&list), 0);
    const auto may_set = [](int32_t ssid, int channel) {
        SsidInfo info = {};
        info.SSIDIndex = ssid;
        EXPECT_EQ(devapi_get_ssid_info(&info), 0);
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
    nlohmann::json home = house();
    home["radios"] = home["ssids"] = home["guest_networks"] = nlohmann::json::array();
    home["hosts"] = nlohmann::json::array();
    ASSERT_EQ(open({.scenario = write("home.json", home.dump())}), "");
    WifiChannelList list = {};
    EXPECT_EQ(devapi_get_all_wifi_channel_list(&list), 0);
    EXPECT_EQ(list.count_24g, 0);
    EXPECT_EQ(list.count_5g, 0);
    EXPECT_TRUE(scan().empty());
}

TEST_F(WifiRadioTest, NullsAndFaultsHandOverNothing)
{
    ASSERT_EQ(open({.faults = {"devapi_get_scan_ssid=-1", "devapi_scan_channel_power=-1"}}), "");
    ScanResult result = {};
    EXPECT_EQ(devapi_get_scan_ssid(&result), -1);
    EXPECT_EQ(result.entries[0], nullptr);
    ChannelPowerResult powers = {};
    EXPECT_EQ(devapi_scan_channel_power(&powers), -1);
    EXPECT_EQ(powers.entries, nullptr);
    ASSERT_EQ(reopen({}), "");
    EXPECT_EQ(devapi_get_wifi_sleep_info(nullptr), -1);
    EXPECT_EQ(devapi_add_wifi_timer(nullptr), -1);
    EXPECT_EQ(devapi_set_wifi_sleep_info(nullptr), -1);
    EXPECT_EQ(devapi_get_scan_ssid(nullptr), -1);
    EXPECT_EQ(devapi_scan_channel_power(nullptr), -1);
    EXPECT_EQ(devapi_get_all_wifi_channel_list(nullptr), -1);
}

TEST_F(WifiRadioTest, TheTraceShowsHowMuchAScanFound)
{
    nlohmann::json home = house();
    home["mesh"]["link_layer_up"] = false;
    home["neighbours"].erase(7); // on the edge of the reach
    ASSERT_EQ(open({.scenario = write("home.json", home.dump()), .trace = path("trace")}), "");
    scan();
    EXPECT_NE(lines(path("trace")).back().find("devapi_get_scan_ssid(result={networks=7}) = 0"),
              std::string::npos);
    powers();
    EXPECT_NE(
        lines(path("trace")).back().find("devapi_scan_channel_power(result={networks=7}) = 0"),
        std::string::npos);
}

} // namespace
