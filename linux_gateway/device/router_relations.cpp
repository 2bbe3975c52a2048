// SPDX-License-Identifier: MIT
// The part of the relations of routers and hosts that exists without a mesh.
#include "core/device_call.h"

#include "smart_router_service/device_access.h"

#include <algorithm>

using namespace linux_gateway;

int32_t devapi_get_hostindex_by_mac(const char *mac, int32_t *index)
{
    return query(__func__, [&](const View &view) {
        const std::vector<Host> &hosts = view.network->hosts;
        const auto found = std::ranges::find(hosts, required_mac("mac", mac), &Host::mac);
        *index = found != hosts.end() ? static_cast<int32_t>(found - hosts.begin()) + 1 : 0;
        return found != hosts.end() ? 1 : 0;
    });
}
