// SPDX-License-Identifier: MIT
#include "core/fault_plan.h"

#include "io/text.h"
#include "smart_router_service/device_functions.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace simulated_gateway {
namespace {

constexpr std::string_view kFunctions[] = {
#define FUNCTION_NAME(result, name, parameters, arguments) #name,
    DEVICE_FUNCTIONS(FUNCTION_NAME)
#undef FUNCTION_NAME
};

constexpr std::string_view kRubbish = "rubbish";
constexpr std::string_view kCrash = "crash";
constexpr int64_t kLongestDelayMs = 3'600'000;

// Removes a number from the start of the text.
int64_t take_number(std::string_view &text, int64_t least, int64_t most, const char *meaning)
{
    int64_t number = 0;
    const auto [end, error] = std::from_chars(text.begin(), text.end(), number);
    if (error == std::errc::invalid_argument) {
        throw Error(std::string("the ") + meaning + " is missing");
    }
    if (error != std::errc() || number < least || number > most) {
        throw Error(std::string("the ") + meaning + " is not within " + std::to_string(least) +
                    " to " + std::to_string(most));
    }
    text.remove_prefix(static_cast<size_t>(end - text.begin()));
    return number;
}

bool take(std::string_view &text, std::string_view prefix)
{
    if (!text.starts_with(prefix)) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

Fault parse_fault(std::string_view text)
{
    Fault fault;
    if (take(text, kRubbish)) {
        fault.kind = Fault::Kind::kRubbish;
    } else if (take(text, kCrash)) {
        fault.kind = Fault::Kind::kCrash;
    } else {
        fault.result = static_cast<int32_t>(take_number(text, INT32_MIN, INT32_MAX, "result"));
    }
    if (take(text, "*")) {
        fault.calls_left = take_number(text, 1, INT32_MAX, "count");
    }
    if (take(text, "@")) {
        fault.delay = std::chrono::milliseconds(take_number(text, 0, kLongestDelayMs, "delay"));
        if (!take(text, "ms")) {
            throw Error("the delay needs \"ms\" after it");
        }
    }
    if (!text.empty()) {
        throw Error("there is extra text at the end, " + in_quotes(text));
    }
    return fault;
}

std::string result_of(const Fault &fault)
{
    switch (fault.kind) {
    case Fault::Kind::kRubbish:
        return std::string(kRubbish);
    case Fault::Kind::kCrash:
        return std::string(kCrash);
    case Fault::Kind::kResult:
        break;
    }
    return std::to_string(fault.result);
}

} // namespace

void FaultPlan::add(std::string_view text)
{
    try {
        const size_t equals = text.find('=');
        if (equals == std::string_view::npos) {
            throw Error("has to be FUNCTION=RESULT[*COUNT][@DELAYms]");
        }
        const std::string_view function = text.substr(0, equals);
        if (std::ranges::find(kFunctions, function) == std::end(kFunctions)) {
            throw Error("there is no such device function" + did_you_mean(function, kFunctions));
        }
        std::deque<Fault> &planned = faults_[std::string(function)];
        if (!planned.empty() && !planned.back().calls_left) {
            throw Error("is never reached: the one before it for this function has no count");
        }
        planned.push_back(parse_fault(text.substr(equals + 1)));
    } catch (const Error &error) {
        throw Error("fault " + in_quotes(text) + ": " + error.what());
    }
}

std::vector<std::string> FaultPlan::texts() const
{
    std::vector<std::string> texts;
    for (const auto &[function, planned] : faults_) {
        for (const Fault &fault : planned) {
            std::string text = function + "=" + result_of(fault);
            if (fault.calls_left) {
                text += "*" + std::to_string(*fault.calls_left);
            }
            if (fault.delay.count() > 0) {
                text += "@" + std::to_string(fault.delay.count()) + "ms";
            }
            texts.push_back(std::move(text));
        }
    }
    return texts;
}

std::vector<std::string_view> FaultPlan::functions()
{
    return {std::begin(kFunctions), std::end(kFunctions)};
}

std::optional<Fault> FaultPlan::next(std::string_view function)
{
    const auto planned = faults_.find(function);
    if (planned == faults_.end() || planned->second.empty()) {
        return std::nullopt;
    }
    const Fault fault = planned->second.front();
    if (fault.calls_left && --*planned->second.front().calls_left == 0) {
        planned->second.pop_front();
    }
    return fault;
}

} // namespace simulated_gateway
