// SPDX-License-Identifier: MIT
// Concurrent calls while an image is fetched or flashed.
#include "firmware_fixture.h"

#include <atomic>
#include <condition_variable>
#include <dlfcn.h>
#include <mutex>
#include <netdb.h>
#include <thread>

namespace {

// Blocks the lookup of the host slow.test until it is released.
enum Stage { kIdle, kAsked, kAnswered, kLeft };
class NameServer {
  public:
    void become(Stage stage)
    {
        const std::lock_guard lock(mutex_);
        stage_ = stage;
        changed_.notify_all();
    }
    void await(Stage stage)
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return stage_ >= stage; });
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    Stage stage_ = kIdle;
} name_server;

} // namespace

// Replaces the C library's function.
extern "C" int getaddrinfo(const char *host, const char *service, const addrinfo *hints,
                           addrinfo **found)
{
    if (host != nullptr && std::string_view(host) == "slow.test") {
        name_server.become(kAsked);
        name_server.await(kAnswered);
        name_server.become(kLeft);
        return EAI_FAIL;
    }
    static const auto real =
        reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"));
    return real(host, service, hints, found);
}

namespace {

// The progress that the gateway has reported.
class Reports {
  public:
    Reports() { simulated_gateway_on_progress(note, this); }
    ~Reports() { simulated_gateway_on_progress(nullptr, nullptr); }
    Reports(const Reports &) = delete;
    Reports &operator=(const Reports &) = delete;

    void await(int32_t percent)
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [&] { return !percents_.empty() && percents_.back() >= percent; });
    }
    std::vector<int32_t> take()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(percents_, {});
    }

  private:
    static void note(const char *task, int32_t percent, void *context)
    {
        auto *self = static_cast<Reports *>(context);
        const std::lock_guard lock(self->mutex_);
        EXPECT_STREQ(task, "firmware");
        self->percents_.push_back(percent);
        self->changed_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<int32_t> percents_;
};

class FirmwareThreadsTest : public FirmwareTest {
  protected:
    // Starts a download that stops half-way until the server is released.
    std::thread half_download(int32_t &result)
    {
        std::thread thread([&result, address = server_.address("hold/new.image")] {
            result = devapi_download_image(address.c_str(), 0);
        });
        reports_.await(40);
        return thread;
    }
    Reports reports_;
};

void expect_rising(const std::vector<int32_t> &percents)
{
    ASSERT_FALSE(percents.empty());
    EXPECT_EQ(percents.front(), 0);
    for (size_t at = 1; at < percents.size(); ++at) {
        EXPECT_GT(percents[at], percents[at - 1]);
    }
}

TEST_F(FirmwareThreadsTest, ProgressReachesAHundredOnceTheImageIsVerified)
{
    for (const std::string &address :
         {server_.address("new.image"), "file://" + path("new.image")}) {
        ASSERT_EQ(devapi_download_image(address.c_str(), 0), 0);
        const std::vector<int32_t> percents = reports_.take();
        expect_rising(percents);
        EXPECT_EQ(percents.back(), 100);
        EXPECT_GE(percents.size(), 3u);
    }
    std::string damaged = make_image();
    damaged.back() = static_cast<char>(~damaged.back());
    write("wrong.image", damaged);
    refusal(server_.address("wrong.image"));
    const std::vector<int32_t> percents = reports_.take();
    expect_rising(percents);
    EXPECT_LT(percents.back(), 100);
}

TEST_F(FirmwareThreadsTest, ProgressDoesNotFallWhenADownloadStartsOver)
{
    // Large enough for progress reports during the download.
    write("large.image", make_image({.payload_size = 30'000'000}));
    const std::string address = server_.address("cut/no-range/large.image");
    refusal(address);
    reports_.take();
    EXPECT_EQ(devapi_download_image(address.c_str(), 0), 0);
    const std::vector<int32_t> percents = reports_.take();
    EXPECT_GE(percents.front(), 40);
    for (size_t at = 1; at < percents.size(); ++at) {
        EXPECT_GT(percents[at], percents[at - 1]);
    }
}

TEST_F(FirmwareThreadsTest, NoProgressIsReportedOnceTheCallbackIsRemoved)
{
    int32_t result = -1;
    std::thread thread = half_download(result);
    simulated_gateway_on_progress(nullptr, nullptr);
    reports_.take();
    server_.release();
    thread.join();
    EXPECT_EQ(result, 0);
    EXPECT_TRUE(reports_.take().empty());
}

TEST_F(FirmwareThreadsTest, AProgressCallbackMayCallTheDevice)
{
    int calls = 0;
    simulated_gateway_on_progress(
        [](const char *, int32_t, void *context) {
            ++*static_cast<int *>(context);
            EXPECT_EQ(mac(), "3C:6A:D2:10:4F:20");
        },
        &calls);
    EXPECT_EQ(devapi_download_image(server_.address("new.image").c_str(), 0), 0);
    EXPECT_GT(calls, 1);
}

TEST_F(FirmwareThreadsTest, OtherCallsGoOnAndASecondDownloadIsRefused)
{
    ASSERT_EQ(devapi_download_image(("file://" + path("new.image")).c_str(), 0), 0);
    reports_.take();
    int32_t result = -1;
    std::thread thread = half_download(result);
    EXPECT_EQ(version(), "V2.4.1");
    HgBaseInfo info = {};
    set(info.Name, "Renamed");
    EXPECT_EQ(devapi_set_hg_base_info(&info), 0);
    EXPECT_EQ(refusal(server_.address("new.image")), "another download is under way");
    EXPECT_EQ(reason(devapi_flash_update_image(server_.address("new.image").c_str())),
              "another download is under way");

    // The image that is flashed is the last complete one.
    write("new.image", "is not asked for any more");
    EXPECT_EQ(version_after_flash(), "V3.2.0");

    server_.release();
    thread.join();
    EXPECT_EQ(result, 0);
    ASSERT_EQ(reopen(options()), "");
    EXPECT_EQ(devapi_get_hg_base_info(&info), 0);
    EXPECT_STREQ(info.Name, "Renamed");
}

TEST_F(FirmwareThreadsTest, ClosingEndsADownloadThatResumesLater)
{
    int32_t result = 0;
    std::thread thread = half_download(result);
    close();
    EXPECT_THAT(reason(), HasSubstr("the gateway was closed"));
    ASSERT_EQ(open(options()), "");
    thread.join();
    EXPECT_EQ(result, -1);
    EXPECT_TRUE(has_partial());

    server_.release();
    EXPECT_EQ(devapi_download_image(server_.address("hold/new.image").c_str(), 0), 0);
    EXPECT_EQ(server_.requests().back().substr(0, 22), "/hold/new.image bytes=");
}

TEST_F(FirmwareThreadsTest, ClosingEndsADownloadWhoseServerDoesNotAnswer)
{
    int32_t result = 0;
    std::thread thread(
        [&] { result = devapi_download_image(server_.address("hang/new.image").c_str(), 0); });
    while (server_.requests().empty()) {
        std::this_thread::yield();
    }
    close();
    thread.join();
    EXPECT_EQ(result, -1);
}

TEST_F(FirmwareThreadsTest, ClosingDoesNotWaitForANameServer)
{
    std::thread thread(
        [] { EXPECT_EQ(devapi_download_image("http://slow.test/new.image", 0), -1); });
    name_server.await(kAsked);
    close();
    thread.join();
    EXPECT_THAT(reason(), HasSubstr("the gateway was closed"));
    name_server.become(kAnswered);
    name_server.await(kLeft);
}

TEST_F(FirmwareThreadsTest, AHostCanEndCurrentAndLaterTransfers)
{
    const std::string addresses[] = {
        server_.address("hold/new.image"), server_.address("hang/new.image"),
        server_.address("lie/redirect-that-drips"), server_.address("lie/drip")};
    for (const std::string &address : addresses) {
        ASSERT_EQ(reopen(options()), "");
        const size_t before = server_.requests().size();
        int32_t result = 0;
        std::thread thread([&] { result = devapi_download_image(address.c_str(), 0); });
        while (server_.requests().size() == before) {
            std::this_thread::yield();
        }
        simulated_gateway_end_transfers();
        thread.join();
        EXPECT_EQ(reason(result), "the gateway was closed or is about to be") << address;
        EXPECT_EQ(refusal(server_.address("new.image")),
                  "the gateway was closed or is about to be");
        EXPECT_EQ(refusal("file://" + path("new.image")),
                  "the gateway was closed or is about to be");
        const std::string log = server_.address("log.txt");
        EXPECT_EQ(devapi_get_hg_log(log.c_str(), "system", "3C6AD2104F20"), -1);
        EXPECT_EQ(version(), "V2.4.1");
    }
    ASSERT_EQ(reopen(options()), "");
    EXPECT_EQ(devapi_download_image(server_.address("new.image").c_str(), 0), 0);
    close();
    simulated_gateway_end_transfers();
}

TEST_F(FirmwareThreadsTest, AProgressCallbackMayCallTheDeviceWhileTheGatewayIsClosed)
{
    std::atomic<bool> reported = false;
    simulated_gateway_on_progress(
        [](const char *, int32_t, void *context) {
            *static_cast<std::atomic<bool> *>(context) = true;
            while (call() == 0) {
                std::this_thread::yield();
            }
        },
        &reported);
    std::thread thread(
        [&] { EXPECT_EQ(devapi_download_image(server_.address("new.image").c_str(), 0), -1); });
    while (!reported) {
        std::this_thread::yield();
    }
    close();
    thread.join();
}

TEST_F(FirmwareThreadsTest, AFlashIsRefusedWhenItsSlotHasStartedMeanwhile)
{
    write("large.image", make_image({.version = "V4", .payload_size = 30'000'000}));
    const auto download = [&](const std::string &name) {
        ASSERT_EQ(devapi_download_image(("file://" + path(name)).c_str(), 0), 0);
    };
    // A flash may finish before the restart; then the race did not occur.
    bool refused = false;
    for (int times = 0; !refused && times < 20; ++times) {
        download("new.image");
        ASSERT_EQ(devapi_update_image(), 0);
        download("large.image");
        const int64_t slot = json_of(path("state")).at("firmware").at("next");
        const std::string aside =
            path("state.firmware/slot_" + std::to_string(slot) + ".image.tmp");
        int32_t result = 0;
        std::thread flash([&] { result = devapi_update_image(); });
        while (!std::filesystem::exists(aside)) {
            std::this_thread::yield();
        }
        simulated_gateway_power_cycle();
        flash.join();
        refused = result == -1;
        EXPECT_EQ(version(), refused ? "V3.2.0" : "V4");
    }
    EXPECT_TRUE(refused);
    EXPECT_EQ(devapi_update_image(), 0);
    simulated_gateway_power_cycle();
    EXPECT_EQ(version(), "V4");
    EXPECT_THAT(read(path("trace")), HasSubstr("the router was restarted meanwhile"));
}

TEST_F(FirmwareThreadsTest, DownloadsFlashesRestartsAndReopeningMix)
{
    write("even.image", make_image({.version = "V4"}));
    write("odd.image", make_image({.version = "V5"}));
    setenv("SIMULATED_GATEWAY_STATE", path("state").c_str(), 1);
    setenv("SIMULATED_GATEWAY_TRACE", path("trace").c_str(), 1);
    setenv("SIMULATED_GATEWAY_FIRMWARE_FOLDER", path("").c_str(), 1);
    ASSERT_EQ(reopen({}), "");
    std::atomic<int> wrong = 0;
    std::atomic<bool> ended = false;
    std::vector<std::thread> threads;
    for (const char *name : {"even.image", "odd.image"}) {
        threads.emplace_back([&, name] {
            for (int times = 0; times < 10; ++times) {
                devapi_flash_update_image(server_.address(name).c_str());
                devapi_download_image(("file://" + path(name)).c_str(), 1);
            }
        });
    }
    threads.emplace_back([&] {
        for (int times = 0; times < 20; ++times) {
            devapi_update_image();
        }
    });
    std::thread restarts([&] {
        while (!ended) {
            devapi_reboot();
            simulated_gateway_close();
            simulated_gateway_open(nullptr, nullptr, 0);
        }
    });
    std::thread queries([&] {
        while (!ended) {
            UpdateStatusInfo info = {};
            if (devapi_get_update_status_info(&info) == 0) {
                const std::string seen = info.FWVersion;
                wrong += seen == "V2.4.1" || seen == "V4" || seen == "V5" ? 0 : 1;
            }
        }
    });
    for (std::thread &thread : threads) {
        thread.join();
    }
    ended = true;
    restarts.join();
    queries.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(devapi_flash_update_image(server_.address("new.image").c_str()), 0);
    simulated_gateway_power_cycle();
    EXPECT_EQ(version(), "V3.2.0");
}

} // namespace
