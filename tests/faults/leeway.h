// SPDX-License-Identifier: MIT
// What the reply of a command may lack, or contain instead, if memory runs out.
#pragma once

#include "subject.h"

#include <string_view>
#include <vector>

struct Leeway {
    using Names = std::vector<std::string_view>;

    const char *name; // of the subject, or else of its command
    const char *why;
    Names keys = {};              // that may be missing
    Names lists = {};             // that may be short of elements
    const char *logged = nullptr; // what the log must then contain, if anything
    Names reported = {};          // the lists whose truncation an added key reports
    Names added = {};             // keys that report what is omitted
    Names before = {};            // keys that precede a failure
    const char *called = nullptr; // the device change that precedes the failure
    bool keeps = true;            // whether the other output must be present
    bool calls = true;            // whether every call has to be made
};

// The leeway of the subject; empty for most.
const Leeway &leeway_of(const Subject &subject);
