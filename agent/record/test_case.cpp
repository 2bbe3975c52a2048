// SPDX-License-Identifier: MIT
#include "record/test_case.h"

#include "io/exit_status.h"
#include "io/pages.h"
#include "io/text.h"
#include "protocol/json_text.h"
#include "protocol/protocol.h"
#include "record/json_members.h"
#include "record/recording_reader.h"

#include <algorithm>
#include <deque>
#include <map>
#include <new>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace agent::record {

namespace {

// No test depends on them.
constexpr char kNoDate[] = "1970-01-01T00:00:00Z";
constexpr char kNoSession[] = "0000000000000000";

void set_number(cJSON *line, const char *key, int value)
{
    cJSON *number = cJSON_GetObjectItemCaseSensitive(line, key);
    if (cJSON_IsNumber(number) != 0) {
        cJSON_SetNumberValue(number, value);
    }
}

void set_text(cJSON *line, const char *key, const char *value)
{
    cJSON *text = cJSON_GetObjectItemCaseSensitive(line, key);
    if (text != nullptr &&
        cJSON_ReplaceItemInObjectCaseSensitive(line, key, cJSON_CreateString(value)) == 0) {
        throw std::bad_alloc();
    }
}

// Writes lines with new numbers, and without what depends on the time and the machine.
class Writer {
  public:
    void head(cJSON *line)
    {
        set_number(line, "seq", 0);
        set_text(line, "started", kNoDate);
        set_text(line, "session", kNoSession);
        cJSON_DeleteItemFromObjectCaseSensitive(line, "plugin");
        cJSON_DeleteItemFromObjectCaseSensitive(line, "device");
        threads_.clear();
        next_ = 1;
        write(line);
    }
    void event(Event event)
    {
        cJSON *line = event.line.get();
        set_number(line, "seq", next_++);
        set_number(line, "time", 0);
        set_number(line, "took", 0);
        cJSON_DeleteItemFromObjectCaseSensitive(line, "began");
        const int thread = static_cast<int>(threads_.size()) + 1;
        set_number(line, "thread", threads_.try_emplace(event.thread, thread).first->second);
        write(line);
    }
    void end()
    {
        if (next_ > 1) {
            status_ = show(R"({"seq":)" + std::to_string(next_) +
                           R"(,"thread":1,"time":0,"end":true})"
                           "\n");
        }
    }
    int status() const { return status_; }

  private:
    void write(const cJSON *line)
    {
        if (status_ == kSuccess) {
            status_ = show(print(line, {.raw_bytes = true}) + "\n");
        }
    }

    std::map<int, int> threads_; // new numbers by old ones
    int next_ = 1;
    int status_ = kSuccess;
};

// A command, or another request.
struct Request {
    size_t number = 0;
    int64_t seq = 0;
    const Description *description = nullptr; // null unless it is a known command

    bool may_call(const std::string &function) const
    {
        if (description == nullptr) {
            return false;
        }
        const std::vector<std::string> calls = (*description)["device_calls"].texts();
        return std::ranges::find(calls, function) != calls.end();
    }
};

// Which request of a session has started each of the threads that run no requests. A recording does
// not say so: it is the last one before the thread's first call that may call the same function of
// the device.
class Workers {
  public:
    void add(const Event &event, size_t number)
    {
        if (event.kind == EventKind::kRequest) {
            requests_.push_back({number, number_in(event.line.get(), "seq").value_or(0),
                                 find_description(event.name)});
            if (requests_.size() > kMostRequests) {
                requests_.pop_front();
            }
            runners_.insert(event.thread);
            return;
        }
        if (runners_.contains(event.thread) || starters_.contains(event.thread)) {
            return;
        }
        if (!candidates_.contains(event.thread)) {
            candidates_[event.thread] = requests_before(event);
        }
        if (event.kind == EventKind::kCall) {
            starters_[event.thread] = starter(candidates_[event.thread], event.name);
            candidates_.erase(event.thread);
        }
    }

    bool has(int thread) const { return !runners_.contains(thread); }
    // The number of the request; 0 if there is none.
    size_t starter_of(int thread) const
    {
        const auto known = starters_.find(thread);
        if (known != starters_.end()) {
            return known->second;
        }
        const auto guessed = candidates_.find(thread);
        return guessed == candidates_.end() || guessed->second.empty()
                   ? 0
                   : guessed->second.back().number;
    }

  private:
    using Requests = std::deque<Request>;
    // A thread makes its first call soon.
    static constexpr size_t kMostRequests = 16;

    Requests requests_before(const Event &event) const
    {
        const int64_t seq = number_in(event.line.get(), "seq").value_or(0);
        const int64_t begin = number_in(event.line.get(), "began").value_or(seq - 1);
        Requests before = requests_;
        while (!before.empty() && before.back().seq > begin) {
            before.pop_back();
        }
        return before;
    }

    static size_t starter(const Requests &candidates, const std::string &function)
    {
        for (auto request = candidates.rbegin(); request != candidates.rend(); ++request) {
            if (request->may_call(function)) {
                return request->number;
            }
        }
        return candidates.empty() ? 0 : candidates.back().number;
    }

    Requests requests_;
    std::set<int> runners_;
    std::map<int, Requests> candidates_;
    std::map<int, size_t> starters_;
};

// Writes the events of a session that belong to one request, or all.
class Slice {
  public:
    Slice(size_t wanted, Writer &writer) : wanted_(wanted), writer_(writer) {}

    // The number of the requests so far is added to.
    void write(RecordingReader &recording, const LineStart &start, size_t &requests)
    {
        Workers workers;
        if (wanted_ != 0) {
            size_t number = requests;
            recording.go_to(start);
            recording.head();
            while (const std::optional<Event> event = recording.next()) {
                number += event->kind == EventKind::kRequest ? 1 : 0;
                workers.add(*event, number);
            }
        }
        recording.go_to(start);
        const Event head = recording.head();
        bool has_head = false;
        while (std::optional<Event> event = recording.next()) {
            requests += event->kind == EventKind::kRequest ? 1 : 0;
            if (!is_wanted(*event, requests, workers)) {
                continue;
            }
            if (!std::exchange(has_head, true)) {
                writer_.head(head.line.get());
            }
            writer_.event(std::move(*event));
        }
        has_found_ = has_found_ || has_head;
        if (has_head && !recording.is_cut()) {
            writer_.end();
        }
    }

    bool has_found() const { return has_found_; }

  private:
    bool is_wanted(const Event &event, size_t number, const Workers &workers)
    {
        if (wanted_ == 0) {
            return true;
        }
        if (workers.has(event.thread)) {
            return workers.starter_of(event.thread) == wanted_;
        }
        if (event.kind == EventKind::kRequest && number == wanted_) {
            running_ = event.thread;
        }
        const bool is_of_request = event.thread == running_;
        if (is_of_request && event.kind == EventKind::kReply) {
            running_ = 0;
        }
        return is_of_request;
    }

    const size_t wanted_;
    Writer &writer_;
    int running_ = 0; // the thread of the wanted request until its reply
    bool has_found_ = false;
};

int write_test(const TestCaseOptions &options)
{
    RecordingReader recording(options.file);
    Writer writer;
    Slice slice(options.command, writer);
    size_t requests = 0;
    for (const LineStart &start : recording.sessions()) {
        slice.write(recording, start, requests);
        if (writer.status() != kSuccess || (slice.has_found() && options.command != 0)) {
            return writer.status();
        }
    }
    if (!slice.has_found()) {
        throw BadRecording(options.file +
                           (options.command == 0
                                ? " has no commands"
                                : " has no command " + std::to_string(options.command)));
    }
    return writer.status();
}

} // namespace

int run_make_test(const TestCaseOptions &options)
{
    try {
        return write_test(options);
    } catch (const BadRecording &problem) {
        print_error(problem.what());
        return kWrongUsage;
    }
}

} // namespace agent::record
