// SPDX-License-Identifier: MIT
#include "core/device_call.h"

#include "core/control.h"

namespace simulated_gateway {
namespace {

// The callers speak C: no exception may reach them, and out of memory is a failed call.
template <class Body>
int32_t run(const char *function, std::initializer_list<Argument> arguments, const Body &body)
try {
    const std::shared_ptr<Gateway> gateway = current_gateway();
    return gateway ? gateway->run(function, arguments, body) : -1;
} catch (const std::exception &) {
    return -1;
}

} // namespace

int32_t query(const char *function, std::initializer_list<Argument> arguments,
              const std::function<int32_t(const State &)> &body)
{
    return run(function, arguments, body);
}

int32_t setting(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t(State &)> &body)
{
    return run(function, arguments, body);
}

int32_t long_work(const char *function, std::initializer_list<Argument> arguments,
                  const std::function<int32_t(Gateway &)> &body)
{
    return run(function, arguments, body);
}

} // namespace simulated_gateway
