// SPDX-License-Identifier: MIT
// One child router from the topology's list of relations.
#include "memory_sweep.h"
#include "router_relations_fixture.h"

namespace router_relations_router_test {

class RouterRelationsRouterTest : public RelationsTest {
  protected:
    static int32_t append_router(cJSON *array)
    {
        const TopoNode node = {3, {8, 9}, nullptr};
        return json_get_child_router_info(&node, array);
    }
    std::string router_report() { return report(append_router, "[]"); }
};

TEST_F(RouterRelationsRouterTest, HaveASeparateReport)
{
    EXPECT_EQ(router_report(), "[" + router(both_devices()).json() + "]");
    EXPECT_EQ(result, 0);
    const auto first = recording_device::calls()[0];
    EXPECT_EQ(first.function, "devapi_get_node_dev_info");
    EXPECT_EQ(recording_device::record<TopoNode>(first).level, 3);
    EXPECT_EQ(first.arguments[1], std::string(192, '\0'));
    EXPECT_EQ(given_to("devapi_get_viewmac_by_mac", 0), (Names{"node Mac", "ParentMac"}));
    EXPECT_EQ(given_to("devapi_get_basic_area_code", 1), (Names{"31", "31"}));
    EXPECT_EQ(given_to("devapi_get_hostindex_by_mac", 0), (Names{"node Mac", "first", "second"}));
    EXPECT_EQ(given_to("devapi_get_childrouter_info", 0), Names{std::string(1100, '\0')});
    EXPECT_EQ(given_to("devapi_get_childrouter_info", 1), Names{"7"});
    for (const Call &call : recording_device::calls()) {
        if (call.function == "devapi_get_node_baseinfo") {
            EXPECT_EQ(recording_device::record<TopoNode>(call).level, 3);
        }
    }
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{7, "child router mac = node Mac\n"}, {7, "get host_index = 7\n"}}));
}

TEST_F(RouterRelationsRouterTest, AreLeftOutWhenTheNodeCannotBeRead)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        recording_device::reset();
        when<devapi_get_node_dev_info>(
            [=](const TopoNode *, NodeDevInfo *info) { return spoil(info, failure); });
        EXPECT_EQ(router_report(), "[]");
        EXPECT_EQ(result, failure);
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_node_dev_info"});
    }
}

TEST_F(RouterRelationsRouterTest, HaveTheirRawMacsWithoutOthersToDisplay)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_viewmac_by_mac>([=](const char *, char *view) {
            EXPECT_EQ(std::string(view, 32), std::string(32, '\0'));
            strcpy(view, "rubbish");
            return failure;
        });
        EXPECT_EQ(router_report(), "[" +
                                       router(both_devices())
                                           .with("Mac", R"("node Mac")")
                                           .with("ParentMacAddress", R"("ParentMac")")
                                           .json() +
                                       "]");
    }
}

TEST_F(RouterRelationsRouterTest, ReportNoFurtherThanTheirFields)
{
    NodeDevInfo node = {};
    fill_places(&node, kNodeRecord, full_text_of);
    node_is(node);
    ChildRouterInfo record = {};
    fill_places(&record, kChildRouterRecord, full_text_of);
    child_router_is(record);
    when<devapi_get_viewmac_by_mac>([](const char *, char *view) {
        text_of_length(32).copy(view, 32);
        return 0;
    });
    attached_are({});
    Request expected = router("[]");
    for (const Place &place : kNodeRecord) {
        expected = expected.with(place.key, quoted(full_text_of(place)));
    }
    expected = expected.with("Mac", quoted(text_of_length(32)));
    expected = expected.with("ParentMacAddress", quoted(text_of_length(32)));
    for (const Place &place :
         select(kChildRouterRecord, {"RouterDeviceID", "Name", "NetStatus", "ChildRouterAccessType",
                                     "UpSpeed", "DownSpeed", "FWDATA", "HWVersion", "AreaCode",
                                     "UpTime", "DeviceType", "Wlan0Mac", "Wlan1Mac"})) {
        expected = expected.with(place.key, quoted(full_text_of(place)));
    }
    EXPECT_EQ(router_report(), "[" + expected.json() + "]");
    EXPECT_EQ(given_to("devapi_get_viewmac_by_mac", 0),
              (Names{text_of_length(64), text_of_length(32)}));
    EXPECT_EQ(given_to("devapi_get_hostindex_by_mac", 0), Names{text_of_length(64)});
    EXPECT_EQ(recording_host::log_lines()[0].text,
              "child router mac = " + text_of_length(64) + "\n");
}

TEST_F(RouterRelationsRouterTest, HaveOnlyTheKeysOfTheTopologyInOneArea)
{
    for (const char *code : {"OLV", "olv", "th_olv", "xxOlvyy"}) {
        recording_host::reset();
        area_code_is(code);
        const bool brief = std::string(code) == "th_olv";
        const std::string devices =
            brief ? "[" + in_brief("first").json() + "," + in_brief("second").json() + "]"
                  : both_devices();
        EXPECT_EQ(router_report(),
                  "[" + known_to_the_topology().with("ChildBaseInfo", devices).json() + "]")
            << code;
        EXPECT_TRUE(recording_host::log_lines().empty());
    }
    EXPECT_EQ(given_to("devapi_get_childrouter_info", 0), Names());
    EXPECT_EQ(given_to("devapi_get_mesh_type", 0), Names());
    for (const char *code : {"", "OL", "ARVEN"}) {
        area_code_is(code);
        EXPECT_EQ(router_report(), "[" + router(both_devices()).json() + "]") << code;
    }
}

TEST_F(RouterRelationsRouterTest, AreLeftOutIfTheyAreNotAnAttachedDevice)
{
    for (const int32_t answer : {0, -1, 2, 1000}) {
        forget();
        prepare();
        index_is(7, answer);
        EXPECT_EQ(router_report(), "[]");
        EXPECT_EQ(result, -1);
        EXPECT_EQ(recording_host::log_lines(), (LogLines{{7, "child router mac = node Mac\n"},
                                                         {3, "mac:node Mac not found in host\n"}}));
        EXPECT_EQ(recording_device::called_functions().back(), "devapi_get_hostindex_by_mac");
    }
}

TEST_F(RouterRelationsRouterTest, AreReportedFromTheRecordThatAFailedCallLeft)
{
    attached_are({});
    bridge_mac_is("3C:6A:D2:10:4F:20");
    const Places places =
        select(kChildRouterRecord, {"RouterDeviceID", "Name", "NetStatus", "ChildRouterAccessType",
                                    "UpSpeed", "DownSpeed", "FWDATA", "HWVersion", "AreaCode",
                                    "UpTime", "DeviceType", "Wlan0Mac", "Wlan1Mac"});
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_childrouter_info>([=](ChildRouterInfo *, int32_t) { return failure; });
        Request empty = router("[]");
        Request full = router("[]");
        for (const Place &place : places) {
            empty = empty.with(place.key, R"("")");
            full = full.with(place.key, quoted(std::string(place.width, '1')));
        }
        EXPECT_EQ(router_report(),
                  "[" + empty.with("ParentMacAddress", R"("view of ")").json() + "]");
        when<devapi_get_childrouter_info>(
            [=](ChildRouterInfo *info, int32_t) { return spoil(info, failure); });
        const std::string parent = "view of " + std::string(VIEW_MAC_SIZE - 9, '1');
        EXPECT_EQ(router_report(),
                  "[" + full.with("ParentMacAddress", quoted(parent)).json() + "]");
    }
}

TEST_F(RouterRelationsRouterTest, HaveVersionAndAddressOfTheirRecordIfTheTopologyHasNone)
{
    attached_are({});
    for (const char *unknown : {"", "NULL", "null", "NuLl"}) {
        NodeDevInfo node = {};
        fill_places(&node, kNodeRecord, node_value_of);
        put(node.FWVersion, unknown);
        node_is(node);
        const Request one = router("[]");
        const auto at_the_end = [](Request request, const Names &keys) {
            Request::Keys list = request.keys();
            const Request::Keys end(list.end() - 2, list.end());
            list.erase(list.end() - 2, list.end());
            for (const std::string &key : keys) {
                std::erase_if(list, [&](const auto &pair) { return pair.first == key; });
                list.emplace_back(key, quoted(key));
            }
            list.insert(list.end(), end.begin(), end.end());
            return "[" + Request(list).json() + "]";
        };
        EXPECT_EQ(router_report(), at_the_end(one, {"FWVersion"})) << unknown;
        put(node.ip, unknown);
        node_is(node);
        EXPECT_EQ(router_report(), at_the_end(one, {"FWVersion", "ip"})) << unknown;
        put(node.FWVersion, "node FWVersion");
        node_is(node);
        EXPECT_EQ(router_report(), at_the_end(one, {"ip"})) << unknown;
        for (const char *known : {"NUL", "NULLs", " "}) {
            put(node.FWVersion, known);
            put(node.ip, known);
            node_is(node);
            EXPECT_EQ(router_report(),
                      "[" + one.with("FWVersion", quoted(known)).with("ip", quoted(known)).json() +
                          "]");
        }
    }
}

TEST_F(RouterRelationsRouterTest, HaveTheMainRouterAsParentByItsExactMac)
{
    attached_are({});
    ChildRouterInfo record = child_router();
    put(record.ParentMac, "3C:6A:D2:10:4F:20");
    child_router_is(record);
    when<devapi_get_iotagtd_device_mac>([](char *mac, int32_t) {
        EXPECT_EQ(std::string(mac, 32), std::string(32, '\0'));
        strcpy(mac, "our own");
        return 0;
    });
    when<ts_sys_mgr_get_brmac>([](char *mac) {
        EXPECT_EQ(std::string(mac, 32), std::string(32, '\0'));
        strcpy(mac, "3C:6A:D2:10:4F:20");
    });
    EXPECT_EQ(router_report(),
              "[" + router("[]").with("ParentMacAddress", R"("our own")").json() + "]");
    EXPECT_EQ(given_to("devapi_get_iotagtd_device_mac", 1), Names{"32"});
    EXPECT_EQ(given_to("devapi_get_viewmac_by_mac", 0), Names{"node Mac"});
    for (const char *bridge : {"3c:6a:d2:10:4f:20", "3C:6A:D2:10:4F:2", ""}) {
        bridge_mac_is(bridge);
        EXPECT_EQ(
            router_report(),
            "[" + router("[]").with("ParentMacAddress", R"("view of 3C:6A:D2:10:4F:20")").json() +
                "]");
    }
    bridge_mac_is("3C:6A:D2:10:4F:20");
    when<devapi_get_iotagtd_device_mac>([](char *mac, int32_t) {
        text_of_length(32).copy(mac, 32);
        return 0;
    });
    EXPECT_EQ(router_report(),
              "[" + router("[]").with("ParentMacAddress", quoted(text_of_length(32))).json() + "]");
    writes<devapi_get_iotagtd_device_mac>("left behind", 1);
    EXPECT_EQ(router_report(),
              "[" + router("[]").with("ParentMacAddress", R"("left behind")").json() + "]");
    when<devapi_get_iotagtd_device_mac>([](char *, int32_t) { return -1; });
    EXPECT_EQ(router_report(), "[" + router("[]").with("ParentMacAddress", R"("")").json() + "]");
}

// Values unknown to the topology are replaced, each in separately allocated memory.
TEST_F(RouterRelationsRouterTest, AreLeftOutWithoutMemory)
{
    const auto unknown_to_the_topology = [] {
        prepare();
        node_is({});
        attached_are({});
    };
    sweep_memory([](cJSON *object) { json_get_topo_router_info(object); }, "{}",
                 unknown_to_the_topology,
                 [](const std::string &object, auto) { EXPECT_EQ(object, "{}"); });
    const auto in_a_mesh = [=] {
        unknown_to_the_topology();
        mesh_type_is(2);
    };
    sweep_memory([this](cJSON *array) { result = append_router(array); }, "[]", in_a_mesh,
                 [this](const std::string &array, auto) {
                     EXPECT_EQ(array, "[]");
                     EXPECT_EQ(result, -1);
                     EXPECT_EQ(recording_host::log_lines().back(),
                               (LogLine{3, "create childinfo_json err"}));
                 });
}

TEST_F(RouterRelationsRouterTest, AreNoneWithoutAnArgument)
{
    EXPECT_EQ(report([](cJSON *array) { return json_get_child_router_info(nullptr, array); }, "[]"),
              "[]");
    EXPECT_EQ(result, -1);
    const TopoNode node = {};
    EXPECT_EQ(json_get_child_router_info(&node, nullptr), -1);
    EXPECT_TRUE(recording_device::calls().empty());
}

} // namespace router_relations_router_test
