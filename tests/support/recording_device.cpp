// SPDX-License-Identifier: MIT
#include "recording_device.h"

#include "smart_router_service/device_functions.h"

#include <algorithm>
#include <mutex>

namespace recording_device {

namespace {

std::mutex mutex;
std::vector<Call> recorded;
std::vector<std::function<void()>> programmed;
AnswerForAll for_all;

} // namespace

void PrintTo(const Call &call, std::ostream *out)
{
    *out << call.function << '(';
    for (std::string text : call.arguments) {
        const auto end = std::unique(text.begin(), text.end(), [](char left, char right) {
            return left == '\0' && right == '\0';
        });
        text.erase(end, text.end());
        std::replace(text.begin(), text.end(), '\0', '|');
        *out << text << ';';
    }
    *out << ')';
}

std::vector<Call> calls()
{
    const std::lock_guard lock(mutex);
    return recorded;
}

std::vector<std::string> called_functions()
{
    std::vector<std::string> names;
    for (const Call &call : calls()) {
        names.push_back(call.function);
    }
    return names;
}

void reset()
{
    const std::lock_guard lock(mutex);
    recorded.clear();
    for (const auto &forget : programmed) {
        forget();
    }
    programmed.clear();
    for_all = nullptr;
}

void answer_all(AnswerForAll answer)
{
    for_all = answer;
}

AnswerForAll answer_for_all()
{
    return for_all;
}

void write_down(const char *function, std::vector<std::string> arguments)
{
    const std::lock_guard lock(mutex);
    recorded.push_back({function, std::move(arguments)});
}

void at_reset(std::function<void()> forget)
{
    const std::lock_guard lock(mutex);
    programmed.push_back(std::move(forget));
}

} // namespace recording_device

#define COMMA_BEFORE(...) __VA_OPT__(, ) __VA_ARGS__
#define RECORDED_FUNCTION(result, name, parameters, arguments)                                     \
    result name parameters                                                                         \
    {                                                                                              \
        return recording_device::call<name>(#name COMMA_BEFORE arguments);                         \
    }

DEVICE_FUNCTIONS(RECORDED_FUNCTION)
