// SPDX-License-Identifier: MIT
// The command-specific behaviour when memory runs out: what its reply may lack or contain instead.
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
    const char *logged = nullptr; // what the log then says, where it has to say something
    Names told = {};              // of the lists, those of which an added key then tells
    Names added = {};             // keys that tell of what is left out
    Names before = {};            // keys that stay before a failure
    Names reasons = {};           // that are given of memory alone
    const char *called = nullptr; // the change of the device that goes before what fails
    bool keeps = true;            // whether what is kept elsewhere has to be there
    bool calls = true;            // whether every call has to be made
};

// The leeway of the subject; empty for most.
const Leeway &leeway_of(const Subject &subject);
