// SPDX-License-Identifier: MIT
// A gateway opened with options of the test, in a separate folder, and what most tests ask it.
#pragma once

#include "record_fields.h"
#include "simulated_gateway/simulated_gateway.h"
#include "smart_router_service/device_access.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// The record or the number that a query returns, which has to succeed.
template <class Record> Record reported_by(int32_t (*query)(Record *), Record record = {})
{
    if constexpr (std::is_arithmetic_v<Record>) {
        record = -1; // which no query returns
    }
    EXPECT_EQ(query(&record), 0);
    return record;
}

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

    // The gateway at a time at which its clock is stopped, with its state in the file "state" and
    // its trace in the file "trace": as it was left, or a new house.
    std::string open_when(int64_t time) const;
    // The same for a new gateway of another home.
    std::string open_kept_home(const nlohmann::json &home, int64_t time = kTime) const;
    // The same without a state file, which takes longer to open.
    std::string open_home(const nlohmann::json &home, int64_t time = kTime) const;

    // The last line of the trace in the file "trace".
    std::string last_line() const { return lines(path("trace")).back(); }
    // Why the last call failed, according to that.
    std::string reason() const;
    // The same for a call with this result, which has to be -1.
    std::string reason(int32_t result) const;

    std::string path(const std::string &name) const { return (folder_ / name).string(); }
    std::string write(const std::string &name, const std::string &text) const;
    static std::string read(const std::string &path);
    static std::vector<std::string> lines(const std::string &path);

    // The built-in scenario, with other values at the JSON pointers.
    using Changes = std::vector<std::pair<std::string, nlohmann::json>>;
    static nlohmann::json house(const Changes &changes = {});
    static nlohmann::json house_without_wan(const char *fault = "LINK_DOWN");
    // A home without radios, and without what needs them.
    static nlohmann::json house_without_radios();
    static nlohmann::json json_of(const std::string &path);
    // A state that the gateway wrote, for the test to change: without its checksum, and without the
    // copy that is used where it is invalid.
    static nlohmann::json state_to_vary(const std::string &path);

    // One device call: its result, and the MAC address that it returned.
    static int32_t call();
    static std::string mac();

    static HgBaseInfo base() { return reported_by(devapi_get_hg_base_info); }
    static AdBaseInfo host(int32_t index);
    static SsidInfo ssid(int32_t index);
    static int32_t switch_ssid(int32_t index, const char *enable);

  private:
    std::filesystem::path folder_;
};

// Tests that begin with the three-storey house, when it is switched on.
class HouseTest : public GatewayTest {
  protected:
    void SetUp() override { ASSERT_EQ(open_when(kTime), ""); }
};
