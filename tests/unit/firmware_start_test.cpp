// UPDATE_IMMEDIATE and IMAGE_DOWNLOAD, which hand the address to a worker and answer at once.
#include "firmware_update_fixture.h"

namespace firmware_start_test {

using recording_device::when;

// ---- UPDATE_IMMEDIATE --------------------------------------------------------------------------

Request image_at(const std::string &address)
{
    return image(R"({"UpdateUrl":)" + escaped(address) + "}");
}

const std::string kDone = kNothing.followed_by(R"("Status":"0")");

TEST_F(FirmwareUpdateTest, AnImageIsUpdatedAtOnce)
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

TEST_F(FirmwareUpdateTest, WithoutAnyPartAnUpdateHasNothingToDo)
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

// What makes an image fail, and what it is answered with; the empty text for one that does not.
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

// A part that is present, of whatever type, makes up for the image that failed.
TEST_F(FirmwareUpdateTest, TheOtherPartsOverrideTheImage)
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

TEST_F(FirmwareUpdateTest, ASecondUpdateIsRefusedWhileOneIsUnderWay)
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

TEST_F(FirmwareUpdateTest, TheMainRoutersImageIsDownloaded)
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

TEST_F(FirmwareUpdateTest, ChildRoutersAreTakenOutInEveryCase)
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

TEST_F(FirmwareUpdateTest, ADownloadThatCannotStartSaysSo)
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
