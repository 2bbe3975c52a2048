// SPDX-License-Identifier: MIT
// What a device function is made of: its name and a body.
//
//   int32_t devapi_get_sn_info(SnInfo *info)
//   {
//       return query(__func__, [&](const View &view) {
//           put(info->MAC, to_text(view.network->bridge.mac));
//           return 0;
//       });
//   }
//
// A body refuses by throwing an Error: the call fails with -1, and the log says why. No exception
// leaves a device function.
#pragma once

#include "core/fields.h"
#include "core/gateway.h"
#include "system/error.h"

#include <cstdint>
#include <functional>
#include <span>

namespace linux_gateway {

// Before the first call, and after the last one.
void open_gateway();
void close_gateway();

// Runs a device call that only reads.
int32_t query(const char *function, const std::function<int32_t(const View &)> &body);

// Runs a device call that changes the state (Gateway::change()), with the result 0. The reason of a
// refusal is also written to fail_reason, if there is such a field.
int32_t setting(const char *function, std::span<char> fail_reason,
                const std::function<void(State &, const View &)> &body);
inline int32_t setting(const char *function, const std::function<void(State &, const View &)> &body)
{
    return setting(function, {}, body);
}

} // namespace linux_gateway
