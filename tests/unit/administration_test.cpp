#include "failing_memory.h"
#include "handler_test.h"

namespace administration_test {

using recording_device::when;

struct Action {
    const char *command;
    const char *function;
    void (*returns)(int32_t result);
    const char *failure;
};

constexpr Action kActions[] = {
    {"HG_LOCAL_RECOVERY", "devapi_recovery",
     [](int32_t result) { when<devapi_recovery>([result] { return result; }); },
     R"({"Status":"1","FailReason":"recovery failed"})"},
    {"RP_HG_REBOOT", "devapi_reboot",
     [](int32_t result) { when<devapi_reboot>([result] { return result; }); },
     R"({"Status":"1","FailReason":"reboot failed"})"},
};

class ActionTest : public HandlerTest, public testing::WithParamInterface<Action> {};

TEST_P(ActionTest, CallsOnceAndAnswersAtOnce)
{
    EXPECT_EQ(run(GetParam().command), R"({"Status":"0"})");
    EXPECT_EQ(recording_device::called_functions(), std::vector<std::string>{GetParam().function});
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_P(ActionTest, FailsOnEveryResultButZero)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        GetParam().returns(result);
        EXPECT_EQ(run(GetParam().command), GetParam().failure) << result;
    }
}

TEST_P(ActionTest, DeletesNothing)
{
    EXPECT_EQ(run(GetParam().command, R"({"Enable":"1"})"), R"({"Enable":"1","Status":"0"})");
}

TEST_P(ActionTest, IsNotCarriedOutWhenItCannotBeAnswered)
{
    EXPECT_EQ(hg_process_json_cmd(GetParam().command, nullptr), 0);
    const Json text = parse(R"("no object")");
    EXPECT_EQ(hg_process_json_cmd(GetParam().command, text.get()), 0);
    const Json object = parse("{}");
    {
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        hg_process_json_cmd(GetParam().command, object.get());
    }
    EXPECT_EQ(print(object.get()), GetParam().failure);
    EXPECT_TRUE(recording_device::calls().empty());
}

INSTANTIATE_TEST_SUITE_P(Commands, ActionTest, testing::ValuesIn(kActions),
                         [](const auto &test) { return std::string(test.param.command); });

} // namespace administration_test
