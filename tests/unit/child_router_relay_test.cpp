// SPDX-License-Identifier: MIT
// Commands that are forwarded unchanged to a child router, and the one that returns its answer. The
// address sanitizer detects leaks.
#include "child_router_relay.h"
#include "handler_test.h"
#include "memory_sweep.h"
#include "request.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>

namespace child_router_relay_test {

constexpr char kSend[] = "devapi_cmdstring_sendto_tslink";

// A command, the failure text if nothing can be sent, and the keys that are removed.
struct Relay {
    const char *command;
    const char *failure;
    std::vector<std::string> removed;
    bool always_removes = false;
};

// Every key of these commands, between two of none.
const Request kRequest({{"First", R"([1,{"x":null}])"},
                        {"DeviceID", R"("3C6AD2228140")"},
                        {"Name", R"("Attic")"},
                        {"Mac", R"("72:9B")"},
                        {"DevType", "7"},
                        {"ByName", "null"},
                        {"NetMonopoly", R"("0")"},
                        {"AccessEnable", R"(["1"])"},
                        {"Last", "{}"}});

Request without_all(Request request, const std::vector<std::string> &keys)
{
    for (const std::string &key : keys) {
        request = request.without(key);
    }
    return request;
}

// The text that is sent for an object.
std::string formatted(const std::string &json)
{
    const Json object = parse(json);
    const std::unique_ptr<char, decltype(&cJSON_free)> text(cJSON_Print(object.get()), cJSON_free);
    return text.get();
}

Call sent(const std::string &json)
{
    const std::string text = formatted(json);
    return {kSend, {text, std::to_string(text.size())}};
}

void sending_gives(int32_t result)
{
    when<devapi_cmdstring_sendto_tslink>([result](const char *, int32_t) { return result; });
}

// ---- What these commands have in common --------------------------------------------------------

void sends_the_object_unchanged(const Relay &relay)
{
    for (const Request &request : {kRequest, Request({{"DeviceID", R"("")"}, {"Name", R"("")"}}),
                                   kRequest.with("Load", quoted(text_of_length(1 << 20)))}) {
        recording_device::reset();
        EXPECT_EQ(run(relay.command, request.json()),
                  without_all(request, relay.removed).followed_by(R"("Status":"0")"));
        EXPECT_EQ(recording_device::calls(), Calls{sent(request.json())});
        EXPECT_TRUE(recording_host::log_lines().empty());
    }
}

void sends_formatted_text_with_its_length(const Relay &relay)
{
    recording_device::reset();
    run(relay.command, R"({"DeviceID":"A\"é","Name":""})");
    EXPECT_EQ(recording_device::calls(),
              (Calls{{kSend, {"{\n\t\"DeviceID\":\t\"A\\\"é\",\n\t\"Name\":\t\"\"\n}", "37"}}}));
}

void fails_for_every_result_but_zero(const Relay &relay)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN, INT32_MAX}) {
        recording_device::reset();
        recording_host::reset();
        sending_gives(result);
        EXPECT_EQ(run(relay.command, kRequest.json()),
                  without_all(kRequest, relay.removed).followed_by(failure(relay.failure)))
            << result;
        EXPECT_EQ(recording_device::calls(), Calls{sent(kRequest.json())});
        EXPECT_EQ(recording_host::log_lines(),
                  (LogLines{{3, "cmdstring sendto tslink failed \n"}}));
    }
}

// The first allocation is the reply's, the others are the text's.
void sends_nothing_without_memory(const Relay &relay)
{
    for (const size_t length : {1u, 1000u}) {
        const Request request = kRequest.with("Load", quoted(text_of_length(length)));
        size_t number = 0;
        size_t in_a_round = 0;
        const size_t allocations = sweep_memory(
            relay.command, request.json(), [] {},
            [&](const std::string &object, FailingMemory::Fail how) {
                const bool once = how == FailingMemory::Fail::kOnce;
                in_a_round += once;
                const bool printing = (number++ % in_a_round) >= 1;
                const Request left = printing || relay.always_removes
                                         ? without_all(request, relay.removed)
                                         : request;
                EXPECT_EQ(object, left.followed_by(once ? failure(relay.failure) : ""));
                EXPECT_TRUE(recording_device::calls().empty());
                EXPECT_EQ(recording_host::log_lines(),
                          printing ? (LogLines{{3, "cmdstring is null\n"}}) : LogLines{});
            });
        EXPECT_GE(allocations, 1u + 2);
    }
}

void is_forwarded(const Relay &relay)
{
    sends_the_object_unchanged(relay);
    sends_formatted_text_with_its_length(relay);
    fails_for_every_result_but_zero(relay);
    sends_nothing_without_memory(relay);
}

// ---- The commands ------------------------------------------------------------------------------

class RpChildHgReboot : public HandlerTest {};
class ChildHgLocalRecovery : public HandlerTest {};
class SetChildRouterHgBaseInfo : public HandlerTest {};
class SetChildRouteradBaseInfo : public HandlerTest {};

TEST_F(RpChildHgReboot, IsForwarded)
{
    is_forwarded({"RP_CHILD_HG_REBOOT", "send json to child err", {"DeviceID"}});
}

TEST_F(ChildHgLocalRecovery, IsForwarded)
{
    is_forwarded({"CHILD_HG_LOCAL_RECOVERY", "send json to child err", {"DeviceID"}});
}

TEST_F(SetChildRouterHgBaseInfo, IsForwarded)
{
    is_forwarded(
        {"SET_CHILD_ROUTER_HG_BASE_INFO", "set childrouter info failed", {"DeviceID", "Name"}});
}

TEST_F(SetChildRouteradBaseInfo, IsForwarded)
{
    is_forwarded({"SET_CHILD_ROUTERAD_BASE_INFO",
                  "send json to child err",
                  {"DeviceID", "Mac", "DevType", "ByName", "NetMonopoly", "AccessEnable"},
                  true});
}

// ---- json_child_router_common ------------------------------------------------------------------

class ChildRouterCommonTest : public HandlerTest {};

TEST_F(ChildRouterCommonTest, ReturnsTheResultOfTheDevice)
{
    const Json object = parse(kRequest.json());
    for (const int32_t result : {0, -1, 1, 2, -2, 1000, INT32_MIN, INT32_MAX}) {
        recording_host::reset();
        sending_gives(result);
        EXPECT_EQ(json_child_router_common(object.get()), result);
        EXPECT_EQ(print(object.get()), kRequest.json());
        EXPECT_EQ(recording_device::calls().back(), sent(kRequest.json()));
        EXPECT_EQ(recording_host::log_lines().size(), result == 0 ? 0u : 1);
    }
}

TEST_F(ChildRouterCommonTest, SendsAnEmptyObject)
{
    const Json object = parse("{}");
    EXPECT_EQ(json_child_router_common(object.get()), 0);
    EXPECT_EQ(recording_device::calls(), Calls{sent("{}")});
}

TEST_F(ChildRouterCommonTest, WithoutAnObjectNothingIsSent)
{
    EXPECT_EQ(json_child_router_common(nullptr), -1);
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "cmdstring is null\n"}}));
}

TEST_F(ChildRouterCommonTest, AnItemThatCannotBePrintedIsNotSent)
{
    const Json nothing(cJSON_CreateRaw(""));
    EXPECT_EQ(json_child_router_common(nothing.get()), -1);
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{3, "cmdstring is null\n"}}));
}

// ---- GET_CHILD_ROUTER_AD_BASE_INFO: waits for the child router's answer ------------------------

constexpr char kCommand[] = "GET_CHILD_ROUTER_AD_BASE_INFO";
constexpr char kAsk[] = "devapi_cmdstring_sendto_tslink_with_retinfo";
constexpr char kNotAnswered[] = "sendto tslink or retinfo fail";
constexpr char kNoJson[] = "Get child_adbaseinfo fail";
constexpr char kNoBaseInfo[] = "BaseInfo is NULL";

const Request kAsked = Request({}).with("DeviceID", R"("3C6AD2228140")");

// The child router answers with the text; without one the answer stays null.
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

// Without a record of the traffic, which would be too large or too deep for its check.
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

class GetChildRouterAdBaseInfo : public HandlerTest {};

TEST_F(GetChildRouterAdBaseInfo, CopiesTheBaseInfoIntoTheReply)
{
    child_answers(R"({"Status":"0","BaseInfo":{"AdNum":2,"List":[{"Mac":"A"}]},"Other":"x"})");
    const Request request = kAsked.with("BaseInfo", "7").with("Other", "null");
    EXPECT_EQ(run(kCommand, request.json()),
              request.followed_by(R"("BaseInfo":{"AdNum":2,"List":[{"Mac":"A"}]},"Status":"0")"));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetChildRouterAdBaseInfo, SendsTheObjectUnchanged)
{
    child_answers("{}");
    run(kCommand, R"({"First":1,"deviceid":"A"})");
    const auto calls = recording_device::calls();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].function, kAsk);
    EXPECT_EQ(calls[0].arguments[0], "{\n\t\"First\":\t1,\n\t\"deviceid\":\t\"A\"\n}");
    EXPECT_EQ(calls[0].arguments[1], "get_childrouter_host_info");
}

TEST_F(GetChildRouterAdBaseInfo, NoAnswerIsAFailure)
{
    child_answers(std::nullopt);
    EXPECT_EQ(run(kCommand, kAsked.json()), kAsked.followed_by(failure(kNotAnswered)));
}

TEST_F(GetChildRouterAdBaseInfo, AnAnswerHasToBeJson)
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
        EXPECT_EQ(run(kCommand, kAsked.json()), kAsked.followed_by(failure(kNoJson)))
            << text.substr(0, 30);
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetChildRouterAdBaseInfo, AnAnswerHasToContainTheBaseInfo)
{
    for (const std::string &text :
         {std::string("{}"), std::string("7"), std::string("null"), std::string("true"),
          std::string(R"("BaseInfo")"), std::string("[]"), std::string(R"([{"BaseInfo":{}}])"),
          std::string(R"({"Base":{},"BaseInf":1,"BaseInfos":2,"":{"BaseInfo":3}})"), nested(900),
          R"({"Load":")" + std::string(10 << 20, 'x') + R"("})"}) {
        child_answers(text);
        EXPECT_EQ(run(kCommand, kAsked.json()), kAsked.followed_by(failure(kNoBaseInfo)))
            << text.substr(0, 30);
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetChildRouterAdBaseInfo, TheBaseInfoIsCopiedInAnyType)
{
    for (const std::string &value :
         {std::string("null"), std::string("true"), std::string("-1.5"), std::string(R"("")"),
          std::string(R"("\u0001\"\\é")"), std::string("[]"), std::string("[1,[2,{}],null]"),
          std::string(R"({"a":1,"a":2,"A":3,"":""})")}) {
        child_answers(R"({"BaseInfo":)" + value + "}");
        EXPECT_EQ(run(kCommand, kAsked.json()),
                  kAsked.followed_by(R"("BaseInfo":)" + value + R"(,"Status":"0")"));
    }
}

TEST_F(GetChildRouterAdBaseInfo, AnInfiniteNumberIsCopiedAsNull)
{
    child_answers(R"({"BaseInfo":[1e999,-1e999]})");
    EXPECT_EQ(run(kCommand, kAsked.json()),
              kAsked.followed_by(R"("BaseInfo":[null,null],"Status":"0")"));
}

TEST_F(GetChildRouterAdBaseInfo, CopiesTheFirstBaseInfoInAnyCase)
{
    child_answers(R"({"baseINFO":1,"BaseInfo":2} and more)");
    EXPECT_EQ(run(kCommand, kAsked.json()), kAsked.followed_by(R"("BaseInfo":1,"Status":"0")"));
}

TEST_F(GetChildRouterAdBaseInfo, TheBaseInfoMayBeLongOrDeep)
{
    for (const std::string &value : {quoted(std::string(10 << 20, 'x')), nested(990)}) {
        child_answers(R"({"BaseInfo":)" + value + "}");
        EXPECT_EQ(run_unseen(kAsked),
                  kAsked.followed_by(R"("BaseInfo":)" + value + R"(,"Status":"0")"));
    }
}

TEST_F(GetChildRouterAdBaseInfo, TheRequestMayBeAMegabyteLong)
{
    const Request request = kAsked.with("Load", quoted(text_of_length(1 << 20)));
    child_answers(R"({"BaseInfo":{}})");
    EXPECT_EQ(run(kCommand, request.json()), request.followed_by(R"("BaseInfo":{},"Status":"0")"));
}

} // namespace child_router_relay_test
