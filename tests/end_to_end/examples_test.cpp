// Every example in the description of the protocol holds for a new simulated gateway, whose clock
// stands still so that uptime and rates are those of the examples.
#include "agent_commands.h"
#include "embedded/protocol_commands.h"

#include <cstdlib>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using Json = nlohmann::ordered_json;

TEST(Examples, AreWhatTheCommandsReply)
{
    ASSERT_FALSE(embedded::protocol_commands().empty());
    setenv("SIMULATED_GATEWAY_TIME", "1767225600", 1);
    for (const embedded::Text &file : embedded::protocol_commands()) {
        const Json description = Json::parse(file.text);
        const Json &example = description["example"];
        const AgentResult result = call(description["command"], example["request"].dump());
        EXPECT_EQ(result.output, example["reply"].dump() + "\n") << file.file_name;
    }
    unsetenv("SIMULATED_GATEWAY_TIME");
}
