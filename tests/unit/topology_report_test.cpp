// The main router's own information in the topology report, and the report as a whole.
#include "topology_report_fixture.h"

namespace topology_report_test {

using recording_device::when;

class TopologyReportTest : public TopologyReport {};

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

TEST_F(TopologyReportTest, GoesByTheModelAsTheDeviceLeavesIt)
{
    put(base.AreaCode, "xARVEN");
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_devicemodel>([=](char *model, int32_t) {
            strcpy(model, "QX2040B");
            return failure;
        });
        EXPECT_EQ(value("AreaCode"), R"("ARVEN")");
        EXPECT_NE(value("MeshInfo"), "");
        when<devapi_get_devicemodel>([=](char *, int32_t) { return failure; });
        EXPECT_EQ(value("AreaCode"), R"("xARVEN")");
        EXPECT_EQ(value("MeshInfo"), "");
    }
}

TEST_F(TopologyReportTest, ReadsNoFurtherThanTheModel)
{
    when<devapi_get_devicemodel>([](char *model, int32_t) {
        memset(model, 'Q', 32);
        return 0;
    });
    EXPECT_EQ(router_report(), without_devices(router()).json());
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
    EXPECT_EQ(result, -1);
    const Json array = parse("[]");
    EXPECT_EQ(hg_process_json_cmd("GET_TSLINK_TOPOLOGY_INFO", array.get()), 0);
    EXPECT_EQ(print(array.get()), "[]");
}

} // namespace topology_report_test
