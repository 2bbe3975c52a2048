// SPDX-License-Identifier: MIT
// The main router in the agent's own reports.
#include "router_info.h"

#include "mesh_fixture.h"

namespace router_info_test {

class RouterInfoTest : public MeshTest {
  protected:
    RouterInfoTest()
    {
        fill_places(&base, kMainRouterRecord, value_of);
        put(wan.ip, "ip of the WAN");
        put(wan.Dns, "servers");
        put(wan.WanGateWay, "gateway");
        put(wan.ConnectionState, "Connected");
        put(lan.GatewayLanIP, "ip of the LAN");
        put(status.Cpu, "cpu");
        put(status.Memory, "memory");
        answer<devapi_get_dev_status_info>(status);
        answer<devapi_get_lan_ip_info>(lan);
        answer<devapi_get_wan_ip_info>(wan);
        answer<devapi_get_hg_base_info>(base);
    }

    template <auto function, class Record> static void answer(const Record &record)
    {
        when<function>([&record](Record *info) {
            *info = record;
            return 0;
        });
    }

    std::string router() { return report(json_get_main_router_info); }

    // What every reply begins with.
    static Request beginning(const std::string &ip = "ip of the WAN",
                             std::string (*text)(const Place &) = value_of)
    {
        Request::Keys keys = {{"Status", R"("0")"}, {"NetStatus", R"("1")"}};
        append(&keys, {"DeviceType", "WiFiStatus1", "WiFiStatus2", "Name", "FWVersion"}, text);
        return Request(keys).with("ip", quoted(ip));
    }
    static Request whole(const Request &begin = beginning(),
                         std::string (*text)(const Place &) = value_of)
    {
        Request::Keys keys = begin.keys();
        append(&keys,
               {"Mac", "UpSpeed", "DownSpeed", "SSID1", "SSID2", "HWVersion", "FWDATA", "UpTime",
                "WanUptime", "ConfiguerStatus", "WanConMode", "AddressType", "cpuusage", "ramusage",
                "FireWallEnable"},
               text);
        keys.emplace_back("NetQuality", R"("0")");
        append(&keys, {"Wlan0Mac", "Wlan1Mac"}, text);
        return Request(keys);
    }
    static Request brief(const Request &begin = beginning())
    {
        return begin.with("Cpu", R"("cpu")")
            .with("Memory", R"("memory")")
            .with("LanIp", R"("ip of the LAN")")
            .with("WanGateWay", R"("gateway")")
            .with("Dns", R"("servers")");
    }

    static std::string empty(const Place &) { return ""; }

    HgBaseInfo base = {};
    WanIpInfo wan = {};
    LanIpInfo lan = {};
    DevStatusInfo status = {};

  private:
    static void append(Request::Keys *keys, const Names &names, std::string (*text)(const Place &))
    {
        for (const Place &place : select(kMainRouterRecord, names)) {
            keys->emplace_back(place.key, quoted(text(place)));
        }
    }
};

// ---- json_get_main_router_info -----------------------------------------------------------------

TEST_F(RouterInfoTest, IsWholeInMostAreas)
{
    for (const char *code : {"", "NULL", "OLV", "ARVEN", "TH_OL", "TH-OLV"}) {
        recording_host::reset();
        area_code_is(code);
        EXPECT_EQ(router(), whole().json()) << code;
        EXPECT_EQ(result, 0);
        EXPECT_EQ(recording_host::log_lines(),
                  (LogLines{{7, std::string("area_code = ") + code + "\n"}}));
    }
}

TEST_F(RouterInfoTest, IsBriefInOneArea)
{
    for (const char *code : {"TH_OLV", "th_olv", "Th_Olv", "xxTH_OLVyy"}) {
        area_code_is(code);
        EXPECT_EQ(router(), brief().json()) << code;
        EXPECT_EQ(result, 0);
    }
}

TEST_F(RouterInfoTest, MakesFiveCallsInOrder)
{
    router();
    EXPECT_EQ(
        recording_device::called_functions(),
        (Names{"devapi_get_basic_area_code", "devapi_get_dev_status_info", "devapi_get_lan_ip_info",
               "devapi_get_wan_ip_info", "devapi_get_hg_base_info"}));
    EXPECT_EQ(given_to("devapi_get_basic_area_code", 1), Names{"31"});
    EXPECT_EQ(given_to("devapi_get_dev_status_info", 0), Names{std::string(128, '\0')});
    EXPECT_EQ(given_to("devapi_get_lan_ip_info", 0), Names{std::string(128, '\0')});
    EXPECT_EQ(given_to("devapi_get_wan_ip_info", 0), Names{std::string(163, '\0')});
    EXPECT_EQ(given_to("devapi_get_hg_base_info", 0), Names{std::string(856, '\0')});
}

TEST_F(RouterInfoTest, ReadsNoFurtherThanTheAreaCode)
{
    when<devapi_get_basic_area_code>([](char *code, int32_t) {
        EXPECT_EQ(std::string(code, 32), std::string(32, '\0'));
        memset(code, 'x', 26);
        memcpy(code + 26, "TH_OLV", 6); // no room for a NUL
        return 0;
    });
    EXPECT_EQ(router(), brief().json());
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{7, "area_code = " + std::string(26, 'x') + "TH_OLV\n"}}));
}

TEST_F(RouterInfoTest, UsesTheAreaCodeThatAFailedCallLeft)
{
    when<devapi_get_basic_area_code>([](char *, int32_t) { return 1; });
    EXPECT_EQ(router(), whole().json());
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{7, "area_code = \n"}}));
    recording_host::reset();
    writes<devapi_get_basic_area_code>("TH_OLV", 1);
    EXPECT_EQ(router(), brief().json());
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{7, "area_code = TH_OLV\n"}}));
}

TEST_F(RouterInfoTest, IsConnectedInTwoStates)
{
    const std::pair<const char *, const char *> states[] = {
        {"Connected", "1"},     {"Connecting", "1"},   {"connected", "0"}, {"", "0"},
        {"Disconnected", "0"},  {"Connect", "0"},      {"1", "0"},         {"Connected ", "0"},
        {"Connecting...", "0"}, {"NotConnected", "0"}, {"NULL", "0"}};
    for (const auto &[state, code] : states) {
        put(wan.ConnectionState, state);
        EXPECT_EQ(router(), whole(beginning().with("NetStatus", quoted(code))).json()) << state;
    }
}

TEST_F(RouterInfoTest, FailsWhenNothingIsKnownAtAll)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_dev_status_info>([=](auto *info) { return spoil(info, failure); });
        when<devapi_get_lan_ip_info>([=](auto *info) { return spoil(info, failure); });
        when<devapi_get_wan_ip_info>([=](auto *info) { return spoil(info, failure); });
        when<devapi_get_hg_base_info>([=](auto *info) { return spoil(info, failure); });
        EXPECT_EQ(report(json_get_main_router_info, R"({"First":1})"),
                  R"({"First":1,)" + ::failure("get base info error!") + "}");
        EXPECT_EQ(result, -1);
    }
}

TEST_F(RouterInfoTest, SucceedsWithWhatIsKnown)
{
    const Request nothing = beginning("", empty).with("NetStatus", R"("0")");
    const auto fail_all = [] {
        when<devapi_get_dev_status_info>([](auto *info) { return spoil(info); });
        when<devapi_get_lan_ip_info>([](auto *info) { return spoil(info); });
        when<devapi_get_wan_ip_info>([](auto *info) { return spoil(info); });
        when<devapi_get_hg_base_info>([](auto *info) { return spoil(info); });
    };
    fail_all();
    answer<devapi_get_lan_ip_info>(lan);
    EXPECT_EQ(router(), whole(nothing, empty).json());
    area_code_is("TH_OLV");
    EXPECT_EQ(router(), brief(nothing)
                            .with("Cpu", R"("")")
                            .with("Memory", R"("")")
                            .with("WanGateWay", R"("")")
                            .with("Dns", R"("")")
                            .json());
    fail_all();
    answer<devapi_get_dev_status_info>(status);
    EXPECT_EQ(router(), brief(nothing)
                            .with("LanIp", R"("")")
                            .with("WanGateWay", R"("")")
                            .with("Dns", R"("")")
                            .json());
    fail_all();
    answer<devapi_get_wan_ip_info>(wan);
    EXPECT_EQ(router(), brief(beginning("ip of the WAN", empty))
                            .with("Cpu", R"("")")
                            .with("Memory", R"("")")
                            .with("LanIp", R"("")")
                            .json());
    fail_all();
    answer<devapi_get_hg_base_info>(base);
    area_code_is("");
    EXPECT_EQ(router(), whole(beginning("").with("NetStatus", R"("0")")).json());
}

TEST_F(RouterInfoTest, ReadsNoFurtherThanItsFields)
{
    fill_places(&base, kMainRouterRecord, full_text_of);
    fill(wan.ip);
    fill(wan.ConnectionState);
    const Request begin = beginning(text_of_length(34), full_text_of).with("NetStatus", R"("0")");
    EXPECT_EQ(router(), whole(begin, full_text_of).json());
    fill(wan.Dns);
    fill(wan.WanGateWay);
    fill(lan.GatewayLanIP);
    fill(status.Cpu);
    fill(status.Memory);
    area_code_is("TH_OLV");
    EXPECT_EQ(router(), brief(begin)
                            .with("Cpu", quoted(text_of_length(32)))
                            .with("Memory", quoted(text_of_length(32)))
                            .with("LanIp", quoted(text_of_length(32)))
                            .with("WanGateWay", quoted(text_of_length(32)))
                            .with("Dns", quoted(text_of_length(65)))
                            .json());
}

TEST_F(RouterInfoTest, AddsNothingWithoutAnObject)
{
    for (const auto builder : {json_get_main_router_info, json_get_main_router_baseinfo}) {
        EXPECT_EQ(report(builder, "[]"), "[]");
        EXPECT_EQ(result, -1);
        EXPECT_EQ(builder(nullptr), -1);
    }
}

} // namespace router_info_test
