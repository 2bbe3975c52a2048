// SPDX-License-Identifier: MIT
// hgagent serve: requests from standard input, one a line, answered on standard output.
#pragma once

#include "commands/notice.h"
#include "commands/options.h"
#include "host/device_reasons.h"
#include "host/events.h"
#include "host/gateway_control.h"
#include "host/notice_receiver.h"
#include "host/plugin_host.h"
#include "host/progress.h"
#include "protocol/json_text.h"

#include <chrono>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <thread>

namespace agent {

// Handles the lines of serve: requests in, answers out, and asynchronous events in between.
// Everything except the output is called on one thread, which runs the commands.
class ServeSession {
  public:
    // Writes one line, given in pieces and with its line end. Called from any thread, concurrently.
    // Result: false when the reader is gone.
    using Output = std::function<bool(std::initializer_list<std::string_view> pieces)>;

    // All arguments must outlive the session.
    ServeSession(const Options &options, const PluginHost &host, Output output);

    // Answers a line. Result: false when the reader of the answers is gone.
    bool answer(std::string_view line);
    // The same for a line that exceeded the maximum length and was dropped.
    bool answer_too_long();

    // Reports background work that has started or ended since the last answer.
    void poll();
    // How long to wait before the next poll() if no line arrives; nothing while no work is running.
    std::optional<std::chrono::milliseconds> next_poll() const { return events_.next_poll(); }

  private:
    const Options &options_;
    const PluginHost &host_;
    const Output output_;
    Events events_;
    const std::thread::id commands_ = std::this_thread::get_id();
    std::string running_; // the command that is running; only for the thread that runs it
    GatewayControl control_;
    const NoticeReceiver notices_;
    const Progress progress_;
    std::optional<CommandReasons> reasons_;
    ReplyPrinter printer_;
};

// Serves until the input ends or the output is closed, and then until all work started by the
// commands has ended; or until SIGTERM or SIGINT arrives. Result: the exit status.
int run_serve(const Options &options);

} // namespace agent
