/* SPDX-License-Identifier: MIT */
// Properties of the device functions and their records, for programs that check a device library or
// replace one. Generated from protocol/device by protocol/generate.py.
#pragma once

#include "smart_router_service/device_access.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

// clang-format off
namespace device_facts {

// A short list of results of a function.
struct Results {
    int32_t values[4] = {};
    size_t count = 0;

    constexpr bool empty() const { return count == 0; }
    constexpr bool contain(int32_t result) const
    {
        return std::find(values, values + count, result) != values + count;
    }
};

struct Function {
    std::string_view name;
    size_t text_width = 0;          // of the text that it writes; 0 if the width is an argument
    bool is_size_less_one = false;  // that argument is the width minus one
    bool fills = false;             // on success, it fills a record or writes a text
    std::string_view filled = {};   // the fields that it fills, each between blanks; empty for all
    std::string_view given = {};    // the fields that it is given, in the same way
    bool counts = false;            // the number that it sets is a count, which is not negative
    bool is_answer = false;         // its result is the requested value
    Results answers = {};           // results other than 0 that are not failures
    Results results = {};           // all possible results; empty if any result is possible
    Results known = {};             // those that say more than that it failed
    std::string_view minus_one_fails_for = {}; // callers for which only -1 is a failure, between blanks
    std::string_view other_rules_for = {};     // callers with other rules than that or that 0 is success

    constexpr bool has_filled(std::string_view field) const
    {
        for (size_t at = filled.find(field); at != filled.npos; at = filled.find(field, at + 1)) {
            if (filled[at - 1] == ' ' && filled[at + field.size()] == ' ') {
                return true;
            }
        }
        return filled.empty();
    }
};

// One field of a record.
struct Field {
    const char *name;
    bool is_reserved = false;
    bool is_secret = false;
    const char *counted_by = nullptr; // of an array: the field with the number of entries
    int32_t count = 0;                // the value of that field
    bool negative_is_none = false;    // of a count: it may be negative
};

template <class Given, class Record>
concept RecordOf = std::same_as<std::remove_const_t<Given>, Record>;

// Sorted by name.
inline constexpr Function kFunctions[] = {
    {.name = "devapi_add_greennet_duration"},
    {.name = "devapi_add_greennet_mac"},
    {.name = "devapi_add_wifi_timer", .given = " Enable StartTime EndTime DaysOfWeek "},
    {.name = "devapi_call_tslink_set_topo_speed"},
    {.name = "devapi_cmdstring_sendto_tslink"},
    {.name = "devapi_cmdstring_sendto_tslink_with_retinfo"},
    {.name = "devapi_del_all_duration"},
    {.name = "devapi_del_all_wifi_timerinfo"},
    {.name = "devapi_del_device", .results = {{0, -1}, 2}, .minus_one_fails_for = " * "},
    {.name = "devapi_del_green_net_info_by_maclist"},
    {.name = "devapi_download_image"},
    {.name = "devapi_flash_update_image"},
    {.name = "devapi_free_topo_list"},
    {.name = "devapi_get_5g_wifi_index", .other_rules_for = " * "},
    {.name = "devapi_get_Multi_Ap_enable", .other_rules_for = " * "},
    {.name = "devapi_get_ad_base_info", .fills = true, .filled = " Mac UID DevType DevFactory Name ByName OS Version NetStatus NetMonopoly AccessType AccessEnable AccessTime UpSpeed DownSpeed ip AccessCode SSIDIndex LinkStatus SpeedLimit DownLimit UpLimit GreennetProtectEnable Dbm StaticDhcpEnable ", .given = " Kind HostIndex ", .answers = {{1000}, 1}, .results = {{0, -1, 1000}, 3}, .known = {{1000}, 1}, .minus_one_fails_for = " GET_AD_BASE_INFO json_get_main_router_baseinfo "},
    {.name = "devapi_get_admin_info", .fills = true, .filled = " Name Password "},
    {.name = "devapi_get_all_wifi_channel_list", .fills = true, .results = {{0, -1}, 2}, .minus_one_fails_for = " GET_SCAN_CHANNEL_COUNT "},
    {.name = "devapi_get_ap_alg_ability", .fills = true},
    {.name = "devapi_get_ap_multiservice_mode", .fills = true},
    {.name = "devapi_get_attach_device_right", .fills = true, .filled = " MAC name InternetAccessRight ", .given = " HostIndex "},
    {.name = "devapi_get_basic_area_code", .other_rules_for = " * "},
    {.name = "devapi_get_channel_ap_num", .fills = true, .results = {{0, -1}, 2}, .minus_one_fails_for = " * "},
    {.name = "devapi_get_child_mesh_info", .fills = true},
    {.name = "devapi_get_child_mesh_info_bynewmethod", .fills = true, .other_rules_for = " * "},
    {.name = "devapi_get_childrouter_info", .fills = true, .other_rules_for = " json_get_child_router_info "},
    {.name = "devapi_get_childrouter_list", .fills = true, .other_rules_for = " * "},
    {.name = "devapi_get_childsta_base_info", .fills = true, .filled = " Mac UID DevType DevFactory Name ByName OS Version NetStatus NetMonopoly AccessType AccessEnable AccessTime UpSpeed DownSpeed ip AccessCode SSIDIndex LinkStatus SpeedLimit DownLimit UpLimit GreennetProtectEnable Dbm StaticDhcpEnable ", .given = " HostIndex "},
    {.name = "devapi_get_childsta_list", .fills = true, .other_rules_for = " * "},
    {.name = "devapi_get_dev_status_info", .fills = true},
    {.name = "devapi_get_dev_tol_num", .counts = true},
    {.name = "devapi_get_devicemodel", .is_size_less_one = true, .other_rules_for = " * "},
    {.name = "devapi_get_duration_num_by_index", .counts = true, .other_rules_for = " * "},
    {.name = "devapi_get_green_net_info", .fills = true, .filled = " Mac Name NotifyEnable ProtectEnable ", .given = " HostIndex "},
    {.name = "devapi_get_greennet_enable", .text_width = 256},
    {.name = "devapi_get_greennet_index_by_mac", .answers = {{1}, 1}, .known = {{1, 0}, 2}, .other_rules_for = " * "},
    {.name = "devapi_get_greennet_num", .counts = true},
    {.name = "devapi_get_guest_wifi_info", .fills = true, .filled = " RadioEnable Enable SSID ContinueTime HourTime EndTimestamp Remainingtime PWD ENCRYPT Mode AdvertisementEnable PermissionProperty ", .given = " Band "},
    {.name = "devapi_get_hg_base_info", .fills = true},
    {.name = "devapi_get_hg_dhcp_info", .fills = true},
    {.name = "devapi_get_hg_log", .other_rules_for = " * "},
    {.name = "devapi_get_hg_pppoe_info", .fills = true},
    {.name = "devapi_get_hg_sleep_info", .fills = true},
    {.name = "devapi_get_home_page_info", .fills = true},
    {.name = "devapi_get_host_num", .counts = true, .results = {{0, -1}, 2}, .minus_one_fails_for = " GET_AD_BASE_INFO json_get_main_router_baseinfo ", .other_rules_for = " GET_ATTACH_DEVICE_RIGHT "},
    {.name = "devapi_get_hostindex_by_mac", .answers = {{1}, 1}, .known = {{1}, 1}, .other_rules_for = " json_get_child_router_info json_get_child_router_baseinfo "},
    {.name = "devapi_get_iotagtd_device_mac", .other_rules_for = " json_msg_notice_to_app json_get_child_router_info json_get_topo_router_agent_info_bynewmethod "},
    {.name = "devapi_get_lan_ip_info", .fills = true},
    {.name = "devapi_get_led_info", .fills = true, .results = {{0, -1}, 2}, .minus_one_fails_for = " * "},
    {.name = "devapi_get_link_info", .fills = true, .other_rules_for = " * "},
    {.name = "devapi_get_local_timezone", .other_rules_for = " * "},
    {.name = "devapi_get_mesh_status", .fills = true},
    {.name = "devapi_get_mesh_type", .is_answer = true, .other_rules_for = " * "},
    {.name = "devapi_get_net_fault_info", .text_width = 16},
    {.name = "devapi_get_node_baseinfo"},
    {.name = "devapi_get_node_dev_info", .fills = true},
    {.name = "devapi_get_node_dev_info_by_newmetod", .fills = true, .other_rules_for = " * "},
    {.name = "devapi_get_node_sta_info_by_newmetod", .fills = true, .other_rules_for = " * "},
    {.name = "devapi_get_ping_check"},
    {.name = "devapi_get_port_binding_info", .fills = true},
    {.name = "devapi_get_port_statistics_info", .fills = true},
    {.name = "devapi_get_protect_period_info", .fills = true, .filled = " Enable StartTime EndTime DaysOfWeek ", .given = " HostIndex PeriodNum "},
    {.name = "devapi_get_reboot_info", .fills = true},
    {.name = "devapi_get_router_mesh_info", .fills = true},
    {.name = "devapi_get_scan_ssid", .fills = true},
    {.name = "devapi_get_sn_info", .fills = true},
    {.name = "devapi_get_ssid_info", .fills = true, .filled = " SSID PWD ENCRYPT PowerLevel Channel UsedChannel Enable Bandwidth Type Mode AdvertisementEnable Beamforming PermissionProperty ", .given = " SSIDIndex "},
    {.name = "devapi_get_ssid_num"},
    {.name = "devapi_get_sta_rssi_by_ip", .results = {{0, -1}, 2}, .minus_one_fails_for = " * "},
    {.name = "devapi_get_system_info", .fills = true},
    {.name = "devapi_get_systerm_timetype", .is_answer = true, .other_rules_for = " * "},
    {.name = "devapi_get_topo_relation_num", .counts = true},
    {.name = "devapi_get_topo_relation_ship", .is_size_less_one = true},
    {.name = "devapi_get_tsconf_status"},
    {.name = "devapi_get_tslink_config"},
    {.name = "devapi_get_update_schedule", .fills = true},
    {.name = "devapi_get_update_status_info", .fills = true},
    {.name = "devapi_get_uplink_qos_info", .fills = true},
    {.name = "devapi_get_uplink_status"},
    {.name = "devapi_get_upnp_state", .fills = true},
    {.name = "devapi_get_viewmac_by_mac", .text_width = 32},
    {.name = "devapi_get_wan_ip_info", .fills = true},
    {.name = "devapi_get_wan_num", .fills = true},
    {.name = "devapi_get_web_login_info", .fills = true, .filled = " Password WebLoginType WebLoginIp "},
    {.name = "devapi_get_wifi_fastroaming_enable", .text_width = 8},
    {.name = "devapi_get_wifi_sleep_info", .fills = true, .filled = " Enable StartTime EndTime DaysOfWeek ", .given = " StartTimer EndTimer "},
    {.name = "devapi_get_wifi_stactrl"},
    {.name = "devapi_get_wps_enable"},
    {.name = "devapi_handle_topo_struct"},
    {.name = "devapi_inspect_hg", .fills = true, .filled = " WanStatus NetStatus WanIP NetMask "},
    {.name = "devapi_inspect_hg_resource", .fills = true},
    {.name = "devapi_inspect_hg_wifi", .fills = true, .filled = " WiFiDevNum Security Channel Congestion "},
    {.name = "devapi_inspect_net_connect", .fills = true, .filled = " DnsStatus WanStatus "},
    {.name = "devapi_inspect_net_quality", .fills = true, .filled = " NetQuality "},
    {.name = "devapi_optimize_hg_resource", .fills = true, .filled = " CpuPercent MemPercent "},
    {.name = "devapi_optimize_hg_wifi", .fills = true, .filled = " Channel Congestion ", .given = " Channel "},
    {.name = "devapi_optimize_net_connect", .fills = true, .filled = " DnsStatus "},
    {.name = "devapi_optimize_net_quality", .fills = true, .filled = " NetQuality "},
    {.name = "devapi_optimize_wifi_channel_power", .fills = true, .filled = " Channel Congestion PowerLevel ", .given = " Channel PowerLevel "},
    {.name = "devapi_query_wan_info", .fills = true, .given = " WANName "},
    {.name = "devapi_reboot"},
    {.name = "devapi_recovery"},
    {.name = "devapi_scan_channel_power", .fills = true},
    {.name = "devapi_set_5gwifi_powerlevel", .other_rules_for = " * "},
    {.name = "devapi_set_ad_base_info", .given = " info.Mac info.DevType info.ByName info.AccessEnable info.DownLimit info.StaticDhcpEnable info.ip ", .results = {{0, -1}, 2}, .minus_one_fails_for = " * "},
    {.name = "devapi_set_admin_info", .given = " Type Name Password "},
    {.name = "devapi_set_ap_alg_ability"},
    {.name = "devapi_set_ap_multiservice_mode"},
    {.name = "devapi_set_attach_device_right", .given = " MAC InternetAccessRight "},
    {.name = "devapi_set_firewall_switch"},
    {.name = "devapi_set_green_net_info", .given = " HostIndex Mac Name NotifyEnable NewEntry "},
    {.name = "devapi_set_green_net_notify", .given = " HostIndex Mac NotifyEnable "},
    {.name = "devapi_set_greenaccess_enable"},
    {.name = "devapi_set_greennet_enable"},
    {.name = "devapi_set_guest_wifi_info", .given = " Enable SSID Band ContinueTime HourTime EndTimestamp PWD ENCRYPT Mode AdvertisementEnable ", .known = {{-2}, 1}},
    {.name = "devapi_set_hg_base_info", .given = " Name "},
    {.name = "devapi_set_hg_dhcp_info", .given = " info.Enable ", .results = {{0, -1}, 2}, .minus_one_fails_for = " * "},
    {.name = "devapi_set_hg_pppoe_info", .given = " info "},
    {.name = "devapi_set_hg_sleep_info"},
    {.name = "devapi_set_kaa_heartbeat"},
    {.name = "devapi_set_lan_ip_info", .given = " info ", .results = {{0, -1}, 2}, .minus_one_fails_for = " * "},
    {.name = "devapi_set_mesh_status", .known = {{3, 4}, 2}},
    {.name = "devapi_set_pair_status", .known = {{2}, 1}},
    {.name = "devapi_set_port_binding"},
    {.name = "devapi_set_protect_enable"},
    {.name = "devapi_set_protect_period_info"},
    {.name = "devapi_set_qos_app_info"},
    {.name = "devapi_set_qos_classification_info"},
    {.name = "devapi_set_qos_enable"},
    {.name = "devapi_set_reboot_info"},
    {.name = "devapi_set_route_wan_info", .given = " WANName SERVICELIST ADDRESSTYPE IPADDRESS SUBNETMASK GATEWAY DNS1 DNS2 IPV6_PRIFIX IPV6_PREFIXLENGTH IPV6_IPADDRESS IPV6_GATEWAY IPV6_DNS1 IPV6_DNS2 PPPOE_USR_NAME PPPOE_PASSWORD NATENABLE QOSENABLE VLANID VLANPRIORITY "},
    {.name = "devapi_set_ssid_info", .given = " SSIDIndex SSID PWD ENCRYPT PowerLevel Channel Enable Mode AdvertisementEnable Beamforming "},
    {.name = "devapi_set_ssid_list_info", .given = " SSIDIndex SSID PWD ENCRYPT PowerLevel Channel Enable Mode AdvertisementEnable Beamforming Bandwidth ", .other_rules_for = " * "},
    {.name = "devapi_set_sta_led", .results = {{0, -1}, 2}, .minus_one_fails_for = " * "},
    {.name = "devapi_set_sta_tslink_config", .results = {{0, -1}, 2}, .minus_one_fails_for = " * "},
    {.name = "devapi_set_update_schedule", .results = {{0, -1}, 2}, .minus_one_fails_for = " * "},
    {.name = "devapi_set_uplink_wifi_info", .results = {{0, -1, -2}, 3}, .known = {{-2}, 1}},
    {.name = "devapi_set_upnp_state"},
    {.name = "devapi_set_web_login_info", .given = " WebLoginType Password "},
    {.name = "devapi_set_web_login_type", .given = " WebLoginType "},
    {.name = "devapi_set_wifi_fastroaming", .other_rules_for = " * "},
    {.name = "devapi_set_wifi_sleep_info", .given = " StartTimer EndTimer Enable StartTime EndTime DaysOfWeek "},
    {.name = "devapi_set_wifi_stactrl", .other_rules_for = " * "},
    {.name = "devapi_set_wps_enable"},
    {.name = "devapi_set_wps_state"},
    {.name = "devapi_setup_mesh", .other_rules_for = " * "},
    {.name = "devapi_speedtest_request", .fills = true},
    {.name = "devapi_topo_xml_getinfo", .text_width = 32},
    {.name = "devapi_topo_xml_info_list", .other_rules_for = " * "},
    {.name = "devapi_update_image"},
};

// Null if there is no device function with the name.
constexpr const Function *find(std::string_view name)
{
    const Function *const end = kFunctions + std::size(kFunctions);
    const Function *const found = std::lower_bound(
        kFunctions, end, name, [](const Function &row, std::string_view wanted) { return row.name < wanted; });
    return found != end && found->name == name ? found : nullptr;
}

// Whether the caller is among those between blanks; "*" stands for all.
constexpr bool is_among(std::string_view callers, std::string_view caller)
{
    for (size_t at = callers.find(caller); at != callers.npos; at = callers.find(caller, at + 1)) {
        if (callers[at - 1] == ' ' && callers[at + caller.size()] == ' ') {
            return true;
        }
    }
    return callers == " * ";
}

// Whether the result is not a failure.
constexpr bool is_success(const Function &function, int32_t result)
{
    return result == 0 || function.answers.contain(result) || (function.is_answer && result > 0);
}

// The name of a record; null for other types.
template <class Record> inline constexpr const char *kName = nullptr;
template <> inline constexpr const char *kName<SnInfo> = "SnInfo";
template <> inline constexpr const char *kName<SystemInfo> = "SystemInfo";
template <> inline constexpr const char *kName<HgBaseInfo> = "HgBaseInfo";
template <> inline constexpr const char *kName<LanIpInfo> = "LanIpInfo";
template <> inline constexpr const char *kName<LanIpSetting> = "LanIpSetting";
template <> inline constexpr const char *kName<WanIpInfo> = "WanIpInfo";
template <> inline constexpr const char *kName<HomePageInfo> = "HomePageInfo";
template <> inline constexpr const char *kName<DhcpInfo> = "DhcpInfo";
template <> inline constexpr const char *kName<DhcpSetting> = "DhcpSetting";
template <> inline constexpr const char *kName<PppoeInfo> = "PppoeInfo";
template <> inline constexpr const char *kName<PppoeSetting> = "PppoeSetting";
template <> inline constexpr const char *kName<LoginInfo> = "LoginInfo";
template <> inline constexpr const char *kName<RebootInfo> = "RebootInfo";
template <> inline constexpr const char *kName<HgSleepInfo> = "HgSleepInfo";
template <> inline constexpr const char *kName<NetInspectInfo> = "NetInspectInfo";
template <> inline constexpr const char *kName<WifiInspectInfo> = "WifiInspectInfo";
template <> inline constexpr const char *kName<FwInspectInfo> = "FwInspectInfo";
template <> inline constexpr const char *kName<ResourceInfo> = "ResourceInfo";
template <> inline constexpr const char *kName<SsidInfo> = "SsidInfo";
template <> inline constexpr const char *kName<WifiSleepInfo> = "WifiSleepInfo";
template <> inline constexpr const char *kName<ScanEntry> = "ScanEntry";
template <> inline constexpr const char *kName<ScanResult> = "ScanResult";
template <> inline constexpr const char *kName<ChannelPower> = "ChannelPower";
template <> inline constexpr const char *kName<ChannelPowerResult> = "ChannelPowerResult";
template <> inline constexpr const char *kName<WifiChannelList> = "WifiChannelList";
template <> inline constexpr const char *kName<GuestWifiInfo> = "GuestWifiInfo";
template <> inline constexpr const char *kName<UplinkWifiInfo> = "UplinkWifiInfo";
template <> inline constexpr const char *kName<UpdateStatusInfo> = "UpdateStatusInfo";
template <> inline constexpr const char *kName<WanNum> = "WanNum";
template <> inline constexpr const char *kName<WanInfo> = "WanInfo";
template <> inline constexpr const char *kName<AdBaseInfo> = "AdBaseInfo";
template <> inline constexpr const char *kName<AdBaseSetting> = "AdBaseSetting";
template <> inline constexpr const char *kName<AttachDeviceRight> = "AttachDeviceRight";
template <> inline constexpr const char *kName<FirewallSwitch> = "FirewallSwitch";
template <> inline constexpr const char *kName<GreenHostInfo> = "GreenHostInfo";
template <> inline constexpr const char *kName<ProtectPeriodInfo> = "ProtectPeriodInfo";
template <> inline constexpr const char *kName<UpdateSchedule> = "UpdateSchedule";
template <> inline constexpr const char *kName<ChildRouterList> = "ChildRouterList";
template <> inline constexpr const char *kName<MeshLink> = "MeshLink";
template <> inline constexpr const char *kName<ChildRouterInfo> = "ChildRouterInfo";
template <> inline constexpr const char *kName<ChildMeshInfo> = "ChildMeshInfo";
template <> inline constexpr const char *kName<ChildMeshList> = "ChildMeshList";
template <> inline constexpr const char *kName<ChildStationList> = "ChildStationList";
template <> inline constexpr const char *kName<DevStatusInfo> = "DevStatusInfo";
template <> inline constexpr const char *kName<TopoNode> = "TopoNode";
template <> inline constexpr const char *kName<NodeDevInfo> = "NodeDevInfo";
template <> inline constexpr const char *kName<NodeBaseInfo> = "NodeBaseInfo";
template <> inline constexpr const char *kName<StationList> = "StationList";
template <> inline constexpr const char *kName<MeshStatus> = "MeshStatus";
template <> inline constexpr const char *kName<PairStatus> = "PairStatus";
template <> inline constexpr const char *kName<WpsState> = "WpsState";
template <> inline constexpr const char *kName<LedInfo> = "LedInfo";
template <> inline constexpr const char *kName<ChannelApNum> = "ChannelApNum";
template <> inline constexpr const char *kName<LinkInfo> = "LinkInfo";
template <> inline constexpr const char *kName<QosType> = "QosType";
template <> inline constexpr const char *kName<QosRule> = "QosRule";
template <> inline constexpr const char *kName<QosApplication> = "QosApplication";
template <> inline constexpr const char *kName<QosInfo> = "QosInfo";
template <> inline constexpr const char *kName<MultiserviceMode> = "MultiserviceMode";
template <> inline constexpr const char *kName<SpeedTest> = "SpeedTest";
template <> inline constexpr const char *kName<AlgAbility> = "AlgAbility";
template <> inline constexpr const char *kName<UpnpState> = "UpnpState";
template <> inline constexpr const char *kName<PortStatistics> = "PortStatistics";
template <> inline constexpr const char *kName<PortStatisticsInfo> = "PortStatisticsInfo";
template <> inline constexpr const char *kName<PortBinding> = "PortBinding";
template <> inline constexpr const char *kName<PortBindingInfo> = "PortBindingInfo";

// Each calls visit(Field, field) for the record's fields in order, except pointers.
template <RecordOf<SnInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "MAC"}, record.MAC);
    visit(Field{.name = "tslinkstatus"}, record.tslinkstatus);
    visit(Field{.name = "DeviceType"}, record.DeviceType);
}
template <RecordOf<SystemInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "SWVersion"}, record.SWVersion);
    visit(Field{.name = "HDVersion"}, record.HDVersion);
    visit(Field{.name = "ProductCLass"}, record.ProductCLass);
    visit(Field{.name = "CPUClass"}, record.CPUClass);
    visit(Field{.name = "DEVType"}, record.DEVType);
    visit(Field{.name = "DEVType1"}, record.DEVType1);
    visit(Field{.name = "Capability"}, record.Capability);
    visit(Field{.name = "Card"}, record.Card);
    visit(Field{.name = "UPLink"}, record.UPLink);
    visit(Field{.name = "Cardno"}, record.Cardno);
    visit(Field{.name = "IPV6"}, record.IPV6);
    visit(Field{.name = "VLANbind"}, record.VLANbind);
    visit(Field{.name = "LED"}, record.LED);
    visit(Field{.name = "NFC"}, record.NFC);
    visit(Field{.name = "VLANCapability"}, record.VLANCapability);
}
template <RecordOf<HgBaseInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Name"}, record.Name);
    visit(Field{.name = "Mac"}, record.Mac);
    visit(Field{.name = "NetStatus"}, record.NetStatus);
    visit(Field{.name = "UpSpeed"}, record.UpSpeed);
    visit(Field{.name = "DownSpeed"}, record.DownSpeed);
    visit(Field{.name = "WiFiStatus1"}, record.WiFiStatus1);
    visit(Field{.name = "WiFiStatus2"}, record.WiFiStatus2);
    visit(Field{.name = "SSID1"}, record.SSID1);
    visit(Field{.name = "SSID2"}, record.SSID2);
    visit(Field{.name = "Wlan1Mac"}, record.Wlan1Mac);
    visit(Field{.name = "Wlan0Mac"}, record.Wlan0Mac);
    visit(Field{.name = "ip"}, record.ip);
    visit(Field{.name = "HWVersion"}, record.HWVersion);
    visit(Field{.name = "FWVersion"}, record.FWVersion);
    visit(Field{.name = "FWDATA"}, record.FWDATA);
    visit(Field{.name = "UpTime"}, record.UpTime);
    visit(Field{.name = "WanUptime"}, record.WanUptime);
    visit(Field{.name = "DeviceType"}, record.DeviceType);
    visit(Field{.name = "AreaCode"}, record.AreaCode);
    visit(Field{.name = "AddressType"}, record.AddressType);
    visit(Field{.name = "Cpu"}, record.Cpu);
    visit(Field{.name = "QQGameAcceleratorEnable"}, record.QQGameAcceleratorEnable);
    visit(Field{.name = "QosAcceleratorEnable"}, record.QosAcceleratorEnable);
    visit(Field{.name = "FireWallEnable"}, record.FireWallEnable);
    visit(Field{.name = "LedLight"}, record.LedLight);
    visit(Field{.name = "LedSwitch"}, record.LedSwitch);
    visit(Field{.name = "Memory"}, record.Memory);
    visit(Field{.name = "WanLinkMode"}, record.WanLinkMode);
    visit(Field{.name = "ConfiguerStatus"}, record.ConfiguerStatus);
}
template <RecordOf<LanIpInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "GatewayLanIP"}, record.GatewayLanIP);
    visit(Field{.name = "SubnetMask"}, record.SubnetMask);
    visit(Field{.name = "StartIp"}, record.StartIp);
    visit(Field{.name = "EndIp"}, record.EndIp);
}
template <RecordOf<LanIpSetting> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "info"}, record.info);
    visit(Field{.name = "FailReason"}, record.FailReason);
}
template <RecordOf<WanIpInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "ip"}, record.ip);
    visit(Field{.name = "Dns"}, record.Dns);
    visit(Field{.name = "WanGateWay"}, record.WanGateWay);
    visit(Field{.name = "ConnectionState"}, record.ConnectionState);
}
template <RecordOf<HomePageInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Devname"}, record.Devname);
    visit(Field{.name = "UploadSpeed"}, record.UploadSpeed);
    visit(Field{.name = "DownloadSpeed"}, record.DownloadSpeed);
    visit(Field{.name = "GameSpeed"}, record.GameSpeed);
    visit(Field{.name = "GamePort"}, record.GamePort);
    visit(Field{.name = "GameBand"}, record.GameBand);
    visit(Field{.name = "CpuRate"}, record.CpuRate);
    visit(Field{.name = "MemRate"}, record.MemRate);
    visit(Field{.name = "CpuTemperature"}, record.CpuTemperature);
}
template <RecordOf<DhcpInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Enable"}, record.Enable);
    visit(Field{.name = "IPAddress"}, record.IPAddress);
    visit(Field{.name = "SubNetMask"}, record.SubNetMask);
    visit(Field{.name = "GateWay"}, record.GateWay);
}
template <RecordOf<DhcpSetting> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "info"}, record.info);
    visit(Field{.name = "FailReason"}, record.FailReason);
}
template <RecordOf<PppoeInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Account"}, record.Account);
    visit(Field{.name = "Password", .is_secret = true}, record.Password);
    visit(Field{.name = "Enable"}, record.Enable);
}
template <RecordOf<PppoeSetting> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "info"}, record.info);
    visit(Field{.name = "FailReason"}, record.FailReason);
}
template <RecordOf<LoginInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "WebLoginType"}, record.WebLoginType);
    visit(Field{.name = "Type"}, record.Type);
    visit(Field{.name = "Name"}, record.Name);
    visit(Field{.name = "Password", .is_secret = true}, record.Password);
    visit(Field{.name = "WebLoginIp"}, record.WebLoginIp);
}
template <RecordOf<RebootInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "GatewayRebootEnable"}, record.GatewayRebootEnable);
    visit(Field{.name = "Time"}, record.Time);
    visit(Field{.name = "DaysOfWeek"}, record.DaysOfWeek);
}
template <RecordOf<HgSleepInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "GatewaySleepEnable"}, record.GatewaySleepEnable);
    visit(Field{.name = "WiFiSleepEnable"}, record.WiFiSleepEnable);
    visit(Field{.name = "LedSleepEnable"}, record.LedSleepEnable);
    visit(Field{.name = "StartTime"}, record.StartTime);
    visit(Field{.name = "EndTime"}, record.EndTime);
}
template <RecordOf<NetInspectInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "reserved0", .is_reserved = true}, record.reserved0);
    visit(Field{.name = "WanStatus"}, record.WanStatus);
    visit(Field{.name = "NetStatus"}, record.NetStatus);
    visit(Field{.name = "WanIP"}, record.WanIP);
    visit(Field{.name = "NetMask"}, record.NetMask);
    visit(Field{.name = "DnsStatus"}, record.DnsStatus);
    visit(Field{.name = "NetQuality"}, record.NetQuality);
}
template <RecordOf<WifiInspectInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "WiFiDevNum"}, record.WiFiDevNum);
    visit(Field{.name = "Security"}, record.Security);
    visit(Field{.name = "Channel"}, record.Channel);
    visit(Field{.name = "Congestion"}, record.Congestion);
    visit(Field{.name = "PowerLevel"}, record.PowerLevel);
    visit(Field{.name = "FireWallEnable"}, record.FireWallEnable);
}
template <RecordOf<FwInspectInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "FWVersion"}, record.FWVersion);
}
template <RecordOf<ResourceInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "CpuPercent"}, record.CpuPercent);
    visit(Field{.name = "MemPercent"}, record.MemPercent);
    visit(Field{.name = "LanDevNum"}, record.LanDevNum);
    visit(Field{.name = "ProtectedDevNum"}, record.ProtectedDevNum);
}
template <RecordOf<SsidInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "SSIDIndex"}, record.SSIDIndex);
    visit(Field{.name = "SSID"}, record.SSID);
    visit(Field{.name = "PWD", .is_secret = true}, record.PWD);
    visit(Field{.name = "ENCRYPT"}, record.ENCRYPT);
    visit(Field{.name = "PowerLevel"}, record.PowerLevel);
    visit(Field{.name = "Channel"}, record.Channel);
    visit(Field{.name = "UsedChannel"}, record.UsedChannel);
    visit(Field{.name = "Enable"}, record.Enable);
    visit(Field{.name = "Bandwidth"}, record.Bandwidth);
    visit(Field{.name = "Type"}, record.Type);
    visit(Field{.name = "Mode"}, record.Mode);
    visit(Field{.name = "AdvertisementEnable"}, record.AdvertisementEnable);
    visit(Field{.name = "Beamforming"}, record.Beamforming);
    visit(Field{.name = "PermissionProperty"}, record.PermissionProperty);
}
template <RecordOf<WifiSleepInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "StartTimer"}, record.StartTimer);
    visit(Field{.name = "EndTimer"}, record.EndTimer);
    visit(Field{.name = "Enable"}, record.Enable);
    visit(Field{.name = "StartTime"}, record.StartTime);
    visit(Field{.name = "EndTime"}, record.EndTime);
    visit(Field{.name = "DaysOfWeek"}, record.DaysOfWeek);
}
template <RecordOf<ScanEntry> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "SSID"}, record.SSID);
    visit(Field{.name = "PowerLevel"}, record.PowerLevel);
    visit(Field{.name = "ENCRYPT"}, record.ENCRYPT);
    visit(Field{.name = "WPACypher"}, record.WPACypher);
    visit(Field{.name = "WPA2Cypher"}, record.WPA2Cypher);
    visit(Field{.name = "Band"}, record.Band);
    visit(Field{.name = "Connected"}, record.Connected);
}
template <RecordOf<ScanResult> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "reserved0", .is_reserved = true}, record.reserved0);
}
template <RecordOf<ChannelPower> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "name"}, record.name);
    visit(Field{.name = "dbpower"}, record.dbpower);
}
template <RecordOf<ChannelPowerResult> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "count"}, record.count);
}
template <RecordOf<WifiChannelList> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "count_24g"}, record.count_24g);
    visit(Field{.name = "count_5g"}, record.count_5g);
    visit(Field{.name = "channels_24g", .counted_by = "count_24g", .count = record.count_24g}, record.channels_24g);
    visit(Field{.name = "channels_5g", .counted_by = "count_5g", .count = record.count_5g}, record.channels_5g);
}
template <RecordOf<GuestWifiInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "reserved0", .is_reserved = true}, record.reserved0);
    visit(Field{.name = "RadioEnable"}, record.RadioEnable);
    visit(Field{.name = "Enable"}, record.Enable);
    visit(Field{.name = "SSID"}, record.SSID);
    visit(Field{.name = "Band"}, record.Band);
    visit(Field{.name = "ContinueTime"}, record.ContinueTime);
    visit(Field{.name = "HourTime"}, record.HourTime);
    visit(Field{.name = "EndTimestamp"}, record.EndTimestamp);
    visit(Field{.name = "Remainingtime"}, record.Remainingtime);
    visit(Field{.name = "PWD", .is_secret = true}, record.PWD);
    visit(Field{.name = "ENCRYPT"}, record.ENCRYPT);
    visit(Field{.name = "Mode"}, record.Mode);
    visit(Field{.name = "AdvertisementEnable"}, record.AdvertisementEnable);
    visit(Field{.name = "PermissionProperty"}, record.PermissionProperty);
}
template <RecordOf<UplinkWifiInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "SSID"}, record.SSID);
    visit(Field{.name = "PWD", .is_secret = true}, record.PWD);
    visit(Field{.name = "ENCRYPT"}, record.ENCRYPT);
    visit(Field{.name = "WPACypher"}, record.WPACypher);
    visit(Field{.name = "WPA2Cypher"}, record.WPA2Cypher);
    visit(Field{.name = "Band"}, record.Band);
}
template <RecordOf<UpdateStatusInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Name"}, record.Name);
    visit(Field{.name = "HWVersion"}, record.HWVersion);
    visit(Field{.name = "FWVersion"}, record.FWVersion);
    visit(Field{.name = "FWDATA"}, record.FWDATA);
    visit(Field{.name = "DeviceType"}, record.DeviceType);
    visit(Field{.name = "AreaCode"}, record.AreaCode);
}
template <RecordOf<WanNum> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "NUM"}, record.NUM);
    visit(Field{.name = "Description"}, record.Description);
}
template <RecordOf<WanInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "INDEX"}, record.INDEX);
    visit(Field{.name = "IFNAME"}, record.IFNAME);
    visit(Field{.name = "CONNECTIONSTATUS"}, record.CONNECTIONSTATUS);
    visit(Field{.name = "Reserved1", .is_reserved = true}, record.Reserved1);
    visit(Field{.name = "CONNECTIONTYPE"}, record.CONNECTIONTYPE);
    visit(Field{.name = "PROTOCOL"}, record.PROTOCOL);
    visit(Field{.name = "UPLINKMODE"}, record.UPLINKMODE);
    visit(Field{.name = "WANName"}, record.WANName);
    visit(Field{.name = "SERVICELIST"}, record.SERVICELIST);
    visit(Field{.name = "ADDRESSTYPE"}, record.ADDRESSTYPE);
    visit(Field{.name = "IPADDRESS"}, record.IPADDRESS);
    visit(Field{.name = "SUBNETMASK"}, record.SUBNETMASK);
    visit(Field{.name = "GATEWAY"}, record.GATEWAY);
    visit(Field{.name = "DNS1"}, record.DNS1);
    visit(Field{.name = "DNS2"}, record.DNS2);
    visit(Field{.name = "Reserved2", .is_reserved = true}, record.Reserved2);
    visit(Field{.name = "IPV6_CONNECTIONSTATUS"}, record.IPV6_CONNECTIONSTATUS);
    visit(Field{.name = "IPV6_PRIFIX"}, record.IPV6_PRIFIX);
    visit(Field{.name = "IPV6_PREFIXLENGTH"}, record.IPV6_PREFIXLENGTH);
    visit(Field{.name = "IPV6_IPADDRESS"}, record.IPV6_IPADDRESS);
    visit(Field{.name = "IPV6_GATEWAY"}, record.IPV6_GATEWAY);
    visit(Field{.name = "IPV6_DNS1"}, record.IPV6_DNS1);
    visit(Field{.name = "IPV6_DNS2"}, record.IPV6_DNS2);
    visit(Field{.name = "PPPOE_USR_NAME"}, record.PPPOE_USR_NAME);
    visit(Field{.name = "PPPOE_PASSWORD", .is_secret = true}, record.PPPOE_PASSWORD);
    visit(Field{.name = "PPPOE_PROXY"}, record.PPPOE_PROXY);
    visit(Field{.name = "PPPOE_SERVICENAME"}, record.PPPOE_SERVICENAME);
    visit(Field{.name = "PPPOE_DIAL_MODE"}, record.PPPOE_DIAL_MODE);
    visit(Field{.name = "NATENABLE"}, record.NATENABLE);
    visit(Field{.name = "QOSENABLE"}, record.QOSENABLE);
    visit(Field{.name = "VLANID"}, record.VLANID);
    visit(Field{.name = "VLANPRIORITY"}, record.VLANPRIORITY);
}
template <RecordOf<AdBaseInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Kind"}, record.Kind);
    visit(Field{.name = "HostIndex"}, record.HostIndex);
    visit(Field{.name = "Mac"}, record.Mac);
    visit(Field{.name = "UID"}, record.UID);
    visit(Field{.name = "DevType"}, record.DevType);
    visit(Field{.name = "DevFactory"}, record.DevFactory);
    visit(Field{.name = "Name"}, record.Name);
    visit(Field{.name = "ByName"}, record.ByName);
    visit(Field{.name = "OS"}, record.OS);
    visit(Field{.name = "Version"}, record.Version);
    visit(Field{.name = "NetStatus"}, record.NetStatus);
    visit(Field{.name = "NetMonopoly"}, record.NetMonopoly);
    visit(Field{.name = "AccessType"}, record.AccessType);
    visit(Field{.name = "AccessEnable"}, record.AccessEnable);
    visit(Field{.name = "AccessTime"}, record.AccessTime);
    visit(Field{.name = "UpSpeed"}, record.UpSpeed);
    visit(Field{.name = "DownSpeed"}, record.DownSpeed);
    visit(Field{.name = "ip"}, record.ip);
    visit(Field{.name = "AccessCode"}, record.AccessCode);
    visit(Field{.name = "SSIDIndex"}, record.SSIDIndex);
    visit(Field{.name = "LinkStatus"}, record.LinkStatus);
    visit(Field{.name = "SpeedLimit"}, record.SpeedLimit);
    visit(Field{.name = "DownLimit"}, record.DownLimit);
    visit(Field{.name = "UpLimit"}, record.UpLimit);
    visit(Field{.name = "GreennetProtectEnable"}, record.GreennetProtectEnable);
    visit(Field{.name = "Dbm"}, record.Dbm);
    visit(Field{.name = "StaticDhcpEnable"}, record.StaticDhcpEnable);
}
template <RecordOf<AdBaseSetting> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "info"}, record.info);
    visit(Field{.name = "FailReason"}, record.FailReason);
}
template <RecordOf<AttachDeviceRight> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "HostIndex"}, record.HostIndex);
    visit(Field{.name = "MAC"}, record.MAC);
    visit(Field{.name = "name"}, record.name);
    visit(Field{.name = "InternetAccessRight"}, record.InternetAccessRight);
}
template <RecordOf<FirewallSwitch> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Enable"}, record.Enable);
}
template <RecordOf<GreenHostInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "HostIndex"}, record.HostIndex);
    visit(Field{.name = "Mac"}, record.Mac);
    visit(Field{.name = "Name"}, record.Name);
    visit(Field{.name = "NotifyEnable"}, record.NotifyEnable);
    visit(Field{.name = "ProtectEnable"}, record.ProtectEnable);
    visit(Field{.name = "NewEntry"}, record.NewEntry);
}
template <RecordOf<ProtectPeriodInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "HostIndex"}, record.HostIndex);
    visit(Field{.name = "PeriodNum"}, record.PeriodNum);
    visit(Field{.name = "StartTime"}, record.StartTime);
    visit(Field{.name = "EndTime"}, record.EndTime);
    visit(Field{.name = "Enable"}, record.Enable);
    visit(Field{.name = "DaysOfWeek"}, record.DaysOfWeek);
}
template <RecordOf<UpdateSchedule> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Enable"}, record.Enable);
    visit(Field{.name = "StartHour"}, record.StartHour);
    visit(Field{.name = "StartMinute"}, record.StartMinute);
    visit(Field{.name = "EndHour"}, record.EndHour);
    visit(Field{.name = "EndMinute"}, record.EndMinute);
}
template <RecordOf<ChildRouterList> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "identifiers", .counted_by = "count", .count = record.count}, record.identifiers);
    visit(Field{.name = "count"}, record.count);
}
template <RecordOf<MeshLink> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "nexthopMAC"}, record.nexthopMAC);
    visit(Field{.name = "interface"}, record.interface);
    visit(Field{.name = "dbm"}, record.dbm);
}
template <RecordOf<ChildRouterInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "RouterDeviceID"}, record.RouterDeviceID);
    visit(Field{.name = "Name"}, record.Name);
    visit(Field{.name = "Mac"}, record.Mac);
    visit(Field{.name = "NetStatus"}, record.NetStatus);
    visit(Field{.name = "ChildRouterAccessType"}, record.ChildRouterAccessType);
    visit(Field{.name = "UpSpeed"}, record.UpSpeed);
    visit(Field{.name = "DownSpeed"}, record.DownSpeed);
    visit(Field{.name = "ip"}, record.ip);
    visit(Field{.name = "FWVersion"}, record.FWVersion);
    visit(Field{.name = "FWDATA"}, record.FWDATA);
    visit(Field{.name = "UpTime"}, record.UpTime);
    visit(Field{.name = "DeviceType"}, record.DeviceType);
    visit(Field{.name = "AreaCode"}, record.AreaCode);
    visit(Field{.name = "HWVersion"}, record.HWVersion);
    visit(Field{.name = "Wlan1Mac"}, record.Wlan1Mac);
    visit(Field{.name = "Wlan0Mac"}, record.Wlan0Mac);
    visit(Field{.name = "ParentMac"}, record.ParentMac);
    visit(Field{.name = "dbm"}, record.dbm);
    visit(Field{.name = "links", .counted_by = "link_count", .count = record.link_count}, record.links);
    visit(Field{.name = "link_count"}, record.link_count);
    visit(Field{.name = "Reserved", .is_reserved = true}, record.Reserved);
    visit(Field{.name = "LinkSpeed"}, record.LinkSpeed);
}
template <RecordOf<ChildMeshInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Mac"}, record.Mac);
    visit(Field{.name = "ChildMac"}, record.ChildMac);
    visit(Field{.name = "ParentMac"}, record.ParentMac);
    visit(Field{.name = "Reserved", .is_reserved = true}, record.Reserved);
}
template <RecordOf<ChildMeshList> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "count"}, record.count);
    visit(Field{.name = "children", .counted_by = "count", .count = record.count}, record.children);
}
template <RecordOf<ChildStationList> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "indexes", .counted_by = "count", .count = record.count}, record.indexes);
    visit(Field{.name = "count"}, record.count);
}
template <RecordOf<DevStatusInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Reserved", .is_reserved = true}, record.Reserved);
    visit(Field{.name = "Cpu"}, record.Cpu);
    visit(Field{.name = "Memory"}, record.Memory);
}
template <RecordOf<TopoNode> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "level"}, record.level);
    visit(Field{.name = "Reserved", .is_reserved = true}, record.Reserved);
}
template <RecordOf<NodeDevInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Mac"}, record.Mac);
    visit(Field{.name = "ip"}, record.ip);
    visit(Field{.name = "AccessType"}, record.AccessType);
    visit(Field{.name = "dbm"}, record.dbm);
    visit(Field{.name = "FWVersion"}, record.FWVersion);
    visit(Field{.name = "LinkSpeed"}, record.LinkSpeed);
}
template <RecordOf<NodeBaseInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Kind"}, record.Kind);
    visit(Field{.name = "Mac"}, record.Mac);
}
template <RecordOf<StationList> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "count"}, record.count);
    visit(Field{.name = "stations", .counted_by = "count", .count = record.count}, record.stations);
}
template <RecordOf<MeshStatus> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "MeshEnable"}, record.MeshEnable);
    visit(Field{.name = "MeshMode"}, record.MeshMode);
}
template <RecordOf<PairStatus> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Enable"}, record.Enable);
    visit(Field{.name = "Time"}, record.Time);
}
template <RecordOf<WpsState> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Radio"}, record.Radio);
    visit(Field{.name = "Action"}, record.Action);
}
template <RecordOf<LedInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "LedSwitch"}, record.LedSwitch);
    visit(Field{.name = "LedCoLor"}, record.LedCoLor);
    visit(Field{.name = "LedLight"}, record.LedLight);
}
template <RecordOf<ChannelApNum> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "counts_24g"}, record.counts_24g);
    visit(Field{.name = "counts_5g"}, record.counts_5g);
}
template <RecordOf<LinkInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Wifi24Enable"}, record.Wifi24Enable);
    visit(Field{.name = "Wifi24Channel"}, record.Wifi24Channel);
    visit(Field{.name = "Wifi24ChannelCheck"}, record.Wifi24ChannelCheck);
    visit(Field{.name = "Wifi58Enable"}, record.Wifi58Enable);
    visit(Field{.name = "Wifi58ChannelCheck"}, record.Wifi58ChannelCheck);
    visit(Field{.name = "Wifi58Channel"}, record.Wifi58Channel);
    visit(Field{.name = "LanIP"}, record.LanIP);
    visit(Field{.name = "WanIp"}, record.WanIp);
    visit(Field{.name = "DnsCheck"}, record.DnsCheck);
    visit(Field{.name = "Reserved", .is_reserved = true}, record.Reserved);
}
template <RecordOf<QosType> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Type"}, record.Type);
    visit(Field{.name = "Min"}, record.Min);
    visit(Field{.name = "Max"}, record.Max);
    visit(Field{.name = "Reserved", .is_reserved = true}, record.Reserved);
}
template <RecordOf<QosRule> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Id"}, record.Id);
    visit(Field{.name = "Action"}, record.Action);
    visit(Field{.name = "Name"}, record.Name);
    visit(Field{.name = "PriorityLevel"}, record.PriorityLevel);
    visit(Field{.name = "type_count"}, record.type_count);
    visit(Field{.name = "types", .counted_by = "type_count", .count = record.type_count, .negative_is_none = true}, record.types);
}
template <RecordOf<QosApplication> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Id"}, record.Id);
    visit(Field{.name = "Name"}, record.Name);
    visit(Field{.name = "PriorityLevel"}, record.PriorityLevel);
}
template <RecordOf<QosInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Enable"}, record.Enable);
    visit(Field{.name = "application_count"}, record.application_count);
    visit(Field{.name = "applications", .counted_by = "application_count", .count = record.application_count, .negative_is_none = true}, record.applications);
    visit(Field{.name = "rule_count"}, record.rule_count);
    visit(Field{.name = "rules", .counted_by = "rule_count", .count = record.rule_count, .negative_is_none = true}, record.rules);
}
template <RecordOf<MultiserviceMode> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Mode"}, record.Mode);
}
template <RecordOf<SpeedTest> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "DownBandWidth"}, record.DownBandWidth);
    visit(Field{.name = "UpBandWidth"}, record.UpBandWidth);
    visit(Field{.name = "Delay"}, record.Delay);
}
template <RecordOf<AlgAbility> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "PPTP"}, record.PPTP);
    visit(Field{.name = "FTP"}, record.FTP);
    visit(Field{.name = "IPSEC"}, record.IPSEC);
    visit(Field{.name = "L2TP"}, record.L2TP);
    visit(Field{.name = "RTSP"}, record.RTSP);
    visit(Field{.name = "H323"}, record.H323);
    visit(Field{.name = "SIP"}, record.SIP);
}
template <RecordOf<UpnpState> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Enable"}, record.Enable);
}
template <RecordOf<PortStatistics> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Port"}, record.Port);
    visit(Field{.name = "tx_traffic"}, record.tx_traffic);
    visit(Field{.name = "rx_traffic"}, record.rx_traffic);
    visit(Field{.name = "tx_packets"}, record.tx_packets);
    visit(Field{.name = "rx_packets"}, record.rx_packets);
}
template <RecordOf<PortStatisticsInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "count"}, record.count);
}
template <RecordOf<PortBinding> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "Index"}, record.Index);
    visit(Field{.name = "WANName"}, record.WANName);
    visit(Field{.name = "BoundPorts"}, record.BoundPorts);
}
template <RecordOf<PortBindingInfo> Given> void visit_fields(Given &record, const auto &visit)
{
    visit(Field{.name = "count"}, record.count);
    visit(Field{.name = "entries", .counted_by = "count", .count = record.count, .negative_is_none = true}, record.entries);
}

// Calls visit(std::type_identity<Record>()) for each record.
void visit_records(const auto &visit)
{
    visit(std::type_identity<SnInfo>());
    visit(std::type_identity<SystemInfo>());
    visit(std::type_identity<HgBaseInfo>());
    visit(std::type_identity<LanIpInfo>());
    visit(std::type_identity<LanIpSetting>());
    visit(std::type_identity<WanIpInfo>());
    visit(std::type_identity<HomePageInfo>());
    visit(std::type_identity<DhcpInfo>());
    visit(std::type_identity<DhcpSetting>());
    visit(std::type_identity<PppoeInfo>());
    visit(std::type_identity<PppoeSetting>());
    visit(std::type_identity<LoginInfo>());
    visit(std::type_identity<RebootInfo>());
    visit(std::type_identity<HgSleepInfo>());
    visit(std::type_identity<NetInspectInfo>());
    visit(std::type_identity<WifiInspectInfo>());
    visit(std::type_identity<FwInspectInfo>());
    visit(std::type_identity<ResourceInfo>());
    visit(std::type_identity<SsidInfo>());
    visit(std::type_identity<WifiSleepInfo>());
    visit(std::type_identity<ScanEntry>());
    visit(std::type_identity<ScanResult>());
    visit(std::type_identity<ChannelPower>());
    visit(std::type_identity<ChannelPowerResult>());
    visit(std::type_identity<WifiChannelList>());
    visit(std::type_identity<GuestWifiInfo>());
    visit(std::type_identity<UplinkWifiInfo>());
    visit(std::type_identity<UpdateStatusInfo>());
    visit(std::type_identity<WanNum>());
    visit(std::type_identity<WanInfo>());
    visit(std::type_identity<AdBaseInfo>());
    visit(std::type_identity<AdBaseSetting>());
    visit(std::type_identity<AttachDeviceRight>());
    visit(std::type_identity<FirewallSwitch>());
    visit(std::type_identity<GreenHostInfo>());
    visit(std::type_identity<ProtectPeriodInfo>());
    visit(std::type_identity<UpdateSchedule>());
    visit(std::type_identity<ChildRouterList>());
    visit(std::type_identity<MeshLink>());
    visit(std::type_identity<ChildRouterInfo>());
    visit(std::type_identity<ChildMeshInfo>());
    visit(std::type_identity<ChildMeshList>());
    visit(std::type_identity<ChildStationList>());
    visit(std::type_identity<DevStatusInfo>());
    visit(std::type_identity<TopoNode>());
    visit(std::type_identity<NodeDevInfo>());
    visit(std::type_identity<NodeBaseInfo>());
    visit(std::type_identity<StationList>());
    visit(std::type_identity<MeshStatus>());
    visit(std::type_identity<PairStatus>());
    visit(std::type_identity<WpsState>());
    visit(std::type_identity<LedInfo>());
    visit(std::type_identity<ChannelApNum>());
    visit(std::type_identity<LinkInfo>());
    visit(std::type_identity<QosType>());
    visit(std::type_identity<QosRule>());
    visit(std::type_identity<QosApplication>());
    visit(std::type_identity<QosInfo>());
    visit(std::type_identity<MultiserviceMode>());
    visit(std::type_identity<SpeedTest>());
    visit(std::type_identity<AlgAbility>());
    visit(std::type_identity<UpnpState>());
    visit(std::type_identity<PortStatistics>());
    visit(std::type_identity<PortStatisticsInfo>());
    visit(std::type_identity<PortBinding>());
    visit(std::type_identity<PortBindingInfo>());
}

} // namespace device_facts
