// SPDX-License-Identifier: MIT
// The firmware commands that run to their end: status, download, flash.
#include "firmware_update_fixture.h"

#include <cstring>

namespace firmware_update_test {

class HgGetUpdateStatus : public FirmwareUpdateTest {};
class HgImageDownload : public FirmwareUpdateTest {};
class ImageUpdate : public FirmwareUpdateTest {};
class HgImageUpdate : public FirmwareUpdateTest {};

// ---- HG_GET_UPDATE_STATUS ----------------------------------------------------------------------

TEST_F(HgGetUpdateStatus, TheStatusIsReported)
{
    when<devapi_get_update_status_info>([](UpdateStatusInfo *info) {
        *info = {"RT-7", "A1", "1.4.2", "2025-03-01", "router", "0371"};
        return 0;
    });
    const Busy busy; // the status needs no lock
    EXPECT_EQ(run("HG_GET_UPDATE_STATUS", R"({"First":1,"name":"kept"})"),
              R"({"First":1,"name":"kept","Status":"0","up_status":"0","name":"RT-7",)"
              R"("HWVersion":"A1","FWVersion":"1.4.2","FWDATA":"2025-03-01",)"
              R"("DeviceType":"router","AreaCode":"0371"})");
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_update_status_info", {kZeroedStatus}}}));
}

// ---- HG_IMAGE_DOWNLOAD -------------------------------------------------------------------------

const Request kDownload({{"First", "1"}, {"UpdateUrl", quoted(kAddress)}, {"Last", "{}"}});

TEST_F(HgImageDownload, ADownloadIsDoneWithinTheCommand)
{
    when<devapi_download_image>([](const char *, int32_t) {
        EXPECT_TRUE(is_busy());
        return 0;
    });
    EXPECT_EQ(run("HG_IMAGE_DOWNLOAD", kDownload.json()),
              kDownload.without("UpdateUrl").followed_by(R"("Status":"0")"));
    EXPECT_FALSE(is_busy());
    EXPECT_EQ(recording_device::calls(), (Calls{{"devapi_get_update_status_info", {kZeroedStatus}},
                                                {"devapi_download_image", {kAddress, "0"}}}));
    EXPECT_EQ(control.workers(), 0u);
}

TEST_F(HgImageDownload, ADownloadTakesAnyAddress)
{
    for (const std::string &address : kOddAddresses) {
        recording_device::reset();
        EXPECT_EQ(run("HG_IMAGE_DOWNLOAD", R"({"UpdateUrl":)" + escaped(address) + "}"),
                  R"({"Status":"0"})");
        EXPECT_EQ(recording_device::calls().at(1), (Call{"devapi_download_image", {address, "0"}}));
    }
}

TEST_F(HgImageDownload, ADownloadIsRefusedWhileAnotherIsUnderWay)
{
    const Busy busy;
    EXPECT_EQ(run("HG_IMAGE_DOWNLOAD", kDownload.json()),
              kDownload.followed_by(failure("update status maybe downloading or upgrading")));
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_update_status_info", {kZeroedStatus}}}));
    EXPECT_TRUE(is_busy());
}

// ---- IMAGE_UPDATE ------------------------------------------------------------------------------

Request flash(const std::string &router)
{
    return Request({{"First", "1"}, {"MainRouter", router}, {"Last", "{}"}});
}

const Request kFlash = flash(R"({"Update":"1"})");

// Strings other than "1".
const std::vector<std::string> kNotNow = {"0",  "",   "2",    "11",
                                          "1 ", " 1", "01",   "1\n",
                                          "+1", "-1", "1.0",  "1" + std::string(31, ' '),
                                          "y",  "on", "true", std::string(1 << 20, '1'),
                                          "%s", "\1", "\xff", "1" + std::string(32, '0')};

TEST_F(ImageUpdate, AFlashIsDoneWithinTheCommand)
{
    when<devapi_update_image>([] {
        EXPECT_TRUE(is_busy());
        return 0;
    });
    EXPECT_EQ(run("IMAGE_UPDATE", kFlash.json()),
              kFlash.without("MainRouter").followed_by(R"("Status":"0")"));
    EXPECT_FALSE(is_busy());
    EXPECT_EQ(recording_device::calls(), (Calls{{"devapi_update_image", {}}}));
}

TEST_F(ImageUpdate, AFlashIsRefusedWhileAnotherIsUnderWay)
{
    const Busy busy;
    EXPECT_EQ(run("IMAGE_UPDATE", kFlash.json()),
              kFlash.without("MainRouter")
                  .followed_by(failure("update status maybe downloding or upgrading")));
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_TRUE(is_busy());
}

TEST_F(ImageUpdate, AnythingButOneFlashesNothing)
{
    const Busy busy; // without flashing, no lock is needed
    for (const std::string &update : kNotNow) {
        const Request request = flash(R"({"Update":)" + escaped(update) + "}");
        EXPECT_EQ(run("IMAGE_UPDATE", request.json()),
                  request.without("MainRouter").followed_by(R"("Status":"0")"));
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

// ---- HG_IMAGE_UPDATE ---------------------------------------------------------------------------

const Request kUnguardedFlash({{"First", "1"}, {"Update", R"("1")"}, {"Last", "{}"}});

TEST_F(HgImageUpdate, AnUnguardedFlashNeedsNoLock)
{
    when<devapi_update_image>([] {
        EXPECT_FALSE(is_busy());
        return 0;
    });
    EXPECT_EQ(run("HG_IMAGE_UPDATE", kUnguardedFlash.json()),
              kUnguardedFlash.followed_by(R"("Status":"0")"));
    recording_device::reset();
    const Busy busy;
    EXPECT_EQ(run("HG_IMAGE_UPDATE", kUnguardedFlash.json()),
              kUnguardedFlash.followed_by(R"("Status":"0")"));
    EXPECT_EQ(recording_device::calls(), (Calls{{"devapi_update_image", {}}}));
    EXPECT_TRUE(is_busy());
}

TEST_F(HgImageUpdate, AnythingButOneFlashesNothingUnguarded)
{
    for (const std::string &update : kNotNow) {
        const Request request = kUnguardedFlash.with("Update", escaped(update));
        EXPECT_EQ(run("HG_IMAGE_UPDATE", request.json()), request.followed_by(R"("Status":"0")"));
    }
    EXPECT_EQ(run("HG_IMAGE_UPDATE", R"({"Update":"0","Update":"1"})"),
              R"({"Update":"0","Update":"1","Status":"0"})");
    EXPECT_TRUE(recording_device::calls().empty());
}

} // namespace firmware_update_test

// UPDATE_IMMEDIATE and IMAGE_DOWNLOAD, which hand the address to a worker and answer at once.
namespace firmware_start_test {

class UpdateImmediate : public FirmwareUpdateTest {};
class ImageDownload : public FirmwareUpdateTest {};

// ---- UPDATE_IMMEDIATE --------------------------------------------------------------------------

Request image_at(const std::string &address)
{
    return image(R"({"UpdateUrl":)" + escaped(address) + "}");
}

const std::string kDone = kNothing.followed_by(R"("Status":"0")");

TEST_F(UpdateImmediate, AnImageIsUpdatedAtOnce)
{
    EXPECT_EQ(run("UPDATE_IMMEDIATE", image_at(kAddress).json()), kDone);
    EXPECT_EQ(calls(), whole_update(kAddress));
    EXPECT_EQ(control.workers(), 1u);
    for (const std::string &address : kOddAddresses) {
        start_over();
        EXPECT_EQ(run("UPDATE_IMMEDIATE", image_at(address).json()), kDone);
        EXPECT_EQ(calls(), whole_update(address));
    }
}

TEST_F(UpdateImmediate, WithoutAnyPartAnUpdateHasNothingToDo)
{
    EXPECT_EQ(run("UPDATE_IMMEDIATE"), R"({"Status":"0"})");
    const Request request({{"image", R"({"UpdateUrl":"x"})"},
                           {"IMAGE", R"({"UpdateUrl":"x"})"},
                           {"dpi", "1"},
                           {"DPI", "1"},
                           {"Dpihttp", "1"},
                           {"UpdateUrl", R"("x")"}});
    EXPECT_EQ(run("UPDATE_IMMEDIATE", request.json()), request.followed_by(R"("Status":"0")"));
    EXPECT_EQ(control.workers(), 0u);
}

// What makes an image fail, and its answer; an empty text for success.
struct ImageCase {
    std::string json;
    bool busy;
    bool worker_fails;
    std::string reason;
};

const ImageCase kImages[] = {
    {"", false, false, ""},
    {R"({"UpdateUrl":"x"})", false, false, ""},
    {"{}", false, false, "json no UpdateUrl"},
    {"null", false, false, "json no UpdateUrl"},
    {R"({"UpdateUrl":"x"})", true, false, kDownloading},
    {R"({"UpdateUrl":"x"})", false, true, kNoThread},
};

// A part that is present, of any type, compensates for the failed image.
TEST_F(UpdateImmediate, TheOtherPartsOverrideTheImage)
{
    const std::vector<std::string> parts = {"", "null", "0", "false", R"("")", "[]", "{}"};
    for (const ImageCase &one : kImages) {
        for (const std::string &dpi : parts) {
            for (const std::string &dpi_http : parts) {
                start_over();
                Request request = one.json.empty() ? kNothing : image(one.json);
                request = dpi.empty() ? request : request.with("Dpi", dpi);
                request = dpi_http.empty() ? request : request.with("DpiHttp", dpi_http);
                if (one.worker_fails) {
                    control.fail_next_worker();
                }
                std::string reply;
                if (one.busy) {
                    const Busy busy;
                    reply = run("UPDATE_IMMEDIATE", request.json());
                    EXPECT_TRUE(is_busy());
                } else {
                    reply = run("UPDATE_IMMEDIATE", request.json());
                }
                const bool fails = !one.reason.empty() && dpi.empty() && dpi_http.empty();
                EXPECT_EQ(reply, fails ? kNothing.followed_by(failure(one.reason)) : kDone)
                    << request.json();
                const bool starts = !one.json.empty() && one.reason.empty();
                EXPECT_EQ(calls(), starts ? whole_update("x") : Calls()) << request.json();
            }
        }
    }
}

TEST_F(UpdateImmediate, ASecondUpdateIsRefusedWhileOneIsUnderWay)
{
    when<devapi_flash_update_image>([](const char *) {
        sleep(60);
        return 0;
    });
    control.hold_sleeps();
    EXPECT_EQ(run("UPDATE_IMMEDIATE", image_at(kAddress).json()), kDone);
    control.wait_for_sleep(1);
    EXPECT_EQ(run("UPDATE_IMMEDIATE", image_at("second").json()),
              kNothing.followed_by(failure(kDownloading)));
    EXPECT_EQ(run("UPDATE_IMMEDIATE", image_at("second").with("Dpi", "1").json()), kDone);
    control.end_sleep();
    control.wait_until_idle();
    EXPECT_EQ(run("UPDATE_IMMEDIATE", image_at("third").json()), kDone);
    EXPECT_EQ(control.workers(), 2u);
    control.end_all_sleeps();
}

// ---- IMAGE_DOWNLOAD ----------------------------------------------------------------------------

Request router(const std::string &json)
{
    return Request({{"First", "1"}, {"MainRouter", json}, {"Last", "{}"}});
}

const Request kRouter = router(R"({"UpdateUrl":"x"})");

TEST_F(ImageDownload, TheMainRoutersImageIsDownloaded)
{
    const std::string done = kNothing.followed_by(R"("Status":"0","updateResult":"0")");
    EXPECT_EQ(run("IMAGE_DOWNLOAD", kRouter.json()), done);
    EXPECT_EQ(calls(), whole_update("x"));
    for (const std::string &address : kOddAddresses) {
        start_over();
        EXPECT_EQ(run("IMAGE_DOWNLOAD", router(R"({"UpdateUrl":)" + escaped(address) + "}").json()),
                  done);
        EXPECT_EQ(calls(), whole_update(address));
    }
}

TEST_F(ImageDownload, ChildRoutersAreTakenOutInEveryCase)
{
    for (const std::string child : {"null", "7", "true", R"("x")", "[]", R"({"UpdateUrl":"c"})"}) {
        start_over();
        EXPECT_EQ(run("IMAGE_DOWNLOAD", kRouter.with("ChildRouter", child).json()),
                  kNothing.followed_by(R"("Status":"0","updateResult":"0")"));
        EXPECT_EQ(calls(), whole_update("x"));
        EXPECT_EQ(run("IMAGE_DOWNLOAD", kNothing.with("ChildRouter", child).json()),
                  kNothing.followed_by(failure("Get mainrouter error")));
        EXPECT_EQ(run("IMAGE_DOWNLOAD", router("{}").with("ChildRouter", child).json()),
                  kNothing.followed_by(failure("Get UpdateUrl null")));
        const Busy busy;
        EXPECT_EQ(run("IMAGE_DOWNLOAD", kRouter.with("ChildRouter", child).json()),
                  refused(kDownloading));
    }
}

TEST_F(ImageDownload, ADownloadThatCannotStartSaysSo)
{
    {
        const Busy busy;
        EXPECT_EQ(run("IMAGE_DOWNLOAD", kRouter.json()), refused(kDownloading));
        EXPECT_TRUE(is_busy());
    }
    control.fail_next_worker();
    EXPECT_EQ(run("IMAGE_DOWNLOAD", kRouter.json()), refused(kNoThread));
    EXPECT_FALSE(is_busy());
    EXPECT_TRUE(recording_device::calls().empty());
}

} // namespace firmware_start_test

// PLATEFORM_UPDATE_IMMEDIATE, which checks the running firmware before it starts a worker.
namespace firmware_platform_test {

class PlateformUpdateImmediate : public FirmwareUpdateTest {};

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

TEST_F(PlateformUpdateImmediate, ThePlatformStartsAnUpdate)
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

TEST_F(PlateformUpdateImmediate, ThePlatformNeedsADeviceThatAnswers)
{
    for (const int32_t result : kFailures) {
        recording_device::reset();
        when<devapi_get_update_status_info>([result](UpdateStatusInfo *info) {
            strcpy(info->FWVersion, "x"); // what it writes is ignored
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

TEST_F(PlateformUpdateImmediate, ThePlatformsAddressIsComparedWithTheVersionThatRuns)
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

TEST_F(PlateformUpdateImmediate, ThePlatformIsToldWhatKeptTheUpdateFromStarting)
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
