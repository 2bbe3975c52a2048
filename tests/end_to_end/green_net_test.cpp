// SPDX-License-Identifier: MIT
// Parental control: the devices that it protects and its periods, from one agent to the next.
#include "gateway_test.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using testing::HasSubstr;

using Json = nlohmann::ordered_json;

namespace green_net_test {

constexpr char kPhone[] = "DA:41:7C:0E:92:B3";
constexpr char kLaptop[] = "F4:D4:88:5B:3F:72";
constexpr char kConsole[] = "70:F0:88:2C:A6:93";
constexpr char kMissing[] = "{\"Mac\":\"F4:D4:88:5B:3F:72\",\"Status\":\"1\","
                            "\"FailReason\":\"xml mac index not found\"}\n";

constexpr char kPeriods[] =
    R"([{"StartTime":"21:00","EndTime":"06:30","Enable":"1","DaysOfWeek":"12345"},)"
    R"({"StartTime":"23:15","EndTime":"08:00","Enable":"0","DaysOfWeek":"67"}])";

Json device(const std::string &mac, const std::string &name, const std::string &notify)
{
    return {{"Mac", mac}, {"Name", name}, {"NotifyEnable", notify}};
}

class GreenNet : public GatewayTest {
  protected:
    GreenNet() { set_list({phone_, laptop_, console_}); }

    void set_list(const Json &devices) const
    {
        EXPECT_EQ(reply("SET_GREENNET_DEVICE_LIST", Json{{"DeviceList", devices}}.dump()), kDone);
    }
    // The list as reported: each device, and whether it is protected.
    Json list() const { return Json::parse(reply("GET_GREENNET_DEVICE_LIST"))["DeviceList"]; }

    std::string periods_of(const std::string &mac) const
    {
        return reply("GET_GREENNET_PROTECT_PERIOD_LIST", Json{{"Mac", mac}}.dump());
    }
    void set_periods(const std::string &mac, const std::string &periods) const
    {
        EXPECT_THAT(reply("SET_GREENNET_PROTECT_PERIOD_LIST",
                          R"({"Mac":")" + mac + R"(","Sleep":)" + periods + "}"),
                    HasSubstr(R"("Status":"0"})"));
    }

    static Json with_protection(Json device, const std::string &enable)
    {
        device["ProtectEnable"] = enable;
        return device;
    }

    const Json phone_ = device(kPhone, "Anna", "1");
    const Json laptop_ = device(kLaptop, "Laptop", "0");
    const Json console_ = device(kConsole, "Games", "1");
};

TEST_F(GreenNet, KeepsTheListAsItIsSet)
{
    std::map<std::string, std::string> names;
    for (const Json &entry : list()) {
        names[entry["Mac"]] = entry["Name"];
    }
    EXPECT_EQ(names, (std::map<std::string, std::string>{
                         {kPhone, "Anna"}, {kLaptop, "Laptop"}, {kConsole, "Games"}}));
}

TEST_F(GreenNet, ProtectsADeviceInItsPeriods)
{
    set_periods(kPhone, kPeriods);
    EXPECT_THAT(periods_of(kPhone), HasSubstr(std::string("\"Sleep\":") + kPeriods));
    EXPECT_THAT(list(), testing::Contains(with_protection(phone_, "1")));
    EXPECT_THAT(reply("GET_AD_BASE_INFO"), HasSubstr(R"("GreennetProtectEnable":"1")"));
    set_periods(kPhone, "[]");
    EXPECT_THAT(list(), testing::Contains(with_protection(phone_, "0")));
    EXPECT_THAT(periods_of(kPhone), HasSubstr(R"("Sleep":[])"));
}

TEST_F(GreenNet, ForgetsADeviceThatIsRemovedFromTheList)
{
    for (const std::string mac : {kPhone, kLaptop, kConsole}) {
        set_periods(mac, kPeriods);
    }
    set_list({phone_, console_});

    std::vector<std::string> left;
    for (const Json &entry : list()) {
        left.push_back(entry["Mac"]);
        EXPECT_EQ(entry["ProtectEnable"], "1");
    }
    EXPECT_THAT(left, testing::UnorderedElementsAre(kPhone, kConsole));
    EXPECT_EQ(periods_of(kLaptop), kMissing);
    EXPECT_THAT(periods_of(kConsole), HasSubstr(std::string("\"Sleep\":") + kPeriods));

    // Back on the list it has no periods.
    set_list({phone_, laptop_, console_});
    EXPECT_THAT(periods_of(kLaptop), HasSubstr(R"("Sleep":[])"));
}

} // namespace green_net_test
