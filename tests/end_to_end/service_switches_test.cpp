// SPDX-License-Identifier: MIT
// Which WAN connection the LAN ports are bound to.
#include "gateway_test.h"

#include <gmock/gmock.h>

using testing::HasSubstr;

TEST_F(GatewayTest, BindsPorts)
{
    expect_kept("SET_PORT_BINDING", R"({"Index":"2","BoundPorts":"LAN3,LAN4"})", "GET_PORT_BINDING",
                R"({"Index":"2","WANName":"IPTV","BoundPorts":"LAN3,LAN4"})");
    expect_kept("SET_PORT_BINDING", R"({"Index":"4","BoundPorts":"LAN4"})", "GET_PORT_BINDING",
                R"({"Index":"4","WANName":"Voice","BoundPorts":"LAN4"})");
    EXPECT_THAT(reply("GET_PORT_BINDING"), HasSubstr(R"("WANName":"IPTV","BoundPorts":"LAN3")"));
    EXPECT_EQ(reply("SET_PORT_BINDING", R"({"Index":"4","BoundPorts":"LAN9"})"),
              "{\"Status\":\"1\",\"FailReason\":\"set port binding failed\"}\n");
    expect_kept("SET_PORT_BINDING", R"({"Index":"2","BoundPorts":"NULL"})", "GET_PORT_BINDING",
                R"("WANName":"IPTV","BoundPorts":"NULL")");
}
