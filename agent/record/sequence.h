// SPDX-License-Identifier: MIT
// The sequence of a recording over all its threads, which a replay enforces: each thread waits
// until it is its turn.
#pragma once

#include "record/difference.h"
#include "record/recording_reader.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <list>
#include <mutex>
#include <optional>
#include <set>
#include <string_view>
#include <thread>

namespace agent::record {

// What a thread is about to do.
struct Step {
    EventKind kind;
    std::string_view name;
    const cJSON *given; // what the plug-in passes
};

class Sequence {
  public:
    // Runs a recorded request on the calling thread and then takes the step of its reply.
    using RunRequest = std::function<void(const Event &request)>;

    Sequence(RecordingReader &recording, DifferenceReport &report, RunRequest run)
        : recording_(recording), report_(report), run_(std::move(run))
    {
    }
    Sequence(const Sequence &) = delete;
    Sequence &operator=(const Sequence &) = delete;

    struct Played {
        size_t calls = 0;    // of the device and of the host
        bool is_cut = false; // the recording has no end
    };
    // Plays the session. Threads of the plug-in may use the sequence until the process ends. Throws
    // BadRecording.
    Played play();

    // For any thread that the plug-in runs on: waits for the turn of the step and compares it with
    // the recording. Result: what was recorded; nothing if the recording has no such step.
    std::optional<Event> take(const Step &step);

  private:
    static constexpr int kUnbound = -1;

    // A thread that runs commands, or another one of the plug-in.
    struct Player {
        int thread = kUnbound; // its number in the recording
        const Step *waits_for = nullptr;
        Place place;
        bool runs_commands = false;
        std::optional<Event> request; // that is to be run, or is running
        bool is_retired = false;      // it runs no further command
        std::thread runner;
    };
    // Notices the end of a thread.
    struct Presence {
        Sequence *sequence = nullptr;
        Player *player = nullptr;
        ~Presence();
    };
    using Lock = std::unique_lock<std::mutex>;

    Event *front();
    bool is_read(size_t at);
    Event remove(size_t at); // of those read ahead
    void pass_turn();

    Player &this_player();
    Player *player_of(int thread);
    void leave(const Player &player);
    bool bind(Player &player, const Event &first);
    bool fits_better(const Player &player, const Event &first) const;

    bool is_decided(Player &player, const Step &step, std::optional<Event> &taken);
    std::optional<size_t> place_in_sequence(const Player &player, const Step &step);
    void report_missing(const Event &event);
    [[noreturn]] static void end_process(const Player &player);
    void compare(const Player &player, const Step &step, const Event *event);

    void run_commands(Player &player);
    bool dispatch(Lock &lock);
    void retire_runner(Lock &lock);
    void settle(Lock &lock);
    bool is_idle() const;
    bool has_workers() const;
    bool resolve_standstill();
    void end(Lock &lock);

    static thread_local Presence presence_;

    RecordingReader &recording_;
    DifferenceReport &report_;
    const RunRequest run_;

    std::mutex mutex_;             // guards everything below
    std::condition_variable turn_; // for the players
    std::condition_variable play_; // for the thread in play()
    std::deque<Event> ahead_;      // what has been read and not been taken
    size_t ahead_bytes_ = 0;       // of its lines
    std::list<Player> players_;
    std::optional<BadRecording> problem_; // which ends the recording
    std::set<int> gone_;                  // threads of the recording whose players have ended
    Place last_command_;
    unsigned long progress_ = 0;
    size_t own_threads_ = 0; // of the process, without the players
    bool stops_ = false;
    size_t commands_ = 0;
    size_t calls_ = 0;
    size_t unrecorded_ = 0; // steps since the last one that was recorded
};

} // namespace agent::record
