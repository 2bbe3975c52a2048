// SPDX-License-Identifier: MIT
// Failure as a dimension of every command and builder: each allocation fails in turn, and each call
// of the device fails or misbehaves in every way. A failing case prints the line that repeats it
// alone, also when the case ends the program: the environment variable FAULT_CASE names it.
#include "exceptions.h"
#include "handler_test.h"
#include "log_lines.h"
#include "protocol/described_reply.h"
#include "smart_router_service/device_functions.h"
#include "sweep_run.h"
#include "traffic.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/common_interface_defs.h>
#endif

namespace sweep_test {

using rich_device::Fault;

// ---- Figures -----------------------------------------------------------------------------------

size_t allocations_swept;
size_t calls_swept;
size_t cases_run;

// Prints the figures of a run of the whole program.
class Figures : public testing::Environment {
  public:
    void TearDown() override
    {
        printf("%zu allocations, %zu device calls, %zu cases\n", allocations_swept, calls_swept,
               cases_run);
    }
};
const testing::Environment *const figures = testing::AddGlobalTestEnvironment(new Figures);

// ---- The case that runs ------------------------------------------------------------------------

std::string running;

std::string repeating_line()
{
    const auto *test = testing::UnitTest::GetInstance()->current_test_info();
    return "repeat: FAULT_CASE=" + running + ' ' + program_invocation_name +
           " --gtest_filter=" + test->test_suite_name() + '.' + test->name();
}

#ifdef __SANITIZE_ADDRESS__
void print_last_case()
{
    if (!running.empty()) {
        fprintf(stderr, "%s\n", repeating_line().c_str());
    }
}
#endif

// ---- Cases -------------------------------------------------------------------------------------

class FaultTest : public testing::TestWithParam<Subject> {
  protected:
    // Runs the subject untouched.
    void SetUp() override
    {
#ifdef __SANITIZE_ADDRESS__
        __sanitizer_set_death_callback(print_last_case);
#endif
        request = request_for(subject);
        ASSERT_NE(request, "") << "there is no rich request for " << subject.name;
        whole = sweep_run(subject, request, {}, {});
        ASSERT_EQ(damage(subject, whole), "") << whole.object;
        ASSERT_TRUE(whole.succeeded(subject)) << whole.object;
    }

    void TearDown() override
    {
        running.clear();
        EXPECT_TRUE(only == nullptr || cases > 0) << "this test has no such case";
        cases_run += cases;
        printf("%zu cases\n", cases);
    }

    // Starts a case. Result: whether it is to be run.
    bool is_wanted(const std::string &name)
    {
        const bool wanted = only == nullptr || name == only;
        cases += wanted;
        running = name;
        return wanted;
    }

    // Reports what is wrong with the case. Result: whether it passed.
    static bool passes(const SweepRun &expected, const SweepRun &run, const std::string &verdict)
    {
        if (!verdict.empty()) {
            ADD_FAILURE() << verdict << "\n  with it: " << run.object.substr(0, 2000)
                          << "\n  without: " << expected.object.substr(0, 2000) << "\n  "
                          << repeating_line();
        }
        return verdict.empty();
    }

    // For the check of all traffic against the descriptions, most of which do not mention memory.
    void keep_traffic(const SweepRun &run) const
    {
        const Json sent = parse(run.request);
        const Json object = parse(run.object);
        if (subject.builder == nullptr && agent::reply_given(description_of(subject.command),
                                                             sent.get(), object.get()) != nullptr) {
            record_traffic(subject.command, run.request, run.object);
        }
    }

    // Checks that the lines are those that the subject is known to log, and a builder's results.
    void check_lines(const char *kind) const
    {
        if (only == nullptr) {
            EXPECT_EQ(other_log_lines(subject, kind, lines), "");
        }
    }

    const Subject &subject = GetParam();
    LinesLogged lines;
    const char *const only = getenv("FAULT_CASE");
    std::string request;
    SweepRun whole;
    size_t cases = 0;
};

class MemoryFaultTest : public FaultTest {
  protected:
    // Fails each allocation of an otherwise identical run, up to the first failing case. Result:
    // whether all passed.
    bool sweep(const std::string &name, const std::string &of_request, const Fault &device)
    {
        const SweepRun complete = sweep_run(subject, of_request, {}, device);
        allocations_swept += complete.allocations;
        printf("%s%zu allocations\n", name.c_str(), complete.allocations);
        std::string last;
        for (const auto how : {FailingMemory::Fail::kOnce, FailingMemory::Fail::kLastingly}) {
            for (size_t first = 0; first < complete.allocations; ++first) {
                const MemoryFault memory = {first, how};
                if (!is_wanted(name + memory.name())) {
                    continue;
                }
                const SweepRun run = sweep_run(subject, of_request, memory, device);
                add_error_lines(lines, subject, run);
                if (how == FailingMemory::Fail::kOnce && run.object != last) {
                    keep_traffic(run);
                    last = run.object;
                }
                if (!passes(complete, run, memory_verdict(subject, complete, run, how))) {
                    return false;
                }
            }
        }
        // None of this has lasting effects.
        const SweepRun again = sweep_run(subject, of_request, {complete.allocations}, device);
        EXPECT_EQ(again.object, complete.object) << name;
        EXPECT_EQ(again.calls, complete.calls) << name;
        EXPECT_EQ(again.allocations, complete.allocations) << name;
        return true;
    }
};

TEST_P(MemoryFaultTest, LeavesNothingHalfDone)
{
    if (sweep("", request, {}) && sweep("refused:", request, {.call = 0, .result = -1}) &&
        request != "{}" && subject.builder == nullptr) {
        sweep("empty:", "{}", {});
    }
    check_lines("memory");
}

class DeviceFaultTest : public FaultTest {};

TEST_P(DeviceFaultTest, IsAnsweredAsDescribed)
{
    const std::vector<Fault> faults = rich_device::possible_faults();
    calls_swept += faults.empty() ? 0 : faults.back().call + 1;
    for (const Fault &fault : faults) {
        if (!is_wanted(fault.name())) {
            continue;
        }
        const SweepRun run = sweep_run(subject, request, {}, fault);
        add_error_lines(lines, subject, run);
        if (fault.result && fault.written == rich_device::Written::kWhole) {
            keep_traffic(run);
        }
        if (!passes(whole, run, device_verdict(subject, whole, run, fault))) {
            return;
        }
        if (!fault.result || fault.lasts) {
            continue;
        }
        Fault same_fault = fault;
        const char *why = "a result counts that should be ignored";
        if (is_result_ignored(subject, whole, fault)) {
            same_fault.result = {};
        } else {
            same_fault.result = equal_result(subject, whole, fault);
            if (!same_fault.result || fault.written != rich_device::Written::kWhole) {
                continue;
            }
            same_fault.result = *same_fault.result == 0 ? std::nullopt : same_fault.result;
            why = "a result does not count as it is described";
        }
        const SweepRun same = sweep_run(subject, request, {}, same_fault);
        const bool is_same = run.object == same.object && run.calls == same.calls;
        const bool may_differ =
            !is_same && exception(subject, Rule::kResult, called_function(whole, fault)) != nullptr;
        if (!passes(same, run, is_same || may_differ ? "" : why)) {
            return;
        }
    }
    if (only == nullptr) {
        EXPECT_EQ(stale_exceptions(subject, Rule::kResult), "") << "these are no longer exceptions";
    }
    check_lines("device");
}

// No test of a single command would notice a debug line that is added to it.
class LogTest : public FaultTest {};

TEST_P(LogTest, HasNoOtherDebugLines)
{
    if (is_wanted("whole")) {
        add_debug_lines(lines, whole);
    }
    const Fault refused = {.call = 0, .result = -1};
    if (is_wanted(refused.name())) {
        add_debug_lines(lines, sweep_run(subject, request, {}, refused));
    }
    if (is_wanted("empty")) {
        add_debug_lines(lines, sweep_run(subject, "{}", {}, {}));
    }
    check_lines("debug");
}

INSTANTIATE_TEST_SUITE_P(Every, MemoryFaultTest, testing::ValuesIn(subjects()), name_of);
INSTANTIATE_TEST_SUITE_P(Every, DeviceFaultTest, testing::ValuesIn(subjects()), name_of);
INSTANTIATE_TEST_SUITE_P(Every, LogTest, testing::ValuesIn(subjects()), name_of);

// ---- Requests ----------------------------------------------------------------------------------

// Whether the items have all keys that are described, and each list two elements at least. Names
// what is missing in why.
bool has_all(const cJSON *object, const cJSON *keys, std::string &why)
{
    const cJSON *key;
    cJSON_ArrayForEach(key, keys)
    {
        const char *name = cJSON_GetStringValue(cJSON_GetObjectItem(key, "key"));
        const cJSON *item = cJSON_GetObjectItem(object, name);
        const cJSON *inner = cJSON_GetObjectItem(key, "items");
        const cJSON *first = cJSON_IsArray(item) != 0 ? item->child : item;
        if (item == nullptr || (cJSON_IsArray(item) != 0 && cJSON_GetArraySize(item) < 2) ||
            !has_all(first, inner, why)) {
            why += std::string(" ") + name;
            return false;
        }
    }
    return true;
}

#define NAME_OF(result, name, parameters, arguments) #name,
constexpr const char *kDeviceFunctions[] = {DEVICE_FUNCTIONS(NAME_OF)};
#undef NAME_OF

// On the longest path through a command everything that can fail is used.
TEST(RichRequestTest, OfEachCommandHasEveryKeyAndMakesEveryCall)
{
    std::map<std::string, std::set<std::string>> made;
    for (const Subject &subject : subjects()) {
        const std::string request = request_for(subject);
        ASSERT_NE(request, "") << "there is no rich request for " << subject.name;
        for (const auto &call : sweep_run(subject, request, {}, {}).calls) {
            made[subject.command].insert(call.function);
        }
        const cJSON *description = description_of(subject.command);
        std::string why;
        EXPECT_TRUE(subject.name != subject.command ||
                    has_all(parse(request).get(), cJSON_GetObjectItem(description, "request"), why))
            << subject.name << ":" << why;
    }
    std::set<std::string> all;
    for (const auto &[command, functions] : made) {
        all.insert(functions.begin(), functions.end());
    }
    for (const char *function : kDeviceFunctions) {
        EXPECT_EQ(all.count(function), 1U) << function << " is not swept";
    }
    for (const Subject &subject : subjects()) {
        const cJSON *call;
        cJSON_ArrayForEach(call,
                           cJSON_GetObjectItem(description_of(subject.command), "device_calls"))
        {
            EXPECT_EQ(made[subject.command].count(call->valuestring), 1U)
                << subject.name << " does not call " << call->valuestring;
        }
    }
}

#ifdef __SANITIZE_ADDRESS__
// The sanitizer of undefined behaviour does not call back at the end, but before it reports.
extern "C" void __ubsan_on_report()
{
    print_last_case();
}
#endif

} // namespace sweep_test
