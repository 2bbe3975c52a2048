// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include "embedded/protocol_commands.h"

namespace {

class DeviceIdentityTest : public GatewayTest {
  protected:
    // The reply of the command's example, as the protocol describes it.
    static nlohmann::json example(const std::string &command)
    {
        for (const embedded::Text &file : embedded::protocol_commands()) {
            if (file.file_name == command + ".json") {
                return nlohmann::json::parse(file.text).at("example").at("reply");
            }
        }
        return {};
    }
};

TEST_F(DeviceIdentityTest, ReturnsSerialNumberAndType)
{
    ASSERT_EQ(open({}), "");
    SnInfo info = {};
    ASSERT_EQ(devapi_get_sn_info(&info), 0);
    EXPECT_STREQ(info.MAC, "3C:6A:D2:10:4F:20");
    EXPECT_STREQ(info.tslinkstatus, "1");
    EXPECT_STREQ(info.DeviceType, "HGU-AX3000");
}

TEST_F(DeviceIdentityTest, AFieldWithoutAValueIsNull)
{
    ASSERT_EQ(open({}), "");
    SystemInfo info = {};
    ASSERT_EQ(devapi_get_system_info(&info), 0);
    EXPECT_STREQ(info.SWVersion, "V2.4.1");
    EXPECT_STREQ(info.DEVType1, "NULL");
    EXPECT_STREQ(info.Cardno, "NULL");
}

TEST_F(DeviceIdentityTest, TheDefaultHomeIsThatOfTheProtocolsExamples)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    SnInfo sn = {};
    SystemInfo system = {};
    ASSERT_EQ(devapi_get_sn_info(&sn), 0);
    ASSERT_EQ(devapi_get_system_info(&system), 0);
    const std::string trace = read(path("trace"));
    for (const char *command : {"GET_SN_INFO", "QUERY_SYSTEM_INFO"}) {
        nlohmann::json reply = example(command);
        ASSERT_EQ(reply.erase("Status"), 1u) << command;
        for (const auto &[key, value] : reply.items()) {
            const std::string field = key + "=" + value.dump();
            EXPECT_NE(trace.find(field), std::string::npos) << command << " " << field;
        }
    }
}

TEST_F(DeviceIdentityTest, ReportsWhatTheScenarioContains)
{
    nlohmann::json home = house();
    home["identity"]["card"] = "SIM";
    home["identity"]["nfc"] = true;
    home["identity"]["vlan_capability"] = std::string(191, 'v');
    home["mesh"]["link_layer_up"] = false;
    ASSERT_EQ(open({.scenario = write("home.json", home.dump())}), "");
    SnInfo sn = {};
    SystemInfo system = {};
    ASSERT_EQ(devapi_get_sn_info(&sn), 0);
    ASSERT_EQ(devapi_get_system_info(&system), 0);
    EXPECT_STREQ(sn.tslinkstatus, "0");
    EXPECT_STREQ(system.Card, "SIM");
    EXPECT_STREQ(system.NFC, "1");
    EXPECT_EQ(system.VLANCapability, std::string(191, 'v'));
}

TEST_F(DeviceIdentityTest, ANullRecordIsAFailedCall)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(devapi_get_sn_info(nullptr), -1);
    EXPECT_EQ(devapi_get_system_info(nullptr), -1);
}

} // namespace
