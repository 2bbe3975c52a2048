// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include <cstdlib>

namespace {

class UplinkWifiTest : public GatewayTest {
  protected:
    void SetUp() override
    {
        ASSERT_EQ(open_at(kTime, {.state_file = path("state"), .trace = path("trace")}), "");
    }
    std::string open_home(const nlohmann::json &home)
    {
        return open_at(kTime,
                       {.scenario = write("home.json", home.dump()), .trace = path("trace")});
    }

    // The inn's network as a scan reports it, with its key.
    static UplinkWifiInfo inn()
    {
        UplinkWifiInfo info = {};
        set(info.SSID, "Gasthof Krone");
        set(info.PWD, "zum-goldenen-fass");
        set(info.ENCRYPT, "WPA2");
        set(info.WPACypher, "NONE");
        set(info.WPA2Cypher, "AES");
        set(info.Band, "5GHz");
        return info;
    }
    static int32_t join(UplinkWifiInfo info) { return devapi_set_uplink_wifi_info(&info); }
    template <size_t width>
    std::string refused(char (UplinkWifiInfo::*field)[width], const std::string &text) const
    {
        UplinkWifiInfo info = inn();
        set(info.*field, text);
        EXPECT_EQ(join(info), -1);
        return reason();
    }

    // The networks that a scan marks as connected.
    static std::vector<std::string> connected()
    {
        ScanResult result = {};
        EXPECT_EQ(devapi_get_scan_ssid(&result), 0);
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
    UplinkWifiInfo info = inn();
    EXPECT_EQ(devapi_set_uplink_wifi_info(&info), 0) << reason();
    EXPECT_STREQ(info.SSID, "Gasthof Krone");
    EXPECT_EQ(connected(), Networks({"Gasthof Krone 5GHz"}));
    ASSERT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_EQ(connected(), Networks({"Gasthof Krone 5GHz"}));

    set(info.Band, "2.4GHz");
    EXPECT_EQ(join(info), 0);
    EXPECT_EQ(connected(), Networks({"Gasthof Krone 2.4GHz"}));
}

TEST_F(UplinkWifiTest, AnOpenNetworkNeedsNoKey)
{
    UplinkWifiInfo info = inn();
    set(info.SSID, "Gasthof Krone Gäste");
    set(info.PWD, "");
    set(info.ENCRYPT, "OPEN");
    set(info.WPA2Cypher, "NONE");
    set(info.Band, "2.4GHz");
    EXPECT_EQ(join(info), 0) << reason();
    EXPECT_EQ(connected(), Networks({"Gasthof Krone Gäste 2.4GHz"}));
}

TEST_F(UplinkWifiTest, AnyOtherNetworkIsRefusedAndChangesNothing)
{
    EXPECT_EQ(join(inn()), 0);
    const std::string before = read(path("state"));
    EXPECT_EQ(refused(&UplinkWifiInfo::PWD, "zum-goldenen-fas"),
              "PWD is not the key of the network");
    EXPECT_EQ(refused(&UplinkWifiInfo::PWD, ""), "PWD is not the key of the network");
    EXPECT_EQ(refused(&UplinkWifiInfo::SSID, "Gasthof Adler"),
              "there is no network \"Gasthof Adler\" in reach on \"5GHz\"");
    EXPECT_EQ(refused(&UplinkWifiInfo::SSID, "Werkstatt"),
              "there is no network \"Werkstatt\" in reach on \"5GHz\"");
    EXPECT_EQ(refused(&UplinkWifiInfo::SSID, ""), "SSID is empty");
    EXPECT_EQ(refused(&UplinkWifiInfo::SSID, "Lindenhof-5G"), // the home's own
              "there is no network \"Lindenhof-5G\" in reach on \"5GHz\"");
    EXPECT_EQ(refused(&UplinkWifiInfo::Band, "6GHz"),
              "there is no network \"Gasthof Krone\" in reach on \"6GHz\"");
    EXPECT_EQ(refused(&UplinkWifiInfo::ENCRYPT, "WPA3"), "the network has a different encryption");
    EXPECT_EQ(refused(&UplinkWifiInfo::ENCRYPT, "OPEN"), "the network has a different encryption");
    EXPECT_EQ(refused(&UplinkWifiInfo::WPACypher, "TKIP"),
              "the network has a different encryption");
    EXPECT_EQ(refused(&UplinkWifiInfo::WPA2Cypher, ""), "the network has a different encryption");
    EXPECT_EQ(read(path("state")), before);
    EXPECT_EQ(connected(), Networks({"Gasthof Krone 5GHz"}));
}

TEST_F(UplinkWifiTest, ANetworkWithoutAKnownKeyCannotBeJoined)
{
    nlohmann::json home = house();
    home["neighbours"][5].erase("password");
    ASSERT_EQ(open_home(home), "");
    UplinkWifiInfo info = inn();
    EXPECT_EQ(join(info), -1);
    set(info.PWD, "");
    EXPECT_EQ(join(info), -1);
    EXPECT_EQ(reason(), "PWD is not the key of the network");
}

TEST_F(UplinkWifiTest, OnlyANetworkInRangeIsJoined)
{
    nlohmann::json home = house();
    home["neighbours"][5]["signal_dbm"] = -95;
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(join(inn()), -1);
    home = house();
    home["radios"][1]["enabled"] = false;
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(join(inn()), -1);
    EXPECT_EQ(reason(), "there is no network \"Gasthof Krone\" in reach on \"5GHz\"");
}

TEST_F(UplinkWifiTest, OfSeveralWithTheNameTheStrongestIsJoined)
{
    nlohmann::json home = house();
    nlohmann::json stronger = home["neighbours"][5];
    stronger["signal_dbm"] = -40;
    stronger["password"] = "another-key";
    home["neighbours"].push_back(stronger);
    ASSERT_EQ(open_home(home), "");
    UplinkWifiInfo info = inn();
    EXPECT_EQ(join(info), -1);
    set(info.PWD, "another-key");
    EXPECT_EQ(join(info), 0);
}

TEST_F(UplinkWifiTest, AnotherClientOfTheRepeaterIsUnchanged)
{
    nlohmann::json home = house();
    home["repeater"]["used_by_another"] = true;
    ASSERT_EQ(open_home(home), "");
    EXPECT_EQ(join(inn()), -2);
    EXPECT_EQ(join({}), -2);
    EXPECT_EQ(connected(), Networks());
}

TEST_F(UplinkWifiTest, NullIsRefusedAndTheTraceShowsNoPassword)
{
    EXPECT_EQ(devapi_set_uplink_wifi_info(nullptr), -1);
    EXPECT_EQ(join(inn()), 0);
    EXPECT_NE(lines(path("trace"))
                  .back()
                  .find("devapi_set_uplink_wifi_info(info={SSID=\"Gasthof Krone\", PWD=***, "
                        "ENCRYPT=\"WPA2\""),
              std::string::npos);
}

TEST_F(UplinkWifiTest, UnterminatedTextsAreRefused)
{
    UplinkWifiInfo info = {};
    std::memset(&info, 'x', sizeof(info));
    EXPECT_EQ(join(info), -1);
    EXPECT_EQ(reason(), "SSID is longer than 32 bytes");
}

} // namespace
