// SPDX-License-Identifier: MIT
#include "fleet/fleet.h"

#include "fleet/gateway.h"
#include "fleet/limits.h"
#include "fleet/plan.h"
#include "fleet/screen.h"
#include "fleet/states.h"
#include "fleet/status.h"
#include "fleet/usage.h"
#include "host/plugin_host.h"
#include "io/error_output.h"
#include "io/exit_status.h"
#include "io/streams.h"
#include "io/text.h"
#include "protocol/log_sink.h"
#include "protocol/protocol.h"
#include "service/common/config_error.h"
#include "service/ways_in/mqtt/broker_connection.h"
#include "service/ways_in/mqtt/topics.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <deque>
#include <fcntl.h>
#include <malloc.h>
#include <optional>
#include <poll.h>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace agent::fleet {

namespace {

using Clock = std::chrono::steady_clock;
using service::WrongUsage;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr milliseconds kTick(250);
constexpr milliseconds kStartingTick(20);
// Gateways that start at once: more would only wait for each other and for the broker.
constexpr uint32_t kMostStarting = 64;
constexpr seconds kStartTime(10); // after it a gateway no longer counts as starting
constexpr milliseconds kFirstBackOff(1000);
constexpr milliseconds kLongestBackOff(60'000);
constexpr seconds kStableTime(60); // after it a gateway's next crash counts as its first
constexpr seconds kReports(3);
constexpr uint32_t kMostNamed = 10; // gateways that are named in the time above
constexpr uint32_t kFailuresAtStart = 3;
constexpr uint32_t kMemorySample = 32; // gateways each second
constexpr uint32_t kTimeSample = 500;  // the same
constexpr uint32_t kReconnectsPerSecond = 500;
constexpr milliseconds kLongestSpread(30'000);

// Memory that is shared with all children.
class SharedSlots {
  public:
    explicit SharedSlots(uint32_t count) : size_(count * sizeof(Slot))
    {
        void *memory =
            mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        if (memory == MAP_FAILED) {
            throw std::system_error(errno, std::generic_category(), "cannot share memory");
        }
        slots_ = static_cast<Slot *>(memory);
        std::uninitialized_default_construct_n(slots_, count);
    }
    ~SharedSlots() { munmap(slots_, size_); }
    SharedSlots(const SharedSlots &) = delete;
    SharedSlots &operator=(const SharedSlots &) = delete;

    Slot &operator[](uint32_t at) { return slots_[at]; }

  private:
    size_t size_;
    Slot *slots_;
};

struct Member {
    enum class State { kWaiting, kRunning, kOff, kFailed };
    State state = State::kWaiting;
    pid_t process = -1;
    Clock::time_point time; // of its start; unless it is running, of the next one
    milliseconds back_off{0};
    bool was_off = false;
    bool is_hung = false; // and has been killed
    std::chrono::nanoseconds processor_time{0};
};

service::Policy policy_of(const FleetOptions &options)
{
    constexpr size_t kMaxPolicy = 16UL * 1024 * 1024;
    return options.policy.empty()
               ? service::Policy::for_owner_only()
               : service::Policy::parse(read_all_of(options.policy, kMaxPolicy), options.policy);
}

// Throws WrongUsage.
CommonSettings common_settings(const FleetOptions &options)
{
    CommonSettings common;
    common.options = options;
    const service::BrokerAccess access = service::broker_access(options.broker);
    const bool is_local = std::ranges::all_of(access.brokers, &service::BrokerAddress::is_local);
    if (!is_local && options.policy.empty()) {
        throw WrongUsage("--broker: a broker on another machine needs a --policy: everybody who "
                         "may publish there could do everything");
    }
    common.is_trusted = is_local && options.policy.empty();
    common.policy = policy_of(options);
    common.reconnect_spread =
        options.reconnect_spread > 0
            ? milliseconds(static_cast<int64_t>(options.reconnect_spread * 1000))
            : std::min(kLongestSpread, milliseconds(1000) * options.count / kReconnectsPerSecond);
    return common;
}

Mix mix_of(const FleetOptions &options)
{
    try {
        return Mix(options.mix);
    } catch (const std::invalid_argument &problem) {
        throw WrongUsage("--scenario: " + std::string(problem.what()));
    }
}

int open_log(const std::string &file)
{
    const std::string path = file.empty() ? "/dev/null" : file;
    const int log = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
    if (log < 0) {
        throw std::system_error(errno, std::generic_category(), "--log: " + path);
    }
    return log;
}

std::string seconds_text(Clock::duration time)
{
    char text[32];
    snprintf(text, sizeof(text), "%.1f", std::chrono::duration<double>(time).count());
    return text;
}

class Fleet {
  public:
    explicit Fleet(const FleetOptions &options)
        : options_(options), common_(common_settings(options)), mix_(mix_of(options)),
          log_(open_log(options.log)), members_(options.count), slots_(options.count),
          screen_("fleet of " + std::to_string(options.count) + " gateways, " + id_of(0) + " to " +
                  id_of(options.count - 1) + ", on " + list_of_names(options.broker.brokers, true))
    {
        if (!options.states.empty()) {
            states_.emplace(options);
        }
    }

    int run()
    {
        load_in_advance(options_.host, mix_.scenarios());
        share_with_gateways();
        block_signals();
        start_time_ = Clock::now();
        while (!is_stopping_ || running_ > 0) {
            await();
            if (is_stopping_) {
                kill_late();
            } else {
                work();
            }
        }
        screen_.clear();
        return exit_status_;
    }

  private:
    std::string id_of(uint32_t at) const
    {
        return gateway_id(options_.prefix, options_.first + at);
    }

    // What gateways would otherwise compute each for itself.
    void share_with_gateways()
    {
        descriptions();
        events();
        secret_keys();
        service::load_mqtt_library();
        mallopt(M_ARENA_MAX, 1); // NOLINT(concurrency-mt-unsafe): alone
        malloc_trim(0);
        const rlimit none = {0, 0}; // thousands of crashes must not fill the disk
        setrlimit(RLIMIT_CORE, &none);
    }

    void block_signals()
    {
        sigset_t handled;
        sigemptyset(&handled);
        for (const int signal : {SIGCHLD, SIGTERM, SIGINT}) {
            sigaddset(&handled, signal);
        }
        sigprocmask(SIG_BLOCK, &handled, &old_mask_); // NOLINT(concurrency-mt-unsafe): alone
        signals_ = signalfd(-1, &handled, SFD_CLOEXEC | SFD_NONBLOCK);
        if (signals_ < 0) {
            throw std::system_error(errno, std::generic_category(), "cannot wait for signals");
        }
    }

    void await()
    {
        pollfd events[2] = {{signals_, POLLIN, 0}, {unwritten_error_output(), POLLOUT, 0}};
        const milliseconds tick = is_starting_ ? kStartingTick : kTick;
        poll(events, 2, static_cast<int>(tick.count()));
        if ((events[1].revents & POLLOUT) != 0) {
            write_more_error_output();
        }
        signalfd_siginfo info = {};
        while (read(signals_, &info, sizeof(info)) == sizeof(info)) {
            if (info.ssi_signo != SIGCHLD) {
                stop();
            }
        }
        reap();
    }

    void work()
    {
        const auto now = Clock::now();
        if (options_.churn) {
            follow_plan(now);
        }
        start_some(now);
        if (now - last_look_ >= kTick) {
            last_look_ = now;
            look(now);
        }
    }

    // ---- Starting ----------------------------------------------------------------------------

    uint32_t room_for_starts(Clock::time_point now)
    {
        uint32_t starting = 0;
        for (uint32_t at = 0; at < members_.size(); ++at) {
            const Member &member = members_[at];
            starting += member.state == Member::State::kRunning &&
                                slots_[at].phase != Slot::Phase::kUp &&
                                now - member.time < kStartTime
                            ? 1
                            : 0;
        }
        uint32_t room = starting < kMostStarting ? kMostStarting - starting : 0;
        if (options_.ramp > 0) {
            const double passed = std::chrono::duration<double>(now - last_start_).count();
            tokens_ = std::min(tokens_ + passed * options_.ramp, std::max(1.0, options_.ramp / 10));
            last_start_ = now;
            room = std::min(room, static_cast<uint32_t>(tokens_));
        }
        return room;
    }

    void start_some(Clock::time_point now)
    {
        is_starting_ = false;
        uint32_t room = room_for_starts(now);
        for (uint32_t at = 0; at < members_.size(); ++at) {
            const Member &member = members_[at];
            // One that has lost its power may not have been waited for yet.
            if (member.state == Member::State::kRunning || member.process > 0 ||
                member.time > now) {
                continue;
            }
            is_starting_ = true;
            if (room == 0 || !start(at)) {
                return;
            }
            --room;
            tokens_ -= 1;
        }
    }

    // Result: whether there is a process.
    bool start(uint32_t at)
    {
        Member &member = members_[at];
        GatewaySettings settings;
        settings.id = id_of(at);
        settings.number = options_.first + at;
        settings.scenario = mix_.scenario_of(options_.seed, settings.number);
        if (states_) {
            settings.state = states_->file_of(settings.number);
        }
        settings.faults = options_.host.faults;
        if (options_.churn) {
            for (std::string &fault : weakness_of(options_.seed, settings.number).faults()) {
                settings.faults.push_back(std::move(fault));
            }
        }
        settings.was_off = member.was_off;
        slots_[at].phase = Slot::Phase::kStarting;
        slots_[at].busy_until = 0;
        const pid_t parent = getpid();
        const pid_t process = fork();
        if (process < 0) {
            note_failure(settings.id +
                         " cannot be started: " + std::generic_category().message(errno));
            member.time = Clock::now() + kFirstBackOff;
            return false;
        }
        if (process == 0) {
            be_gateway(parent, settings, slots_[at]);
        }
        member.process = process;
        member.state = Member::State::kRunning;
        member.time = Clock::now();
        member.was_off = false;
        member.is_hung = false;
        member.processor_time = {};
        ++running_;
        return true;
    }

    [[noreturn]] void be_gateway(pid_t parent, const GatewaySettings &settings, Slot &slot) const
    {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) {
            _exit(kCannotLoad);
        }
        prctl(PR_SET_NAME, settings.id.c_str());
        close(signals_);
        std::signal(SIGINT, SIG_IGN); // of the terminal: the fleet decides what it means
        sigprocmask(SIG_SETMASK, &old_mask_, nullptr); // NOLINT(concurrency-mt-unsafe): alone
        dup2(log_, STDOUT_FILENO);
        dup2(log_, STDERR_FILENO);
        open_error_output();
        set_line_prefix(settings.id + ": ");
        int status = kCannotLoad;
        try {
            status = run_gateway(common_, settings, slot);
        } catch (const std::exception &problem) {
            slot.problem.set(problem.what());
            print_error(problem.what());
        }
        finish_error_output();
        _exit(status); // nothing of the fleet may be destroyed
    }

    // ---- Ending ------------------------------------------------------------------------------

    void reap()
    {
        int status = 0;
        rusage used = {};
        for (pid_t process = 0; (process = wait4(-1, &status, WNOHANG, &used)) > 0;) {
            const auto found = std::ranges::find(members_, process, &Member::process);
            if (found == members_.end()) {
                continue;
            }
            --running_;
            found->process = -1;
            dead_time_ += seconds(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
                          std::chrono::microseconds(used.ru_utime.tv_usec + used.ru_stime.tv_usec);
            found->processor_time = {};
            if (!is_stopping_) {
                take_end(static_cast<uint32_t>(found - members_.begin()), status);
            }
        }
    }

    void take_end(uint32_t at, int status)
    {
        Member &member = members_[at];
        if (member.state == Member::State::kOff) { // by plan; its time has been set
            return;
        }
        const auto now = Clock::now();
        if (now - member.time >= kStableTime) {
            member.back_off = milliseconds(0);
        }
        member.state = Member::State::kFailed;
        member.back_off = std::clamp(2 * member.back_off, kFirstBackOff, kLongestBackOff);
        const double jitter =
            random_fraction(options_.seed, at, static_cast<uint64_t>(status_.crashes));
        const auto pause = milliseconds(
            static_cast<int64_t>(static_cast<double>(member.back_off.count()) * (1 + jitter) / 2));
        member.time = now + pause;
        note_failure(id_of(at) + " " + count_end(at, status) + "; it starts again in " +
                     seconds_text(pause) + " s");
        if (!has_opened_ && ++failures_at_start_ >= std::min(kFailuresAtStart, options_.count)) {
            screen_.print("no gateway can be started: " + slots_[at].problem.get());
            exit_status_ = kCannotLoad;
            stop();
        }
    }

    // Result: how it ended, in words.
    std::string count_end(uint32_t at, int status)
    {
        Slot &slot = slots_[at];
        const bool was_starting = slot.phase == Slot::Phase::kStarting;
        if (members_[at].is_hung) {
            ++status_.hangs;
            return "hung in " + slot.command.get() + " and was killed";
        }
        if (was_starting && WIFEXITED(status)) {
            ++status_.failed_starts;
            return "cannot be started: " + slot.problem.get();
        }
        ++status_.crashes;
        const std::string when = slot.busy_until != 0 ? " in " + slot.command.get() : std::string();
        if (WIFSIGNALED(status)) {
            const char *name = sigdescr_np(WTERMSIG(status));
            return "was killed by signal " + std::to_string(WTERMSIG(status)) + " (" +
                   (name != nullptr ? name : "unknown") + ")" + when;
        }
        return "ended with exit status " + std::to_string(WEXITSTATUS(status)) + when;
    }

    // Each is in the gateways' log; of many at once only the first are shown.
    void note_failure(const std::string &text)
    {
        write_log(text);
        if (++failures_ <= kMostNamed) {
            screen_.print(text);
        }
    }

    void write_log(const std::string &text) const
    {
        const std::string line = "fleet: " + text + "\n";
        [[maybe_unused]] const ssize_t written = write(log_, line.data(), line.size());
    }

    void stop()
    {
        const auto now = Clock::now();
        const bool is_second = is_stopping_;
        if (!is_second) {
            is_stopping_ = true;
            kill_time_ = now + seconds(10) + milliseconds(5) * options_.count;
        }
        for (const Member &member : members_) {
            if (member.process > 0) {
                kill(member.process, is_second ? SIGKILL : SIGTERM);
            }
        }
    }

    void kill_late()
    {
        if (Clock::now() < kill_time_) {
            return;
        }
        for (const Member &member : members_) {
            if (member.process > 0) {
                kill(member.process, SIGKILL);
            }
        }
    }

    // ---- Faults by plan ----------------------------------------------------------------------

    void follow_plan(Clock::time_point now)
    {
        const auto time = std::chrono::duration_cast<Time>(now - start_time_);
        while (time >= next_minute_ * Time(60'000)) {
            for (const PowerLoss &loss :
                 power_losses(options_.seed, options_.first, options_.count, next_minute_)) {
                planned_.push_back(loss);
            }
            ++next_minute_;
        }
        for (; !planned_.empty() && planned_.front().time <= time; planned_.pop_front()) {
            lose_power(planned_.front());
        }
        while (time >= wave_time(options_.seed, next_wave_)) {
            cut_connections(next_wave_++);
        }
    }

    void lose_power(const PowerLoss &loss)
    {
        Member &member = members_[loss.number - options_.first];
        if (member.state != Member::State::kRunning) {
            return;
        }
        write_log(gateway_id(options_.prefix, loss.number) + " loses its power for " +
                  seconds_text(loss.off) + " s");
        ++status_.power_losses;
        kill(member.process, SIGKILL);
        member.state = Member::State::kOff;
        member.was_off = true;
        member.time = Clock::now() + loss.off;
    }

    void cut_connections(uint32_t wave)
    {
        uint32_t count = 0;
        for (uint32_t at = 0; at < members_.size(); ++at) {
            if (members_[at].state == Member::State::kRunning &&
                slots_[at].phase == Slot::Phase::kUp &&
                is_cut(options_.seed, options_.first + at, wave)) {
                kill(members_[at].process, SIGUSR1);
                ++count;
            }
        }
        ++status_.waves;
        write_log("a wave cuts the connections of " + std::to_string(count) + " gateways");
    }

    // ---- Looking -----------------------------------------------------------------------------

    void look(Clock::time_point now)
    {
        count_states();
        end_hung();
        report_all_up(now);
        if (now - last_second_ >= seconds(1)) {
            measure(now);
            last_second_ = now;
            screen_.show(table_of(status_));
            write_metrics();
        }
        if (now - last_report_ >= kReports) {
            last_report_ = now;
            report_troubles();
        }
    }

    void count_states()
    {
        status_.up = status_.connecting = status_.starting = status_.off = status_.failed = 0;
        status_.requests = status_.connections = status_.losses = status_.takeovers = 0;
        for (uint32_t at = 0; at < members_.size(); ++at) {
            const Slot &slot = slots_[at];
            status_.requests += slot.requests;
            status_.connections += slot.connections;
            status_.losses += slot.losses;
            status_.takeovers += slot.takeovers;
            switch (members_[at].state) {
            case Member::State::kWaiting:
                ++status_.starting;
                break;
            case Member::State::kOff:
                ++status_.off;
                break;
            case Member::State::kFailed:
                ++status_.failed;
                break;
            case Member::State::kRunning:
                has_opened_ = has_opened_ || slot.phase != Slot::Phase::kStarting;
                status_.up += slot.phase == Slot::Phase::kUp ? 1 : 0;
                status_.connecting += slot.phase == Slot::Phase::kConnecting ? 1 : 0;
                status_.starting += slot.phase == Slot::Phase::kStarting ? 1 : 0;
                break;
            }
        }
    }

    void end_hung()
    {
        const int64_t now = steady_milliseconds();
        for (uint32_t at = 0; at < members_.size(); ++at) {
            const int64_t until = slots_[at].busy_until;
            Member &member = members_[at];
            if (member.state == Member::State::kRunning && until != 0 && now > until &&
                !member.is_hung) {
                member.is_hung = true;
                kill(member.process, SIGKILL);
            }
        }
    }

    void report_all_up(Clock::time_point now)
    {
        const bool are_up = status_.up == options_.count;
        if (!are_up) {
            if (were_up_ && status_.up < options_.count - options_.count / 10) {
                were_up_ = false;
                down_since_ = now;
            }
            return;
        }
        if (!were_up_) {
            were_up_ = true;
            const auto since = down_since_ ? *down_since_ : start_time_;
            screen_.print(std::to_string(status_.up) + " of " + std::to_string(options_.count) +
                          " gateways are up" + (down_since_ ? " again" : "") + " after " +
                          seconds_text(now - since) + " s");
        }
    }

    void measure(Clock::time_point now)
    {
        const double passed = std::chrono::duration<double>(now - last_second_).count();
        status_.requests_per_second =
            static_cast<double>(status_.requests - last_requests_) / passed;
        last_requests_ = status_.requests;
        uint64_t bytes = 0;
        uint32_t sampled = 0;
        const auto count = static_cast<uint32_t>(members_.size());
        for (uint32_t step = 0; step < std::min(count, kTimeSample); ++step) {
            Member &member = members_[next_sample_];
            next_sample_ = (next_sample_ + 1) % count;
            if (member.process <= 0) {
                continue;
            }
            member.processor_time =
                processor_time_of(member.process).value_or(member.processor_time);
            if (sampled < kMemorySample) {
                const auto memory = private_memory_of(member.process);
                bytes += memory.value_or(0);
                sampled += memory ? 1 : 0;
            }
        }
        if (sampled > 0) {
            status_.memory_each = bytes / sampled;
        }
        std::chrono::nanoseconds time = dead_time_;
        for (const Member &member : members_) {
            time += member.processor_time;
        }
        const double all = std::chrono::duration<double>(time).count();
        status_.processors = std::max(0.0, all - status_.processor_seconds) / passed;
        status_.processor_seconds = all;
    }

    void write_metrics()
    {
        if (options_.metrics.empty()) {
            return;
        }
        const bool are_written = write_file(options_.metrics, metrics_of(status_));
        if (!are_written && !lacks_metrics_) {
            screen_.print("cannot write " + options_.metrics + ": " +
                          std::generic_category().message(errno));
        }
        lacks_metrics_ = !are_written;
    }

    // Replaces the file, so that a reader sees the old text or the new one.
    static bool write_file(const std::string &path, const std::string &text)
    {
        const std::string file = path + ".new";
        const int out = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        if (out < 0) {
            return false;
        }
        const ssize_t written = write(out, text.data(), text.size());
        const int error = written < 0 ? errno : ENOSPC;
        close(out);
        errno = error;
        return written == static_cast<ssize_t>(text.size()) &&
               rename(file.c_str(), path.c_str()) == 0;
    }

    void report_troubles()
    {
        if (failures_ > kMostNamed) {
            screen_.print("and " + std::to_string(failures_ - kMostNamed) +
                          " more gateways ended within " + std::to_string(kReports.count()) +
                          " s; --log FILE has them all");
        }
        failures_ = 0;
        report_takeovers();
        report_unconnected();
    }

    void report_takeovers()
    {
        const uint64_t more = status_.takeovers - std::exchange(last_takeovers_, status_.takeovers);
        if (more == 0) {
            return;
        }
        const auto of_one = [this](uint32_t at) {
            return slots_[at].takeovers > 0;
        };
        uint32_t at = 0;
        while (at + 1 < options_.count && !of_one(at)) {
            ++at;
        }
        screen_.print(
            std::to_string(more) +
            " connections were taken over by other clients with the same names, such as " +
            id_of(at) + ": is another fleet with these numbers on the broker?");
    }

    // What it is that keeps them from connecting, once.
    void report_unconnected()
    {
        if (status_.connecting == 0) {
            reported_.clear();
            return;
        }
        for (uint32_t at = 0; at < members_.size(); ++at) {
            if (members_[at].state != Member::State::kRunning ||
                slots_[at].phase != Slot::Phase::kConnecting) {
                continue;
            }
            const std::string problem = slots_[at].problem.get();
            const std::string text =
                std::to_string(status_.connecting) + " of " + std::to_string(options_.count) +
                " gateways have no connection, such as " + id_of(at) + ": " + problem;
            if (!problem.empty() && text != reported_) {
                reported_ = text;
                screen_.print(text);
            }
            return;
        }
    }

    const FleetOptions &options_;
    const CommonSettings common_;
    const Mix mix_;
    const int log_;
    std::optional<States> states_;
    std::vector<Member> members_;
    SharedSlots slots_;
    Screen screen_;
    int signals_ = -1;
    sigset_t old_mask_ = {};
    uint32_t running_ = 0; // processes
    int exit_status_ = kSuccess;

    bool is_starting_ = true;
    double tokens_ = 0;
    Clock::time_point start_time_;
    Clock::time_point last_start_ = Clock::now();
    bool has_opened_ = false; // a gateway has opened its home
    uint32_t failures_at_start_ = 0;

    bool is_stopping_ = false;
    Clock::time_point kill_time_;

    std::deque<PowerLoss> planned_; // of the minutes that have begun, by time
    uint32_t next_minute_ = 0;
    uint32_t next_wave_ = 0;

    Status status_;
    std::chrono::nanoseconds dead_time_{0}; // processor time of those that have ended
    uint64_t last_requests_ = 0;
    uint64_t last_takeovers_ = 0;
    uint32_t next_sample_ = 0;
    uint32_t failures_ = 0; // since the last report
    std::string reported_;
    bool lacks_metrics_ = false; // the last attempt to write them has failed
    bool were_up_ = false;
    std::optional<Clock::time_point> down_since_;
    Clock::time_point last_look_;
    Clock::time_point last_second_;
    Clock::time_point last_report_ = Clock::now();
};

// Throws WrongUsage.
void check(const FleetOptions &options)
{
    if (options.count > kLastNumber - options.first + 1) {
        throw WrongUsage("--first and --count: the last number is " + std::to_string(kLastNumber));
    }
    if (options.churn && options.states.empty()) {
        throw WrongUsage("--churn needs --states: a gateway that loses its power must find its "
                         "settings again");
    }
    // The last name is the longest.
    const std::string id = gateway_id(options.prefix, options.first + options.count - 1);
    std::string problem = service::problem_of_gateway_id(id);
    if (problem.empty()) {
        problem = service::problem_of_client_identifier(options.broker.root, id);
    }
    if (!problem.empty()) {
        throw WrongUsage("--prefix: " + problem);
    }
}

} // namespace

int run_fleet(const FleetOptions &options)
{
    try {
        check(options);
        const std::string problem = problem_of(limits_of_this_machine(), options.count);
        if (!problem.empty()) {
            print_error(problem);
            return kCannotLoad;
        }
        return Fleet(options).run();
    } catch (const WrongUsage &problem) {
        print_error(problem.what());
        return kWrongUsage;
    } catch (const service::ConfigError &wrong) {
        return service::report_problems(wrong);
    }
}

} // namespace agent::fleet
