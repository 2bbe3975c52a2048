// SPDX-License-Identifier: MIT
// The agent's errors when a library cannot be loaded, or the simulated gateway in it cannot be
// opened.
#include "agent_commands.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <sys/stat.h>

using testing::AllOf;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace loading_test {

// Runs the agent with these options: it must end with status 4 and one line with the reason.
std::string refusal(const std::vector<std::string> &options)
{
    std::vector<std::string> words = options;
    words.insert(words.end(), {"call", "GET_SN_INFO"});
    std::string error = error_of(words, 4);
    EXPECT_EQ(lines_of(error).size(), 1U) << error;
    EXPECT_THAT(error, StartsWith("hgagent: "));
    return error;
}

TEST(Loading, TakesGivenLibraries)
{
    const AgentResult result =
        call("GET_SN_INFO", "{}", {"--device", SIMULATED_GATEWAY_PATH, "--plugin", PLUGIN_PATH});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.output, HasSubstr("HGU-AX3000"));
}

TEST(Loading, TakesABareNameForAFile)
{
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(std::filesystem::path(PROBE_PLUGIN).parent_path());
    const AgentResult result = run_agent(
        {"--plugin", std::filesystem::path(PROBE_PLUGIN).filename(), "call", "LOG", "text=found"});
    std::filesystem::current_path(before);
    EXPECT_EQ(result.exit_status, 0) << result.error;
}

TEST(Loading, RefusesWhatIsNotALibrary)
{
    const std::string text = test_file("text.so", std::string(100, 'x'));
    const std::string empty = test_file("empty.so", "");
    const std::string cut = test_file("cut.so", content_of(PLUGIN_PATH).substr(0, 2000));
    const std::string pipe = test_file("pipe.so");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string &path : {text, empty, cut, pipe, std::string("/"),
                                    std::string("/dev/null"), test_file("missing.so")}) {
        EXPECT_THAT(refusal({"--plugin", path}), HasSubstr("cannot load the plug-in " + path));
        EXPECT_THAT(refusal({"--device", path}),
                    HasSubstr("cannot load the device library " + path));
    }
    EXPECT_THAT(refusal({"--plugin", text}), HasSubstr("invalid ELF header"));
    EXPECT_THAT(refusal({"--plugin", cut}), HasSubstr("the file is cut off"));
    EXPECT_THAT(refusal({"--plugin", pipe}), HasSubstr("not a regular file"));
}

TEST(Loading, NamesEverySymbolThatIsMissing)
{
    EXPECT_THAT(refusal({"--plugin", MISSING_SYMBOLS_PLUGIN}),
                AllOf(HasSubstr("cannot load the plug-in " MISSING_SYMBOLS_PLUGIN),
                      HasSubstr("2 names are provided neither by the device library nor by the "
                                "agent: "),
                      HasSubstr("devapi_of_another_router"), HasSubstr("global_of_another_agent"),
                      Not(HasSubstr("ts_mod_log_printf")), Not(HasSubstr("hg_process_json_cmd"))));
}

TEST(Loading, CountsTheFunctionsThatADeviceLibraryLacks)
{
    EXPECT_THAT(refusal({"--device", PROBE_PLUGIN}),
                MatchesRegex("hgagent: cannot load the plug-in [^:]*: [0-9]+ names are provided "
                             "neither by the device library nor by the agent: [a-z_]+, [a-z_]+, "
                             "[a-z_]+ and [0-9]+ more \\(--verbose names all\\)\n"));
}

TEST(Loading, NamesEveryFunctionThatADeviceLibraryLacks)
{
    EXPECT_THAT(refusal({"--verbose", "--device", PROBE_PLUGIN}),
                AllOf(HasSubstr("cannot load the plug-in "), HasSubstr("devapi_get_sn_info"),
                      HasSubstr("devapi_get_system_info"), Not(HasSubstr("cJSON")),
                      Not(HasSubstr(" more"))));
}

TEST(Loading, NamesTheDispatcherThatAPluginLacks)
{
    EXPECT_THAT(
        refusal({"--plugin", SIMULATED_GATEWAY_PATH}),
        HasSubstr("the plug-in " SIMULATED_GATEWAY_PATH " has no function hg_process_json_cmd"));
}

TEST(Loading, RefusesGatewayOptionsWithoutTheSimulatedGateway)
{
    for (const std::string option :
         {"--scenario", "--state", "--fault", "--firmware-folder", "--firmware-key"}) {
        EXPECT_THAT(error_of({"--device", HOSTILE_DEVICE, option, "-", "call", "GET_SN_INFO"}, 2),
                    HasSubstr("for the simulated gateway, and the device library " HOSTILE_DEVICE
                              " is none"));
    }
}

TEST(Loading, PrintsTheGatewaysErrorForItsScenario)
{
    const std::string empty = test_file("empty.json", "");
    const std::string cut = test_file("cut.json", "{\"format\": \"simulated gateway scenario\", ");
    const std::string other = test_file(
        "other.json", "{\"format\": \"simulated gateway scenario\", \"version\": 1000000}");
    for (const std::string &file : {empty, cut, other, test_file("missing.json")}) {
        EXPECT_THAT(refusal({"--scenario", file}), HasSubstr(file));
    }
    EXPECT_THAT(refusal({"--scenario", other}), HasSubstr("version"));
    EXPECT_THAT(refusal({"--scenario", "no_such_house"}), HasSubstr("no_such_house"));
}

TEST(Loading, PrintsTheGatewaysErrorForItsOtherOptions)
{
    EXPECT_THAT(refusal({"--fault", "devapi_no_such_function=-1"}),
                HasSubstr("devapi_no_such_function"));
    EXPECT_THAT(refusal({"--fault", "rubbish"}), HasSubstr("rubbish"));
    const std::string broken = test_file("broken_state.json", "{");
    EXPECT_THAT(refusal({"--state", broken}), HasSubstr(broken));
    const std::string nowhere = test_file("no_folder") + "/trace";
    EXPECT_THAT(refusal({"--trace", nowhere}), HasSubstr(nowhere));
}

TEST(Loading, PassesTheGatewayItsOptions)
{
    const std::string state = test_file("state.json");
    const std::string trace = test_file("trace.txt");
    const AgentResult result =
        call("GET_SN_INFO", "{}",
             {"--scenario", "three_storey_house", "--state", state, "--trace", trace, "--fault",
              "devapi_get_sn_info=-7", "--fault", "devapi_get_system_info=-1"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_TRUE(std::filesystem::exists(state));
    EXPECT_THAT(content_of(trace), AllOf(HasSubstr("devapi_get_sn_info"), HasSubstr("-7")));

    const AgentResult traced = call("GET_SN_INFO", "{}", {"--trace", "-"});
    EXPECT_THAT(traced.error, HasSubstr("devapi_get_sn_info"));
    EXPECT_THAT(traced.output, StartsWith("{\"Status\":\"0\""));
}

TEST(Loading, LeavesTheRestToTheGatewaysEnvironment)
{
    setenv("SIMULATED_GATEWAY_FAULTS", "devapi_get_sn_info=-1", 1);
    const AgentResult result = call("GET_SN_INFO");
    unsetenv("SIMULATED_GATEWAY_FAULTS");
    EXPECT_EQ(result.exit_status, 1);
}

TEST(Loading, ReadsADeviceLibrarysTextsWithinTheirFields)
{
    const AgentResult identity = call("GET_SN_INFO", "{}", {"--device", HOSTILE_DEVICE});
    EXPECT_EQ(identity.exit_status, 0);
    EXPECT_EQ(identity.output, "{\"Status\":\"0\",\"MAC\":\"" + std::string(64, 'M') +
                                   "\",\"tslinkstatus\":\"\ufffd\\\"\ufffd\",\"DeviceType\":\"" +
                                   std::string(256, 'D') + "\"}\n");

    const AgentResult system = call("QUERY_SYSTEM_INFO", "{}", {"--device", HOSTILE_DEVICE});
    EXPECT_EQ(system.exit_status, 0);
    EXPECT_THAT(system.output,
                AllOf(HasSubstr("\"NFC\":\"" + std::string(64, 'S') + "\""),
                      HasSubstr("\"VLANCapability\":\"" + std::string(192, 'S') + "\"}")));
}

TEST(HostServices, AnswerThePlugin)
{
    const AgentResult result = run_agent(
        {"--plugin", PROBE_PLUGIN, "call", "SERVICES", "text=any text", "mac=3c-6a-d2-10-4f-20"});
    EXPECT_EQ(result.exit_status, 0) << result.error;
    EXPECT_THAT(result.output, HasSubstr(R"("base64":"YW55IHRleHQ=",)"
                                         R"("md5":"ae821dc7991e1b65351446ab46f47d17",)"
                                         R"("bare_mac":"3C6AD2104F20","freed":true)"));
}

} // namespace loading_test
