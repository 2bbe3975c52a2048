// SPDX-License-Identifier: MIT
// --reasons: why the device library refuses calls, in addition to the reply.
#include "agent_commands.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace reasons_test {

constexpr char kRefused[] = R"({"Enable":"up"})";
constexpr char kFailed[] = R"({"Status":"1","FailReason":"Set UPNP enable failed"})";
constexpr char kReason[] = R"(devapi_set_upnp_state: Enable "up" is none of "0", "1")";

std::string request(const std::string &command, const std::string &params = "{}")
{
    return R"({"id":1,"command":")" + command + R"(","params":)" + params + "}\n";
}

TEST(Reasons, AccompanyTheReplyOfACall)
{
    const AgentResult without = call("SET_UPNP_STATE", kRefused);
    EXPECT_EQ(without.output, std::string(kFailed) + "\n");
    EXPECT_THAT(without.error, Not(HasSubstr(kReason)));

    const AgentResult with = run_agent({"call", "--reasons", "SET_UPNP_STATE", kRefused});
    EXPECT_EQ(with.output, without.output);
    EXPECT_EQ(with.exit_status, without.exit_status);
    EXPECT_EQ(with.error, "hgagent: " + std::string(kReason) + "\n" + without.error);

    EXPECT_THAT(run_agent({"call", "GET_SN_INFO", "--reasons"}).error, IsEmpty());
}

TEST(Reasons, FollowTheReplyOfServe)
{
    const std::string input =
        request("SET_UPNP_STATE", kRefused) + request("GET_SN_INFO") + "{\"id\":1}\n";
    const std::vector<std::string> without = lines_of(serve(input).output);
    const std::vector<std::string> with = lines_of(serve(input, {}, {"--reasons"}).output);
    ASSERT_EQ(without.size(), 3U);
    ASSERT_EQ(with.size(), 3U);
    EXPECT_EQ(with[0], without[0].substr(0, without[0].size() - 1) +
                           R"(,"reasons":["devapi_set_upnp_state: Enable \"up\" is none of \"0\", )"
                           R"(\"1\""]})");
    EXPECT_EQ(with[1], without[1].substr(0, without[1].size() - 1) + R"(,"reasons":[]})");
    EXPECT_EQ(with[2], without[2]);
}

TEST(Reasons, NameAFaultPlan)
{
    const AgentResult result =
        run_agent({"--fault", "devapi_get_sn_info=5", "call", "--reasons", "GET_SN_INFO"});
    EXPECT_THAT(result.error, StartsWith("hgagent: devapi_get_sn_info: fault\n"));
}

TEST(Reasons, OfAWorkerHaveASeparateLine)
{
    const AgentResult result = run_agent(
        {"serve", "--reasons"},
        request("IMAGE_DOWNLOAD", R"({"MainRouter":{"UpdateUrl":"ftp://127.0.0.1/new.image"}})"));
    EXPECT_EQ(result.exit_status, 0);
    EXPECT_THAT(lines_of(result.output),
                UnorderedElementsAre(
                    R"({"id":1,"result":0,"reply":{"Status":"0","updateResult":"0"},"reasons":[]})",
                    StartsWith(R"({"reasons":["devapi_flash_update_image: )")));
}

TEST(Reasons, AreTheErrorsThatAnyOtherLibraryLogs)
{
    const AgentResult served = serve(
        request("GET_UPNP_STATE"), {"--device", HOSTILE_DEVICE, "--log-level", "0"}, {"--reasons"});
    EXPECT_THAT(served.output,
                HasSubstr(R"("reasons":["test: no daemon\\x1b, Password:***",)"
                          R"("hgagent: refused to run a command: upnpc --state"]})"));
    EXPECT_THAT(served.error, IsEmpty());

    const AgentResult called = run_agent(
        {"--device", HOSTILE_DEVICE, "--log-level", "0", "call", "--reasons", "GET_UPNP_STATE"});
    EXPECT_THAT(lines_of(called.error),
                ElementsAre("hgagent: test: no daemon\\x1b, Password:***",
                            "hgagent: hgagent: refused to run a command: upnpc --state",
                            HasSubstr("hgagent describe GET_UPNP_STATE")));
}

} // namespace reasons_test
