// SPDX-License-Identifier: MIT
#include "host/device_reasons.h"

#include "io/text.h"
#include "protocol/log_format.h"
#include "protocol/log_sink.h"
#include "simulated_gateway/simulated_gateway.h"

#include <cstring>
#include <exception>
#include <mutex>
#include <thread>

namespace agent {

namespace {

constexpr char kPluginModule[] = "libtsiotAgtd";

std::mutex listener_lock; // held during the call, so that the listener is not removed meanwhile
DeviceReasons::Listener reason_listener;
DeviceReasons::Listener refused_listener;

void report(const std::string &who, const std::string &reason)
{
    if (reason_listener) {
        reason_listener(one_line(who) + ": " + one_line(reason));
    }
}

// Exceptions must not reach the C callers.
template <class Work> void without_exceptions(Work work)
{
    try {
        const std::lock_guard lock(listener_lock);
        work();
    } catch (const std::exception &problem) {
        log_line(kLogError, "a reason is lost: %s", problem.what());
    }
}

void take_refusal(const char *function, const char *reason, void *)
{
    without_exceptions([&] { report(function, reason); });
}

} // namespace

DeviceReasons::DeviceReasons(const PluginHost &host, Listener listener, Listener refused)
    : set_(reinterpret_cast<decltype(&simulated_gateway_on_refusal)>(
          host.device_symbol("simulated_gateway_on_refusal")))
{
    {
        const std::lock_guard lock(listener_lock);
        reason_listener = std::move(listener);
        refused_listener = std::move(refused);
    }
    if (set_ != nullptr) {
        set_(take_refusal, nullptr);
    }
}

DeviceReasons::~DeviceReasons()
{
    if (set_ != nullptr) {
        set_(nullptr, nullptr);
    }
    const std::lock_guard lock(listener_lock);
    reason_listener = nullptr;
    refused_listener = nullptr;
}

CommandReasons::CommandReasons(const PluginHost &host, DeviceReasons::Listener late)
    : reasons_(host, [this, late = std::move(late),
                      commands = std::this_thread::get_id()](const std::string &reason) {
          if (std::this_thread::get_id() == commands) {
              pending_.push_back(reason);
          } else {
              late(reason);
          }
      })
{
}

void take_logged_error(const char *module, const char *format, va_list arguments)
{
    if (strcmp(module, kPluginModule) == 0) {
        return;
    }
    without_exceptions([&] {
        if (reason_listener) {
            std::string text = format_log_text(false, format, arguments);
            text.erase(text.find_last_not_of("\r\n") + 1);
            report(module, text);
        }
    });
}

void take_refused_command(const char *command)
{
    without_exceptions([&] {
        if (refused_listener) {
            refused_listener(command);
        } else {
            report(PROGRAM_NAME, std::string("refused to run a command: ") + command);
        }
    });
}

} // namespace agent
