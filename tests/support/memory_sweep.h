// SPDX-License-Identifier: MIT
// Runs a command or a report with every allocation failing in turn.
#pragma once

#include "failing_memory.h"

#include <cjson/cJSON.h>
#include <functional>
#include <string>

// Runs the command with allocation 0 failing, then 1, 2 … until no further allocation is needed:
// in the first round that one alone, in the second all that follow as well. Before each run the
// device and the log are reset and prepare() is called; after each run in which memory failed,
// check() gets the object; after every run finish() waits for what the command has left
// running. Result: the number of allocations of a run in which nothing fails, the same in both
// rounds. The traffic is not kept: no description covers failing memory.
using AfterFailure = std::function<void(const std::string &object, FailingMemory::Fail how)>;
size_t sweep_memory(
    const std::string &command, const std::string &request, const std::function<void()> &prepare,
    const AfterFailure &check, const std::function<void()> &finish = [] {});

// The same for another operation on an object, or on an array where the request is one.
size_t sweep_memory(
    const std::function<void(cJSON *)> &act, const std::string &request,
    const std::function<void()> &prepare, const AfterFailure &check,
    const std::function<void()> &finish = [] {});
