/* SPDX-License-Identifier: MIT */
/*
 * All functions of device_access.h as a list for the preprocessor, for code that is the same for
 * every device function. This file is generated from protocol/device by protocol/generate.py.
 */
#ifndef SMART_ROUTER_SERVICE_DEVICE_FUNCTIONS_H
#define SMART_ROUTER_SERVICE_DEVICE_FUNCTIONS_H

/* clang-format off */

/* FUNCTION(result, name, (parameters), (arguments)) for each function. */
#define DEVICE_FUNCTIONS(FUNCTION) \
    FUNCTION(int32_t, devapi_get_sn_info, (SnInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_system_info, (SystemInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_hg_base_info, (HgBaseInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_hg_base_info, (const HgBaseInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_lan_ip_info, (LanIpInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_lan_ip_info, (LanIpSetting *setting), (setting)) \
    FUNCTION(int32_t, devapi_get_wan_ip_info, (WanIpInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_home_page_info, (HomePageInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_hg_dhcp_info, (DhcpInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_hg_dhcp_info, (DhcpSetting *setting), (setting)) \
    FUNCTION(int32_t, devapi_get_hg_pppoe_info, (PppoeInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_hg_pppoe_info, (PppoeSetting *setting), (setting)) \
    FUNCTION(int32_t, devapi_get_admin_info, (LoginInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_admin_info, (const LoginInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_web_login_type, (const LoginInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_web_login_info, (LoginInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_web_login_info, (const LoginInfo *info), (info)) \
    FUNCTION(int32_t, devapi_recovery, (void), ()) \
    FUNCTION(int32_t, devapi_reboot, (void), ()) \
    FUNCTION(int32_t, devapi_get_reboot_info, (RebootInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_reboot_info, (const RebootInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_hg_sleep_info, (HgSleepInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_hg_sleep_info, (const HgSleepInfo *info), (info)) \
    FUNCTION(int32_t, devapi_inspect_net_quality, (NetInspectInfo *info), (info)) \
    FUNCTION(int32_t, devapi_optimize_net_quality, (NetInspectInfo *info), (info)) \
    FUNCTION(int32_t, devapi_inspect_net_connect, (NetInspectInfo *info), (info)) \
    FUNCTION(int32_t, devapi_optimize_net_connect, (NetInspectInfo *info), (info)) \
    FUNCTION(int32_t, devapi_inspect_hg_wifi, (WifiInspectInfo *info), (info)) \
    FUNCTION(int32_t, devapi_optimize_hg_wifi, (WifiInspectInfo *info), (info)) \
    FUNCTION(int32_t, devapi_optimize_wifi_channel_power, (WifiInspectInfo *info), (info)) \
    FUNCTION(int32_t, devapi_inspect_hg, (WifiInspectInfo *wifi, FwInspectInfo *firmware, NetInspectInfo *net), (wifi, firmware, net)) \
    FUNCTION(int32_t, devapi_inspect_hg_resource, (ResourceInfo *info), (info)) \
    FUNCTION(int32_t, devapi_optimize_hg_resource, (ResourceInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_uplink_status, (char *status, int32_t size), (status, size)) \
    FUNCTION(int32_t, devapi_get_net_fault_info, (char *reason), (reason)) \
    FUNCTION(int32_t, devapi_get_ssid_info, (SsidInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_ssid_info, (const SsidInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_5gwifi_powerlevel, (const char *level), (level)) \
    FUNCTION(int32_t, devapi_get_ssid_num, (int32_t *count), (count)) \
    FUNCTION(int32_t, devapi_get_wifi_stactrl, (int32_t *state), (state)) \
    FUNCTION(int32_t, devapi_get_wifi_fastroaming_enable, (char *enable), (enable)) \
    FUNCTION(int32_t, devapi_get_5g_wifi_index, (int32_t *index), (index)) \
    FUNCTION(int32_t, devapi_get_Multi_Ap_enable, (int32_t *enable), (enable)) \
    FUNCTION(int32_t, devapi_set_wifi_stactrl, (const char *enable), (enable)) \
    FUNCTION(int32_t, devapi_set_wifi_fastroaming, (const char *enable), (enable)) \
    FUNCTION(int32_t, devapi_set_ssid_list_info, (const SsidInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_wifi_sleep_info, (WifiSleepInfo *info), (info)) \
    FUNCTION(int32_t, devapi_del_all_wifi_timerinfo, (void), ()) \
    FUNCTION(int32_t, devapi_add_wifi_timer, (WifiSleepInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_wifi_sleep_info, (WifiSleepInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_scan_ssid, (ScanResult *result), (result)) \
    FUNCTION(int32_t, devapi_scan_channel_power, (ChannelPowerResult *result), (result)) \
    FUNCTION(int32_t, devapi_get_all_wifi_channel_list, (WifiChannelList *list), (list)) \
    FUNCTION(int32_t, devapi_get_guest_wifi_info, (GuestWifiInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_guest_wifi_info, (const GuestWifiInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_uplink_wifi_info, (UplinkWifiInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_update_status_info, (UpdateStatusInfo *info), (info)) \
    FUNCTION(int32_t, devapi_download_image, (const char *url, int32_t mode), (url, mode)) \
    FUNCTION(int32_t, devapi_update_image, (void), ()) \
    FUNCTION(int32_t, devapi_flash_update_image, (const char *url), (url)) \
    FUNCTION(int32_t, devapi_get_iotagtd_device_mac, (char *mac, int32_t size), (mac, size)) \
    FUNCTION(int32_t, devapi_get_wan_num, (WanNum *info), (info)) \
    FUNCTION(int32_t, devapi_query_wan_info, (WanInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_route_wan_info, (const WanInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_host_num, (int32_t *count), (count)) \
    FUNCTION(int32_t, devapi_get_ad_base_info, (AdBaseInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_ad_base_info, (AdBaseSetting *setting), (setting)) \
    FUNCTION(int32_t, devapi_get_attach_device_right, (AttachDeviceRight *info), (info)) \
    FUNCTION(int32_t, devapi_set_attach_device_right, (const AttachDeviceRight *info), (info)) \
    FUNCTION(int32_t, devapi_set_firewall_switch, (const FirewallSwitch *info), (info)) \
    FUNCTION(int32_t, devapi_get_greennet_enable, (char *enable), (enable)) \
    FUNCTION(int32_t, devapi_set_greennet_enable, (const char *enable), (enable)) \
    FUNCTION(int32_t, devapi_get_greennet_num, (int32_t *count), (count)) \
    FUNCTION(int32_t, devapi_get_green_net_info, (GreenHostInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_green_net_info, (const GreenHostInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_green_net_notify, (const GreenHostInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_greennet_index_by_mac, (const char *mac, int32_t *index), (mac, index)) \
    FUNCTION(int32_t, devapi_add_greennet_mac, (const char *mac, int32_t *index), (mac, index)) \
    FUNCTION(int32_t, devapi_del_green_net_info_by_maclist, (const char *list), (list)) \
    FUNCTION(int32_t, devapi_set_greenaccess_enable, (int32_t enable), (enable)) \
    FUNCTION(int32_t, devapi_get_duration_num_by_index, (int32_t index, int32_t *count), (index, count)) \
    FUNCTION(int32_t, devapi_get_protect_period_info, (ProtectPeriodInfo *info), (info)) \
    FUNCTION(int32_t, devapi_del_all_duration, (int32_t index), (index)) \
    FUNCTION(int32_t, devapi_add_greennet_duration, (int32_t index, int32_t *number), (index, number)) \
    FUNCTION(int32_t, devapi_set_protect_period_info, (const ProtectPeriodInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_protect_enable, (int32_t enable, int32_t index), (enable, index)) \
    FUNCTION(int32_t, devapi_get_update_schedule, (UpdateSchedule *schedule), (schedule)) \
    FUNCTION(int32_t, devapi_set_update_schedule, (const UpdateSchedule *schedule), (schedule)) \
    FUNCTION(int32_t, devapi_get_hg_log, (const char *url, const char *log_type, const char *mac), (url, log_type, mac)) \
    FUNCTION(int32_t, devapi_get_childrouter_list, (ChildRouterList *list), (list)) \
    FUNCTION(int32_t, devapi_get_router_mesh_info, (MeshLink *link, int32_t identifier), (link, identifier)) \
    FUNCTION(int32_t, devapi_get_childrouter_info, (ChildRouterInfo *info, int32_t identifier), (info, identifier)) \
    FUNCTION(int32_t, devapi_get_child_mesh_info, (ChildMeshInfo *info, int32_t identifier), (info, identifier)) \
    FUNCTION(int32_t, devapi_get_child_mesh_info_bynewmethod, (const char *mac, ChildMeshList *list), (mac, list)) \
    FUNCTION(int32_t, devapi_get_childsta_list, (ChildStationList *list, const char *mac), (list, mac)) \
    FUNCTION(int32_t, devapi_get_childsta_base_info, (AdBaseInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_dev_tol_num, (int32_t *count, intptr_t argument), (count, argument)) \
    FUNCTION(int32_t, devapi_get_devicemodel, (char *model, int32_t size), (model, size)) \
    FUNCTION(int32_t, devapi_get_basic_area_code, (char *code, int32_t size), (code, size)) \
    FUNCTION(int32_t, devapi_get_mesh_type, (void), ()) \
    FUNCTION(int32_t, devapi_call_tslink_set_topo_speed, (void), ()) \
    FUNCTION(int32_t, devapi_get_local_timezone, (int32_t *hours), (hours)) \
    FUNCTION(int32_t, devapi_get_systerm_timetype, (void), ()) \
    FUNCTION(int32_t, devapi_get_dev_status_info, (DevStatusInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_topo_relation_ship, (char *text, int32_t size), (text, size)) \
    FUNCTION(int32_t, devapi_get_topo_relation_num, (int32_t *count), (count)) \
    FUNCTION(int32_t, devapi_handle_topo_struct, (const char *relations, TopoNode *first), (relations, first)) \
    FUNCTION(int32_t, devapi_topo_xml_info_list, (int32_t count, TopoNode *first), (count, first)) \
    FUNCTION(void, devapi_free_topo_list, (TopoNode *first), (first)) \
    FUNCTION(int32_t, devapi_get_node_dev_info, (const TopoNode *node, NodeDevInfo *info), (node, info)) \
    FUNCTION(int32_t, devapi_get_node_baseinfo, (const TopoNode *node, NodeBaseInfo *first), (node, first)) \
    FUNCTION(int32_t, devapi_get_viewmac_by_mac, (const char *mac, char *view), (mac, view)) \
    FUNCTION(int32_t, devapi_get_hostindex_by_mac, (const char *mac, int32_t *index), (mac, index)) \
    FUNCTION(int32_t, devapi_topo_xml_getinfo, (const char *path, char *value), (path, value)) \
    FUNCTION(int32_t, devapi_get_node_dev_info_by_newmetod, (const char *path, ChildRouterInfo *info), (path, info)) \
    FUNCTION(int32_t, devapi_get_node_sta_info_by_newmetod, (StationList *list, const char *path), (list, path)) \
    FUNCTION(int32_t, devapi_cmdstring_sendto_tslink, (const char *text, int32_t length), (text, length)) \
    FUNCTION(int32_t, devapi_cmdstring_sendto_tslink_with_retinfo, (const char *text, const char *method, char **answer), (text, method, answer)) \
    FUNCTION(int32_t, devapi_setup_mesh, (int32_t enable), (enable)) \
    FUNCTION(int32_t, devapi_set_kaa_heartbeat, (const char *heartbeat), (heartbeat)) \
    FUNCTION(int32_t, devapi_get_mesh_status, (MeshStatus *status), (status)) \
    FUNCTION(int32_t, devapi_set_mesh_status, (const MeshStatus *status), (status)) \
    FUNCTION(int32_t, devapi_set_pair_status, (const PairStatus *status), (status)) \
    FUNCTION(int32_t, devapi_set_wps_state, (const WpsState *state), (state)) \
    FUNCTION(int32_t, devapi_get_led_info, (LedInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_sta_led, (const char *on, const char *colour, const char *light), (on, colour, light)) \
    FUNCTION(int32_t, devapi_get_tslink_config, (int32_t *state), (state)) \
    FUNCTION(int32_t, devapi_set_sta_tslink_config, (const char *state), (state)) \
    FUNCTION(int32_t, devapi_del_device, (const char *mac), (mac)) \
    FUNCTION(int32_t, devapi_get_channel_ap_num, (const WifiChannelList *channels, ChannelApNum *counts), (channels, counts)) \
    FUNCTION(int32_t, devapi_get_link_info, (LinkInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_ping_check, (const char *target), (target)) \
    FUNCTION(int32_t, devapi_get_sta_rssi_by_ip, (const char *ip, int32_t *dbm), (ip, dbm)) \
    FUNCTION(int32_t, devapi_get_uplink_qos_info, (QosInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_qos_enable, (int32_t enable), (enable)) \
    FUNCTION(int32_t, devapi_set_qos_app_info, (int32_t identifier, const char *priority), (identifier, priority)) \
    FUNCTION(int32_t, devapi_set_qos_classification_info, (QosRule *rule), (rule)) \
    FUNCTION(int32_t, devapi_get_ap_multiservice_mode, (MultiserviceMode *mode), (mode)) \
    FUNCTION(int32_t, devapi_set_ap_multiservice_mode, (const MultiserviceMode *mode), (mode)) \
    FUNCTION(int32_t, devapi_speedtest_request, (SpeedTest *test), (test)) \
    FUNCTION(int32_t, devapi_get_ap_alg_ability, (AlgAbility *ability), (ability)) \
    FUNCTION(int32_t, devapi_set_ap_alg_ability, (const AlgAbility *ability), (ability)) \
    FUNCTION(int32_t, devapi_get_upnp_state, (UpnpState *state), (state)) \
    FUNCTION(int32_t, devapi_set_upnp_state, (const UpnpState *state), (state)) \
    FUNCTION(int32_t, devapi_get_tsconf_status, (char *status, int32_t size), (status, size)) \
    FUNCTION(int32_t, devapi_get_wps_enable, (int32_t *enable), (enable)) \
    FUNCTION(int32_t, devapi_set_wps_enable, (int32_t enable), (enable)) \
    FUNCTION(int32_t, devapi_get_port_statistics_info, (PortStatisticsInfo *info), (info)) \
    FUNCTION(int32_t, devapi_get_port_binding_info, (PortBindingInfo *info), (info)) \
    FUNCTION(int32_t, devapi_set_port_binding, (const char *index, const char *ports), (index, ports))

/* clang-format on */

#endif
