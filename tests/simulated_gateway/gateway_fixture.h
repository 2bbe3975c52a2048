// SPDX-License-Identifier: MIT
// A gateway opened with options of the test, in a separate folder.
#pragma once

#include "simulated_gateway/simulated_gateway.h"
#include "smart_router_service/device_access.h"

#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

class GatewayTest : public testing::Test {
  protected:
    GatewayTest();
    ~GatewayTest() override;

    // Empty texts are passed as NULL. Result: empty on success, else the error.
    struct Options {
        std::string scenario = {};
        std::string state_file = {};
        std::vector<std::string> faults = {};
        std::string trace = {};
        bool show_secrets = false;
        std::string firmware_folder = {};
        std::string firmware_key = {};
        int32_t reboot_seconds = 0;
        std::optional<SimulatedGatewayHome> home = {};
    };
    static std::string open(const Options &options);
    static void close() { simulated_gateway_close(); }
    static std::string reopen(const Options &options);

    // The same with a stopped clock.
    static constexpr int64_t kTime = 1767225600;
    static std::string open_at(int64_t time, const Options &options);

    // Why the last call failed, according to the trace in the file "trace".
    std::string reason() const;

    std::string path(const std::string &name) const { return (folder_ / name).string(); }
    std::string write(const std::string &name, const std::string &text) const;
    static std::string read(const std::string &path);
    static std::vector<std::string> lines(const std::string &path);

    // The built-in scenario, for the test to change.
    static nlohmann::json house();
    static nlohmann::json json_of(const std::string &path);
    // A state that the gateway wrote, for the test to change: without its checksum, and without the
    // copy that is used where it is invalid.
    static nlohmann::json state_to_vary(const std::string &path);

    // One device call: its result, and the MAC address that it returned.
    static int32_t call();
    static std::string mac();

  private:
    std::filesystem::path folder_;
};

// Copies a text into a record's field as the plug-in does: cut at its width, and with a NUL.
template <size_t width> void set(char (&field)[width], const std::string &text)
{
    field[text.copy(field, width - 1)] = '\0';
}

// Fills a field completely, without a NUL.
template <size_t width> void fill_completely(char (&field)[width], char letter)
{
    std::memset(field, letter, width);
}
