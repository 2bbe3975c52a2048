// SPDX-License-Identifier: MIT
// A gateway with a trace and a state file, a web server for the files of the test's folder, and
// images for both.
#pragma once

#include "gateway_fixture.h"
#include "http_server.h"

#include <functional>
#include <string>

// An image for the scenario's router, as a string of bytes.
struct ImageOptions {
    std::string product = "HGU-AX3000";
    std::string version = "V3.2.0";
    std::string date = "2026-02-01";
    size_t payload_size = 100'000;
    std::string signing_key = {}; // file; without one the image is of the format without signature
    uint32_t rollback = 0;
};
std::string make_image(const ImageOptions &options = {});

class FirmwareTest : public GatewayTest {
  protected:
    FirmwareTest();

    void SetUp() override { ASSERT_EQ(open(options()), ""); }

    // The test's files, and others. Addresses of files in the test's folder are allowed.
    Options options(Options others = {}) const
    {
        others.state_file = path("state");
        others.trace = path("trace");
        if (others.firmware_folder.empty()) {
            others.firmware_folder = path("");
        }
        return others;
    }
    // Sets the variable for gateways that are opened from now on.
    static void set_limit(const std::string &name, const std::string &value);

    // Writes a new Ed25519 key to the file, and its public key to NAME.pub.
    void make_key(const std::string &name) const;
    static void run_openssl(std::vector<std::string> words);

    // A download that has to fail. Result: the reason.
    std::string refusal(const std::string &address) const;
    // Flashes the downloaded image and restarts. Result: the version that runs then.
    static std::string version_after_flash();
    // The running version, which every function has to report.
    static std::string version();

    // Whether a partial download is left.
    bool has_partial() const
    {
        return std::filesystem::exists(path("state.firmware/download.part"));
    }

    HttpServer server_;
};
