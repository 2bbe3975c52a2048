// SPDX-License-Identifier: MIT
// What the mesh reports have in common.
#include "mesh_report.h"

#include "failing_memory.h"
#include "mesh_fixture.h"

namespace mesh_report_test {

using namespace smart_router;

class MeshReportTest : public MeshTest {
  protected:
    static std::string elapsed_since(const std::string &start, int32_t hours_ahead = 0)
    {
        AdBaseInfo device = {};
        put(device.AccessTime, start);
        put_elapsed(&device, hours_ahead);
        return device.AccessTime;
    }
};

TEST_F(MeshReportTest, HasTheModelThatAnyCallLeft)
{
    Model model;
    memset(model, '?', sizeof model);
    model_is("QX2040B");
    read_model(model);
    EXPECT_EQ(std::string(model, sizeof model), "QX2040B" + std::string(25, '\0'));
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_devicemodel>([=](char *out, int32_t) { return spoil(out, failure, 32); });
        read_model(model);
        EXPECT_EQ(std::string(model, sizeof model), std::string(32, '1'));
        when<devapi_get_devicemodel>([=](char *, int32_t) { return failure; });
        read_model(model);
        EXPECT_EQ(std::string(model, sizeof model), std::string(32, '\0'));
    }
}

TEST_F(MeshReportTest, PassesTheSizeForTheAreaCode)
{
    AreaCode code;
    memset(code, '?', sizeof code);
    area_code_is("KOLM");
    read_area_code(code);
    EXPECT_EQ(std::string(code, sizeof code), "KOLM" + std::string(28, '\0'));
    read_area_code(code, sizeof code);
    EXPECT_EQ(given_to("devapi_get_basic_area_code", 1), (Names{"31", "32"}));
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_basic_area_code>(
            [=](char *out, int32_t) { return spoil(out, failure, 32); });
        read_area_code(code);
        EXPECT_EQ(std::string(code, sizeof code), std::string(32, '1'));
        when<devapi_get_basic_area_code>([=](char *, int32_t) { return failure; });
        read_area_code(code);
        EXPECT_EQ(std::string(code, sizeof code), std::string(32, '\0'));
    }
}

TEST_F(MeshReportTest, HasAnEmptyBridgeMacUnlessTheHostKnowsIt)
{
    BridgeMac mac;
    memset(mac, '?', sizeof mac);
    read_bridge_mac(mac);
    EXPECT_EQ(std::string(mac, sizeof mac), std::string(32, '\0'));
    bridge_mac_is("bridge");
    read_bridge_mac(mac);
    EXPECT_STREQ(mac, "bridge");
}

TEST_F(MeshReportTest, HasTheZoneThatAnyCallLeft)
{
    EXPECT_EQ(zone_hours(), 0);
    for (const int32_t hours : {8, -11, 0, INT_MAX, INT_MIN}) {
        zone_is(hours);
        EXPECT_EQ(zone_hours(), hours);
    }
    for (const int32_t failure : {-1, 1, 1000}) {
        when<devapi_get_local_timezone>([=](int32_t *hours) {
            EXPECT_EQ(*hours, 0);
            *hours = 8;
            return failure;
        });
        EXPECT_EQ(zone_hours(), 8);
        when<devapi_get_local_timezone>([=](int32_t *) { return failure; });
        EXPECT_EQ(zone_hours(), 0);
    }
}

TEST_F(MeshReportTest, HasTheElapsedTime)
{
    EXPECT_EQ(elapsed_since("1767225500"), "100");
    EXPECT_EQ(elapsed_since("1767225500", 8), "-28700");
    EXPECT_EQ(elapsed_since("1767225500", -8), "28900");
    EXPECT_EQ(elapsed_since("1767225700"), "-100");
    EXPECT_EQ(elapsed_since("NULL"), "1767225600");
    EXPECT_EQ(elapsed_since("0x10"), "1767225600");
    EXPECT_EQ(elapsed_since("+1767225600"), "0");
    EXPECT_EQ(elapsed_since("1.7e9"), "1767225599");
    EXPECT_EQ(elapsed_since("-380258049"), "-2147483647"); // does not fit 32 bits any more
    EXPECT_EQ(elapsed_since("-380258047"), "2147483647");
}

TEST_F(MeshReportTest, SurvivesAnyTime)
{
    for (const char *start :
         {"9223372036854775807", "-9223372036854775808", "99999999999999999999999999999999",
          "-9999999999999999999999999999999"}) {
        for (const int32_t hours : {0, INT_MAX, INT_MIN}) {
            const std::string text = elapsed_since(start, hours);
            EXPECT_EQ(std::to_string(std::stoi(text)), text);
        }
    }
    clock.fail_time();
    EXPECT_EQ(elapsed_since("0"), "-1");
}

TEST_F(MeshReportTest, ReadsTheTimeNoFurtherThanItsField)
{
    AdBaseInfo device = attached_device();
    put(device.AccessTime, std::string(22, '0') + std::to_string(kNow - 100));
    put(device.UpSpeed, "7");
    put_elapsed(&device, 0);
    EXPECT_STREQ(device.AccessTime, "100");
}

TEST_F(MeshReportTest, ReplacesTheTimeAlone)
{
    AdBaseInfo device = attached_device();
    fill(device.AccessTime);
    AdBaseInfo expected = device;
    put_elapsed(&device, 0);
    EXPECT_STREQ(device.AccessTime, "1767225600");
    put(expected.AccessTime, "");
    put(device.AccessTime, "");
    EXPECT_EQ(memcmp(&device, &expected, sizeof device), 0);
}

TEST_F(MeshReportTest, CompletesAStationWithTheFixedTexts)
{
    ReportedDevice station = {};
    station.info = attached_device();
    fill(station.DevModle);
    complete_station(&station);
    EXPECT_STREQ(station.DevModle, "Tessaline");
    EXPECT_STREQ(station.info.OS, "3");
}

TEST_F(MeshReportTest, WantsLinksInThreeAreas)
{
    for (const char *text : {"ARVEN", "KOLM", "SEDRANO", "xxARVENyy", "KOLMARVEN", "-SEDRANO"}) {
        AreaCode code;
        put(code, text);
        EXPECT_TRUE(wants_mesh_links(code)) << text;
    }
    for (const char *text :
         {"", "ARVE", "ARV EN", "arven", "KOL", "kolm", "SEDRAN", "Sedrano", "TH_OLV"}) {
        AreaCode code;
        put(code, text);
        EXPECT_FALSE(wants_mesh_links(code)) << text;
    }
}

TEST_F(MeshReportTest, ListsLinksWholeOrNotAtAll)
{
    ChildRouterInfo router = {};
    router.link_count = 2;
    for (const auto how : {FailingMemory::Fail::kOnce, FailingMemory::Fail::kLastingly}) {
        for (size_t first = 0; first < 1 + 2 * (1 + 2 * 3); ++first) {
            recording_host::reset();
            const FailingMemory memory(first, how);
            EXPECT_EQ(mesh_links_of(router), nullptr);
            EXPECT_EQ(recording_host::log_lines(),
                      first == 0 ? LogLines({{3, "create mesh_json err"}}) : LogLines());
        }
    }
    const Json links(mesh_links_of(router));
    EXPECT_EQ(print(links.get()), R"([{"nexthopMAC":"","dbm":"","interface":""},)"
                                  R"({"nexthopMAC":"","dbm":"","interface":""}])");
}

} // namespace mesh_report_test
