// SPDX-License-Identifier: MIT
// One run of a subject with one fault, and its evaluation.
#pragma once

#include "failing_memory.h"
#include "recording_device.h"
#include "recording_host.h"
#include "subject.h"

#include <optional>
#include <string>
#include <vector>

struct SweepRun {
    std::string request;
    int32_t result = 0; // the dispatcher's or the builder's
    std::string object; // the object's contents afterwards
    std::string kept;   // output other than the object
    std::vector<recording_device::Call> calls;
    std::vector<recording_host::LogLine> log;
    size_t allocations = 0;
    size_t blocks = 0; // blocks that were not freed
    bool is_idle = false;
    bool is_json = false;

    // Whether it reports a success.
    bool succeeded(const Subject &subject) const;
};

// Which allocations fail.
struct MemoryFault {
    size_t first = SIZE_MAX;
    FailingMemory::Fail how = FailingMemory::Fail::kOnce;

    std::string name() const; // such as "once:17"
};

// An empty request means that no object is passed.
SweepRun sweep_run(const Subject &subject, const std::string &request, const MemoryFault &memory,
                   const rich_device::Fault &device);

// Whether a device function only reports something.
bool is_query(const std::string &function);

// What is wrong with a run, regardless of the fault; empty if nothing is.
std::string damage(const Subject &subject, const SweepRun &run);

// What is wrong with a run in which an allocation failed, compared with the complete run.
std::string memory_verdict(const Subject &subject, const SweepRun &whole, const SweepRun &run,
                           FailingMemory::Fail how);

// The function whose call has the fault.
const std::string &called_function(const SweepRun &whole, const rich_device::Fault &fault);

// Whether the subject ignores the result of the faulty call, so that it does the same for any
// result.
bool is_result_ignored(const Subject &subject, const SweepRun &whole,
                       const rich_device::Fault &fault);

// Which result counts as much as that of the fault, by the description of the function: -1 for a
// failure, 0 for none. Nothing if the result has a specific meaning.
std::optional<int32_t> equal_result(const Subject &subject, const SweepRun &whole,
                                    const rich_device::Fault &fault);

// What is wrong with a run in which the device failed, compared with the complete run.
std::string device_verdict(const Subject &subject, const SweepRun &whole, const SweepRun &run,
                           const rich_device::Fault &fault);
