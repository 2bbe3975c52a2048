// Batches that meet each other.
#include "wifi_batch_fixture.h"

#include <atomic>
#include <thread>

namespace wifi_batches_test {

class WifiBatchesTest : public WifiBatchTest {};

TEST_F(WifiBatchesTest, ASecondBatchWaitsInsideTheCommand)
{
    control.hold_sleeps();
    send(batch(element(1)));
    control.wait_for_sleep(1);
    std::atomic<bool> answered = false;
    std::thread second([&] {
        EXPECT_EQ(send(batch(element(2) + "," + element(3))), kSuccess);
        answered = true;
    });
    control.wait_for_waiting_batch();
    EXPECT_FALSE(answered);
    EXPECT_EQ(control.workers(), 1u);
    EXPECT_EQ(g_set_wifi_array_size, 1);

    control.end_all_sleeps();
    second.join();
    control.wait_until_idle();
    std::vector<Call> expected = whole_life("1", "", {element_record(1)});
    for (const Call &call : whole_life("1", "", {element_record(2), element_record(3)})) {
        expected.push_back(call);
    }
    EXPECT_EQ(worker_calls(), expected);
    EXPECT_EQ(control.workers(), 2u);
}

TEST_F(WifiBatchesTest, ABatchWhileAWorkerSleepsChangesWhatThatOneApplies)
{
    for (const size_t sleeping : {1u, 2u}) {
        recording_device::reset();
        const size_t before = control.sleeps().size();
        control.hold_sleeps();
        send(batch(element(1), "one").with("FastRoaming", R"("first")"));
        control.wait_for_sleep(before + 1);
        if (sleeping == 2) {
            control.end_sleep();
            control.wait_for_sleep(before + 2);
        }
        std::thread second(
            [&] { send(batch(element(2), "two").with("FastRoaming", R"("second")")); });
        control.wait_for_waiting_batch();
        control.end_all_sleeps();
        second.join();
        control.wait_until_idle();
        std::vector<Call> expected =
            whole_life(sleeping == 1 ? "two" : "one", "second", {element_record(1)});
        for (const Call &call : whole_life("two", "second", {element_record(2)})) {
            expected.push_back(call);
        }
        EXPECT_EQ(worker_calls(), expected) << "in sleep " << sleeping;
    }
}

TEST_F(WifiBatchesTest, ARefusedBatchWhileAWorkerSleepsChangesItsSwitchesToo)
{
    control.hold_sleeps();
    send(batch(element(1), "one"));
    control.wait_for_sleep(1);
    EXPECT_EQ(send(batch("{}", "two").with("FastRoaming", R"("second")")),
              R"({"StaCtrl":"two","FastRoaming":"second",)" + failure("set ssid failed") + "}");
    control.end_all_sleeps();
    control.wait_until_idle();
    EXPECT_EQ(worker_calls(), whole_life("two", "second", {element_record(1)}));
}

TEST_F(WifiBatchesTest, ManyBatchesAtOnceAreAppliedOneAfterTheOther)
{
    constexpr int32_t kThreads = 4;
    constexpr int32_t kBatches = 10;
    std::vector<std::thread> threads;
    for (int32_t number = 1; number <= kThreads; ++number) {
        threads.emplace_back([this, number] {
            for (int32_t round = 0; round < kBatches; ++round) {
                EXPECT_EQ(send(batch(element(number) + "," + element(number), "1")
                                   .with("FastRoaming", R"("1")")),
                          kSuccess);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    control.wait_until_idle();
    const std::vector<Call> calls = worker_calls();
    ASSERT_EQ(calls.size(), kThreads * kBatches * 6u);
    std::vector<int32_t> applied(kThreads + 1);
    for (size_t at = 0; at < calls.size(); at += 6) {
        const auto index = recording_device::record<SsidInfo>(calls[at + 4]).SSIDIndex;
        EXPECT_EQ(std::vector<Call>(calls.begin() + at, calls.begin() + at + 6),
                  whole_life("1", "1", {element_record(index), element_record(index)}));
        ++applied[index];
    }
    EXPECT_EQ(applied, (std::vector<int32_t>{0, kBatches, kBatches, kBatches, kBatches}));
}

} // namespace wifi_batches_test
