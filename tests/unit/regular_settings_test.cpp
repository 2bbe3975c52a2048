// One test for each rule, over all settings that follow it.
#include "regular_commands.h"

#include "failing_memory.h"
#include "handler_test.h"

#include <cstring>

namespace regular_settings_test {

class RegularSettingTest : public HandlerTest, public testing::WithParamInterface<RegularSetting> {
  protected:
    using Consumes = RegularSetting::Consumes;

    RegularSettingTest()
    {
        setting.program([this](char *bytes) {
            record.assign(bytes, setting.record_size);
            if (setting.failure == nullptr) {
                strcpy(bytes + setting.record_size - 64, device_text.c_str());
            }
            return result;
        });
    }

    // The request's keys with the JSON values that the callable gives for each position.
    template <class Value> std::string keys_with(Value value) const
    {
        std::string keys;
        for (size_t at = 0; at < setting.keys.size(); ++at) {
            const std::string json = value(at);
            if (!json.empty()) {
                keys += (keys.empty() ? "\"" : ",\"") + std::string(setting.keys[at].key) + "\":";
                keys += json;
            }
        }
        return keys;
    }

    std::string value(size_t at) const { return "v" + std::to_string(at); }
    std::string quoted_value(size_t at) const { return '"' + value(at) + '"'; }
    std::string all_keys() const
    {
        return keys_with([this](size_t at) { return quoted_value(at); });
    }

    std::string expected_record(const std::string &text = "") const
    {
        std::string bytes(setting.record_size, '\0');
        for (size_t at = 0; at < setting.keys.size(); ++at) {
            const Place &place = setting.keys[at];
            const std::string whole = text.empty() ? value(at) : text;
            const size_t length = std::min(whole.size(), place.width - 1);
            bytes.replace(place.offset, length, whole, 0, length);
        }
        return bytes;
    }

    std::string failed_with(const std::string &reason) const
    {
        return R"("Status":"1","FailReason":")" + reason + "\"}";
    }
    std::string device_failure() const
    {
        const auto told_apart = setting.failures_told_apart.find(result);
        if (told_apart != setting.failures_told_apart.end()) {
            return failed_with(told_apart->second);
        }
        return failed_with(setting.failure != nullptr ? setting.failure : device_text);
    }
    std::vector<std::string> functions() const
    {
        std::vector<std::string> names = {setting.function};
        if (setting.then != nullptr) {
            names.push_back(setting.then);
        }
        return names;
    }
    std::string keys_after_missing(const std::string &keys) const
    {
        return setting.consumes == Consumes::kAlways || keys.empty() ? "{" : "{" + keys + ",";
    }
    std::string keys_after_failure(const std::string &keys) const
    {
        return setting.consumes == Consumes::kOnSuccess ? "{" + keys + "," : "{";
    }

    const RegularSetting &setting = GetParam();
    std::string record = "(not called)";
    std::string device_text = "the device's own reason";
    int32_t result = 0;
};

TEST_P(RegularSettingTest, FillsTheRecordAndConsumesTheKeys)
{
    EXPECT_EQ(run(setting.command, R"({"First":1,)" + all_keys() + R"(,"Last":[{}]})"),
              R"({"First":1,"Last":[{}],"Status":"0"})");
    EXPECT_EQ(record, expected_record());
    EXPECT_EQ(recording_device::called_functions(), functions());
}

TEST_P(RegularSettingTest, CutsEachTextAtItsWidthLessOne)
{
    for (const size_t length : {0u,  1u,  6u,  7u,  8u,  9u,  14u,  15u,  16u,  17u,  30u,    31u,
                                32u, 33u, 62u, 63u, 64u, 65u, 126u, 127u, 128u, 129u, 100000u}) {
        const std::string text = text_of_length(length);
        const std::string keys = keys_with([&](size_t) { return '"' + text + '"'; });
        EXPECT_EQ(run(setting.command, "{" + keys + "}"), R"({"Status":"0"})") << length;
        EXPECT_EQ(record,
                  length == 0 ? std::string(setting.record_size, '\0') : expected_record(text))
            << length;
    }
}

TEST_P(RegularSettingTest, RefusesEachMissingKey)
{
    for (size_t missing = 0; missing < setting.keys.size(); ++missing) {
        const std::string keys =
            keys_with([&](size_t at) { return at == missing ? std::string() : quoted_value(at); });
        EXPECT_EQ(run(setting.command, "{" + keys + "}"),
                  keys_after_missing(keys) + failed_with(setting.absent))
            << setting.keys[missing].key;
    }
    EXPECT_EQ(run(setting.command, "{}"), "{" + failed_with(setting.absent));
    EXPECT_EQ(run(setting.command, R"({"Other":"x"})"),
              R"({"Other":"x",)" + failed_with(setting.absent));
    EXPECT_EQ(record, "(not called)");
}

TEST_P(RegularSettingTest, RefusesEachKeyWithoutText)
{
    if (setting.no_text == nullptr) {
        return; // this one is for the device to refuse
    }
    for (size_t wrong = 0; wrong < setting.keys.size(); ++wrong) {
        for (const std::string json :
             {"7", "-0.5", "true", "false", "null", "[]", R"(["x"])", "{}", R"({"x":"y"})"}) {
            const std::string keys =
                keys_with([&](size_t at) { return at == wrong ? json : quoted_value(at); });
            EXPECT_EQ(run(setting.command, "{" + keys + "}"),
                      keys_after_missing(keys) + failed_with(setting.no_text))
                << keys;
        }
    }
    EXPECT_EQ(record, "(not called)");
}

TEST_P(RegularSettingTest, LooksAtAbsenceFirst)
{
    if (setting.keys.size() == 1) {
        return; // a single key cannot be both
    }
    const size_t last = setting.keys.size() - 1;
    const std::string absent_last =
        keys_with([&](size_t at) { return at == last ? "" : std::string("7"); });
    EXPECT_EQ(run(setting.command, "{" + absent_last + "}"),
              keys_after_missing(absent_last) + failed_with(setting.absent));
    const std::string absent_first =
        keys_with([](size_t at) { return at == 0 ? "" : std::string("null"); });
    EXPECT_EQ(run(setting.command, "{" + absent_first + "}"),
              keys_after_missing(absent_first) + failed_with(setting.absent));
}

TEST_P(RegularSettingTest, TakesTheFirstOfRepeatedKeysInAnyLetterCase)
{
    std::string upper = setting.keys[0].key;
    for (char &letter : upper) {
        letter = static_cast<char>(toupper(letter));
    }
    const std::string second = std::string("\"") + setting.keys[0].key + "\":\"second\"";
    const std::string rest = keys_with([&](size_t at) { return at == 0 ? "" : quoted_value(at); });
    EXPECT_EQ(run(setting.command, "{\"" + upper + "\":" + quoted_value(0) + "," + second +
                                       (rest.empty() ? "" : "," + rest) + "}"),
              "{" + second + R"(,"Status":"0"})");
    EXPECT_EQ(record, expected_record());
}

TEST_P(RegularSettingTest, FailsByTheDevicesResult)
{
    for (const int32_t value : {-1, 1, -2, 2, 3, 4, 5, -3, -4, 1000, INT32_MIN, INT32_MAX}) {
        result = value;
        const bool fails = value == -1 || !setting.only_minus_one_fails;
        EXPECT_EQ(run(setting.command, "{" + all_keys() + "}"),
                  fails ? keys_after_failure(all_keys()) + device_failure() : R"({"Status":"0"})")
            << value;
    }
}

TEST_P(RegularSettingTest, ReportsWhatTheDeviceSays)
{
    if (setting.failure != nullptr) {
        return; // this device says nothing
    }
    result = -1;
    device_text = "";
    EXPECT_EQ(run(setting.command, "{" + all_keys() + "}"), "{" + device_failure());
    setting.program([this](char *bytes) {
        text_of_length(64).copy(bytes + setting.record_size - 64, 64);
        return -1;
    });
    EXPECT_EQ(run(setting.command, "{" + all_keys() + "}"), "{" + failed_with(text_of_length(64)));
}

// A device that was changed has to be reported as changed: without memory for that it is not asked.
TEST_P(RegularSettingTest, WithoutMemoryDoesNotReachTheDevice)
{
    device_text = "";
    for (const auto how : {FailingMemory::Fail::kOnce, FailingMemory::Fail::kLastingly}) {
        for (size_t first = 0;; ++first) {
            record = "(not called)";
            const Json object = parse("{" + all_keys() + "}");
            bool failed;
            {
                const FailingMemory memory(first, how);
                hg_process_json_cmd(setting.command, object.get());
                failed = memory.has_failed();
            }
            if (!failed) {
                EXPECT_EQ(first, 1u);
                EXPECT_EQ(print(object.get()), R"({"Status":"0"})");
                break;
            }
            EXPECT_EQ(record, "(not called)");
            const std::string keys = keys_after_failure(all_keys());
            EXPECT_EQ(print(object.get()),
                      how == FailingMemory::Fail::kOnce
                          ? keys + device_failure()
                          : keys.substr(0, std::max<size_t>(keys.size() - 1, 1)) + "}")
                << "allocation " << first;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Commands, RegularSettingTest, testing::ValuesIn(kRegularSettings),
                         [](const auto &test) { return std::string(test.param.command); });

} // namespace regular_settings_test
