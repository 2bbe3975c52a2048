// SPDX-License-Identifier: MIT
#include "record/recorder.h"

#include "smart_router_service/device_access.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <exception>
#include <stdexcept>
#include <utility>

namespace agent::record {

namespace {

constexpr size_t kMostPending = 64UL * 1024;
constexpr std::chrono::milliseconds kMostDelay(10);

std::string random_name()
{
    const MaskKey bytes = random_key();
    LineText name;
    name.add_hex({reinterpret_cast<const char *>(bytes.data()), 8});
    return std::string(name.text());
}

std::string time_text()
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    tm parts = {};
    gmtime_r(&now.tv_sec, &parts);
    std::array<char, 32> text = {};
    strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text.data();
}

// The number of the calling thread.
uint64_t thread_number()
{
    static std::atomic<uint64_t> threads = 0;
    thread_local const uint64_t number = ++threads;
    return number;
}

} // namespace

Recorder::Recorder(RecordOptions options)
    : options_(std::move(options)), session_(random_name()), started_(time_text()),
      file_(options_.file, options_.limit)
{
    if (!options_.show_secrets) {
        pseudonyms_ = std::make_unique<const Pseudonyms>(
            options_.mask_key.empty() ? random_key() : key_of_file(options_.mask_key));
    }
    add_head();
    if (!file_.flush()) {
        throw std::runtime_error(file_.problem());
    }
}

int64_t Recorder::since_start(Clock::time_point time) const
{
    return std::chrono::duration_cast<std::chrono::microseconds>(time - start_).count();
}

void Recorder::add_head()
{
    LineText line;
    line.add('{');
    line.add_name("recording");
    line.add_number(1);
    line.add_name("program");
    line.add_text(options_.program);
    line.add_name("session");
    line.add_quoted(session_);
    line.add_name("seq");
    line.add_number(lines_.load());
    line.add_name("started");
    line.add_quoted(started_);
    line.add_name("interface");
    line.add_quoted(std::to_string(DEVICE_ACCESS_VERSION_MAJOR) + "." +
                    std::to_string(DEVICE_ACCESS_VERSION_MINOR));
    line.add_name("bits");
    line.add_number(8 * sizeof(void *));
    line.add_name("secrets");
    line.add_quoted(pseudonyms_ != nullptr ? "pseudonyms" : "shown");
    if (pseudonyms_ != nullptr) {
        line.add_name("key");
        line.add_quoted(pseudonyms_->key_digest());
    }
    if (!options_.agent_services) {
        line.add_name("agent_services");
        line.add("false");
    }
    for (const auto &[name, path] :
         {std::pair("plugin", &options_.plugin), std::pair("device", &options_.device)}) {
        if (!path->empty()) {
            line.add_name(name);
            line.add_text(*path);
        }
    }
    line.add('}');
    file_.add(line.text());
}

Recorder::Begin Recorder::begin()
{
    thread_number(); // threads have numbers in the order of their calls
    return {lines_.load(std::memory_order_relaxed), Clock::now()};
}

void Recorder::add_call(const Begin &begin, const LineText &members) noexcept
{
    add_line(begin, true, members, 0);
}

void Recorder::add_request(const LineText &members) noexcept
{
    add_line(begin(), false, members, 1);
}

void Recorder::add_reply(const LineText &members) noexcept
{
    add_line(begin(), false, members, -1);
}

void Recorder::add_line(const Begin &begin, bool is_call, const LineText &members,
                        int depth) noexcept
{
    try {
        const Clock::time_point end = is_call ? Clock::now() : begin.time;
        const std::lock_guard lock(mutex_);
        depth_ += depth;
        if (is_lost_) {
            return;
        }
        if (depth > 0 && file_.is_almost_full() && file_.rotate()) {
            add_head();
        }
        write_line(begin, is_call ? &end : nullptr, members);
        // Within a command, a write for each line would take too long; but a line must not wait in
        // memory while a call takes minutes.
        if (depth_ == 0 || file_.pending() > kMostPending || end > flushed_ + kMostDelay) {
            flushed_ = end;
            if (!file_.flush()) {
                give_up(file_.problem());
            }
        }
    } catch (const std::exception &problem) {
        this->end(problem.what());
    }
}

void Recorder::write_line(const Begin &begin, const Clock::time_point *end, const LineText &members)
{
    const uint64_t number = lines_.load(std::memory_order_relaxed) + 1;
    head_.cut(0);
    head_.add('{');
    head_.add_name("seq");
    head_.add_number(number);
    if (end != nullptr && begin.after + 1 != number) {
        head_.add_name("began");
        head_.add_number(begin.after);
    }
    head_.add_name("thread");
    head_.add_number(thread_number());
    head_.add_name("time");
    head_.add_number(since_start(begin.time));
    if (end != nullptr) {
        head_.add_name("took");
        head_.add_number(
            std::chrono::duration_cast<std::chrono::microseconds>(*end - begin.time).count());
    }
    head_.add(',');
    if (head_.size() + members.size() > kMostLineBytes) {
        throw std::length_error("a line would be longer than " + std::to_string(kMostLineBytes) +
                                " bytes");
    }
    if (file_.is_full(head_.size() + members.size()) && file_.rotate()) {
        add_head();
    }
    file_.add(head_.text(), members.text());
    lines_.store(number, std::memory_order_relaxed);
}

void Recorder::end(const char *problem) noexcept
{
    try {
        const std::lock_guard lock(mutex_);
        file_.flush();
        give_up(options_.file + ": " + problem);
    } catch (const std::exception &) {
        is_lost_ = true;
    }
}

void Recorder::finish() noexcept
{
    LineText members;
    try {
        members.add_name("end");
        members.add("true}");
    } catch (const std::exception &problem) {
        end(problem.what());
    }
    add_line(begin(), false, members, 0);
    is_lost_ = true;
}

void Recorder::give_up(const std::string &problem) noexcept
{
    if (!is_lost_.exchange(true)) {
        fprintf(stderr, PROGRAM_NAME ": %s; the recording ends here\n", problem.c_str());
    }
}

void Recorder::flush_after_crash()
{
    // A thread that holds the lock may be changing what is pending, or be the one that crashed.
    if (mutex_.try_lock()) {
        file_.flush_after_crash();
    }
}

} // namespace agent::record
