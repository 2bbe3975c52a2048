// SPDX-License-Identifier: MIT
// Mesh, pairing, LEDs and the first configuration, where they differ from other commands.
#include "handler_test.h"
#include "request.h"

namespace mesh_control_test {

constexpr int32_t kResults[] = {0, -1, 1, 2, -2, 3, 4, 1000, INT32_MIN, INT32_MAX};

class SetTslinkSsid : public HandlerTest {};
class SetMeshStatus : public HandlerTest {};
class SetMeshPair : public HandlerTest {};
class SetLedStatus : public HandlerTest {};
class SetTslinkConfigStatus : public HandlerTest {};
class QueryTslinkConfigStatus : public HandlerTest {};

// ---- SET_TSLINK_SSID ---------------------------------------------------------------------------

constexpr char kSetUp[] = "SET_TSLINK_SSID";
const Request kOn = Request({}).with("Enable", R"("1")");
const Request kOff = Request({}).with("Enable", R"("0")");

TEST_F(SetTslinkSsid, SetsTheMeshUpForAnyResult)
{
    for (const int32_t result : kResults) {
        recording_device::reset();
        when<devapi_setup_mesh>([result](int32_t) { return result; });
        EXPECT_EQ(run(kSetUp, kOn.with("Other", "[]").json()), R"({"Other":[],"Status":"0"})");
        EXPECT_EQ(recording_device::calls(), (Calls{{"devapi_setup_mesh", {"1"}}}));
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetTslinkSsid, TakesTheMeshDownForAnyResult)
{
    for (const int32_t result : kResults) {
        forget();
        when<devapi_setup_mesh>([result](int32_t) { return result; });
        EXPECT_EQ(run(kSetUp, kOff.with("Other", "[]").json()), R"({"Other":[],"Status":"0"})");
        EXPECT_EQ(recording_device::calls(), (Calls{{"devapi_setup_mesh", {"0"}}}));
        EXPECT_EQ(recording_host::log_lines(), (LogLines{{7, "not set up mesh\n"}}));
    }
}

TEST_F(SetTslinkSsid, RefusesAnythingButZeroAndOne)
{
    for (const std::string &text :
         {std::string("2"), std::string(""), std::string("01"), std::string("10"),
          std::string("1 "), std::string(" 1"), std::string("-0"), std::string("on"),
          std::string("00"), text_of_length(100000)}) {
        const Request request({{"Other", "1"}, {"Enable", quoted(text)}});
        EXPECT_EQ(run(kSetUp, request.json()),
                  request.without("Enable").followed_by(failure("Enable invalid")));
    }
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// ---- Results with different replies ------------------------------------------------------------

TEST_F(SetMeshStatus, HasAReasonForABusyMesh)
{
    const std::pair<int32_t, const char *> failures[] = {{3, "MESH_BUSY_1"},
                                                         {4, "MESH_BUSY_0"},
                                                         {1, "Set mesh status failed"},
                                                         {2, "Set mesh status failed"},
                                                         {5, "Set mesh status failed"}};
    for (const auto &[result, text] : failures) {
        when<devapi_set_mesh_status>([result = result](const MeshStatus *) { return result; });
        EXPECT_EQ(run("SET_MESH_STATUS", R"({"MeshEnable":"1","MeshMode":"2"})"),
                  "{" + failure(text) + "}");
    }
}

TEST_F(SetMeshPair, HasAReasonForAMeshThatCannotPair)
{
    const std::pair<int32_t, const char *> failures[] = {{2, "WIFI_SET_NOT_SUPPORT"},
                                                         {1, "Set pair status failed"},
                                                         {3, "Set pair status failed"},
                                                         {4, "Set pair status failed"}};
    for (const auto &[result, text] : failures) {
        when<devapi_set_pair_status>([result = result](const PairStatus *) { return result; });
        EXPECT_EQ(run("SET_MESH_PAIR", R"({"Enable":"1","Time":"120"})"),
                  "{" + failure(text) + "}");
    }
}

// ---- LEDs --------------------------------------------------------------------------------------

TEST_F(SetLedStatus, PassesAValueThatIsNotAStringAsANullPointer)
{
    const Request whole(
        {{"LedCoLor", R"("blue")"}, {"LedLight", R"("80")"}, {"LedSwitch", R"("1")"}});
    const char *const keys[] = {"LedSwitch", "LedCoLor", "LedLight"}; // as the device takes them
    for (size_t at = 0; at < 3; ++at) {
        for (const char *json : {"80", "null", "true", "{}", "[]"}) {
            const Request request = whole.with(keys[at], json);
            std::vector<std::string> given = {"1", "blue", "80"};
            given[at] = "(null)";
            for (const int32_t result : {0, -1}) {
                recording_device::reset();
                when<devapi_set_sta_led>(
                    [=](const char *, const char *, const char *) { return result; });
                const Json object = parse(request.json()); // not a described request
                EXPECT_EQ(hg_process_json_cmd("SET_LED_STATUS", object.get()), 0);
                EXPECT_EQ(print(object.get()),
                          result == 0 ? R"({"Status":"0"})"
                                      : request.followed_by(failure("get scan rssi failed")));
                EXPECT_EQ(recording_device::calls(), (Calls{{"devapi_set_sta_led", given}}));
            }
        }
    }
}

// ---- SET_TSLINK_CONFIG_STATUS ------------------------------------------------------------------

constexpr char kConfigure[] = "SET_TSLINK_CONFIG_STATUS";
const Request kConfigured = Request({}).with("ConfiguerStatus", R"("1")");

TEST_F(SetTslinkConfigStatus, NotifiesTheAgentOnceOfANewState)
{
    for (const int32_t result : kResults) {
        for (const int32_t agents : kResults) {
            recording_device::reset();
            when<devapi_set_sta_tslink_config>([result](const char *) { return result; });
            when<kaa_update_profile_info>([agents] { return agents; });
            const Call set = {"devapi_set_sta_tslink_config", {"1"}};
            const Call notify = {"kaa_update_profile_info", {}};
            const bool failed = result == -1;
            EXPECT_EQ(run(kConfigure, kConfigured.json()),
                      failed ? kConfigured.followed_by(failure("set tslink config failed"))
                             : R"({"Status":"0"})");
            EXPECT_EQ(recording_device::calls(), failed ? Calls{set} : (Calls{set, notify}));
        }
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetTslinkConfigStatus, DoesNotNotifyTheAgentWithoutASetting)
{
    run(kConfigure);
    run(kConfigure, R"({"ConfiguerStatus":1})");
    EXPECT_TRUE(recording_device::calls().empty());
}

// ---- QUERY_TSLINK_CONFIG_STATUS ----------------------------------------------------------------

constexpr char kIsConfigured[] = "QUERY_TSLINK_CONFIG_STATUS";

TEST_F(QueryTslinkConfigStatus, ReportsTheStateAsZeroOrOne)
{
    const std::pair<int32_t, const char *> states[] = {{0, "0"},         {1, "1"},        {2, "1"},
                                                       {5, "1"},         {-1, "0"},       {-3, "0"},
                                                       {INT32_MIN, "0"}, {INT32_MAX, "1"}};
    for (const auto &[state, text] : states) {
        writes<devapi_get_tslink_config>(state);
        EXPECT_EQ(run(kIsConfigured, R"({"ConfiguerStatus":7})"),
                  R"({"ConfiguerStatus":7,"ConfiguerStatus":)" + quoted(text) +
                      R"(,"Status":"0"})");
    }
    EXPECT_EQ(recording_device::called_functions(),
              Names(std::size(states), "devapi_get_tslink_config"));
}

} // namespace mesh_control_test
