// SPDX-License-Identifier: MIT
// How a device function is implemented: its name, its arguments and a body that works on the state
// are passed to query(), setting() or long_work(), which add fault plan, trace, lock and saving:
//
//   int32_t devapi_get_sn_info(SnInfo *info)
//   {
//       return query(__func__, {reply("info", info)}, [&](const State &state) {
//           put(info->MAC, state.home.identity.mac);
//           return 0;
//       });
//   }
//
// The body of the first two runs under the gateway's lock and must not call a device function.
#pragma once

#include "core/arguments.h"
#include "core/fields.h"
#include "model/model.h"

#include <functional>
#include <initializer_list>

namespace simulated_gateway {

class Gateway;

// Runs a device call that reads the state. Fails with -1 if an argument is null or the gateway
// cannot be opened.
int32_t query(const char *function, std::initializer_list<Argument> arguments,
              const std::function<int32_t(const State &)> &body);

// Runs a device call that changes the state. The change takes effect if the body returns 0, the
// changed model is valid and the state could be saved; otherwise nothing has changed. The call
// fails with the body's result, or with -1 for the other two reasons. A body that throws an Error
// makes the call fail with -1, with the reason in the trace and in FailReason.
int32_t setting(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t(State &)> &body);

// Runs a device call that takes long: the body runs without the gateway's lock, so that other calls
// can run meanwhile. It reads and changes the state through the gateway (gateway.h). An Error has
// the same effect as in a setting.
int32_t long_work(const char *function, std::initializer_list<Argument> arguments,
                  const std::function<int32_t(Gateway &)> &body);

} // namespace simulated_gateway
