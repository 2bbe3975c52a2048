// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

class ScenarioTest : public GatewayTest {
  protected:
    // The error of opening a file with this text, without the folder of the test.
    std::string error_of(const std::string &text)
    {
        const std::string file = write("my.json", text);
        const std::string error = open({.scenario = file});
        close();
        return error.starts_with(file) ? "my.json" + error.substr(file.size()) : error;
    }

    // The same for the house with one value changed.
    std::string error_with(const std::string &pointer, const nlohmann::json &value)
    {
        return error_of(house({{pointer, value}}).dump());
    }

    std::string error_without(const std::string &parent, const std::string &key)
    {
        nlohmann::json home = house();
        home[nlohmann::json::json_pointer(parent)].erase(key);
        return error_of(home.dump());
    }
};

TEST_F(ScenarioTest, IsChosenByNameOrByFile)
{
    ASSERT_EQ(open({.scenario = "three_storey_house"}), "");
    EXPECT_EQ(mac(), "3C:6A:D2:10:4F:20");
    close();

    const nlohmann::json flat = house({{"/mesh/child_routers", nlohmann::json::array()},
                                       {"/hosts", nlohmann::json::array()},
                                       {"/identity/mac", "3C:6A:D2:10:4F:99"}});
    ASSERT_EQ(open({.scenario = write("flat.json", flat.dump())}), "");
    EXPECT_EQ(mac(), "3C:6A:D2:10:4F:99");
}

TEST_F(ScenarioTest, AnUnknownNameListsTheKnownOnes)
{
    EXPECT_EQ(
        open({.scenario = "castle"}),
        "there is no scenario \"castle\"; built in: crowded_mesh, operator_variant, short_report, "
        "single_router, three_storey_house; a file is named with a '/' or ends in \".json\"");
}

TEST_F(ScenarioTest, FilesThatCannotBeRead)
{
    EXPECT_EQ(open({.scenario = path("none.json")}),
              path("none.json") + ": No such file or directory");
    EXPECT_EQ(open({.scenario = path("")}), path("") + ": is not a regular file");
    EXPECT_EQ(open({.scenario = "/dev/zero"}), "/dev/zero: is not a regular file");
    EXPECT_EQ(error_of(std::string(5 * 1024 * 1024, ' ')), "my.json: is longer than 4194304 bytes");
}

TEST_F(ScenarioTest, TextsThatAreNotJson)
{
    EXPECT_EQ(error_of(""), "my.json: is empty");
    EXPECT_EQ(error_of("[]"), "my.json: the document is not an object");
    EXPECT_EQ(error_of("{\n  \"format\": 1,\n  ]\n}").substr(0, 26), "my.json: line 3, column 3:");
    EXPECT_EQ(error_of("{\"a\": 1e999}"), "my.json: number overflow parsing '1e999'");
    EXPECT_EQ(error_of("{\"format\": \"\xff\"}").substr(0, 28), "my.json: line 1, column 13: ");
    EXPECT_LT(error_of("{\"a\": \"" + std::string(1000000, 'x')).size(), 300u);
}

TEST_F(ScenarioTest, EveryTruncationIsAnError)
{
    const std::string whole = house().dump();
    for (size_t length = 0; length < whole.size(); length += 11) {
        ASSERT_NE(error_of(whole.substr(0, length)), "") << length;
    }
}

TEST_F(ScenarioTest, NestingIsLimited)
{
    EXPECT_EQ(error_of(std::string(1000000, '[')),
              "my.json: /0/0/0/0/0/0/0/0/0/0/0/0/0/0/0/0: is nested too deep");
    std::string objects;
    for (int depth = 0; depth < 100000; ++depth) {
        objects += "{\"a\":";
    }
    EXPECT_EQ(error_of(objects), "my.json: /a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a: is nested too deep");
}

TEST_F(ScenarioTest, ARepeatedKeyIsAnErrorAtEveryLevel)
{
    EXPECT_EQ(error_of("{\"format\": \"x\", \"format\": \"x\"}"), "my.json: /format: is repeated");
    EXPECT_EQ(error_of("{\"hosts\": [{}, {\"ip\": 1, \"ip\": 2}]}"),
              "my.json: /hosts/1/ip: is repeated");
}

TEST_F(ScenarioTest, FormatAndVersionAreChecked)
{
    EXPECT_EQ(error_of("{}"), "my.json: /format: is missing");
    EXPECT_EQ(error_with("/format", "shopping list"),
              "my.json: /format: is \"shopping list\", not \"simulated gateway scenario\"");
    EXPECT_EQ(error_with("/version", 2), "my.json: /version: is 2, not 1");
    EXPECT_EQ(error_with("/version", "1"), "my.json: /version: is not an integer");
    EXPECT_EQ(error_without("", "version"), "my.json: /version: is missing");
}

TEST_F(ScenarioTest, KeysAreChecked)
{
    EXPECT_EQ(error_with("/lan/subnet_msak", "255.255.255.0"),
              "my.json: /lan/subnet_msak: there is no such field; did you mean subnet_mask?");
    EXPECT_EQ(error_with("/garden", 1), "my.json: /garden: there is no such field");
    EXPECT_EQ(error_without("/identity", "mac"), "my.json: /identity/mac: is missing");
    EXPECT_EQ(error_without("/lan", "dhcp_pool"), "my.json: /lan/dhcp_pool: is missing");
    EXPECT_EQ(error_without("", "hosts"), "my.json: /hosts: is missing");
    EXPECT_EQ(error_with("/bad\nkey\x1b[2J", 1).substr(0, 32),
              "my.json: /bad\\nkey\\x1b[2J: there");
}

struct WrongValue {
    const char *pointer;
    nlohmann::json value;
    const char *reason;
    const char *named = pointer; // the field that is invalid then

    std::string error() const { return std::string("my.json: ") + named + ": " + reason; }
};

TEST_F(ScenarioTest, ValuesAreChecked)
{
    const WrongValue wrong_values[] = {
        {"/identity/mac", 7, "is not a string"},
        {"/identity/mac", "3c:6a:d2:10:4f:20",
         "\"3c:6a:d2:10:4f:20\" is not a MAC address like \"3C:6A:D2:10:4F:20\""},
        {"/identity/mac", "3C:6A:D2:10:4F:2",
         "\"3C:6A:D2:10:4F:2\" is not a MAC address like \"3C:6A:D2:10:4F:20\""},
        {"/identity/mac", "3C-6A-D2-10-4F-20",
         "\"3C-6A-D2-10-4F-20\" is not a MAC address like \"3C:6A:D2:10:4F:20\""},
        {"/identity/device_type", std::string(256, 'x'), "is longer than 255 bytes"},
        {"/identity/software_version", std::string(64, 'x'), "is longer than 63 bytes"},
        {"/identity/vlan_capability", std::string(192, 'x'), "is longer than 191 bytes"},
        {"/identity/software_version", "", "is empty"},
        {"/identity/software_version", nullptr, "is not a string"},
        {"/identity/software_version", "V1\n", "contains control characters or is not UTF-8"},
        {"/identity/software_version", std::string("V1\0x", 4),
         "contains control characters or is not UTF-8"},
        {"/identity/ipv6", 1, "is neither true nor false"},
        {"/identity", "x", "is not an object"},
        {"/lan/ip", "192.168.1.256", "\"192.168.1.256\" is not an IPv4 address"},
        {"/lan/ip", std::string("192.168.1.1\0", 12),
         "\"192.168.1.1\\x00\" is not an IPv4 address"},
        {"/reboot_schedule/time", "24:00", "\"24:00\" is not a time like \"04:30\""},
        {"/reboot_schedule/time", "4:30", "\"4:30\" is not a time like \"04:30\""},
        {"/sleep/start", "12:60", "\"12:60\" is not a time like \"04:30\""},
        {"/sleep/end", "1::00", "\"1::00\" is not a time like \"04:30\""},
        {"/sleep/end", "12:3:", "\"12:3:\" is not a time like \"04:30\""},
        {"/reboot_schedule/days", "0", "\"0\" is not a list of days like \"1,3,7\""},
        {"/reboot_schedule/days", "1,8", "\"1,8\" is not a list of days like \"1,3,7\""},
        {"/reboot_schedule/days", "1,", "\"1,\" is not a list of days like \"1,3,7\""},
        {"/reboot_schedule/days", "1,2,1", "\"1,2,1\" is not a list of days like \"1,3,7\""},
        {"/wifi_sleep", nlohmann::json(4, nullptr), "has more than 3 items"},
        {"/wifi_sleep/0/days", "", "\"\" is not a list of days like \"1,3,7\""},
        {"/guest_networks", nlohmann::json(3, nullptr), "has more than 2 items"},
        {"/guest_networks/0/seconds", -2, "-2 is not within -1 to 4294967295"},
        {"/guest_networks/0/end_time", -1, "-1 is not within 0 to 9223372036854775807"},
        {"/repeater/neighbour", 61, "61 is not within 1 to 60"},
        {"/ordinary_day/seed", -1, "-1 is not within 0 to 2147483647"},
        {"/services/game_band", "6GHz", "\"6GHz\" is none of \"2.4GHz\", \"5GHz\""},
        {"/administration/web_login_type", "2", "\"2\" is none of \"0\", \"1\""},
        {"/neighbours/0/signal_dbm", 0, "0 is not within -110 to -1"},
        {"/neighbours", nlohmann::json(61, nullptr), "has more than 60 items"},
        {"/wan/mode", "modem", "\"modem\" is none of \"DHCP\", \"PPPoE\", \"Static\""},
        {"/radios/0/channel", 0, "0 is not within 1 to 165"},
        {"/radios/0/channel", 6.5, "is not an integer"},
        {"/radios/0/channel", UINT64_MAX, "is too large"},
        {"/radios/0/channel", INT64_MIN, "-9223372036854775808 is not within 1 to 165"},
        {"/radios/1/bandwidth_mhz", 60, "60 is none of 20, 40, 80, 160"},
        {"/mesh_control/heartbeat_seconds", 9, "9 is not within 10 to 86400"},
        {"/leds/colour", "NULL",
         "\"NULL\" is none of \"WHITE\", \"BLUE\", \"GREEN\", \"ORANGE\", \"RED\""},
        {"/ports/lan", 9, "9 is not within 1 to 8"},
        {"/qos/rules/0/priority", 0, "0 is not within 1 to 8"},
        {"/qos/applications", nlohmann::json(5, nullptr), "has more than 4 items"},
        {"/service_switches/multiservice_mode", "ROUTE",
         "\"ROUTE\" is none of \"NONE\", \"SSID\", \"VLAN\""},
        {"/line/up_kbps", 0, "0 is not within 1 to 9999999"},
        {"/line/down_kbps", 10'000'000, "10000000 is not within 1 to 9999999"},
        {"/hosts", nlohmann::json::object(), "is not a list"},
        {"/hosts", nlohmann::json(1025, nullptr), "has more than 1024 items"},
        {"/hosts/3", 1, "is not an object"},
        {"/hosts/3/presence_percent", 100, "100 is not within 1 to 99"},
        {"/hosts/3/down_limit_kbps", -1, "-1 is not within 1 to 10000000"},
        {"/other_wans", nlohmann::json(8, nullptr), "has more than 7 items"},
        {"/wan/ipv6_gateway", "fe80", "\"fe80\" is not an IPv6 address"},
        {"/wan/ipv6_gateway", std::string("fe80::1\0", 8),
         "\"fe80::1\\x00\" is not an IPv6 address"},
        {"/wan/vlan_id", 4095, "4095 is not within 1 to 4094"},
        {"/green_net/hosts", nlohmann::json(65, nullptr), "has more than 64 items"},
        {"/green_net/hosts/0/number", 65, "65 is not within 1 to 64"},
        {"/green_net/hosts/0/periods", nlohmann::json(17, nullptr), "has more than 16 items"},
        {"/ssids", nlohmann::json(9, nullptr), "has more than 8 items"},
    };
    for (const WrongValue &wrong : wrong_values) {
        EXPECT_EQ(error_with(wrong.pointer, wrong.value), wrong.error());
    }
}

TEST_F(ScenarioTest, TheHomeHasToBeConsistent)
{
    const auto bound = [](const char *port, int wan) {
        return nlohmann::json{{"port", port}, {"wan", wan}};
    };
    const WrongValue wrong_values[] = {
        {"/lan/subnet_mask", "255.0.255.0", "255.0.255.0 is not a LAN subnet mask"},
        {"/lan/subnet_mask", "255.255.255.255", "255.255.255.255 is not a LAN subnet mask"},
        {"/lan/subnet_mask", "0.0.0.0", "0.0.0.0 is not a LAN subnet mask"},
        {"/lan/subnet_mask", "255.255.255.254", "255.255.255.254 is not a LAN subnet mask"},
        {"/lan/ip", "192.168.1.0", "192.168.1.0 is not a LAN address"},
        {"/lan/dhcp_pool/start", "192.168.2.5", "192.168.2.5 is not a LAN address"},
        {"/lan/dhcp_pool/end", "192.168.1.255", "192.168.1.255 is not a LAN address"},
        {"/lan/dhcp_pool/end", "192.168.1.5", "192.168.1.5 is before the start of the pool"},
        {"/lan/dhcp_pool",
         {{"enabled", true}, {"start", "192.168.1.1"}, {"end", "192.168.1.9"}},
         "contains the address of the router"},
        {"/reboot_schedule", {{"enabled", true}, {"time", "04:30"}}, "needs time and days"},
        {"/sleep",
         {{"gateway", true}, {"wifi", false}, {"leds", false}},
         "needs a start and a different end"},
        {"/wifi_sleep/1",
         {{"enabled", false}, {"start", "01:00"}, {"end", "01:00"}, {"days", "1"}},
         "ends when it starts"},
        {"/wan/fault", "LINK_DOWN", "is set, but there is a connection"},
        {"/neighbours/0/channel", 36, "36 is not a channel of 2.4GHz"},
        {"/neighbours/5/channel", 15, "15 is not a channel of 5GHz"},
        {"/wan/gateway", "", "needs ip, gateway and primary_dns", "/wan/connected"},
        {"/wan/pppoe_account", "", "is missing, and the mode is PPPoE"},
        {"/radios/1/band", "2.4GHz", "there is another radio for 2.4GHz"},
        {"/radios/0/channel", 36, "36 is not a channel of 2.4GHz"},
        {"/radios/1/channel", 20, "20 is not a channel of 5GHz"},
        {"/radios/0/bandwidth_mhz", 80, "80 is too wide for 2.4GHz"},
        {"/radios/0/mac", "3C:6A:D2:10:4F:20", "3C:6A:D2:10:4F:20 belongs to /identity/mac"},
        {"/radios/0/channel", 14, "14 is not a channel of 2.4GHz"},
        {"/radios/1/channel", 37, "37 is not a channel of 5GHz"},
        {"/radios/0/standard", "11ac", "\"11ac\" is none of \"11b\", \"11g\", \"11n\", \"11ax\""},
        {"/radios/1/standard", "11g", "\"11g\" is none of \"11a\", \"11n\", \"11ac\", \"11ax\""},
        {"/ssids/0/password", "short", "needs at least 8 characters"},
        {"/guest_networks/1/ssid", 4, "there is another guest network for 2.4GHz"},
        {"/neighbours/0/password", "short", "needs at least 8 characters"},
        {"/repeater/neighbour", 9, "there is no neighbour 9"},
        {"/mesh/enabled", false, "the mesh is off", "/mesh/link_layer_up"},
        {"/mesh/child_routers/1/ip", "192.168.1.2",
         "192.168.1.2 belongs to /mesh/child_routers/0/ip"},
        {"/mesh/child_routers/0/parent", "3C:6A:D2:00:00:00",
         "there is no router 3C:6A:D2:00:00:00"},
        {"/mesh/child_routers/0/parent", "3C:6A:D2:22:81:80", "the links form a loop"},
        {"/mesh/child_routers/0/link/signal_dbm", -50, "there is no radio link"},
        {"/mesh/child_routers/1/link/signal_dbm", 0, "is missing, and the link is a radio link"},
        {"/hosts/4/mac", "A4:BB:6D:31:07:5E", "A4:BB:6D:31:07:5E belongs to /hosts/0/mac"},
        {"/hosts/4/ip", "192.168.1.1", "192.168.1.1 belongs to /lan/ip"},
        {"/hosts/4/ip", "10.0.0.1", "10.0.0.1 is not a LAN address"},
        {"/hosts/4/ip", "", "is missing, and the host is online"},
        {"/hosts/4/router", "3C:6A:D2:00:00:00", "there is no router 3C:6A:D2:00:00:00"},
        {"/hosts/0/signal_dbm", -40, "there is no radio link"},
        {"/hosts/2/away_until", "07:40", "equals away_from"},
        {"/hosts/0/away_from", "07:40", "needs away_until and away_days, and they need it"},
        {"/hosts/11/address_bound", true, "is missing, and the address is bound", "/hosts/11/ip"},
        {"/wan/mode", "", "is missing, and the connection is not bridged"},
        {"/wan/bridged", true, "excludes addresses, an account and nat"},
        {"/wan/ip", "192.168.1.9", "192.168.1.9 is in the LAN"},
        {"/wan/services", "OTHER", "do not include INTERNET"},
        {"/other_wans/0/nat", true, "excludes addresses, an account and nat",
         "/other_wans/0/bridged"},
        {"/other_wans/0/vlan_id", 0, "needs a vlan_id", "/other_wans/0/vlan_priority"},
        {"/other_wans/1/services", "INTERNET", "INTERNET is reserved for /wan"},
        {"/other_wans/1/name", "IPTV", "there is another \"IPTV\""},
        {"/other_wans/1/interface", "ppp0", "there is another \"ppp0\""},
        {"/other_wans/2/gateway", "172.25.0.1", "172.25.0.1 is outside the subnet"},
        {"/other_wans/2/subnet_mask", "", "needs ip, subnet_mask, gateway and primary_dns",
         "/other_wans/2/mode"},
        {"/green_net/hosts/1/number", 1, "there is another entry 1"},
        {"/green_net/hosts/1/mac", "72:9B:E0:46:D8:15",
         "72:9B:E0:46:D8:15 belongs to /green_net/hosts/0/mac"},
        {"/green_net/hosts/0/periods/1/days", "", "needs start, end and days",
         "/green_net/hosts/0/periods/1"},
        {"/green_net/hosts/0/periods/1/end", "22:00", "ends when it starts",
         "/green_net/hosts/0/periods/1"},
        {"/ports/bindings/0", bound("LAN5", 1), "there is no port \"LAN5\"",
         "/ports/bindings/0/port"},
        {"/ports/bindings/0", bound("LAN1", 5), "there is no WAN connection 5",
         "/ports/bindings/0/wan"},
        {"/ports/bindings",
         {bound("LAN1", 1), bound("LAN1", 2)},
         "LAN1 is already bound",
         "/ports/bindings/1/port"},
        {"/qos/rules/-", house()["qos"]["rules"][0], "there is another rule 1",
         "/qos/rules/1/number"},
        {"/qos/rules/0/traffic/1/max", "40", "40 is below 46", "/qos/rules/0/traffic/1"},
        {"/hosts/0/roams", true, "there is no radio link"},
    };
    for (const WrongValue &wrong : wrong_values) {
        EXPECT_EQ(error_with(wrong.pointer, wrong.value), wrong.error());
    }
    nlohmann::json fewer_networks = house();
    fewer_networks["ssids"].erase(5);
    EXPECT_EQ(error_of(fewer_networks.dump()), "");
    fewer_networks["ssids"].erase(5);
    fewer_networks["ssids"].erase(4);
    EXPECT_EQ(error_of(fewer_networks.dump()),
              "my.json: /guest_networks/1/ssid: there is no SSID 6");
    fewer_networks["guest_networks"].erase(1);
    EXPECT_EQ(error_of(fewer_networks.dump()), "");
    fewer_networks["ssids"].erase(4);
    EXPECT_EQ(error_of(fewer_networks.dump()), "my.json: /hosts/2/ssid: there is no SSID 5");
    nlohmann::json one_radio = house();
    one_radio["radios"].erase(1);
    EXPECT_EQ(error_of(one_radio.dump()), "my.json: /ssids/4/band: there is no radio for 5GHz");
}

} // namespace
