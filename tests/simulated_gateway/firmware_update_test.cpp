// SPDX-License-Identifier: MIT
// Download, flash and start of an image: what runs, what is kept, what is refused.
#include "firmware_fixture.h"

#include <sys/resource.h>

namespace {

class FirmwareUpdateTest : public FirmwareTest {
  protected:
    int32_t download(const std::string &file) const
    {
        return devapi_download_image(server_.address(file).c_str(), 0);
    }
    nlohmann::json slots() const { return json_of(path("state")).at("firmware"); }
    std::string traced() const { return read(path("trace")); }
};

TEST_F(FirmwareUpdateTest, AFlashedImageRunsFromTheNextRestartOn)
{
    EXPECT_EQ(download("new.image"), 0);
    EXPECT_EQ(version(), "V2.4.1");
    EXPECT_EQ(devapi_update_image(), 0);
    EXPECT_EQ(version(), "V2.4.1");
    EXPECT_EQ(slots().at("running"), 1);
    EXPECT_EQ(slots().at("next"), 2);
    EXPECT_EQ(read(path("state.firmware/slot_2.image")), make_image());

    // Opening in another process is not a restart.
    ASSERT_EQ(reopen(options()), "");
    EXPECT_EQ(version(), "V2.4.1");

    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_EQ(version(), "V3.2.0");
    EXPECT_EQ(slots().at("running"), 2);
    EXPECT_EQ(slots().at("slot_1").at("version"), "V2.4.1");
    EXPECT_THAT(traced(), HasSubstr("firmware V3.2.0 starts"));
    ASSERT_EQ(reopen(options()), "");
    EXPECT_EQ(version(), "V3.2.0");
}

TEST_F(FirmwareUpdateTest, BothStepsInOne)
{
    EXPECT_EQ(devapi_flash_update_image(server_.address("new.image").c_str()), 0);
    EXPECT_EQ(version(), "V2.4.1");
    simulated_gateway_power_cycle();
    EXPECT_EQ(version(), "V3.2.0");
    EXPECT_EQ(reason(devapi_flash_update_image(server_.address("none").c_str())),
              "the server answers with HTTP status 404");
}

TEST_F(FirmwareUpdateTest, ItsEndIsReportedToTheHost)
{
    std::vector<std::string> reported;
    simulated_gateway_on_update(
        [](const char *version, const char *reason, void *all) {
            static_cast<std::vector<std::string> *>(all)->push_back(
                version != nullptr ? version : std::string("failed: ") + reason);
            EXPECT_NE(version == nullptr, reason == nullptr);
        },
        &reported);
    ASSERT_EQ(reopen(options({.faults = {"devapi_update_image=-1*1"}})), "");
    EXPECT_EQ(devapi_update_image(), -1);
    EXPECT_EQ(devapi_update_image(), -1);
    EXPECT_EQ(download("none"), -1);
    EXPECT_EQ(devapi_download_image(nullptr, 0), -1);
    EXPECT_EQ(devapi_get_update_status_info(nullptr), -1) << "no step of an update";
    EXPECT_EQ(download("new.image"), 0) << "not the end";
    EXPECT_EQ(devapi_update_image(), 0);
    EXPECT_EQ(devapi_flash_update_image(server_.address("new.image").c_str()), 0);
    EXPECT_EQ(devapi_flash_update_image("ftp://127.0.0.1/new.image"), -1);
    simulated_gateway_on_update(nullptr, nullptr);
    EXPECT_EQ(download("none"), -1);
    EXPECT_EQ(reported,
              (std::vector<std::string>{
                  "failed: fault", "failed: no image was downloaded",
                  "failed: the server answers with HTTP status 404", "failed: an argument is null",
                  "V3.2.0", "V3.2.0",
                  "failed: the address is invalid: its scheme is none of http, https, file"}));
}

TEST_F(FirmwareUpdateTest, TheSlotsAlternate)
{
    for (const char *number : {"V3", "V4", "V5"}) {
        write("next.image", make_image({.version = number}));
        ASSERT_EQ(download("next.image"), 0);
        EXPECT_EQ(version_after_flash(), number);
    }
    EXPECT_EQ(slots().at("slot_1").at("version"), "V4");
    EXPECT_EQ(slots().at("slot_2").at("version"), "V5");
}

TEST_F(FirmwareUpdateTest, AnImageCanReplaceTheOneThatWaitsForItsStart)
{
    write("next.image", make_image({.version = "V4"}));
    ASSERT_EQ(download("new.image"), 0);
    EXPECT_EQ(devapi_update_image(), 0);
    ASSERT_EQ(download("next.image"), 0);
    EXPECT_EQ(version_after_flash(), "V4");
    EXPECT_EQ(slots().at("slot_1").at("version"), "V2.4.1");
}

TEST_F(FirmwareUpdateTest, ADownloadedImageCanBeFlashedByAnotherProcessAndTwice)
{
    ASSERT_EQ(download("new.image"), 0);
    ASSERT_EQ(reopen(options()), "");
    EXPECT_EQ(devapi_update_image(), 0);
    EXPECT_EQ(version_after_flash(), "V3.2.0");
    EXPECT_EQ(version_after_flash(), "V3.2.0");
    EXPECT_EQ(slots().at("running"), 1);
}

TEST_F(FirmwareUpdateTest, RecoveryKeepsTheFirmware)
{
    ASSERT_EQ(download("new.image"), 0);
    EXPECT_EQ(version_after_flash(), "V3.2.0");
    EXPECT_EQ(devapi_recovery(), 0);
    EXPECT_EQ(version(), "V3.2.0");
    EXPECT_EQ(json_of(path("state")).at("factory").at("identity").at("software_version"), "V2.4.1");
}

TEST_F(FirmwareUpdateTest, WithoutADownloadNothingIsFlashed)
{
    EXPECT_EQ(reason(devapi_update_image()), "no image was downloaded");
    EXPECT_EQ(slots().at("next"), 1);
}

TEST_F(FirmwareUpdateTest, AnInvalidImageIsRefusedAndLeavesNothing)
{
    const std::string whole = make_image();
    std::string damaged = whole;
    damaged[50'000] = static_cast<char>(~damaged[50'000]);
    const struct {
        std::string image;
        const char *expected_error;
    } wrong_images[] = {
        {"", "the image is empty"},
        {"#!/bin/sh\n", "this is not an image: it does not begin with the magic bytes of one"},
        {whole.substr(0, 403), "the image ends after 403 of 404 bytes"},
        {whole.substr(0, 99'999), "the image ends after 99999 of 100404 bytes"},
        {whole + "x", "the image continues after the 100404 bytes given in its header"},
        {damaged, "the image is damaged: its SHA-256 is not the one in its header"},
        {make_image({.product = "MAP-AX1800"}),
         "the image is for \"MAP-AX1800\", not for \"HGU-AX3000\""},
        {make_image({.payload_size = 200'000}),
         "the image has a payload of 200000 bytes; no more than 150000 bytes are taken in all"},
    };
    set_limit("LARGEST_IMAGE", "150000");
    ASSERT_EQ(reopen(options()), "");
    for (const auto &[image, expected_error] : wrong_images) {
        write("wrong.image", image);
        EXPECT_EQ(refusal(server_.address("wrong.image")), expected_error);
        EXPECT_EQ(refusal("file://" + path("wrong.image")), expected_error);
        EXPECT_FALSE(has_partial()) << expected_error;
        EXPECT_EQ(devapi_update_image(), -1);
        EXPECT_EQ(devapi_flash_update_image(server_.address("wrong.image").c_str()), -1);
        EXPECT_EQ(slots().at("next"), 1);
        // It does not prevent the next download, even from the same address.
        write("wrong.image", whole);
        EXPECT_EQ(download("wrong.image"), 0) << expected_error;
        std::filesystem::remove(path("state.firmware/downloaded.image"));
    }
    EXPECT_EQ(version(), "V2.4.1");
}

TEST_F(FirmwareUpdateTest, AnInvalidImageLeavesTheOneDownloadedBefore)
{
    ASSERT_EQ(download("new.image"), 0);
    write("wrong.image", "wrong");
    EXPECT_EQ(download("wrong.image"), -1);
    EXPECT_EQ(version_after_flash(), "V3.2.0");
}

TEST_F(FirmwareUpdateTest, AnImageCorruptedOnDiskIsNotFlashed)
{
    ASSERT_EQ(download("new.image"), 0);
    write("state.firmware/downloaded.image", make_image().substr(0, 5000));
    EXPECT_EQ(reason(devapi_update_image()), "the image ends after 5000 of 100404 bytes");
    EXPECT_EQ(slots().at("next"), 1);
    EXPECT_FALSE(std::filesystem::exists(path("state.firmware/slot_2.image.tmp")));
}

TEST_F(FirmwareUpdateTest, AnInvalidSlotIsNotStarted)
{
    const std::string slot = path("state.firmware/slot_2.image");
    const std::function<void()> damages[] = {
        [&] { std::filesystem::remove(slot); },
        [&] { write("state.firmware/slot_2.image", ""); },
        [&] { write("state.firmware/slot_2.image", make_image().substr(0, 100'403)); },
        [&] { write("state.firmware/slot_2.image", make_image({.version = "V9"})); },
        [&] { write("state.firmware/slot_2.image", make_image({.product = "MAP-AX1800"})); },
        [&] { std::filesystem::remove_all(path("state.firmware")); },
    };
    for (const auto &damage : damages) {
        std::filesystem::remove(path("trace"));
        ASSERT_EQ(reopen(options()), "");
        ASSERT_EQ(download("new.image"), 0);
        ASSERT_EQ(devapi_update_image(), 0);
        damage();
        EXPECT_EQ(devapi_reboot(), 0);
        EXPECT_EQ(version(), "V2.4.1");
        EXPECT_THAT(traced(), HasSubstr("firmware V3.2.0 does not start, "));
        EXPECT_EQ(slots().at("running"), 1);
        EXPECT_EQ(slots().at("next"), 1);
    }
    // And it can be written again.
    ASSERT_EQ(download("new.image"), 0);
    EXPECT_EQ(version_after_flash(), "V3.2.0");
}

TEST_F(FirmwareUpdateTest, AFlashThatCannotBeSavedDoesNotHappen)
{
    ASSERT_EQ(download("new.image"), 0);
    // The folder has the name of the temporary file, so nothing can be written.
    for (const char *name : {"state.tmp", "state.firmware/slot_2.image.tmp"}) {
        std::filesystem::create_directory(path(name));
        EXPECT_EQ(reason(devapi_update_image()), path(name) + ": Is a directory");
        EXPECT_EQ(slots().at("next"), 1);
        std::filesystem::remove(path(name));
        simulated_gateway_power_cycle();
        EXPECT_EQ(version(), "V2.4.1");
    }
    EXPECT_EQ(version_after_flash(), "V3.2.0");
}

TEST_F(FirmwareUpdateTest, AnImageThatCannotBeKeptIsAFailure)
{
    write("state.firmware", "a file in the folder's place");
    EXPECT_EQ(refusal(server_.address("new.image")),
              path("state.firmware/download.part") + ": Not a directory");
    std::filesystem::remove(path("state.firmware"));

    const auto download_with_little_space = [&] {
        const rlimit limit = {.rlim_cur = 50'000, .rlim_max = 50'000};
        setrlimit(RLIMIT_FSIZE, &limit);
        EXPECT_EQ(refusal(server_.address("new.image")),
                  path("state.firmware/download.part") + ": File too large");
        std::exit(testing::Test::HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(download_with_little_space(), testing::ExitedWithCode(0), "");
    EXPECT_FALSE(has_partial());
    EXPECT_EQ(download("new.image"), 0);
}

TEST_F(FirmwareUpdateTest, AStateInMemoryKeepsNoImages)
{
    const std::string temporary = path("tmp");
    std::filesystem::create_directory(temporary);
    setenv("TMPDIR", temporary.c_str(), 1);
    ASSERT_EQ(reopen({.trace = path("trace")}), "");
    EXPECT_TRUE(std::filesystem::is_empty(temporary));
    ASSERT_EQ(download("new.image"), 0);
    EXPECT_FALSE(std::filesystem::is_empty(temporary));
    for (const auto &folder : std::filesystem::directory_iterator(temporary)) {
        EXPECT_EQ(folder.status().permissions(), std::filesystem::perms::owner_all);
    }
    EXPECT_EQ(version_after_flash(), "V3.2.0");
    close();
    EXPECT_TRUE(std::filesystem::is_empty(temporary));
    unsetenv("TMPDIR");
}

TEST_F(FirmwareUpdateTest, FaultsAndModesApplyAsToAnyFunction)
{
    ASSERT_EQ(reopen(options({.faults = {"devapi_download_image=-7*1", "devapi_update_image=-8*1",
                                         "devapi_flash_update_image=-9*1"}})),
              "");
    const std::string address = server_.address("new.image");
    EXPECT_EQ(download("new.image"), -7);
    EXPECT_EQ(devapi_update_image(), -8);
    EXPECT_EQ(devapi_flash_update_image(address.c_str()), -9);
    EXPECT_EQ(devapi_download_image(address.c_str(), 1), 0);
    EXPECT_EQ(reason(devapi_download_image(address.c_str(), 2)), "mode 2 is not within 0 to 1");
    EXPECT_EQ(devapi_update_image(), 0);
}

TEST_F(FirmwareUpdateTest, ALinkInsteadOfTheFolderIsNotFollowed)
{
    std::filesystem::create_directory(path("elsewhere"));
    std::filesystem::create_directory_symlink(path("elsewhere"), path("state.firmware"));
    write("image", make_image());
    EXPECT_EQ(refusal(server_.address("image")), path("state.firmware") + ": is a link");
    EXPECT_TRUE(std::filesystem::is_empty(path("elsewhere")));

    // Nor is a previously flashed image read from there.
    std::filesystem::remove(path("state.firmware"));
    EXPECT_EQ(devapi_flash_update_image(server_.address("image").c_str()), 0) << reason();
    std::filesystem::remove(path("elsewhere"));
    std::filesystem::rename(path("state.firmware"), path("elsewhere"));
    std::filesystem::create_directory_symlink(path("elsewhere"), path("state.firmware"));
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_EQ(version(), "V2.4.1");
}

TEST_F(FirmwareUpdateTest, TheRunningSlotNeedsAVersion)
{
    close();
    nlohmann::json state = state_to_vary(path("state"));
    state["firmware"]["running"] = 2;
    write("state", state.dump());
    EXPECT_EQ(open(options()),
              path("state") + ": /firmware/slot_2/version: is missing, and it runs");
    state["firmware"]["running"] = 3;
    write("state", state.dump());
    EXPECT_EQ(open(options()), path("state") + ": /firmware/running: 3 is not within 1 to 2");
    state["firmware"]["running"] = 1;
    state["firmware"]["next"] = 2;
    write("state", state.dump());
    ASSERT_EQ(open(options()), "");
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_EQ(version(), "V2.4.1");
}

TEST_F(FirmwareUpdateTest, TheAddressForThePlatformIsTheRoutersOwn)
{
    char mac[18];
    EXPECT_EQ(devapi_get_iotagtd_device_mac(mac, sizeof(mac)), 0);
    EXPECT_STREQ(mac, "3C:6A:D2:10:4F:20");
    for (const int32_t size : {17, 1, 0, -1, INT32_MIN}) {
        char too_small[17] = "as before";
        EXPECT_EQ(devapi_get_iotagtd_device_mac(too_small, size), -1);
        EXPECT_STREQ(too_small, "as before");
    }
}

} // namespace
