// SPDX-License-Identifier: MIT
#include "conformance/checks.h"

#include "conformance/requests.h"
#include "host/report_builders.h"
#include "host/workers.h"
#include "protocol/device_facts.h"
#include "protocol/device_texts.h"
#include "protocol/reply.h"
#include "smart_router_service/processjsonability.h"

#include <algorithm>
#include <iterator>
#include <mutex>
#include <set>

namespace agent {

namespace {

struct CallResult {
    std::string function;
    int32_t result;
    bool wrote;
};

// The watch's reports on the current check. A single instance, since the watch takes plain
// functions only.
struct CurrentCheck {
    std::mutex mutex;
    CheckListener listener;
    std::vector<CallResult> calls;
    std::vector<std::string> functions; // whose faults matter; empty: all
};
CurrentCheck current;

// The device function that the thread is executing; null for none.
thread_local const char *current_function = nullptr;

void calling(const char *function)
{
    current_function = function;
    const std::lock_guard lock(current.mutex);
    current.listener.calling(function);
}

void answered(const char *function, int32_t result, bool wrote)
{
    current_function = nullptr;
    const std::lock_guard lock(current.mutex);
    current.calls.push_back({function, result, wrote});
    current.listener.answered();
}

// The lock must be held.
bool matters(const char *function)
{
    const auto &functions = current.functions;
    return functions.empty() ||
           std::find(functions.begin(), functions.end(), function) != functions.end();
}

void fault(const char *function, const char *what)
{
    const std::lock_guard lock(current.mutex);
    if (matters(function)) {
        current.listener.fault(std::string(function) + ": " + what);
    }
}

void warning(const char *function, const char *what)
{
    const std::lock_guard lock(current.mutex);
    if (matters(function)) {
        current.listener.warning(std::string(function) + ": " + what);
    }
}

void said(const std::string &reason)
{
    const std::lock_guard lock(current.mutex);
    current.listener.reason(reason);
}

void reason(const char *function, const char *text)
{
    said(std::string(function) + ": " + text);
}

// With its command refused, the function cannot be judged, regardless of its result.
void refused_command(const std::string &command)
{
    if (current_function != nullptr) {
        fault(current_function,
              ("it calls system(\"" + command + "\"), which " PROGRAM_NAME " refuses").c_str());
    }
}

std::vector<CallResult> take_calls()
{
    const std::lock_guard lock(current.mutex);
    return std::exchange(current.calls, {});
}

// Whether the result is one of the function's success codes.
bool is_answer(const CallResult &call)
{
    return device_facts::is_success(*device_facts::find(call.function), call.result);
}

std::string joined(const std::set<std::string> &names)
{
    std::string text;
    for (const std::string &name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

// Judges the calls that the plug-in made: with -1 and nothing written, a library reports an
// unsupported function.
CheckResult judge(bool success, const std::string &reason, const std::vector<CallResult> &calls)
{
    std::set<std::string> unsupported;
    std::set<std::string> supported;
    std::set<std::string> failed;
    for (const CallResult &call : calls) {
        if (call.result == -1 && !call.wrote) {
            unsupported.insert(call.function);
        } else if (is_answer(call)) {
            supported.insert(call.function);
        } else {
            failed.insert(call.function + " answers " + std::to_string(call.result));
        }
    }
    // -1 also means that an entry of a list does not exist.
    std::erase_if(unsupported, [&](const auto &function) { return supported.contains(function); });
    if (success && (unsupported.empty() || !supported.empty())) {
        return {Verdict::kPassed, unsupported.empty()
                                      ? std::vector<std::string>()
                                      : std::vector{"without " + joined(unsupported)}};
    }
    if (!failed.empty()) {
        return {Verdict::kFailed, {joined(failed)}};
    }
    if (!unsupported.empty()) {
        return {Verdict::kNotSupported, {joined(unsupported)}};
    }
    return {Verdict::kFailed, {"no function fails, and still: " + reason}};
}

CheckResult run_command(const PluginHost &host, const std::string &command, cJSON *object)
{
    take_calls();
    const int32_t result = host.process(command, object);
    await_workers(host);
    if (result == HG_NO_SUCH_COMMAND) {
        return {Verdict::kFailed, {"the plug-in has no such command"}};
    }
    return judge(status_of(object) == kSuccess, text_of(object, "FailReason"), take_calls());
}

CheckResult run_report(const PluginHost &host, const std::string &name)
{
    take_calls();
    const Json report(cJSON_CreateObject());
    try {
        const int32_t result = build_report(host, name, kMainRouterPath, report.get());
        return judge(result == 0 && status_of(report.get()) == kSuccess,
                     "result " + std::to_string(result), take_calls());
    } catch (const HostError &problem) { // the plug-in lacks the function
        return {Verdict::kFailed, {problem.what()}};
    }
}

CheckResult check_functions(const PluginHost &host)
{
    std::vector<std::string> missing;
    for (const device_facts::Function &function : device_facts::kFunctions) {
        const std::string name(function.name);
        if (host.device_symbol(name.c_str()) == nullptr) {
            missing.push_back(name);
        }
    }
    if (missing.empty()) {
        return {};
    }
    const std::string count = std::to_string(missing.size());
    return {Verdict::kFailed,
            {count + (missing.size() == 1 ? " function is missing" : " functions are missing")},
            missing};
}

// The check of one command, with the other commands that it needs.
class CommandCheck {
  public:
    CommandCheck(const PluginHost &host, const Description &command)
        : host_(host), command_(command), name_(command["command"].text())
    {
    }

    // Queries the values that exist until one is reported.
    CheckResult query()
    {
        const std::vector<Json> requests = this->requests();
        CheckResult result = nothing_to_select();
        for (const Json &request : requests) {
            result = run_command(host_, name_, request.get());
            if (result.verdict == Verdict::kPassed) {
                return result;
            }
        }
        return result;
    }

    // Changes, reads back, restores.
    CheckResult setting()
    {
        const std::vector<Json> requests = this->requests();
        if (requests.empty()) {
            return nothing_to_select();
        }
        const cJSON *selected = requests.front().get();
        const Json before = setting_in_force(command_, selected, ask_);
        if (before == nullptr) {
            return {Verdict::kSkipped,
                    {"could not be restored: " + command_["read_back"]["command"].text() +
                     (last_query_ == Verdict::kNotSupported ? " is not supported"
                                                            : " does not report all of it")}};
        }
        const Json changed = changed_setting(command_, before.get());
        return changed != nullptr ? change_and_restore(selected, changed.get(), before.get())
                                  : set_again(selected, before.get());
    }

    // Runs the command once, and only because it was named explicitly.
    CheckResult lasting()
    {
        const std::vector<Json> requests = this->requests();
        return requests.empty() ? nothing_to_select()
                                : run_command(host_, name_, requests.front().get());
    }

  private:
    std::vector<Json> requests() const { return requests_for(command_, ask_); }

    CheckResult nothing_to_select() const
    {
        for (const Description &key : command_["request"]) {
            if (key.contains("found_in")) {
                return {
                    Verdict::kSkipped,
                    {key["found_in"]["command"].text() + " does not report " + key["key"].text()}};
            }
        }
        return {};
    }

    CheckResult change_and_restore(const cJSON *selected, const cJSON *changed, const cJSON *before)
    {
        CheckResult result = make(selected, changed);
        if (result.verdict == Verdict::kNotSupported) {
            return result;
        }
        const CheckResult restored = make(selected, before);
        if (restored.verdict != Verdict::kPassed) {
            result.verdict = Verdict::kFailed;
            result.details.push_back("not restored: " + restored.details.front());
        }
        return result;
    }

    // Sets the current values again.
    CheckResult set_again(const cJSON *selected, const cJSON *before)
    {
        CheckResult result = make(selected, before);
        const std::string missing = key_without_value(before);
        if (result.verdict == Verdict::kPassed) {
            return {Verdict::kPassed, {"with the values in force only"}};
        }
        if (result.verdict == Verdict::kNotSupported && !missing.empty()) {
            return {Verdict::kSkipped,
                    {command_["read_back"]["command"].text() + " does not report " + missing}};
        }
        return result;
    }

    // Sets, and reads back.
    CheckResult make(const cJSON *selected, const cJSON *setting)
    {
        const Json object(cJSON_Duplicate(setting, 1));
        CheckResult result = run_command(host_, name_, object.get());
        if (result.verdict == Verdict::kPassed) {
            const Json in_force = setting_in_force(command_, selected, ask_);
            const std::string differs = in_force != nullptr ? difference(setting, in_force.get())
                                                            : "it can no longer be read";
            if (!differs.empty()) {
                result = {Verdict::kFailed, {differs}};
            }
        }
        return result;
    }

    const PluginHost &host_;
    const Description &command_;
    const std::string name_;
    Verdict last_query_ = Verdict::kPassed;
    const Ask ask_ = [this](const std::string &command, Json request) -> Json {
        last_query_ = run_command(host_, command, request.get()).verdict;
        return status_of(request.get()) == kSuccess ? std::move(request) : nullptr;
    };
};

} // namespace

CheckedHost::CheckedHost(const HostOptions &options, CheckListener listener)
    : watcher_{calling, answered, reason, warning, fault},
      host_((current.listener = std::move(listener), options), &watcher_),
      reasons_(host_, said, refused_command)
{
}

CheckedHost::~CheckedHost() = default;

CheckResult CheckedHost::run(const Check &check)
{
    {
        const std::lock_guard lock(current.mutex);
        current.functions = check.command != nullptr ? (*check.command)["device_calls"].texts()
                                                     : std::vector<std::string>();
    }
    if (!check.report.empty()) {
        return run_report(host_, check.report);
    }
    if (check.command == nullptr) {
        return check_functions(host_);
    }
    CommandCheck command(host_, *check.command);
    const std::string effect = (*check.command)["effect"].text();
    return effect == "none"      ? command.query()
           : effect == "setting" ? command.setting()
                                 : command.lasting();
}

} // namespace agent
