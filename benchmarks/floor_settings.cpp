// SPDX-License-Identifier: MIT
// Settings, and lists of settings.
#include "floor.h"

#include "wifi.h"

#include <cstdio>
#include <cstdlib>

using namespace baseline;

namespace {

void log_value(const char *name, const char *value)
{
    ts_mod_log_printf("libtsiotAgtd", 7, "%s= %s \n", name, value);
}

// Copies an optional key into its field and logs it.
template <size_t width>
void copy_logged(const cJSON *obj, const char *key, const char *name, char (&field)[width])
{
    const char *value = text(obj, key);
    if (value != nullptr) {
        log_value(name, value);
        copy(field, value);
    } else {
        ts_mod_log_printf("libtsiotAgtd", 7, "can not find %s object!\n", key);
    }
}

template <size_t width> void copy_optional(const cJSON *obj, const char *key, char (&field)[width])
{
    const char *value = text(obj, key);
    copy(field, value != nullptr ? value : "-1");
}

// Reads the keys that every SSID setting has. Result: false when a key is missing.
bool read_ssid(const cJSON *obj, SsidInfo *info)
{
    const char *index = text(obj, "SSIDIndex");
    const char *ssid = text(obj, "SSID");
    const char *password = text(obj, "PWD");
    const char *encryption = text(obj, "ENCRYPT");
    const char *power = text(obj, "PowerLevel");
    const char *channel = text(obj, "Channel");
    const char *enable = text(obj, "Enable");
    if (index == nullptr || ssid == nullptr || password == nullptr || encryption == nullptr ||
        power == nullptr || channel == nullptr || enable == nullptr) {
        return false;
    }
    info->SSIDIndex = atoi(index);
    copy(info->SSID, ssid);
    copy(info->PWD, password);
    copy(info->ENCRYPT, encryption);
    copy(info->PowerLevel, power);
    copy(info->Channel, channel);
    copy(info->Enable, enable);
    copy_optional(obj, "AdvertisementEnable", info->AdvertisementEnable);
    copy_optional(obj, "Mode", info->Mode);
    copy_optional(obj, "Beamforming", info->Beamforming);
    return true;
}

} // namespace

void baseline::set_wifi_info(cJSON *obj)
{
    SsidInfo info;
    memset(&info, 0, sizeof info);
    if (!read_ssid(obj, &info)) {
        add_failure(obj, "json node null");
        return;
    }
    cJSON_DeleteItemFromObject(obj, "AdvertisementEnable");
    cJSON_DeleteItemFromObject(obj, "Mode");
    cJSON_DeleteItemFromObject(obj, "Beamforming");
    const int32_t result = devapi_set_ssid_info(&info);
    if (info.SSIDIndex == 1) {
        devapi_set_5gwifi_powerlevel(text(obj, "PowerLevel"));
    }
    cJSON_DeleteItemFromObject(obj, "SSIDIndex");
    cJSON_DeleteItemFromObject(obj, "SSID");
    cJSON_DeleteItemFromObject(obj, "PWD");
    cJSON_DeleteItemFromObject(obj, "ENCRYPT");
    cJSON_DeleteItemFromObject(obj, "PowerLevel");
    cJSON_DeleteItemFromObject(obj, "Channel");
    cJSON_DeleteItemFromObject(obj, "Enable");
    if (result == 0) {
        add(obj, "Status", "0");
    } else {
        add_failure(obj, "SET_WIFI_INFO_FAIL");
    }
}

void baseline::set_wan_info(cJSON *obj)
{
    WanInfo info;
    memset(&info, 0, sizeof info);
    copy_logged(obj, "WANName", "wan_name ", info.WANName);
    copy_logged(obj, "SERVICELIST", "service_list ", info.SERVICELIST);
    copy_logged(obj, "ADDRESSTYPE", "addr_type ", info.ADDRESSTYPE);
    copy_logged(obj, "IPADDRESS", "IPADDRESS ", info.IPADDRESS);
    copy_logged(obj, "SUBNETMASK", "SUBNETMASK ", info.SUBNETMASK);
    copy_logged(obj, "GATEWAY", "GATEWAY ", info.GATEWAY);
    copy_logged(obj, "DNS1", "DNS1 ", info.DNS1);
    copy_logged(obj, "DNS2", "DNS2 ", info.DNS2);
    copy_logged(obj, "IPV6_IPADDRESS", "IPV6_IPADDRESS ", info.IPV6_IPADDRESS);
    copy_logged(obj, "IPV6_PREFIXLENGTH", "IPV6_PREFIXLENGTH ", info.IPV6_PREFIXLENGTH);
    copy_logged(obj, "IPV6_GATEWAY", "IPV6_GATEWAY ", info.IPV6_GATEWAY);
    copy_logged(obj, "IPV6_DNS1", "IPV6_DNS1 ", info.IPV6_DNS1);
    copy_logged(obj, "IPV6_DNS2", "IPV6_DNS2", info.IPV6_DNS2);
    copy_logged(obj, "IPV6_PRIFIX", "IPV6_PRIFIX", info.IPV6_PRIFIX);
    copy_logged(obj, "PPPOE_USR_NAME", "PPPOE_USR_NAME", info.PPPOE_USR_NAME);
    copy_logged(obj, "PPPOE_PASSWORD", "PPPOE_PASSWORD", info.PPPOE_PASSWORD);
    copy_logged(obj, "NATENABLE", "NATENABLE", info.NATENABLE);
    copy_logged(obj, "QOSENABLE", "QOSENABLE", info.QOSENABLE);
    copy_logged(obj, "VLANID", "VLANID", info.VLANID);
    copy_logged(obj, "VLANPRIORITY", "VLANPRIORITY", info.VLANPRIORITY);
    const int32_t result = devapi_set_route_wan_info(&info);
    cJSON_DeleteItemFromObject(obj, "WANName");
    cJSON_DeleteItemFromObject(obj, "SERVICELIST");
    cJSON_DeleteItemFromObject(obj, "ADDRESSTYPE");
    cJSON_DeleteItemFromObject(obj, "IPADDRESS");
    cJSON_DeleteItemFromObject(obj, "SUBNETMASK");
    cJSON_DeleteItemFromObject(obj, "GATEWAY");
    cJSON_DeleteItemFromObject(obj, "DNS1");
    cJSON_DeleteItemFromObject(obj, "DNS2");
    cJSON_DeleteItemFromObject(obj, "IPV6_IPADDRESS");
    cJSON_DeleteItemFromObject(obj, "IPV6_PREFIXLENGTH");
    cJSON_DeleteItemFromObject(obj, "IPV6_GATEWAY");
    cJSON_DeleteItemFromObject(obj, "IPV6_DNS1");
    cJSON_DeleteItemFromObject(obj, "IPV6_DNS2");
    cJSON_DeleteItemFromObject(obj, "IPV6_PRIFIX");
    cJSON_DeleteItemFromObject(obj, "PPPOE_USR_NAME");
    cJSON_DeleteItemFromObject(obj, "PPPOE_PASSWORD");
    cJSON_DeleteItemFromObject(obj, "NATENABLE");
    cJSON_DeleteItemFromObject(obj, "QOSENABLE");
    cJSON_DeleteItemFromObject(obj, "VLANID");
    cJSON_DeleteItemFromObject(obj, "VLANPRIORITY");
    if (result == 0) {
        add(obj, "Status", "0");
    } else {
        add_failure(obj, "SET_ROUTE_WAN_INFO_FAIL");
    }
}

// ---- Lists -------------------------------------------------------------------------------------

namespace {

// Stores the devices, and writes their MAC addresses to a list that is large enough. Result: null,
// or the failure text.
const char *store_devices(const cJSON *elements, char *macs)
{
    GreenHostInfo info;
    memset(&info, 0, sizeof info);
    const cJSON *element;
    cJSON_ArrayForEach(element, elements)
    {
        const char *mac = text(element, "Mac");
        const char *name = text(element, "Name");
        const char *notify = text(element, "NotifyEnable");
        if (mac == nullptr || name == nullptr || notify == nullptr) {
            return "parse green host info failed";
        }
        copy(info.Mac, mac);
        copy(info.Name, name);
        copy(info.NotifyEnable, notify);
        int32_t index = 0;
        int32_t found = devapi_get_greennet_index_by_mac(info.Mac, &index);
        const bool is_new = found >= 0 && index == 0;
        if (is_new) {
            ts_mod_log_printf("libtsiotAgtd", 7, "dev mac : %s not exsit, need add!\n", mac);
            found = devapi_add_greennet_mac(info.Mac, &index);
        }
        if (found < 0) {
            return "parse green host info failed";
        }
        copy(info.NewEntry, is_new ? "1" : "0");
        snprintf(info.HostIndex, sizeof info.HostIndex, "%d", index);
        const size_t length = strnlen(info.Mac, 19); // each has 20 bytes, with the comma
        memcpy(macs, info.Mac, length);
        macs[length] = ',';
        macs += length + 1;
        if (devapi_set_green_net_info(&info) != 0) {
            return "set lan host info failed";
        }
    }
    *macs = '\0';
    return nullptr;
}

} // namespace

void baseline::set_green_net_list(cJSON *obj)
{
    const cJSON *elements = cJSON_GetObjectItem(obj, "DeviceList");
    if (!cJSON_IsArray(elements)) {
        add_failure(obj, "json node: list not found");
        return;
    }
    const int count = cJSON_GetArraySize(elements);
    const char *failure = nullptr;
    int32_t removed = 0;
    if (count == 0) {
        removed = devapi_del_green_net_info_by_maclist(nullptr);
    } else if (devapi_set_greenaccess_enable(1) != 0) {
        failure = "set greenaccess enable failed";
    } else {
        auto *macs = static_cast<char *>(malloc(static_cast<size_t>(count) * 20 + 1));
        failure = macs != nullptr ? store_devices(elements, macs) : "malloc mac_list failed";
        if (failure == nullptr) {
            removed = devapi_del_green_net_info_by_maclist(macs);
        }
        free(macs);
    }
    cJSON_DeleteItemFromObject(obj, "DeviceList");
    if (failure != nullptr || removed != 0) {
        add_failure(obj, failure != nullptr ? failure : "del green net info failed");
    }
    if (failure == nullptr) {
        add(obj, "Status", "0");
    }
}

void baseline::set_wifi_info_list(cJSON *obj)
{
    const cJSON *elements = cJSON_GetObjectItem(obj, "WIFILIST");
    const char *station_control = text(obj, "StaCtrl");
    if (!cJSON_IsArray(elements) || station_control == nullptr) {
        add_failure(obj, "json node: wifilist not found");
        return;
    }
    copy(g_stactrl_enable, station_control);
    const char *fast_roaming = text(obj, "FastRoaming");
    if (fast_roaming != nullptr && fast_roaming[0] != '\0') {
        copy(g_fastroaming_enable, fast_roaming);
    }
    const int count = cJSON_GetArraySize(elements);
    auto *records = static_cast<SsidInfo *>(calloc(static_cast<size_t>(count), sizeof(SsidInfo)));
    int32_t main_5g_index = 0;
    devapi_get_5g_wifi_index(&main_5g_index);
    bool is_sound = records != nullptr;
    bool turns_main_off = false;
    SsidInfo *record = records;
    const cJSON *element;
    cJSON_ArrayForEach(element, elements)
    {
        if (!is_sound || !read_ssid(element, record)) {
            is_sound = false;
            break;
        }
        copy_optional(element, "Bandwidth", record->Bandwidth);
        turns_main_off =
            turns_main_off || ((record->SSIDIndex == 1 || record->SSIDIndex == main_5g_index) &&
                               atoi(record->Enable) == 0);
        ++record;
    }
    if (is_sound) {
        pthread_mutex_lock(&setwifilistlock);
        g_set_wifi_array_size = count;
        pthread_t worker;
        is_sound = pthread_create(&worker, nullptr, set_wifi_list_arr_thread, records) == 0;
    }
    if (!is_sound) {
        free(records);
        cJSON_DeleteItemFromObject(obj, "WIFILIST");
        add_failure(obj, "set ssid failed");
        return;
    }
    int32_t mesh = 0;
    devapi_get_Multi_Ap_enable(&mesh);
    cJSON_DeleteItemFromObject(obj, "WIFILIST");
    cJSON_DeleteItemFromObject(obj, "StaCtrl");
    if (mesh == 1 && turns_main_off) {
        add_failure(obj, "\xC7\xEB\xCF\xC8\xB9\xD8\xB1\xD5mesh\xBF\xAA\xB9\xD8!");
    } else {
        cJSON_DeleteItemFromObject(obj, "FastRoaming");
        add(obj, "Status", "0");
    }
}
