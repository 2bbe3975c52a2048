// PLATEFORM_UPDATE_IMMEDIATE, which looks at what runs before it starts a worker.
#include "firmware_update_fixture.h"

#include <cstring>

namespace firmware_platform_test {

using recording_device::when;

// The device says what firmware it runs.
void firmware_version_is(const std::string &version)
{
    when<devapi_get_update_status_info>([version](UpdateStatusInfo *info) {
        version.copy(info->FWVersion, sizeof info->FWVersion);
        return 0;
    });
}

constexpr char kPlatform[] = "PLATEFORM_UPDATE_IMMEDIATE";
const Request kImage = image(R"({"Version":"2","UpdateUrl":"x"})");

std::string pack_error(const std::string &reason, const Request &rest = kNothing)
{
    return rest.followed_by(R"("FailReason":")" + reason +
                            R"(","Status":"1","FailReason":"handle pack error")");
}

std::vector<recording_device::Call> with_status_read(std::vector<recording_device::Call> calls)
{
    calls.insert(calls.begin(), {"devapi_get_update_status_info", {kZeroedStatus}});
    return calls;
}

TEST_F(FirmwareUpdateTest, ThePlatformStartsAnUpdate)
{
    const std::string done =
        kNothing.followed_by(R"("Status":"0","updateResult":"0","FailReason":"success")");
    EXPECT_EQ(run(kPlatform, kImage.json()), done);
    EXPECT_EQ(calls(), with_status_read(whole_update("x")));
    for (const std::string version : {"null", "7", "false", R"("")", "[]", "{}"}) {
        EXPECT_EQ(run(kPlatform, image(R"({"UpdateUrl":"x","Version":)" + version + "}").json()),
                  done);
        control.wait_until_idle();
    }
    firmware_version_is("1.4.2");
    for (const std::string &address : kOddAddresses) {
        EXPECT_EQ(
            run(kPlatform, image(R"({"Version":0,"UpdateUrl":)" + escaped(address) + "}").json()),
            done);
        EXPECT_EQ(calls()[calls().size() - 3], whole_update(address)[0]);
    }
}

TEST_F(FirmwareUpdateTest, ThePlatformNeedsADeviceThatAnswers)
{
    for (const int32_t result : kFailures) {
        recording_device::reset();
        when<devapi_get_update_status_info>([result](UpdateStatusInfo *info) {
            strcpy(info->FWVersion, "x"); // what it leaves is not looked at
            return result;
        });
        for (const Request &request : {kImage, kNothing, image("{}"), image("null")}) {
            EXPECT_EQ(run(kPlatform, request.json()), pack_error("get update status error"));
        }
        const Request other = kNothing.with("image", "{}");
        EXPECT_EQ(run(kPlatform, other.json()), pack_error("get update status error", other));
    }
    EXPECT_EQ(control.workers(), 0u);
}

TEST_F(FirmwareUpdateTest, ThePlatformsAddressIsComparedWithTheVersionThatRuns)
{
    const auto send = [&](const std::string &address) {
        const std::string reply =
            run(kPlatform, image(R"({"Version":"2","UpdateUrl":)" + quoted(address) + "}").json());
        control.wait_until_idle();
        return reply;
    };
    const std::string full = text_of_length(64);
    for (const std::string &version : {std::string(), std::string("1.4.2a"), full}) {
        start_over();
        firmware_version_is(version);
        EXPECT_EQ(send(version), pack_error("the same version error"));
        EXPECT_EQ(calls(), with_status_read({}));
    }
    for (const std::string &address : {full + "m", full.substr(0, 63), full.substr(1)}) {
        EXPECT_NE(send(address), pack_error("the same version error")) << address;
    }
    firmware_version_is("1.4.2a");
    const size_t before = control.workers();
    const std::vector<std::string> others = {"",        "1.4.2A",  "1.4.2", "1.4.2aa",
                                             " 1.4.2a", "1.4.2a ", "2.4.2a"};
    for (const std::string &address : others) {
        EXPECT_NE(send(address), pack_error("the same version error")) << address;
    }
    EXPECT_EQ(control.workers(), before + others.size());
}

TEST_F(FirmwareUpdateTest, ThePlatformIsToldWhatKeptTheUpdateFromStarting)
{
    {
        const Busy busy;
        EXPECT_EQ(run(kPlatform, kImage.json()), refused(kDownloading));
        EXPECT_TRUE(is_busy());
    }
    control.fail_next_worker();
    EXPECT_EQ(run(kPlatform, kImage.json()), refused(kNoThread));
    EXPECT_FALSE(is_busy());
}

} // namespace firmware_platform_test
