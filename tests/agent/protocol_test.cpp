// SPDX-License-Identifier: MIT
// The descriptions as the agent uses them.
#include "protocol/protocol.h"

#include <gmock/gmock.h>

using agent::nearest_commands;

TEST(Protocol, FindsCommandsByTheirExactNames)
{
    ASSERT_NE(agent::find_description("GET_SN_INFO"), nullptr);
    EXPECT_EQ((*agent::find_description("GET_SN_INFO"))["handler"], "json_get_sn_info");
    for (const char *name : {"", "get_sn_info", "GET_SN_INFO ", "GET_SN_INF"}) {
        EXPECT_EQ(agent::find_description(name), nullptr) << name;
    }
}

TEST(Protocol, NamesTheNearestCommandsFirst)
{
    EXPECT_EQ(nearest_commands("GET_SNINFO").front(), "GET_SN_INFO");
    EXPECT_EQ(nearest_commands("query_sys_info").front(), "QUERY_SYSTEM_INFO");
    EXPECT_EQ(nearest_commands("RESPONSE_VERSION_ROUTER").front(), "RESPONSE_ROUTER_VERSION");
    EXPECT_EQ(nearest_commands("").size(), 3U);
    EXPECT_EQ(nearest_commands(std::string(10000000, 'x')).size(), 3U);
}

TEST(Protocol, CutsALongUnknownNameToALine)
{
    EXPECT_THAT(agent::no_such_command("A\nB"), testing::StartsWith("no command \"A\\nB\"; "));
    EXPECT_LT(agent::no_such_command(std::string(10000000, 'x')).size(), 400U);
}

TEST(Protocol, KnowsHowLongACommandMayTake)
{
    EXPECT_EQ(agent::seconds_of("GET_SN_INFO"), std::chrono::seconds(30));
    EXPECT_EQ(agent::seconds_of("HG_SPEEDTEST_REQUEST"), std::chrono::seconds(120));
    EXPECT_EQ(agent::seconds_of("NO_SUCH"), std::chrono::seconds(30));
}

TEST(Protocol, KnowsWhichCommandsMayChangeTheRouter)
{
    EXPECT_FALSE(agent::may_change("GET_SN_INFO"));
    EXPECT_TRUE(agent::may_change("SET_UPNP_STATE"));
    EXPECT_TRUE(agent::may_change("RP_HG_REBOOT"));
    EXPECT_TRUE(agent::may_change("NO_SUCH"));
}

TEST(Protocol, FindsEventsByTheirExactNames)
{
    ASSERT_NE(agent::find_event("update.failed"), nullptr);
    EXPECT_EQ((*agent::find_event("update.failed"))["made_by"], "serve");
    EXPECT_EQ(agent::find_event("update.*"), nullptr);
    EXPECT_EQ(agent::find_event("GET_SN_INFO"), nullptr);
}
