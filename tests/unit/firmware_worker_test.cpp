// SPDX-License-Identifier: MIT
// The worker that downloads and flashes an image, the function that starts it, and the agent's own
// upgrade.
#include "failing_memory.h"
#include "firmware_update.h"
#include "firmware_update_fixture.h"

#include <atomic>
#include <cstring>
#include <map>
#include <thread>
#include <unistd.h>

namespace firmware_worker_test {

class FirmwareWorkerTest : public FirmwareUpdateTest {};

// ---- The starter -------------------------------------------------------------------------------

TEST_F(FirmwareWorkerTest, TheStarterStartsAWorker)
{
    EXPECT_EQ(start_prthead_dowing_image(kAddress), 0);
    EXPECT_EQ(calls(), whole_update(kAddress));
    EXPECT_EQ(control.workers(), 1u);
}

TEST_F(FirmwareWorkerTest, TheWorkerHasACopyOfTheAddress)
{
    when<devapi_flash_update_image>([](const char *address) {
        sleep(1);
        recording_device::write_down("after a while", {address});
        return 1;
    });
    control.hold_sleeps();
    {
        std::string address = kAddress;
        EXPECT_EQ(start_prthead_dowing_image(address.c_str()), 0);
        control.wait_for_sleep(1);
        address.assign(address.size(), '#');
    }
    control.end_all_sleeps();
    EXPECT_EQ(calls().back(), (Call{"after a while", {kAddress}}));
}

TEST_F(FirmwareWorkerTest, TheStarterNeedsAnAddress)
{
    EXPECT_EQ(start_prthead_dowing_image(nullptr), -1);
    EXPECT_FALSE(is_busy());
    const Busy busy; // checked before the lock
    EXPECT_EQ(start_prthead_dowing_image(nullptr), -1);
    EXPECT_TRUE(is_busy());
    EXPECT_EQ(control.workers(), 0u);
}

TEST_F(FirmwareWorkerTest, TheStarterNeedsMemoryForTheCopy)
{
    const Busy busy; // taken before the lock is tried
    const FailingMemory memory(0, FailingMemory::Fail::kOnce);
    EXPECT_EQ(start_prthead_dowing_image(kAddress), -1);
    EXPECT_TRUE(memory.has_failed());
    EXPECT_EQ(start_prthead_dowing_image(kAddress), -2);
}

TEST_F(FirmwareWorkerTest, TheStarterNeedsTheLock)
{
    const Busy busy;
    control.fail_next_worker(); // which is not requested
    EXPECT_EQ(start_prthead_dowing_image(kAddress), -2);
    EXPECT_TRUE(is_busy());
}

TEST_F(FirmwareWorkerTest, TheStarterNeedsAThread)
{
    control.fail_next_worker();
    EXPECT_EQ(start_prthead_dowing_image(kAddress), -3);
    EXPECT_FALSE(is_busy());
    EXPECT_EQ(control.workers(), 0u);
    EXPECT_EQ(start_prthead_dowing_image(kAddress), 0);
    EXPECT_EQ(calls(), whole_update(kAddress));
}

// ---- The worker --------------------------------------------------------------------------------

TEST_F(FirmwareWorkerTest, TheWorkerHoldsTheLockUntilTheRouterRestarts)
{
    when<devapi_flash_update_image>([](const char *) {
        sleep(60);
        return 0;
    });
    when<system>([](const char *) {
        sleep(30);
        return -1; // the result is ignored
    });
    control.hold_sleeps();
    EXPECT_EQ(start_prthead_dowing_image(kAddress), 0);
    for (const size_t number : {1u, 2u}) {
        control.wait_for_sleep(number);
        EXPECT_TRUE(is_busy());
        EXPECT_EQ(start_prthead_dowing_image("second"), -2);
        control.end_sleep();
    }
    control.wait_until_idle();
    EXPECT_EQ(control.sleeps(), (std::vector<WorkerControl::Sleep>{{60, true}, {30, true}}))
        << "the worker is to be detached";
    Calls expected = whole_update(kAddress);
    expected.insert(expected.begin() + 1, {"sleep", {"60"}});
    expected.push_back({"sleep", {"30"}});
    EXPECT_EQ(calls(), expected);
    EXPECT_EQ(control.workers(), 1u);
}

TEST_F(FirmwareWorkerTest, AFailedFlashDoesNotRestartTheRouter)
{
    for (const int32_t result : kFailures) {
        start_over();
        when<devapi_flash_update_image>([result](const char *) { return result; });
        EXPECT_EQ(start_prthead_dowing_image(kAddress), 0);
        EXPECT_EQ(calls(), (Calls{{"devapi_flash_update_image", {kAddress}}}));
        EXPECT_FALSE(is_busy());
    }
}

TEST_F(FirmwareWorkerTest, AWorkerWithoutAnAddressOnlyReleasesTheLock)
{
    ASSERT_EQ(pthread_mutex_trylock(&downimagelock), 0);
    pthread_t worker;
    ASSERT_EQ(pthread_create(&worker, nullptr, dowing_imageing, nullptr), 0);
    EXPECT_EQ(calls(), Calls());
}

// ---- The agent's upgrade -----------------------------------------------------------------------

class AgentsUpgradeTest : public FirmwareUpdateTest {
  protected:
    ~AgentsUpgradeTest() override
    {
        memset(g_update_url, 0, sizeof g_update_url);
        recording_host::reset();
    }

    // Starts the upgrade as the agent does, and waits until it has ended.
    void upgrade(const std::string &address)
    {
        start_over_with_log();
        strcpy(g_update_url, address.c_str());
        EXPECT_EQ(pthread_mutex_trylock(&downimagelock), 0);
        pthread_t thread;
        ASSERT_EQ(pthread_create(&thread, nullptr, pthread_hg_image_upgrade, &thread), 0);
        void *result = &thread;
        EXPECT_EQ(pthread_join(thread, &result), 0);
        EXPECT_EQ(result, nullptr);
        EXPECT_FALSE(is_busy());
        EXPECT_EQ(g_update_url, address);
    }

    // The results of the two device calls in the next upgrade.
    void device_returns(int32_t downloading, int32_t flashing)
    {
        downloading_ = downloading;
        flashing_ = flashing;
    }

  private:
    void start_over_with_log()
    {
        start_over();
        recording_host::reset();
        when<devapi_download_image>([result = downloading_](const char *, int32_t) {
            sleep(60);
            EXPECT_TRUE(is_busy());
            return result;
        });
        when<devapi_update_image>([result = flashing_] {
            EXPECT_TRUE(is_busy());
            return result;
        });
    }

    int32_t downloading_ = 0;
    int32_t flashing_ = 0;
};

// Taken before any test runs.
const char kFirstOfTheAddress = g_update_url[0];

TEST_F(AgentsUpgradeTest, HasNoAddressAtFirst)
{
    EXPECT_EQ(kFirstOfTheAddress, '\0');
}

TEST_F(AgentsUpgradeTest, DownloadsAndFlashesWithoutARestart)
{
    for (const std::string &address :
         {std::string(kAddress), std::string("a"), std::string(255, ';')}) {
        upgrade(address);
        EXPECT_EQ(calls(), (Calls{{"devapi_download_image", {address, "1"}},
                                  {"sleep", {"60"}},
                                  {"devapi_update_image", {}}}));
        EXPECT_EQ(recording_host::log_lines(), LogLines());
        EXPECT_EQ(control.sleeps().back(), (WorkerControl::Sleep{60, false}))
            << "the agent joins it";
    }
}

TEST_F(AgentsUpgradeTest, NeedsAnAddress)
{
    upgrade("");
    EXPECT_EQ(calls(), Calls());
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "update_url is err!\n"}}));
}

TEST_F(AgentsUpgradeTest, FlashesNothingThatWasNotDownloaded)
{
    for (const int32_t result : kFailures) {
        device_returns(result, 0);
        upgrade(kAddress);
        EXPECT_EQ(calls(), (Calls{{"devapi_download_image", {kAddress, "1"}}, {"sleep", {"60"}}}));
        EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "download image failed"}}));
    }
}

TEST_F(AgentsUpgradeTest, LogsThatFlashingFailed)
{
    for (const int32_t result : kFailures) {
        device_returns(0, result);
        upgrade(kAddress);
        EXPECT_EQ(calls().back(), (Call{"devapi_update_image", {}}));
        EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "update image failed"}}));
    }
}

// ---- Concurrently with everything else that uses the lock --------------------------------------

constexpr int kRounds = 1000;

// Counts what is being downloaded or flashed at a time.
class OnlyOne {
  public:
    OnlyOne() { EXPECT_EQ(under_way++, 0) << "two at a time"; }
    ~OnlyOne() { --under_way; }
    OnlyOne(const OnlyOne &) = delete;
    OnlyOne &operator=(const OnlyOne &) = delete;

  private:
    static inline std::atomic<int> under_way;
};

class FirmwareThreadsTest : public FirmwareUpdateTest {
  protected:
    FirmwareThreadsTest()
    {
        // Every other update fails, so that workers end in both ways.
        when<devapi_flash_update_image>([this](const char *) {
            const OnlyOne one;
            return static_cast<int32_t>(flashes++ % 2);
        });
        when<devapi_download_image>([this](const char *, int32_t) {
            const OnlyOne one;
            ++downloads;
            return 0;
        });
        when<devapi_update_image>([this] {
            const OnlyOne one;
            ++updates;
            return 0;
        });
    }

    // Sends a request many times; every reply has to be one of the two. Result: how often it was
    // the first.
    static size_t send_often(const std::string &command, const std::string &request,
                             const std::string &done, const std::string &refused)
    {
        size_t successes = 0;
        for (int round = 0; round < kRounds; ++round) {
            const Json object = parse(request);
            EXPECT_EQ(hg_process_json_cmd(command.c_str(), object.get()), 0);
            const std::string reply = print(object.get());
            EXPECT_TRUE(reply == done || reply == refused) << reply;
            successes += reply == done ? 1 : 0;
        }
        return successes;
    }

    std::atomic<size_t> flashes = 0;
    std::atomic<size_t> downloads = 0;
    std::atomic<size_t> updates = 0;
};

TEST_F(FirmwareThreadsTest, NeverMoreThanOneIsUnderWay)
{
    const std::string refused = "\"updateResult\":\"-1\"," + failure(kDownloading) + "}";
    std::atomic<size_t> started = 0;
    std::atomic<size_t> downloaded = 0;
    std::atomic<size_t> updated = 0;
    std::atomic<size_t> upgraded = 0;
    std::vector<std::thread> threads;
    threads.emplace_back([&] {
        started += send_often("UPDATE_IMMEDIATE", R"({"Image":{"UpdateUrl":"a"}})",
                              R"({"Status":"0"})", "{" + failure(kDownloading) + "}");
    });
    threads.emplace_back([&] {
        started +=
            send_often("IMAGE_DOWNLOAD", R"({"MainRouter":{"UpdateUrl":"b"},"ChildRouter":1})",
                       R"({"Status":"0","updateResult":"0"})", "{" + refused);
    });
    threads.emplace_back([&] {
        started += send_often(
            "PLATEFORM_UPDATE_IMMEDIATE", R"({"Image":{"Version":"2","UpdateUrl":"c"}})",
            R"({"Status":"0","updateResult":"0","FailReason":"success"})", "{" + refused);
    });
    threads.emplace_back([&] {
        downloaded += send_often("HG_IMAGE_DOWNLOAD", R"({"UpdateUrl":"d"})", R"({"Status":"0"})",
                                 R"({"UpdateUrl":"d",)" +
                                     failure("update status maybe downloading or upgrading") + "}");
    });
    threads.emplace_back([&] {
        updated +=
            send_often("IMAGE_UPDATE", R"({"MainRouter":{"Update":"1"}})", R"({"Status":"0"})",
                       "{" + failure("update status maybe downloding or upgrading") + "}");
    });
    threads.emplace_back([&] {
        // The agent's own upgrade.
        for (int round = 0; round < kRounds; ++round) {
            if (pthread_mutex_trylock(&downimagelock) == 0) {
                g_update_url[0] = 'e';
                pthread_t thread;
                EXPECT_EQ(pthread_create(&thread, nullptr, pthread_hg_image_upgrade, nullptr), 0);
                EXPECT_EQ(pthread_join(thread, nullptr), 0);
                ++upgraded;
            }
        }
    });
    for (std::thread &thread : threads) {
        thread.join();
    }
    control.wait_until_idle();
    g_update_url[0] = '\0';
    EXPECT_FALSE(is_busy());
    EXPECT_GT(started + downloaded + updated + upgraded,
              0u); // which one wins is up to the scheduler
    EXPECT_EQ(flashes, started);
    EXPECT_EQ(downloads, downloaded + upgraded);
    EXPECT_EQ(updates, updated + upgraded);
    std::map<std::string, size_t> called;
    for (const std::string &function : recording_device::called_functions()) {
        ++called[function];
    }
    EXPECT_EQ(called["system"], (flashes + 1) / 2);
    EXPECT_EQ(called["sigaction"], called["system"]);
}

// Each update gets the lock that the worker of the previous one has released.
TEST_F(FirmwareThreadsTest, OneUpdateCanFollowAnother)
{
    for (size_t round = 0; round < kRounds; ++round) {
        const Json object = parse(R"({"MainRouter":{"UpdateUrl":"a"}})");
        EXPECT_EQ(hg_process_json_cmd("IMAGE_DOWNLOAD", object.get()), 0);
        EXPECT_EQ(print(object.get()), R"({"Status":"0","updateResult":"0"})");
        control.wait_until_idle();
        EXPECT_EQ(flashes, round + 1);
    }
}

} // namespace firmware_worker_test
