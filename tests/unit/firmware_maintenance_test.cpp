// SPDX-License-Identifier: MIT
// The firmware of all routers of the mesh, and the upload of the log. The update schedule follows
// the common rules only.
#include "firmware_maintenance.h"

#include "memory_sweep.h"
#include "mesh_fixture.h"

namespace firmware_maintenance_test {

const std::string kMainRouter =
    R"({"Status":"0","up_status":"0","name":"n","HWVersion":"h","FWVersion":"f","FWDATA":"d",)"
    R"("DeviceType":"t","AreaCode":"a"})";

class FirmwareMaintenanceTest : public MeshTest {
  protected:
    FirmwareMaintenanceTest() { prepare(); }

    static void prepare()
    {
        when<devapi_get_update_status_info>([](UpdateStatusInfo *status) {
            strcpy(status->Name, "n");
            strcpy(status->HWVersion, "h");
            strcpy(status->FWVersion, "f");
            strcpy(status->FWDATA, "d");
            strcpy(status->DeviceType, "t");
            strcpy(status->AreaCode, "a");
            return 0;
        });
        child_router_is(child_router());
        writes<devapi_get_iotagtd_device_mac>("3c:6a:d2:10:4f:20");
        when<mac_form_translate>([](const char *, int32_t, char *out) { strcpy(out, "3C6AD2"); });
    }

    static std::string child(std::string (*text)(const Place &) = value_of)
    {
        Request::Keys keys = {{"up_status", R"("0")"}};
        const std::pair<const char *, const char *> names[] = {
            {"DeviceID", "RouterDeviceID"}, {"name", "Name"},     {"HWVersion", "HWVersion"},
            {"FWVersion", "FWVersion"},     {"FWDATA", "FWDATA"}, {"DeviceType", "DeviceType"},
            {"AreaCode", "AreaCode"},
        };
        for (const auto &[key, place] : names) {
            keys.emplace_back(key, quoted(text(select(kChildRouterRecord, {place})[0])));
        }
        return Request(keys).json();
    }

    std::string children() { return report(json_get_child_router_update_info, "[]"); }
};

class GetUpdateStatus : public FirmwareMaintenanceTest {};
class GetHgLog : public FirmwareMaintenanceTest {};

// ---- GET_UPDATE_STATUS -------------------------------------------------------------------------

TEST_F(GetUpdateStatus, ReportsTheFirmwareOfAllRouters)
{
    child_routers_are({4, 2});
    EXPECT_EQ(run("GET_UPDATE_STATUS", R"({"First":1})"),
              R"({"First":1,"MainRouter":)" + kMainRouter + R"(,"ChildRouter":[)" + child() + "," +
                  child() + R"(],"Status":"0"})");
    EXPECT_EQ(recording_device::called_functions(),
              (Names{"devapi_get_update_status_info", "devapi_get_childrouter_list",
                     "devapi_get_childrouter_info", "devapi_get_childrouter_info"}));
    EXPECT_EQ(given_to("devapi_get_childrouter_list", 0), Names{std::string(36, '\0')});
    EXPECT_EQ(given_to("devapi_get_childrouter_info", 0), Names(2, std::string(1100, '\0')));
    EXPECT_EQ(given_to("devapi_get_childrouter_info", 1), (Names{"4", "2"}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetUpdateStatus, ListsTheChildRoutersThatAFailedCallLeft)
{
    for (const int32_t count : {0, -1, INT_MIN}) {
        child_routers_are({4}, count);
        EXPECT_EQ(run("GET_UPDATE_STATUS"),
                  R"({"MainRouter":)" + kMainRouter + R"(,"ChildRouter":[],"Status":"0"})");
    }
    when<devapi_get_childrouter_list>([](ChildRouterList *) { return 1; });
    EXPECT_EQ(run("GET_UPDATE_STATUS"),
              R"({"MainRouter":)" + kMainRouter + R"(,"ChildRouter":[],"Status":"0"})");
    EXPECT_EQ(given_to("devapi_get_childrouter_info", 0), Names());
    when<devapi_get_childrouter_list>([](ChildRouterList *list) { return spoil(list, 1); });
    const Json object = parse(run("GET_UPDATE_STATUS"));
    EXPECT_EQ(cJSON_GetArraySize(cJSON_GetObjectItem(object.get(), "ChildRouter")), 8);
    EXPECT_EQ(given_to("devapi_get_childrouter_info", 1), Names(8, "825307441"));
}

TEST_F(GetUpdateStatus, HasEightChildRoutersAtMost)
{
    for (const int32_t count : {8, 9, INT_MAX}) {
        child_routers_are({1, 2, 3, 4, 5, 6, 7, 8}, count);
        const Json array = parse(children());
        EXPECT_EQ(cJSON_GetArraySize(array.get()), 8) << count;
        EXPECT_EQ(result, 0);
    }
}

TEST_F(GetUpdateStatus, LeavesOutAChildRouterThatCannotBeRead)
{
    for (const int32_t failure : {-1, 1, 1000}) {
        for (const int32_t position : {0, 1, 2}) {
            recording_host::reset();
            child_routers_are({0, 1, 2});
            unreadable_child_router_is(position, failure);
            EXPECT_EQ(children(), "[" + child() + "," + child() + "]");
            EXPECT_EQ(result, 0);
            EXPECT_EQ(
                recording_host::log_lines(),
                (LogLines{{3, "get child_router_info err " + std::to_string(failure) + "\n"}}));
        }
    }
}

TEST_F(GetUpdateStatus, InsertsNothingWithoutAnArgument)
{
    const ChildRouterInfo router = child_router();
    EXPECT_EQ(json_insert_childrouter_update_info(nullptr, &router), -1);
    EXPECT_EQ(
        report([](cJSON *object) { return json_insert_childrouter_update_info(object, nullptr); }),
        "{}");
    EXPECT_EQ(result, -1);
    EXPECT_EQ(recording_host::log_lines(), LogLines(2, {3, "child_router_info is NULL\n"}));
}

// Without memory for the list itself the key is omitted; an incomplete list is never reported.
TEST_F(GetUpdateStatus, IsCompleteOrFails)
{
    const std::string failed = "{" + failure("Get mainrouter update status failed") + "}";
    const LogLines no_child = {{3, "create child_router_itme err\n"}};
    size_t silent = 0;
    size_t logged = 0;
    size_t without_list = 0;
    const size_t allocations = sweep_memory(
        "GET_UPDATE_STATUS", "{}",
        [] {
            prepare();
            child_routers_are({4, 2});
        },
        [&](const std::string &object, FailingMemory::Fail how) {
            if (how == FailingMemory::Fail::kLastingly) {
                EXPECT_EQ(object, "{}"); // not even the status can be added
            } else if (object != failed) {
                EXPECT_EQ(object, R"({"MainRouter":)" + kMainRouter + R"(,"Status":"0"})");
                ++without_list;
            } else if (recording_host::log_lines().empty()) {
                ++silent;
            } else {
                EXPECT_EQ(recording_host::log_lines(), no_child);
                ++logged;
            }
        });
    EXPECT_EQ(allocations, 1u + 1 + 2 * 7 + 1 + 2 * (1 + 2 * 8) + 1);
    EXPECT_EQ(silent, 1u + 1 + 2 * 7 + 1);
    EXPECT_EQ(without_list, 1u);
    EXPECT_EQ(logged, 2u * (1 + 2 * 8));
}

TEST_F(GetUpdateStatus, HasNoChildRoutersWithoutAnArray)
{
    child_routers_are({4});
    EXPECT_EQ(json_get_child_router_update_info(nullptr), -1);
}

TEST_F(GetUpdateStatus, ItsPartsReturnMinusOneWithoutMemory)
{
    const auto is_minus_one = [this](const std::string &, auto) {
        EXPECT_EQ(result, -1);
    };
    sweep_memory([this](cJSON *array) { result = json_get_child_router_update_info(array); }, "[]",
                 [] {
                     prepare();
                     child_routers_are({4, 2});
                 },
                 is_minus_one);
    const ChildRouterInfo router = child_router();
    sweep_memory([&](cJSON *item) { result = json_insert_childrouter_update_info(item, &router); },
                 "{}", prepare, is_minus_one);
}

// ---- GET_HG_LOG --------------------------------------------------------------------------------

const Request kUpload({{"First", "1"},
                       {"UploadUrl", R"("http://logs.example/a?b=c")"},
                       {"LogType", R"("syslog")"},
                       {"Last", "{}"}});

TEST_F(GetHgLog, UploadsTheLog)
{
    EXPECT_EQ(run("GET_HG_LOG", kUpload.json()),
              kUpload.without("UploadUrl").followed_by(R"("Status":"0")"));
    const std::string no_text(1, '\0');
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_iotagtd_device_mac", {no_text, "24"}},
                     {"mac_form_translate", {"3c:6a:d2:10:4f:20", "1", no_text}},
                     {"devapi_get_hg_log", {"http://logs.example/a?b=c", "syslog", "3C6AD2"}}}));
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{7, "dev_mac = 3c:6a:d2:10:4f:20 br0_mac = 3C6AD2\n"}}));
}

TEST_F(GetHgLog, ZeroesBothAddressBuffers)
{
    when<devapi_get_iotagtd_device_mac>([](char *mac, int32_t) {
        EXPECT_EQ(std::string(mac, 24), std::string(24, '\0'));
        memset(mac, 'm', 24);
        return 0;
    });
    when<mac_form_translate>([](const char *mac, int32_t, char *out) {
        EXPECT_EQ(mac, std::string(23, 'm'));
        EXPECT_EQ(std::string(out, 24), std::string(24, '\0'));
    });
    run("GET_HG_LOG", kUpload.json());
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{7, "dev_mac = " + std::string(23, 'm') + " br0_mac = \n"}}));
}

TEST_F(GetHgLog, UploadsToAnUnchangedAddress)
{
    for (const std::string &text : {std::string(), text_of_length(100000)}) {
        recording_device::reset();
        run("GET_HG_LOG",
            kUpload.with("UploadUrl", quoted(text)).with("LogType", quoted(text)).json());
        EXPECT_EQ(given_to("devapi_get_hg_log", 0), Names{text});
        EXPECT_EQ(given_to("devapi_get_hg_log", 1), Names{text});
    }
}

TEST_F(GetHgLog, SucceedsForAnyResultOfTheUpload)
{
    for (const int32_t answer : {-1, 1, 1000}) {
        when<devapi_get_hg_log>([=](const char *, const char *, const char *) { return answer; });
        EXPECT_EQ(run("GET_HG_LOG", kUpload.json()),
                  kUpload.without("UploadUrl").followed_by(R"("Status":"0")"));
    }
}

TEST_F(GetHgLog, UploadsNothingWithoutTheMacOfTheRouter)
{
    for (const int32_t answer : {-1, 1, 1000}) {
        recording_device::reset();
        writes<devapi_get_iotagtd_device_mac>("3c:6a:d2:10:4f:20", answer);
        for (const Request &request : {kUpload, Request({})}) {
            EXPECT_EQ(run("GET_HG_LOG", request.json()),
                      request.followed_by(failure("json node: get dev mac error")));
        }
        EXPECT_EQ(recording_device::called_functions(), Names(2, "devapi_get_iotagtd_device_mac"));
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

} // namespace firmware_maintenance_test
