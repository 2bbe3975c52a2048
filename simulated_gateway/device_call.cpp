#include "device_call.h"

#include "control.h"
#include "gateway.h"

#include <algorithm>

namespace simulated_gateway {

void RecordText::add(const char *name, const std::string &value)
{
    if (!fields_.empty()) {
        fields_ += ", ";
    }
    fields_ += std::string(name) + "=" + value;
}

// The callers speak C: no exception may reach them, and out of memory is a failed call.
int32_t query(const char *function, std::initializer_list<Argument> arguments,
              const std::function<int32_t(const State &)> &body)
try {
    const std::shared_ptr<Gateway> gateway = current_gateway();
    return gateway ? gateway->query(function, arguments, body) : -1;
} catch (const std::exception &) {
    return -1;
}

int32_t setting(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t(State &)> &body)
try {
    const std::shared_ptr<Gateway> gateway = current_gateway();
    return gateway ? gateway->setting(function, arguments, body) : -1;
} catch (const std::exception &) {
    return -1;
}

void put_text(char *field, size_t width, const std::string &text)
{
    const std::string &shown = text.empty() ? "NULL" : text;
    const size_t length = std::min(shown.size(), width - 1);
    std::memcpy(field, shown.data(), length);
    field[length] = '\0';
}

} // namespace simulated_gateway
