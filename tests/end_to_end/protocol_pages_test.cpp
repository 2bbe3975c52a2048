// SPDX-License-Identifier: MIT
// hgagent list and describe.
#include "agent_commands.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

TEST(List, ShowsNameAndSummaryInColumns)
{
    const AgentResult result = run_agent({"list"});
    EXPECT_EQ(result.exit_status, 0);
    const std::vector<std::string> lines = lines_of(result.output);
    ASSERT_GE(lines.size(), 3U);
    EXPECT_TRUE(std::is_sorted(lines.begin(), lines.end()));
    const size_t column = lines[0].find("  ");
    for (const std::string &line : lines) {
        const size_t summary = line.find_first_not_of(' ', line.find(' '));
        EXPECT_EQ(summary, lines[0].find_first_not_of(' ', column)) << line;
    }
}

TEST(List, FindsPartsOfNamesAndPatterns)
{
    for (const std::string pattern :
         {"sn_inf", "SN_INFO", "*_sn_info", "get_s?_info", "GET_[S]N_*"}) {
        const AgentResult result = run_agent({"list", pattern});
        EXPECT_EQ(result.exit_status, 0) << pattern;
        EXPECT_THAT(lines_of(result.output),
                    ElementsAre("GET_SN_INFO  Serial number and type of the router"))
            << pattern;
    }
}

TEST(List, SaysThatNothingWasFound)
{
    for (const std::string pattern : {"no such name", "sn?", "["}) {
        EXPECT_EQ(error_of({"list", pattern}, 1),
                  "hgagent: no command matches \"" + pattern + "\"\n");
    }
}

TEST(Describe, ShowsAllOfACommand)
{
    const AgentResult result = run_agent({"describe", "RESPONSE_ROUTER_VERSION"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.output,
                StartsWith("RESPONSE_ROUTER_VERSION - Passes a version report to the agent"));
    for (const char *part : {"json_response_router_version", "device_identity", "Request",
                             "VersionInfo  required; the version report",
                             "Reply, success: ", "Reply, failure: ", "Status  \"1\"", "2048",
                             "{\"VersionInfo\":\"app 5.2.0\",\"Status\":\"0\"}"}) {
        EXPECT_THAT(result.output, HasSubstr(part));
    }
}

TEST(Describe, ShowsTheKeysOfAReplyInOrder)
{
    const AgentResult result = run_agent({"describe", "GET_SN_INFO"});
    EXPECT_THAT(result.output, HasSubstr("Device calls  devapi_get_sn_info\n"));
    EXPECT_THAT(result.output, HasSubstr("    (no keys)\n"));
    EXPECT_THAT(
        result.output,
        HasSubstr(
            "    Status        \"0\"\n"
            "    MAC           at most 64 bytes; MAC address that serves as the serial number; "
            "six bytes in hexadecimal, separated by colons, e.g. \"3C:6A:D2:10:4F:20\"\n"
            "    tslinkstatus  at most 8 bytes; state of the mesh link layer; 1 for up, 0 for "
            "down\n"
            "    DeviceType    at most 256 bytes; type of device; e.g. \"HGU-AX3000\"\n"));
    EXPECT_THAT(result.output, HasSubstr("    FailReason  \"get sn failed\"\n"));
}

TEST(Describe, SaysWhatACommandChangesAndWhichReportsIt)
{
    EXPECT_THAT(run_agent({"describe", "GET_SN_INFO"}).output,
                HasSubstr("Changes       nothing\n"));
    EXPECT_THAT(run_agent({"describe", "RP_HG_REBOOT"}).output,
                HasSubstr("Changes       what it cannot change back\n"));
    const std::string page = run_agent({"describe", "SET_WIFI_INFO"}).output;
    EXPECT_THAT(page, HasSubstr("Changes       a setting, reported by GET_WIFI_INFO\n"));
    EXPECT_THAT(page,
                HasSubstr("the device decides which exist; reported by GET_WIFI_LIST_INFO\n"));
}

TEST(Describe, MarksCaseSensitiveKeys)
{
    EXPECT_THAT(run_agent({"describe", "HG_IMAGE_UPDATE"}).output,
                HasSubstr("\nRequest (case-sensitive)\n"));
    EXPECT_THAT(run_agent({"describe", "GET_SN_INFO"}).output, HasSubstr("\nRequest\n"));
}

TEST(Describe, NamesAllKeysThatAreRemoved)
{
    EXPECT_THAT(
        run_agent({"describe", "SET_HG_GUEST_SSID"}).output,
        HasSubstr("    Removed from the object: Enable, SSID, Band, ContinueTime, HourTime, "
                  "EndTimestamp, PWD, ENCRYPT\n"
                  "    Removed if they are strings: Mode, AdvertisementEnable\n"));
}

TEST(Describe, ShowsNumbersWithoutQuotes)
{
    EXPECT_THAT(
        run_agent({"describe", "GET_STA_RSSI"}).output,
        HasSubstr("Dbm     number; signal strength of the station; whole number below 0, in "
                  "dBm, e.g. -54\n"));
}

TEST(Describe, NamesTheNearestOfAnUnknownCommand)
{
    EXPECT_THAT(error_of({"describe", "QUERY_SYSTEMINFO"}, 3),
                StartsWith("hgagent: no command \"QUERY_SYSTEMINFO\"; the nearest are "
                           "QUERY_SYSTEM_INFO, "));
}

TEST(List, ShowsTheEvents)
{
    const AgentResult result = run_agent({"list", "--events", "update.*"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(lines_of(result.output),
                ElementsAre("update.failed     A firmware update has failed",
                            "update.progress   A firmware image is being fetched",
                            "update.succeeded  A firmware image has been flashed"));
    EXPECT_EQ(error_of({"list", "--events", "GET_SN_INFO"}, 1),
              "hgagent: no event matches \"GET_SN_INFO\"\n");
}

TEST(Describe, ShowsAllOfAnEvent)
{
    const AgentResult result = run_agent({"describe", "background.lost"});
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(result.output, StartsWith("background.lost - A worker was lost with its process"));
    for (const char *part :
         {"Sent by  the service", "worker  \"wifi-batch\" or \"firmware\"; which worker",
          R"({"event":"background.lost","data":{"worker":"wifi-batch"}})"}) {
        EXPECT_THAT(result.output, HasSubstr(part));
    }
    EXPECT_THAT(run_agent({"describe", "reboot.ended"}).output, HasSubstr("(no keys)"));
    EXPECT_THAT(run_agent({"describe", "HG_SPEEDTEST_REQUEST"}).output,
                HasSubstr("Takes         up to 120 seconds"));
    EXPECT_EQ(run_agent({"describe", "update.*"}).exit_status, 3);
}
