// SPDX-License-Identifier: MIT
// Carries out the lines of a shell with a running service.
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

// Whom the lines come from and the replies go to.
class ShellUser {
  public:
    virtual ~ShellUser() = default;

    // Waits until the descriptor is ready for the poll() events. Result: false at the time, and
    // when the user does not want to wait any longer.
    virtual bool wait_for(int descriptor, short events,
                          std::optional<ShellClock::time_point> until) = 0;
    // A result, and what is to be known beside; each of one line or several, without the last end.
    virtual void print(const std::string &text) = 0;
    virtual void tell(const std::string &message) = 0;
};

class Shell {
  public:
    enum class Look { kLines, kText, kColoured }; // JSON lines for programs, or text for a terminal

    Shell(ShellUser &user, std::string path, Look look);

    // Both throw ServiceError. The greeting tells which service it is, so that another one is
    // noticed later on.
    void connect();
    void greet();

    // Carries out one line. Result: what it makes of the exit status.
    ExitStatus run(std::string_view line);
    bool has_quit() const { return has_quit_; }

    Completion complete(std::string_view before_cursor);

    // What goes on between the lines: events are shown, and a service that has gone is looked for
    // again. To be called when the descriptor is ready for the events, and at the time.
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
    std::string service_; // its version
    std::string protocol_;
    std::string epoch_;
    std::string events_pattern_;       // empty: none are shown
    std::string events_;               // to be shown
    std::map<std::string, Kept> kept_; // replies for completion, by command
    ShellClock::duration pause_;       // before the next try to connect
    ShellClock::time_point next_try_;
};

} // namespace agent
