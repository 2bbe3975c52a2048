// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include <algorithm>
#include <cstdlib>

namespace {

using namespace std::string_literals;

class ChildRouterRelayTest : public HouseTest {
  protected:
    static constexpr char kFirstFloor[] = "3C6AD2228140";
    static constexpr char kAttic[] = "3C6AD2228180"; // attached to the first floor
    static constexpr char kPrinterMac[] = "30:05:5C:8D:41:F8";
    static constexpr int32_t kPrinter = 9;
    static constexpr char kMethod[] = "get_childrouter_host_info";

    static int32_t send(const std::string &text)
    {
        return devapi_cmdstring_sendto_tslink(text.data(), static_cast<int32_t>(text.size()));
    }
    static int32_t send(const nlohmann::json &command) { return send(command.dump(4)); }
    std::string refused(const std::string &text) const
    {
        const std::string before = read(path("state"));
        const std::string why = reason(send(text));
        EXPECT_EQ(read(path("state")), before) << text.substr(0, 200);
        return why;
    }
    std::string refused(const nlohmann::json &command) const { return refused(command.dump()); }

    static ChildRouterInfo router(int32_t place)
    {
        const ChildRouterList list = reported_by(devapi_get_childrouter_list);
        ChildRouterInfo info = {};
        EXPECT_EQ(devapi_get_childrouter_info(&info, list.identifiers[place]), 0);
        return info;
    }

    // The child router's answer; an empty object when there is none.
    static nlohmann::json ask(const std::string &text, const char *method = kMethod)
    {
        char *answer = nullptr;
        const int32_t result =
            devapi_cmdstring_sendto_tslink_with_retinfo(text.c_str(), method, &answer);
        EXPECT_EQ(result, answer != nullptr ? 0 : -1);
        nlohmann::json parsed =
            answer != nullptr ? nlohmann::json::parse(answer) : nlohmann::json::object();
        std::free(answer);
        return parsed;
    }
    static nlohmann::json devices(const char *identifier)
    {
        return ask(nlohmann::json{{"DeviceID", identifier}}.dump())
            .value("BaseInfo", nlohmann::json());
    }
};

TEST_F(ChildRouterRelayTest, ANameIsSet)
{
    EXPECT_EQ(send({{"DeviceID", kAttic}, {"Name", "Dachboden – süd"}}), 0);
    EXPECT_STREQ(router(1).Name, "Dachboden – süd");
    EXPECT_STREQ(router(0).Name, "First floor");
    ASSERT_EQ(open_when(kTime), "");
    EXPECT_STREQ(router(1).Name, "Dachboden – süd");
    EXPECT_EQ(refused({{"DeviceID", kAttic}, {"Name", ""}}), "Name is empty");
    EXPECT_EQ(refused({{"DeviceID", kAttic}, {"Name", std::string(64, 'n')}}),
              "Name is longer than 63 bytes");
    EXPECT_EQ(refused({{"DeviceID", kAttic}, {"Name", "a\nb"}}),
              "Name contains control characters or is not UTF-8");
    EXPECT_EQ(refused({{"DeviceID", kAttic}, {"Name", 5}}), "Name is not a string");
}

TEST_F(ChildRouterRelayTest, TheIdentifierAloneRestartsIt)
{
    ASSERT_EQ(open_when(kTime + 1000), "");
    EXPECT_STREQ(router(0).UpTime, "1000");
    EXPECT_EQ(send({{"DeviceID", kFirstFloor}}), 0);
    EXPECT_STREQ(router(0).NetStatus, "0");
    EXPECT_STREQ(router(1).NetStatus, "0"); // it is attached to the first
    EXPECT_STREQ(host(kPrinter).NetStatus, "0");
    EXPECT_EQ(refused({{"DeviceID", kFirstFloor}}), "3C:6A:D2:22:81:40 is offline");

    ASSERT_EQ(open_when(kTime + 1044), "");
    EXPECT_STREQ(router(0).NetStatus, "0");
    ASSERT_EQ(open_when(kTime + 1045), "");
    EXPECT_STREQ(router(0).NetStatus, "1");
    EXPECT_STREQ(router(0).UpTime, "0");
    EXPECT_STREQ(router(1).UpTime, "1045");
    EXPECT_EQ(host(kPrinter).AccessTime, std::to_string(kTime + 1045));
    ASSERT_EQ(open_when(kTime + 1100), "");
    EXPECT_STREQ(router(0).UpTime, "55");
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_STREQ(router(0).UpTime, "0");
}

TEST_F(ChildRouterRelayTest, ARecoveryRestoresItsNameAsWell)
{
    EXPECT_EQ(send({{"DeviceID", kAttic}, {"Name", "Roof"}}), 0);
    EXPECT_EQ(send({{"DeviceID", kAttic}, {"Recovery", "1"}}), 0);
    EXPECT_STREQ(router(1).Name, "Attic");
    EXPECT_STREQ(router(1).NetStatus, "0");
    EXPECT_STREQ(router(0).NetStatus, "1");
    ASSERT_EQ(open_when(kTime + 45), "");
    EXPECT_STREQ(router(1).NetStatus, "1");
    EXPECT_EQ(refused({{"DeviceID", kAttic}, {"Recovery", "0"}}), R"(Recovery "0" is none of "1")");
    EXPECT_EQ(refused({{"DeviceID", kAttic}, {"Recovery", true}}), "Recovery is not a string");
}

TEST_F(ChildRouterRelayTest, ADeviceIsSetAtItsRouter)
{
    EXPECT_EQ(send({{"DeviceID", kFirstFloor},
                    {"Mac", "30055c8d41f8"},
                    {"DevType", "Other"},
                    {"ByName", "Laser"},
                    {"NetMonopoly", "0"},
                    {"AccessEnable", "0"}}),
              0)
        << reason();
    EXPECT_STREQ(host(kPrinter).DevType, "Other");
    EXPECT_STREQ(host(kPrinter).ByName, "Laser");
    EXPECT_STREQ(host(kPrinter).AccessEnable, "0");
    // Absent keys leave their settings unchanged.
    EXPECT_EQ(send({{"DeviceID", kFirstFloor}, {"Mac", kPrinterMac}, {"AccessEnable", "1"}}), 0);
    EXPECT_STREQ(host(kPrinter).ByName, "Laser");
    EXPECT_STREQ(host(kPrinter).AccessEnable, "1");
    EXPECT_EQ(send({{"DeviceID", kFirstFloor}, {"Mac", kPrinterMac}, {"ByName", ""}}), 0);
    EXPECT_STREQ(host(kPrinter).ByName, "NULL");
    const nlohmann::json reported = devices(kFirstFloor);
    const auto printer = std::ranges::find_if(
        reported, [](const nlohmann::json &device) { return device["Mac"] == kPrinterMac; });
    ASSERT_NE(printer, reported.end());
    EXPECT_EQ((*printer)["DevType"], "Other");
}

TEST_F(ChildRouterRelayTest, WrongDeviceSettingsAreRefused)
{
    const auto with = [](const char *key, const nlohmann::json &value) {
        nlohmann::json command = {{"DeviceID", kFirstFloor}, {"Mac", kPrinterMac}};
        command[key] = value;
        return command;
    };
    EXPECT_EQ(refused(with("Mac", "48:D6:D5:90:3C:11")),
              "48:D6:D5:90:3C:11 is not a device of 3C:6A:D2:22:81:40");
    EXPECT_EQ(refused(with("Mac", "11:22:33:44:55:66")), "there is no device 11:22:33:44:55:66");
    EXPECT_EQ(refused(with("Mac", "")), "Mac \"\" is not a MAC address");
    EXPECT_EQ(refused(with("Mac", nullptr)), "Mac is not a string");
    EXPECT_THAT(refused(with("DevType", "Robot")), HasSubstr("DevType \"Robot\" is none of"));
    EXPECT_EQ(refused(with("ByName", std::string(32, 'b'))), "ByName is longer than 31 bytes");
    EXPECT_EQ(refused(with("AccessEnable", "2")), R"(AccessEnable "2" is none of "0", "1")");
    EXPECT_EQ(refused(with("AccessEnable", 1)), "AccessEnable is not a string");
    EXPECT_EQ(refused(with("NetMonopoly", "1")), R"(NetMonopoly "1" is none of "0")");
}

TEST_F(ChildRouterRelayTest, ACommandHasTheKeysOfOneOnly)
{
    EXPECT_EQ(refused({{"DeviceID", kAttic}, {"ByName", "Laser"}}),
              "no command for a child router has the key \"ByName\"");
    EXPECT_EQ(refused({{"DeviceID", kAttic}, {"Reboot", "1"}}),
              "no command for a child router has the key \"Reboot\"");
    EXPECT_EQ(refused({{"DeviceID", kAttic}, {"Name", "Roof"}, {"Mac", kPrinterMac}}),
              "no command for a child router has the key \"Name\" together with Mac");
    EXPECT_EQ(refused({{"DeviceID", kAttic}, {"Name", "Roof"}, {"Recovery", "1"}}),
              "no command for a child router has the key \"Recovery\" together with Name");
}

TEST_F(ChildRouterRelayTest, OnlyAReachableChildRouterTakesCommands)
{
    EXPECT_EQ(refused({{"DeviceID", "3C6AD2228141"}}), "there is no child router \"3C6AD2228141\"");
    EXPECT_EQ(refused({{"DeviceID", "3C:6A:D2:22:81:40"}}),
              "there is no child router \"3C:6A:D2:22:81:40\"");
    EXPECT_EQ(refused({{"DeviceID", "3C6AD2104F20"}}), // the main router
              "there is no child router \"3C6AD2104F20\"");
    EXPECT_EQ(refused({{"DeviceID", ""}}), "there is no child router \"\"");
    EXPECT_EQ(refused({{"DeviceID", 14}}), "DeviceID is not a string");
    EXPECT_EQ(refused({{"Name", "Roof"}}), "DeviceID is missing");
    EXPECT_EQ(refused(nlohmann::json::object()), "DeviceID is missing");

    ASSERT_EQ(open_home(house({{"/mesh/child_routers/0/offline", true}})), "");
    EXPECT_EQ(send({{"DeviceID", kFirstFloor}, {"Name", "Roof"}}), -1);
    EXPECT_EQ(reason(send({{"DeviceID", kAttic}, {"Name", "Roof"}})),
              "3C:6A:D2:22:81:80 is offline");
    EXPECT_EQ(devices(kAttic), nullptr);
    ASSERT_EQ(open_home(house({{"/mesh/enabled", false}, {"/mesh/link_layer_up", false}})), "");
    EXPECT_EQ(reason(send({{"DeviceID", kAttic}, {"Name", "Roof"}})),
              "there is no child router \"3C6AD2228180\"");
}

TEST_F(ChildRouterRelayTest, AnythingButACommandIsRefused)
{
    EXPECT_EQ(refused(std::string()), "is empty");
    EXPECT_EQ(refused(std::string("[]")), "the command is not an object");
    EXPECT_EQ(refused(std::string("\"DeviceID\"")), "the command is not an object");
    EXPECT_EQ(refused(std::string(R"({"DeviceID":"3C6AD2228140","DeviceID":"3C6AD2228180"})")),
              "/DeviceID: is repeated");
    for (const std::string &text :
         {std::string("{"), std::string("reboot"), std::string("\0{}", 3),
          R"({"DeviceID":"3C6AD2228140"} {})"s, "{\"DeviceID\":\"\xff\"}"s}) {
        EXPECT_NE(refused(text), "");
    }
    EXPECT_THAT(refused(std::string(1 << 20, '[')), HasSubstr("is nested too deep"));
    EXPECT_EQ(refused({{"DeviceID", std::string(1 << 20, '3')}}).substr(0, 30),
              "there is no child router \"3333");
    nlohmann::json wide = {{"DeviceID", kAttic}};
    for (int key = 0; key < 10'000; ++key) {
        wide["key " + std::to_string(key)] = key;
    }
    EXPECT_NE(refused(wide), "");

    const std::string command = nlohmann::json{{"DeviceID", kAttic}}.dump();
    for (const int32_t length : {0, -1, INT32_MIN}) {
        EXPECT_EQ(devapi_cmdstring_sendto_tslink(command.c_str(), length), -1);
    }
    EXPECT_STREQ(router(1).NetStatus, "1");
}

TEST_F(ChildRouterRelayTest, TheTextEndsAtItsLength)
{
    const std::string command = nlohmann::json{{"DeviceID", kAttic}, {"Name", "Roof"}}.dump();
    const std::vector<char> without_nul(command.begin(), command.end());
    EXPECT_EQ(devapi_cmdstring_sendto_tslink(without_nul.data(),
                                             static_cast<int32_t>(without_nul.size())),
              0);
    EXPECT_STREQ(router(1).Name, "Roof");
}

TEST_F(ChildRouterRelayTest, AChildRouterAnswersWithItsDevices)
{
    const nlohmann::json answer = ask(nlohmann::json{{"DeviceID", kFirstFloor}}.dump());
    EXPECT_EQ(answer["Status"], "0");
    ASSERT_GE(answer["BaseInfo"].size(), 2u);
    for (const nlohmann::json &device : answer["BaseInfo"]) {
        int32_t index = 0;
        ASSERT_EQ(devapi_get_hostindex_by_mac(device["Mac"].get<std::string>().c_str(), &index), 1);
        const AdBaseInfo info = host(index);
        EXPECT_EQ(device["Name"], info.Name);
        EXPECT_EQ(device["ip"], info.ip);
        EXPECT_EQ(device["NetStatus"], info.NetStatus);
        EXPECT_EQ(device["AccessTime"], info.AccessTime);
        EXPECT_EQ(device["DownSpeed"], info.DownSpeed);
        EXPECT_EQ(device["StaticDhcpEnable"], info.StaticDhcpEnable);
        EXPECT_EQ(device.size(), 19u);
    }
    ChildStationList stations = {};
    ASSERT_EQ(devapi_get_childsta_list(&stations, "3C:6A:D2:22:81:40"), 0);
    EXPECT_EQ(static_cast<size_t>(stations.count), answer["BaseInfo"].size());
}

TEST_F(ChildRouterRelayTest, NoOtherQuestionIsAnswered)
{
    const std::string command = nlohmann::json{{"DeviceID", kAttic}}.dump();
    for (const char *method : {"", "get_childrouter_host", "GET_CHILDROUTER_HOST_INFO"}) {
        EXPECT_EQ(ask(command, method), nlohmann::json::object());
    }
    EXPECT_EQ(ask(R"({"DeviceID":5})"), nlohmann::json::object());
    EXPECT_EQ(reason(), "DeviceID is not a string");
    EXPECT_EQ(ask("{"), nlohmann::json::object());
    EXPECT_EQ(ask(""), nlohmann::json::object());
    EXPECT_EQ(ask(R"({"DeviceID":"3C6AD2104F20"})"), nlohmann::json::object());
}

TEST_F(ChildRouterRelayTest, AFaultLetsItAnswerLateOrNotAtAll)
{
    ASSERT_EQ(reopen({.faults = {"devapi_cmdstring_sendto_tslink_with_retinfo=-1*1@20ms"}}), "");
    EXPECT_EQ(devices(kAttic), nullptr);
    EXPECT_TRUE(devices(kAttic).is_array());
}

} // namespace
