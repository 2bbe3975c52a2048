// SPDX-License-Identifier: MIT
// What notices to the app contain of the gateway.
#include "core/device_call.h"

using namespace simulated_gateway;

int32_t devapi_get_iotagtd_device_mac(char *mac, int32_t size)
{
    return query(__func__, {reply_text("mac", mac), number("size", size)}, [&](const State &state) {
        const std::string &own = state.home.identity.mac;
        if (size <= static_cast<int64_t>(own.size())) {
            throw Error("there is no room for the address");
        }
        put_text({mac, static_cast<size_t>(size)}, own);
        return 0;
    });
}
