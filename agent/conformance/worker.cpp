// SPDX-License-Identifier: MIT
#include "conformance/worker.h"

#include "conformance/checks.h"
#include "io/text.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <poll.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

// Not every C library provides it.
extern "C" __attribute__((weak)) const char *sigabbrev_np(int signal) noexcept;

namespace agent {

namespace {

using Clock = std::chrono::steady_clock;

// The messages of the worker, one line each: a letter and a text.
enum Word : char {
    kUp = 'U',       // the libraries are loaded
    kNotUp = 'N',    // why not: exit status and message
    kBegins = 'B',   // a check
    kCalls = 'C',    // a function of the device library
    kAnswered = 'A', // the function has returned
    kReason = 'R',   // its reason for a failure
    kWarning = 'W',  // a possible mistake in it
    kFault = 'F',    // a fault in it
    kDetail = 'D',   // a line of the result
    kName = 'M',     // one of the names that the result counts
    kVerdict = 'V',  // the end of the check: its verdict
};

constexpr int kSignalCheck = 50;   // milliseconds between two checks for signals
constexpr size_t kMostFaults = 20; // of one check
constexpr size_t kMostReasons = 5;
constexpr size_t kMostWarnings = 5;

// The worker's end of the pipe.
class ResultPipe {
  public:
    explicit ResultPipe(int pipe) : pipe_(pipe) {}

    // One write per line, so that lines of several threads do not mix. A missing reader is ignored.
    void say(Word word, const std::string &text = "") const
    {
        const std::string line = static_cast<char>(word) + one_line(text, 1024) + '\n';
        if (write(pipe_, line.data(), line.size()) < 0) {
            return;
        }
    }

  private:
    int pipe_;
};

[[noreturn]] void work(const ResultPipe &results, const std::vector<Check> &checks, size_t first,
                       const HostOptions &options, const StopSignals &stop)
{
    try {
        CheckedHost host(options,
                         {[&](const std::string &function) { results.say(kCalls, function); },
                          [&] { results.say(kAnswered); },
                          [&](const std::string &reason) { results.say(kReason, reason); },
                          [&](const std::string &warning) { results.say(kWarning, warning); },
                          [&](const std::string &fault) {
                              results.say(kFault, fault);
                          }});
        results.say(kUp);
        for (size_t at = first; at < checks.size() && stop.arrived() == 0; ++at) {
            results.say(kBegins);
            const CheckResult result = host.run(checks[at]);
            for (const std::string &detail : result.details) {
                results.say(kDetail, detail);
            }
            for (const std::string &name : result.names) {
                results.say(kName, name);
            }
            results.say(kVerdict, word_for(result.verdict));
        }
    } catch (const HostError &problem) {
        results.say(kNotUp, std::to_string(problem.status()) + ' ' + problem.what());
    }
    fflush(nullptr);
    _exit(0); // threads of the library may still run
}

// A name such as ABRT. Realtime signals have no names; they are numbered from the first.
std::string name_of_signal(int signal)
{
    if (const char *name = sigabbrev_np != nullptr ? sigabbrev_np(signal) : nullptr) {
        return name;
    }
    return signal >= SIGRTMIN ? "RTMIN+" + std::to_string(signal - SIGRTMIN)
                              : std::to_string(signal);
}

// The process, and its messages about the current check.
class CheckProcess {
  public:
    CheckProcess(const std::vector<Check> &checks, size_t first, const HostOptions &host,
                 std::chrono::seconds patience, const StopSignals &stop)
        : stop_(stop), patience_(patience)
    {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            throw HostError(kCannotLoad, "no pipe: " + std::generic_category().message(errno));
        }
        process_ = fork();
        if (process_ == 0) {
            close(ends[0]);
            work(ResultPipe(ends[1]), checks, first, host, stop);
        }
        close(ends[1]);
        pipe_ = ends[0];
        if (process_ < 0) {
            close(pipe_);
            throw HostError(kCannotLoad, "no process: " + std::generic_category().message(errno));
        }
    }
    ~CheckProcess()
    {
        close(pipe_);
        if (process_ > 0) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
        }
    }
    CheckProcess(const CheckProcess &) = delete;
    CheckProcess &operator=(const CheckProcess &) = delete;

    // Throws HostError when it fails to start.
    void await_up()
    {
        const std::optional<std::string> line = next_line(deadline());
        if (!line) {
            throw HostError(kCannotLoad, "the libraries cannot be loaded: " + end_of_process());
        }
        if (line->c_str()[0] == kUp) {
            return;
        }
        char *message = nullptr;
        const long status = strtol(line->c_str() + 1, &message, 10);
        if (line->c_str()[0] != kNotUp || *message != ' ') {
            throw HostError(kCannotLoad,
                            "the libraries cannot be loaded: one of them has written \"" + *line +
                                "\" to a file that it has not opened");
        }
        throw HostError(static_cast<ExitStatus>(status), message + 1);
    }

    // The result of its next check; nothing when it was stopped before it.
    std::optional<CheckResult> next_result()
    {
        const Clock::time_point end = deadline();
        CheckResult result;
        std::vector<std::string> faults;
        std::vector<std::string> reasons;
        std::string function;
        bool began = false;
        while (true) {
            const std::optional<std::string> line = next_line(end);
            if (!line) {
                return began || stop_.arrived() == 0
                           ? std::optional(with_reasons(broken_off(faults, function), reasons))
                           : std::nullopt;
            }
            const std::string text = line->substr(std::min<size_t>(line->size(), 1));
            switch (line->c_str()[0]) {
            case kBegins:
                began = true;
                break;
            case kCalls:
                function = "in " + text;
                last_function_ = text;
                break;
            case kAnswered:
                function = "after " + last_function_;
                break;
            case kFault:
                add_new(faults, text, kMostFaults);
                break;
            case kWarning:
                add_new(result.warnings, text, kMostWarnings);
                break;
            case kReason:
                add_new(reasons, text, kMostReasons);
                break;
            case kDetail:
                result.details.push_back(text);
                break;
            case kName:
                result.names.push_back(text);
                break;
            default:
                return with_reasons(with_faults(verdict_of(text), result, faults), reasons);
            }
        }
    }

    bool is_alive() const { return process_ > 0; }

  private:
    Clock::time_point deadline() const { return Clock::now() + patience_; }

    // Any other text was written by the library.
    static Verdict verdict_of(const std::string &text)
    {
        for (const Verdict verdict :
             {Verdict::kPassed, Verdict::kNotSupported, Verdict::kSkipped}) {
            if (text == word_for(verdict)) {
                return verdict;
            }
        }
        return Verdict::kFailed;
    }

    static void add_new(std::vector<std::string> &texts, const std::string &text, size_t most)
    {
        if (texts.size() < most && std::find(texts.begin(), texts.end(), text) == texts.end()) {
            texts.push_back(text);
        }
    }

    // The library's reasons are added only if the check did not pass.
    static CheckResult with_reasons(CheckResult result, const std::vector<std::string> &reasons)
    {
        if (result.verdict == Verdict::kFailed || result.verdict == Verdict::kNotSupported) {
            for (const std::string &reason : reasons) {
                result.details.push_back("it says: " + reason);
            }
        }
        return result;
    }

    static CheckResult with_faults(Verdict verdict, CheckResult result,
                                   std::vector<std::string> faults)
    {
        if (faults.empty()) {
            result.verdict = verdict;
            return result;
        }
        if (verdict == Verdict::kFailed) {
            faults.insert(faults.end(), result.details.begin(), result.details.end());
        }
        return {Verdict::kFailed, std::move(faults), {}, std::move(result.warnings)};
    }

    CheckResult broken_off(std::vector<std::string> faults, const std::string &where)
    {
        const std::string how = end_of_process();
        faults.push_back(where.empty() ? how : how + " " + where);
        return {Verdict::kFailed, std::move(faults)};
    }

    // Kills the process if it is late, and describes how it ended.
    std::string end_of_process()
    {
        if (is_late_) {
            kill(process_, SIGKILL);
        }
        int status = 0;
        waitpid(process_, &status, 0);
        process_ = -1;
        if (is_late_) {
            return "it does not end within " + std::to_string(patience_.count()) + " seconds,";
        }
        if (WIFSIGNALED(status)) {
            return "it crashes (" + name_of_signal(WTERMSIG(status)) + ")";
        }
        return "it ends the process with status " + std::to_string(WEXITSTATUS(status));
    }

    // Nothing when the process has ended or exceeded its time.
    std::optional<std::string> next_line(Clock::time_point end)
    {
        size_t length = unread_.find('\n');
        while (length == std::string::npos) {
            pass_on_signal();
            if (Clock::now() >= end) {
                is_late_ = true;
                return std::nullopt;
            }
            pollfd wanted = {pipe_, POLLIN, 0};
            if (poll(&wanted, 1, kSignalCheck) <= 0) {
                continue;
            }
            char part[4096];
            const ssize_t count = read(pipe_, part, sizeof part);
            if (count <= 0) {
                return std::nullopt;
            }
            unread_.append(part, static_cast<size_t>(count));
            length = unread_.find('\n');
        }
        std::string line = unread_.substr(0, length);
        unread_.erase(0, length + 1);
        return line;
    }

    // Only a signal from a terminal reaches both processes.
    void pass_on_signal()
    {
        if (!is_stopping_ && stop_.arrived() != 0) {
            is_stopping_ = true;
            kill(process_, stop_.arrived());
        }
    }

    const StopSignals &stop_;
    const std::chrono::seconds patience_;
    pid_t process_ = -1;
    int pipe_ = -1;
    std::string unread_;
    std::string last_function_;
    bool is_late_ = false;
    bool is_stopping_ = false;
};

} // namespace

void run_checks(const std::vector<Check> &checks, const HostOptions &host,
                std::chrono::seconds patience, const StopSignals &stop,
                const std::function<void(const Check &, CheckResult)> &take)
{
    signal(SIGCHLD, SIG_DFL); // if it was ignored, a worker's exit status would be lost
    size_t next = 0;
    while (next < checks.size() && stop.arrived() == 0) {
        CheckProcess process(checks, next, host, patience, stop);
        process.await_up();
        while (next < checks.size() && process.is_alive()) {
            std::optional<CheckResult> result = process.next_result();
            if (!result) {
                return;
            }
            take(checks[next++], std::move(*result));
        }
    }
}

} // namespace agent
