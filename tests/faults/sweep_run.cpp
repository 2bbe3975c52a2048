// SPDX-License-Identifier: MIT
#include "sweep_run.h"

#include "clock_control.h"
#include "handler_test.h"
#include "worker_control.h"

#include <algorithm>

namespace {

// The calls in an order that does not depend on threads, and without addresses.
std::vector<recording_device::Call> comparable_calls()
{
    std::vector<recording_device::Call> calls = recording_device::calls();
    // A worker begins with a sleep, at any time while its command ends. What is freed was not there
    // to be used.
    std::erase_if(calls, [](const auto &call) {
        return call.function == "sleep" || call.function == "free_str_buf";
    });
    for (recording_device::Call &call : calls) {
        if (call.function.find("node") == std::string::npos &&
            call.function.find("topo") == std::string::npos) {
            continue;
        }
        for (std::string &argument : call.arguments) {
            // A node of a list ends in an address, with what the device library knows before it.
            if (argument.size() == sizeof(TopoNode)) {
                argument.resize(sizeof(TopoNode::level));
            } else if (argument.size() == sizeof(NodeBaseInfo)) {
                argument.resize(offsetof(NodeBaseInfo, next));
            }
        }
    }
    return calls;
}

// Prevents later runs from waiting for a lock that this run still holds.
void release_locks()
{
    for (pthread_mutex_t *lock : {&setwifilistlock, &downimagelock}) {
        pthread_mutex_trylock(lock);
        pthread_mutex_unlock(lock);
    }
}

bool reads_back(const std::string &text)
{
    const Json again(cJSON_ParseWithLength(text.data(), text.size()));
    return again != nullptr && print(again.get()) == text;
}

} // namespace

std::string MemoryFault::name() const
{
    return (how == FailingMemory::Fail::kOnce ? "once:" : "lastingly:") + std::to_string(first);
}

SweepRun sweep_run(const Subject &subject, const std::string &request,
                   const MemoryFault &memory_fault, const rich_device::Fault &device_fault)
{
    recording_device::reset();
    recording_host::reset();
    rich_device::set_up(subject.home, device_fault, has_endless_walk(subject));
    const ClockControl clock(1'700'000'000);
    WorkerControl control;
    control.count_everything();
    control.hold_sleeps(); // the command ends before its worker begins
    char version[HG_VERSION_INFO_SIZE] = "";
    info_wersion = version;

    SweepRun run;
    run.request = request;
    Json object = request.empty() ? nullptr : parse(request);
    FailingMemory memory(memory_fault.first, memory_fault.how);
    run.result = subject.builder != nullptr
                     ? subject.builder(object.get(), run.kept)
                     : hg_process_json_cmd(subject.command.c_str(), object.get());
    control.end_all_sleeps();
    control.wait_until_idle();
    memory.stop_failing();
    run.allocations = memory.allocations();
    run.object = print(object.get());
    run.kept += version;
    run.calls = comparable_calls();
    run.log = recording_host::log_lines();
    run.is_idle = control.is_idle();
    release_locks();
    run.is_json = reads_back(run.object);
    object.reset();
    run.blocks = memory.blocks();
    info_wersion = nullptr;
    return run;
}

bool SweepRun::succeeded(const Subject &subject) const
{
    const Json json = parse(object);
    const cJSON *status = nullptr; // the last one counts
    const cJSON *item;
    cJSON_ArrayForEach(item, json.get())
    {
        status = std::string_view(item->string) == "Status" ? item : status;
    }
    const bool says_so =
        cJSON_IsString(status) != 0 && std::string_view(status->valuestring) == "0";
    return result == 0 && (says_so || (subject.builder != nullptr && status == nullptr));
}
