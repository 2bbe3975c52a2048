// SPDX-License-Identifier: MIT
// The table of commands: the name of every command, with its handler.
//
// Everything that needs all commands iterates this table: the dispatcher, the handlers' prototypes
// below, and the tests. The rows are in the order of the protocol's list of commands, which groups
// them by subject; new ones are appended. To find a handler, search for its name.
#pragma once

#include "smart_router_service/processjsonability.h"

#define SMART_ROUTER_COMMANDS(COMMAND)                                                             \
    COMMAND("GET_SN_INFO", json_get_sn_info)                                                       \
    COMMAND("QUERY_SYSTEM_INFO", json_query_sys_info)                                              \
    COMMAND("GET_SCAN_WIFI_SSIDLIST", json_scan_wifi_ssid_list)                                    \
    COMMAND("GET_WIFI_INFO", json_get_wifi_info)                                                   \
    COMMAND("SET_WIFI_INFO", json_set_wifi_info)                                                   \
    COMMAND("GET_WIFI_LIST_INFO", json_get_wifi_list_info)                                         \
    COMMAND("SET_WIFI_INFO_LIST", json_set_wifi_info_list)                                         \
    COMMAND("SET_UPLINK_WIFI_INFO", json_set_uplink_wifi_info)                                     \
    COMMAND("QUERY_WAN_NUM", json_query_wan_num)                                                   \
    COMMAND("QUERY_WAN_INFO", json_query_wan_info)                                                 \
    COMMAND("SET_ROUTE_WAN_INFO", json_set_wan_info)                                               \
    COMMAND("GET_ATTACH_DEVICE_RIGHT", json_get_attach_device_right)                               \
    COMMAND("SET_ATTACH_DEVICE_RIGHT", json_set_attach_device_right)                               \
    COMMAND("GET_SCAN_CHANNEL_POWER", json_get_scan_channle_power_list)                            \
    COMMAND("SET_AD_BASE_INFO", json_set_attach_dev_base_info)                                     \
    COMMAND("GET_AD_BASE_INFO", json_get_attach_dev_base_info)                                     \
    COMMAND("SET_FIREWALL_SWITCH", json_set_firewall_switch)                                       \
    COMMAND("GET_WIFI_SLEEP_SCHEDULE", json_get_wifi_sleep_info)                                   \
    COMMAND("SET_WIFI_SLEEP_SCHEDULE", json_set_wifi_sleep_info)                                   \
    COMMAND("GET_HG_BASE_INFO", json_get_hg_base_info)                                             \
    COMMAND("SET_HG_BASE_INFO", json_set_hg_base_info)                                             \
    COMMAND("SET_HG_GUEST_SSID", json_set_hg_guest_ssid)                                           \
    COMMAND("GET_HG_GUEST_SSID", json_get_hg_guest_ssid)                                           \
    COMMAND("SET_HG_PPPOE_INFO", json_set_hg_pppoe_info)                                           \
    COMMAND("GET_HG_SLEEP_INFO", json_get_hg_sleep_info)                                           \
    COMMAND("GET_HG_PPPOE_INFO", json_get_hg_pppoe_info)                                           \
    COMMAND("SET_HG_DHCP_INFO", json_set_hg_dhcp_info)                                             \
    COMMAND("GET_HG_DHCP_INFO", json_get_hg_dhcp_info)                                             \
    COMMAND("SET_HG_SLEEP_INFO", json_set_hg_sleep_info)                                           \
    COMMAND("HG_WIFI_INSPECTION", json_inspect_hg_wifi)                                            \
    COMMAND("HG_WIFI_OPTIMIZATION", json_optimize_hg_wifi)                                         \
    COMMAND("SET_LAN_IP_INFO", json_set_hg_lanip_info)                                             \
    COMMAND("GET_LAN_IP_INFO", json_get_hg_lanip_info)                                             \
    COMMAND("GET_GATEWAY_NET_FAULT", json_get_hg_net_status)                                       \
    COMMAND("HG_WIFI_CHANNEL_POWER_OPTIMIZATION", json_optimize_wifi_channel_power)                \
    COMMAND("HG_RESOURCE_INSPECTION", json_inspect_hg_resource)                                    \
    COMMAND("HG_RESOURCE_OPTIMIZATION", json_optimize_hg_resource)                                 \
    COMMAND("GET_HG_REBOOT_INFO", json_get_reboot_info)                                            \
    COMMAND("SET_HG_REBOOT_INFO", json_set_reboot_info)                                            \
    COMMAND("GET_HG_UPLINK_STATUS", json_get_uplink_status)                                        \
    COMMAND("HG_INSPECTION", json_inspect_hg)                                                      \
    COMMAND("RP_HG_REBOOT", json_reboot)                                                           \
    COMMAND("GET_ADMIN_INFO", json_get_admin_info)                                                 \
    COMMAND("SET_ADMIN_INFO", json_set_admin_info)                                                 \
    COMMAND("SET_WEB_LOGIN_TYPE", json_set_web_login_type)                                         \
    COMMAND("GET_WEB_LOGIN_INFO", json_get_web_login_info)                                         \
    COMMAND("SET_WEB_LOGIN_INFO", json_set_web_login_info)                                         \
    COMMAND("HG_NETCONN_INSPECTION", json_inspect_net_connect)                                     \
    COMMAND("HG_NETCONN_OPTIMIZATION", json_optimize_net_connect)                                  \
    COMMAND("HG_NETQUAL_INSPECTION", json_inspect_net_quality)                                     \
    COMMAND("HG_NETQUAL_OPTIMIZATION", json_optimize_net_quality)                                  \
    COMMAND("GET_GREENNET_ENABLE", json_get_green_net_enable)                                      \
    COMMAND("SET_GREENNET_ENABLE", json_set_green_net_enable)                                      \
    COMMAND("GET_GREENNET_DEVICE_LIST", json_get_green_net_list)                                   \
    COMMAND("SET_GREENNET_DEVICE_LIST", json_set_green_net_list)                                   \
    COMMAND("SET_GREENNET_NOTIFY_ENABLE", json_set_green_net_notify)                               \
    COMMAND("GET_GREENNET_PROTECT_PERIOD_LIST", json_get_protect_period_list)                      \
    COMMAND("SET_GREENNET_PROTECT_PERIOD_LIST", json_set_protect_period_list)                      \
    COMMAND("UPDATE_IMMEDIATE", json_update_immediately)                                           \
    COMMAND("IMAGE_UPDATE", json_image_update)                                                     \
    COMMAND("PLATEFORM_UPDATE_IMMEDIATE", json_update_all_from_platform)                           \
    COMMAND("HG_IMAGE_DOWNLOAD", json_hg_image_download)                                           \
    COMMAND("IMAGE_DOWNLOAD", json_image_download)                                                 \
    COMMAND("HG_GET_UPDATE_STATUS", json_hg_get_update_status)                                     \
    COMMAND("HG_IMAGE_UPDATE", json_hg_image_update)                                               \
    COMMAND("GET_WIFI_CHANNEL_LIST", json_get_all_wifi_channel_list)                               \
    COMMAND("GET_TSLINK_TOPOLOGY_INFO", json_get_tsnk_topo_info)                                   \
    COMMAND("GET_SCAN_CHANNEL_COUNT", json_get_scan_channel_count)                                 \
    COMMAND("LINK_CHECK", json_get_link_check)                                                     \
    COMMAND("GET_STA_RSSI", json_get_sta_rssi)                                                     \
    COMMAND("SET_LED_STATUS", json_set_led)                                                        \
    COMMAND("GET_LED_STATUS", json_get_led)                                                        \
    COMMAND("SET_TSLINK_CONFIG_STATUS", json_set_tslink_config)                                    \
    COMMAND("QUERY_TSLINK_CONFIG_STATUS", json_query_tslink_config)                                \
    COMMAND("HG_LOCAL_RECOVERY", json_set_recovery)                                                \
    COMMAND("GET_HG_LOG", json_send_log_to_platform)                                               \
    COMMAND("DEL_LAN_DEVICE", json_del_device)                                                     \
    COMMAND("SET_UPDATE_SCHEDULE", json_set_update_schedule)                                       \
    COMMAND("GET_UPDATE_SCHEDULE", json_get_update_schedule)                                       \
    COMMAND("RP_CHILD_HG_REBOOT", json_child_hg_reboot)                                            \
    COMMAND("CHILD_HG_LOCAL_RECOVERY", json_child_hg_local_recovery)                               \
    COMMAND("GET_UPDATE_STATUS", json_get_update_status)                                           \
    COMMAND("GET_CHILD_ROUTER_AD_BASE_INFO", json_get_child_router_adbaseinfo)                     \
    COMMAND("SET_CHILD_ROUTERAD_BASE_INFO", json_set_child_routerad_base_info)                     \
    COMMAND("SET_CHILD_ROUTER_HG_BASE_INFO", json_set_child_router_base_info)                      \
    COMMAND("SET_TSLINK_SSID", json_set_tslink_ssid)                                               \
    COMMAND("SET_KAA_HEARTBEAT", json_set_kaa_heartbeat)                                           \
    COMMAND("SET_MESH_STATUS", json_set_mesh_status)                                               \
    COMMAND("GET_MESH_STATUS", json_get_mesh_status)                                               \
    COMMAND("SET_MESH_PAIR", json_set_mesh_pair)                                                   \
    COMMAND("SET_WPS_STATE", json_set_wps_state)                                                   \
    COMMAND("SET_AP_MULTISERVICE_MODE", json_set_ap_multiservice_mode)                             \
    COMMAND("GET_AP_MULTISERVICE_MODE", json_get_ap_multiservice_mode)                             \
    COMMAND("HG_SPEEDTEST_REQUEST", json_hg_speedtest_request)                                     \
    COMMAND("SET_AP_ALG_ABILITY", json_set_ap_alg_ability)                                         \
    COMMAND("GET_AP_ALG_ABILITY", json_get_ap_alg_ability)                                         \
    COMMAND("SET_UPNP_STATE", json_set_upnp_state)                                                 \
    COMMAND("GET_UPNP_STATE", json_get_upnp_state)                                                 \
    COMMAND("GET_TSCONF_STATUS", json_get_tsconf_status)                                           \
    COMMAND("GET_WPS_ENABLE", json_get_wps_enable)                                                 \
    COMMAND("SET_WPS_ENABLE", json_set_wps_enable)                                                 \
    COMMAND("GET_PORT_STATISTICS", json_get_port_statistics)                                       \
    COMMAND("GET_PORT_BINDING", json_get_port_binding)                                             \
    COMMAND("SET_PORT_BINDING", json_set_port_binding)                                             \
    COMMAND("SET_QOS_ENABLE", json_set_qos_enable)                                                 \
    COMMAND("GET_QOS_INFO", json_get_qos_info)                                                     \
    COMMAND("SET_QOS_APP_INFO", json_set_qos_app_info)                                             \
    COMMAND("SET_QOS_CLASSIFICATION_INFO", json_set_qos_classification_info)                       \
    COMMAND("RESPONSE_ROUTER_VERSION", json_response_router_version)

// A handler reads its parameters from the command object and adds its reply to it. Its result is
// for callers within the process; the dispatcher ignores it.
#define SMART_ROUTER_DECLARE_HANDLER(name, handler) SMART_ROUTER_API int32_t handler(cJSON *obj);
extern "C" {
SMART_ROUTER_COMMANDS(SMART_ROUTER_DECLARE_HANDLER)
}
#undef SMART_ROUTER_DECLARE_HANDLER
