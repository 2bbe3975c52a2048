// SPDX-License-Identifier: MIT
// The attached devices: the table of hgagent hosts, and the settings of a device.
#include "gateway_test.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace attached_devices_test {

constexpr char kTvMac[] = "8C:79:F5:62:1A:09";

class AttachedDevices : public GatewayTest {
  protected:
    std::vector<std::string> hosts() const
    {
        const AgentResult result = run_agent({"--state", state_, "hosts"});
        EXPECT_EQ(result.exit_status, 0);
        EXPECT_THAT(result.error, IsEmpty());
        return lines_of(result.output);
    }
    // The host's line, from its MAC address on.
    std::string host(const std::string &mac) const
    {
        for (const std::string &line : hosts()) {
            const size_t at = line.find(mac);
            if (at != std::string::npos) {
                return line.substr(at);
            }
        }
        return "";
    }
    // Sets what the gateway keeps of the television.
    void set_tv(const std::string &name, const std::string &access) const
    {
        EXPECT_EQ(reply("SET_AD_BASE_INFO", std::string(R"({"MAC":")") + kTvMac +
                                                R"(","DevType":"TV","ByName":")" + name +
                                                R"(","AccessEnable":")" + access + "\"}"),
                  kDone);
    }
};

TEST_F(AttachedDevices, AreATable)
{
    const std::vector<std::string> lines = hosts();
    ASSERT_EQ(lines.size(), 13U);
    EXPECT_THAT(lines[0], MatchesRegex("NAME +MAC +IP +ACCESS +STATE +UP KBIT/S +DOWN KBIT/S"));
    EXPECT_THAT(lines,
                IsSupersetOf({
                    MatchesRegex("workshop-pc +A4:BB:6D:31:07:5E +192\\.168\\.1\\.101 +"
                                 "cable +online +[0-9]+ +[0-9]+"),
                    MatchesRegex("living-room-tv +8C:79:F5:62:1A:09 +192\\.168\\.1\\.102 +"
                                 "cable +online +[0-9]+ +[0-9]+"),
                    // The alias set by the user, not the phone's own host name.
                    MatchesRegex("Anna +DA:41:7C:0E:92:B3 +192\\.168\\.1\\.110 +5GHz +"
                                 "online +[0-9]+ +[0-9]+"),
                    MatchesRegex("Omas-Phone +BE:27:15:F3:64:0A +- +2\\.4GHz +offline +0 +0"),
                }));
    const size_t mac = lines[0].find("MAC");
    const size_t rate = lines[0].find("DOWN");
    for (const std::string &line : lines) {
        EXPECT_EQ(line.find_last_of(' ', mac), mac - 1) << line;
        EXPECT_EQ(line.find_last_of(' ', rate), rate - 1) << line;
        EXPECT_THAT(line, Not(HasSubstr("NULL")));
        EXPECT_THAT(line, Not(EndsWith(" ")));
    }
    EXPECT_EQ(lines[1].find("workshop-pc"), 0U) << "the order of the gateway";
}

TEST_F(AttachedDevices, AreShownByTheNameThatTheUserGives)
{
    set_tv("\u5ba2\u5385\u7535\u89c6", "1");
    const std::vector<std::string> lines = hosts();
    // Four characters of three bytes each that a terminal shows in eight columns.
    const size_t column = lines[0].find("MAC");
    EXPECT_EQ(lines[2].find(kTvMac), column + 4);
    EXPECT_THAT(lines[2], StartsWith("\u5ba2\u5385\u7535\u89c6  "));
    EXPECT_THAT(reply("GET_AD_BASE_INFO"),
                HasSubstr("\"Name\":\"living-room-tv\",\"ByName\":\"\u5ba2\u5385\u7535\u89c6\""));
}

TEST_F(AttachedDevices, AreMarkedWhenTheyAreBlocked)
{
    EXPECT_THAT(host(kTvMac), MatchesRegex(".+ cable +online +[0-9]+ +[0-9]+"));
    set_tv("TV", "0");
    EXPECT_THAT(host(kTvMac), MatchesRegex(".+ cable +online, blocked +0 +0"));
    EXPECT_THAT(reply("GET_ATTACH_DEVICE_RIGHT"),
                HasSubstr(std::string(R"("MAC":")") + kTvMac +
                          R"(","name":"living-room-tv","InternetAccessRight":"DENY")"));

    EXPECT_EQ(reply("SET_ATTACH_DEVICE_RIGHT",
                    std::string(R"({"MAC":")") + kTvMac + R"(","InternetAccessRight":"ALLOW"})"),
              kDone);
    EXPECT_THAT(host(kTvMac), MatchesRegex(".+ cable +online +[0-9]+ +[0-9]+"));
}

TEST_F(AttachedDevices, CannotBeListedWhenTheDeviceFails)
{
    EXPECT_EQ(error_of({"--fault", "devapi_get_host_num=-1", "hosts"}, 1),
              "hgagent: the gateway does not list its hosts: get ad base info error\n");
}

TEST_F(AttachedDevices, CannotForgeATable)
{
    const AgentResult result = run_agent({"--device", HOSTILE_DEVICE, "hosts"});
    EXPECT_EQ(result.exit_status, 0);
    const std::string n32(32, 'N');
    const std::string n8(8, 'N');
    EXPECT_THAT(lines_of(result.output),
                ElementsAre(StartsWith("NAME "),
                            MatchesRegex(n32 + "  - +" + std::string(64, 'N') + "  " + n32 + "  " +
                                         n8 + "  " + n32 + "  " + n32),
                            MatchesRegex("\u5ba2\u5385 +\\\\n\\\\x1b\\[31m  - +- +- +- +-"),
                            MatchesRegex("- +- +- +- +- +- +-")));
}

TEST_F(AttachedDevices, CannotControlATerminalByTheirNames)
{
    set_tv("a\u202eb\u200bc", "1");
    EXPECT_THAT(hosts(), testing::Contains(StartsWith("a\\x202eb\\x200bc ")));
    const AgentResult topology = run_agent({"--state", state_, "topology"});
    EXPECT_THAT(topology.output, HasSubstr("a\\x202eb\\x200bc "));
    // For programs JSON stays unchanged, and on a terminal it is equivalent JSON.
    const std::vector<std::string> query = {"--state", state_, "call", "GET_AD_BASE_INFO"};
    EXPECT_THAT(run_agent(query).output, HasSubstr("\"a\u202eb\u200bc\""));
    AgentProcess terminal(query, OutputTo::kTerminal);
    EXPECT_THAT(terminal.finish().output, HasSubstr("\"a\\u202eb\\u200bc\""));
}

} // namespace attached_devices_test
