// SPDX-License-Identifier: MIT
#include "cases.h"

#include "commands.h"
#include "device.h"
#include "floor.h"

#include <cstdlib>
#include <ctime>
#include <pthread.h>

namespace {

std::string no_parameters(size_t)
{
    return "{}";
}

std::string ssid_index(size_t)
{
    return R"({"SSIDIndex":"1"})";
}

std::string wan_name(size_t)
{
    return R"({"WANName":"INTERNET"})";
}

std::string ssid_setting(size_t)
{
    return R"({"SSIDIndex":"1","SSID":"Three storeys","PWD":"correct horse battery",)"
           R"("ENCRYPT":"WPA2","PowerLevel":"80","Channel":"6","Enable":"1",)"
           R"("AdvertisementEnable":"1","Mode":"bgn","Beamforming":"1"})";
}

std::string wan_setting(size_t)
{
    return R"({"WANName":"INTERNET","SERVICELIST":"INTERNET","ADDRESSTYPE":"Static",)"
           R"("IPADDRESS":"203.0.113.77","SUBNETMASK":"255.255.255.0","GATEWAY":"203.0.113.1",)"
           R"("DNS1":"198.51.100.53","DNS2":"198.51.100.54","IPV6_IPADDRESS":"2001:db8:40::1",)"
           R"("IPV6_PREFIXLENGTH":"56","IPV6_GATEWAY":"fe80::1","IPV6_DNS1":"2001:db8::53",)"
           R"("IPV6_DNS2":"2001:db8::54","IPV6_PRIFIX":"2001:db8:40::",)"
           R"("PPPOE_USR_NAME":"subscriber@example.net","PPPOE_PASSWORD":"a secret of the line",)"
           R"("NATENABLE":"1","QOSENABLE":"0","VLANID":"41","VLANPRIORITY":"0"})";
}

std::string list_of(const char *before, const char *element, size_t count, const char *after)
{
    std::string list = before;
    for (size_t at = 0; at < count; ++at) {
        list += at > 0 ? "," : "";
        list += element;
    }
    return list + after;
}

std::string device_list(size_t count)
{
    return list_of(R"({"DeviceList":[)",
                   R"({"Mac":"00:11:22:33:44:55","Name":"tablet","NotifyEnable":"1"})", count,
                   "]}");
}

std::string ssid_list(size_t count)
{
    return list_of(R"({"WIFILIST":[)",
                   R"({"SSIDIndex":"1","SSID":"home","PWD":"correct horse","ENCRYPT":"WPA2",)"
                   R"("PowerLevel":"80","Channel":"6","Enable":"1","Bandwidth":"20",)"
                   R"("AdvertisementEnable":"1","Mode":"bgn","Beamforming":"1"})",
                   count, R"(],"StaCtrl":"1"})");
}

} // namespace

extern "C" {

// Replaces the worker: ends the batch as the worker would, after passing the settings to the
// device.
int __wrap_pthread_create(pthread_t *, const pthread_attr_t *, void *(*)(void *), void *records)
{
    benchmark_device::receive(records,
                              static_cast<size_t>(g_set_wifi_array_size) * sizeof(SsidInfo));
    free(records);
    pthread_mutex_unlock(&setwifilistlock);
    return 0;
}

// A constant time, so that both sides give the same reply.
time_t __wrap_time(time_t *)
{
    return 1767225600;
}
}

std::string Case::name() const
{
    std::string text = command;
    if (elements > 0) {
        text += ", " + std::to_string(elements) + " elements";
    } else if (handler == json_get_attach_dev_base_info) {
        text += ", " + std::to_string(hosts) + " hosts";
    } else if (handler == json_get_tsnk_topo_info) {
        text += ", 8 x 64 stations";
    }
    return text;
}

std::vector<Case> cases(const std::vector<size_t> &sizes)
{
    using namespace baseline;
    std::vector<Case> all = {
        {"GET_SN_INFO", 32, 0, no_parameters, json_get_sn_info, get_sn_info},
        {"GET_WIFI_INFO", 32, 0, ssid_index, json_get_wifi_info, get_wifi_info},
        {"SET_WIFI_INFO", 32, 0, ssid_setting, json_set_wifi_info, set_wifi_info},
        {"QUERY_WAN_INFO", 32, 0, wan_name, json_query_wan_info, query_wan_info},
        {"SET_ROUTE_WAN_INFO", 32, 0, wan_setting, json_set_wan_info, set_wan_info},
        {"GET_AD_BASE_INFO", 32, 0, no_parameters, json_get_attach_dev_base_info,
         get_attach_dev_base_info},
        {"GET_AD_BASE_INFO", 256, 0, no_parameters, json_get_attach_dev_base_info,
         get_attach_dev_base_info},
        {"GET_TSLINK_TOPOLOGY_INFO", 32, 0, no_parameters, json_get_tsnk_topo_info,
         get_tsnk_topo_info},
    };
    for (const size_t count : sizes) {
        all.push_back({"SET_GREENNET_DEVICE_LIST", 32, count, device_list, json_set_green_net_list,
                       set_green_net_list});
    }
    for (const size_t count : sizes) {
        all.push_back({"SET_WIFI_INFO_LIST", 32, count, ssid_list, json_set_wifi_info_list,
                       set_wifi_info_list});
    }
    return all;
}

void prepare(const Case &measured)
{
    benchmark_device::set_host_count(measured.hosts);
}

void handle(const Case &measured, Side side, cJSON *obj)
{
    if (side == Side::kPlugin) {
        measured.handler(obj);
    } else {
        measured.floor(obj);
    }
}

char *answer(const Case &measured, Side side, const std::string &request)
{
    cJSON *obj = cJSON_Parse(request.c_str());
    if (side == Side::kPlugin) {
        hg_process_json_cmd(measured.command, obj);
    } else {
        measured.floor(obj);
    }
    char *reply = cJSON_PrintUnformatted(obj);
    cJSON_Delete(obj);
    return reply;
}

bool sides_agree(const Case &measured)
{
    const std::string request = measured.request(measured.elements);
    std::string replies[2];
    uint64_t digests[2];
    prepare(measured);
    for (const Side side : kSides) {
        benchmark_device::watch();
        char *reply = answer(measured, side, request);
        replies[static_cast<size_t>(side)] = reply;
        digests[static_cast<size_t>(side)] = benchmark_device::stop_watching();
        cJSON_free(reply);
    }
    return replies[0] == replies[1] && digests[0] == digests[1] &&
           replies[0].find(R"("Status":"0")") != std::string::npos;
}
