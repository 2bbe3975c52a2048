// SPDX-License-Identifier: MIT
// What notices to the app contain of the gateway.
#include "core/device_call.h"

#include "smart_router_service/device_access.h"

using namespace linux_gateway;

int32_t devapi_get_iotagtd_device_mac(char *mac, int32_t size)
{
    return query(__func__, [&](const View &view) {
        const std::string own = to_text(view.network->bridge.mac);
        if (size <= static_cast<int64_t>(own.size())) {
            throw Error("there is no room for the address");
        }
        put_text({mac, static_cast<size_t>(size)}, own);
        return 0;
    });
}
