// SPDX-License-Identifier: MIT
#include "rich_values.h"

#include "protocol/device_facts.h"
#include "smart_router_service/host_agent.h"

#include <cstdio>
#include <cstdlib>
#include <map>

namespace rich_device {

std::string text_for(std::string_view name, const Home &home)
{
    static const std::map<std::string_view, std::string> kTexts = {
        {"AccessCode", "1"},
        {"AccessTime", "1699990000"},
        {"ConnectionState", "Connected"},
        {"DevType", "Computer"},
        {"Enable", "1"},
        {"LinkStatus", "1"},
        {"Mac", kBridgeMac},
        {"NetStatus", "1"},
        {"ParentMac", kBridgeMac},
        {"SSIDIndex", "1"},
        {"Type", "1"},
        {"WiFiStatus1", "up"},
        {"devapi_get_iotagtd_device_mac", kBridgeMac},
        {"devapi_get_viewmac_by_mac", kBridgeMac},
        {"devapi_get_wifi_fastroaming_enable", "1"},
        {"ts_sys_mgr_get_brmac", kBridgeMac},
    };
    if (name == "AreaCode" || name == "devapi_get_basic_area_code") {
        return home.area;
    }
    if (name == "devapi_get_devicemodel") {
        return home.model;
    }
    const auto found = kTexts.find(name);
    return found != kTexts.end() ? found->second : std::string(name);
}

std::string parameter(std::string_view path)
{
    const auto ends_with = [&](std::string_view end) {
        return path.ends_with(end);
    };
    if (ends_with("NumberOfEntries")) {
        return "3";
    }
    if (ends_with("X_TS_ParentMACAddress")) {
        return ends_with(".1.X_TS_ParentMACAddress") ? "" : kBridgeMac;
    }
    return ends_with("X_TS_Active") ? "1" : "3C:6A:D2:22:81:40";
}

size_t width_for(std::string_view function)
{
    const device_facts::Function *const device = device_facts::find(function);
    if (device != nullptr && device->text_width != 0) {
        return device->text_width;
    }
    static const std::map<std::string_view, size_t> kWidths = {
        {"getmd5", HG_MD5_TEXT_SIZE},
        {"mac_form_translate", HG_MAC_TEXT_SIZE},
        {"ts_sys_mgr_get_brmac", HG_BRIDGE_MAC_SIZE},
    };
    const auto found = kWidths.find(function);
    if (found == kWidths.end()) {
        // Nothing may be thrown through the plug-in.
        fprintf(stderr, "%s writes a text of unknown width\n", std::string(function).c_str());
        abort();
    }
    return found->second;
}

int32_t number_for(std::string_view function)
{
    return function == "devapi_get_Multi_Ap_enable" || function == "devapi_get_wifi_stactrl" ? 1
                                                                                             : 2;
}

int32_t result_for(std::string_view function)
{
    if (function == "devapi_get_mesh_type") {
        return 2;
    }
    return function == "devapi_get_hostindex_by_mac" ||
                   function == "devapi_get_greennet_index_by_mac" ||
                   function == "devapi_get_systerm_timetype"
               ? 1
               : 0;
}

} // namespace rich_device
