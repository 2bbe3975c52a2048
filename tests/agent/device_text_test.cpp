// SPDX-License-Identifier: MIT
// How records and lists are shown: bounded, and without reading what is not filled.
#include "protocol/device_text.h"

#include "io/text.h"

#include <gmock/gmock.h>

#include <cstring>

namespace {

using device_layout::Argument;
using device_layout::find;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

const device_text::Style style = {
    false, agent::in_quotes, [](std::string_view form, std::string_view text) {
        return form == "url" ? std::string("masked") : std::string(text);
    }};

template <class Value>
std::string shown(const char *function, size_t at, const Value *value, bool success = true,
                  intptr_t size = 0)
{
    const Argument &argument = find(function)->arguments[at];
    const intptr_t arguments[] = {size, size, size};
    return device_text::shown_argument(style, argument, reinterpret_cast<intptr_t>(value),
                                       arguments, success);
}

TEST(DeviceText, ShowsTheNumberOfOmittedEntries)
{
    WifiChannelList list = {};
    list.count_24g = 18;
    list.channels_24g[17] = 9;
    list.count_5g = 2;
    list.channels_5g[0] = 36;
    list.channels_5g[1] = -1;
    EXPECT_EQ(shown("devapi_get_all_wifi_channel_list", 0, &list),
              "{count_24g=18, count_5g=2, "
              "channels_24g=[0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2 more], "
              "channels_5g=[36, -1]}");
}

TEST(DeviceText, IgnoresImpossibleCounts)
{
    ChildRouterList list = {};
    list.count = INT32_MAX;
    EXPECT_EQ(shown("devapi_get_childrouter_list", 0, &list),
              "{identifiers=[0, 0, 0, 0, 0, 0, 0, 0], count=2147483647}");
    list.count = INT32_MIN;
    EXPECT_EQ(shown("devapi_get_childrouter_list", 0, &list),
              "{identifiers=[], count=-2147483648}");
}

TEST(DeviceText, FollowsPointersOnlyAfterASuccess)
{
    PortStatistics ports[5] = {};
    strcpy(ports[0].Port, "LAN1");
    PortStatisticsInfo info = {5, ports};
    const std::string text = shown("devapi_get_port_statistics_info", 0, &info);
    EXPECT_THAT(text, testing::StartsWith("{count=5, entries=[{Port=\"LAN1\", "));
    EXPECT_THAT(text, EndsWith("}, 2 more]}"));
    info.entries = reinterpret_cast<PortStatistics *>(16);
    EXPECT_EQ(shown("devapi_get_port_statistics_info", 0, &info, false),
              "{count=5, entries=unread}");
    info.entries = nullptr;
    EXPECT_EQ(shown("devapi_get_port_statistics_info", 0, &info), "{count=5, entries=null}");

    ScanEntry entry = {};
    strcpy(entry.SSID, "Nachbar");
    ScanResult result = {};
    for (const size_t slot : {2, 7, 19, 59}) {
        result.entries[slot] = &entry;
    }
    const std::string scan = shown("devapi_get_scan_ssid", 0, &result);
    EXPECT_THAT(scan, testing::StartsWith("{entries=[{SSID=\"Nachbar\", "));
    EXPECT_THAT(scan, EndsWith("}, 1 more]}"));
    result.entries[0] = reinterpret_cast<ScanEntry *>(16);
    EXPECT_EQ(shown("devapi_get_scan_ssid", 0, &result, false), "{entries=unread}");

    const char *answer = "{}";
    EXPECT_EQ(shown("devapi_cmdstring_sendto_tslink_with_retinfo", 2, &answer), "\"{}\"");
    answer = reinterpret_cast<const char *>(16);
    EXPECT_EQ(shown("devapi_cmdstring_sendto_tslink_with_retinfo", 2, &answer, false), "unread");
    answer = nullptr;
    EXPECT_EQ(shown("devapi_cmdstring_sendto_tslink_with_retinfo", 2, &answer), "null");
}

TEST(DeviceText, StopsAtACyclicList)
{
    TopoNode nodes[4] = {};
    for (int at = 0; at < 4; ++at) {
        nodes[at].level = at;
        nodes[at].next = at < 3 ? &nodes[at + 1] : nullptr;
    }
    EXPECT_EQ(shown("devapi_topo_xml_info_list", 1, &nodes[0]),
              "[{level=0}, {level=1}, {level=2}, 1 more]");
    EXPECT_EQ(shown("devapi_get_node_dev_info", 0, &nodes[1]), "{level=1}");
    nodes[3].next = &nodes[0];
    EXPECT_THAT(shown("devapi_topo_xml_info_list", 1, &nodes[0]), HasSubstr("{level=2}, "));
}

TEST(DeviceText, ReadsTextsWithinTheirWidth)
{
    SnInfo info;
    memset(&info, 'M', sizeof info);
    EXPECT_EQ(shown("devapi_get_sn_info", 0, &info),
              "{MAC=\"" + std::string(sizeof info.MAC, 'M') + "\", tslinkstatus=\"" +
                  std::string(sizeof info.tslinkstatus, 'M') + "\", DeviceType=\"" +
                  std::string(sizeof info.DeviceType, 'M') + "\"}");
    // With a width that is passed, and with that width minus one.
    EXPECT_EQ(shown("devapi_get_uplink_status", 0, "123456789", true, 4), "\"1234\"");
    EXPECT_EQ(shown("devapi_get_devicemodel", 0, "123456789", true, 4), "\"12345\"");
    EXPECT_EQ(shown("devapi_get_devicemodel", 0, "123456789", true, -1), "\"1\"");
    // What the function reads may be shorter than its field.
    EXPECT_EQ(shown("devapi_set_qos_app_info", 1, "123456789"), "\"12345678\"");
    // Or of any length.
    EXPECT_EQ(shown("devapi_set_sta_tslink_config", 0, std::string(5000, 'x').c_str()),
              "\"" + std::string(4096, 'x') + "\" [904 more bytes]");
}

TEST(DeviceText, ShowsSecretsOnlyOnRequest)
{
    LoginInfo login = {};
    EXPECT_THAT(shown("devapi_get_admin_info", 0, &login), HasSubstr("Password=\"\""));
    strcpy(login.Password, "zaun");
    EXPECT_THAT(shown("devapi_get_admin_info", 0, &login), HasSubstr("Password=***"));
    EXPECT_EQ(shown("devapi_download_image", 0, "http://a:b@c"), "\"masked\"");

    device_text::Style open = style;
    open.show_secrets = true;
    const Argument &info = find("devapi_get_admin_info")->arguments[0];
    EXPECT_THAT(
        device_text::shown_argument(open, info, reinterpret_cast<intptr_t>(&login), nullptr, true),
        HasSubstr("Password=\"zaun\""));
    const Argument &url = find("devapi_download_image")->arguments[0];
    EXPECT_EQ(device_text::shown_argument(open, url, reinterpret_cast<intptr_t>("http://a:b@c"),
                                          nullptr, true),
              "\"http://a:b@c\"");
}

TEST(DeviceText, ShowsNumbersAndNullPointers)
{
    const Argument &enable = find("devapi_setup_mesh")->arguments[0];
    EXPECT_EQ(device_text::shown_argument(style, enable, -1, nullptr, true), "-1");
    const int32_t count = -5;
    EXPECT_EQ(shown("devapi_get_ssid_num", 0, &count), "-5");
    EXPECT_EQ(shown<SnInfo>("devapi_get_sn_info", 0, nullptr), "null");
    EXPECT_EQ(shown<char>("devapi_set_sta_led", 1, nullptr), "null");
    EXPECT_EQ(shown<char>("devapi_cmdstring_sendto_tslink_with_retinfo", 2, nullptr), "null");
}

} // namespace
