// SPDX-License-Identifier: MIT
// system() in a process that must not affect the machine that it runs on.
#include "agent_commands.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

using testing::HasSubstr;

namespace system_test {

AgentResult run_system(const std::string &command, std::vector<std::string> options = {})
{
    options.insert(options.end(),
                   {"--plugin", PROBE_PLUGIN, "call", "SYSTEM", "command=" + command});
    return run_agent(options);
}

TEST(System, RefusesEveryCommand)
{
    const std::string file = test_file("touched");
    for (const std::string &command : {"touch " + file, std::string("reboot"), std::string(),
                                       "sync;reboot; touch " + file, std::string("sync; reboot")}) {
        const AgentResult result = run_system(command);
        EXPECT_THAT(result.output, HasSubstr(R"("result":-1,"children":"none")")) << command;
        EXPECT_EQ(result.error, "<3> hgagent: refused to run a command: " + command + "\n");
    }
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(System, LetsTheSimulatedGatewayReboot)
{
    const AgentResult result = run_system("sync;reboot", {"--trace", "-"});
    EXPECT_THAT(result.output, HasSubstr(R"("result":0,"children":"none")"));
    EXPECT_THAT(result.error, HasSubstr("hgagent: the gateway reboots\n"));
    EXPECT_THAT(result.error, HasSubstr("power cycle\n"));
}

TEST(System, PowerCyclesAnyDeviceThatSupportsIt)
{
    const AgentResult result = run_system("sync;reboot", {"--device", HOSTILE_DEVICE});
    EXPECT_THAT(result.output, HasSubstr(R"("result":0,"children":"none")"));
    EXPECT_EQ(result.error, "hgagent: the gateway reboots\npower cycle\n");
}

TEST(System, OnlyReportsTheRebootOfAnyOtherDevice)
{
    const AgentResult result = run_system("sync;reboot", {"--device", PROBE_PLUGIN});
    EXPECT_THAT(result.output, HasSubstr(R"("result":0,"children":"none")"));
    EXPECT_EQ(result.error, "hgagent: the gateway reboots\n");
}

TEST(System, ReportsARebootToTheJournalAsANotice)
{
    const std::string log = test_file("log");
    const std::string command = "exec 2>" + log +
                                "; JOURNAL_STREAM=$(stat -L -c %d:%i /dev/fd/2) " HGAGENT_PATH
                                " --plugin " PROBE_PLUGIN " --device " PROBE_PLUGIN
                                " call SYSTEM 'command=sync;reboot'";
    EXPECT_NE(std::system(command.c_str()), -1);
    std::ifstream file(log);
    std::string line;
    getline(file, line);
    EXPECT_EQ(line, "<5>hgagent: the gateway reboots");
}

} // namespace system_test
