// SPDX-License-Identifier: MIT
#include "commands.h"
#include "handler_test.h"

#include <cctype>
#include <string_view>
#include <vector>

namespace dispatcher_test {

struct Row {
    const char *name;
    int32_t (*handler)(cJSON *);
};

#define ROW(name, handler) {name, handler},
constexpr Row kRows[] = {SMART_ROUTER_COMMANDS(ROW)};
#undef ROW

class DispatcherTest : public HandlerTest {};

// The result, and the object afterwards.
std::pair<int32_t, std::string> dispatch(const char *name, const std::string &object)
{
    const Json json = parse(object);
    const int32_t result = hg_process_json_cmd(name, json.get());
    return {result, print(json.get())};
}

TEST_F(DispatcherTest, FindsEveryCommandOfTheTable)
{
    for (const Row &row : kRows) {
        EXPECT_EQ(dispatch(row.name, "{}").first, 0) << row.name;
    }
}

TEST_F(DispatcherTest, CallsTheHandlerOfTheName)
{
    for (const Row &row : kRows) {
        SCOPED_TRACE(row.name);
        recording_device::reset();
        const std::string reply = dispatch(row.name, "{}").second;
        const auto calls = recording_device::calls();

        recording_device::reset();
        const Json direct = parse("{}");
        row.handler(direct.get());
        EXPECT_EQ(reply, print(direct.get()));
        EXPECT_EQ(calls, recording_device::calls());
    }
}

// New commands follow those of the list.
TEST_F(DispatcherTest, BeginsWithTheListOfTheProtocol)
{
    constexpr size_t kListed = 109;
    ASSERT_GE(std::size(kRows), kListed);
    std::vector<std::string_view> names;
    for (size_t row = 0; row < kListed; ++row) {
        names.push_back(kRows[row].name);
    }
    EXPECT_EQ(names, (std::vector<std::string_view>{
                         "GET_SN_INFO",
                         "QUERY_SYSTEM_INFO",
                         "GET_SCAN_WIFI_SSIDLIST",
                         "GET_WIFI_INFO",
                         "SET_WIFI_INFO",
                         "GET_WIFI_LIST_INFO",
                         "SET_WIFI_INFO_LIST",
                         "SET_UPLINK_WIFI_INFO",
                         "QUERY_WAN_NUM",
                         "QUERY_WAN_INFO",
                         "SET_ROUTE_WAN_INFO",
                         "GET_ATTACH_DEVICE_RIGHT",
                         "SET_ATTACH_DEVICE_RIGHT",
                         "GET_SCAN_CHANNEL_POWER",
                         "SET_AD_BASE_INFO",
                         "GET_AD_BASE_INFO",
                         "SET_FIREWALL_SWITCH",
                         "GET_WIFI_SLEEP_SCHEDULE",
                         "SET_WIFI_SLEEP_SCHEDULE",
                         "GET_HG_BASE_INFO",
                         "SET_HG_BASE_INFO",
                         "SET_HG_GUEST_SSID",
                         "GET_HG_GUEST_SSID",
                         "SET_HG_PPPOE_INFO",
                         "GET_HG_SLEEP_INFO",
                         "GET_HG_PPPOE_INFO",
                         "SET_HG_DHCP_INFO",
                         "GET_HG_DHCP_INFO",
                         "SET_HG_SLEEP_INFO",
                         "HG_WIFI_INSPECTION",
                         "HG_WIFI_OPTIMIZATION",
                         "SET_LAN_IP_INFO",
                         "GET_LAN_IP_INFO",
                         "GET_GATEWAY_NET_FAULT",
                         "HG_WIFI_CHANNEL_POWER_OPTIMIZATION",
                         "HG_RESOURCE_INSPECTION",
                         "HG_RESOURCE_OPTIMIZATION",
                         "GET_HG_REBOOT_INFO",
                         "SET_HG_REBOOT_INFO",
                         "GET_HG_UPLINK_STATUS",
                         "HG_INSPECTION",
                         "RP_HG_REBOOT",
                         "GET_ADMIN_INFO",
                         "SET_ADMIN_INFO",
                         "SET_WEB_LOGIN_TYPE",
                         "GET_WEB_LOGIN_INFO",
                         "SET_WEB_LOGIN_INFO",
                         "HG_NETCONN_INSPECTION",
                         "HG_NETCONN_OPTIMIZATION",
                         "HG_NETQUAL_INSPECTION",
                         "HG_NETQUAL_OPTIMIZATION",
                         "GET_GREENNET_ENABLE",
                         "SET_GREENNET_ENABLE",
                         "GET_GREENNET_DEVICE_LIST",
                         "SET_GREENNET_DEVICE_LIST",
                         "SET_GREENNET_NOTIFY_ENABLE",
                         "GET_GREENNET_PROTECT_PERIOD_LIST",
                         "SET_GREENNET_PROTECT_PERIOD_LIST",
                         "UPDATE_IMMEDIATE",
                         "IMAGE_UPDATE",
                         "PLATEFORM_UPDATE_IMMEDIATE",
                         "HG_IMAGE_DOWNLOAD",
                         "IMAGE_DOWNLOAD",
                         "HG_GET_UPDATE_STATUS",
                         "HG_IMAGE_UPDATE",
                         "GET_WIFI_CHANNEL_LIST",
                         "GET_TSLINK_TOPOLOGY_INFO",
                         "GET_SCAN_CHANNEL_COUNT",
                         "LINK_CHECK",
                         "GET_STA_RSSI",
                         "SET_LED_STATUS",
                         "GET_LED_STATUS",
                         "SET_TSLINK_CONFIG_STATUS",
                         "QUERY_TSLINK_CONFIG_STATUS",
                         "HG_LOCAL_RECOVERY",
                         "GET_HG_LOG",
                         "DEL_LAN_DEVICE",
                         "SET_UPDATE_SCHEDULE",
                         "GET_UPDATE_SCHEDULE",
                         "RP_CHILD_HG_REBOOT",
                         "CHILD_HG_LOCAL_RECOVERY",
                         "GET_UPDATE_STATUS",
                         "GET_CHILD_ROUTER_AD_BASE_INFO",
                         "SET_CHILD_ROUTERAD_BASE_INFO",
                         "SET_CHILD_ROUTER_HG_BASE_INFO",
                         "SET_TSLINK_SSID",
                         "SET_KAA_HEARTBEAT",
                         "SET_MESH_STATUS",
                         "GET_MESH_STATUS",
                         "SET_MESH_PAIR",
                         "SET_WPS_STATE",
                         "SET_AP_MULTISERVICE_MODE",
                         "GET_AP_MULTISERVICE_MODE",
                         "HG_SPEEDTEST_REQUEST",
                         "SET_AP_ALG_ABILITY",
                         "GET_AP_ALG_ABILITY",
                         "SET_UPNP_STATE",
                         "GET_UPNP_STATE",
                         "GET_TSCONF_STATUS",
                         "GET_WPS_ENABLE",
                         "SET_WPS_ENABLE",
                         "GET_PORT_STATISTICS",
                         "GET_PORT_BINDING",
                         "SET_PORT_BINDING",
                         "SET_QOS_ENABLE",
                         "GET_QOS_INFO",
                         "SET_QOS_APP_INFO",
                         "SET_QOS_CLASSIFICATION_INFO",
                         "RESPONSE_ROUTER_VERSION",
                     }));
}

TEST_F(DispatcherTest, AnUnknownNameIsAnsweredWithMinusThreeAndNothingElse)
{
    EXPECT_EQ(HG_NO_SUCH_COMMAND, -3);
    const std::string object = R"({"VersionInfo":"1.0","Status":"7"})";
    for (const char *name :
         {"", " ", "GET_SN_INFO ", " GET_SN_INFO", "GET_SN_INF", "GET_SN_INFX", "GET_SN_INFOS",
          "get_sn_info", "A", "ZZZ", "GET_SN_INFO\n", "\xff", "RESPONSE_ROUTER_VERSIO",
          "RESPONSE_ROUTER_VERSION_", "NO_SUCH_COMMAND", static_cast<const char *>(nullptr)}) {
        EXPECT_EQ(dispatch(name, object), std::pair(HG_NO_SUCH_COMMAND, object));
    }
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(DispatcherTest, AnUnknownNameOfAMegabyteIsUnknown)
{
    EXPECT_EQ(dispatch(std::string(1 << 20, 'G').c_str(), "{}"),
              std::pair(HG_NO_SUCH_COMMAND, std::string("{}")));
}

TEST_F(DispatcherTest, AnUnknownNameWithoutAnObject)
{
    EXPECT_EQ(hg_process_json_cmd("NO_SUCH_COMMAND", nullptr), HG_NO_SUCH_COMMAND);
    EXPECT_EQ(hg_process_json_cmd(nullptr, nullptr), HG_NO_SUCH_COMMAND);
}

TEST_F(DispatcherTest, AFailedCommandIsStillAResultOfZero)
{
    when<devapi_get_sn_info>([](SnInfo *) { return -1; });
    EXPECT_EQ(dispatch("GET_SN_INFO", "{}"),
              std::pair(0, std::string(R"({"Status":"1","FailReason":"get sn failed"})")));
}

} // namespace dispatcher_test
