// SPDX-License-Identifier: MIT
// The attached devices over time: they come and go, and share the rates.
#include "hosts_fixture.h"

#include <set>

namespace {

class HostActivityTest : public HostsTest {
  protected:
    static bool is_online(int32_t index)
    {
        const AdBaseInfo info = host(index);
        EXPECT_STREQ(info.LinkStatus, info.NetStatus);
        EXPECT_EQ(info.AccessTime == std::string("NULL"), info.NetStatus == std::string("0"));
        return info.NetStatus == std::string("1");
    }
    static std::string since(int32_t index) { return host(index).AccessTime; }

    struct Sum {
        int up = 0;
        int down = 0;
    };
    static Sum sum_of_rates()
    {
        Sum sum;
        for (int32_t index = 1; index <= kHosts; ++index) {
            const AdBaseInfo info = host(index);
            sum.up += std::stoi(info.UpSpeed);
            sum.down += std::stoi(info.DownSpeed);
        }
        return sum;
    }
    // The sum of the hosts' rates and the rate of the home; each host's rate is rounded down.
    static void expect_rates_to_agree()
    {
        const Sum sum = sum_of_rates();
        const int up = std::stoi(base().UpSpeed);
        const int down = std::stoi(base().DownSpeed);
        EXPECT_LE(sum.up, up);
        EXPECT_GE(sum.up, up - kHosts);
        EXPECT_LE(sum.down, down);
        EXPECT_GE(sum.down, down - kHosts);
    }
};

TEST_F(HostActivityTest, SomeLeaveAndComeBackByTheClock)
{
    const struct {
        int64_t time;
        bool online;
    } moments[] = {
        {kTime + 7 * kHour + 2399, true},        {kTime + 7 * kHour + 2400, false},
        {kTime + 17 * kHour + 899, false},       {kTime + 17 * kHour + 900, true},
        {kFriday + 12 * kHour, false},           {kFriday + kDay + 12 * kHour, true}, // Saturday
        {kFriday + 2 * kDay + 12 * kHour, true}, {kMonday + 12 * kHour, false},
    };
    for (const auto &moment : moments) {
        ASSERT_EQ(open_when(moment.time), "");
        EXPECT_EQ(is_online(kAnnasPhone), moment.online) << moment.time;
    }
    ASSERT_EQ(open_when(kTime + 17 * kHour + 900 + 5), "");
    EXPECT_EQ(since(kAnnasPhone), std::to_string(kTime + 17 * kHour + 900));
    ASSERT_EQ(open_when(kFriday + 2 * kDay + 12 * kHour), "");
    EXPECT_EQ(since(kAnnasPhone), std::to_string(kFriday + 17 * kHour + 900));
}

TEST_F(HostActivityTest, AnAbsenceGoesOnAfterMidnight)
{
    const nlohmann::json home = house({{"/hosts/2/away_from", "22:00"},
                                       {"/hosts/2/away_until", "06:00"},
                                       {"/hosts/2/away_days", "7"}});
    const int64_t sunday = kMonday - kDay;
    ASSERT_EQ(open_kept_home(home, sunday), "");
    EXPECT_TRUE(is_online(kAnnasPhone));
    for (const int64_t hours : {22, 23, 24, 29}) {
        ASSERT_EQ(open_when(sunday + hours * kHour), "");
        EXPECT_FALSE(is_online(kAnnasPhone)) << hours;
    }
    ASSERT_EQ(open_when(kMonday + 6 * kHour), "");
    EXPECT_TRUE(is_online(kAnnasPhone));
    ASSERT_EQ(open_when(kMonday + 23 * kHour), "");
    EXPECT_TRUE(is_online(kAnnasPhone));
}

TEST_F(HostActivityTest, OthersComeAndGoAtRandomByTheHour)
{
    std::string hours;
    for (int64_t hour = 0; hour < 60; ++hour) {
        ASSERT_EQ(open_when(kTime + hour * kHour), "");
        hours += is_online(1) ? '1' : '0';
        if (is_online(1)) {
            // Since the hour in which it came, or the boot.
            const auto first_hour = static_cast<int64_t>(hours.rfind('0') + 1);
            EXPECT_EQ(since(1), std::to_string(kTime + first_hour * kHour));
        }
    }
    const auto there = std::ranges::count(hours, '1');
    EXPECT_GT(there, 20); // where 33 are expected
    EXPECT_LT(there, 46);
    for (int64_t hour = 0; hour < 10; ++hour) {
        ASSERT_EQ(open_when(kTime + hour * kHour + kHour - 1), "");
        EXPECT_EQ(is_online(1), hours[static_cast<size_t>(hour)] == '1'); // as in that hour before
    }
}

TEST_F(HostActivityTest, RandomAbsencesDependOnTheSeed)
{
    const auto presence = [&](int64_t seed) {
        std::string hours;
        EXPECT_EQ(open_kept_home(house({{"/ordinary_day/seed", seed}})), "");
        for (int64_t hour = 0; hour < 20; ++hour) {
            EXPECT_EQ(open_when(kTime + hour * kHour), "");
            hours += is_online(1) ? '1' : '0';
        }
        return hours;
    };
    EXPECT_NE(presence(7), presence(8));
}

TEST_F(HostActivityTest, AllFunctionsCountTheSame)
{
    std::set<int> counts;
    for (int64_t hour = 0; hour < 30; ++hour) {
        ASSERT_EQ(open_when(kMonday + hour * kHour), "");
        const int there = online();
        EXPECT_EQ(resources(), std::to_string(there) + " 2");
        counts.insert(there);
    }
    EXPECT_GT(counts.size(), 2u);
}

TEST_F(HostActivityTest, AHostIsAttachedSinceItsNetworkIsThere)
{
    ASSERT_EQ(open_when(kTime + 500), "");
    EXPECT_EQ(since(kTablet), std::to_string(kTime));
    EXPECT_EQ(switch_ssid(5, "0"), 0);
    EXPECT_FALSE(is_online(kTablet));
    EXPECT_STREQ(host(kTablet).UpSpeed, "0");
    EXPECT_EQ(switch_ssid(5, "1"), 0);
    EXPECT_EQ(since(kTablet), std::to_string(kTime + 500));
    ASSERT_EQ(open_when(kTime + 600), "");
    EXPECT_EQ(switch_ssid(5, "1"), 0); // it was on already
    EXPECT_EQ(since(kTablet), std::to_string(kTime + 500));
    EXPECT_EQ(since(7), std::to_string(kTime)); // on a cable
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_EQ(since(7), std::to_string(kTime + 600));
    ASSERT_EQ(open_when(kTime + 10), "");
    EXPECT_EQ(since(7), std::to_string(kTime + 10)); // the clock has gone back
}

TEST_F(HostActivityTest, RatesMoveAndAgreeWithThoseOfTheHome)
{
    std::set<std::string> rates;
    for (int64_t slot = 0; slot < 20; ++slot) {
        ASSERT_EQ(open_when(kTime + 5 * slot), "");
        expect_rates_to_agree();
        rates.insert(host(kLaptop).DownSpeed);
    }
    EXPECT_GT(rates.size(), 15u);
}

TEST_F(HostActivityTest, ABlockedHostHasNoRatesAndTheHomeThoseOfTheOthers)
{
    const AdBaseInfo before = host(kLaptop);
    const int others = std::stoi(base().DownSpeed) - std::stoi(before.DownSpeed);
    const std::string unchanged = host(1).DownSpeed;
    EXPECT_EQ(set_right(before.Mac, "DENY"), 0);
    EXPECT_STREQ(host(kLaptop).UpSpeed, "0");
    EXPECT_STREQ(host(kLaptop).DownSpeed, "0");
    EXPECT_STREQ(host(kLaptop).NetStatus, "1");
    EXPECT_EQ(std::stoi(base().DownSpeed), others);
    EXPECT_EQ(host(1).DownSpeed, unchanged);
    expect_rates_to_agree();
    EXPECT_EQ(set_right(before.Mac, "ALLOW"), 0);
    EXPECT_STREQ(host(kLaptop).DownSpeed, before.DownSpeed);
}

TEST_F(HostActivityTest, TheRateObeysTheLimit)
{
    const AdBaseInfo before = host(kLaptop);
    ASSERT_GT(std::stoi(before.DownSpeed), 64);
    EXPECT_EQ(with(&AdBaseInfo::DownLimit, "64", kLaptop), "");
    EXPECT_STREQ(host(kLaptop).DownSpeed, "64");
    EXPECT_STREQ(host(kLaptop).UpSpeed, before.UpSpeed);
    expect_rates_to_agree();
    EXPECT_EQ(with(&AdBaseInfo::DownLimit, "-1", kLaptop), "");
    EXPECT_STREQ(host(kLaptop).DownLimit, "64");
    EXPECT_EQ(with(&AdBaseInfo::DownLimit, "10000000", kLaptop), "");
    EXPECT_STREQ(host(kLaptop).DownSpeed, before.DownSpeed);
    EXPECT_EQ(with(&AdBaseInfo::DownLimit, "0", kLaptop), "");
    EXPECT_STREQ(host(kLaptop).SpeedLimit, "0");
    EXPECT_STREQ(host(kLaptop).DownSpeed, before.DownSpeed);
}

TEST_F(HostActivityTest, WithoutAConnectionNobodyHasRates)
{
    ASSERT_EQ(open_home(house_without_wan()), "");
    EXPECT_EQ(sum_of_rates().up + sum_of_rates().down, 0);
    EXPECT_EQ(online(), 11);
}

TEST_F(HostActivityTest, AHouseFullOfHostsIsListed)
{
    auto hosts = nlohmann::json::array();
    for (int at = 0; at < 128; ++at) {
        char mac[18];
        snprintf(mac, sizeof mac, "02:00:00:00:00:%02X", at);
        hosts.push_back({{"name", "host"},
                         {"mac", mac},
                         {"ip", "192.168.7." + std::to_string(at + 1)},
                         {"kind", "TV"},
                         {"online", true},
                         {"presence_percent", 50},
                         {"router", "3C:6A:D2:10:4F:20"}});
    }
    ASSERT_EQ(open_home(house({{"/lan/subnet_mask", "255.255.0.0"},
                               {"/hosts", hosts},
                               {"/green_net/hosts", nlohmann::json::array()}})),
              "");
    EXPECT_EQ(reported_by(devapi_get_host_num), 128);
    EXPECT_STREQ(host(128).Mac, "02:00:00:00:00:7F");
    const int there = std::stoi(resources());
    EXPECT_GT(there, 40);
    EXPECT_LT(there, 88);
}

} // namespace
