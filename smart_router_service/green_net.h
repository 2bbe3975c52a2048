// What the commands of parental control share.
#pragma once

#include "recipes.h"

namespace smart_router {

inline constexpr char kNoList[] = "json node: list not found"; // also said of the notify switch

// Finds a host that has to be in the table already. Result: false when it is not.
inline bool find_host(const char *mac, int32_t *index)
{
    return devapi_get_greennet_index_by_mac(mac, index) == 1;
}

} // namespace smart_router
