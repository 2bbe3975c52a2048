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

TEST(Protocol, SaysNoMoreOfAnUnknownNameThanFitsALine)
{
    EXPECT_THAT(agent::no_such_command("A\nB"), testing::StartsWith("no command \"A\\nB\"; "));
    EXPECT_LT(agent::no_such_command(std::string(10000000, 'x')).size(), 400U);
}
