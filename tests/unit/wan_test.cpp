#include "handler_test.h"
#include "memory_sweep.h"
#include "request.h"

#include <algorithm>
#include <cstring>

namespace wan_test {

using recording_device::Call;
using recording_device::contents;
using recording_device::when;
using recording_host::LogLine;

constexpr char kCommand[] = "QUERY_WAN_INFO";

class WanTest : public HandlerTest {};

// A text of the record: the key by which the protocol knows it, and where it stands.
struct WanText {
    const char *key;
    size_t offset;
};

const std::vector<WanText> kReported = {
    {"INDEX", 0},
    {"IFNAME", 64},
    {"CONNECTIONTYPE", 200},
    {"CONNECTIONSTATUS", 128},
    {"PROTOCOL", 264},
    {"UPLINKMODE", 328},
    {"SERVICELIST", 456},
    {"ADDRESSTYPE", 520},
    {"IPADDRESS", 584},
    {"SUBNETMASK", 648},
    {"GATEWAY", 712},
    {"DNS1", 776},
    {"DNS2", 840},
    {"IPV6_CONNECTIONSTATUS", 920},
    {"IPV6_IPADDRESS", 1112},
    {"IPV6_PRIFIX", 984},
    {"IPV6_PREFIXLENGTH", 1048},
    {"IPV6_GATEWAY", 1176},
    {"IPV6_DNS1", 1240},
    {"IPV6_DNS2", 1304},
    {"PPPOE_USR_NAME", 1368},
    {"PPPOE_PASSWORD", 1432},
    {"PPPOE_PROXY", 1496},
    {"PPPOE_SERVICENAME", 1560},
    {"PPPOE_DIAL_MODE", 1624},
    {"NATENABLE", 1688},
    {"QOSENABLE", 1752},
    {"VLANID", 1816},
    {"VLANPRIORITY", 1880},
};

// A device that writes what text() gives into each reported field, and rubbish everywhere else.
template <class Text> void wan_holds(Text text, int32_t result = 0)
{
    when<devapi_query_wan_info>([=](WanInfo *info) {
        memset(info, '?', sizeof *info);
        for (const WanText &place : kReported) {
            char *field = reinterpret_cast<char *>(info) + place.offset;
            memset(field, '\0', 64);
            std::string(text(place)).copy(field, 64);
        }
        return result;
    });
}

template <class Text> std::string reported(Text text)
{
    std::string reply = R"("Status":"0")";
    for (const WanText &place : kReported) {
        reply += std::string(",\"") + place.key + "\":" + quoted(text(place));
    }
    return reply;
}

std::string own_name(const WanText &place)
{
    return std::string("its ") + place.key;
}

// What reaches the device of a query.
std::string asked_for(const std::string &name)
{
    WanInfo wan = {};
    name.copy(wan.WANName, sizeof wan.WANName);
    return contents(&wan);
}

TEST_F(WanTest, ReportsAConnectionByItsName)
{
    wan_holds(own_name);
    EXPECT_EQ(run(kCommand, R"({"First":1,"WANName":"2_INTERNET_R","INDEX":7})"),
              R"({"First":1,"INDEX":7,)" + reported(own_name) + "}");
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_query_wan_info", {asked_for("2_INTERNET_R")}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(WanTest, AConnectionIsReadNoFurtherThanItsFields)
{
    const auto brim = [](const WanText &) {
        return text_of_length(64);
    };
    wan_holds(brim);
    EXPECT_EQ(run(kCommand, R"({"WANName":""})"), "{" + reported(brim) + "}");
    when<devapi_query_wan_info>([](WanInfo *info) {
        memset(info, 'x', sizeof *info);
        return 0;
    });
    EXPECT_EQ(run(kCommand, R"({"WANName":""})"),
              "{" + reported([](const WanText &) { return std::string(64, 'x'); }) + "}");
}

TEST_F(WanTest, FiveMissingValuesAreReportedAsEmpty)
{
    const std::vector<std::string> emptied = {"GATEWAY", "IPV6_IPADDRESS", "IPV6_PRIFIX",
                                              "IPV6_GATEWAY", "PPPOE_DIAL_MODE"};
    wan_holds([](const WanText &) { return "NULL"; });
    EXPECT_EQ(run(kCommand, R"({"WANName":"w"})"),
              "{" + reported([&](const WanText &place) {
                  return std::count(emptied.begin(), emptied.end(), place.key) == 1 ? "" : "NULL";
              }) + "}");
}

TEST_F(WanTest, OnlyTheExactWordIsAMissingValue)
{
    for (const char *text : {"null", "Null", "NULL ", " NULL", "NULLx", "NUL", "N", ""}) {
        const auto held = [text](const WanText &) {
            return text;
        };
        wan_holds(held);
        EXPECT_EQ(run(kCommand, R"({"WANName":"w"})"), "{" + reported(held) + "}");
    }
    wan_holds([](const WanText &) { return std::string("NULL\0 and more", 14); });
    const std::string reply = run(kCommand, R"({"WANName":"w"})");
    EXPECT_NE(reply.find(R"("GATEWAY":"","DNS1":"NULL","DNS2":"NULL")"), std::string::npos);
}

TEST_F(WanTest, CutsTheNameOfTheConnection)
{
    wan_holds(own_name);
    for (const size_t length : {0u, 62u, 63u, 64u, 65u, 10000u}) {
        const std::string name = text_of_length(length);
        EXPECT_EQ(run(kCommand, R"({"WANName":)" + quoted(name) + "}"),
                  "{" + reported(own_name) + "}");
        EXPECT_EQ(recording_device::calls().back().arguments[0], asked_for(name.substr(0, 63)))
            << length;
    }
}

TEST_F(WanTest, AQueryNeedsTheName)
{
    std::vector<Request> requests = {Request({}), Request({}).with("INDEX", R"("1")")};
    for (const std::string &no_text : kNoTexts) {
        requests.push_back(Request({}).with("WANName", no_text));
    }
    for (const Request &request : requests) {
        recording_host::reset();
        EXPECT_EQ(run(kCommand, request.json()),
                  request.followed_by(failure("json object WANName not found!")));
        EXPECT_EQ(recording_host::log_lines(),
                  (std::vector<LogLine>{{3, "can not find WANName object!\n"}}));
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(WanTest, AFailedQueryLeavesTheName)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        wan_holds(own_name, result);
        EXPECT_EQ(run(kCommand, R"({"WANName":"w"})"),
                  R"({"WANName":"w",)" + failure("QUERY_WAN_INFO_FAIL") + "}");
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(WanTest, OnlyTheFirstOfRepeatedNamesIsReadAndConsumed)
{
    wan_holds(own_name);
    EXPECT_EQ(run(kCommand, R"({"wanname":"a","WANName":"b","WANNAME":7})"),
              R"({"WANName":"b","WANNAME":7,)" + reported(own_name) + "}");
    EXPECT_EQ(recording_device::calls().at(0).arguments[0], asked_for("a"));
}

TEST_F(WanTest, IsReportedWholeOrNotAtAll)
{
    const size_t allocations = sweep_memory(
        kCommand, R"({"WANName":"w"})", [] { wan_holds(own_name); },
        [](const std::string &object, FailingMemory::Fail how) {
            EXPECT_EQ(object, how == FailingMemory::Fail::kOnce
                                  ? R"({"WANName":"w",)" + failure("QUERY_WAN_INFO_FAIL") + "}"
                                  : R"({"WANName":"w"})");
        });
    EXPECT_EQ(allocations, 1 + 2u * 29);
}

TEST_F(WanTest, WhatIsNoObjectIsLeftAlone)
{
    EXPECT_EQ(hg_process_json_cmd(kCommand, nullptr), 0);
    const Json array = parse(R"([{"WANName":"w"}])");
    EXPECT_EQ(hg_process_json_cmd(kCommand, array.get()), 0);
    EXPECT_EQ(print(array.get()), R"([{"WANName":"w"}])");
    EXPECT_TRUE(recording_device::calls().empty());
}

} // namespace wan_test
