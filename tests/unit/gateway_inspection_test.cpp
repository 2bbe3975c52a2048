#include "failing_memory.h"
#include "handler_test.h"

#include <cstring>

namespace gateway_inspection_test {

using recording_device::when;

class GatewayInspectionTest : public HandlerTest {};

// ---- HG_INSPECTION -----------------------------------------------------------------------------

template <size_t width> void set(char (&field)[width], const char *text)
{
    strncpy(field, text, width);
}

TEST_F(GatewayInspectionTest, TheWholeInspectionMixesThreeRecords)
{
    when<devapi_inspect_hg>(
        [](WifiInspectInfo *wifi, FwInspectInfo *firmware, NetInspectInfo *net) {
            memset(net, '?', sizeof *net);
            memset(firmware, '?', sizeof *firmware);
            set(wifi->WiFiDevNum, "7");
            set(wifi->Security, "2");
            set(wifi->Channel, "36");
            set(wifi->Congestion, "1");
            set(wifi->PowerLevel, "80");
            set(wifi->FireWallEnable, "1");
            set(firmware->FWVersion, "V2.4.1");
            set(net->WanStatus, "Connected");
            set(net->NetStatus, "1");
            set(net->WanIP, "203.0.113.7");
            set(net->NetMask, "255.255.255.0");
            return 0;
        });
    EXPECT_EQ(run("HG_INSPECTION", R"({"Channel":"x"})"),
              R"({"Channel":"x","Status":"0","WiFiDevNum":"7","Security":"2","Channel":"36",)"
              R"("Congestion":"1","FWVersion":"V2.4.1","WanStatus":"Connected","NetStatus":"1",)"
              R"("WanIP":"203.0.113.7","NetMask":"255.255.255.0","PowerLevel":"80",)"
              R"("FireWallEnable":"1"})");
    const auto arguments = recording_device::calls().at(0).arguments;
    EXPECT_EQ(arguments, (std::vector<std::string>{std::string(44, '\0'), std::string(1088, '\0'),
                                                   std::string(1944, '\0')}));
}

TEST_F(GatewayInspectionTest, TheWholeInspectionReadsNoFurtherThanItsFields)
{
    when<devapi_inspect_hg>(
        [](WifiInspectInfo *wifi, FwInspectInfo *firmware, NetInspectInfo *net) {
            memset(wifi, 'w', sizeof *wifi);
            memset(firmware, 'f', sizeof *firmware);
            memset(net, 'n', sizeof *net);
            return 0;
        });
    const Json object = parse(run("HG_INSPECTION"));
    const std::pair<const char *, std::string> expected[] = {
        {"WiFiDevNum", std::string(8, 'w')},     {"Security", std::string(8, 'w')},
        {"Channel", std::string(8, 'w')},        {"Congestion", std::string(8, 'w')},
        {"FWVersion", std::string(1088, 'f')},   {"WanStatus", std::string(64, 'n')},
        {"NetStatus", std::string(392, 'n')},    {"WanIP", std::string(64, 'n')},
        {"NetMask", std::string(256, 'n')},      {"PowerLevel", std::string(8, 'w')},
        {"FireWallEnable", std::string(4, 'w')},
    };
    for (const auto &[key, text] : expected) {
        EXPECT_EQ(cJSON_GetObjectItem(object.get(), key)->valuestring, text) << key;
    }
}

TEST_F(GatewayInspectionTest, TheWholeInspectionFailsOnEveryResultButZero)
{
    for (const int32_t result : {-1, 1, -2, 1000}) {
        when<devapi_inspect_hg>(
            [result](WifiInspectInfo *, FwInspectInfo *, NetInspectInfo *) { return result; });
        EXPECT_EQ(run("HG_INSPECTION"), R"({"Status":"1","FailReason":"inspect hg failed"})");
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GatewayInspectionTest, TheWholeInspectionWithoutMemory)
{
    for (size_t first = 0;; ++first) {
        const Json object = parse("{}");
        bool failed;
        {
            const FailingMemory memory(first, FailingMemory::Fail::kOnce);
            hg_process_json_cmd("HG_INSPECTION", object.get());
            failed = memory.has_failed();
        }
        if (!failed) {
            EXPECT_EQ(first, 1 + 2u * 11);
            break;
        }
        EXPECT_EQ(print(object.get()), R"({"Status":"1","FailReason":"inspect hg failed"})");
    }
}

TEST_F(GatewayInspectionTest, TheUplinkIsToldTheSizeOfItsBuffer)
{
    run("GET_HG_UPLINK_STATUS");
    EXPECT_EQ(recording_device::calls().at(0).arguments.at(1), "8");
}

// ---- Optimisations without wishes --------------------------------------------------------------

class PlainOptimizationTest : public HandlerTest,
                              public testing::WithParamInterface<const char *> {};

TEST_P(PlainOptimizationTest, IsNotCarriedOutWhenItCannotBeAnswered)
{
    EXPECT_EQ(hg_process_json_cmd(GetParam(), nullptr), 0);
    const Json array = parse("[]");
    EXPECT_EQ(hg_process_json_cmd(GetParam(), array.get()), 0);
    EXPECT_EQ(print(array.get()), "[]");
    for (size_t first = 0; first < 3; ++first) {
        const Json object = parse("{}");
        const FailingMemory memory(first, FailingMemory::Fail::kOnce);
        EXPECT_EQ(hg_process_json_cmd(GetParam(), object.get()), 0);
        EXPECT_TRUE(memory.has_failed());
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

INSTANTIATE_TEST_SUITE_P(Commands, PlainOptimizationTest,
                         testing::Values("HG_NETQUAL_OPTIMIZATION", "HG_NETCONN_OPTIMIZATION",
                                         "HG_RESOURCE_OPTIMIZATION"),
                         [](const auto &test) { return std::string(test.param); });

// ---- Optimisations -----------------------------------------------------------------------------

struct Optimization {
    const char *command;
    bool with_power;
    const char *failure;
};

void PrintTo(const Optimization &optimization, std::ostream *out)
{
    *out << optimization.command;
}

class OptimizationTest : public HandlerTest, public testing::WithParamInterface<Optimization> {
  protected:
    OptimizationTest()
    {
        const auto body = [this](WifiInspectInfo *info) {
            asked = *info;
            memset(info, '?', sizeof *info);
            set(info->Channel, "11");
            set(info->Congestion, "0");
            set(info->PowerLevel, "60");
            return result;
        };
        when<devapi_optimize_hg_wifi>(body);
        when<devapi_optimize_wifi_channel_power>(body);
    }

    std::string request(const std::string &channel = R"("6")",
                        const std::string &power = R"("100")") const
    {
        return R"({"First":1,"Channel":)" + channel +
               (optimization.with_power ? R"(,"PowerLevel":)" + power : "") + R"(,"Last":2})";
    }
    std::string reply(const std::string &before = R"({"First":1,"Last":2,)") const
    {
        return before + R"("Status":"0","Channel":"11","Congestion":"0")" +
               (optimization.with_power ? R"(,"PowerLevel":"60"})" : "}");
    }
    std::string failed(std::string request, const std::string &reason) const
    {
        request.back() = ',';
        return request + R"("Status":"1","FailReason":")" + reason + "\"}";
    }

    const Optimization &optimization = GetParam();
    WifiInspectInfo asked;
    int32_t result = 0;
};

TEST_P(OptimizationTest, RepliesWithWhatTheDeviceChose)
{
    EXPECT_EQ(run(optimization.command, request()), reply());
    EXPECT_STREQ(asked.Channel, "6");
    EXPECT_STREQ(asked.PowerLevel, optimization.with_power ? "100" : "");
    EXPECT_STREQ(asked.Congestion, "");
    EXPECT_STREQ(asked.WiFiDevNum, "");
    EXPECT_EQ(recording_device::called_functions(),
              std::vector<std::string>{optimization.with_power
                                           ? "devapi_optimize_wifi_channel_power"
                                           : "devapi_optimize_hg_wifi"});
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_P(OptimizationTest, OnlyTheFirstOfRepeatedKeysGoes)
{
    const std::string power = optimization.with_power ? R"("PowerLevel":"1",)" : "";
    EXPECT_EQ(run(optimization.command, R"({"channel":"6",)" + power + R"("Channel":"7"})"),
              reply(R"({"Channel":"7",)"));
    EXPECT_STREQ(asked.Channel, "6");
}

TEST_P(OptimizationTest, CutsItsTexts)
{
    for (const size_t length : {7u, 8u, 100000u}) {
        const std::string text = '"' + text_of_length(length) + '"';
        EXPECT_EQ(run(optimization.command, request(text, text)), reply());
        EXPECT_EQ(std::string(asked.Channel), text_of_length(7));
        EXPECT_EQ(std::string(asked.PowerLevel), optimization.with_power ? text_of_length(7) : "");
    }
}

TEST_P(OptimizationTest, RefusesAbsentKeysAndKeysWithoutText)
{
    EXPECT_EQ(run(optimization.command), R"({"Status":"1","FailReason":"json node null"})");
    for (const std::string json : {"6", "null", "true", "[]", R"({"Channel":"6"})"}) {
        EXPECT_EQ(run(optimization.command, request(json)),
                  failed(request(json), "value string null"));
        if (optimization.with_power) {
            EXPECT_EQ(run(optimization.command, request(R"("6")", json)),
                      failed(request(R"("6")", json), "value string null"));
            const std::string absent = R"({"Channel":)" + json + "}";
            EXPECT_EQ(run(optimization.command, absent), failed(absent, "json node null"));
        }
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_P(OptimizationTest, AFailureConsumesItsKeysToo)
{
    for (const int32_t value : {-1, 1, -2, 1000}) {
        result = value;
        EXPECT_EQ(run(optimization.command, request()),
                  failed(R"({"First":1,"Last":2})", optimization.failure));
    }
}

TEST_P(OptimizationTest, WithoutMemoryDoesNotReachTheDevice)
{
    for (size_t first = 0;; ++first) {
        recording_device::reset();
        const Json object = parse(request());
        bool out_of_memory;
        {
            const FailingMemory memory(first, FailingMemory::Fail::kOnce);
            hg_process_json_cmd(optimization.command, object.get());
            out_of_memory = memory.has_failed();
        }
        if (!out_of_memory) {
            EXPECT_EQ(first, optimization.with_power ? 7u : 5u);
            EXPECT_EQ(recording_device::calls().size(), 1u);
            break;
        }
        EXPECT_EQ(print(object.get()), failed(R"({"First":1,"Last":2})", optimization.failure));
        EXPECT_TRUE(recording_device::calls().empty());
    }
}

TEST_P(OptimizationTest, ReadsNoFurtherThanTheChosenFields)
{
    const auto to_the_brim = [](WifiInspectInfo *info) {
        memset(info, 'x', sizeof *info);
        return 0;
    };
    when<devapi_optimize_hg_wifi>(to_the_brim);
    when<devapi_optimize_wifi_channel_power>(to_the_brim);
    const Json object = parse(run(optimization.command, request()));
    for (const cJSON *item = cJSON_GetObjectItem(object.get(), "Channel"); item != nullptr;
         item = item->next) {
        EXPECT_EQ(item->valuestring, std::string(8, 'x')) << item->string;
    }
}

INSTANTIATE_TEST_SUITE_P(Commands, OptimizationTest,
                         testing::Values(Optimization{"HG_WIFI_OPTIMIZATION", false,
                                                      "SET_HG_SLEEP_INFO_FAIL"},
                                         Optimization{"HG_WIFI_CHANNEL_POWER_OPTIMIZATION", true,
                                                      "wifi channel power optimize failed"}),
                         [](const auto &test) { return std::string(test.param.command); });

} // namespace gateway_inspection_test
