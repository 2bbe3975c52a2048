// SPDX-License-Identifier: MIT
// What a device function is made of. A function is its name, its arguments and a body that works on
// the state; fault plan, trace, lock and saving come with query(), setting() and long_work():
//
//   int32_t devapi_get_sn_info(SnInfo *info)
//   {
//       return query(__func__, {reply("info", info)}, [&](const State &state) {
//           put(info->MAC, state.home.identity.mac);
//           return 0;
//       });
//   }
//
// The body of the first two runs under the gateway's lock: it calls no device function.
#pragma once

#include "core/arguments.h"
#include "core/fields.h"
#include "model/model.h"

#include <functional>
#include <initializer_list>

namespace simulated_gateway {

class Gateway;

// Runs a device call that looks at the state. Fails with -1 when an argument is null or the gateway
// cannot be opened.
int32_t query(const char *function, std::initializer_list<Argument> arguments,
              const std::function<int32_t(const State &)> &body);

// Runs a device call that changes the state. The change takes effect when the body returns 0, the
// model still holds and the state could be saved; else nothing has changed, and where the body had
// no objection the call fails with -1. A body refuses by throwing an Error: then the call fails
// with -1, and trace and FailReason say why.
int32_t setting(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t(State &)> &body);

// Runs a device call that takes its time: the body works without the gateway's lock, and other
// calls go on meanwhile. For its steps on the state it asks the gateway (gateway.h). A body refuses
// as it does in a setting.
int32_t long_work(const char *function, std::initializer_list<Argument> arguments,
                  const std::function<int32_t(Gateway &)> &body);

} // namespace simulated_gateway
