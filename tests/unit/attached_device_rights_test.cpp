// The attached devices' rights, and the firewall before them all.
#include "commands.h"
#include "handler_test.h"
#include "request.h"

#include <cstring>
#include <regex>

namespace attached_device_rights_test {

using recording_device::Call;
using recording_device::contents;
using recording_device::when;
using recording_host::LogLine;

class AttachedDeviceRightsTest : public HandlerTest {};

// ---- GET_ATTACH_DEVICE_RIGHT -------------------------------------------------------------------

constexpr char kGet[] = "GET_ATTACH_DEVICE_RIGHT";

void hosts_are(int32_t count, int32_t result = 0)
{
    when<devapi_get_host_num>([=](int32_t *out) {
        *out = count;
        return result;
    });
}

// Texts that end in the host index, and rubbish behind them.
int32_t describe(AttachDeviceRight *right, int32_t result)
{
    const std::string host = std::to_string(right->HostIndex);
    memset(right, '?', sizeof *right);
    strcpy(right->MAC, ("mac" + host).c_str());
    strcpy(right->name, ("name" + host).c_str());
    strcpy(right->InternetAccessRight, ("right" + host).c_str());
    return result;
}

void rights_are_known()
{
    when<devapi_get_attach_device_right>(
        [](AttachDeviceRight *right) { return describe(right, 0); });
}

std::string element(int32_t host)
{
    const std::string number = std::to_string(host);
    return R"({"MAC":"mac)" + number + R"(","name":"name)" + number +
           R"(","InternetAccessRight":"right)" + number + "\"}";
}

TEST_F(AttachedDeviceRightsTest, ReportsEveryDevice)
{
    hosts_are(2);
    rights_are_known();
    EXPECT_EQ(run(kGet, R"({"maclist":7})"),
              R"({"maclist":7,"MACList":[)" + element(1) + "," + element(2) + R"(],"Status":"0"})");
    const int32_t none = 0;
    AttachDeviceRight first = {};
    first.HostIndex = 1;
    AttachDeviceRight second = {};
    second.HostIndex = 2;
    EXPECT_EQ(recording_device::calls(),
              (std::vector<Call>{{"devapi_get_host_num", {contents(&none)}},
                                 {"devapi_get_attach_device_right", {contents(&first)}},
                                 {"devapi_get_attach_device_right", {contents(&second)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(AttachedDeviceRightsTest, GoesOnWithTheCountThatAFailureLeft)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        recording_host::reset();
        hosts_are(2, result);
        rights_are_known();
        EXPECT_EQ(run(kGet),
                  R"({"MACList":[)" + element(1) + "," + element(2) + R"(],"Status":"0"})");
        EXPECT_EQ(recording_host::log_lines(),
                  (std::vector<LogLine>{
                      {3, "host_num error! return =" + std::to_string(result) + "!\n"}}));
    }
    when<devapi_get_host_num>([](int32_t *) { return -1; });
    EXPECT_EQ(run(kGet), R"({"MACList":[],"Status":"0"})");
}

// What the line calls the index is the address of the index text, beside the record on the stack.
TEST_F(AttachedDeviceRightsTest, ADeviceThatCannotBeReadIsLeftOutAndLogged)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        recording_host::reset();
        hosts_are(3);
        const AttachDeviceRight *record = nullptr;
        when<devapi_get_attach_device_right>([&](AttachDeviceRight *right) {
            record = right;
            return describe(right, right->HostIndex == 2 ? result : 0);
        });
        EXPECT_EQ(run(kGet),
                  R"({"MACList":[)" + element(1) + "," + element(3) + R"(],"Status":"0"})");
        ASSERT_EQ(recording_host::log_lines().size(), 1u);
        const LogLine line = recording_host::log_lines()[0];
        EXPECT_EQ(line.level, 3);
        const std::regex shape("devapi_get_attach_device_right error! return =" +
                               std::to_string(result) + "! index=(-?[0-9]+)\n");
        std::smatch match;
        ASSERT_TRUE(std::regex_match(line.text, match, shape)) << line.text;
        const auto address = static_cast<uint32_t>(std::stoll(match[1]));
        const auto beside = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(record));
        EXPECT_LT(std::abs(static_cast<int32_t>(address - beside)), 4096) << line.text;
    }
}

TEST_F(AttachedDeviceRightsTest, ThereMayBeNoDevicesOrMany)
{
    for (const int32_t count : {0, -1, -5, INT32_MIN}) {
        recording_device::reset();
        hosts_are(count);
        EXPECT_EQ(run(kGet), R"({"MACList":[],"Status":"0"})") << count;
        EXPECT_EQ(recording_device::calls().size(), 1u);
    }
    hosts_are(20000);
    when<devapi_get_attach_device_right>([](AttachDeviceRight *right) {
        return describe(right, right->HostIndex % 2 == 0 ? -1 : 0);
    });
    const Json object = parse(run(kGet));
    EXPECT_EQ(cJSON_GetArraySize(object->child), 10000);
    EXPECT_EQ(print(object->child->child->prev), element(19999));
    EXPECT_EQ(recording_host::log_lines().size(), 10000u);
}

// ---- SET_ATTACH_DEVICE_RIGHT -------------------------------------------------------------------

TEST_F(AttachedDeviceRightsTest, ASettingReturnsTheDevicesResult)
{
    for (const int32_t result : {0, -1, 1, 1000}) {
        when<devapi_set_attach_device_right>(
            [result](const AttachDeviceRight *) { return result; });
        EXPECT_EQ(
            json_set_attach_device_right(parse(R"({"MAC":"m","InternetAccessRight":"r"})").get()),
            result);
    }
    EXPECT_EQ(json_set_attach_device_right(parse(R"({"MAC":"m"})").get()), -1);
    EXPECT_EQ(json_set_attach_device_right(parse(R"({"MAC":"m","InternetAccessRight":1})").get()),
              -1);
}

// ---- SET_FIREWALL_SWITCH -----------------------------------------------------------------------

constexpr char kFirewall[] = "SET_FIREWALL_SWITCH";

TEST_F(AttachedDeviceRightsTest, SwitchesTheFirewallAndLeavesTheKey)
{
    for (const size_t length : {0u, 1u, 14u, 15u, 16u, 10000u}) {
        recording_device::reset();
        const std::string text = text_of_length(length);
        EXPECT_EQ(run(kFirewall, R"({"enable":)" + quoted(text) + R"(,"Enable":"2"})"),
                  R"({"enable":)" + quoted(text) + R"(,"Enable":"2","Status":"0"})");
        FirewallSwitch expected = {};
        text.copy(expected.Enable, 15);
        EXPECT_EQ(recording_device::calls(),
                  (std::vector<Call>{{"devapi_set_firewall_switch", {contents(&expected)}}}));
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(AttachedDeviceRightsTest, SaysNothingOfAMissingSwitch)
{
    std::vector<std::string> requests = {"{}", R"({"Other":"1"})"};
    for (const std::string &no_text : kNoTexts) {
        requests.push_back(R"({"Enable":)" + no_text + "}");
    }
    for (const std::string &request : requests) {
        EXPECT_EQ(run(kFirewall, request), request);
    }
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_TRUE(recording_host::log_lines().empty());
}

// ---- All of them -------------------------------------------------------------------------------

} // namespace attached_device_rights_test
