// SPDX-License-Identifier: MIT
#include "failing_memory.h"
#include "handler_test.h"

#include <cstring>

namespace device_identity_test {

class ResponseRouterVersion : public HandlerTest {
  protected:
    ResponseRouterVersion()
    {
        memset(buffer, '#', sizeof buffer);
        info_wersion = buffer;
    }
    ~ResponseRouterVersion() override { info_wersion = nullptr; }

    // Everything after the kept text must be unchanged.
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

TEST_F(ResponseRouterVersion, IsAnsweredPrintedAndKept)
{
    EXPECT_EQ(run("RESPONSE_ROUTER_VERSION", R"({"VersionInfo":"app 5.2.0","n":1})"),
              R"({"VersionInfo":"app 5.2.0","n":1,"Status":"0"})");
    const std::string printed =
        "{\n\t\"VersionInfo\":\t\"app 5.2.0\",\n\t\"n\":\t1,\n\t\"Status\":\t\"0\"\n}";
    EXPECT_EQ(kept(), printed);
    EXPECT_EQ(recording_host::log_lines(),
              (LogLines{{7, "json_response_router_version out = " + printed + "\n"}}));
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(ResponseRouterVersion, FailsWithoutAVersionAndIsKept)
{
    EXPECT_EQ(run("RESPONSE_ROUTER_VERSION", R"({"VersionInfo":""})"),
              R"({"VersionInfo":"","Status":"1"})");
    EXPECT_EQ(kept(), "{\n\t\"VersionInfo\":\t\"\",\n\t\"Status\":\t\"1\"\n}");
}

TEST_F(ResponseRouterVersion, AnEmptyObjectIsKeptToo)
{
    EXPECT_EQ(run("RESPONSE_ROUTER_VERSION"), R"({"Status":"1"})");
    EXPECT_EQ(kept(), "{\n\t\"Status\":\t\"1\"\n}");
}

// A request whose printed object has this many bytes.
std::string request_printed_in(size_t length)
{
    const std::string frame = "{\n\t\"VersionInfo\":\t\"\",\n\t\"Status\":\t\"0\"\n}";
    return R"({"VersionInfo":")" + text_of_length(length - frame.size()) + R"("})";
}

TEST_F(ResponseRouterVersion, TheLongestTextThatFitsIsKept)
{
    run("RESPONSE_ROUTER_VERSION", request_printed_in(2047));
    EXPECT_EQ(kept().size(), 2047u);
    EXPECT_EQ(recording_host::log_lines().size(), 1u);
}

TEST_F(ResponseRouterVersion, ALongerTextIsNotKept)
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

TEST_F(ResponseRouterVersion, WithoutBufferNothingIsKept)
{
    info_wersion = nullptr;
    const Json object = parse(R"({"VersionInfo":"1"})");
    EXPECT_EQ(hg_process_json_cmd("RESPONSE_ROUTER_VERSION", object.get()), 0);
    EXPECT_EQ(kept(), "(untouched)");
    const auto lines = recording_host::log_lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], (LogLine{7, "the time of json_response_router_version is too long\n"}));
}

TEST_F(ResponseRouterVersion, LogsTheLengthBeforeTheMissingBuffer)
{
    info_wersion = nullptr;
    run("RESPONSE_ROUTER_VERSION", request_printed_in(2048));
    EXPECT_EQ(recording_host::log_lines().back(),
              (LogLine{7, "json_response_router_version is too long\n"}));
}

extern "C" int32_t json_response_router_version(cJSON *obj);

TEST_F(ResponseRouterVersion, ReturnsWhetherItCouldPrint)
{
    const Json object = parse(R"({"VersionInfo":"1"})");
    EXPECT_EQ(json_response_router_version(object.get()), 0);
    EXPECT_EQ(json_response_router_version(nullptr), -1);
    EXPECT_EQ(recording_host::log_lines().back(), (LogLine{7, "cJSON_Print json fail\n"}));
}

TEST_F(ResponseRouterVersion, WithoutMemoryToPrintNothingIsKept)
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
        EXPECT_EQ(print(object.get()), first < 1 ? R"({"VersionInfo":"1","Status":"1"})"
                                                 : R"({"VersionInfo":"1","Status":"0"})");
        EXPECT_EQ(recording_host::log_lines(), (LogLines{{7, "cJSON_Print json fail\n"}}));
    }
}

} // namespace device_identity_test
