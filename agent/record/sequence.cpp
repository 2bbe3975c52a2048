// SPDX-License-Identifier: MIT
#include "record/sequence.h"

#include "io/error_output.h"
#include "io/exit_status.h"
#include "io/text.h"
#include "protocol/json_text.h"
#include "record/thread_states.h"

#include <algorithm>
#include <chrono>
#include <unistd.h>

namespace agent::record {

namespace {

// How far ahead a step is looked for that comes too early, in lines and in their bytes: parsed, a
// line may need eighty times its size.
constexpr size_t kMostAhead = 2000;
constexpr size_t kMostAheadBytes = size_t{4} << 20;

// A plug-in that makes so many calls without one that was recorded may never stop.
constexpr size_t kMostUnrecorded = 100'000;

// Nothing moves if all threads are found blocked so many times in a row. Nothing that a replayed
// plug-in does takes time without using the processor.
constexpr std::chrono::milliseconds kBetweenLooks(50);
constexpr int kLooks = 20;

// An agent may have a thread for each command, and a recording does not say when a thread ends.
constexpr ptrdiff_t kMostRunners = 32;

// How long a thread that has made its last step is waited for before the next command.
constexpr std::chrono::microseconds kSettlePause(100);
constexpr int kMostSettlePauses = 10000;

std::string call_of(EventKind kind, std::string_view name)
{
    return kind == EventKind::kReply ? "reply" : std::string(name);
}

std::string text_or_empty(const cJSON *given)
{
    return given != nullptr ? print(given, {.raw_bytes = true}) : "{}";
}

} // namespace

thread_local Sequence::Presence Sequence::presence_;

Sequence::Presence::~Presence()
{
    if (sequence != nullptr) {
        sequence->leave(*player);
    }
}

// ---- The recording ------------------------------------------------------------------------------

bool Sequence::is_read(size_t at)
{
    try {
        while (ahead_.size() <= at && !problem_) {
            std::optional<Event> next = recording_.next();
            if (!next) {
                return false;
            }
            ahead_bytes_ += next->size;
            ahead_.push_back(std::move(*next));
        }
    } catch (const BadRecording &problem) { // the plug-in's threads must not receive it
        problem_ = problem;
    }
    return ahead_.size() > at;
}

Event Sequence::remove(size_t at)
{
    Event event = std::move(ahead_[at]);
    ahead_.erase(ahead_.begin() + static_cast<ptrdiff_t>(at));
    ahead_bytes_ -= event.size;
    return event;
}

// The next event; null at the end. What a thread that has ended was to do is missing.
Event *Sequence::front()
{
    while (is_read(0) && gone_.contains(ahead_.front().thread)) {
        report_missing(remove(0));
    }
    return ahead_.empty() ? nullptr : &ahead_.front();
}

void Sequence::pass_turn()
{
    ++progress_;
    turn_.notify_all();
    play_.notify_one();
}

// ---- Threads ------------------------------------------------------------------------------------

Sequence::Player &Sequence::this_player()
{
    if (presence_.player == nullptr) {
        presence_.player = &players_.emplace_back();
        presence_.sequence = this;
        presence_.player->place = last_command_;
    }
    return *presence_.player;
}

Sequence::Player *Sequence::player_of(int thread)
{
    const auto found = std::ranges::find(players_, thread, &Player::thread);
    return found != players_.end() ? &*found : nullptr;
}

void Sequence::leave(const Player &player)
{
    const Lock lock(mutex_);
    if (player.thread != kUnbound) {
        gone_.insert(player.thread);
    }
    players_.remove_if([&](const Player &other) { return &other == &player; });
    pass_turn();
}

bool Sequence::fits_better(const Player &player, const Event &first) const
{
    return std::ranges::any_of(players_, [&](const Player &other) {
        return &other != &player && other.thread == kUnbound && other.waits_for != nullptr &&
               other.waits_for->kind == first.kind && other.waits_for->name == first.name &&
               are_same(first.given.get(), other.waits_for->given);
    });
}

// A new thread of the plug-in is the one of the recording whose first step it makes.
bool Sequence::bind(Player &player, const Event &first)
{
    const Step &step = *player.waits_for;
    if (player_of(first.thread) != nullptr || first.kind == EventKind::kRequest ||
        first.kind != step.kind || first.name != step.name ||
        (!are_same(first.given.get(), step.given) && fits_better(player, first))) {
        return false;
    }
    player.thread = first.thread;
    return true;
}

// ---- Steps --------------------------------------------------------------------------------------

std::optional<Event> Sequence::take(const Step &step)
{
    Lock lock(mutex_);
    Player &player = this_player();
    player.waits_for = &step;
    ++progress_;
    std::optional<Event> taken;
    while (!is_decided(player, step, taken)) {
        turn_.wait(lock);
    }
    player.waits_for = nullptr;
    unrecorded_ = taken ? 0 : unrecorded_ + 1;
    if (unrecorded_ > kMostUnrecorded) {
        end_process(player);
    }
    calls_ += step.kind != EventKind::kReply ? 1 : 0;
    // How a command went on that was running when the recording was cut is not known.
    if (taken || front() != nullptr || (!recording_.is_cut() && !problem_)) {
        compare(player, step, taken ? &*taken : nullptr);
    }
    return taken;
}

// A command that does not return cannot be stopped in any other way.
void Sequence::end_process(const Player &player)
{
    print_error("the plug-in makes more than " + std::to_string(kMostUnrecorded) +
                " calls that were not recorded, in command " +
                std::to_string(player.place.command) + ", " + player.place.name);
    finish_error_output();
    _exit(kCommandFailed);
}

// Whether it is the turn of the step, or will never be.
bool Sequence::is_decided(Player &player, const Step &step, std::optional<Event> &taken)
{
    const Event *next = front();
    if (next == nullptr) {
        return true;
    }
    if (player.thread == kUnbound && !bind(player, *next)) {
        return false;
    }
    if (next->thread != player.thread) {
        return false;
    }
    std::optional<size_t> place = place_in_sequence(player, step);
    if (!place) {
        return true;
    }
    const bool is_first = *place == 0;
    for (size_t at = 0; at < *place;) {
        if (ahead_[at].thread == player.thread) {
            report_missing(remove(at));
            --*place;
        } else {
            ++at;
        }
    }
    if (*place == 0) {
        taken = remove(0);
    }
    if (*place == 0 || !is_first) {
        pass_turn();
    }
    return taken.has_value();
}

// Where the step is: the next one of the thread if it is of the same kind, or a later one of the
// same command that is the same.
std::optional<size_t> Sequence::place_in_sequence(const Player &player, const Step &step)
{
    std::optional<size_t> similar;
    bool is_next = true;
    const auto may_read = [this](size_t at) {
        return at < ahead_.size() || (at < kMostAhead && ahead_bytes_ < kMostAheadBytes);
    };
    for (size_t at = 0; may_read(at) && is_read(at); ++at) {
        const Event &event = ahead_[at];
        if (event.thread != player.thread) {
            continue;
        }
        if (event.kind == step.kind && event.name == step.name) {
            if (step.kind == EventKind::kReply || are_same(event.given.get(), step.given)) {
                return at;
            }
            similar = is_next ? at : similar;
        }
        if (event.kind == EventKind::kReply || event.kind == EventKind::kRequest) {
            break;
        }
        is_next = false;
    }
    return similar;
}

void Sequence::report_missing(const Event &event)
{
    const Player *player = player_of(event.thread);
    Place place = player != nullptr ? player->place : last_command_;
    if (player == nullptr || !player->runs_commands) {
        place.thread = std::to_string(event.thread);
    }
    place.call = call_of(event.kind, event.name);
    place.line = event.place;
    report_.add(place, {"", text_or_empty(event.given.get()), ""});
}

void Sequence::compare(const Player &player, const Step &step, const Event *event)
{
    Place place = player.place;
    if (!player.runs_commands) {
        place.thread = player.thread != kUnbound ? std::to_string(player.thread) : "a new one";
    }
    place.call = call_of(step.kind, step.name);
    if (event == nullptr) {
        const Event *next = front();
        place.line = next != nullptr ? next->place : "at the end";
        report_.add(place, {"", "", text_or_empty(step.given)});
        return;
    }
    place.line = event->place;
    find_differences(event->given.get(), step.given,
                     [&](const FieldDifference &difference) { report_.add(place, difference); });
}

// ---- Commands -----------------------------------------------------------------------------------

void Sequence::run_commands(Player &player)
{
    Lock lock(mutex_);
    presence_.player = &player; // not its sequence: the player stays until the end
    for (;;) {
        turn_.wait(lock, [&] { return stops_ || player.is_retired || player.request; });
        if (!player.request) {
            return;
        }
        lock.unlock();
        run_(*player.request);
        lock.lock();
        player.request.reset();
        pass_turn();
    }
}

// Starts the next command if it is its turn.
bool Sequence::dispatch(Lock &lock)
{
    const Event *next = front();
    if (next == nullptr || next->kind != EventKind::kRequest) {
        return false;
    }
    Player *player = player_of(next->thread);
    if (player != nullptr && (player->request || !player->runs_commands)) {
        return false;
    }
    settle(lock);
    next = front();
    if (player == nullptr) {
        retire_runner(lock);
        next = front();
        player = &players_.emplace_back();
        player->thread = next->thread;
        player->runs_commands = true;
        player->runner = std::thread([this, player] { run_commands(*player); });
    }
    player->place = {};
    player->place.command = ++commands_;
    player->place.name = next->name;
    player->place.request = shown_json(text_or_empty(next->given.get()));
    last_command_ = player->place;
    player->request = remove(0);
    pass_turn();
    return true;
}

// Ends an idle thread if there are many. A further command of it runs on a new one.
void Sequence::retire_runner(Lock &lock)
{
    if (std::ranges::count(players_, true, &Player::runs_commands) < kMostRunners) {
        return;
    }
    const auto idle = std::ranges::find_if(
        players_, [](const Player &player) { return player.runs_commands && !player.request; });
    if (idle == players_.end()) {
        return;
    }
    idle->is_retired = true;
    turn_.notify_all();
    lock.unlock();
    idle->runner.join();
    lock.lock();
    players_.erase(idle);
}

bool Sequence::is_idle() const
{
    return std::ranges::none_of(players_,
                                [](const Player &player) { return player.request.has_value(); });
}

bool Sequence::has_workers() const
{
    const auto runners =
        static_cast<size_t>(std::ranges::count(players_, true, &Player::runs_commands));
    return count_of_threads() > own_threads_ + runners;
}

// Waits until each worker waits for its turn, or has ended: the next command must find its locks as
// they were when it was recorded.
void Sequence::settle(Lock &lock)
{
    if (is_idle() && !has_workers()) {
        return;
    }
    lock.unlock();
    for (int pause = 0; pause < kMostSettlePauses && !are_others_blocked(); ++pause) {
        std::this_thread::sleep_for(kSettlePause);
    }
    lock.lock();
}

Sequence::Played Sequence::play()
{
    Lock lock(mutex_);
    own_threads_ = count_of_threads();
    int looks = 0;
    for (;;) {
        if (dispatch(lock)) {
            continue;
        }
        if (front() == nullptr && is_idle() && !has_workers()) {
            break;
        }
        const unsigned long before = progress_;
        play_.wait_for(lock, kBetweenLooks, [&] { return progress_ != before; });
        looks = progress_ == before && are_others_blocked() ? looks + 1 : 0;
        if (looks == kLooks) {
            looks = 0;
            if (!resolve_standstill()) {
                break;
            }
        }
    }
    end(lock);
    if (problem_) {
        throw BadRecording(*problem_);
    }
    // One that was not played to its end may have one.
    return {calls_, ahead_.empty() && recording_.is_cut()};
}

// All threads wait. Result: whether there is a step that lets them go on.
bool Sequence::resolve_standstill()
{
    const Event *next = front();
    if (next == nullptr) {
        return false;
    }
    const int thread = next->thread;
    if (next->kind == EventKind::kRequest) {
        const Player *player = player_of(thread);
        if (player == nullptr || player->request) {
            return false;
        }
        report_missing(remove(0));
        return true;
    }
    const auto newcomer = std::ranges::find_if(players_, [](const Player &player) {
        return player.thread == kUnbound && player.waits_for != nullptr;
    });
    if (player_of(thread) == nullptr && newcomer != players_.end()) {
        newcomer->thread = thread;
    } else {
        while (next != nullptr && next->kind != EventKind::kRequest &&
               (next->thread == thread || player_of(next->thread) == nullptr)) {
            report_missing(remove(0));
            next = front();
        }
    }
    pass_turn();
    return true;
}

// Ends the threads that run commands, except those whose command does not return.
void Sequence::end(Lock &lock)
{
    stops_ = true;
    turn_.notify_all();
    for (Player &player : players_) {
        if (player.request) {
            Place place = player.place;
            place.call = "reply";
            place.line = player.request->place;
            report_.add(place, {"", "", "\"the command does not return\""});
            player.runner.detach();
        } else if (player.runner.joinable()) {
            lock.unlock();
            player.runner.join();
            lock.lock();
        }
    }
}

} // namespace agent::record
