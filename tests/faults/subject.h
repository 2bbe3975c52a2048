// SPDX-License-Identifier: MIT
// What the sweeps run: every command with a request that takes its longest path, and every builder
// that the agent calls by itself.
#pragma once

#include "rich_device.h"

#include <cjson/cJSON.h>
#include <cstdint>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

// A builder, run on an object; kept receives its other output. Result: 0 when it succeeded.
using Builder = int32_t (*)(cJSON *object, std::string &kept);

struct Subject {
    std::string name;    // in the tests' names: the command's or builder's, and the variant
    std::string command; // empty for a builder
    Builder builder = nullptr;
    rich_device::Home home = {};
};

inline void PrintTo(const Subject &subject, std::ostream *out)
{
    *out << subject.name;
}

// The name of its tests: the command as a suite of tests is named, GetWifiInfo for GET_WIFI_INFO,
// and the variant.
std::string name_of(const testing::TestParamInfo<Subject> &info);

// All of them: the commands are those of the dispatcher's own table.
const std::vector<Subject> &subjects();

// Those that are commands.
std::vector<Subject> commands();

// The request to run it with: the one that is written for it, else the example of its description.
// Empty when there is neither.
std::string request_for(const Subject &subject);

// The description of the command in protocol/commands; null when there is none. It lasts as long as
// the process.
const cJSON *description_of(const std::string &command);

// The description of the builder's report in protocol/reports, likewise.
const cJSON *report_of(const Subject &subject);

// Whether a loop of the command over a count from the device ends only at the count.
bool has_endless_walk(const Subject &subject);
