// SPDX-License-Identifier: MIT
// The commands that download and flash firmware. The worker is tested in firmware_worker_test.cpp.
#include "firmware_update.h"

#include "failing_memory.h"
#include "firmware_update_fixture.h"

#include <cstring>

namespace firmware_update_test {

using smart_router::kUpdateFailureSize;

// Addresses that a shell, a printf() or a short buffer would not survive, and none at all.
const std::vector<std::string> kOddAddresses = {
    "",
    " ",
    "http://updates.example/a b;reboot|`id`$(id)&&'x'>/etc/passwd\t\n\r\x01\x7f",
    "%s%n%d%100000d",
    "\xc4\xe3\xba\xc3\xff",
    std::string(1 << 20, '/'),
};

const std::string kZeroedStatus(sizeof(UpdateStatusInfo), '\0');

// The text as a JSON text; its bytes go through as they are, save those that JSON does not take.
std::string escaped(const std::string &text)
{
    const Json item(cJSON_CreateString(text.c_str()));
    return print(item.get());
}

constexpr char kNoThread[] = "failed to create down image thread";

// A request with an image between two keys that are none of the command's, and what is left of it.
Request image(const std::string &json)
{
    return Request({{"First", "1"}, {"Image", json}, {"Last", "{}"}});
}
const Request kNothing = image("").without("Image");

// What IMAGE_DOWNLOAD and PLATEFORM_UPDATE_IMMEDIATE answer when no worker could be started.
std::string refused(const std::string &reason)
{
    return kNothing.followed_by(R"("updateResult":"-1",)" + failure(reason));
}

class HgGetUpdateStatus : public FirmwareUpdateTest {};
class HgImageDownload : public FirmwareUpdateTest {};
class ImageUpdate : public FirmwareUpdateTest {};
class HgImageUpdate : public FirmwareUpdateTest {};
class UpdateImmediate : public FirmwareUpdateTest {};
class ImageDownload : public FirmwareUpdateTest {};
class PlateformUpdateImmediate : public FirmwareUpdateTest {};

// ---- HG_GET_UPDATE_STATUS ----------------------------------------------------------------------

TEST_F(HgGetUpdateStatus, ReportsTheStatus)
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

TEST_F(HgImageDownload, DownloadsWithinTheCommand)
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

TEST_F(HgImageDownload, TakesAnyAddress)
{
    for (const std::string &address : kOddAddresses) {
        recording_device::reset();
        EXPECT_EQ(run("HG_IMAGE_DOWNLOAD", R"({"UpdateUrl":)" + escaped(address) + "}"),
                  R"({"Status":"0"})");
        EXPECT_EQ(recording_device::calls().at(1), (Call{"devapi_download_image", {address, "0"}}));
    }
}

TEST_F(HgImageDownload, IsRefusedDuringAnotherUpdate)
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

TEST_F(ImageUpdate, FlashesWithinTheCommand)
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

TEST_F(ImageUpdate, IsRefusedDuringAnotherUpdate)
{
    const Busy busy;
    EXPECT_EQ(run("IMAGE_UPDATE", kFlash.json()),
              kFlash.without("MainRouter")
                  .followed_by(failure("update status maybe downloding or upgrading")));
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_TRUE(is_busy());
}

TEST_F(ImageUpdate, FlashesNothingUnlessUpdateIsOne)
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

const Request kHgFlash({{"First", "1"}, {"Update", R"("1")"}, {"Last", "{}"}});

TEST_F(HgImageUpdate, NeedsNoLock)
{
    when<devapi_update_image>([] {
        EXPECT_FALSE(is_busy());
        return 0;
    });
    EXPECT_EQ(run("HG_IMAGE_UPDATE", kHgFlash.json()), kHgFlash.followed_by(R"("Status":"0")"));
    recording_device::reset();
    const Busy busy;
    EXPECT_EQ(run("HG_IMAGE_UPDATE", kHgFlash.json()), kHgFlash.followed_by(R"("Status":"0")"));
    EXPECT_EQ(recording_device::calls(), (Calls{{"devapi_update_image", {}}}));
    EXPECT_TRUE(is_busy());
}

TEST_F(HgImageUpdate, FlashesNothingUnlessUpdateIsOne)
{
    for (const std::string &update : kNotNow) {
        const Request request = kHgFlash.with("Update", escaped(update));
        EXPECT_EQ(run("HG_IMAGE_UPDATE", request.json()), request.followed_by(R"("Status":"0")"));
    }
    EXPECT_EQ(run("HG_IMAGE_UPDATE", R"({"Update":"0","Update":"1"})"),
              R"({"Update":"0","Update":"1","Status":"0"})");
    EXPECT_TRUE(recording_device::calls().empty());
}

// ---- UPDATE_IMMEDIATE: passes the address to a worker and answers at once ----------------------

Request image_at(const std::string &address)
{
    return image(R"({"UpdateUrl":)" + escaped(address) + "}");
}

const std::string kDone = kNothing.followed_by(R"("Status":"0")");

TEST_F(UpdateImmediate, StartsTheUpdateOfTheImage)
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

TEST_F(UpdateImmediate, HasNothingToDoWithoutAPart)
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

// What makes an image fail, and the reason; empty for success.
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

TEST_F(UpdateImmediate, IsRefusedDuringAnotherUpdate)
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

// ---- The helpers of UPDATE_IMMEDIATE -----------------------------------------------------------

class UpdateImmediateImage : public FirmwareUpdateTest {
  protected:
    // The result, and what is in a buffer that was full of another character.
    std::pair<int32_t, std::string> upgrade(const std::string &image)
    {
        char reason[kUpdateFailureSize + 1];
        memset(reason, '#', sizeof reason);
        const Json json = parse(image);
        const int32_t result = json_hg_image_down_and_upgrade(json.get(), reason);
        EXPECT_EQ(print(json.get()), image) << "the object belongs to the caller";
        EXPECT_EQ(reason[kUpdateFailureSize], '#');
        reason[kUpdateFailureSize] = '\0';
        return {result, reason};
    }
};

const std::string kUntouched(kUpdateFailureSize, '#');

TEST_F(UpdateImmediateImage, StartsTheWorker)
{
    EXPECT_EQ(upgrade(R"({"UpdateUrl":"x"})"), std::pair(0, kUntouched));
    EXPECT_EQ(calls(), whole_update("x"));
}

TEST_F(UpdateImmediateImage, GivesTheReasonOtherwise)
{
    EXPECT_EQ(upgrade("{}"), std::pair(-1, std::string("json no UpdateUrl")));
    EXPECT_EQ(upgrade(R"({"UpdateUrl":7})"), std::pair(-1, std::string("json no UpdateUrl")));
    control.fail_next_worker();
    EXPECT_EQ(upgrade(R"({"UpdateUrl":"x"})"), std::pair(-1, std::string(kNoThread)));
    const Busy busy;
    EXPECT_EQ(upgrade(R"({"UpdateUrl":"x"})"), std::pair(-1, std::string(kDownloading)));
    char reason[kUpdateFailureSize] = "";
    EXPECT_EQ(json_hg_image_down_and_upgrade(nullptr, reason), -1);
    EXPECT_STREQ(reason, "json no UpdateUrl");
    const Json image = parse(R"({"UpdateUrl":"x"})");
    const FailingMemory memory(0, FailingMemory::Fail::kLastingly);
    EXPECT_EQ(json_hg_image_down_and_upgrade(image.get(), reason), -1);
    EXPECT_STREQ(reason, "url is null");
}

TEST_F(UpdateImmediateImage, NeedsABufferForTheReason)
{
    const Json image = parse(R"({"UpdateUrl":"x"})");
    for (cJSON *item : {image.get(), static_cast<cJSON *>(nullptr)}) {
        EXPECT_EQ(json_hg_image_down_and_upgrade(item, nullptr), -1);
        EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "out_failreason is null!\n"}}));
        recording_host::reset();
    }
    EXPECT_EQ(control.workers(), 0u);
}

TEST_F(UpdateImmediateImage, TheOtherPartsAlwaysSucceed)
{
    char reason[kUpdateFailureSize] = "as before";
    const Json item = parse(R"({"x":1})");
    EXPECT_EQ(json_dpi_features_update(item.get(), reason), 0);
    EXPECT_EQ(json_dpi_features_update(nullptr, nullptr), 0);
    EXPECT_EQ(json_dpi_http_features_update(), 0);
    EXPECT_STREQ(reason, "as before");
    EXPECT_EQ(print(item.get()), R"({"x":1})");
    EXPECT_EQ(calls(), Calls());
}

// ---- IMAGE_DOWNLOAD ----------------------------------------------------------------------------

Request router(const std::string &json)
{
    return Request({{"First", "1"}, {"MainRouter", json}, {"Last", "{}"}});
}

const Request kRouter = router(R"({"UpdateUrl":"x"})");

TEST_F(ImageDownload, StartsTheUpdateOfTheMainRouter)
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

TEST_F(ImageDownload, RemovesChildRoutersInEveryCase)
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

TEST_F(ImageDownload, ReportsThatItCannotStart)
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

// ---- PLATEFORM_UPDATE_IMMEDIATE: checks the running firmware before it starts a worker ---------

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

Calls with_status_read(Calls calls)
{
    calls.insert(calls.begin(), {"devapi_get_update_status_info", {kZeroedStatus}});
    return calls;
}

TEST_F(PlateformUpdateImmediate, StartsTheUpdate)
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

TEST_F(PlateformUpdateImmediate, FailsWithoutTheStatusOfTheDevice)
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

TEST_F(PlateformUpdateImmediate, ComparesTheAddressWithTheRunningVersion)
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

TEST_F(PlateformUpdateImmediate, ReportsThatItCannotStart)
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

} // namespace firmware_update_test
