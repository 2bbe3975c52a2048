// SPDX-License-Identifier: MIT
// Runs the lines of a shell with a running service.
#pragma once

#include "client/service_client.h"
#include "io/exit_status.h"
#include "shell/shell_completion.h"
#include "shell/shell_line.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

using ShellClock = std::chrono::steady_clock;

// The source of the lines and the destination of the replies.
class ShellUser {
  public:
    virtual ~ShellUser() = default;

    // Waits until the descriptor is ready for the poll() events. Result: false on timeout, and when
    // the user cancels the wait.
    virtual bool wait_for(int descriptor, short events,
                          std::optional<ShellClock::time_point> until) = 0;
    // Results and messages; each has one or more lines, without a trailing line end.
    virtual void print(const std::string &text) = 0;
    virtual void show(const std::string &message) = 0;
};

class Shell {
  public:
    enum class Look { kLines, kText, kColoured }; // JSON lines for programs, or text for a terminal

    Shell(ShellUser &user, std::string path, Look look);

    // Both throw ServiceError. The greeting identifies the service, so that a different one is
    // noticed later.
    void connect();
    void greet();

    // Runs one line. Result: the exit status that it implies.
    ExitStatus run(std::string_view line);
    bool has_quit() const { return has_quit_; }

    Completion complete(std::string_view before_cursor);

    // Background work between the lines: shows events, and reconnects to a service that has
    // disconnected. To be called when the descriptor is ready for the events, and at the time.
    void work();
    int descriptor() const; // -1 while there is no connection
    short wanted_events() const;
    std::optional<ShellClock::time_point> work_time() const;

  private:
    struct Kept {
        ShellClock::time_point until;
        Json reply;
    };

    std::optional<ServiceAnswer> ask(const std::string &request,
                                     std::optional<ShellClock::time_point> until = {});
    void lose(const ServiceError &problem);
    void connect_again();
    void keep_event(const std::string &name, const cJSON *data);
    void print_events();
    std::vector<std::string> known_values(const Description &found_in);

    ExitStatus carry_out(const ShellInput &input);
    ExitStatus request(const ShellInput &input);
    ExitStatus show_answer(const ShellInput &input, const ServiceAnswer &answer);
    ExitStatus switch_events(const ShellInput &input);
    ExitStatus help(const std::string &name);
    ExitStatus list(const std::string &pattern);
    ExitStatus status();

    ShellUser &user_;
    const std::string path_;
    const Look look_;
    bool has_quit_ = false;
    std::optional<ServiceClient> client_;
    std::string service_; // the service's version
    std::string protocol_;
    std::string epoch_;
    std::string events_pattern_;       // empty: none are shown
    std::string events_;               // pending output
    std::map<std::string, Kept> kept_; // replies for completion, by command
    ShellClock::duration pause_;       // before the next attempt to connect
    ShellClock::time_point next_try_;
};

} // namespace agent
