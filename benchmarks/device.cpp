// SPDX-License-Identifier: MIT
#include "device.h"

#include "smart_router_service/device_access.h"

#include <cstring>

namespace {

int32_t host_count = 32;
bool is_watched = false;
uint64_t digest;

template <class Record> Record with(void (*fill)(Record *))
{
    Record record = {};
    fill(&record);
    return record;
}

template <size_t width> void put(char (&field)[width], const char *text)
{
    strncpy(field, text, width - 1);
}

const SnInfo kSn = with<SnInfo>([](SnInfo *sn) {
    put(sn->MAC, "3C:6A:D2:10:4F:20");
    put(sn->tslinkstatus, "1");
    put(sn->DeviceType, "HGU-AX3000");
});

const SsidInfo kSsid = with<SsidInfo>([](SsidInfo *ssid) {
    put(ssid->SSID, "Three storeys");
    put(ssid->PWD, "correct horse battery");
    put(ssid->ENCRYPT, "WPA2");
    put(ssid->PowerLevel, "80");
    put(ssid->Channel, "0");
    put(ssid->UsedChannel, "11");
    put(ssid->Enable, "1");
    put(ssid->Bandwidth, "20");
    put(ssid->AdvertisementEnable, "1");
    put(ssid->Mode, "bgn");
    put(ssid->Beamforming, "1");
});

const WanInfo kWan = with<WanInfo>([](WanInfo *wan) {
    put(wan->INDEX, "1");
    put(wan->IFNAME, "ppp0");
    put(wan->CONNECTIONSTATUS, "Connected");
    put(wan->CONNECTIONTYPE, "IP_Routed");
    put(wan->PROTOCOL, "IPv4_v6");
    put(wan->UPLINKMODE, "PPPoE");
    put(wan->SERVICELIST, "INTERNET");
    put(wan->ADDRESSTYPE, "PPPoE");
    put(wan->IPADDRESS, "203.0.113.77");
    put(wan->SUBNETMASK, "255.255.255.255");
    put(wan->GATEWAY, "203.0.113.1");
    put(wan->DNS1, "198.51.100.53");
    put(wan->DNS2, "198.51.100.54");
    put(wan->IPV6_CONNECTIONSTATUS, "Connected");
    put(wan->IPV6_PRIFIX, "2001:db8:40::");
    put(wan->IPV6_PREFIXLENGTH, "56");
    put(wan->IPV6_IPADDRESS, "2001:db8:40::1");
    put(wan->IPV6_GATEWAY, "fe80::1");
    put(wan->IPV6_DNS1, "2001:db8::53");
    put(wan->IPV6_DNS2, "2001:db8::54");
    put(wan->PPPOE_USR_NAME, "subscriber@example.net");
    put(wan->PPPOE_PASSWORD, "a secret of the line");
    put(wan->PPPOE_PROXY, "0");
    put(wan->PPPOE_SERVICENAME, "NULL");
    put(wan->PPPOE_DIAL_MODE, "AlwaysOn");
    put(wan->NATENABLE, "1");
    put(wan->QOSENABLE, "0");
    put(wan->VLANID, "41");
    put(wan->VLANPRIORITY, "0");
});

const AdBaseInfo kHost = with<AdBaseInfo>([](AdBaseInfo *host) {
    put(host->Mac, "9C:B6:D0:11:22:33");
    put(host->UID, "NULL");
    put(host->DevType, "Computer");
    put(host->DevFactory, "Intel");
    put(host->Name, "study-laptop");
    put(host->ByName, "Anna's laptop");
    put(host->OS, "NULL");
    put(host->Version, "NULL");
    put(host->NetStatus, "1");
    put(host->NetMonopoly, "0");
    put(host->AccessType, "5G");
    put(host->AccessEnable, "1");
    put(host->AccessTime, "1767218000");
    put(host->UpSpeed, "1204");
    put(host->DownSpeed, "48210");
    put(host->ip, "192.168.1.23");
    put(host->AccessCode, "1");
    put(host->SSIDIndex, "5");
    put(host->LinkStatus, "1");
    put(host->SpeedLimit, "0");
    put(host->DownLimit, "0");
    put(host->UpLimit, "0");
    put(host->GreennetProtectEnable, "0");
    put(host->Dbm, "-52");
    put(host->StaticDhcpEnable, "0");
});

const HgBaseInfo kGateway = with<HgBaseInfo>([](HgBaseInfo *gateway) {
    put(gateway->Name, "Gateway");
    put(gateway->Mac, "3C:6A:D2:10:4F:20");
    put(gateway->NetStatus, "1");
    put(gateway->UpSpeed, "2210");
    put(gateway->DownSpeed, "80312");
    put(gateway->WiFiStatus1, "up");
    put(gateway->WiFiStatus2, "up");
    put(gateway->SSID1, "Three storeys");
    put(gateway->SSID2, "Three storeys 5G");
    put(gateway->Wlan1Mac, "3C:6A:D2:10:4F:22");
    put(gateway->Wlan0Mac, "3C:6A:D2:10:4F:21");
    put(gateway->ip, "192.168.1.1");
    put(gateway->HWVersion, "V2.0");
    put(gateway->FWVersion, "V1.4.12");
    put(gateway->FWDATA, "2025-11-03");
    put(gateway->UpTime, "86400");
    put(gateway->WanUptime, "86213");
    put(gateway->DeviceType, "HGU-AX3000");
    put(gateway->AreaCode, "GENERIC");
    put(gateway->AddressType, "PPPoE");
    put(gateway->Cpu, "7");
    put(gateway->QQGameAcceleratorEnable, "0");
    put(gateway->QosAcceleratorEnable, "0");
    put(gateway->FireWallEnable, "1");
    put(gateway->LedLight, "100");
    put(gateway->LedSwitch, "1");
    put(gateway->Memory, "41");
    put(gateway->WanLinkMode, "1");
    put(gateway->ConfiguerStatus, "1");
});

const ChildRouterInfo kRouter = with<ChildRouterInfo>([](ChildRouterInfo *router) {
    put(router->RouterDeviceID, "00E04C3C6AD2104F31");
    put(router->Name, "Upper floor");
    put(router->Mac, "3C6AD2104F31");
    put(router->NetStatus, "1");
    put(router->ChildRouterAccessType, "5G");
    put(router->UpSpeed, "866");
    put(router->DownSpeed, "866");
    put(router->ip, "192.168.1.2");
    put(router->FWVersion, "V1.4.12");
    put(router->FWDATA, "2025-11-03");
    put(router->UpTime, "86001");
    put(router->DeviceType, "HGU-AX1800");
    put(router->AreaCode, "GENERIC");
    put(router->HWVersion, "V1.1");
    put(router->Wlan1Mac, "3C:6A:D2:10:4F:33");
    put(router->Wlan0Mac, "3C:6A:D2:10:4F:32");
    put(router->ParentMac, "3C6AD2104F20");
    put(router->dbm, "-61");
});

const ChildMeshInfo kMeshPlace = with<ChildMeshInfo>([](ChildMeshInfo *place) {
    put(place->Mac, "3C6AD2104F33");
    put(place->ChildMac, "3C6AD2104F31");
    put(place->ParentMac, "3C6AD2104F20");
});

constexpr int32_t kLocalTime = 1; // of the table of attached devices

} // namespace

// ---- Control by the benchmarks -----------------------------------------------------------------

void benchmark_device::set_host_count(int32_t count)
{
    host_count = count;
}

void benchmark_device::watch()
{
    is_watched = true;
    digest = 14695981039346656037U; // FNV-1a
}

uint64_t benchmark_device::stop_watching()
{
    is_watched = false;
    return digest;
}

void benchmark_device::receive(const void *bytes, size_t size)
{
    if (!is_watched) {
        return;
    }
    for (const auto *byte = static_cast<const unsigned char *>(bytes); size > 0; --size) {
        digest = (digest ^ *byte++) * 1099511628211U;
    }
}

// ---- The device functions ----------------------------------------------------------------------

int32_t devapi_get_sn_info(SnInfo *info)
{
    *info = kSn;
    return 0;
}

int32_t devapi_get_ssid_info(SsidInfo *info)
{
    *info = kSsid;
    return 0;
}

int32_t devapi_set_ssid_info(const SsidInfo *info)
{
    benchmark_device::receive(info, sizeof *info);
    return 0;
}

int32_t devapi_set_5gwifi_powerlevel(const char *level)
{
    benchmark_device::receive(level, strlen(level));
    return 0;
}

int32_t devapi_get_5g_wifi_index(int32_t *index)
{
    *index = 5;
    return 0;
}

int32_t devapi_get_Multi_Ap_enable(int32_t *enable)
{
    *enable = 1;
    return 0;
}

int32_t devapi_query_wan_info(WanInfo *info)
{
    *info = kWan;
    return 0;
}

int32_t devapi_set_route_wan_info(const WanInfo *info)
{
    benchmark_device::receive(info, sizeof *info);
    return 0;
}

int32_t devapi_get_host_num(int32_t *count)
{
    *count = host_count;
    return 0;
}

int32_t devapi_get_dev_tol_num(int32_t *count, intptr_t)
{
    *count = host_count;
    return 0;
}

int32_t devapi_get_ad_base_info(AdBaseInfo *info)
{
    *info = kHost;
    return 0;
}

int32_t devapi_set_greenaccess_enable(int32_t enable)
{
    benchmark_device::receive(&enable, sizeof enable);
    return 0;
}

int32_t devapi_get_greennet_index_by_mac(const char *, int32_t *index)
{
    *index = 1;
    return 1;
}

int32_t devapi_set_green_net_info(const GreenHostInfo *info)
{
    benchmark_device::receive(info, sizeof *info);
    return 0;
}

int32_t devapi_del_green_net_info_by_maclist(const char *list)
{
    benchmark_device::receive(list, strlen(list));
    return 0;
}

int32_t devapi_get_hg_base_info(HgBaseInfo *info)
{
    *info = kGateway;
    return 0;
}

int32_t devapi_get_devicemodel(char *model, int32_t)
{
    memcpy(model, "AX3000", sizeof "AX3000");
    return 0;
}

int32_t devapi_get_mesh_type(void)
{
    return 2;
}

int32_t devapi_get_childrouter_list(ChildRouterList *list)
{
    list->count = MESH_MAX_CHILD_ROUTERS;
    return 0;
}

int32_t devapi_get_child_mesh_info(ChildMeshInfo *info, int32_t)
{
    *info = kMeshPlace;
    return 0;
}

int32_t devapi_call_tslink_set_topo_speed(void)
{
    return 0;
}

int32_t devapi_get_childrouter_info(ChildRouterInfo *info, int32_t)
{
    *info = kRouter;
    return 0;
}

int32_t devapi_get_childsta_list(ChildStationList *list, const char *)
{
    list->count = MESH_MAX_STATIONS;
    return 0;
}

int32_t devapi_get_childsta_base_info(AdBaseInfo *info)
{
    *info = kHost;
    return 0;
}

int32_t devapi_get_local_timezone(int32_t *hours)
{
    *hours = 1;
    return 0;
}

int32_t devapi_get_systerm_timetype(void)
{
    return kLocalTime;
}
