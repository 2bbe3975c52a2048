// The firmware commands that run to their end: status, download, flash.
#include "firmware_update_fixture.h"

#include <cstring>

namespace firmware_update_test {

using recording_device::when;

// ---- HG_GET_UPDATE_STATUS ----------------------------------------------------------------------

TEST_F(FirmwareUpdateTest, TheStatusIsReported)
{
    when<devapi_get_update_status_info>([](UpdateStatusInfo *info) {
        *info = {"RT-7", "A1", "1.4.2", "2025-03-01", "router", "0371"};
        return 0;
    });
    const Busy busy; // the status is nobody's secret
    EXPECT_EQ(run("HG_GET_UPDATE_STATUS", R"({"First":1,"name":"kept"})"),
              R"({"First":1,"name":"kept","Status":"0","up_status":"0","name":"RT-7",)"
              R"("HWVersion":"A1","FWVersion":"1.4.2","FWDATA":"2025-03-01",)"
              R"("DeviceType":"router","AreaCode":"0371"})");
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_update_status_info", {kZeroedStatus}}}));
}

// ---- HG_IMAGE_DOWNLOAD -------------------------------------------------------------------------

const Request kDownload({{"First", "1"}, {"UpdateUrl", quoted(kAddress)}, {"Last", "{}"}});

TEST_F(FirmwareUpdateTest, ADownloadIsDoneWithinTheCommand)
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

TEST_F(FirmwareUpdateTest, ADownloadTakesAnyAddress)
{
    for (const std::string &address : kOddAddresses) {
        recording_device::reset();
        EXPECT_EQ(run("HG_IMAGE_DOWNLOAD", R"({"UpdateUrl":)" + escaped(address) + "}"),
                  R"({"Status":"0"})");
        EXPECT_EQ(recording_device::calls().at(1), (Call{"devapi_download_image", {address, "0"}}));
    }
}

TEST_F(FirmwareUpdateTest, ADownloadIsRefusedWhileAnotherIsUnderWay)
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

// What is neither "1" nor anything else than a text.
const std::vector<std::string> kNotNow = {"0",  "",   "2",    "11",
                                          "1 ", " 1", "01",   "1\n",
                                          "+1", "-1", "1.0",  "1" + std::string(31, ' '),
                                          "y",  "on", "true", std::string(1 << 20, '1'),
                                          "%s", "\1", "\xff", "1" + std::string(32, '0')};

TEST_F(FirmwareUpdateTest, AFlashIsDoneWithinTheCommand)
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

TEST_F(FirmwareUpdateTest, AFlashIsRefusedWhileAnotherIsUnderWay)
{
    const Busy busy;
    EXPECT_EQ(run("IMAGE_UPDATE", kFlash.json()),
              kFlash.without("MainRouter")
                  .followed_by(failure("update status maybe downloding or upgrading")));
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_TRUE(is_busy());
}

TEST_F(FirmwareUpdateTest, AnythingButOneFlashesNothing)
{
    const Busy busy; // what flashes nothing needs no lock
    for (const std::string &update : kNotNow) {
        const Request request = flash(R"({"Update":)" + escaped(update) + "}");
        EXPECT_EQ(run("IMAGE_UPDATE", request.json()),
                  request.without("MainRouter").followed_by(R"("Status":"0")"));
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

// ---- HG_IMAGE_UPDATE ---------------------------------------------------------------------------

const Request kUnguardedFlash({{"First", "1"}, {"Update", R"("1")"}, {"Last", "{}"}});

TEST_F(FirmwareUpdateTest, AnUnguardedFlashNeedsNoLock)
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

TEST_F(FirmwareUpdateTest, AnythingButOneFlashesNothingUnguarded)
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
