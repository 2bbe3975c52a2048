// SPDX-License-Identifier: MIT
#include "service/worker/supervisor.h"

#include "io/text.h"
#include "protocol/json_text.h"

#include <algorithm>
#include <utility>

namespace agent::service {

namespace {

using std::chrono::milliseconds;

constexpr std::string_view kAnswerBegin = R"({"id":)";
constexpr std::string_view kEventBegin = R"({"event":")";
constexpr std::string_view kReadyQuestion = R"({"id":"ready","hello":{}})";
constexpr std::string_view kReadyAnswer = R"({"id":"ready","result":0,)";

constexpr std::chrono::seconds kCrashWindow(60);
constexpr size_t kManyCrashes = 5;
constexpr milliseconds kLongestBackOff(300'000);
constexpr size_t kMostEvents = 2000; // a second

constexpr size_t kMaxShown = 200;

std::string seconds_text(milliseconds time)
{
    std::string text = std::to_string(time.count() / 1000);
    const auto rest = time.count() % 1000;
    return rest == 0 ? text : text + "." + std::to_string(1000 + rest).substr(1);
}

// The text from the place to the next quote; names contain no escapes.
std::string_view name_at(std::string_view line, size_t place)
{
    return line.substr(place, line.find('"', place) - place);
}

// A member of an event's data, followed by a comma.
std::string member(const std::string &key, const std::string &text)
{
    return "\"" + key + "\":" + agent::quoted(text) + ",";
}

std::string_view text_member(std::string_view line, std::string_view key)
{
    const std::string member = "\"" + std::string(key) + "\":\"";
    const size_t at = line.find(member);
    return at == std::string_view::npos ? "" : name_at(line, at + member.size());
}

} // namespace

Supervisor::Supervisor(boost::asio::io_context &loop, std::unique_ptr<Worker> worker,
                       SupervisorListener &listener)
    : worker_(std::move(worker)), listener_(listener), timer_(loop)
{
}

void Supervisor::start()
{
    start_worker();
}

void Supervisor::start_worker()
{
    is_known_bad_ = false;
    background_.clear();
    try {
        worker_->start(*this);
    } catch (const WorkerError &problem) {
        if (!has_run_) {
            state_ = State::kNone;
            listener_.on_no_worker(problem.what(), -1);
            return;
        }
        print_error(std::string("the worker cannot be started: ") + problem.what());
        count_crash("");
        start_again();
        return;
    }
    state_ = State::kStarting;
    set_deadline(Clock::now() + times_.start);
    worker_->send(kReadyQuestion);
}

void Supervisor::run(const Request &request, milliseconds time)
{
    id_ = request.id;
    command_ = request.name;
    time_ = time;
    has_client_ = true;
    state_ = State::kRunning;
    set_deadline(Clock::now() + time);
    worker_->send(request.line);
}

void Supervisor::on_worker_line(std::string_view line)
{
    if (line.starts_with(kAnswerBegin)) {
        take_answer(line);
    } else if (line.starts_with(kEventBegin)) {
        take_event(line);
    } else {
        on_worker_fault("writes what is no answer: " + one_line(line, kMaxShown));
    }
}

void Supervisor::take_answer(std::string_view line)
{
    const std::string_view rest = line.substr(kAnswerBegin.size());
    switch (state_) {
    case State::kStarting:
        if (!line.starts_with(kReadyAnswer) || !line.ends_with('}')) {
            break;
        }
        has_run_ = true;
        is_late_ = false;
        refusal_.clear();
        deadline_.reset();
        state_ = State::kIdle;
        raise("worker.started", R"({"starts":)" + std::to_string(++starts_) + "}");
        listener_.on_change();
        return;
    case State::kRunning:
        // The worker answers a line that it could not read without its id.
        if (!line.ends_with('}') ||
            !((rest.starts_with(id_) && rest.substr(id_.size()).starts_with(",\"")) ||
              rest.starts_with("null,\"error\":"))) {
            break;
        }
        deadline_.reset();
        state_ = State::kIdle;
        has_client_ = false;
        listener_.on_answer(line);
        listener_.on_change();
        return;
    case State::kOverdue:
        print_error("the worker has answered " + command_ +
                    " after its time; the answer is dropped");
        deadline_.reset();
        refusal_.clear();
        state_ = State::kIdle;
        listener_.on_change();
        return;
    case State::kStopping:
        if (std::exchange(has_client_, false)) {
            listener_.on_answer(line);
        }
        return;
    default:
        break;
    }
    on_worker_fault("answers what was not asked: " + one_line(line, kMaxShown));
}

void Supervisor::take_event(std::string_view line)
{
    const auto now = Clock::now();
    if (now - second_began_ > std::chrono::seconds(1)) {
        second_began_ = now;
        events_in_second_ = 0;
    }
    if (++events_in_second_ > kMostEvents) {
        on_worker_fault("reports more than " + std::to_string(kMostEvents) + " events in a second");
        return;
    }
    const std::string_view name = name_at(line, kEventBegin.size());
    const bool has_ended = name == "background.ended";
    if (has_ended || name == "background.started") {
        const std::string_view worker = text_member(line, "worker");
        if (has_ended) {
            background_.erase(std::string(worker));
        } else {
            background_[std::string(worker)] = now;
        }
    }
    listener_.on_event(name, line);
    if (has_ended && background_.empty() && state_ == State::kOverdue) {
        on_overdue_command();
    }
}

void Supervisor::on_worker_fault(const std::string &fault)
{
    if (is_known_bad_ || state_ == State::kNone) {
        return;
    }
    is_known_bad_ = true;
    const bool was_running = state_ == State::kRunning;
    const std::string when = was_running ? " while it runs " + command_ : "";
    print_error("the worker " + fault + when + "; it is killed");
    count_crash(was_running ? member("command", command_) : "");
    if (was_running) {
        end_command(Code::kOutcomeUnknown, "the worker failed" + when);
    }
    kill_worker();
}

void Supervisor::kill_worker()
{
    is_known_bad_ = true;
    if (state_ != State::kStopping) {
        state_ = State::kEnding;
    }
    set_deadline(Clock::now() + times_.kill);
    worker_->kill();
}

void Supervisor::end_command(Code code, const std::string &text)
{
    has_client_ = false;
    listener_.on_no_answer(code, text);
}

void Supervisor::raise(std::string_view name, const std::string &data)
{
    listener_.on_event(name,
                       std::string(kEventBegin) + std::string(name) + R"(","data":)" + data + "}");
}

// known: what is known of the crash, as members of the event's data, each followed by a comma.
void Supervisor::count_crash(const std::string &known)
{
    ++crash_count_;
    const auto now = Clock::now();
    crashes_.push_back(now);
    while (now - crashes_.front() > kCrashWindow) {
        crashes_.pop_front();
    }
    raise("worker.crashed", "{" + known + R"("crashes":)" + std::to_string(crash_count_) + "}");
}

void Supervisor::on_worker_end(const WorkerEnd &end)
{
    if (state_ == State::kNone) {
        return; // too late: the service ends without it
    }
    const bool was_expected = is_known_bad_;
    for (const auto &[worker, since] : std::exchange(background_, {})) {
        print_error("the background worker " + worker + " is lost with its process");
        raise("background.lost", R"({"worker":)" + agent::quoted(worker) + "}");
    }
    deadline_.reset();
    if (state_ == State::kStopping) {
        if (has_client_) {
            end_command(Code::kOutcomeUnknown, "the service has stopped");
        }
        state_ = State::kNone;
        listener_.on_stopped();
        return;
    }
    if (!has_run_ && !was_expected && end.exit_status) {
        state_ = State::kNone;
        listener_.on_no_worker("the worker " + end.text, *end.exit_status);
        return;
    }
    if (!was_expected) {
        const bool was_running = state_ == State::kRunning || state_ == State::kOverdue;
        const std::string when = was_running ? " while it ran " + command_ : "";
        print_error("the worker " + end.text + when);
        count_crash(
            (end.signal ? R"("signal":)" + std::to_string(*end.signal) + "," : "") +
            (end.exit_status ? R"("status":)" + std::to_string(*end.exit_status) + "," : "") +
            (was_running ? member("command", command_) : ""));
        if (state_ == State::kRunning) {
            end_command(Code::kOutcomeUnknown, "the worker " + end.text + when);
        }
    }
    state_ = State::kEnding;
    start_again();
}

void Supervisor::start_again()
{
    const auto now = Clock::now();
    while (!crashes_.empty() && now - crashes_.front() > kCrashWindow) {
        crashes_.pop_front();
    }
    if (crashes_.size() < kManyCrashes) {
        back_off_ = milliseconds(0);
        if (!is_late_) {
            refusal_.clear();
        }
        start_worker();
        return;
    }
    back_off_ = std::clamp(back_off_ * 2, times_.back_off, kLongestBackOff);
    refusal_ = "the worker has crashed " + std::to_string(crashes_.size()) +
               " times within a minute and is started again in " + seconds_text(back_off_) +
               " seconds";
    print_error(refusal_);
    state_ = State::kBackingOff;
    raise("worker.backing-off", R"({"crashes":)" + std::to_string(crashes_.size()) +
                                    R"(,"seconds":)" + seconds_text(back_off_) + "}");
    set_deadline(now + back_off_);
    listener_.on_change();
}

// Setting a timer costs system calls. A timer that expires early enough is kept: on expiry it finds
// that there is time left, and is set again.
void Supervisor::set_deadline(Clock::time_point deadline)
{
    deadline_ = deadline;
    if (!armed_ || *armed_ > deadline) {
        arm(deadline);
    }
}

void Supervisor::arm(Clock::time_point deadline)
{
    armed_ = deadline;
    timer_.expires_at(deadline);
    timer_.async_wait([this](const boost::system::error_code &problem) {
        if (problem) {
            return;
        }
        armed_.reset();
        if (!deadline_) {
            return;
        }
        if (Clock::now() < *deadline_) {
            arm(*deadline_);
        } else {
            deadline_.reset();
            on_deadline();
        }
    });
}

void Supervisor::on_deadline()
{
    switch (state_) {
    case State::kStarting:
        on_late_start();
        break;
    case State::kEnding:
        // A process that waits for a device in the kernel ends only once that answers.
        refusal_ = "the worker was killed and has not ended yet";
        print_error(refusal_);
        listener_.on_change();
        break;
    case State::kRunning:
    case State::kOverdue:
        on_overdue_command();
        break;
    case State::kBackingOff:
        start_worker();
        break;
    case State::kStopping:
        if (!std::exchange(is_terminated_, true)) {
            worker_->terminate();
            set_deadline(Clock::now() + times_.finish);
        } else if (!is_known_bad_) {
            print_error("the worker does not end, and is killed");
            kill_worker();
        } else {
            print_error("the service ends without its worker, which was killed and has not ended");
            on_worker_end({});
        }
        break;
    default:
        break;
    }
}

// A worker that cannot be killed may still become ready.
void Supervisor::on_late_start()
{
    const std::string fault =
        "has not been ready within " + seconds_text(times_.start) + " seconds";
    is_late_ = true;
    refusal_ = "the worker " + fault;
    if (worker_->can_be_killed()) {
        refusal_ += ", and is started again";
        on_worker_fault(fault);
    } else {
        print_error(refusal_);
    }
    listener_.on_change();
}

// The command has exceeded its time. While a background worker is running, the process is kept
// until that worker has ended or exceeded its own time.
void Supervisor::on_overdue_command()
{
    const std::string problem =
        command_ + " has taken more than " + seconds_text(time_) + " seconds";
    const auto now = Clock::now();
    auto latest = Clock::time_point::min();
    for (const auto &[worker, since] : background_) {
        latest = std::max(latest, since + times_.background);
    }
    if (latest > now || !worker_->can_be_killed()) {
        if (state_ == State::kRunning) {
            print_error(problem);
            state_ = State::kOverdue;
            refusal_ = problem + ", and the worker cannot be started again yet";
            end_command(Code::kOutcomeUnknown, problem);
            listener_.on_change();
        }
        if (latest > now) {
            set_deadline(latest);
        }
        return;
    }
    print_error(problem + "; the worker is killed");
    if (state_ == State::kRunning) {
        end_command(Code::kTimeout, problem);
    }
    raise("worker.killed", R"({"command":)" + agent::quoted(command_) + R"(,"seconds":)" +
                               seconds_text(time_) + "}");
    refusal_.clear();
    kill_worker();
    listener_.on_change();
}

void Supervisor::stop()
{
    switch (state_) {
    case State::kNone:
    case State::kBackingOff:
        state_ = State::kNone;
        timer_.cancel();
        listener_.on_stopped();
        return;
    case State::kStopping:
        return;
    default:
        break;
    }
    state_ = State::kStopping;
    set_deadline(Clock::now() + times_.finish);
    worker_->finish();
}

void Supervisor::stop_now()
{
    if (state_ == State::kStopping) {
        worker_->kill();
    }
}

} // namespace agent::service
