// SPDX-License-Identifier: MIT
// What the plug-in reports to the agent about the device's profile.
#include "agent_commands.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using testing::Not;

TEST(Profile, ChangesWithTheConfigurationState)
{
    const std::string changed = "<6> hgagent: the profile has changed";
    const AgentResult set =
        call("SET_TSLINK_CONFIG_STATUS", R"({"ConfiguerStatus":"1"})", {"--log-level", "6"});
    EXPECT_EQ(set.output, "{\"Status\":\"0\"}\n");
    EXPECT_THAT(set.error, HasSubstr(changed));

    const AgentResult refused =
        call("SET_TSLINK_CONFIG_STATUS", R"({"ConfiguerStatus":"1"})",
             {"--log-level", "6", "--fault", "devapi_set_sta_tslink_config=-1"});
    EXPECT_EQ(refused.exit_status, 1);
    EXPECT_THAT(refused.error, Not(HasSubstr(changed)));
}
