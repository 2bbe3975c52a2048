// The worker beside everything else that touches the lock.
#include "firmware_update.h"
#include "firmware_update_fixture.h"

#include <atomic>
#include <map>
#include <thread>

namespace firmware_threads_test {

using recording_device::when;

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

    // Sends a request over and over; every answer has to be one of the two. Result: how often it
    // was the first.
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
    EXPECT_GT(started, 0u);
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

// One update after the other, each of which gets the lock that the last worker has released.
TEST_F(FirmwareThreadsTest, AnUpdateFollowsTheOther)
{
    for (size_t round = 0; round < kRounds; ++round) {
        const Json object = parse(R"({"MainRouter":{"UpdateUrl":"a"}})");
        EXPECT_EQ(hg_process_json_cmd("IMAGE_DOWNLOAD", object.get()), 0);
        EXPECT_EQ(print(object.get()), R"({"Status":"0","updateResult":"0"})");
        control.wait_until_idle();
        EXPECT_EQ(flashes, round + 1);
    }
}

} // namespace firmware_threads_test
