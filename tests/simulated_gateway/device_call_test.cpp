// SPDX-License-Identifier: MIT
// Device functions of this test, built from what all device functions share.
#include "core/device_call.h"

#include "core/gateway.h"
#include "gateway_fixture.h"

#include <cstring>
#include <latch>
#include <thread>

using namespace simulated_gateway;

namespace {

struct WifiRecord {
    int32_t index;
    char name[8];
    char password[16];
};

void describe(RecordText &text, const WifiRecord &record)
{
    text.field("index", record.index);
    text.field("name", record.name);
    text.secret("password", record.password);
}

void spoil_fields(WifiRecord &record)
{
    simulated_gateway::spoil_text(record.name, sizeof(record.name));
}

int32_t test_get_wifi(WifiRecord *record)
{
    return query(__func__, {reply("record", record)}, [&](const State &state) {
        const Ssid &ssid = state.home.ssids.front();
        record->index = 1;
        put(record->name, ssid.name);
        put(record->password, ssid.password);
        return 0;
    });
}

int32_t test_set_wifi(const WifiRecord *record)
{
    return setting(__func__, {request("record", record)}, [&](State &state) {
        Ssid &ssid = state.home.ssids.front();
        ssid.name = std::string(record->name, strnlen(record->name, sizeof(record->name)));
        ssid.password = record->password;
        return record->index == 1 ? 0 : 17;
    });
}

class DeviceCallTest : public GatewayTest {
  protected:
    static WifiRecord wifi()
    {
        WifiRecord record = {};
        EXPECT_EQ(test_get_wifi(&record), 0);
        return record;
    }
    // The trace's last line from the function's name up to its duration.
    std::string last_call() const
    {
        const std::string line = last_line();
        const size_t start = line.find("] ") + 2;
        return line.substr(start, line.find(" in ") - start);
    }
};

TEST_F(DeviceCallTest, AQueryReportsWhatASettingChanged)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    const WifiRecord change = {1, "Attic", "blackbird"};
    EXPECT_EQ(test_set_wifi(&change), 0);
    EXPECT_STREQ(wifi().name, "Attic");
    close();
    ASSERT_EQ(open({.state_file = path("state")}), "");
    EXPECT_STREQ(wifi().name, "Attic");
    EXPECT_EQ(json_of(path("state")).at("factory").at("ssids").at(0).at("name"), "Lindenhof");
}

TEST_F(DeviceCallTest, ATextIsCutAtTheFieldsWidth)
{
    ASSERT_EQ(open({}), "");
    EXPECT_STREQ(wifi().name, "Lindenh");
}

TEST_F(DeviceCallTest, ARefusedSettingChangesNothing)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    const std::string before = read(path("state"));
    const WifiRecord other_index = {2, "Attic", "blackbird"};
    EXPECT_EQ(test_set_wifi(&other_index), 17);
    EXPECT_STREQ(wifi().name, "Lindenh");
    EXPECT_EQ(read(path("state")), before);
}

TEST_F(DeviceCallTest, ASettingThatTheModelForbidsFailsWithItsReason)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    const WifiRecord short_password = {1, "Attic", "bird"};
    EXPECT_EQ(test_set_wifi(&short_password), -1);
    EXPECT_TRUE(lines(path("trace"))
                    .back()
                    .ends_with(" us, /home/ssids/0/password: needs at least 8 characters"));
    EXPECT_STREQ(wifi().name, "Lindenh");
}

TEST_F(DeviceCallTest, ASettingThatCannotBeSavedFailsAndIsUndone)
{
    ASSERT_EQ(open({.state_file = path("state"), .trace = path("trace")}), "");
    const std::string before = read(path("state"));
    std::filesystem::create_directory(path("state.tmp"));
    const WifiRecord change = {1, "Attic", "blackbird"};
    EXPECT_EQ(test_set_wifi(&change), -1);
    EXPECT_TRUE(last_line().ends_with(path("state.tmp") + ": Is a directory"));
    EXPECT_STREQ(wifi().name, "Lindenh");
    EXPECT_EQ(read(path("state")), before);
    std::filesystem::remove(path("state.tmp"));
    EXPECT_EQ(test_set_wifi(&change), 0);
    EXPECT_STREQ(wifi().name, "Attic");
}

TEST_F(DeviceCallTest, SecretsAreMaskedUnlessRequested)
{
    const WifiRecord change = {1, "Attic", "blackbird"};
    ASSERT_EQ(open({.trace = path("trace")}), "");
    EXPECT_EQ(test_set_wifi(&change), 0);
    EXPECT_EQ(last_call(), "test_set_wifi(record={index=1, name=\"Attic\", password=***}) = 0");
    wifi();
    EXPECT_EQ(last_call(), "test_get_wifi(record={index=1, name=\"Attic\", password=***}) = 0");
    EXPECT_THAT(read(path("trace")), Not(HasSubstr("blackbird")));
    const WifiRecord none = {2, "Attic", ""};
    EXPECT_EQ(test_set_wifi(&none), 17);
    EXPECT_EQ(last_call(), "test_set_wifi(record={index=2, name=\"Attic\", password=\"\"}) = 17");
    close();

    ASSERT_EQ(open({.trace = path("trace"), .show_secrets = true}), "");
    EXPECT_EQ(test_set_wifi(&change), 0);
    EXPECT_EQ(last_call(),
              "test_set_wifi(record={index=1, name=\"Attic\", password=\"blackbird\"}) = 0");
}

TEST_F(DeviceCallTest, TextsInTheTraceAreBoundedAndEscaped)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    WifiRecord record = {};
    record.index = 2;
    std::memset(record.name, 'n', sizeof(record.name)); // no NUL
    EXPECT_EQ(test_set_wifi(&record), 17);
    EXPECT_EQ(last_call(),
              "test_set_wifi(record={index=2, name=\"nnnnnnnn\", password=\"\"}) = 17");

    std::memcpy(record.name, "\"\\\n\x1b\xffü\x7f", 8);
    EXPECT_EQ(test_set_wifi(&record), 17);
    EXPECT_EQ(last_call(), "test_set_wifi(record={index=2, name=\"\\\"\\\\\\n\\x1b\\xffü\\x7f\", "
                           "password=\"\"}) = 17");
}

TEST_F(DeviceCallTest, ABodyThatThrowsIsAFailedCall)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    const WifiRecord record = {};
    const auto throws = [](State &) -> int32_t {
        throw std::bad_alloc();
    };
    EXPECT_EQ(setting("test_throws", {request("record", &record)}, throws), -1);
    EXPECT_TRUE(last_line().ends_with("std::bad_alloc"));
}

TEST_F(DeviceCallTest, WaitingLetsOthersGoOnAndEndsWithTheGateway)
{
    ASSERT_EQ(open({.trace = path("trace")}), "");
    std::latch started(1);
    int32_t result = 0;
    std::thread caller([&] {
        result = long_work("test_wait", {}, [&](Gateway &gateway) {
            started.count_down();
            gateway.wait(std::chrono::hours(1000));
            return 0;
        });
    });
    started.wait();
    wifi();
    close();
    caller.join();
    EXPECT_EQ(reason(result), "the gateway was closed");
}

TEST_F(DeviceCallTest, NobodyWaitsWhileTheClockStandsStill)
{
    ASSERT_EQ(open_at(kTime, {}), "");
    EXPECT_EQ(long_work("test_wait", {},
                        [](Gateway &gateway) {
                            gateway.wait(std::chrono::hours(1000));
                            return 0;
                        }),
              0);
}

} // namespace
