// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include <cstdlib>
#include <map>
#include <numeric>

namespace {

class LinkChecksTest : public HouseTest {
  protected:
    static WifiChannelList channels() { return reported_by(devapi_get_all_wifi_channel_list); }
    // The number of networks on each channel that the radios may use.
    static std::map<int, int32_t> networks()
    {
        const WifiChannelList list = channels();
        ChannelApNum counts = {};
        EXPECT_EQ(devapi_get_channel_ap_num(&list, &counts), 0);
        std::map<int, int32_t> networks;
        for (int32_t at = 0; at < list.count_24g; ++at) {
            networks[list.channels_24g[at]] = counts.counts_24g[at];
        }
        for (int32_t at = 0; at < list.count_5g; ++at) {
            networks[list.channels_5g[at]] = counts.counts_5g[at];
        }
        return networks;
    }
    static int32_t counted()
    {
        int32_t sum = 0;
        for (const auto &[channel, count] : networks()) {
            sum += count;
        }
        return sum;
    }
    static int32_t scanned()
    {
        ChannelPowerResult result = reported_by(devapi_scan_channel_power);
        std::free(result.entries);
        return result.count;
    }
    static LinkInfo link() { return reported_by(devapi_get_link_info); }
    static std::string radios()
    {
        const LinkInfo info = link();
        return std::string(info.Wifi24Enable) + " " + info.Wifi24Channel + " " +
               info.Wifi24ChannelCheck + ", " + info.Wifi58Enable + " " + info.Wifi58Channel + " " +
               info.Wifi58ChannelCheck;
    }
    // The signal of the station; 0 when it is refused.
    static int32_t signal(const std::string &ip)
    {
        int32_t dbm = 0;
        const int32_t result = devapi_get_sta_rssi_by_ip(ip.c_str(), &dbm);
        EXPECT_EQ(result, dbm == 0 ? -1 : 0);
        return dbm;
    }
};

TEST_F(LinkChecksTest, EachNetworkOfAScanIsOnItsChannel)
{
    EXPECT_EQ(networks().size(), 26u);
    for (int64_t time = 0; time < 100; time += 5) {
        ASSERT_EQ(open_when(kTime + time), ""); // weak networks come and go
        EXPECT_EQ(counted(), scanned());
    }
}

TEST_F(LinkChecksTest, ANetworkOutOfReachIsNotCounted)
{
    const Changes changes = {{"/neighbours/2/signal_dbm", -95}, {"/mesh/link_layer_up", false}};
    ASSERT_EQ(open_home(house(changes)), "");
    EXPECT_EQ(networks()[1], 0);
    EXPECT_EQ(networks()[6], 2);
    ASSERT_EQ(open_home(house({changes[0], changes[1], {"/radios/0/enabled", false}})), "");
    EXPECT_EQ(networks()[6], 0);
    EXPECT_EQ(networks()[36], 1);
}

TEST_F(LinkChecksTest, CountsBeyondTheListAreRefused)
{
    ChannelApNum counts = {};
    for (const int32_t wrong : {-1, 65, INT32_MIN, INT32_MAX}) {
        WifiChannelList list = channels();
        list.count_24g = wrong;
        EXPECT_EQ(devapi_get_channel_ap_num(&list, &counts), -1);
        list = channels();
        list.count_5g = wrong;
        EXPECT_EQ(devapi_get_channel_ap_num(&list, &counts), -1);
    }
    EXPECT_EQ(reason(), "count_5g 2147483647 is not within 0 to 64");
    WifiChannelList full = {};
    full.count_24g = full.count_5g = 64;
    EXPECT_EQ(devapi_get_channel_ap_num(&full, &counts), 0);
    EXPECT_EQ(std::reduce(std::begin(counts.counts_5g), std::end(counts.counts_5g)), 0);
}

TEST_F(LinkChecksTest, TheLinksAreThoseOfTheModel)
{
    for (const char reserved : link().Reserved) {
        EXPECT_EQ(reserved, '\0');
    }
    ASSERT_EQ(open_home(house_without_wan()), "");
    EXPECT_STREQ(link().WanIp, "NULL");
    EXPECT_STREQ(link().DnsCheck, "0");
    EXPECT_STREQ(link().LanIP, "192.168.1.1");
}

TEST_F(LinkChecksTest, AChannelsQualityIsHowFreeItIs)
{
    ASSERT_EQ(open_home(house({{"/radios/0/enabled", false}})), "");
    EXPECT_EQ(radios(), "0 0 NONE, 1 44 GOOD");

    ASSERT_EQ(
        open_home(house({{"/neighbours/0/signal_dbm", -20}, {"/neighbours/1/signal_dbm", -20}})),
        "");
    EXPECT_EQ(radios(), "1 6 POOR, 1 44 GOOD");
}

TEST_F(LinkChecksTest, OnlyAddressesOfTheInternetAnswerAPing)
{
    for (const char *target : {"8.8.8.8", "1.1.1.1", "9.255.255.255", "100.63.0.1", "100.128.0.1",
                               "172.15.0.1", "172.32.0.1", "192.167.1.1", "223.255.255.254"}) {
        EXPECT_EQ(devapi_get_ping_check(target), 0) << target;
    }
    for (const char *target :
         {"0.1.2.3", "10.0.0.1", "100.64.0.53", "100.127.255.1", "127.0.0.1", "169.254.1.1",
          "172.16.0.1", "172.31.0.1", "192.168.1.1", "224.0.0.1", "255.255.255.255", "", "8.8.8",
          "8.8.8.8 ", "8.8.8.8;reboot", "dns.example", "::1"}) {
        EXPECT_EQ(devapi_get_ping_check(target), -1) << target;
    }
    EXPECT_EQ(reason(), "target is not an Internet address");
    EXPECT_EQ(devapi_get_ping_check(std::string(1 << 20, '8').c_str()), -1);

    ASSERT_EQ(open_home(house_without_wan()), "");
    EXPECT_EQ(reason(devapi_get_ping_check("8.8.8.8")), "the WAN is not connected");
}

TEST_F(LinkChecksTest, TheSignalOfAStationIsThatOfTheList)
{
    int stations = 0;
    for (int32_t index = 1; index <= 12; ++index) {
        const AdBaseInfo info = host(index);
        if (info.Dbm != std::string("NULL")) {
            EXPECT_EQ(std::to_string(signal(info.ip)), info.Dbm) << info.Name;
            ++stations;
        }
    }
    EXPECT_GE(stations, 5);
}

TEST_F(LinkChecksTest, WithoutARadioLinkThereIsNoSignal)
{
    EXPECT_EQ(signal("192.168.1.10"), 0);
    EXPECT_EQ(reason(), "office-nas is attached by cable");
    ASSERT_EQ(open_when(kTime + 8 * 3600), "");
    EXPECT_EQ(signal("192.168.1.110"), 0);
    EXPECT_EQ(reason(), "Annas-Phone is offline");
    for (const char *ip : {"192.168.1.1", "192.168.1.2", "192.168.1.99", "", "NULL", "8.8.8.8"}) {
        EXPECT_EQ(signal(ip), 0) << ip;
    }
    EXPECT_EQ(reason(), "there is no station \"8.8.8.8\"");
    EXPECT_EQ(signal(std::string(1 << 20, '1')), 0);
}

} // namespace
