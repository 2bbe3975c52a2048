// Placeholders until the functions are there.
#include "smart_router_service/device_access.h"

#pragma GCC diagnostic ignored "-Wunused-parameter"

__attribute__((weak)) int32_t devapi_get_update_status_info(UpdateStatusInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_download_image(const char *url, int32_t mode)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_update_image()
{
    return -1;
}
__attribute__((weak)) int32_t devapi_flash_update_image(const char *url)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_iotagtd_device_mac(char *mac, int32_t size)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_wan_num(WanNum *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_query_wan_info(WanInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_route_wan_info(const WanInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_host_num(int32_t *count)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_ad_base_info(AdBaseInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_ad_base_info(AdBaseSetting *setting)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_attach_device_right(AttachDeviceRight *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_attach_device_right(const AttachDeviceRight *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_firewall_switch(const FirewallSwitch *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_greennet_enable(char *enable)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_greennet_enable(const char *enable)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_greennet_num(int32_t *count)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_green_net_info(GreenHostInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_green_net_info(const GreenHostInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_green_net_notify(const GreenHostInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_greennet_index_by_mac(const char *mac, int32_t *index)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_add_greennet_mac(const char *mac, int32_t *index)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_del_green_net_info_by_maclist(const char *list)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_greenaccess_enable(int32_t enable)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_duration_num_by_index(int32_t index, int32_t *count)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_protect_period_info(ProtectPeriodInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_del_all_duration(int32_t index)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_add_greennet_duration(int32_t index, int32_t *number)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_protect_period_info(const ProtectPeriodInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_protect_enable(int32_t enable, int32_t index)
{
    return -1;
}
#include "simulated_gateway/simulated_gateway.h"
__attribute__((weak)) void simulated_gateway_on_progress(SimulatedGatewayProgress, void *) {}
__attribute__((weak)) int32_t devapi_get_update_schedule(UpdateSchedule *schedule)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_update_schedule(const UpdateSchedule *schedule)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_hg_log(const char *url, const char *log_type,
                                                const char *mac)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_childrouter_list(ChildRouterList *list)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_router_mesh_info(MeshLink *link, int32_t identifier)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_childrouter_info(ChildRouterInfo *info, int32_t identifier)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_child_mesh_info(ChildMeshInfo *info, int32_t identifier)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_child_mesh_info_bynewmethod(const char *mac,
                                                                     ChildMeshList *list)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_childsta_list(ChildStationList *list, const char *mac)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_childsta_base_info(AdBaseInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_dev_tol_num(int32_t *count, int32_t argument)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_devicemodel(char *model, int32_t size)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_basic_area_code(char *code, int32_t size)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_mesh_type()
{
    return -1;
}
__attribute__((weak)) int32_t devapi_call_tslink_set_topo_speed()
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_local_timezone(int32_t *hours)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_systerm_timetype()
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_dev_status_info(DevStatusInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_topo_relation_ship(char *text, int32_t size)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_topo_relation_num(int32_t *count)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_handle_topo_struct(const char *relations, TopoNode *first)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_topo_xml_info_list(int32_t count, TopoNode *first)
{
    return -1;
}
__attribute__((weak)) void devapi_free_topo_list(TopoNode *first) {}
__attribute__((weak)) int32_t devapi_get_node_dev_info(const TopoNode *node, NodeDevInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_node_baseinfo(const TopoNode *node, NodeBaseInfo *first)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_viewmac_by_mac(const char *mac, char *view)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_hostindex_by_mac(const char *mac, int32_t *index)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_topo_xml_getinfo(const char *path, char *value)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_node_dev_info_by_newmetod(const char *path,
                                                                   ChildRouterInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_node_sta_info_by_newmetod(StationList *list,
                                                                   const char *path)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_cmdstring_sendto_tslink(const char *text, int32_t length)
{
    return -1;
}
__attribute__((weak)) int32_t
devapi_cmdstring_sendto_tslink_with_retinfo(const char *text, const char *method, char **answer)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_setup_mesh(int32_t enable)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_kaa_heartbeat(const char *heartbeat)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_mesh_status(MeshStatus *status)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_mesh_status(const MeshStatus *status)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_pair_status(const PairStatus *status)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_wps_state(const WpsState *state)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_led_info(LedInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_sta_led(const char *on, const char *colour,
                                                 const char *light)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_tslink_config(int32_t *state)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_sta_tslink_config(const char *state)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_del_device(const char *mac)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_channel_ap_num(const WifiChannelList *channels,
                                                        ChannelApNum *counts)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_link_info(LinkInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_ping_check(const char *target)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_sta_rssi_by_ip(const char *ip, int32_t *dbm)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_uplink_qos_info(QosInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_qos_enable(int32_t enable)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_qos_app_info(int32_t identifier, const char *priority)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_qos_classification_info(QosRule *rule)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_ap_multiservice_mode(MultiserviceMode *mode)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_ap_multiservice_mode(const MultiserviceMode *mode)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_speedtest_request(SpeedTest *test)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_ap_alg_ability(AlgAbility *ability)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_ap_alg_ability(const AlgAbility *ability)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_upnp_state(UpnpState *state)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_upnp_state(const UpnpState *state)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_tsconf_status(char *status, int32_t size)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_wps_enable(int32_t *enable)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_wps_enable(int32_t enable)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_port_statistics_info(PortStatisticsInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_get_port_binding_info(PortBindingInfo *info)
{
    return -1;
}
__attribute__((weak)) int32_t devapi_set_port_binding(const char *index, const char *ports)
{
    return -1;
}
