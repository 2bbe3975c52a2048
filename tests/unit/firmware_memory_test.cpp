// The firmware commands with every allocation failing in turn: nothing is started, downloaded or
// flashed that could not be answered, and no reply is half a reply.
#include "firmware_update_fixture.h"
#include "memory_sweep.h"

#include <algorithm>

namespace firmware_memory_test {

using recording_device::when;

class FirmwareMemoryTest : public FirmwareUpdateTest {
  protected:
    // Runs the sweep. Memory that fails once leaves enough for the failure's members, memory that
    // fails lastingly leaves the rest of the request alone. Result: the allocations that it takes.
    size_t sweep_success(const std::string &command, const Request &request, const Request &rest,
                         const std::string &members)
    {
        return sweep_memory(
            command, request.json(), [] {},
            [&](const std::string &object, FailingMemory::Fail how) {
                EXPECT_EQ(object, how == FailingMemory::Fail::kOnce ? rest.followed_by(members)
                                                                    : rest.json());
                EXPECT_EQ(changes(), 0);
            },
            [&] { control.wait_until_idle(); });
    }

    // The same for a request that fails anyhow: the reply is one of these, or none.
    void sweep_failure(
        const std::string &command, const Request &request, const Request &rest,
        const std::vector<std::string> &replies, const std::function<void()> &prepare = [] {})
    {
        sweep(command, request, rest, replies, prepare, false);
    }

    // The same where there is a reply to fall back on: none only when memory fails lastingly.
    void sweep_long_failure(
        const std::string &command, const Request &request, const Request &rest,
        const std::vector<std::string> &replies, const std::function<void()> &prepare = [] {})
    {
        sweep(command, request, rest, replies, prepare, true);
    }

    // How often the device was told to change its firmware.
    static long changes()
    {
        const auto names = recording_device::called_functions();
        return std::count_if(names.begin(), names.end(), [](const std::string &name) {
            return name != "devapi_get_update_status_info";
        });
    }

  private:
    static void sweep(const std::string &command, const Request &request, const Request &rest,
                      const std::vector<std::string> &replies, const std::function<void()> &prepare,
                      bool falls_back)
    {
        sweep_memory(command, request.json(), prepare,
                     [&](const std::string &object, FailingMemory::Fail how) {
                         const bool known = std::any_of(
                             replies.begin(), replies.end(), [&](const std::string &members) {
                                 return object == rest.followed_by(members);
                             });
                         const bool may_be_silent =
                             !falls_back || how == FailingMemory::Fail::kLastingly;
                         EXPECT_TRUE(known || (may_be_silent && object == rest.json())) << object;
                     });
    }
};

const Request kDownload({{"First", "1"}, {"UpdateUrl", R"("x")"}, {"Last", "{}"}});
const Request kFlash({{"First", "1"}, {"MainRouter", R"({"Update":"1"})"}, {"Last", "{}"}});
const Request kRouter({{"First", "1"}, {"MainRouter", R"({"UpdateUrl":"x"})"}, {"Last", "{}"}});
const Request kUnguardedFlash({{"First", "1"}, {"Update", R"("1")"}, {"Last", "{}"}});
const Request kImage = image(R"({"Version":"2","UpdateUrl":"x"})");
std::string pack_error(const std::string &reason)
{
    return R"("FailReason":")" + reason + R"(","Status":"1","FailReason":"handle pack error")";
}

std::string not_started(const std::string &reason)
{
    return R"("updateResult":"-1",)" + failure(reason);
}

TEST_F(FirmwareMemoryTest, OfCommandsThatWouldSucceed)
{
    EXPECT_EQ(sweep_success("HG_GET_UPDATE_STATUS", kNothing, kNothing,
                            failure("get update status info failed")),
              15u);
    EXPECT_EQ(sweep_success("HG_IMAGE_DOWNLOAD", kDownload, kDownload,
                            failure("hg download image failed")),
              1u);
    EXPECT_EQ(sweep_success("IMAGE_UPDATE", kFlash, kNothing, failure("update image failed")), 1u);
    EXPECT_EQ(sweep_success("HG_IMAGE_UPDATE", kUnguardedFlash, kUnguardedFlash,
                            failure("gghelper_update_image failed")),
              1u);
    EXPECT_EQ(control.workers(), 0u);
}

// Here the last allocation is the address's copy.
TEST_F(FirmwareMemoryTest, OfCommandsThatWouldStartAWorker)
{
    EXPECT_EQ(sweep_success("UPDATE_IMMEDIATE", kImage, kNothing, failure(kUrlIsNull)), 2u);
    EXPECT_EQ(sweep_success("IMAGE_DOWNLOAD", kRouter.with("ChildRouter", "1"), kNothing,
                            not_started(kUrlIsNull)),
              4u);
    EXPECT_EQ(
        sweep_success("PLATEFORM_UPDATE_IMMEDIATE", kImage, kNothing, not_started(kUrlIsNull)), 6u);
    EXPECT_EQ(control.workers(), 6u) << "two for each sweep, in the runs in which nothing failed";
}

TEST_F(FirmwareMemoryTest, OfAnUpdateWhoseOtherPartMakesUpForTheImage)
{
    const size_t allocations = sweep_memory(
        "UPDATE_IMMEDIATE", kImage.with("Dpi", "1").json(), [] {},
        [&](const std::string &object, FailingMemory::Fail) {
            EXPECT_TRUE(object == kNothing.json() ||
                        object == kNothing.followed_by(failure(kUrlIsNull)) ||
                        object == kNothing.followed_by(R"("Status":"0")"))
                << object;
            EXPECT_EQ(changes(), 0);
        },
        [&] { control.wait_until_idle(); });
    EXPECT_EQ(allocations, 2u);
    EXPECT_EQ(control.workers(), 2u);
}

TEST_F(FirmwareMemoryTest, OfCommandsThatTheRequestMakesFail)
{
    sweep_failure("HG_IMAGE_DOWNLOAD", kNothing, kNothing, {failure("json_url node null")});
    sweep_failure("IMAGE_UPDATE", kNothing, kNothing, {failure("Get MainRouter error")});
    sweep_failure("IMAGE_UPDATE", kNothing.with("MainRouter", "{}"), kNothing,
                  {failure("Get Update error")});
    sweep_failure("HG_IMAGE_UPDATE", kNothing, kNothing, {failure("json node null")});
    sweep_failure("UPDATE_IMMEDIATE", image("{}"), kNothing,
                  {failure(kUrlIsNull), failure("json no UpdateUrl")});
    sweep_failure("IMAGE_DOWNLOAD", kNothing, kNothing, {failure("Get mainrouter error")});
    sweep_failure("IMAGE_DOWNLOAD", kNothing.with("MainRouter", "{}"), kNothing,
                  {failure("Get UpdateUrl null")});
    for (const auto &[request, reason] :
         {std::pair(kNothing, "json no Image"), std::pair(image("{}"), "get version error"),
          std::pair(image(R"({"Version":1})"), "get UpdateUrl error"),
          std::pair(image(R"({"Version":1,"UpdateUrl":""})"), "the same version error")}) {
        // What cannot hold both reasons holds the one that people read.
        sweep_long_failure("PLATEFORM_UPDATE_IMMEDIATE", request, kNothing,
                           {pack_error(reason), failure(reason)});
    }
    EXPECT_EQ(control.workers(), 0u);
}

TEST_F(FirmwareMemoryTest, OfCommandsThatTheDeviceMakesFail)
{
    const auto fail = [] {
        when<devapi_get_update_status_info>([](UpdateStatusInfo *) { return -1; });
        when<devapi_update_image>([] { return -1; });
    };
    sweep_failure("HG_GET_UPDATE_STATUS", kNothing, kNothing,
                  {failure("get update status info failed")}, fail);
    sweep_failure("HG_IMAGE_DOWNLOAD", kDownload, kDownload,
                  {failure("get update status error"), failure("hg download image failed")}, fail);
    sweep_failure("HG_IMAGE_DOWNLOAD", kDownload, kDownload, {failure("hg download image failed")},
                  [] { when<devapi_download_image>([](const char *, int32_t) { return -1; }); });
    sweep_failure("IMAGE_UPDATE", kFlash, kNothing, {failure("update image failed")}, fail);
    sweep_failure("HG_IMAGE_UPDATE", kUnguardedFlash, kUnguardedFlash,
                  {failure("gghelper_update_image failed")}, fail);
    sweep_long_failure("PLATEFORM_UPDATE_IMMEDIATE", kImage, kNothing,
                       {pack_error("get update status error"), failure("get update status error")},
                       fail);
    EXPECT_EQ(control.workers(), 0u);
}

TEST_F(FirmwareMemoryTest, OfCommandsThatTheLockRefuses)
{
    const Busy busy;
    sweep_failure("HG_IMAGE_DOWNLOAD", kDownload, kDownload,
                  {failure("hg download image failed"),
                   failure("update status maybe downloading or upgrading")});
    sweep_failure(
        "IMAGE_UPDATE", kFlash, kNothing,
        {failure("update image failed"), failure("update status maybe downloding or upgrading")});
    sweep_failure("UPDATE_IMMEDIATE", kImage, kNothing,
                  {failure(kUrlIsNull), failure(kDownloading)});
    sweep_long_failure("IMAGE_DOWNLOAD", kRouter, kNothing,
                       {not_started(kUrlIsNull), not_started(kDownloading), failure(kDownloading)});
    sweep_long_failure("PLATEFORM_UPDATE_IMMEDIATE", kImage, kNothing,
                       {not_started(kUrlIsNull), not_started(kDownloading), failure(kDownloading)});
    EXPECT_EQ(control.workers(), 0u);
}

TEST_F(FirmwareMemoryTest, OfCommandsWhoseWorkerCannotBeStarted)
{
    const auto no_thread = [&] {
        control.fail_next_worker();
    };
    sweep_failure("UPDATE_IMMEDIATE", kImage, kNothing, {failure(kUrlIsNull), failure(kNoThread)},
                  no_thread);
    for (const auto &[command, request] :
         {std::pair("IMAGE_DOWNLOAD", kRouter), std::pair("PLATEFORM_UPDATE_IMMEDIATE", kImage)}) {
        sweep_long_failure(command, request, kNothing,
                           {not_started(kUrlIsNull), not_started(kNoThread), failure(kNoThread)},
                           no_thread);
    }
    EXPECT_EQ(control.workers(), 0u);
    EXPECT_FALSE(is_busy());
}

} // namespace firmware_memory_test
