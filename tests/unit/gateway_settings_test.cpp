// SPDX-License-Identifier: MIT
#include "failing_memory.h"
#include "record_layouts.h"

#include <cstring>

namespace gateway_settings_test {

class GetHgPppoeInfo : public HandlerTest {};
class HomePageTest : public HandlerTest {};

// ---- GET_HG_BASE_INFO --------------------------------------------------------------------------

// In the order of the reply; the last three are reported under other keys than elsewhere.
const Places kBase = [] {
    Places places =
        select(kMainRouterRecord,
               {"Name",        "Mac",      "NetStatus",  "UpSpeed",  "DownSpeed", "WiFiStatus1",
                "WiFiStatus2", "SSID1",    "SSID2",      "ip",       "HWVersion", "FWVersion",
                "FWDATA",      "UpTime",   "DeviceType", "AreaCode", "Wlan0Mac",  "Wlan1Mac",
                "WanConMode",  "cpuusage", "ramusage"});
    const char *const keys[] = {"WanLinkMode", "Cpu", "Memory"};
    for (size_t at = 0; at < 3; ++at) {
        places[places.size() - 3 + at].key = keys[at];
    }
    return places;
}();

// Its key, without a NUL if it is as wide as the field.
std::string key_of(const Place &place)
{
    return std::string(place.key).substr(0, place.width);
}

int32_t base_result;
int32_t lan_result;
int32_t wan_result;

class GetHgBaseInfo : public HandlerTest {
  protected:
    GetHgBaseInfo()
    {
        base_result = lan_result = wan_result = 0;
        // Each field contains its key; everything else in the records is garbage.
        when<devapi_get_hg_base_info>([](HgBaseInfo *info) {
            memset(info, '?', sizeof *info);
            fill_places(info, kBase, key_of);
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
        Request reply = Request({}).with("Status", R"("0")");
        for (const Place &place : kBase) {
            reply = reply.with(place.key, quoted(base ? key_of(place) : ""));
        }
        return reply.with("LanIp", quoted(lan ? "192.168.1.1" : ""))
            .with("WanGateWay", quoted(wan ? "203.0.113.1" : ""))
            .with("Dns", quoted(wan ? "198.51.100.53" : ""))
            .with("MeshInfo", R"("[]")")
            .json();
    }
};

TEST_F(GetHgBaseInfo, ReportsThreeRecordsInOneOrder)
{
    EXPECT_EQ(run("GET_HG_BASE_INFO"), reply(true, true, true));
    EXPECT_EQ(
        recording_device::called_functions(),
        (Names{"devapi_get_hg_base_info", "devapi_get_lan_ip_info", "devapi_get_wan_ip_info"}));
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
    EXPECT_EQ(recording_device::calls().size(), 3u * 3 * 8) << "all three calls, even if one fails";
}

// ---- json_get_home_page_info -------------------------------------------------------------------

std::string home_page()
{
    const Json object = parse(R"({"Devname":"kept"})");
    json_get_home_page_info(object.get());
    return print(object.get());
}

TEST_F(HomePageTest, IsReportedInItsOrder)
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

TEST_F(HomePageTest, HasFieldsOfTheirWidths)
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

TEST_F(HomePageTest, FailsIfItCannotBeRead)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        when<devapi_get_home_page_info>([result](HomePageInfo *) { return result; });
        EXPECT_EQ(home_page(), R"({"Devname":"kept","Status":"1",)"
                               R"("FailReason":"get home page info failed"})");
        EXPECT_EQ(json_get_home_page_info(nullptr), result);
    }
}

TEST_F(HomePageTest, HasNoCommand)
{
    const Json object = parse("{}");
    EXPECT_EQ(hg_process_json_cmd("GET_HOME_PAGE_INFO", object.get()), HG_NO_SUCH_COMMAND);
}

// ---- Logs of the settings ----------------------------------------------------------------------

class GatewaySetting : public HandlerTest {
  protected:
    // Without memory for the reply the setting logs its values, but no error in the parameters, and
    // the device is not called.
    static void expect_no_parameter_error_without_memory(const char *command)
    {
        forget();
        const Json object = parse(R"({"GatewayLanIP":"","SubnetMask":"","StartIp":"","EndIp":"",)"
                                  R"("Enable":"","Account":"","Password":""})");
        const FailingMemory memory(0, FailingMemory::Fail::kOnce);
        hg_process_json_cmd(command, object.get());
        ASSERT_EQ(recording_host::log_lines().size(), 1u);
        EXPECT_EQ(recording_host::log_lines()[0].level, 7);
        EXPECT_TRUE(recording_device::calls().empty());
    }
};

class SetLanIpInfo : public GatewaySetting {};
class SetHgDhcpInfo : public GatewaySetting {};
class SetHgPppoeInfo : public GatewaySetting {};

TEST_F(SetLanIpInfo, LogsItsValuesUncut)
{
    const std::string ip = text_of_length(40);
    run("SET_LAN_IP_INFO",
        R"({"EndIp":"d","GatewayLanIP":")" + ip + R"(","SubnetMask":"b","StartIp":"c"})");
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{7, "json_set_hg_lanip_info, GatewayLanIP:" + ip +
                                "| SubnetMask:b| StartIp:c| EndIp:d"}}));
    expect_no_parameter_error_without_memory("SET_LAN_IP_INFO");
}

TEST_F(SetLanIpInfo, LogsThePppoeTextForABadRequest)
{
    run("SET_LAN_IP_INFO", R"({"EndIp":"d"})");
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{3, "json_set_hg_pppoe_info : Err, null param"}}));
}

TEST_F(SetHgDhcpInfo, LogsItsValueUncut)
{
    run("SET_HG_DHCP_INFO", R"({"Enable":"a switch that is too long"})");
    run("SET_HG_DHCP_INFO", R"({"Enable":1})");
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{7, "json_set_hg_dhcp_info,Enable:a switch that is too long"},
                        {3, "json_set_hg_dhcp_info : Err, null param"}}));
    expect_no_parameter_error_without_memory("SET_HG_DHCP_INFO");
}

TEST_F(SetHgPppoeInfo, LogsThePasswordInClear)
{
    run("SET_HG_PPPOE_INFO", R"({"Enable":"1","Password":"p","Account":"a"})");
    run("SET_HG_PPPOE_INFO", R"({"Enable":"1","Account":"a"})");
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{7, "json_set_hg_pppoe_info, Account:a|Password:p|Enable:1"},
                        {3, "json_set_hg_pppoe_info : Err, null param"}}));
    expect_no_parameter_error_without_memory("SET_HG_PPPOE_INFO");
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

TEST_F(GetHgPppoeInfo, ReportsTheAccountIfItIsOn)
{
    pppoe_is("1");
    EXPECT_EQ(run("GET_HG_PPPOE_INFO"),
              R"({"Status":"0","Enable":"1","Account":"smith","Password":"secret"})");
    EXPECT_EQ(recording_device::calls().at(0).arguments[0], std::string(144, '\0'));
}

TEST_F(GetHgPppoeInfo, HidesTheAccountUnlessItIsExactlyOne)
{
    for (const char *enable : {"", "0", "01", "1 ", "11", "2", "on", "NULL", "1111111111111111"}) {
        pppoe_is(enable);
        EXPECT_EQ(run("GET_HG_PPPOE_INFO"), R"({"Status":"0","Enable":"0"})") << enable;
    }
}

} // namespace gateway_settings_test
