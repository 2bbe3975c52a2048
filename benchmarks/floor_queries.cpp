// SPDX-License-Identifier: MIT
// Queries.
#include "floor.h"

#include "smart_router_service/device_access.h"

#include <cstdlib>

using namespace baseline;

namespace {

const char *known(const char *value)
{
    return strcmp(value, "NULL") == 0 ? "" : value;
}

cJSON *host_object(const AdBaseInfo &info)
{
    cJSON *object = cJSON_CreateObject();
    add(object, "Mac", info.Mac);
    add(object, "UID", info.UID);
    add(object, "DevType", info.DevType);
    add(object, "DevFactory", info.DevFactory);
    add(object, "DevModle", info.DevType);
    add(object, "Name", info.Name);
    add(object, "ByName", info.ByName);
    add(object, "OS", info.OS);
    add(object, "Version", info.Version);
    add(object, "NetStatus", info.NetStatus);
    add(object, "NetMonopoly", info.NetMonopoly);
    add(object, "AccessType", info.AccessType);
    add(object, "AccessEnable", info.AccessEnable);
    add(object, "AccessTime", info.AccessTime);
    add(object, "UpSpeed", info.UpSpeed);
    add(object, "DownSpeed", info.DownSpeed);
    add(object, "ip", info.ip);
    add(object, "GreennetProtectEnable", info.GreennetProtectEnable);
    add(object, "StaticDhcpEnable", info.StaticDhcpEnable);
    return object;
}

} // namespace

void baseline::get_sn_info(cJSON *obj)
{
    SnInfo info;
    memset(&info, 0, sizeof info);
    if (devapi_get_sn_info(&info) != 0) {
        add_failure(obj, "get sn failed");
        return;
    }
    add(obj, "Status", "0");
    add(obj, "MAC", info.MAC);
    add(obj, "tslinkstatus", info.tslinkstatus);
    add(obj, "DeviceType", info.DeviceType);
}

void baseline::get_wifi_info(cJSON *obj)
{
    const char *index = text(obj, "SSIDIndex");
    if (index == nullptr) {
        add_failure(obj, "no index");
        return;
    }
    SsidInfo info;
    memset(&info, 0, sizeof info);
    info.SSIDIndex = atoi(index);
    if (info.SSIDIndex == 0) {
        add_failure(obj, "index is 0, (should be 1 to 8)");
        return;
    }
    const int32_t result = devapi_get_ssid_info(&info);
    cJSON_DeleteItemFromObject(obj, "SSIDIndex");
    if (result != 0) {
        add_failure(obj, "get ssid info failed");
        return;
    }
    add(obj, "Status", "0");
    add(obj, "SSID", info.SSID);
    add(obj, "PWD", info.PWD);
    add(obj, "ENCRYPT", info.ENCRYPT);
    add(obj, "PowerLevel", info.PowerLevel);
    add(obj, "Channel", info.Channel);
    add(obj, "UsedChannel", info.UsedChannel);
    add(obj, "Enable", info.Enable);
    add(obj, "Bandwidth", info.Bandwidth);
    add(obj, "AdvertisementEnable", info.AdvertisementEnable);
    add(obj, "Mode", info.Mode);
    add(obj, "Beamforming", info.Beamforming);
}

void baseline::query_wan_info(cJSON *obj)
{
    const char *name = text(obj, "WANName");
    if (name == nullptr) {
        add_failure(obj, "json object WANName not found!");
        return;
    }
    WanInfo info;
    memset(&info, 0, sizeof info);
    copy(info.WANName, name);
    if (devapi_query_wan_info(&info) != 0) {
        add_failure(obj, "QUERY_WAN_INFO_FAIL");
        return;
    }
    cJSON_DeleteItemFromObject(obj, "WANName");
    add(obj, "Status", "0");
    add(obj, "INDEX", info.INDEX);
    add(obj, "IFNAME", info.IFNAME);
    add(obj, "CONNECTIONTYPE", info.CONNECTIONTYPE);
    add(obj, "CONNECTIONSTATUS", info.CONNECTIONSTATUS);
    add(obj, "PROTOCOL", info.PROTOCOL);
    add(obj, "UPLINKMODE", info.UPLINKMODE);
    add(obj, "SERVICELIST", info.SERVICELIST);
    add(obj, "ADDRESSTYPE", info.ADDRESSTYPE);
    add(obj, "IPADDRESS", info.IPADDRESS);
    add(obj, "SUBNETMASK", info.SUBNETMASK);
    add(obj, "GATEWAY", known(info.GATEWAY));
    add(obj, "DNS1", info.DNS1);
    add(obj, "DNS2", info.DNS2);
    add(obj, "IPV6_CONNECTIONSTATUS", info.IPV6_CONNECTIONSTATUS);
    add(obj, "IPV6_IPADDRESS", known(info.IPV6_IPADDRESS));
    add(obj, "IPV6_PRIFIX", known(info.IPV6_PRIFIX));
    add(obj, "IPV6_PREFIXLENGTH", info.IPV6_PREFIXLENGTH);
    add(obj, "IPV6_GATEWAY", known(info.IPV6_GATEWAY));
    add(obj, "IPV6_DNS1", info.IPV6_DNS1);
    add(obj, "IPV6_DNS2", info.IPV6_DNS2);
    add(obj, "PPPOE_USR_NAME", info.PPPOE_USR_NAME);
    add(obj, "PPPOE_PASSWORD", info.PPPOE_PASSWORD);
    add(obj, "PPPOE_PROXY", info.PPPOE_PROXY);
    add(obj, "PPPOE_SERVICENAME", info.PPPOE_SERVICENAME);
    add(obj, "PPPOE_DIAL_MODE", known(info.PPPOE_DIAL_MODE));
    add(obj, "NATENABLE", info.NATENABLE);
    add(obj, "QOSENABLE", info.QOSENABLE);
    add(obj, "VLANID", info.VLANID);
    add(obj, "VLANPRIORITY", info.VLANPRIORITY);
}

void baseline::get_attach_dev_base_info(cJSON *obj)
{
    int32_t count = 0;
    if (devapi_get_host_num(&count) == -1) {
        add_failure(obj, "get ad base info error");
        return;
    }
    cJSON *list = cJSON_CreateArray();
    for (int32_t at = 0; at < count; ++at) {
        AdBaseInfo info;
        memset(&info, 0, sizeof info);
        info.HostIndex = at + 1;
        if (devapi_get_ad_base_info(&info) == -1) {
            cJSON_Delete(list);
            add_failure(obj, "get ad base info error");
            return;
        }
        cJSON_AddItemToArray(list, host_object(info));
    }
    cJSON_AddItemToObject(obj, "BaseInfo", list);
    add(obj, "Status", "0");
}
