// SPDX-License-Identifier: MIT
// A device library that fills in the result of every call as completely as possible: each text has
// a value, each list two entries at least. One call of a run can be made to fail or to misbehave.
// The fields that it fills are read from device_access.h, so there is little to add here for a new
// function.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace rich_device {

// The values on which the mesh reports depend.
struct Home {
    const char *model = "HGU-AX3000";
    const char *area = "NORTH-07";
};

enum class Written {
    kWhole,    // everything, as it should be
    kNothing,  // the record stays zero
    kGarbage,  // any bytes, terminated or not
    kFull,     // each text fills its field completely, without a NUL
    kNoMemory, // null, or an empty list, in place of allocated memory, with a count above 0
    kNumber,   // one of the numbers is different
    kRubbish,  // each text as in kFull, and each number the same one
    kWidest,   // each text on which no path depends fills its field, with a different one in each
};

// What goes wrong in a run.
struct Fault {
    static constexpr size_t kNoCall = SIZE_MAX;

    size_t call = kNoCall; // the position of the call, from 0
    std::optional<int32_t> result = {};
    Written written = Written::kWhole;
    size_t number = 0; // which of the call's numbers, and its value
    int32_t value = 0;
    bool lasts = false; // continues in all following calls

    std::string name() const; // such as "3:result=-1"
};

// Answers for all device and host functions until recording_device is reset. Where no failure ends
// a loop over a count, the count is kLongWalk at most.
void set_up(const Home &home, const Fault &fault, bool has_endless_walk);

// After this many calls in a run the device fails, which ends every other loop over a count that
// the plug-in uses unchecked.
constexpr int32_t kLongWalk = 1000;

// Whether a function's calls are counted among those that may fail.
bool is_counted(std::string_view function);

// Whether the device has written the text, or as much of it as fits, to the field since it was set
// up; the field is named as in the descriptions, RECORD.FIELD or FUNCTION.ARGUMENT.
bool has_written(std::string_view field, std::string_view text);

// The functions, each with a field that was not zero before the device wrote to it, since it was
// set up.
const std::set<std::pair<std::string, std::string>> &given_fields();

// All faults possible in the calls since the device was set up.
std::vector<Fault> possible_faults();

// The bridge's MAC address, by which child routers know the main router.
constexpr char kBridgeMac[] = "3C:6A:D2:10:4F:20";

} // namespace rich_device
