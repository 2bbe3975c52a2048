// The main router in the topology report, and the report as a whole.
#include "topology_report.h"

#include "mesh_fixture.h"

namespace {

using recording_device::when;

const std::string kBridge = "3C:6A:D2:10:4F:20";

// Up to the two addresses of the radios, before which "NetQuality" stands.
const Names kRouterKeys = {"Name",
                           "Mac",
                           "NetStatus",
                           "UpSpeed",
                           "DownSpeed",
                           "WiFiStatus1",
                           "WiFiStatus2",
                           "SSID1",
                           "SSID2",
                           "ip",
                           "HWVersion",
                           "FWVersion",
                           "FWDATA",
                           "UpTime",
                           "WanUptime",
                           "DeviceType",
                           "AreaCode",
                           "ConfiguerStatus",
                           "WanConMode",
                           "AddressType",
                           "LedLight",
                           "LedSwitch",
                           "cpuusage",
                           "ramusage",
                           "QosAcceleratorEnable",
                           "QQGameAcceleratorEnable",
                           "FireWallEnable"};

class TopologyReportTest : public MeshTest {
  protected:
    TopologyReportTest()
    {
        fill_places(&base, kMainRouterRecord, value_of);
        when<devapi_get_hg_base_info>([this](HgBaseInfo *info) {
            *info = base;
            return 0;
        });
        bridge_mac_is(kBridge);
        child_routers_are({7, 3});
        when<devapi_get_router_mesh_info>([](MeshLink *link, int32_t identifier) {
            put(link->nexthopMAC, "hop " + std::to_string(identifier));
            put(link->interface, "ath0");
            put(link->dbm, "-50");
            return 0;
        });
        when<devapi_get_child_mesh_info>([](ChildMeshInfo *info, int32_t identifier) {
            put(info->Mac, "backhaul");
            put(info->ChildMac, "child " + std::to_string(identifier));
            put(info->ParentMac, kBridge);
            return 0;
        });
    }

    // The main router's own information, without its mesh and its devices.
    static Request router(std::string (*text)(const Place &) = value_of)
    {
        Request request = expected(select(kMainRouterRecord, kRouterKeys), text)
                              .with("WiFiStatus1", R"("0")")
                              .with("WiFiStatus2", R"("0")")
                              .with("NetQuality", R"("0")");
        for (const Place &place : select(kMainRouterRecord, {"Wlan0Mac", "Wlan1Mac"})) {
            request = request.with(place.key, quoted(text(place)));
        }
        return request;
    }
    static Request without_devices(const Request &request)
    {
        return request.with("MainBaseInfo", "[]");
    }

    std::string router_report() { return report(json_get_hg_base_info_copy); }

    // The value of the key in the report of the main router; empty when there is none.
    std::string value(const char *key)
    {
        const Json object = parse(router_report());
        const cJSON *item = cJSON_GetObjectItem(object.get(), key);
        return item != nullptr ? print(item) : "";
    }

    HgBaseInfo base = {};
};

const std::string kBothLinks =
    R"([{"nexthopMAC":"hop 7","dbm":"-50"},{"nexthopMAC":"hop 3","dbm":"-50"}])";

// ---- The main router's own information ---------------------------------------------------------

TEST_F(TopologyReportTest, HasTheRouterKeyByKey)
{
    EXPECT_EQ(router_report(), without_devices(router()).json());
    EXPECT_EQ(result, 0);
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_hg_base_info", "devapi_get_devicemodel", "ts_sys_mgr_get_brmac",
                     "devapi_get_mesh_type", "devapi_get_dev_tol_num"}));
    EXPECT_EQ(given_to("devapi_get_hg_base_info", 0), Names{std::string(856, '\0')});
    EXPECT_EQ(given_to("devapi_get_devicemodel", 1), Names{"31"});
}

TEST_F(TopologyReportTest, ZeroesTheBuffersOfModelAndBridge)
{
    when<devapi_get_devicemodel>([](char *model, int32_t) {
        EXPECT_EQ(std::string(model, 32), std::string(32, '\0'));
        return 0;
    });
    when<ts_sys_mgr_get_brmac>(
        [](char *mac) { EXPECT_EQ(std::string(mac, 32), std::string(32, '\0')); });
    router_report();
}

TEST_F(TopologyReportTest, ReadsNoFurtherThanTheFieldsOfTheRouter)
{
    fill_places(&base, kMainRouterRecord, brim_of);
    EXPECT_EQ(router_report(), without_devices(router(brim_of)).json());
}

TEST_F(TopologyReportTest, IsAReasonAloneWithoutTheBaseInformation)
{
    for (const int32_t failure : {-1, 1, 1000, INT_MIN}) {
        when<devapi_get_hg_base_info>([=](HgBaseInfo *info) { return spoil(info, failure); });
        EXPECT_EQ(report(json_get_hg_base_info_copy, R"({"First":1})"),
                  R"({"First":1,"FailReason":"get base info error!"})");
        EXPECT_EQ(result, 0);
    }
    EXPECT_EQ(recording_device::called_functions(), Names(4, "devapi_get_hg_base_info"));
}

TEST_F(TopologyReportTest, TellsWhetherEachRadioIsOn)
{
    const std::pair<const char *, const char *> states[] = {
        {"up", R"("1")"},   {"UP", R"("1")"}, {"uP", R"("1")"},    {"1", R"("1")"},
        {"", R"("0")"},     {"0", R"("0")"},  {"down", R"("0")"},  {"u", R"("0")"},
        {"2", R"("0")"},    {"11", R"("0")"}, {"upper", R"("0")"}, {" up", R"("0")"},
        {"NULL", R"("0")"},
    };
    for (const auto &[state, code] : states) {
        put(base.WiFiStatus1, state);
        put(base.WiFiStatus2, "off");
        EXPECT_EQ(value("WiFiStatus1"), code) << state;
        EXPECT_EQ(value("WiFiStatus2"), R"("0")") << state;
        put(base.WiFiStatus1, "off");
        put(base.WiFiStatus2, state);
        EXPECT_EQ(value("WiFiStatus1"), R"("0")") << state;
        EXPECT_EQ(value("WiFiStatus2"), code) << state;
    }
}

TEST_F(TopologyReportTest, CutsTheAreaToTheOperatorForItsModel)
{
    put(base.AreaCode, "xxARVENyy");
    for (const char *model : {"", "qx2040b", "QX2040B ", "QX2040", "QX3060"}) {
        model_is(model);
        EXPECT_EQ(value("AreaCode"), R"("xxARVENyy")") << model;
    }
    model_is("QX2040B");
    EXPECT_EQ(router_report(),
              without_devices(router().with("AreaCode", R"("ARVEN")").with("MeshInfo", kBothLinks))
                  .json());
    for (const char *code : {"xxKOLMyy", "arven", "ARVE", ""}) {
        put(base.AreaCode, code);
        EXPECT_EQ(value("AreaCode"), quoted(code));
    }
    put(base.AreaCode, std::string(27, 'x') + "ARVEN"); // ends without a NUL
    EXPECT_EQ(value("AreaCode"), R"("ARVEN")");
    put(base.AreaCode, std::string(28, 'x') + "ARVE"); // "N" would be the next field's
    put(base.AddressType, "N");
    EXPECT_EQ(value("AreaCode"), quoted(std::string(28, 'x') + "ARVE"));
}

TEST_F(TopologyReportTest, DoesNotReadAModelThatCouldNotBeRead)
{
    put(base.AreaCode, "xARVEN");
    when<devapi_get_devicemodel>([](char *model, int32_t) {
        strcpy(model, "QX2040B");
        return 1;
    });
    EXPECT_EQ(value("AreaCode"), R"("xARVEN")");
    EXPECT_EQ(value("MeshInfo"), "");
}

TEST_F(TopologyReportTest, ReadsNoFurtherThanTheModel)
{
    when<devapi_get_devicemodel>([](char *model, int32_t) {
        memset(model, 'Q', 32);
        return 0;
    });
    EXPECT_EQ(router_report(), without_devices(router()).json());
}

// ---- The mesh of the operators' model ----------------------------------------------------------

TEST_F(TopologyReportTest, ListsTheLinksOfTheOperatorsModel)
{
    put(base.AreaCode, "KOLM");
    model_is("QX2040B");
    mesh_type_is(2);
    EXPECT_EQ(router_report(),
              without_devices(router().with("AreaCode", R"("KOLM")").with("MeshInfo", kBothLinks))
                  .json());
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_hg_base_info", "devapi_get_devicemodel", "ts_sys_mgr_get_brmac",
                     "devapi_get_childrouter_list", "devapi_get_router_mesh_info",
                     "devapi_get_router_mesh_info", "devapi_get_dev_tol_num"}));
    EXPECT_EQ(given_to("devapi_get_childrouter_list", 0), Names{std::string(36, '\0')});
    EXPECT_EQ(given_to("devapi_get_router_mesh_info", 0), Names(2, std::string(72, '\0')));
    EXPECT_EQ(given_to("devapi_get_router_mesh_info", 1), (Names{"7", "3"}));
}

TEST_F(TopologyReportTest, ListsLinksInThreeAreasOnly)
{
    model_is("QX2040B");
    mesh_type_is(2);
    for (const char *code :
         {"ARVEN", "KOLM", "SEDRANO", "xxARVENyy", "xxKOLMyy", "xxSEDRANOyy", "KOLMARVEN"}) {
        put(base.AreaCode, code);
        EXPECT_EQ(value("MeshInfo"), kBothLinks) << code;
        EXPECT_EQ(value("ChildInfo"), "") << code;
    }
    for (const char *code : {"", "arven", "Kolm", "SEDRAN", "TH_OLV", "NULL"}) {
        put(base.AreaCode, code);
        EXPECT_EQ(value("MeshInfo"), "") << code;
        EXPECT_EQ(value("ChildInfo"), "") << code;
        EXPECT_EQ(value("MainBaseInfo"), "[]") << code;
    }
}

TEST_F(TopologyReportTest, LeavesOutALinkThatCannotBeRead)
{
    put(base.AreaCode, "SEDRANO");
    model_is("QX2040B");
    when<devapi_get_router_mesh_info>([](MeshLink *link, int32_t identifier) {
        fill(link->nexthopMAC);
        fill(link->dbm);
        return identifier == 7 ? 1 : 0;
    });
    EXPECT_EQ(value("MeshInfo"), R"([{"nexthopMAC":")" + text_of_length(32) + R"(","dbm":")" +
                                     text_of_length(16) + R"("}])");
    EXPECT_EQ(recording_host::log_lines(), (LogLines{{7, "get total limit = 0\n"}}));
}

TEST_F(TopologyReportTest, HasAnEmptyMeshWithoutAListOfChildRouters)
{
    put(base.AreaCode, "ARVEN");
    for (const char *model : {"QX2040B", "QX3060"}) {
        model_is(model);
        mesh_type_is(2);
        const char *key = model == std::string("QX2040B") ? "MeshInfo" : "ChildInfo";
        child_routers_are({});
        EXPECT_EQ(value(key), "[]");
        child_routers_are({7, 3}, -1);
        EXPECT_EQ(value(key), "[]");
        when<devapi_get_childrouter_list>([](ChildRouterList *list) { return spoil(list); });
        EXPECT_EQ(value(key), "[]");
        EXPECT_EQ(value("MainBaseInfo"), "[]");
        for (const int32_t count : {8, 9, INT_MAX}) {
            child_routers_are({1, 2, 3, 4, 5, 6, 7, 8}, count);
            const Json list = parse(value(key));
            EXPECT_EQ(cJSON_GetArraySize(list.get()), 8) << count;
        }
    }
}

// ---- The mesh of any other model ---------------------------------------------------------------

TEST_F(TopologyReportTest, ListsTheChildrenOfAnyOtherModel)
{
    put(base.AreaCode, "ARVEN");
    mesh_type_is(2);
    for (const char *model : {"QX3060", "qx2040b", ""}) {
        model_is(model);
        EXPECT_EQ(value("ChildInfo"), R"([{"childMac":"child 7"},{"childMac":"child 3"}])");
        EXPECT_EQ(value("MeshInfo"), "");
    }
}

TEST_F(TopologyReportTest, AsksForTheChildrenInOrder)
{
    mesh_type_is(2);
    router_report();
    EXPECT_EQ(
        recording_device::called_functions(),
        (Names{"devapi_get_hg_base_info", "devapi_get_devicemodel", "ts_sys_mgr_get_brmac",
               "devapi_get_mesh_type", "devapi_get_childrouter_list", "devapi_get_child_mesh_info",
               "devapi_get_child_mesh_info", "devapi_get_dev_tol_num"}));
    EXPECT_EQ(given_to("devapi_get_child_mesh_info", 0), Names(2, std::string(200, '\0')));
    EXPECT_EQ(given_to("devapi_get_child_mesh_info", 1), (Names{"7", "3"}));
}

TEST_F(TopologyReportTest, ListsChildrenInMeshesOfTypeTwoOnly)
{
    for (const int32_t type : {-2, -1, 0, 1, 3, INT_MAX}) {
        mesh_type_is(type);
        EXPECT_EQ(value("ChildInfo"), "") << type;
        EXPECT_EQ(value("MainBaseInfo"), "[]") << type;
    }
}

TEST_F(TopologyReportTest, ListsTheChildrenThatHangFromTheMainRouter)
{
    mesh_type_is(2);
    const std::pair<std::string, std::string> bridges[] = {
        {kBridge, "[{\"childMac\":\"" + text_of_length(32) + "\"}]"},
        {"3c:6a:d2:10:4f:20", "[]"},
        {"3C:6A:D2:10:4F:2", "[]"},
        {kBridge + "0", "[]"},
        {"", "[]"},
    };
    for (const auto &[bridge, children] : bridges) {
        bridge_mac_is(bridge);
        when<devapi_get_child_mesh_info>([](ChildMeshInfo *info, int32_t identifier) {
            fill(info->ChildMac);
            put(info->ParentMac, kBridge);
            return identifier == 7 ? 1 : 0;
        });
        EXPECT_EQ(value("ChildInfo"), children) << bridge;
    }
    when<ts_sys_mgr_get_brmac>([](char *mac) { text_of_length(32).copy(mac, 32); });
    when<devapi_get_child_mesh_info>([](ChildMeshInfo *info, int32_t) {
        fill(info->ParentMac);
        return 0;
    });
    EXPECT_EQ(value("ChildInfo"), R"([{"childMac":""},{"childMac":""}])");
}

// ---- The report --------------------------------------------------------------------------------

TEST_F(TopologyReportTest, IsRouterChildRoutersAndStatus)
{
    child_routers_are({});
    EXPECT_EQ(run("GET_TSLINK_TOPOLOGY_INFO", R"({"First":1,"Mac":"x"})"),
              R"({"First":1,"Mac":"x","MainRouter":)" + without_devices(router()).json() +
                  R"(,"ChildRouter":[],"Status":"0"})");
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_hg_base_info", "devapi_get_devicemodel", "ts_sys_mgr_get_brmac",
                     "devapi_get_mesh_type", "devapi_get_dev_tol_num",
                     "devapi_get_childrouter_list", "devapi_call_tslink_set_topo_speed"}));
}

TEST_F(TopologyReportTest, SucceedsWhateverTheRouterSays)
{
    child_routers_are({});
    when<devapi_get_hg_base_info>([](HgBaseInfo *info) { return spoil(info); });
    EXPECT_EQ(run("GET_TSLINK_TOPOLOGY_INFO"),
              R"({"MainRouter":{"FailReason":"get base info error!"},"ChildRouter":[],)"
              R"("Status":"0"})");
}

TEST_F(TopologyReportTest, OfWhatIsNoObjectAddsNothing)
{
    EXPECT_EQ(json_get_hg_base_info_copy(nullptr), -1);
    EXPECT_EQ(hg_process_json_cmd("GET_TSLINK_TOPOLOGY_INFO", nullptr), 0);
    EXPECT_EQ(report(json_get_hg_base_info_copy, "[]"), "[]");
    const Json array = parse("[]");
    EXPECT_EQ(hg_process_json_cmd("GET_TSLINK_TOPOLOGY_INFO", array.get()), 0);
    EXPECT_EQ(print(array.get()), "[]");
}

} // namespace
