// The widths of the texts that device functions write without being handed a size, for those who
// look over a device library's shoulder or stand in for one.
#pragma once

#include "smart_router_service/device_access.h"

#include <cstring>

namespace agent {

// Result: 0 for a function that is not known to write such a text.
inline size_t width_of_text(const char *function)
{
    constexpr struct {
        const char *function;
        size_t width;
    } kWidths[] = {{"devapi_get_net_fault_info", 16},
                   {"devapi_get_wifi_fastroaming_enable", 8},
                   {"devapi_get_greennet_enable", GREENNET_SWITCH_SIZE},
                   {"devapi_get_viewmac_by_mac", VIEW_MAC_SIZE},
                   {"devapi_topo_xml_getinfo", TOPO_VALUE_SIZE}};
    for (const auto &row : kWidths) {
        if (strcmp(row.function, function) == 0) {
            return row.width;
        }
    }
    return 0;
}

} // namespace agent
