// A gateway with a trace and a state file, a web server with the files of the test's folder, and
// images for them.
#pragma once

#include "gateway_fixture.h"
#include "http_server.h"

#include <functional>
#include <string>

// An image for the scenario's router, as a text.
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

    // Files of the test's folder can be fetched as well.
    Options options() const
    {
        return {.state_file = path("state"), .trace = path("trace"), .firmware_folder = path("")};
    }
    // Has the variable only for gateways that are opened from now on.
    static void set_limit(const std::string &name, const std::string &value);

    // Makes an Ed25519 key in the file, and its public one in NAME.pub.
    void make_key(const std::string &name) const;
    static void run_openssl(std::vector<std::string> words);

    // Downloads, which has to fail. Result: why it did.
    std::string refusal(const std::string &address) const;
    // Flashes what was downloaded and restarts. Result: the version that runs then.
    static std::string version_after_flash();
    // The version that runs, the same wherever it is asked for.
    static std::string version();

    // Whether anything is left of a download that is not whole.
    bool has_partial() const
    {
        return std::filesystem::exists(path("state.firmware/download.part"));
    }

    HttpServer server_;
};
