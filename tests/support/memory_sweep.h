// A command or a report run with every allocation failing in turn.
#pragma once

#include "failing_memory.h"

#include <cjson/cJSON.h>
#include <functional>
#include <string>

// Runs the command with allocation 0 failing, then 1, 2 … until a run needs no more of them: each
// time failing once, then in a second round lastingly. Before each run the device and the log are
// forgotten and prepare() is called; after each run in which memory failed, check() gets what the
// object holds; and after every run finish() waits for what the command has left running. Result:
// the number of allocations of a run in which nothing fails, the same in both rounds. The traffic
// is not kept: no description speaks of memory.
using AfterFailure = std::function<void(const std::string &object, FailingMemory::Fail how)>;
size_t sweep_memory(
    const std::string &command, const std::string &request, const std::function<void()> &prepare,
    const AfterFailure &check, const std::function<void()> &finish = [] {});

// The same for what else is done to an object, or to an array where the request is one.
size_t sweep_memory(
    const std::function<void(cJSON *)> &act, const std::string &request,
    const std::function<void()> &prepare, const AfterFailure &check,
    const std::function<void()> &finish = [] {});
