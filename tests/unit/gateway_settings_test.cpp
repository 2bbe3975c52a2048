// SPDX-License-Identifier: MIT
#include "failing_memory.h"
#include "handler_test.h"

#include <cstring>

namespace gateway_settings_test {

class SetLanIpInfo : public HandlerTest {};
class SetHgDhcpInfo : public HandlerTest {};
class SetHgPppoeInfo : public HandlerTest {};
class GetHgPppoeInfo : public HandlerTest {};
class GatewaySettingsTest : public HandlerTest {};

// ---- GET_HG_BASE_INFO --------------------------------------------------------------------------

struct BaseKey {
    const char *key;
    size_t offset;
    size_t width;
};
constexpr BaseKey kBaseKeys[] = {
    {"Name", 0, 64},          {"Mac", 64, 32},        {"NetStatus", 96, 16},
    {"UpSpeed", 112, 32},     {"DownSpeed", 144, 32}, {"WiFiStatus1", 176, 32},
    {"WiFiStatus2", 208, 32}, {"SSID1", 240, 32},     {"SSID2", 272, 32},
    {"ip", 368, 32},          {"HWVersion", 400, 32}, {"FWVersion", 432, 32},
    {"FWDATA", 464, 32},      {"UpTime", 496, 32},    {"DeviceType", 560, 32},
    {"AreaCode", 592, 32},    {"Wlan0Mac", 336, 32},  {"Wlan1Mac", 304, 32},
    {"WanLinkMode", 720, 8},  {"Cpu", 640, 8},        {"Memory", 712, 8},
};

int32_t base_result;
int32_t lan_result;
int32_t wan_result;

class GetHgBaseInfo : public GatewaySettingsTest {
  protected:
    GetHgBaseInfo()
    {
        base_result = lan_result = wan_result = 0;
        // Each field contains its key; everything else in the records is garbage.
        when<devapi_get_hg_base_info>([](HgBaseInfo *info) {
            memset(info, '?', sizeof *info);
            for (const BaseKey &key : kBaseKeys) {
                strncpy(reinterpret_cast<char *>(info) + key.offset, key.key, key.width);
            }
            return base_result;
        });
        when<devapi_get_lan_ip_info>([](LanIpInfo *info) {
            memset(info, '?', sizeof *info);
            strcpy(info->GatewayLanIP, "192.168.1.1");
            return lan_result;
        });
        when<devapi_get_wan_ip_info>([](WanIpInfo *info) {
            memset(info, '?', sizeof *info);
            strcpy(info->WanGateWay, "203.0.113.1");
            strcpy(info->Dns, "198.51.100.53");
            return wan_result;
        });
    }

    static std::string reply(bool base, bool lan, bool wan)
    {
        std::string text = R"({"Status":"0")";
        for (const BaseKey &key : kBaseKeys) {
            text += std::string(",\"") + key.key + "\":\"" +
                    (base ? std::string(key.key, strnlen(key.key, key.width)) : "") + '"';
        }
        text += std::string(R"(,"LanIp":")") + (lan ? "192.168.1.1" : "");
        text += std::string(R"(","WanGateWay":")") + (wan ? "203.0.113.1" : "");
        text += std::string(R"(","Dns":")") + (wan ? "198.51.100.53" : "");
        return text + R"(","MeshInfo":"[]"})";
    }
};

TEST_F(GetHgBaseInfo, ReportsThreeRecordsInOneOrder)
{
    EXPECT_EQ(run("GET_HG_BASE_INFO"), reply(true, true, true));
    EXPECT_EQ(recording_device::called_functions(),
              (std::vector<std::string>{"devapi_get_hg_base_info", "devapi_get_lan_ip_info",
                                        "devapi_get_wan_ip_info"}));
    const auto calls = recording_device::calls();
    EXPECT_EQ(calls[0].arguments[0], std::string(856, '\0'));
    EXPECT_EQ(calls[1].arguments[0], std::string(128, '\0'));
    EXPECT_EQ(calls[2].arguments[0], std::string(163, '\0'));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetHgBaseInfo, FailsOnlyWhenNothingIsKnown)
{
    for (const int32_t failing : {-1, 1, 1000}) {
        for (int known = 0; known < 8; ++known) {
            base_result = (known & 1) != 0 ? 0 : failing;
            lan_result = (known & 2) != 0 ? 0 : failing;
            wan_result = (known & 4) != 0 ? 0 : failing;
            EXPECT_EQ(run("GET_HG_BASE_INFO"),
                      known == 0 ? R"({"Status":"1","FailReason":"get base info error!"})"
                                 : reply(base_result == 0, lan_result == 0, wan_result == 0));
        }
    }
    EXPECT_EQ(recording_device::calls().size(), 3u * 3 * 8) << "all three calls, whatever fails";
}

// ---- json_get_home_page_info -------------------------------------------------------------------

std::string home_page()
{
    const Json object = parse(R"({"Devname":"kept"})");
    json_get_home_page_info(object.get());
    return print(object.get());
}

TEST_F(GatewaySettingsTest, TheHomePageIsReportedInItsOrder)
{
    when<devapi_get_home_page_info>([](HomePageInfo *info) {
        strcpy(info->Devname, "a");
        strcpy(info->UploadSpeed, "b");
        strcpy(info->DownloadSpeed, "c");
        strcpy(info->GameSpeed, "d");
        strcpy(info->GamePort, "e");
        strcpy(info->GameBand, "f");
        strcpy(info->CpuRate, "g");
        strcpy(info->MemRate, "h");
        strcpy(info->CpuTemperature, "i");
        return 0;
    });
    EXPECT_EQ(home_page(), R"({"Devname":"kept","Status":"0","Devname":"a","UploadSpeed":"b",)"
                           R"("DownloadSpeed":"c","GameSpeed":"d","GamePort":"e","GameBand":"f",)"
                           R"("CpuRate":"g","MemRate":"h","CpuTemperature":"i"})");
    EXPECT_EQ(recording_device::calls().at(0).arguments[0], std::string(408, '\0'));
}

TEST_F(GatewaySettingsTest, TheHomePageFieldsHaveTheirWidths)
{
    when<devapi_get_home_page_info>([](HomePageInfo *info) {
        memset(info, 'x', sizeof *info);
        return 0;
    });
    const Json object = parse(home_page());
    size_t total = 0;
    for (const cJSON *item = object->child->next->next; item != nullptr; item = item->next) {
        total += strlen(item->valuestring);
    }
    EXPECT_EQ(total, 408u);
    EXPECT_EQ(strlen(cJSON_GetObjectItem(object.get(), "GameBand")->valuestring), 8u);
    EXPECT_EQ(strlen(cJSON_GetObjectItem(object.get(), "CpuTemperature")->valuestring), 64u);
}

TEST_F(GatewaySettingsTest, AHomePageThatCannotBeReadFails)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        when<devapi_get_home_page_info>([result](HomePageInfo *) { return result; });
        EXPECT_EQ(home_page(), R"({"Devname":"kept","Status":"1",)"
                               R"("FailReason":"get home page info failed"})");
        EXPECT_EQ(json_get_home_page_info(nullptr), result);
    }
}

TEST_F(GatewaySettingsTest, NoCommandLeadsToTheHomePage)
{
    const Json object = parse("{}");
    EXPECT_EQ(hg_process_json_cmd("GET_HOME_PAGE_INFO", object.get()), HG_NO_SUCH_COMMAND);
}

// ---- Logs of the settings ----------------------------------------------------------------------

TEST_F(SetLanIpInfo, TheLanSettingLogsItsValuesUncut)
{
    const std::string ip = text_of_length(40);
    run("SET_LAN_IP_INFO",
        R"({"EndIp":"d","GatewayLanIP":")" + ip + R"(","SubnetMask":"b","StartIp":"c"})");
    EXPECT_EQ(recording_host::log_lines(),
              (std::vector<LogLine>{{7, "json_set_hg_lanip_info, GatewayLanIP:" + ip +
                                            "| SubnetMask:b| StartIp:c| EndIp:d"}}));
}

TEST_F(SetLanIpInfo, TheLanSettingLogsThePppoeTextOnABadRequest)
{
    run("SET_LAN_IP_INFO", R"({"EndIp":"d"})");
    EXPECT_EQ(recording_host::log_lines(),
              (std::vector<LogLine>{{3, "json_set_hg_pppoe_info : Err, null param"}}));
}

TEST_F(SetHgDhcpInfo, TheDhcpSettingLogs)
{
    run("SET_HG_DHCP_INFO", R"({"Enable":"a switch that is too long"})");
    run("SET_HG_DHCP_INFO", R"({"Enable":1})");
    EXPECT_EQ(recording_host::log_lines(),
              (std::vector<LogLine>{{7, "json_set_hg_dhcp_info,Enable:a switch that is too long"},
                                    {3, "json_set_hg_dhcp_info : Err, null param"}}));
}

TEST_F(SetHgPppoeInfo, ThePppoeSettingLogsThePasswordInClear)
{
    run("SET_HG_PPPOE_INFO", R"({"Enable":"1","Password":"p","Account":"a"})");
    run("SET_HG_PPPOE_INFO", R"({"Enable":"1","Account":"a"})");
    EXPECT_EQ(recording_host::log_lines(),
              (std::vector<LogLine>{{7, "json_set_hg_pppoe_info, Account:a|Password:p|Enable:1"},
                                    {3, "json_set_hg_pppoe_info : Err, null param"}}));
}

TEST_F(GatewaySettingsTest, WithoutMemoryNoSettingComplainsOfItsParameters)
{
    for (const char *command : {"SET_LAN_IP_INFO", "SET_HG_DHCP_INFO", "SET_HG_PPPOE_INFO"}) {
        recording_host::reset();
        const Json object = parse(R"({"GatewayLanIP":"","SubnetMask":"","StartIp":"","EndIp":"",)"
                                  R"("Enable":"","Account":"","Password":""})");
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        hg_process_json_cmd(command, object.get());
        ASSERT_EQ(recording_host::log_lines().size(), 1u);
        EXPECT_EQ(recording_host::log_lines()[0].level, 7);
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

// ---- GET_HG_PPPOE_INFO -------------------------------------------------------------------------

void pppoe_is(const char *enable)
{
    when<devapi_get_hg_pppoe_info>([enable](PppoeInfo *info) {
        strcpy(info->Account, "smith");
        strcpy(info->Password, "secret");
        std::string(enable).copy(info->Enable, sizeof info->Enable);
        return 0;
    });
}

TEST_F(GetHgPppoeInfo, PppoeThatIsOnShowsItsAccount)
{
    pppoe_is("1");
    EXPECT_EQ(run("GET_HG_PPPOE_INFO"),
              R"({"Status":"0","Enable":"1","Account":"smith","Password":"secret"})");
    EXPECT_EQ(recording_device::calls().at(0).arguments[0], std::string(144, '\0'));
}

TEST_F(GetHgPppoeInfo, PppoeThatIsNotExactlyOneHidesItsAccount)
{
    for (const char *enable : {"", "0", "01", "1 ", "11", "2", "on", "NULL", "1111111111111111"}) {
        pppoe_is(enable);
        EXPECT_EQ(run("GET_HG_PPPOE_INFO"), R"({"Status":"0","Enable":"0"})") << enable;
    }
}

} // namespace gateway_settings_test
