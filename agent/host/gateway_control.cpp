// SPDX-License-Identifier: MIT
#include "host/gateway_control.h"

#include "host/workers.h"
#include "protocol/json_text.h"
#include "protocol/log_sink.h"
#include "protocol/requests.h"

#include <cstring>
#include <exception>
#include <map>
#include <utility>
#include <vector>

namespace agent {

namespace {

constexpr size_t kMaxError = 1024;
constexpr char kFaultForm[] = "FUNCTION=RESULT[*COUNT][@DELAYms]";

// A function of the library's control interface. Throws BadRequest for a library without it.
template <class Function> Function *control_function(const PluginHost &host, const char *name)
{
    void *function = host.device_symbol(name);
    if (function == nullptr) {
        throw BadRequest("the device library is not the simulated gateway");
    }
    return reinterpret_cast<Function *>(function);
}

// Calls a function that reports errors in a text. Throws BadRequest.
template <class Function, class Argument> void set(Function *function, Argument argument)
{
    char error[kMaxError] = "";
    if (function(argument, error, sizeof error) != 0) {
        throw BadRequest(error);
    }
}

// The texts by their names, in order.
using Shown = std::map<std::string, std::vector<std::string>>;

void take_shown(const char *name, const char *text, void *shown)
{
    try {
        (*static_cast<Shown *>(shown))[name].emplace_back(text);
    } catch (const std::exception &problem) { // exceptions must not reach the C callers
        log_line(kLogError, "a setting is not shown: %s", problem.what());
    }
}

std::string list_of(const std::vector<std::string> &texts)
{
    std::string list;
    for (const std::string &text : texts) {
        list += (list.empty() ? "" : ",") + quoted(text);
    }
    return "[" + list + "]";
}

// The only text, or null.
std::string text_or_null(const std::vector<std::string> &texts)
{
    return texts.empty() ? "null" : quoted(texts.front());
}

} // namespace

GatewayControl::GatewayControl(const PluginHost &host, CallListener listener)
    : host_(host), listener_(std::move(listener))
{
}

GatewayControl::~GatewayControl()
{
    if (end_trace_ != nullptr) {
        end_trace_(nullptr, nullptr);
    }
}

std::string GatewayControl::run(const cJSON *control)
{
    const cJSON *value = control->child;
    const std::string name = value->string;
    if (name == "faults") {
        set_faults(value);
    } else if (name == "scenario") {
        load(value->valuestring);
    } else if (name == "clock") {
        set_clock(value->valuestring);
    } else if (name == "trace") {
        set_trace(cJSON_IsTrue(value) != 0);
    } else {
        return shown();
    }
    return "{}";
}

void GatewayControl::set_faults(const cJSON *faults) const
{
    std::vector<const char *> texts;
    const cJSON *fault = nullptr;
    cJSON_ArrayForEach(fault, faults)
    {
        texts.push_back(fault->valuestring);
    }
    texts.push_back(nullptr);
    set(control_function<decltype(simulated_gateway_set_faults)>(host_,
                                                                 "simulated_gateway_set_faults"),
        texts.data());
}

// A worker is between two device calls most of the time, so the library cannot know of it.
void GatewayControl::load(const char *scenario) const
{
    auto *function =
        control_function<decltype(simulated_gateway_load)>(host_, "simulated_gateway_load");
    WorkerWatch workers(host_);
    workers.poll([](const char *, bool) {});
    if (workers.any_running()) {
        throw Busy("a worker of the plug-in is running");
    }
    set(function, scenario);
}

void GatewayControl::set_clock(const char *clock) const
{
    set(control_function<decltype(simulated_gateway_set_clock)>(host_,
                                                                "simulated_gateway_set_clock"),
        clock);
}

void GatewayControl::set_trace(bool is_on)
{
    auto *function =
        control_function<decltype(simulated_gateway_on_call)>(host_, "simulated_gateway_on_call");
    if (is_on && !listener_) {
        throw BadRequest("the trace consists of events, which need --events");
    }
    function(is_on ? receive : nullptr, this);
    end_trace_ = is_on ? function : nullptr;
}

std::string GatewayControl::shown() const
{
    Shown shown;
    control_function<decltype(simulated_gateway_show)>(host_, "simulated_gateway_show")(take_shown,
                                                                                        &shown);
    return "{\"scenario\":" + text_or_null(shown["scenario"]) +
           ",\"scenarios\":" + list_of(shown["scenarios"]) +
           ",\"faults\":" + list_of(shown["fault"]) + ",\"fault_kinds\":{\"form\":\"" + kFaultForm +
           "\",\"functions\":" + list_of(shown["function"]) +
           "},\"clock\":" + text_or_null(shown["clock"]) +
           ",\"time\":" + text_or_null(shown["time"]) +
           ",\"trace\":" + (end_trace_ != nullptr ? "true" : "false") + "}";
}

void GatewayControl::receive(const char *function, int32_t result, const char *line, void *control)
{
    try {
        static_cast<GatewayControl *>(control)->listener_(function, result, line);
    } catch (const std::exception &problem) { // exceptions must not reach the C callers
        log_line(kLogError, "a device call is not reported: %s", problem.what());
    }
}

} // namespace agent
