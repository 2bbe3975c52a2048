// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include <csignal>
#include <cstring>

namespace {

using FaultPlanTest = GatewayTest;
using testing::ElementsAre;

TEST_F(FaultPlanTest, AFaultWithoutCountLasts)
{
    ASSERT_EQ(open({.faults = {"devapi_get_sn_info=-1"}}), "");
    for (int times = 0; times < 5; ++times) {
        EXPECT_EQ(call(), -1);
    }
    reported_by(devapi_get_system_info);
}

TEST_F(FaultPlanTest, FaultsOfAFunctionApplyOneAfterTheOther)
{
    ASSERT_EQ(open({.faults = {"devapi_get_sn_info=5*2", "devapi_get_system_info=1",
                               "devapi_get_sn_info=-7*1@1ms"}}),
              "");
    EXPECT_EQ(call(), 5);
    EXPECT_EQ(call(), 5);
    EXPECT_EQ(call(), -7);
    EXPECT_EQ(call(), 0);
    EXPECT_EQ(call(), 0);
}

TEST_F(FaultPlanTest, AFaultedCallTouchesNoRecord)
{
    ASSERT_EQ(open({.faults = {"devapi_get_sn_info=0*1"}}), "");
    SnInfo info;
    std::memset(&info, 0x5a, sizeof(info));
    const SnInfo before = info;
    EXPECT_EQ(devapi_get_sn_info(&info), 0);
    EXPECT_EQ(std::memcmp(&info, &before, sizeof(info)), 0);
}

TEST_F(FaultPlanTest, AFaultMayDelayTheCall)
{
    ASSERT_EQ(open({.faults = {"devapi_get_sn_info=-1@60ms"}, .trace = path("trace")}), "");
    EXPECT_EQ(call(), -1);
    const std::string line = lines(path("trace")).at(0);
    const size_t at = line.find(" in ");
    ASSERT_NE(at, std::string::npos) << line;
    EXPECT_GE(std::stol(line.substr(at + 4)), 60000) << line;
}

TEST_F(FaultPlanTest, RubbishFillsTheTextsWithoutAnEnd)
{
    ASSERT_EQ(open({.faults = {"devapi_get_sn_info=rubbish*1"}}), "");
    SnInfo info = reported_by(devapi_get_sn_info);
    EXPECT_EQ(std::memchr(&info, 0, sizeof(info)), nullptr);
    EXPECT_EQ(devapi_get_sn_info(&info), 0);
    EXPECT_STREQ(info.MAC, "3C:6A:D2:10:4F:20");
}

TEST_F(FaultPlanTest, RubbishFillsNumbersAndLeavesOtherTexts)
{
    ASSERT_EQ(open({.faults = {"devapi_get_host_num=rubbish",
                               "devapi_cmdstring_sendto_tslink_with_retinfo=rubbish"},
                    .trace = path("trace")}),
              "");
    const int32_t count = reported_by(devapi_get_host_num);
    EXPECT_GE(count, 0);
    char *answer = nullptr;
    EXPECT_EQ(devapi_cmdstring_sendto_tslink_with_retinfo("{}", "get", &answer), 0);
    EXPECT_EQ(answer, nullptr);
    EXPECT_THAT(lines(path("trace")),
                ElementsAre(HasSubstr("(count=" + std::to_string(count) + ") = 0 "),
                            HasSubstr("answer=unset) = 0 ")));
}

TEST_F(FaultPlanTest, ACrashEndsTheProcess)
{
    ASSERT_EQ(open({.faults = {"devapi_get_sn_info=crash"}}), "");
    EXPECT_EXIT(call(), testing::KilledBySignal(SIGABRT), "");
}

TEST_F(FaultPlanTest, AnUnknownFunctionSuggestsTheNearest)
{
    EXPECT_EQ(open({.faults = {"devapi_get_sn_inof=-1"}}),
              "fault \"devapi_get_sn_inof=-1\": there is no such device function; did you mean "
              "devapi_get_sn_info?");
    EXPECT_EQ(open({.faults = {"=-1"}}), "fault \"=-1\": there is no such device function");
}

TEST_F(FaultPlanTest, MalformedFaultsAreQuoted)
{
    const struct {
        const char *fault;
        const char *expected_error;
    } malformed[] = {
        {"", "has to be FUNCTION=RESULT[*COUNT][@DELAYms]"},
        {"devapi_get_sn_info", "has to be FUNCTION=RESULT[*COUNT][@DELAYms]"},
        {"devapi_get_sn_info=", "the result is missing"},
        {"devapi_get_sn_info=x", "the result is missing"},
        {"devapi_get_sn_info=2147483648", "the result is not within -2147483648 to 2147483647"},
        {"devapi_get_sn_info=99999999999999999999",
         "the result is not within -2147483648 to 2147483647"},
        {"devapi_get_sn_info=-1*", "the count is missing"},
        {"devapi_get_sn_info=-1*0", "the count is not within 1 to 2147483647"},
        {"devapi_get_sn_info=-1*-2", "the count is not within 1 to 2147483647"},
        {"devapi_get_sn_info=-1@", "the delay is missing"},
        {"devapi_get_sn_info=-1@5", "the delay needs \"ms\" after it"},
        {"devapi_get_sn_info=-1@-5ms", "the delay is not within 0 to 3600000"},
        {"devapi_get_sn_info=-1@9999999ms", "the delay is not within 0 to 3600000"},
        {"devapi_get_sn_info=-1@5ms*2", "there is extra text at the end, \"*2\""},
        {"devapi_get_sn_info=-1 ", "there is extra text at the end, \" \""},
    };
    for (const auto &[fault, expected_error] : malformed) {
        EXPECT_EQ(open({.faults = {fault}}),
                  "fault \"" + std::string(fault) + "\": " + expected_error);
    }
}

TEST_F(FaultPlanTest, AnUnreachableFaultIsAnError)
{
    EXPECT_EQ(
        open({.faults = {"devapi_get_sn_info=-1", "devapi_get_sn_info=5"}}),
        "fault \"devapi_get_sn_info=5\": is never reached: the one before it for this function "
        "has no count");
}

} // namespace
