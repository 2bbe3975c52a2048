// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include <cstdlib>

namespace {

class UplinkWifiTest : public HouseTest {
  protected:
    // Joins the inn's network, as a scan reports it, with its key; or with other values.
    static int32_t join(Fields fields = {})
    {
        fields.insert({{"SSID", "Gasthof Krone"},
                       {"PWD", "zum-goldenen-fass"},
                       {"ENCRYPT", "WPA2"},
                       {"WPACypher", "NONE"},
                       {"WPA2Cypher", "AES"},
                       {"Band", "5GHz"}});
        return set_by(devapi_set_uplink_wifi_info, fields);
    }

    // The networks that a scan marks as connected.
    static std::vector<std::string> connected()
    {
        const ScanResult result = reported_by(devapi_get_scan_ssid);
        std::vector<std::string> networks;
        for (ScanEntry *entry : result.entries) {
            if (entry != nullptr && std::string("1") == entry->Connected) {
                networks.push_back(std::string(entry->SSID) + " " + entry->Band);
            }
            std::free(entry);
        }
        return networks;
    }
    using Networks = std::vector<std::string>;
};

TEST_F(UplinkWifiTest, JoinsANetworkOfTheScanWithItsKey)
{
    EXPECT_EQ(connected(), Networks());
    EXPECT_EQ(join(), 0) << reason();
    EXPECT_EQ(connected(), Networks({"Gasthof Krone 5GHz"}));
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_EQ(connected(), Networks({"Gasthof Krone 5GHz"}));
    EXPECT_EQ(join({{"Band", "2.4GHz"}}), 0);
    EXPECT_EQ(connected(), Networks({"Gasthof Krone 2.4GHz"}));
}

TEST_F(UplinkWifiTest, AnOpenNetworkNeedsNoKey)
{
    EXPECT_EQ(join({{"SSID", "Gasthof Krone Gäste"},
                    {"PWD", ""},
                    {"ENCRYPT", "OPEN"},
                    {"WPA2Cypher", "NONE"},
                    {"Band", "2.4GHz"}}),
              0)
        << reason();
    EXPECT_EQ(connected(), Networks({"Gasthof Krone Gäste 2.4GHz"}));
}

TEST_F(UplinkWifiTest, AnyOtherNetworkIsRefusedAndChangesNothing)
{
    EXPECT_EQ(join(), 0);
    const std::string before = read(path("state"));
    EXPECT_EQ(reason(join({{"PWD", "zum-goldenen-fas"}})), "PWD is not the key of the network");
    EXPECT_EQ(reason(join({{"PWD", ""}})), "PWD is not the key of the network");
    EXPECT_EQ(reason(join({{"SSID", "Gasthof Adler"}})),
              "there is no network \"Gasthof Adler\" in reach on \"5GHz\"");
    EXPECT_EQ(reason(join({{"SSID", "Werkstatt"}})),
              "there is no network \"Werkstatt\" in reach on \"5GHz\"");
    EXPECT_EQ(reason(join({{"SSID", ""}})), "SSID is empty");
    EXPECT_EQ(reason(join({{"SSID", "Lindenhof-5G"}})), // the home's own
              "there is no network \"Lindenhof-5G\" in reach on \"5GHz\"");
    EXPECT_EQ(reason(join({{"Band", "6GHz"}})),
              "there is no network \"Gasthof Krone\" in reach on \"6GHz\"");
    EXPECT_EQ(reason(join({{"ENCRYPT", "WPA3"}})), "the network has a different encryption");
    EXPECT_EQ(reason(join({{"ENCRYPT", "OPEN"}})), "the network has a different encryption");
    EXPECT_EQ(reason(join({{"WPACypher", "TKIP"}})), "the network has a different encryption");
    EXPECT_EQ(reason(join({{"WPA2Cypher", ""}})), "the network has a different encryption");
    EXPECT_EQ(read(path("state")), before);
    EXPECT_EQ(connected(), Networks({"Gasthof Krone 5GHz"}));
}

TEST_F(UplinkWifiTest, ANetworkWithoutAKnownKeyCannotBeJoined)
{
    nlohmann::json home = house();
    home["neighbours"][5].erase("password");
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(join(), -1);
    EXPECT_EQ(reason(join({{"PWD", ""}})), "PWD is not the key of the network");
}

TEST_F(UplinkWifiTest, OnlyANetworkInRangeIsJoined)
{
    ASSERT_EQ(open_home(house({{"/neighbours/5/signal_dbm", -95}})), "");
    EXPECT_EQ(join(), -1);
    ASSERT_EQ(open_home(house({{"/radios/1/enabled", false}})), "");
    EXPECT_EQ(reason(join()), "there is no network \"Gasthof Krone\" in reach on \"5GHz\"");
}

TEST_F(UplinkWifiTest, OfSeveralWithTheNameTheStrongestIsJoined)
{
    nlohmann::json stronger = house()["neighbours"][5];
    stronger["signal_dbm"] = -40;
    stronger["password"] = "another-key";
    ASSERT_EQ(open_home(house({{"/neighbours/-", stronger}})), "");
    EXPECT_EQ(join(), -1);
    EXPECT_EQ(join({{"PWD", "another-key"}}), 0);
}

TEST_F(UplinkWifiTest, AnotherClientOfTheRepeaterIsUnchanged)
{
    ASSERT_EQ(open_home(house({{"/repeater/used_by_another", true}})), "");
    EXPECT_EQ(join(), -2);
    EXPECT_EQ(set_by(devapi_set_uplink_wifi_info, {}), -2);
    EXPECT_EQ(connected(), Networks());
}

TEST_F(UplinkWifiTest, TheTraceShowsNoPassword)
{
    EXPECT_EQ(join(), 0);
    EXPECT_THAT(last_line(), HasSubstr("devapi_set_uplink_wifi_info(info={SSID=\"Gasthof Krone\", "
                                       "PWD=***, ENCRYPT=\"WPA2\""));
}

TEST_F(UplinkWifiTest, UnterminatedTextsAreRefused)
{
    UplinkWifiInfo info = {};
    std::memset(&info, 'x', sizeof(info));
    EXPECT_EQ(reason(devapi_set_uplink_wifi_info(&info)), "SSID is longer than 32 bytes");
}

} // namespace
