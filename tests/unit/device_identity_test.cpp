#include "failing_memory.h"
#include "handler_test.h"

#include <cstring>

namespace {

using recording_device::when;
using recording_host::LogLine;

class DeviceIdentityTest : public HandlerTest {};

TEST_F(DeviceIdentityTest, SnInfoIsReportedAfterTheStatus)
{
    when<devapi_get_sn_info>([](SnInfo *info) {
        strcpy(info->MAC, "3C:6A:D2:10:4F:20");
        strcpy(info->tslinkstatus, "1");
        strcpy(info->DeviceType, "HGU-AX3000");
        return 0;
    });
    EXPECT_EQ(run("GET_SN_INFO"), R"({"Status":"0","MAC":"3C:6A:D2:10:4F:20",)"
                                  R"("tslinkstatus":"1","DeviceType":"HGU-AX3000"})");
    EXPECT_EQ(recording_device::called_functions(), std::vector<std::string>{"devapi_get_sn_info"});
}

TEST_F(DeviceIdentityTest, TheDeviceGetsAZeroedSnRecord)
{
    run("GET_SN_INFO", R"({"MAC":"from the request"})");
    EXPECT_EQ(recording_device::calls().at(0).arguments.at(0), std::string(328, '\0'));
}

TEST_F(DeviceIdentityTest, AQueryDeletesNothing)
{
    EXPECT_EQ(run("GET_SN_INFO", R"({"MAC":"mine","Other":[1,2]})"),
              R"({"MAC":"mine","Other":[1,2],)"
              R"("Status":"0","MAC":"","tslinkstatus":"","DeviceType":""})");
    EXPECT_EQ(run("QUERY_SYSTEM_INFO", R"({"LED":7})").substr(0, 24),
              R"({"LED":7,"Status":"0","S)");
}

TEST_F(DeviceIdentityTest, EveryResultButZeroFailsTheSnQuery)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN, INT32_MAX}) {
        when<devapi_get_sn_info>([result](SnInfo *info) {
            strcpy(info->MAC, "must not be reported");
            return result;
        });
        EXPECT_EQ(run("GET_SN_INFO"), R"({"Status":"1","FailReason":"get sn failed"})") << result;
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(DeviceIdentityTest, SnFieldsFilledToTheBrimAreReadNoFurther)
{
    when<devapi_get_sn_info>([](SnInfo *info) {
        fill(info->MAC);
        fill(info->tslinkstatus);
        fill(info->DeviceType);
        return 0;
    });
    EXPECT_EQ(run("GET_SN_INFO"), R"({"Status":"0","MAC":")" + text_of_length(64) +
                                      R"(","tslinkstatus":")" + text_of_length(8) +
                                      R"(","DeviceType":")" + text_of_length(256) + R"("})");
}

// The keys of the system description with their places in the record.
struct SystemKey {
    const char *key;
    size_t offset;
    size_t width;
};
constexpr SystemKey kSystemKeys[] = {
    {"SWVersion", 0, 64},    {"HDVersion", 64, 64}, {"ProductCLass", 128, 64},
    {"CPUClass", 192, 64},   {"DEVType", 256, 64},  {"DEVType1", 320, 64},
    {"Capability", 384, 64}, {"Card", 448, 64},     {"UPLink", 512, 64},
    {"Cardno", 576, 64},     {"IPV6", 640, 64},     {"VLANbind", 704, 64},
    {"LED", 768, 64},        {"NFC", 832, 64},      {"VLANCapability", 896, 192},
};

// The reply to a record in which each field holds its own key, cut or repeated to a length.
std::string system_reply(size_t (*length)(const SystemKey &))
{
    when<devapi_get_system_info>([length](SystemInfo *info) {
        for (const SystemKey &key : kSystemKeys) {
            std::string text;
            while (text.size() < length(key)) {
                text += key.key;
            }
            text.copy(reinterpret_cast<char *>(info) + key.offset, length(key));
        }
        return 0;
    });
    return run("QUERY_SYSTEM_INFO");
}

std::string expected_system_reply(size_t (*length)(const SystemKey &))
{
    std::string reply = R"({"Status":"0")";
    for (const SystemKey &key : kSystemKeys) {
        std::string text;
        while (text.size() < length(key)) {
            text += key.key;
        }
        reply += std::string(",\"") + key.key + "\":\"" + text.substr(0, length(key)) + '"';
    }
    return reply + "}";
}

TEST_F(DeviceIdentityTest, SystemInfoIsReportedInItsOrder)
{
    const auto length = [](const SystemKey &key) {
        return strlen(key.key);
    };
    EXPECT_EQ(system_reply(length), expected_system_reply(length));
    EXPECT_EQ(recording_device::called_functions(),
              std::vector<std::string>{"devapi_get_system_info"});
    EXPECT_EQ(recording_device::calls().at(0).arguments.at(0), std::string(1088, '\0'));
}

TEST_F(DeviceIdentityTest, SystemFieldsFilledToTheBrimAreReadNoFurther)
{
    const auto length = [](const SystemKey &key) {
        return key.width;
    };
    EXPECT_EQ(system_reply(length), expected_system_reply(length));
}

TEST_F(DeviceIdentityTest, EveryResultButZeroFailsTheSystemQuery)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        when<devapi_get_system_info>([result](SystemInfo *) { return result; });
        EXPECT_EQ(run("QUERY_SYSTEM_INFO"),
                  R"({"Status":"1","FailReason":"Get System Info Failed From Gdbus"})")
            << result;
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// Memory that ends half-way must not leave half a reply: it is whole, or the failure, or nothing.
TEST_F(DeviceIdentityTest, AQueryWithoutMemory)
{
    for (const auto how : {FailingMemory::Fail::kOnce, FailingMemory::Fail::kLastingly}) {
        for (size_t first = 0;; ++first) {
            const Json object = parse("{}");
            bool failed;
            {
                const FailingMemory memory(first, how);
                hg_process_json_cmd("GET_SN_INFO", object.get());
                failed = memory.has_failed();
            }
            const std::string reply = print(object.get());
            if (!failed) {
                EXPECT_EQ(first, 8u) << "two allocations for each of four keys";
                EXPECT_EQ(reply, R"({"Status":"0","MAC":"","tslinkstatus":"","DeviceType":""})");
                break;
            }
            EXPECT_EQ(reply, how == FailingMemory::Fail::kOnce
                                 ? R"({"Status":"1","FailReason":"get sn failed"})"
                                 : "{}")
                << "allocation " << first;
        }
    }
}

// ---- RESPONSE_ROUTER_VERSION -------------------------------------------------------------------

class VersionReportTest : public HandlerTest {
  protected:
    VersionReportTest()
    {
        memset(buffer, '#', sizeof buffer);
        info_wersion = buffer;
    }
    ~VersionReportTest() override { info_wersion = nullptr; }

    // Everything behind the kept text has to be as it was.
    std::string kept() const
    {
        const std::string all(buffer, sizeof buffer);
        const size_t end = all.find('\0');
        if (end == std::string::npos) {
            EXPECT_EQ(all, std::string(sizeof buffer, '#')) << "half a text was kept";
            return "(untouched)";
        }
        EXPECT_EQ(all.find_first_not_of('#', end + 1), std::string::npos);
        return all.substr(0, end);
    }

    char buffer[HG_VERSION_INFO_SIZE + 64];
};

TEST_F(VersionReportTest, IsAnsweredPrintedAndKept)
{
    EXPECT_EQ(run("RESPONSE_ROUTER_VERSION", R"({"VersionInfo":"app 5.2.0","n":1})"),
              R"({"VersionInfo":"app 5.2.0","n":1,"Status":"0"})");
    const std::string printed =
        "{\n\t\"VersionInfo\":\t\"app 5.2.0\",\n\t\"n\":\t1,\n\t\"Status\":\t\"0\"\n}";
    EXPECT_EQ(kept(), printed);
    EXPECT_EQ(recording_host::log_lines(),
              (std::vector<LogLine>{{7, "json_response_router_version out = " + printed + "\n"}}));
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(VersionReportTest, WithoutVersionTheStatusIsOneAndTheObjectIsKept)
{
    EXPECT_EQ(run("RESPONSE_ROUTER_VERSION", R"({"VersionInfo":""})"),
              R"({"VersionInfo":"","Status":"1"})");
    EXPECT_EQ(kept(), "{\n\t\"VersionInfo\":\t\"\",\n\t\"Status\":\t\"1\"\n}");
}

TEST_F(VersionReportTest, AnEmptyObjectIsKeptToo)
{
    EXPECT_EQ(run("RESPONSE_ROUTER_VERSION"), R"({"Status":"1"})");
    EXPECT_EQ(kept(), "{\n\t\"Status\":\t\"1\"\n}");
}

TEST_F(VersionReportTest, AVersionThatIsNoTextCountsAsAbsent)
{
    for (const char *value : {"7", "true", "null", "[]", "{}", R"(["1.0"])"}) {
        const std::string request = std::string(R"({"VersionInfo":)") + value;
        EXPECT_EQ(run("RESPONSE_ROUTER_VERSION", request + "}"), request + R"(,"Status":"1"})");
    }
}

TEST_F(VersionReportTest, TheFirstOfRepeatedVersionsCountsInAnyLetterCase)
{
    EXPECT_EQ(run("RESPONSE_ROUTER_VERSION", R"({"versioninfo":"1","VersionInfo":""})"),
              R"({"versioninfo":"1","VersionInfo":"","Status":"0"})");
    EXPECT_EQ(run("RESPONSE_ROUTER_VERSION", R"({"VersionInfo":"","VersionInfo":"1"})"),
              R"({"VersionInfo":"","VersionInfo":"1","Status":"1"})");
}

// A request that makes the printed object so many bytes long.
std::string request_printed_in(size_t length)
{
    const std::string frame = "{\n\t\"VersionInfo\":\t\"\",\n\t\"Status\":\t\"0\"\n}";
    return R"({"VersionInfo":")" + text_of_length(length - frame.size()) + R"("})";
}

TEST_F(VersionReportTest, TheLongestTextThatFitsIsKept)
{
    run("RESPONSE_ROUTER_VERSION", request_printed_in(2047));
    EXPECT_EQ(kept().size(), 2047u);
    EXPECT_EQ(recording_host::log_lines().size(), 1u);
}

TEST_F(VersionReportTest, ALongerTextIsNotKept)
{
    for (const size_t length : {2048u, 2049u, 1u << 20}) {
        recording_host::reset();
        const std::string reply = run("RESPONSE_ROUTER_VERSION", request_printed_in(length));
        EXPECT_EQ(reply.substr(reply.size() - 13), R"("Status":"0"})");
        EXPECT_EQ(kept(), "(untouched)");
        const auto lines = recording_host::log_lines();
        ASSERT_EQ(lines.size(), 2u);
        EXPECT_EQ(lines[0].level, 7);
        EXPECT_EQ(lines[0].text.size(), length + strlen("json_response_router_version out = \n"));
        EXPECT_EQ(lines[1], (LogLine{7, "json_response_router_version is too long\n"}));
    }
}

TEST_F(VersionReportTest, WithoutBufferNothingIsKept)
{
    info_wersion = nullptr;
    const Json object = parse(R"({"VersionInfo":"1"})");
    EXPECT_EQ(hg_process_json_cmd("RESPONSE_ROUTER_VERSION", object.get()), 0);
    EXPECT_EQ(kept(), "(untouched)");
    const auto lines = recording_host::log_lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], (LogLine{7, "the time of json_response_router_version is too long\n"}));
}

TEST_F(VersionReportTest, TooLongIsSaidBeforeTheMissingBuffer)
{
    info_wersion = nullptr;
    run("RESPONSE_ROUTER_VERSION", request_printed_in(2048));
    EXPECT_EQ(recording_host::log_lines().back(),
              (LogLine{7, "json_response_router_version is too long\n"}));
}

extern "C" int32_t json_response_router_version(cJSON *obj);

TEST_F(VersionReportTest, TheHandlerTellsItsCallerWhetherItCouldPrint)
{
    const Json object = parse(R"({"VersionInfo":"1"})");
    EXPECT_EQ(json_response_router_version(object.get()), 0);
    EXPECT_EQ(json_response_router_version(nullptr), -1);
    EXPECT_EQ(recording_host::log_lines().back(), (LogLine{7, "cJSON_Print json fail\n"}));
}

TEST_F(VersionReportTest, WithoutMemoryToPrintNothingIsKept)
{
    for (size_t first = 0;; ++first) {
        recording_host::reset();
        memset(buffer, '#', sizeof buffer);
        const Json object = parse(R"({"VersionInfo":"1"})");
        bool failed;
        int32_t result;
        {
            const FailingMemory memory(first, FailingMemory::Fail::kOnce);
            result = json_response_router_version(object.get());
            failed = memory.has_failed();
        }
        if (!failed) {
            EXPECT_EQ(result, 0);
            EXPECT_GE(first, 3u);
            break;
        }
        EXPECT_EQ(result, -1) << "allocation " << first;
        EXPECT_EQ(kept(), "(untouched)");
        EXPECT_EQ(print(object.get()),
                  first < 2 ? R"({"VersionInfo":"1"})" : R"({"VersionInfo":"1","Status":"0"})");
        EXPECT_EQ(recording_host::log_lines(),
                  (std::vector<LogLine>{{7, "cJSON_Print json fail\n"}}));
    }
}

} // namespace
