// A gateway that is opened with settings of the test, in a folder of its own.
#pragma once

#include "simulated_gateway/simulated_gateway.h"
#include "smart_router_service/device_access.h"

#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

class GatewayTest : public testing::Test {
  protected:
    GatewayTest();
    ~GatewayTest() override;

    // Empty texts are left NULL. Result: empty on success, else the error.
    struct Options {
        std::string scenario = {};
        std::string state_file = {};
        std::vector<std::string> faults = {};
        std::string trace = {};
        bool show_secrets = false;
        std::string firmware_folder = {};
        std::string firmware_key = {};
        int32_t reboot_seconds = 0;
    };
    static std::string open(const Options &options);
    static void close() { simulated_gateway_close(); }
    static std::string reopen(const Options &options);

    // The same with a clock that stands still.
    static constexpr int64_t kTime = 1767225600;
    static std::string open_at(int64_t time, const Options &options);

    // Why the last call failed, as the trace in the file "trace" says.
    std::string reason() const;

    std::string path(const std::string &name) const { return (folder_ / name).string(); }
    std::string write(const std::string &name, const std::string &text) const;
    static std::string read(const std::string &path);
    static std::vector<std::string> lines(const std::string &path);

    // The built-in scenario, to be varied.
    static nlohmann::json house();
    static nlohmann::json json_of(const std::string &path);
    // A state as the gateway wrote it, to be varied: without its checksum, and without the copy
    // that stands in for it where it does not hold.
    static nlohmann::json state_to_vary(const std::string &path);

    // One device call: its result, and the MAC address that it brought.
    static int32_t call();
    static std::string mac();

  private:
    std::filesystem::path folder_;
};

// Puts a text into a record's field as the plug-in does: cut at its width, and with a NUL.
template <size_t width> void set(char (&field)[width], const std::string &text)
{
    field[text.copy(field, width - 1)] = '\0';
}

// Fills a field to the brim, without a NUL.
template <size_t width> void fill_to_the_brim(char (&field)[width], char letter)
{
    std::memset(field, letter, width);
}
