// SPDX-License-Identifier: MIT
#include "handler_test.h"
#include "request.h"

#include <cstring>

namespace wan_test {

constexpr char kCommand[] = "QUERY_WAN_INFO";

class QueryWanInfo : public HandlerTest {};

// The reply if the fields that can be missing, and one that cannot, have this text.
std::string reply_of(const std::string &text)
{
    when<devapi_query_wan_info>([=](WanInfo *info) {
        memset(info, 'x', sizeof *info);
        for (char *field : {info->GATEWAY, info->IPV6_IPADDRESS, info->IPV6_PRIFIX,
                            info->IPV6_GATEWAY, info->PPPOE_DIAL_MODE, info->DNS1}) {
            strcpy(field, text.c_str());
        }
        return 0;
    });
    return run(kCommand, R"({"WANName":"w"})");
}

std::vector<std::string> keys_with(const std::string &reply, const std::string &text)
{
    std::vector<std::string> keys;
    const Json object = parse(reply);
    const cJSON *item;
    cJSON_ArrayForEach(item, object.get())
    {
        if (item->valuestring == text) {
            keys.emplace_back(item->string);
        }
    }
    return keys;
}

TEST_F(QueryWanInfo, ReportsFiveMissingValuesAsEmpty)
{
    EXPECT_EQ(keys_with(reply_of("NULL"), ""), (Names{"GATEWAY", "IPV6_IPADDRESS", "IPV6_PRIFIX",
                                                      "IPV6_GATEWAY", "PPPOE_DIAL_MODE"}));
    EXPECT_EQ(cJSON_GetObjectItem(parse(reply_of("NULL")).get(), "DNS1")->valuestring,
              std::string("NULL"));
}

TEST_F(QueryWanInfo, OnlyTheExactWordIsAMissingValue)
{
    for (const char *text : {"null", "Null", "NULL ", " NULL", "NULLx", "NUL", "N"}) {
        const Json object = parse(reply_of(text));
        for (const char *key :
             {"GATEWAY", "IPV6_IPADDRESS", "IPV6_PRIFIX", "IPV6_GATEWAY", "PPPOE_DIAL_MODE"}) {
            EXPECT_STREQ(cJSON_GetObjectItem(object.get(), key)->valuestring, text) << key;
        }
    }
}

TEST_F(QueryWanInfo, NeedsTheName)
{
    for (const Request &request : Request({}).with("INDEX", R"("1")").without_text("WANName")) {
        recording_host::reset();
        EXPECT_EQ(run(kCommand, request.json()),
                  request.followed_by(failure("json object WANName not found!")));
        EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "can not find WANName object!\n"}}));
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

// ---- SET_ROUTE_WAN_INFO ------------------------------------------------------------------------

constexpr char kSet[] = "SET_ROUTE_WAN_INFO";

class SetRouteWanInfo : public HandlerTest {};

// The bytes of a record with texts at these offsets and nothing else.
std::string in_record(const std::vector<std::pair<size_t, std::string>> &texts)
{
    std::string record(1944, '\0');
    for (const auto &[offset, text] : texts) {
        record.replace(offset, text.size(), text);
    }
    return record;
}

struct Setting {
    const char *key;
    size_t offset;
    const char *trace;
};

const std::vector<Setting> kSettings = {
    {"WANName", 392, "wan_name = "},
    {"SERVICELIST", 456, "service_list = "},
    {"ADDRESSTYPE", 520, "addr_type = "},
    {"IPADDRESS", 584, "IPADDRESS = "},
    {"SUBNETMASK", 648, "SUBNETMASK = "},
    {"GATEWAY", 712, "GATEWAY = "},
    {"DNS1", 776, "DNS1 = "},
    {"DNS2", 840, "DNS2 = "},
    {"IPV6_IPADDRESS", 1112, "IPV6_IPADDRESS = "},
    {"IPV6_PREFIXLENGTH", 1048, "IPV6_PREFIXLENGTH = "},
    {"IPV6_GATEWAY", 1176, "IPV6_GATEWAY = "},
    {"IPV6_DNS1", 1240, "IPV6_DNS1 = "},
    {"IPV6_DNS2", 1304, "IPV6_DNS2= "},
    {"IPV6_PRIFIX", 984, "IPV6_PRIFIX= "},
    {"PPPOE_USR_NAME", 1368, "PPPOE_USR_NAME= "},
    {"PPPOE_PASSWORD", 1432, "PPPOE_PASSWORD= "},
    {"NATENABLE", 1688, "NATENABLE= "},
    {"QOSENABLE", 1752, "QOSENABLE= "},
    {"VLANID", 1816, "VLANID= "},
    {"VLANPRIORITY", 1880, "VLANPRIORITY= "},
};

LogLine found(const Setting &setting, const std::string &text)
{
    return {7, setting.trace + text + " \n"};
}

LogLine not_found(const Setting &setting)
{
    const bool expected = &setting < &kSettings[3];
    return {expected ? 3 : 7, std::string("can not find ") + setting.key + " object!\n"};
}

// A request with the same value for every key, from the last to the first.
Request request_with(const std::string &json)
{
    Request request({});
    for (auto setting = kSettings.rbegin(); setting != kSettings.rend(); ++setting) {
        request = request.with(setting->key, json);
    }
    return request;
}

TEST_F(SetRouteWanInfo, SetsAConnection)
{
    Request request = request_with("7").with("INDEX", R"("1")").with("PPPOE_PROXY", R"("1")");
    std::vector<std::pair<size_t, std::string>> texts;
    LogLines lines;
    for (const Setting &setting : kSettings) {
        const std::string text = std::string("new ") + setting.key;
        request = request.with(setting.key, quoted(text));
        texts.emplace_back(setting.offset, text);
        lines.push_back(found(setting, text));
    }
    EXPECT_EQ(run(kSet, request.json()), R"({"INDEX":"1","PPPOE_PROXY":"1","Status":"0"})");
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_set_route_wan_info", {in_record(texts)}}}));
    EXPECT_EQ(recording_host::log_lines(), lines);
}

TEST_F(SetRouteWanInfo, RequiresNoKey)
{
    LogLines lines;
    for (const Setting &setting : kSettings) {
        lines.push_back(not_found(setting));
    }
    EXPECT_EQ(run(kSet), R"({"Status":"0"})");
    EXPECT_EQ(recording_device::calls(), (Calls{{"devapi_set_route_wan_info", {in_record({})}}}));
    EXPECT_EQ(recording_host::log_lines(), lines);
}

TEST_F(SetRouteWanInfo, WritesEachKeyToItsField)
{
    for (const Setting &given : kSettings) {
        forget();
        LogLines lines;
        for (const Setting &setting : kSettings) {
            lines.push_back(&setting == &given ? found(setting, "x") : not_found(setting));
        }
        EXPECT_EQ(run(kSet, Request({}).with(given.key, R"("x")").json()), R"({"Status":"0"})");
        EXPECT_EQ(recording_device::calls(),
                  (Calls{{"devapi_set_route_wan_info", {in_record({{given.offset, "x"}})}}}));
        EXPECT_EQ(recording_host::log_lines(), lines);
    }
}

TEST_F(SetRouteWanInfo, AKeyWithoutTextCountsAsAbsentAndIsRemoved)
{
    for (const std::string &no_text : kNoTexts) {
        recording_host::reset();
        EXPECT_EQ(run(kSet, request_with(no_text).json()), R"({"Status":"0"})") << no_text;
        EXPECT_EQ(recording_device::calls().back().arguments[0], in_record({}));
        for (size_t at = 0; at < kSettings.size(); ++at) {
            EXPECT_EQ(recording_host::log_lines().at(at), not_found(kSettings[at]));
        }
    }
}

TEST_F(SetRouteWanInfo, CutsItsTextsButNotTheLog)
{
    for (const size_t length : {0u, 62u, 63u, 64u, 100u, 10000u}) {
        recording_host::reset();
        const std::string text = text_of_length(length);
        EXPECT_EQ(run(kSet, request_with(quoted(text)).json()), R"({"Status":"0"})");
        std::vector<std::pair<size_t, std::string>> texts;
        LogLines lines;
        for (const Setting &setting : kSettings) {
            texts.emplace_back(setting.offset, text.substr(0, 63));
            lines.push_back(found(setting, text));
        }
        EXPECT_EQ(recording_device::calls().back().arguments[0], in_record(texts)) << length;
        EXPECT_EQ(recording_host::log_lines(), lines);
    }
}

} // namespace wan_test
