// GET_CHILD_ROUTER_AD_BASE_INFO: the one command that waits for what the child router answers.
// What is not freed is found by the address sanitizer.
#include "handler_test.h"
#include "request.h"

#include <cstdlib>
#include <cstring>
#include <optional>

namespace child_router_answer_test {

using recording_device::when;
using Names = std::vector<std::string>;

constexpr char kCommand[] = "GET_CHILD_ROUTER_AD_BASE_INFO";
constexpr char kAsk[] = "devapi_cmdstring_sendto_tslink_with_retinfo";
constexpr char kNotAnswered[] = "sendto tslink or retinfo fail";
constexpr char kNoJson[] = "Get child_adbaseinfo fail";
constexpr char kNoBaseInfo[] = "BaseInfo is NULL";

const Request kRequest = Request({}).with("DeviceID", R"("3C6AD2228140")");

// A child router that answers so; without a text the answer stays null.
void child_answers(const std::optional<std::string> &text, int32_t result = 0)
{
    when<devapi_cmdstring_sendto_tslink_with_retinfo>(
        [=](const char *, const char *method, char **answer) {
            std::string expected = "get_childrouter_host_info";
            expected.resize(64);
            EXPECT_EQ(std::string(method, 64), expected);
            EXPECT_EQ(*answer, nullptr);
            if (text) {
                *answer = static_cast<char *>(malloc(text->size() + 1));
                memcpy(*answer, text->c_str(), text->size() + 1);
            }
            return result;
        });
}

// The traffic of an unusual answer is not kept.
std::string run_unseen(const Request &request)
{
    const Json object = parse(request.json());
    EXPECT_EQ(hg_process_json_cmd(kCommand, object.get()), 0);
    return print(object.get());
}

std::string nested(size_t depth)
{
    return std::string(depth, '[') + std::string(depth, ']');
}

class ChildRouterAnswerTest : public HandlerTest {};

TEST_F(ChildRouterAnswerTest, GraftsTheBaseInfoIntoTheReply)
{
    child_answers(R"({"Status":"0","BaseInfo":{"AdNum":2,"List":[{"Mac":"A"}]},"Other":"x"})");
    const Request request = kRequest.with("BaseInfo", "7").with("Other", "null");
    EXPECT_EQ(run(kCommand, request.json()),
              request.followed_by(R"("BaseInfo":{"AdNum":2,"List":[{"Mac":"A"}]},"Status":"0")"));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(ChildRouterAnswerTest, SendsTheObjectAsItCame)
{
    child_answers("{}");
    run(kCommand, R"({"First":1,"deviceid":"A"})");
    const auto calls = recording_device::calls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].function, kAsk);
    EXPECT_EQ(calls[0].arguments[0], "{\n\t\"First\":\t1,\n\t\"deviceid\":\t\"A\"\n}");
    EXPECT_EQ(calls[0].arguments[1], "get_childrouter_host_info");
}

TEST_F(ChildRouterAnswerTest, TheDeviceMayBeNamedInAnyType)
{
    child_answers(R"({"BaseInfo":{}})");
    for (const std::string &json : kNoTexts) {
        const Request request = kRequest.with("DeviceID", json);
        EXPECT_EQ(run(kCommand, request.json()),
                  request.followed_by(R"("BaseInfo":{},"Status":"0")"));
    }
    EXPECT_EQ(recording_device::called_functions(), Names(kNoTexts.size(), kAsk));
}

TEST_F(ChildRouterAnswerTest, TheDeviceHasToBeNamed)
{
    for (const Request &request : {Request({}), Request({{"Device", R"("A")"}, {"Mac", "7"}})}) {
        EXPECT_EQ(run(kCommand, request.json()),
                  request.followed_by(failure("DeviceID Not Found")));
    }
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(ChildRouterAnswerTest, NoAnswerIsAFailure)
{
    child_answers(std::nullopt);
    EXPECT_EQ(run(kCommand, kRequest.json()), kRequest.followed_by(failure(kNotAnswered)));
}

TEST_F(ChildRouterAnswerTest, AnAnswerHasToBeJson)
{
    for (const std::string &text :
         {std::string(""), std::string(" \n"), std::string("{"), std::string("x"),
          std::string("nul"), std::string("\xff\xfe"), std::string(R"({"BaseInfo":})"),
          std::string(R"({"BaseInfo":{})"), std::string(R"({"BaseInfo":"\ud800"})"),
          std::string("{'BaseInfo':{}}"), nested(1001), std::string(10 << 20, '['),
          std::string(10 << 20, '{'), std::string(10 << 20, ' '),
          R"({"BaseInfo":)" + nested(1000) + "}",
          R"({"BaseInfo":")" + std::string(10 << 20, 'x')}) {
        child_answers(text);
        EXPECT_EQ(run(kCommand, kRequest.json()), kRequest.followed_by(failure(kNoJson)))
            << text.substr(0, 30);
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(ChildRouterAnswerTest, AnAnswerHasToHoldTheBaseInfo)
{
    for (const std::string &text :
         {std::string("{}"), std::string("7"), std::string("null"), std::string("true"),
          std::string(R"("BaseInfo")"), std::string("[]"), std::string(R"([{"BaseInfo":{}}])"),
          std::string(R"({"Base":{},"BaseInf":1,"BaseInfos":2,"":{"BaseInfo":3}})"), nested(900),
          R"({"Load":")" + std::string(10 << 20, 'x') + R"("})"}) {
        child_answers(text);
        EXPECT_EQ(run(kCommand, kRequest.json()), kRequest.followed_by(failure(kNoBaseInfo)))
            << text.substr(0, 30);
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(ChildRouterAnswerTest, TheBaseInfoIsCopiedInAnyType)
{
    for (const std::string &value :
         {std::string("null"), std::string("true"), std::string("-1.5"), std::string(R"("")"),
          std::string(R"("\u0001\"\\é")"), std::string("[]"), std::string("[1,[2,{}],null]"),
          std::string(R"({"a":1,"a":2,"A":3,"":""})")}) {
        child_answers(R"({"BaseInfo":)" + value + "}");
        EXPECT_EQ(run(kCommand, kRequest.json()),
                  kRequest.followed_by(R"("BaseInfo":)" + value + R"(,"Status":"0")"));
    }
}

TEST_F(ChildRouterAnswerTest, ANumberThatIsNoneIsCopiedAsNull)
{
    child_answers(R"({"BaseInfo":[1e999,-1e999]})");
    EXPECT_EQ(run(kCommand, kRequest.json()),
              kRequest.followed_by(R"("BaseInfo":[null,null],"Status":"0")"));
}

TEST_F(ChildRouterAnswerTest, TheFirstBaseInfoInAnyLetterCaseIsTaken)
{
    child_answers(R"({"baseINFO":1,"BaseInfo":2} and more)");
    EXPECT_EQ(run(kCommand, kRequest.json()), kRequest.followed_by(R"("BaseInfo":1,"Status":"0")"));
}

TEST_F(ChildRouterAnswerTest, TheBaseInfoMayBeLongOrDeep)
{
    for (const std::string &value : {quoted(std::string(10 << 20, 'x')), nested(990)}) {
        child_answers(R"({"BaseInfo":)" + value + "}");
        EXPECT_EQ(run_unseen(kRequest),
                  kRequest.followed_by(R"("BaseInfo":)" + value + R"(,"Status":"0")"));
    }
}

TEST_F(ChildRouterAnswerTest, TheRequestMayBeAMegabyteLong)
{
    const Request request = kRequest.with("Load", quoted(text_of_length(1 << 20)));
    child_answers(R"({"BaseInfo":{}})");
    EXPECT_EQ(run(kCommand, request.json()), request.followed_by(R"("BaseInfo":{},"Status":"0")"));
}

} // namespace child_router_answer_test
