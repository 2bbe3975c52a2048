// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

namespace {

using DeviceIdentityTest = GatewayTest;

TEST_F(DeviceIdentityTest, ReportsWhatTheScenarioContains)
{
    ASSERT_EQ(open_home(house({{"/identity/card", "SIM"},
                               {"/identity/nfc", true},
                               {"/identity/vlan_capability", std::string(191, 'v')},
                               {"/mesh/link_layer_up", false}})),
              "");
    EXPECT_STREQ(reported_by(devapi_get_sn_info).tslinkstatus, "0");
    const SystemInfo system = reported_by(devapi_get_system_info);
    EXPECT_STREQ(system.Card, "SIM");
    EXPECT_STREQ(system.NFC, "1");
    EXPECT_EQ(system.VLANCapability, std::string(191, 'v'));
}

} // namespace
