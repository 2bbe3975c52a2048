// SPDX-License-Identifier: MIT
// hgagent conformance on correct, faulty and minimal libraries.
#include "agent_commands.h"
#include "smart_router_service/device_access.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

namespace conformance_test {

AgentResult conformance(const std::string &device, const std::vector<std::string> &options = {})
{
    std::vector<std::string> words = {"--log-level", "0", "--device", device, "conformance"};
    words.insert(words.end(), options.begin(), options.end());
    return run_agent(words);
}

AgentResult with_fault(const std::string &fault, const std::vector<std::string> &options)
{
    setenv("FAULT", fault.c_str(), 1);
    AgentResult result = conformance(FAULTY_DEVICE, options);
    unsetenv("FAULT");
    return result;
}

// The row of a check, with its continuation lines.
std::string row_of(const AgentResult &result, const std::string &name)
{
    std::string row;
    for (const std::string &line : lines_of(result.output)) {
        if (line.starts_with(name + " ") || (!row.empty() && line.starts_with(" "))) {
            row += line + "\n";
        } else if (!row.empty()) {
            break;
        }
    }
    return row;
}

struct FaultCase {
    const char *fault;
    const char *command;
    const char *detail;
};

class Faults : public testing::TestWithParam<FaultCase> {};

std::string name_of(const testing::TestParamInfo<FaultCase> &info)
{
    return info.param.fault;
}

class Homes : public testing::TestWithParam<const char *> {};

nlohmann::json home_in(const std::string &state)
{
    return nlohmann::json::parse(content_of(state))["home"];
}

TEST_P(Faults, AreNamed)
{
    const FaultCase &given = GetParam();
    const std::vector<std::string> options = {"--allow-writes", "--command", given.command};
    const AgentResult good = conformance(FAULTY_DEVICE, options);
    EXPECT_EQ(good.exit_status, 0) << good.output;
    EXPECT_THAT(row_of(good, given.command), HasSubstr("passed"));

    const AgentResult bad = with_fault(given.fault, options);
    EXPECT_EQ(bad.exit_status, 1);
    EXPECT_THAT(row_of(bad, given.command), AllOf(HasSubstr("failed"), HasSubstr(given.detail)));
}

INSTANTIATE_TEST_SUITE_P(
    Conformance, Faults,
    testing::Values(
        FaultCase{"unterminated_text", "GET_SN_INFO",
                  "devapi_get_sn_info: SnInfo.MAC does not end within its 64 bytes"},
        FaultCase{"unterminated_inner_text", "GET_QOS_INFO",
                  "QosInfo.rules[0].Name does not end within its 32 bytes"},
        FaultCase{"count_beyond_array", "GET_QOS_INFO",
                  "QosInfo.rule_count is 7, and there is room for 6"},
        FaultCase{"inner_count_beyond_array", "GET_QOS_INFO",
                  "QosInfo.rules[0].type_count is 4, and there is room for 3"},
        FaultCase{"negative_count", "GET_UPDATE_STATUS",
                  "devapi_get_childrouter_list: ChildRouterList.count is -1"},
        FaultCase{"negative_number", "GET_AD_BASE_INFO", "devapi_get_host_num: the count is -5"},
        FaultCase{"no_number", "GET_AD_BASE_INFO",
                  "devapi_get_ad_base_info: AdBaseInfo.UpSpeed is \"fast\", and is read as a "
                  "decimal number\n"},
        FaultCase{"undocumented_result", "GET_LED_STATUS",
                  "devapi_get_led_info: it answers 1, which the header does not know"},
        FaultCase{"failure", "GET_SN_INFO", "devapi_get_sn_info answers -7"},
        FaultCase{
            "refused_command", "GET_UPNP_STATE",
            "devapi_get_upnp_state: it calls system(\"upnpc --state\"), which hgagent refuses"},
        FaultCase{
            "refused_command_unnoticed", "GET_UPNP_STATE",
            "devapi_get_upnp_state: it calls system(\"upnpc --state\"), which hgagent refuses"},
        FaultCase{"fail_reason", "SET_LAN_IP_INFO", "it says: devapi_set_lan_ip_info: RRRR"},
        FaultCase{"nothing_written", "GET_SN_INFO",
                  "devapi_get_sn_info: it answers 0 and fills nothing in"},
        FaultCase{"writes_behind", "GET_SN_INFO", "it writes behind what it is given"},
        FaultCase{"writes_before", "GET_SN_INFO", "it writes before what it is given"},
        FaultCase{"wide_text", "GET_GATEWAY_NET_FAULT", "it writes behind what it is given"},
        FaultCase{"unterminated_sized_text", "GET_HG_UPLINK_STATUS",
                  "the text does not end within its 8 bytes"},
        FaultCase{"foreign_array", "GET_SCAN_CHANNEL_POWER",
                  "ChannelPowerResult.entries is not from malloc()"},
        FaultCase{"null_array", "GET_SCAN_CHANNEL_POWER",
                  "ChannelPowerResult.entries is NULL, and the count is 3"},
        FaultCase{"short_array", "GET_SCAN_CHANNEL_POWER",
                  "ChannelPowerResult.entries has no room for the 3 of the count"},
        FaultCase{"foreign_entry", "GET_SCAN_WIFI_SSIDLIST",
                  "ScanResult.entries[7] is not from malloc()"},
        FaultCase{"negative_inner_count", "GET_UPDATE_STATUS", "ChildRouterInfo.link_count is -1"},
        FaultCase{"foreign_answer", "GET_CHILD_ROUTER_AD_BASE_INFO",
                  "the answer is not from malloc()"},
        FaultCase{"no_answer", "GET_CHILD_ROUTER_AD_BASE_INFO",
                  "it answers 0 and leaves no answer"},
        FaultCase{"wide_relations", "report topology",
                  "devapi_get_topo_relation_ship: it writes behind what it is given"},
        FaultCase{"foreign_node", "report topology",
                  "devapi_handle_topo_struct: a node of the list is not from malloc()"},
        FaultCase{"endless_list", "report topology", "the list has no end"},
        FaultCase{"unterminated_node", "report topology",
                  "NodeBaseInfo.Mac does not end within its 96 bytes"},
        FaultCase{"unterminated_view", "report topology",
                  "devapi_get_viewmac_by_mac: the text does not end within its 32 bytes"},
        FaultCase{"crash", "GET_SN_INFO", "it crashes (ABRT) in devapi_get_sn_info"},
        FaultCase{"realtime_signal", "GET_SN_INFO", "it crashes (RTMIN+1) in devapi_get_sn_info"},
        FaultCase{"exit", "GET_SN_INFO", "it ends the process with status 3 in devapi_get_sn_info"},
        FaultCase{"writes_into_setting", "SET_UPNP_STATE",
                  "devapi_set_upnp_state: it writes into what it may only read"},
        FaultCase{"setting_does_not_stick", "SET_UPNP_STATE",
                  "Enable was set to \"0\" and reads \"1\""},
        FaultCase{"setting_stays_changed", "SET_UPNP_STATE",
                  "not restored: Enable was set to \"1\" and reads \"0\""},
        FaultCase{"refuses_to_restore", "SET_UPNP_STATE", "not restored: devapi_set_upnp_state"},
        FaultCase{"password_does_not_stick", "SET_WEB_LOGIN_INFO",
                  "Password was set to *** and reads ***"}),
    name_of);

TEST(Conformance, WarnsOfTextsThatAreEmptyInsteadOfNull)
{
    const AgentResult result =
        conformance(FAULTY_DEVICE, {"--command", "GET_SN_INFO", "--command", "GET_WEB_LOGIN_INFO",
                                    "--command", "GET_UPNP_STATE"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(row_of(result, "GET_SN_INFO"),
                MatchesRegex("GET_SN_INFO +passed *\n +warning: devapi_get_sn_info: empty, and not "
                             "\"NULL\": SnInfo.tslinkstatus\n"));
    // This function does not fill Name.
    EXPECT_THAT(row_of(result, "GET_WEB_LOGIN_INFO"),
                AllOf(HasSubstr("passed"), HasSubstr("\"NULL\": LoginInfo.WebLoginIp\n")));
    EXPECT_THAT(row_of(result, "GET_UPNP_STATE"), Not(HasSubstr("warning")));
    EXPECT_THAT(lines_of(result.output).back(), HasSubstr(" 0 skipped, 2 with warnings"));

    const AgentResult bad = with_fault("unterminated_text", {"--command", "GET_SN_INFO"});
    EXPECT_THAT(row_of(bad, "GET_SN_INFO"),
                AllOf(HasSubstr("failed"), HasSubstr("warning: "), Not(HasSubstr("SnInfo.MAC,"))));
    EXPECT_THAT(with_fault("nothing_written", {"--command", "GET_SN_INFO"}).output,
                Not(HasSubstr("warning")));
}

std::string version_of_agent(int major_more, int minor_more)
{
    return std::to_string(DEVICE_ACCESS_VERSION_MAJOR + major_more) + "." +
           std::to_string(DEVICE_ACCESS_VERSION_MINOR + minor_more);
}

TEST(Conformance, RefusesALibraryOfAnotherMajorVersionByBothVersions)
{
    for (const auto &[fault, theirs] :
         {std::pair("other_major_version", version_of_agent(1, 7)),
          std::pair("negative_version", std::string("65535.65535"))}) {
        const std::string message = std::string("hgagent: the device library ") + FAULTY_DEVICE +
                                    " is built with version " + theirs +
                                    " of device_access.h, and this agent with version " +
                                    version_of_agent(0, 0) + "\n";
        setenv("FAULT", fault, 1);
        for (const std::vector<std::string> &work :
             {std::vector<std::string>{"conformance"}, {"call", "GET_SN_INFO"}}) {
            std::vector<std::string> words = {"--device", FAULTY_DEVICE};
            words.insert(words.end(), work.begin(), work.end());
            EXPECT_EQ(error_of(words, 4), message);
        }
        unsetenv("FAULT");
    }
    EXPECT_EQ(with_fault("other_minor_version", {"--command", "GET_SN_INFO"}).exit_status, 0);
}

TEST(Conformance, RefusesALibraryThatWritesToTheFilesOfOthers)
{
    const AgentResult result = with_fault("writes_to_other_files", {"--command", "GET_SN_INFO"});
    EXPECT_EQ(result.exit_status, 4);
    EXPECT_THAT(result.error,
                HasSubstr("hgagent: the libraries cannot be loaded: one of them has written \"x\" "
                          "to a file that it has not opened\n"));
}

TEST(Conformance, NamesTheReportsThatThePluginLacks)
{
    const AgentResult result =
        run_agent({"--device", MINIMAL_DEVICE, "--plugin", PROBE_PLUGIN, "conformance", "--command",
                   "report topology", "--command", "report stations"});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_THAT(row_of(result, "report topology"),
                HasSubstr("does not export json_get_topo_router_info"));
    EXPECT_THAT(row_of(result, "report stations"),
                HasSubstr("does not export json_get_router_sta_info"));
}

TEST(Conformance, TimesOut)
{
    for (const auto &[fault, command, where] :
         {std::tuple("hang", "GET_SN_INFO", "in devapi_get_sn_info"),
          std::tuple("endless_walk", "GET_AD_BASE_INFO", "devapi_get_ad_base_info")}) {
        const AgentResult result = with_fault(fault, {"--patience", "1", "--command", command});
        EXPECT_EQ(result.exit_status, 1);
        EXPECT_THAT(row_of(result, command),
                    AllOf(HasSubstr("failed"), HasSubstr("does not end within 1 seconds"),
                          HasSubstr(where)));
    }
}

TEST(Conformance, EndsAfterTheCurrentCheckOnASignal)
{
    setenv("FAULT", "hang", 1);
    AgentProcess agent({"--device", FAULTY_DEVICE, "conformance", "--patience", "1", "--command",
                        "GET_LED_STATUS", "--command", "GET_SN_INFO", "--command",
                        "GET_UPNP_STATE"});
    unsetenv("FAULT");
    ASSERT_TRUE(agent.await_error("hanging"));
    agent.signal(SIGTERM);
    const AgentResult result = agent.finish();
    EXPECT_EQ(result.exit_status, 128 + SIGTERM);
    EXPECT_THAT(row_of(result, "GET_LED_STATUS"), HasSubstr("passed"));
    EXPECT_THAT(row_of(result, "GET_SN_INFO"), HasSubstr("failed"));
    EXPECT_THAT(row_of(result, "GET_UPNP_STATE"), IsEmpty());
}

TEST(Conformance, ContinuesAfterACrash)
{
    const AgentResult result = with_fault("crash", {});
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_THAT(row_of(result, "GET_SN_INFO"), HasSubstr("failed"));
    EXPECT_THAT(row_of(result, "GET_UPNP_STATE"), HasSubstr("passed"));
    EXPECT_THAT(row_of(result, "report stations"), Not(IsEmpty()));
    EXPECT_THAT(lines_of(result.output).back(), HasSubstr(" 1 failed"));
}

TEST(Conformance, CountsTheMissingFunctions)
{
    const AgentResult result = conformance(INCOMPLETE_DEVICE);
    EXPECT_EQ(result.exit_status, 1);
    EXPECT_THAT(row_of(result, "functions"),
                MatchesRegex("functions +failed +[0-9]+ functions are missing: devapi_[a-z_]+, "
                             "devapi_[a-z_]+, devapi_[a-z_]+ and [0-9]+ more "
                             "\\(--verbose names all\\)\n"));
    EXPECT_THAT(row_of(result, "GET_SN_INFO"), HasSubstr("passed"));
    EXPECT_THAT(row_of(result, "QUERY_SYSTEM_INFO"),
                MatchesRegex("QUERY_SYSTEM_INFO +failed +devapi_get_system_info: the library has "
                             "no such function\n"));
}

TEST(Conformance, NamesEveryMissingFunction)
{
    const std::string junit = test_file("missing.xml");
    const AgentResult result = run_agent({"--verbose", "--log-level", "0", "--device",
                                          INCOMPLETE_DEVICE, "conformance", "--junit", junit});
    for (const std::string &text : {row_of(result, "functions"), content_of(junit)}) {
        EXPECT_THAT(
            text, AllOf(HasSubstr(" functions are missing"), HasSubstr("devapi_get_system_info\n"),
                        HasSubstr("devapi_set_port_binding\n"),
                        Not(HasSubstr("devapi_get_sn_info\n")), Not(HasSubstr("--verbose"))));
    }
}

TEST(Conformance, ShowsTheLibrarysReasonsForWhatItDoesNotSupport)
{
    const AgentResult result = with_fault("says_why", {"--command", "GET_UPNP_STATE"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(row_of(result, "GET_UPNP_STATE"),
                AllOf(HasSubstr("not supported  devapi_get_upnp_state\n"),
                      HasSubstr("it says: faulty: no daemon answers, Password:***\n")));
}

TEST(Conformance, PassesTheExample)
{
    const AgentResult result = conformance(MINIMAL_DEVICE, {"--allow-writes"});
    EXPECT_EQ(result.exit_status, 0) << result.output;
    EXPECT_THAT(row_of(result, "GET_SN_INFO"), HasSubstr("passed"));
    EXPECT_THAT(row_of(result, "GET_UPNP_STATE"),
                HasSubstr("not supported  devapi_get_upnp_state"));
    EXPECT_THAT(row_of(result, "SET_UPNP_STATE"),
                HasSubstr("skipped        could not be restored: GET_UPNP_STATE is not supported"));
}

TEST(Conformance, WritesOnlyWithPermission)
{
    const AgentResult reading = conformance(FAULTY_DEVICE, {"--command", "SET_UPNP_STATE"});
    EXPECT_EQ(reading.exit_status, 0);
    EXPECT_THAT(row_of(reading, "SET_UPNP_STATE"),
                HasSubstr("skipped  changes a setting: --allow-writes"));

    const std::string beat = "SET_KAA_HEARTBEAT";
    const std::string reason = "cannot be undone: --allow-writes --command " + beat;
    EXPECT_THAT(row_of(conformance(FAULTY_DEVICE, {"--allow-writes"}), beat), HasSubstr(reason));
    EXPECT_THAT(row_of(conformance(FAULTY_DEVICE, {"--command", beat}), beat),
                HasSubstr("skipped  changes a setting"));
    EXPECT_THAT(row_of(conformance(FAULTY_DEVICE, {"--allow-writes", "--command", beat}), beat),
                HasSubstr("passed"));
}

TEST(Conformance, RefusesWhatItCannotTest)
{
    const AgentResult unknown = conformance(FAULTY_DEVICE, {"--command", "SET_UPNP"});
    EXPECT_EQ(unknown.exit_status, 3);
    EXPECT_THAT(unknown.error, HasSubstr("SET_UPNP_STATE"));
    EXPECT_THAT(conformance(FAULTY_DEVICE, {"--command", "RESPONSE_ROUTER_VERSION"}).error,
                HasSubstr("RESPONSE_ROUTER_VERSION calls no function of the device library"));
    EXPECT_EQ(conformance(FAULTY_DEVICE, {"--patience", "0"}).exit_status, 2);
    const AgentResult none = conformance(test_file("none.so"));
    EXPECT_EQ(none.exit_status, 4);
    EXPECT_THAT(none.error, StartsWith("hgagent: cannot load the device library "));
    EXPECT_EQ(
        conformance(MINIMAL_DEVICE, {"--junit", test_file("nowhere") + "/junit.xml"}).exit_status,
        5);
}

TEST_P(Homes, PassAndStayUnchanged)
{
    const std::string state = test_file(std::string(GetParam()) + ".json");
    setenv("SIMULATED_GATEWAY_TIME", "1767225600", 1);
    ASSERT_EQ(call("GET_SN_INFO", "{}", {"--scenario", GetParam(), "--state", state}).exit_status,
              0);
    const nlohmann::json before = home_in(state);

    // The worker of SET_WIFI_INFO_LIST sleeps before it begins.
    const char *given = getenv("ASAN_OPTIONS");
    const std::string options = given != nullptr ? given : "";
    setenv("ASAN_OPTIONS", (options + ":verify_asan_link_order=0").c_str(), 1);
    setenv("LD_PRELOAD", SLEEPLESS, 1);
    const AgentResult result =
        run_agent({"--log-level", "0", "--state", state, "conformance", "--allow-writes"});
    unsetenv("LD_PRELOAD");
    setenv("ASAN_OPTIONS", options.c_str(), 1);
    unsetenv("SIMULATED_GATEWAY_TIME");

    EXPECT_EQ(result.exit_status, 0) << result.output;
    EXPECT_THAT(lines_of(result.output).back(), HasSubstr(" 0 failed"));
    EXPECT_THAT(result.output, Not(HasSubstr("warning: ")));
    EXPECT_THAT(row_of(result, "SET_WIFI_INFO_LIST"), HasSubstr("passed\n"));
    EXPECT_EQ(nlohmann::json::diff(before, home_in(state)), nlohmann::json::array());
}

INSTANTIATE_TEST_SUITE_P(Conformance, Homes,
                         testing::Values("three_storey_house", "single_router", "operator_variant",
                                         "short_report", "crowded_mesh"),
                         [](const auto &home) { return std::string(home.param); });

} // namespace conformance_test
