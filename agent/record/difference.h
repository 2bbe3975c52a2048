// SPDX-License-Identifier: MIT
// Differences between what was recorded and what happens in a replay, and their report.
#pragma once

#include <cjson/cJSON.h>

#include <cstddef>
#include <functional>
#include <string>

namespace agent::record {

// A difference between two JSON values, at the place that the path names: "info.list[2].SSID".
struct FieldDifference {
    std::string field;    // a very long path is truncated
    std::string expected; // JSON; empty where there is none
    std::string found;
};

// Null stands for an absent value. The order of the members of an object counts, and so do repeated
// ones.
bool are_same(const cJSON *left, const cJSON *right);

// Passes on each difference, in the order of the expected value. They are not collected: two lines
// of a recording may have hundreds of thousands.
void find_differences(const cJSON *expected, const cJSON *found,
                      const std::function<void(const FieldDifference &)> &report);

// JSON as a report shows it: on one line, and truncated.
std::string shown_json(const std::string &json);

// Where a difference occurred.
struct Place {
    size_t command = 0;  // its number in the recording, from 1; 0 before the first
    std::string name;    // of the command
    std::string request; // as shown_json() returns it; empty if there is none
    std::string thread;  // empty for the thread of the command
    std::string call;    // what differs: "devapi_get_sn_info", "reply", "log line"
    std::string line;    // where it is in the recording, "FILE:LINE"
};

// Prints differences on standard output: the first one, or all of them.
class DifferenceReport {
  public:
    struct Style {
        bool shows_all = false;
        bool in_colour = false;
        const char *expected = "expected";
        const char *found = "found";
    };

    // Differences are added to the count.
    DifferenceReport(const Style &style, size_t &count) : style_(style), count_(count) {}

    void add(const Place &place, const FieldDifference &difference);

  private:
    std::string text(const Place &place, const FieldDifference &difference) const;

    const Style style_;
    size_t &count_;
};

// "1 command", "2 commands".
std::string count_of(size_t count, const std::string &what);

// Whether differences are to be printed in colour: standard output is a terminal and NO_COLOR is
// not set.
bool is_in_colour();

} // namespace agent::record
