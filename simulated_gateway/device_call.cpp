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

Argument reply_text(const char *name, const char *text)
{
    return {name, text, true, [](const void *value, bool) {
                return in_quotes(static_cast<const char *>(value));
            }};
}

Argument number(const char *name, const int32_t &value)
{
    return {name, &value, false, [](const void *number, bool) {
                return std::to_string(*static_cast<const int32_t *>(number));
            }};
}

void refuse_for(const char *name, const std::string &complaint)
{
    if (!complaint.empty()) {
        throw Error(std::string(name) + " " + complaint);
    }
}

void put_text(std::span<char> field, const std::string &text)
{
    const std::string &shown = text.empty() ? "NULL" : text;
    std::string_view fitting = shown;
    if (fitting.size() >= field.size()) {
        fitting = whole_letters(fitting.substr(0, field.size() - 1));
    }
    std::ranges::copy(fitting, field.begin());
    field[fitting.size()] = '\0';
}

} // namespace simulated_gateway
