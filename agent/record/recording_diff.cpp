// SPDX-License-Identifier: MIT
#include "record/recording_diff.h"

#include "io/exit_status.h"
#include "io/pages.h"
#include "io/text.h"
#include "protocol/json_text.h"
#include "record/difference.h"
#include "record/json_members.h"
#include "record/recording_reader.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace agent::record {

namespace {

// How many commands are read ahead to find where two recordings continue alike.
constexpr size_t kMostCommandsAhead = 200;
// Longer lists of calls are compared one by one.
constexpr size_t kMostPairs = 4000000;

using Steps = std::vector<Event>;

// A command with its calls, or what a thread of the plug-in did by itself.
struct Episode {
    std::optional<Event> request;
    Steps steps; // with the reply
};

std::string title_of(const Episode &episode)
{
    return episode.request ? episode.request->name : "a thread of the plug-in";
}

// Whether they are to be compared: the same command, or a thread of each plug-in. A command may
// have any name.
bool are_counterparts(const Episode &left, const Episode &right)
{
    return left.request.has_value() == right.request.has_value() &&
           (!left.request || left.request->name == right.request->name);
}

// What is compared of a line: all but its times and numbers, and what the clock said.
Json comparable(const Event &event)
{
    if (event.kind == EventKind::kRequest || event.kind == EventKind::kReply) {
        return Json(event.given != nullptr ? cJSON_Duplicate(event.given.get(), 1) : nullptr);
    }
    Json copy(cJSON_Duplicate(event.line.get(), 1));
    for (const char *name : {"seq", "began", "thread", "time", "took"}) {
        cJSON_DeleteItemFromObjectCaseSensitive(copy.get(), name);
    }
    if (event.kind == EventKind::kService &&
        (event.name == "time" || event.name == "localtime_r")) {
        cJSON_DeleteItemFromObjectCaseSensitive(copy.get(), "arguments");
        cJSON_DeleteItemFromObjectCaseSensitive(copy.get(), "result");
    }
    return copy;
}

// Empty for a request or a reply without an object.
std::string compared_text(const Event &event, const Form &form = {})
{
    const Json compared = comparable(event);
    return compared != nullptr ? print(compared.get(), form) : "";
}

// The commands of a recording in the order of their requests, and behind those of each session its
// other threads.
class Episodes {
  public:
    explicit Episodes(const std::string &file) : recording_(file), sessions_(recording_.sessions())
    {
        next_session();
    }

    // The digests of the keys of the pseudonyms; empty for shown secrets.
    const std::string &key() const { return key_; }

    // Whether there are so many more, which are at(0), at(1) …
    bool has(size_t count)
    {
        while (complete_.size() < count && read()) {
        }
        return complete_.size() >= count;
    }
    const Episode &at(size_t place) const { return complete_[place]; }
    void drop_first() { complete_.pop_front(); }

  private:
    void next_session()
    {
        recording_.go_to(sessions_[session_++]);
        key_ = decoded_text(member(recording_.head().line.get(), "key")).value_or("");
    }

    bool read()
    {
        std::optional<Event> event = recording_.next();
        if (!event) {
            if (is_at_end_) {
                return false;
            }
            for (auto &[thread, episode] : open_) {
                complete_.push_back(std::move(episode));
            }
            open_.clear();
            is_at_end_ = session_ == sessions_.size();
            if (!is_at_end_) {
                next_session();
            }
            return true;
        }
        const int thread = event->thread;
        if (event->kind == EventKind::kRequest) {
            open_[thread].request = std::move(*event);
            return true;
        }
        const bool is_reply = event->kind == EventKind::kReply;
        open_[thread].steps.push_back(std::move(*event));
        if (is_reply) {
            complete_.push_back(std::move(open_[thread]));
            open_.erase(thread);
        }
        return true;
    }

    RecordingReader recording_;
    const std::vector<LineStart> sessions_;
    size_t session_ = 0;
    bool is_at_end_ = false;
    std::string key_;
    std::map<int, Episode> open_; // by thread
    std::deque<Episode> complete_;
};

class Diff {
  public:
    Diff(const std::string &left, const std::string &right)
        : left_(left), right_(right),
          report_({.shows_all = true, .in_colour = is_in_colour(), .expected = "A", .found = "B"},
                  count_)
    {
    }

    void run()
    {
        while (left_.has(1) || right_.has(1)) {
            const auto [in_left, in_right] = next_pair();
            for (size_t at = 0; at < in_left; ++at) {
                report_single(left_, true);
            }
            for (size_t at = 0; at < in_right; ++at) {
                report_single(right_, false);
            }
            if (left_.has(1) && right_.has(1) && are_counterparts(left_.at(0), right_.at(0))) {
                compare(left_.at(0), right_.at(0));
                left_.drop_first();
                right_.drop_first();
            }
        }
    }

    size_t count() const { return count_; }
    size_t commands() const { return commands_; }
    bool have_other_keys() const { return left_.key() != right_.key(); }

  private:
    // How many to pass in each so that both continue with the same command.
    std::pair<size_t, size_t> next_pair()
    {
        for (size_t sum = 0; sum <= kMostCommandsAhead; ++sum) {
            for (size_t in_left = 0; in_left <= sum; ++in_left) {
                const size_t in_right = sum - in_left;
                if (left_.has(in_left + 1) && right_.has(in_right + 1) &&
                    are_counterparts(left_.at(in_left), right_.at(in_right))) {
                    return {in_left, in_right};
                }
            }
        }
        return {left_.has(1) ? 1 : 0, right_.has(1) ? 1 : 0};
    }

    Place place_of(const Episode &episode) const
    {
        Place place;
        place.command = commands_;
        place.name = title_of(episode);
        if (episode.request) {
            place.request = shown_json(compared_text(*episode.request, {.raw_bytes = true}));
        }
        return place;
    }

    void report_single(Episodes &episodes, bool is_left)
    {
        ++commands_;
        const Episode &episode = episodes.at(0);
        Place place = place_of(episode);
        place.call = episode.request ? "the command" : "the thread";
        place.line = episode.request ? episode.request->place : episode.steps.front().place;
        const std::string whole =
            compared_text(episode.request ? *episode.request : episode.steps.front());
        report_.add(place, {"", is_left ? whole : "", is_left ? "" : whole});
        episodes.drop_first();
    }

    void compare(const Episode &left, const Episode &right)
    {
        ++commands_;
        const Place place = place_of(left);
        if (left.request) {
            compare(place, "request", &*left.request, &*right.request);
        }
        for (const auto &[in_left, in_right] : pairs_of(left.steps, right.steps)) {
            const Event &step = in_left != nullptr ? *in_left : *in_right;
            compare(place, step.kind == EventKind::kReply ? "reply" : step.name, in_left, in_right);
        }
    }

    void compare(Place place, const std::string &call, const Event *left, const Event *right)
    {
        const Json expected = left != nullptr ? comparable(*left) : nullptr;
        const Json found = right != nullptr ? comparable(*right) : nullptr;
        place.call = call;
        place.line = (left != nullptr ? left->place : "") +
                     (left != nullptr && right != nullptr ? ", " : "") +
                     (right != nullptr ? right->place : "");
        find_differences(expected.get(), found.get(), [&](const FieldDifference &difference) {
            report_.add(place, difference);
        });
    }

    static bool are_alike(const Event &left, const Event &right)
    {
        return left.kind == right.kind && left.name == right.name;
    }

    using Pair = std::pair<const Event *, const Event *>;

    // The steps side by side, as many as possible of the same function in both.
    static std::vector<Pair> pairs_of(const Steps &left, const Steps &right)
    {
        std::vector<Pair> pairs;
        size_t begin = 0;
        while (begin < left.size() && begin < right.size() &&
               are_alike(left[begin], right[begin])) {
            pairs.emplace_back(&left[begin], &right[begin]);
            ++begin;
        }
        const size_t rows = left.size() - begin;
        const size_t columns = right.size() - begin;
        // The length of the longest common sequence of what is left from a row and a column on.
        const bool is_aligned = rows * columns <= kMostPairs;
        std::vector<uint32_t> lengths(is_aligned ? (rows + 1) * (columns + 1) : 0);
        const auto length = [&](size_t row, size_t column) -> uint32_t & {
            return lengths[row * (columns + 1) + column];
        };
        for (size_t row = is_aligned ? rows : 0; row-- > 0;) {
            for (size_t column = columns; column-- > 0;) {
                length(row, column) =
                    are_alike(left[begin + row], right[begin + column])
                        ? length(row + 1, column + 1) + 1
                        : std::max(length(row + 1, column), length(row, column + 1));
            }
        }
        size_t row = 0;
        size_t column = 0;
        while (row < rows || column < columns) {
            const Event *in_left = row < rows ? &left[begin + row] : nullptr;
            const Event *in_right = column < columns ? &right[begin + column] : nullptr;
            if (in_left != nullptr && in_right != nullptr &&
                (are_alike(*in_left, *in_right) || !is_aligned)) {
                pairs.emplace_back(in_left, in_right);
                ++row;
                ++column;
            } else if (in_right == nullptr ||
                       (in_left != nullptr && length(row + 1, column) >= length(row, column + 1))) {
                pairs.emplace_back(in_left, nullptr);
                ++row;
            } else {
                pairs.emplace_back(nullptr, in_right);
                ++column;
            }
        }
        return pairs;
    }

    Episodes left_;
    Episodes right_;
    size_t count_ = 0;
    size_t commands_ = 0;
    DifferenceReport report_;
};

} // namespace

int run_diff(const std::string &left, const std::string &right)
{
    try {
        Diff diff(left, right);
        if (diff.have_other_keys()) {
            print_error("the recordings have different keys: each secret differs");
        }
        diff.run();
        const size_t count = diff.count();
        const int status =
            show(count_of(diff.commands(), "command") + ": " +
                 (count == 0 ? "no difference" : count_of(count, "difference")) + "\n");
        return status != kSuccess ? status : count == 0 ? kSuccess : kCommandFailed;
    } catch (const BadRecording &problem) {
        print_error(problem.what());
        return kWrongUsage;
    }
}

} // namespace agent::record
