// Every example in the description of the protocol holds for a new simulated gateway, whose clock
// stands still so that uptime and rates are those of the examples.
#include "agent_commands.h"
#include "embedded/protocol_commands.h"
#include "standing_clock.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

namespace embedded {

// What GoogleTest says of the example that failed.
static void PrintTo(const Text &file, std::ostream *out)
{
    *out << file.file_name;
}

} // namespace embedded

namespace examples_test {

class Examples : public testing::TestWithParam<embedded::Text> {
    const StandingClock clock_;
};

std::string command_of(const testing::TestParamInfo<embedded::Text> &file)
{
    return Json::parse(file.param.text)["command"];
}

TEST_P(Examples, AreWhatTheCommandsReply)
{
    const Json description = Json::parse(GetParam().text);
    const Json &example = description["example"];
    const AgentResult result = call(description["command"], example["request"].dump());
    EXPECT_EQ(result.output, example["reply"].dump() + "\n");
    EXPECT_EQ(result.exit_status, example["reply"].value("Status", "0") == "0" ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(All, Examples, testing::ValuesIn(embedded::protocol_commands()),
                         command_of);

} // namespace examples_test
