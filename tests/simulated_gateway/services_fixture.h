// SPDX-License-Identifier: MIT
// The three-storey house, with a trace, a state file and a stopped clock.
#pragma once

#include "gateway_fixture.h"

class ServicesTest : public GatewayTest {
  protected:
    static constexpr int32_t kKitchenSpeaker = 4;
    static constexpr char kFirstFloor[] = "3C6AD2228140";
    static constexpr char kAttic[] = "3C6AD2228180";

    void SetUp() override { ASSERT_EQ(open_when(kTime), ""); }

    std::string open_when(int64_t time)
    {
        return open_at(time, {.state_file = path("state"), .trace = path("trace")});
    }
    // Opens another home, without a state file.
    std::string open_home(const nlohmann::json &home)
    {
        return open_at(kTime,
                       {.scenario = write("home.json", home.dump()), .trace = path("trace")});
    }
    // The error of opening the house with one value changed, without the file's name.
    std::string error_with(const std::string &pointer, const nlohmann::json &value)
    {
        nlohmann::json home = house();
        home[nlohmann::json::json_pointer(pointer)] = value;
        const std::string error = open_home(home);
        const std::string file = path("home.json") + ": ";
        return error.starts_with(file) ? error.substr(file.size()) : error;
    }
    nlohmann::json house_without_wan() const
    {
        nlohmann::json home = house();
        home["wan"]["connected"] = false;
        home["wan"]["fault"] = "LINK_DOWN";
        return home;
    }
    std::string state() const { return read(path("state")); }

    static AdBaseInfo host(int32_t index)
    {
        AdBaseInfo info = {};
        info.HostIndex = index;
        EXPECT_EQ(devapi_get_ad_base_info(&info), 0);
        return info;
    }
};
