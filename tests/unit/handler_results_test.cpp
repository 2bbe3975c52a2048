// SPDX-License-Identifier: MIT
// What a handler returns to callers within the process: 0 for a success, and -1 if the request is
// refused or there is no memory for the reply.
#include "commands.h"
#include "handler_test.h"
#include "memory_sweep.h"
#include "request.h"

#include <cstring>

namespace handler_results_test {

struct Handler {
    int32_t (*function)(cJSON *);
    Request request;
};

Request texts(const std::vector<const char *> &keys)
{
    Request request({});
    for (const char *key : keys) {
        request = request.with(key, R"("1")");
    }
    return request;
}

// The handlers that take keys, with all of them; lists and objects have nothing that a worker could
// be started with.
const Handler kHandlers[] = {
    {json_get_wifi_info, texts({"SSIDIndex"})},
    {json_set_wifi_info, texts({"SSIDIndex", "SSID", "PWD", "ENCRYPT", "PowerLevel", "Channel",
                                "Enable", "AdvertisementEnable", "Mode", "Beamforming"})},
    {json_set_wifi_info_list, texts({"StaCtrl", "FastRoaming"}).with("WIFILIST", "[{}]")},
    {json_set_uplink_wifi_info,
     texts({"SSID", "PWD", "ENCRYPT", "WPACypher", "WPA2Cypher", "Band"})},
    {json_query_wan_info, texts({"WANName"})},
    {json_set_wan_info,
     texts({"WANName",        "SERVICELIST", "ADDRESSTYPE", "IPADDRESS",      "SUBNETMASK",
            "GATEWAY",        "DNS1",        "DNS2",        "IPV6_IPADDRESS", "IPV6_PREFIXLENGTH",
            "IPV6_GATEWAY",   "IPV6_DNS1",   "IPV6_DNS2",   "IPV6_PRIFIX",    "PPPOE_USR_NAME",
            "PPPOE_PASSWORD", "NATENABLE",   "QOSENABLE",   "VLANID",         "VLANPRIORITY"})},
    {json_set_attach_device_right, texts({"MAC", "InternetAccessRight"})},
    {json_set_attach_dev_base_info, texts({"MAC", "DevType", "ByName", "AccessEnable", "DownLimit",
                                           "SpeedLimit", "StaticDhcpEnable", "ip"})},
    {json_set_firewall_switch, texts({"Enable"})},
    {json_set_wifi_sleep_info, texts({}).with("WIFISleepList", "[]")},
    {json_set_hg_base_info, texts({"Name"})},
    {json_set_hg_guest_ssid, texts({"Enable", "SSID", "Band", "PWD", "ENCRYPT", "ContinueTime",
                                    "HourTime", "Mode", "AdvertisementEnable"})},
    {json_get_hg_guest_ssid, texts({"Band"})},
    {json_set_hg_pppoe_info, texts({"Account", "Password", "Enable"})},
    {json_set_hg_dhcp_info, texts({"Enable"})},
    {json_set_hg_sleep_info,
     texts({"GatewaySleepEnable", "WiFiSleepEnable", "LedSleepEnable", "StartTime", "EndTime"})},
    {json_optimize_hg_wifi, texts({"Channel"})},
    {json_set_hg_lanip_info, texts({"GatewayLanIP", "SubnetMask", "StartIp", "EndIp"})},
    {json_optimize_wifi_channel_power, texts({"Channel", "PowerLevel"})},
    {json_set_reboot_info, texts({"GatewayRebootEnable", "Time", "DaysOfWeek"})},
    {json_set_admin_info, texts({"Type", "Name", "Password"})},
    {json_set_web_login_type, texts({"Type"})},
    {json_set_web_login_info, texts({"WebLoginType", "Password"})},
    {json_set_green_net_enable, texts({"Enable"})},
    {json_set_green_net_list, texts({}).with("DeviceList", "[]")},
    {json_set_green_net_notify, texts({"Mac", "NotifyEnable"})},
    {json_get_protect_period_list, texts({"Mac"})},
    {json_set_protect_period_list, texts({"Mac"}).with("Sleep", "[]")},
    {json_update_immediately, texts({}).with("Image", "{}")},
    {json_image_update, texts({}).with("MainRouter", "{}")},
    {json_update_all_from_platform, texts({}).with("Image", "{}")},
    {json_hg_image_download, texts({"UpdateUrl"})},
    {json_image_download, texts({}).with("MainRouter", "{}")},
    {json_hg_image_update, texts({"Update"})},
    {json_get_sta_rssi, texts({"IP"})},
    {json_set_led, texts({"LedSwitch", "LedCoLor", "LedLight"})},
    {json_set_tslink_config, texts({"ConfiguerStatus"})},
    {json_send_log_to_platform, texts({"UploadUrl", "LogType"})},
    {json_del_device, texts({"MAC"})},
    {json_set_update_schedule,
     texts({"Enable", "StartHour", "StartMinute", "EndHour", "EndMinute"})},
    {json_child_hg_reboot, texts({"DeviceID"})},
    {json_child_hg_local_recovery, texts({"DeviceID"})},
    {json_set_child_routerad_base_info, texts({"DeviceID"})},
    {json_set_child_router_base_info, texts({"DeviceID", "Name"})},
    {json_set_tslink_ssid, texts({"Enable"})},
    {json_set_kaa_heartbeat, texts({"heartbeat"})},
    {json_set_mesh_status, texts({"MeshEnable", "MeshMode"})},
    {json_set_mesh_pair, texts({"Enable", "Time"})},
    {json_set_wps_state, texts({"Radio", "Action"})},
    {json_set_ap_multiservice_mode, texts({"Mode"})},
    {json_set_ap_alg_ability, texts({"PPTP", "FTP", "IPSEC", "L2TP", "RTSP", "H323", "SIP"})},
    {json_set_upnp_state, texts({"Enable"})},
    {json_set_wps_enable, texts({"Enable"})},
    {json_set_port_binding, texts({"Index", "BoundPorts"})},
    {json_set_qos_enable, texts({"Enable"})},
    {json_set_qos_app_info, texts({"Id", "PriorityLevel"})},
    {json_set_qos_classification_info,
     texts({"Id", "Action", "Name", "PriorityLevel"}).with("type_list", "[]")},
};

// Handlers that act without parameters.
const Handler kActions[] = {
    {json_set_recovery, texts({})},         {json_reboot, texts({})},
    {json_optimize_net_quality, texts({})}, {json_optimize_net_connect, texts({})},
    {json_optimize_hg_resource, texts({})},
};

class HandlerResultTest : public HandlerTest {
  protected:
    static void prepare() { writes<devapi_get_greennet_index_by_mac>(1, 1); }
    static void expect_result(const Handler &handler, const Request &request)
    {
        const Json object = parse(request.json());
        const int32_t result = handler.function(object.get());
        const std::string answered = print(object.get());
        const bool success = answered.find(R"("Status":"0")") != std::string::npos;
        EXPECT_EQ(result, success ? 0 : -1) << request.json() << " became " << answered;
    }
    // Memory for the reply runs out at every possible place.
    static void expect_failure_without_memory(const Handler &handler)
    {
        int32_t result = 0;
        const auto act = [&](cJSON *object) {
            result = handler.function(object);
        };
        sweep_memory(act, handler.request.json(), prepare, [&](const std::string &object, auto) {
            EXPECT_EQ(result, -1) << handler.request.json() << " became " << object;
        });
    }
};

TEST_F(HandlerResultTest, IsZeroForASuccessAndMinusOneForAFailure)
{
    prepare();
    for (const Handler &handler : kHandlers) {
        expect_result(handler, handler.request);
        expect_result(handler, Request({}));
        for (const auto &[key, value] : handler.request.keys()) {
            expect_result(handler, handler.request.without(key));
            for (const char *other : {"7", "{}", R"("0")"}) {
                expect_result(handler, handler.request.with(key, other));
            }
        }
    }
}

TEST_F(HandlerResultTest, IsMinusOneWhereTheDeviceKnowsNoHostOrCannotBegin)
{
    const auto fails = [](auto...) {
        return -1;
    };
    when<devapi_get_update_status_info>(fails);
    when<devapi_del_all_duration>(fails);
    when<devapi_del_all_wifi_timerinfo>(fails);
    when<devapi_get_greennet_index_by_mac>(fails);
    for (const Handler &handler : kHandlers) {
        expect_result(handler, handler.request);
    }
    prepare();
    for (const Handler &handler : kHandlers) {
        expect_result(handler, handler.request);
    }
}

TEST_F(HandlerResultTest, IsMinusOneWhereTheDeviceCannotBeRead)
{
    const auto fails = [](auto...) {
        return -1;
    };
    when<devapi_get_host_num>(fails);
    when<devapi_get_greennet_num>(fails);
    when<devapi_get_update_status_info>(fails);
    when<devapi_get_iotagtd_device_mac>(fails);
    when<devapi_get_hg_base_info>(fails);
    when<devapi_get_lan_ip_info>(fails);
    when<devapi_get_wan_ip_info>(fails);
    when<devapi_get_channel_ap_num>(fails);
    when<devapi_cmdstring_sendto_tslink_with_retinfo>(fails);
    const Handler handlers[] = {
        {json_get_attach_dev_base_info, texts({})},
        {json_get_green_net_list, texts({})},
        {json_get_update_status, texts({})},
        {json_send_log_to_platform, texts({"UploadUrl", "LogType"})},
        {json_get_hg_base_info, texts({})},
        {json_get_scan_channel_count, texts({})},
        {json_get_child_router_adbaseinfo, texts({})},
        {json_get_child_router_adbaseinfo, texts({"DeviceID"})},
    };
    for (const Handler &handler : handlers) {
        EXPECT_EQ(handler.function(parse(handler.request.json()).get()), -1) << &handler - handlers;
    }
}

TEST_F(HandlerResultTest, IsMinusOneWhereADeviceOfTheListCannotBeRead)
{
    writes<devapi_get_host_num>(1);
    when<devapi_get_ad_base_info>([](AdBaseInfo *) { return -1; });
    EXPECT_EQ(json_get_attach_dev_base_info(parse("{}").get()), -1);
}

TEST_F(HandlerResultTest, IsMinusOneForAnAnswerWithoutTheBaseInfo)
{
    when<devapi_cmdstring_sendto_tslink_with_retinfo>(
        [](const char *, const char *, char **answer) {
            *answer = strdup("{}");
            return 0;
        });
    EXPECT_EQ(json_get_child_router_adbaseinfo(parse(texts({"DeviceID"}).json()).get()), -1);
}

TEST_F(HandlerResultTest, IsMinusOneDuringAnotherUpdate)
{
    ASSERT_EQ(pthread_mutex_trylock(&downimagelock), 0);
    EXPECT_EQ(json_hg_image_download(parse(texts({"UpdateUrl"}).json()).get()), -1);
    EXPECT_EQ(json_image_update(parse(R"({"MainRouter":{"Update":"1"}})").get()), -1);
    pthread_mutex_unlock(&downimagelock);
}

TEST_F(HandlerResultTest, IsMinusOneForAListWhoseLengthIsNotKnown)
{
    const Json object = parse("{}");
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_ssid_num>([=](int32_t *) { return failure; });
        EXPECT_EQ(json_get_wifi_list_info(object.get()), -1);
    }
}

TEST_F(HandlerResultTest, IsMinusOneWithoutMemory)
{
    for (const Handler &handler : kHandlers) {
        if (handler.function == json_get_wifi_info || handler.function == json_get_hg_guest_ssid) {
            continue; // a query returns what the device has returned, also where it cannot answer
        }
        expect_failure_without_memory(handler);
    }
    for (const Handler &action : kActions) {
        expect_failure_without_memory(action);
    }
}

TEST_F(HandlerResultTest, IsMinusOneWithoutAnObject)
{
    for (const Handler &handler : kHandlers) {
        if (handler.function == json_update_immediately) {
            continue; // an update of nothing is no failure
        }
        EXPECT_EQ(handler.function(nullptr), -1) << handler.request.json();
        EXPECT_EQ(handler.function(parse("[]").get()), -1) << handler.request.json();
    }
}

} // namespace handler_results_test
