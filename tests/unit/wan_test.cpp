#include "handler_test.h"
#include "request.h"

#include <cstring>

namespace wan_test {

using recording_device::when;
using recording_host::LogLine;

constexpr char kCommand[] = "QUERY_WAN_INFO";

class WanTest : public HandlerTest {};

// The reply when the fields that can be missing, and one that cannot, hold the text.
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

TEST_F(WanTest, FiveMissingValuesAreReportedAsEmpty)
{
    EXPECT_EQ(keys_with(reply_of("NULL"), ""),
              (std::vector<std::string>{"GATEWAY", "IPV6_IPADDRESS", "IPV6_PRIFIX", "IPV6_GATEWAY",
                                        "PPPOE_DIAL_MODE"}));
    EXPECT_EQ(cJSON_GetObjectItem(parse(reply_of("NULL")).get(), "DNS1")->valuestring,
              std::string("NULL"));
}

TEST_F(WanTest, OnlyTheExactWordIsAMissingValue)
{
    for (const char *text : {"null", "Null", "NULL ", " NULL", "NULLx", "NUL", "N"}) {
        const Json object = parse(reply_of(text));
        for (const char *key :
             {"GATEWAY", "IPV6_IPADDRESS", "IPV6_PRIFIX", "IPV6_GATEWAY", "PPPOE_DIAL_MODE"}) {
            EXPECT_STREQ(cJSON_GetObjectItem(object.get(), key)->valuestring, text) << key;
        }
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

} // namespace wan_test
