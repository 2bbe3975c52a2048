// SPDX-License-Identifier: MIT
// What a run has counted, as a whole and by intervals: for the table, the metrics and the report.
#pragma once

#include "fleet/platform/histogram.h"
#include "fleet/platform/platform.h"
#include "fleet/platform/process_watch.h"

#include <nlohmann/json.hpp>

#include <array>
#include <map>
#include <string>
#include <vector>

namespace agent::fleet::platform {

// How requests end; all of them together are the requests.
enum class Ending {
    kSuccess,    // as described, with success
    kFailure,    // as described, with the device's failure
    kError,      // of the service, such as denied
    kUnknown,    // a change whose outcome the service cannot know
    kInvalid,    // not as described
    kUnanswered, // within the time
    kDropped,    // never sent, since too many were open
    kWeak,       // unanswered, an error or invalid, by a gateway that has been given a fault
};
constexpr size_t kEndings = 8;
const char *name_of(Ending ending);

struct CommandCounts {
    std::array<uint64_t, kEndings> endings = {};
    Histogram times; // of those that were answered
};

class Statistics {
  public:
    Statistics();

    // For each request of the load.
    void count(const std::string &command, Ending ending, const std::string &code,
               Clock::duration time);
    // An answer that is not as described, or another finding; only the first ones are kept.
    void add_problem(std::string_view text);
    // Ends an interval. phase: what is done now.
    void end_interval(const std::string &phase, const Platform &platform,
                      const std::vector<ProcessWatch::Use> &uses);

    uint64_t requests() const;
    uint64_t count_of(Ending ending) const { return endings_[static_cast<size_t>(ending)]; }
    const Histogram &times() const { return times_; }
    const std::vector<std::string> &problems() const { return problems_; }

    // Of the last interval, with and without the names of its columns.
    std::string table_row() const;
    std::string table_head() const;
    std::string metrics(const Platform &platform) const;
    nlohmann::ordered_json to_json() const;

  private:
    struct Interval {
        double seconds = 0; // since the start, at its end
        double length = 0;  // seconds
        std::string phase;
        uint64_t requests = 0;
        uint64_t errors = 0; // all endings except success and failure
        uint64_t repetitions = 0;
        uint64_t announcements = 0;
        size_t up = 0;
        size_t open = 0;
        std::array<double, 4> percentiles = {}; // milliseconds
        double largest = 0;
        std::vector<double> processor; // shares of one processor
        std::vector<double> memory;    // bytes
    };

    const Clock::time_point begin_ = Clock::now();
    Clock::time_point interval_begin_ = begin_;
    std::map<std::string, CommandCounts> commands_;
    std::map<std::string, uint64_t> codes_;
    std::array<uint64_t, kEndings> endings_ = {};
    Histogram times_;
    Histogram interval_times_;
    Interval current_;
    PlatformCounts last_counts_;
    std::vector<ProcessWatch::Use> last_uses_;
    std::vector<Interval> intervals_;
    std::vector<std::string> problems_;
};

} // namespace agent::fleet::platform
