// SPDX-License-Identifier: MIT
#include "commands/shell.h"

#include "io/error_output.h"
#include "io/exit_status.h"
#include "io/streams.h"
#include "io/text.h"
#include "protocol/secrets.h"
#include "shell/line_editor.h"
#include "shell/shell.h"
#include "shell/shell_history.h"
#include "shell/shell_secrets.h"
#include "shell/shell_signals.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/epoll.h>
#include <system_error>
#include <unistd.h>

namespace agent {

namespace {

constexpr size_t kMaxLine = 1024UL * 1024;

Shell::Look look_at(bool is_terminal)
{
    // NOLINTBEGIN(concurrency-mt-unsafe): nothing changes the environment
    const char *no_colour = getenv("NO_COLOR");
    const char *terminal = getenv("TERM");
    // NOLINTEND(concurrency-mt-unsafe)
    const bool is_plain = (no_colour != nullptr && no_colour[0] != '\0') || terminal == nullptr ||
                          strcmp(terminal, "dumb") == 0;
    return !is_terminal ? Shell::Look::kLines
           : is_plain   ? Shell::Look::kText
                        : Shell::Look::kColoured;
}

// ---- Lines from a file or a pipe ----------------------------------------------------------------

class ScriptUser : public ShellUser {
  public:
    explicit ScriptUser(const StopSignals &stop) : stop_(stop) {}

    bool wait_for(int descriptor, short events,
                  std::optional<ShellClock::time_point> /*until*/) override
    {
        return stop_.wait_for(descriptor, events);
    }

    void print(const std::string &text) override
    {
        has_reader_ = output_.write_line(text, &stop_) && has_reader_;
    }

    void show(const std::string &message) override
    {
        print_error((in_line_ ? "line " + std::to_string(line_) + ": " : "") + message);
    }

    void begin_line()
    {
        ++line_;
        in_line_ = true;
    }
    void end_line() { in_line_ = false; }
    bool has_reader() const { return has_reader_; }
    bool is_terminal() const { return output_.is_terminal(); }

  private:
    const StopSignals &stop_;
    ReplyOutput output_;
    size_t line_ = 0;
    bool in_line_ = false;
    bool has_reader_ = true;
};

// Waits for the next line. Events are shown meanwhile, and a service that has gone is noticed.
LineReader::Result next_line(LineReader &reader, Shell &shell, const StopSignals &stop,
                             std::string_view &line)
{
    constexpr std::chrono::milliseconds kNow(0);
    for (;;) {
        const LineReader::Result read = reader.next(line, kNow);
        if (read != LineReader::Result::kNothing) {
            return read;
        }
        // Combined in one descriptor: the wait takes one in addition to the signals.
        const int both = epoll_create1(EPOLL_CLOEXEC);
        epoll_event input = {EPOLLIN, {}};
        epoll_ctl(both, EPOLL_CTL_ADD, STDIN_FILENO, &input);
        if (shell.descriptor() >= 0) {
            epoll_ctl(both, EPOLL_CTL_ADD, shell.descriptor(), &input);
        }
        const bool is_ready = stop.wait_for(both, POLLIN);
        close(both);
        if (!is_ready) {
            return LineReader::Result::kStopped;
        }
        if (shell.descriptor() >= 0) {
            shell.work();
        }
    }
}

// The exit status is that of the first line that failed; the remaining lines still run.
int run_script(const std::string &path)
{
    const StopSignals stop;
    ScriptUser user(stop);
    Shell shell(user, path, look_at(user.is_terminal()));
    shell.connect();
    LineReader reader(stop, kMaxLine);
    int status = kSuccess;
    std::string_view line;
    while (!shell.has_quit()) {
        const LineReader::Result read = next_line(reader, shell, stop, line);
        if (read == LineReader::Result::kEnd || read == LineReader::Result::kStopped) {
            break;
        }
        user.begin_line();
        ExitStatus of_line = kWrongUsage;
        if (read == LineReader::Result::kTooLong) {
            user.show("it is longer than " + std::to_string(kMaxLine) + " bytes");
        } else {
            of_line = shell.run(line);
        }
        user.end_line();
        status = status == kSuccess ? of_line : status;
        if (!user.has_reader()) {
            print_error("nobody reads the replies");
            return kCannotWrite;
        }
    }
    return stop.arrived() != 0 ? kSignalled + stop.arrived() : status;
}

// ---- Lines from a terminal ----------------------------------------------------------------------

class TerminalUser : public ShellUser {
  public:
    explicit TerminalUser(const std::string &path)
        : shell_(*this, path, look_at(true)),
          editor_(
              "hgagent> ", [this] { return wait_for_key(); },
              [this](std::string_view before) { return shell_.complete(before); })
    {
    }

    int run()
    {
        shell_.connect();
        shell_.greet();
        open_history();
        editor_.print_above("\"help\" shows what can be typed here.");
        std::string line;
        while (!shell_.has_quit() && signal_ == 0) {
            const LineEditor::Result read = editor_.read(line);
            if (read == LineEditor::Result::kEnd) {
                break;
            }
            if (read == LineEditor::Result::kLine) {
                remember(line);
                shell_.run(line);
            }
        }
        return signal_ != 0 ? kSignalled + signal_ : kSuccess;
    }

    bool wait_for(int descriptor, short events,
                  std::optional<ShellClock::time_point> until) override
    {
        while (signal_ == 0) {
            const Ready ready = wait({descriptor, events, 0}, until);
            if (ready.signal == SIGINT || (until && ShellClock::now() >= *until)) {
                return false;
            }
            if (ready.descriptor) {
                return true;
            }
        }
        return false;
    }

    void print(const std::string &text) override { editor_.print_above(text); }
    void show(const std::string &message) override
    {
        editor_.print_above("hgagent: " + one_line(message));
    }

  private:
    struct Ready {
        bool descriptor = false;
        bool key = false;
        int signal = 0;
    };

    Ready wait(pollfd other, std::optional<ShellClock::time_point> until, bool keys = false)
    {
        std::array<pollfd, 3> all = {other, pollfd{signals_.descriptor(), POLLIN, 0},
                                     pollfd{keys ? STDIN_FILENO : -1, POLLIN, 0}};
        if (poll(all.data(), all.size(), milliseconds_until(until)) < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "cannot wait for input");
        }
        Ready ready;
        ready.descriptor = all[0].revents != 0;
        ready.key = all[2].revents != 0;
        ready.signal = all[1].revents != 0 ? signals_.take() : 0;
        signal_ = ready.signal == SIGTERM ? SIGTERM : signal_;
        return ready;
    }

    static int milliseconds_until(std::optional<ShellClock::time_point> until)
    {
        if (!until) {
            return -1;
        }
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(*until - ShellClock::now()).count();
        return static_cast<int>(std::max<decltype(left)>(left, 0));
    }

    LineEditor::Wake wait_for_key()
    {
        for (;;) {
            const Ready ready =
                wait({shell_.descriptor(), shell_.wanted_events(), 0}, shell_.work_time(), true);
            if (ready.signal == SIGINT || ready.signal == SIGTERM) {
                return LineEditor::Wake::kGiveUp;
            }
            if (ready.signal != 0) {
                return LineEditor::Wake::kContinued;
            }
            if (ready.key) { // keys take precedence over what the service sends
                return LineEditor::Wake::kKey;
            }
            shell_.work();
        }
    }

    void open_history()
    {
        const std::string path = history_path();
        if (path.empty()) {
            return;
        }
        try {
            history_.emplace(path);
            for (const std::string &line : history_->lines()) {
                editor_.remember(line);
            }
        } catch (const std::runtime_error &problem) {
            print_error(problem.what());
        }
    }

    void remember(const std::string &line)
    {
        const std::string kept = without_secrets(line);
        if (kept.find_first_not_of(' ') == std::string::npos) {
            return;
        }
        editor_.remember(kept);
        try {
            if (history_) {
                history_->add(kept);
            }
        } catch (const std::runtime_error &problem) {
            print_error(problem.what());
            history_.reset();
        }
    }

    ShellSignals signals_;
    int signal_ = 0; // that ends the shell
    Shell shell_;
    LineEditor editor_;
    std::optional<ShellHistory> history_;
};

int run_shell(const std::optional<std::string> &socket)
{
    forbid_core_dumps(); // passwords are typed
    try {
        const std::string path = socket ? *socket : default_socket_path();
        if (isatty(STDIN_FILENO) == 0 || isatty(STDOUT_FILENO) == 0) {
            return run_script(path);
        }
        return TerminalUser(path).run();
    } catch (const ServiceError &problem) {
        print_error(std::string(problem.what()) + "; \"hgagent run\" starts a service");
        return kCannotLoad;
    }
}

} // namespace

void add_shell(CLI::App &app, Options &options)
{
    CLI::App *shell = app.add_subcommand(
        "shell", "Send typed commands to a running service, with completion and history");
    shell->add_option("--socket", options.socket, "Unix socket of the service")
        ->type_name("PATH")
        ->allow_extra_args(false);
    shell->footer(R"(
Without --socket it is $XDG_RUNTIME_DIR/hgagent.sock. "help" shows what can be typed. Standard input
that is not a terminal is read line by line; the exit status is that of the first line that failed.)");
    shell->callback([&app, &options] {
        refuse_library_options(app, "shell");
        options.subcommand = Subcommand::kOther;
        options.other = [socket = options.socket] {
            return run_shell(socket);
        };
    });
}

} // namespace agent
