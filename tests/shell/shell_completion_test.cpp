// SPDX-License-Identifier: MIT
#include "protocol/json.h"
#include "protocol/protocol.h"
#include "shell/shell_completion.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace agent {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// Completes, and records which values were requested.
struct Completed {
    explicit Completed(std::string_view text, std::vector<std::string> values = {})
    {
        completion = complete(text, [&](const Description &found_in) {
            asked = found_in["command"].text();
            return values;
        });
        line = completion.text.empty()
                   ? std::string(text)
                   : std::string(text.substr(0, completion.begin)) + completion.text;
    }
    Completion completion;
    std::string line;
    std::string asked;
};

std::vector<std::string> candidates_of(std::string_view text)
{
    return Completed(text).completion.candidates;
}

TEST(ShellCompletion, TakesNamesInAnyCase)
{
    EXPECT_EQ(Completed("GET_SN").line, "GET_SN_INFO ");
    EXPECT_EQ(Completed("  get_sn").line, "  GET_SN_INFO ");
    EXPECT_EQ(Completed("call get_sn").line, "call GET_SN_INFO ");
    EXPECT_EQ(Completed("help set_upnp").line, "help SET_UPNP_STATE ");
    EXPECT_EQ(Completed("get_sc").line, "GET_SCAN_");
    EXPECT_THAT(candidates_of("get_sn"), ElementsAre("GET_SN_INFO"));
    EXPECT_THAT(candidates_of("no_such"), IsEmpty());
}

TEST(ShellCompletion, OffersEveryCommandAndWordAtTheBeginning)
{
    const auto words = candidates_of("");
    for (const Description &description : descriptions()) {
        EXPECT_THAT(words, Contains(description["command"].text()));
    }
    for (const char *word : {"help", "events", "report", "status", "quit", "list"}) {
        EXPECT_THAT(words, Contains(word));
    }
    EXPECT_THAT(candidates_of("help "), Not(Contains("events")));
}

TEST(ShellCompletion, KnowsTheWordsBehindItsOwn)
{
    EXPECT_THAT(candidates_of("events "), ElementsAre("on", "off"));
    EXPECT_EQ(Completed("events on update.p").line, "events on update.progress ");
    EXPECT_THAT(candidates_of("events off "), IsEmpty());
    EXPECT_EQ(Completed("report ho").line, "report home-page ");
    EXPECT_THAT(candidates_of("status "), IsEmpty());
}

TEST(ShellCompletion, OffersTheKeysThatAreNotThereYet)
{
    EXPECT_EQ(Completed("SET_UPNP_STATE ").line, "SET_UPNP_STATE Enable=");
    EXPECT_EQ(Completed("call SET_UPNP_STATE e").line, "call SET_UPNP_STATE Enable=");
    EXPECT_THAT(candidates_of("SET_UPNP_STATE Enable=1 "), IsEmpty());
    EXPECT_THAT(candidates_of("SET_WIFI_INFO SSIDIndex=1 S"), ElementsAre("SSID="));
    // A list cannot be given as KEY=VALUE.
    EXPECT_THAT(candidates_of("SET_WIFI_INFO_LIST "), Not(Contains("WIFILIST=")));
    EXPECT_THAT(candidates_of("SET_WIFI_INFO_LIST "), Contains("StaCtrl="));
    EXPECT_THAT(candidates_of("NO_SUCH_COMMAND "), IsEmpty());
    EXPECT_THAT(candidates_of("SET_UPNP_STATE {\"En"), IsEmpty());
}

TEST(ShellCompletion, OffersTheValuesThatTheProtocolNames)
{
    EXPECT_THAT(candidates_of("SET_UPNP_STATE Enable="), ElementsAre("0", "1"));
    EXPECT_EQ(Completed("SET_WIFI_INFO ENCRYPT=O").line, "SET_WIFI_INFO ENCRYPT=OPEN ");
    EXPECT_EQ(Completed("SET_WIFI_INFO encrypt=o").line, "SET_WIFI_INFO encrypt=OPEN ");
    EXPECT_EQ(Completed("SET_WIFI_INFO ENCRYPT=").asked, "");
}

TEST(ShellCompletion, AsksForTheValuesThatTheGatewayHas)
{
    const Completed macs("DEL_LAN_DEVICE MAC=", {"A4:BB:6D:31:07:5E", "A4:BB:00:00:00:00"});
    EXPECT_EQ(macs.asked, "GET_AD_BASE_INFO");
    EXPECT_EQ(macs.line, "DEL_LAN_DEVICE MAC=A4:BB:");
    EXPECT_THAT(macs.completion.candidates, ElementsAre("A4:BB:6D:31:07:5E", "A4:BB:00:00:00:00"));
    const Completed indexes("GET_WIFI_INFO SSIDIndex=", {"1", "2"});
    EXPECT_EQ(indexes.asked, "GET_WIFI_LIST_INFO");
    EXPECT_EQ(Completed("DEL_LAN_DEVICE MAC=8c", {"A4:BB", "8C:79"}).line,
              "DEL_LAN_DEVICE MAC=8C:79 ");
}

TEST(ShellCompletion, QuotesWhatNeedsIt)
{
    const std::vector<std::string> values = {"Wohn zimmer", "Küche"};
    EXPECT_EQ(Completed("QUERY_WAN_INFO WANName=W", values).line,
              "QUERY_WAN_INFO \"WANName=Wohn zimmer\" ");
    EXPECT_EQ(Completed("QUERY_WAN_INFO WANName=\"Wohn z", values).line,
              "QUERY_WAN_INFO \"WANName=Wohn zimmer\" ");
    // The common bytes of two characters are not a character.
    EXPECT_EQ(Completed("QUERY_WAN_INFO WANName=", {"ä b", "ö b"}).line,
              "QUERY_WAN_INFO \"WANName=");
}

TEST(ShellCompletion, TakesValuesOutOfRepliesAsTheProtocolSays)
{
    const Json reply(cJSON_Parse(
        R"({"L": [{"k": "1"}, {"k": "2"}, {"k": "1"}, {"k": 3}, {}, 7], "T": "a,b,,c"})"));
    const Json in_list(cJSON_Parse(R"({"command": "X", "list": "L", "key": "k"})"));
    const Json in_text(cJSON_Parse(R"({"command": "X", "key": "T", "separator": ","})"));
    EXPECT_THAT(values_in_reply(reply.get(), Description(in_list.get())), ElementsAre("1", "2"));
    EXPECT_THAT(values_in_reply(reply.get(), Description(in_text.get())),
                ElementsAre("a", "b", "c"));
    EXPECT_THAT(values_in_reply(nullptr, Description(in_list.get())), IsEmpty());
}

TEST(ShellCompletion, OffersNothingThatWouldSteerTheTerminal)
{
    const Json in_list(cJSON_Parse(R"({"command": "X", "list": "L", "key": "k"})"));
    const Json reply(
        cJSON_Parse("{\"L\": [{\"k\": \"\\u001b[2J\"}, {\"k\": \"a\\nb\"}, {\"k\": \"\xff\"},"
                    "{\"k\": \"\\u009b1m\"}, {\"k\": \"\\u202e\"}, {\"k\": \"good\"}]}"));
    EXPECT_THAT(values_in_reply(reply.get(), Description(in_list.get())), ElementsAre("good"));
    const Json many(cJSON_CreateObject());
    cJSON *list = cJSON_AddArrayToObject(many.get(), "L");
    for (int at = 0; at < 100000; ++at) {
        cJSON *element = cJSON_CreateObject();
        cJSON_AddStringToObject(element, "k", std::to_string(at).c_str());
        cJSON_AddItemToArray(list, element);
    }
    EXPECT_EQ(values_in_reply(many.get(), Description(in_list.get())).size(), 256U);
}

} // namespace
} // namespace agent
