// SPDX-License-Identifier: MIT
#include "host/device_trace.h"

#include "host/plugin_host.h"
#include "io/error_output.h"
#include "io/text.h"
#include "protocol/device_facts.h"
#include "protocol/device_text.h"
#include "protocol/secrets.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <ctime>
#include <exception>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace agent {

namespace {

using device_layout::Argument;
using device_layout::Way;

std::string without_secrets(std::string_view form, std::string_view text)
{
    return form == "json"  ? mask_json(text)
           : form == "url" ? mask_address(text)
                           : std::string(text);
}

// Seconds since boot, comparable with the kernel's log.
int64_t uptime()
{
    timespec now = {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec;
}

// The arguments of one call as shown: inputs as they were before the call, all others as they are
// after it.
class ShownArguments {
  public:
    ShownArguments(const DeviceCall &call, bool show_secrets)
        : call_(call), style_{show_secrets, in_quotes, without_secrets},
          before_(call.arguments.size()), texts_(call.arguments.size())
    {
        for (size_t at = 0; at < texts_.size(); ++at) {
            const Argument &argument = call.function.arguments[at];
            if (is_fixed(argument)) {
                texts_[at] = shown(at, true);
            } else if (call.arguments[at] != 0) {
                const size_t size = device_text::size_of(argument, call.arguments.data());
                before_[at].assign(address_of(call.arguments[at]), size);
            }
        }
    }

    std::string text()
    {
        const bool success =
            call_.function.has_result &&
            device_facts::is_success(*device_facts::find(call_.function.name), call_.result);
        std::string all;
        for (size_t at = 0; at < texts_.size(); ++at) {
            const Argument &argument = call_.function.arguments[at];
            if (!is_fixed(argument)) {
                texts_[at] = !success && is_unset(at) ? "unset" : shown(at, success);
            }
            all += std::string(at == 0 ? "" : ", ") + argument.name + "=" + texts_[at];
        }
        return "(" + all + ")";
    }

  private:
    bool is_fixed(const Argument &argument) const
    {
        return argument.way == Way::kValue || argument.way == Way::kIn || call_.function.frees;
    }

    // Whether the function should have filled the argument but left it unchanged.
    bool is_unset(size_t at) const
    {
        const Argument &argument = call_.function.arguments[at];
        return argument.way == Way::kOut && call_.arguments[at] != 0 &&
               memcmp(before_[at].data(), address_of(call_.arguments[at]), before_[at].size()) == 0;
    }

    std::string shown(size_t at, bool success) const
    {
        return device_text::shown_argument(style_, call_.function.arguments[at],
                                           call_.arguments[at], call_.arguments.data(), success);
    }

    const DeviceCall &call_;
    const device_text::Style style_;
    std::vector<std::string> before_;
    std::vector<std::string> texts_;
};

int open_trace(const std::string &file)
{
    // Without O_NONBLOCK, opening a pipe would block until it has a reader.
    const int opened = open(file.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK,
                            S_IRUSR | S_IWUSR);
    if (opened < 0) {
        throw HostError(kCannotLoad, file + ": " + std::generic_category().message(errno));
    }
    return opened;
}

} // namespace

DeviceTrace::DeviceTrace(DeviceStage &next, const std::string &file, bool show_secrets)
    : next_(next), show_secrets_(show_secrets)
{
    if (file != "-") {
        signal(SIGXFSZ, SIG_IGN); // exceeding the file size limit must not end the agent
        file_ = open_trace(file);
        output_.use(file_);
    }
}

DeviceTrace::~DeviceTrace()
{
    finish();
    if (file_ >= 0) {
        close(file_);
    }
}

void DeviceTrace::run(DeviceCall &call)
{
    // The call has been made: when memory is short, only its trace line is lost.
    std::optional<ShownArguments> arguments;
    try {
        arguments.emplace(call, show_secrets_);
    } catch (const std::exception &) {
    }
    const auto start = std::chrono::steady_clock::now();
    next_.run(call);
    const auto duration = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now() - start);
    if (!arguments) {
        return;
    }
    try {
        write("[" + std::to_string(uptime()) + "] " + call.function.name + arguments->text() +
              " = " + std::to_string(call.result) + " in " + std::to_string(duration.count()) +
              " us" + (call.is_missing ? ", the library has no such function" : ""));
    } catch (const std::exception &) {
    }
}

void DeviceTrace::write(const std::string &line)
{
    if (file_ < 0) {
        write_error_line(line, Level::kDebug);
        return;
    }
    const std::lock_guard lock(mutex_);
    output_.write({line, "\n"});
}

void DeviceTrace::finish()
{
    const std::lock_guard lock(mutex_);
    if (file_ >= 0) {
        output_.finish();
    }
}

} // namespace agent
