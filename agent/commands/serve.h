// SPDX-License-Identifier: MIT
// hgagent serve: requests from standard input, one a line, answered on standard output.
#pragma once

#include "commands/notice.h"
#include "commands/options.h"
#include "host/device_reasons.h"
#include "host/events.h"
#include "host/notice_receiver.h"
#include "host/plugin_host.h"
#include "host/progress.h"
#include "protocol/json_text.h"

#include <chrono>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string_view>

namespace agent {

// What serve does with each line: requests in, answers out, and between these what happens by
// itself. Everything but its output is called on one thread, which runs the commands.
class ServeSession {
  public:
    // Takes the pieces of one line with its end. Called on any thread, by several at a time.
    // Result: false when nobody takes lines any more.
    using Output = std::function<bool(std::initializer_list<std::string_view> pieces)>;

    // All that is handed in has to outlive it.
    ServeSession(const Options &options, const PluginHost &host, Output output);

    // Answers a line. Result: false when nobody takes answers any more.
    bool answer(std::string_view line);
    // The same for a line that was too long to be kept.
    bool answer_too_long();

    // Tells of what has started or ended since the last answer.
    void look();
    // When to look again if no line comes before; nothing while there is nothing to look for.
    std::optional<std::chrono::milliseconds> next_look() const { return events_.next_look(); }

  private:
    const Options &options_;
    const PluginHost &host_;
    const Output output_;
    Events events_;
    const NoticeReceiver notices_;
    const Progress progress_;
    std::optional<CommandReasons> reasons_;
    ReplyPrinter printer_;
};

// Serves until the input ends or the output is closed, and then until all that the commands started
// has come to its end; or until SIGTERM or SIGINT arrives. Result: the exit status.
int run_serve(const Options &options);

} // namespace agent
