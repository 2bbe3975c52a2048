// SPDX-License-Identifier: MIT
// Writes the lines of a recording in one sequence over all threads.
#pragma once

#include "record/line_text.h"
#include "record/pseudonyms.h"
#include "record/recording_file.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace agent::record {

struct RecordOptions {
    std::string file;
    uint64_t limit = 0;
    bool show_secrets = false;
    std::string mask_key; // file with the key of the pseudonyms; empty: a random key
    std::string program;  // of the head: what records, and the libraries
    std::string plugin;
    std::string device;
    bool agent_services = true; // whether all functions of host_agent.h are recorded
};

class Recorder {
  public:
    // Throws std::runtime_error.
    explicit Recorder(RecordOptions options);

    // Null if secrets are shown.
    const Pseudonyms *pseudonyms() const { return pseudonyms_.get(); }

    // Where a call of the plug-in begins in the sequence, and when.
    struct Begin {
        uint64_t after;
        std::chrono::steady_clock::time_point time;
    };
    Begin begin();
    // Writes the line of a call: its head and the members, which begin with a comma. None of these
    // throws, since the callers are the plug-in and the agent: without memory a line is lost, and
    // with it the recording ends.
    void add_call(const Begin &begin, const LineText &members) noexcept;
    void add_request(const LineText &members) noexcept;
    void add_reply(const LineText &members) noexcept;
    void end(const char *problem) noexcept;
    // The last line of a session that ends while no thread is in the plug-in. Nothing follows it.
    void finish() noexcept;

    // Writes what is kept in memory, within a signal handler.
    void flush_after_crash();

  private:
    using Clock = std::chrono::steady_clock;

    void add_head();
    void add_line(const Begin &begin, bool is_call, const LineText &members, int depth) noexcept;
    void write_line(const Begin &begin, const Clock::time_point *end, const LineText &members);
    void give_up(const std::string &problem) noexcept;
    int64_t since_start(Clock::time_point time) const;

    const RecordOptions options_;
    const std::string session_;
    const std::string started_;
    const Clock::time_point start_ = Clock::now();
    std::unique_ptr<const Pseudonyms> pseudonyms_;
    std::atomic<uint64_t> lines_ = 0; // of the session
    std::atomic<bool> is_lost_ = false;
    std::mutex mutex_; // guards what follows
    RecordingFile file_;
    LineText head_;
    int depth_ = 0; // requests that have not ended
    Clock::time_point flushed_;
};

} // namespace agent::record
