// SPDX-License-Identifier: MIT
#include "commands.h"
#include "handler_test.h"
#include "record_layouts.h"

#include <cstring>
#include <regex>

namespace attached_devices_test {

constexpr char kCommand[] = "GET_AD_BASE_INFO";
const std::string kFailure = "{" + failure("get ad base info error") + "}";

class GetAdBaseInfo : public HandlerTest {};

const Places kReported = attached_device_places(
    {"Mac", "UID", "DevType", "DevFactory", "DevModle", "Name", "ByName", "OS", "Version",
     "NetStatus", "NetMonopoly", "AccessType", "AccessEnable", "AccessTime", "UpSpeed", "DownSpeed",
     "ip", "GreennetProtectEnable", "StaticDhcpEnable"});

// The text of a field of the device with this host index.
std::string text_of(const Place &place, int32_t host)
{
    return std::to_string(host) + "@" + std::to_string(place.offset);
}

// Fills the reported fields, and everything else with garbage.
int32_t describe(AdBaseInfo *info, int32_t result)
{
    const int32_t host = info->HostIndex;
    memset(info, '?', sizeof *info);
    for (const Place &place : kReported) {
        strcpy(reinterpret_cast<char *>(info) + place.offset, text_of(place, host).c_str());
    }
    return result;
}

std::string element(int32_t host)
{
    Request::Keys keys;
    for (const Place &place : kReported) {
        keys.emplace_back(place.key, quoted(text_of(place, host)));
    }
    return Request(keys).json();
}

TEST_F(GetAdBaseInfo, ReportsEveryDevice)
{
    writes<devapi_get_host_num>(2);
    when<devapi_get_ad_base_info>([](AdBaseInfo *info) { return describe(info, 0); });
    EXPECT_EQ(run(kCommand, R"({"baseinfo":"kept"})"), R"({"baseinfo":"kept","BaseInfo":[)" +
                                                           element(1) + "," + element(2) +
                                                           R"(],"Status":"0"})");
    const int32_t none = 0;
    AdBaseInfo first = {};
    first.HostIndex = 1;
    AdBaseInfo second = {};
    second.HostIndex = 2;
    EXPECT_EQ(recording_device::calls(), (Calls{{"devapi_get_host_num", {contents(&none)}},
                                                {"devapi_get_ad_base_info", {contents(&first)}},
                                                {"devapi_get_ad_base_info", {contents(&second)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetAdBaseInfo, NoDevicesAreAnEmptyList)
{
    for (const int32_t count : {0, -1, -5, INT32_MIN}) {
        recording_device::reset();
        writes<devapi_get_host_num>(count);
        EXPECT_EQ(run(kCommand), R"({"BaseInfo":[],"Status":"0"})") << count;
        EXPECT_EQ(recording_device::called_functions(), Names{"devapi_get_host_num"});
    }
}

TEST_F(GetAdBaseInfo, StopsAtTheFirstDeviceThatCannotBeRead)
{
    for (const int32_t count : {2000000, INT32_MAX}) {
        recording_device::reset();
        writes<devapi_get_host_num>(count);
        when<devapi_get_ad_base_info>(
            [](AdBaseInfo *info) { return describe(info, info->HostIndex == 400 ? -1 : 0); });
        EXPECT_EQ(run(kCommand), kFailure);
        EXPECT_EQ(recording_device::calls().size(), 401u);
    }
    writes<devapi_get_host_num>(900);
    when<devapi_get_ad_base_info>([](AdBaseInfo *info) { return describe(info, 0); });
    const Json object = parse(run(kCommand));
    EXPECT_EQ(cJSON_GetArraySize(object->child), 900);
    EXPECT_EQ(print(object->child->child->prev), element(900));
}

} // namespace attached_devices_test

namespace attached_device_setting_test {

constexpr char kCommand[] = "SET_AD_BASE_INFO";
constexpr char kSuccess[] = R"({"Status":"0"})";

class SetAdBaseInfo : public HandlerTest {};

const LogLine kNotBound = {7, "ip/mac binding: not be used!"};
const LogLine kBound = {7, "ip/mac binding: is using!"};
const LogLine kNoAddress = {3, "ip/mac binding: ip addr missing!"};

const Request kNeeded({{"MAC", R"("AA:BB")"},
                       {"DevType", R"("phone")"},
                       {"ByName", R"("mine")"},
                       {"AccessEnable", R"("1")"}});
const Request kAll = kNeeded.with("DownLimit", R"("512")")
                         .with("UpLimit", R"("256")")
                         .with("SpeedLimit", R"("1")")
                         .with("StaticDhcpEnable", R"("1")")
                         .with("ip", R"("192.168.1.7")");

AdBaseSetting record_of(const char *down, const char *bound, const char *ip)
{
    AdBaseSetting setting = {};
    strcpy(setting.info.Mac, "AA:BB");
    strcpy(setting.info.DevType, "phone");
    strcpy(setting.info.ByName, "mine");
    strcpy(setting.info.AccessEnable, "1");
    strcpy(setting.info.DownLimit, down);
    strcpy(setting.info.StaticDhcpEnable, bound);
    strcpy(setting.info.ip, ip);
    return setting;
}

void expect_record(const AdBaseSetting &setting, const std::string &what)
{
    EXPECT_EQ(recording_device::calls().back(),
              (Call{"devapi_set_ad_base_info", {contents(&setting)}}))
        << what;
}

TEST_F(SetAdBaseInfo, WorksWithoutOptions)
{
    EXPECT_EQ(run(kCommand, kNeeded.json()), kSuccess);
    expect_record(record_of("-1", "-1", ""), "none");
    EXPECT_EQ(recording_host::log_lines(), LogLines{kNotBound});
}

TEST_F(SetAdBaseInfo, TheLimitIsSentOnlyWithItsSwitch)
{
    struct {
        const char *limit; // as JSON; null where it is not given
        const char *limited;
        const char *sent;
    } const limits[] = {
        {R"("512")", R"("1")", "512"},
        {R"("512")", R"("0")", "0"},
        {R"("512")", R"("")", "512"},
        {R"("512")", R"("00")", "512"},
        {R"("512")", R"("0 ")", "512"},
        {R"("512")", nullptr, "-1"},
        {R"("512")", "0", "-1"},
        {R"("512")", "1", "-1"},
        {R"("512")", "null", "-1"},
        {R"("512")", R"(["1"])", "-1"},
        {nullptr, R"("0")", "-1"},
        {nullptr, R"("1")", "-1"},
        {"512", R"("1")", "-1"},
        {"512", R"("0")", "-1"},
        {"null", R"("0")", "-1"},
        {R"("")", R"("1")", ""},
        {R"("1234567890123456")", R"("1")", "123456789012345"},
    };
    for (const auto &[limit, limited, sent] : limits) {
        Request request = kNeeded.with("UpLimit", R"("9")");
        request = limit != nullptr ? request.with("DownLimit", limit) : request;
        request = limited != nullptr ? request.with("SpeedLimit", limited) : request;
        EXPECT_EQ(run(kCommand, request.json()), kSuccess);
        expect_record(record_of(sent, "-1", ""), request.json());
    }
}

TEST_F(SetAdBaseInfo, AnAddressIsBoundOnlyWithTheSwitch)
{
    struct {
        const char *bound; // as JSON; null where it is not given
        const char *ip;
        const char *sent_bound;
        const char *sent_ip;
    } const bindings[] = {
        {R"("1")", R"("10.0.0.2")", "1", "10.0.0.2"},
        {R"("0")", R"("10.0.0.2")", "0", "10.0.0.2"},
        {R"("")", R"("")", "", ""},
        {R"("-1")", R"("x")", "-1", "x"},
        {R"("12345678")", R"("x")", "1234567", "x"},
        {nullptr, nullptr, "-1", ""},
        {nullptr, R"("10.0.0.2")", "-1", ""},
        {"1", R"("10.0.0.2")", "-1", ""},
        {"null", R"("10.0.0.2")", "-1", ""},
        {R"({"x":"1"})", nullptr, "-1", ""},
    };
    for (const auto &[bound, ip, sent_bound, sent_ip] : bindings) {
        recording_host::reset();
        Request request = bound != nullptr ? kNeeded.with("StaticDhcpEnable", bound) : kNeeded;
        request = ip != nullptr ? request.with("ip", ip) : request;
        EXPECT_EQ(run(kCommand, request.json()), kSuccess);
        expect_record(record_of("-1", sent_bound, sent_ip), request.json());
        EXPECT_EQ(recording_host::log_lines(),
                  LogLines{bound != nullptr && bound[0] == '"' ? kBound : kNotBound});
    }
}

TEST_F(SetAdBaseInfo, ABindingNeedsAnAddress)
{
    std::vector<Request> requests = kAll.without_text("ip");
    requests.push_back(kNeeded.with("StaticDhcpEnable", R"("0")"));
    for (const Request &request : requests) {
        recording_host::reset();
        EXPECT_EQ(run(kCommand, request.with("Other", "1").json()),
                  R"({"Other":1,)" + failure("ip/mac binding: ip addr missing!") + "}");
        EXPECT_EQ(recording_host::log_lines(), (LogLines{kBound, kNoAddress}));
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(SetAdBaseInfo, AnyTextIsAMacAddress)
{
    for (const char *mac : {"", " ", "NULL", "aa-bb-cc-dd-ee-ff", "not a MAC", ",", "%s%n",
                            "00:00:00:00:00:00:00:00"}) {
        EXPECT_EQ(run(kCommand, kNeeded.with("MAC", quoted(mac)).json()), kSuccess);
        AdBaseSetting expected = record_of("-1", "-1", "");
        memset(expected.info.Mac, '\0', sizeof expected.info.Mac);
        strcpy(expected.info.Mac, mac);
        expect_record(expected, mac);
    }
}

} // namespace attached_device_setting_test

// The rights of attached devices, and the firewall.
namespace attached_device_rights_test {

class GetAttachDeviceRight : public HandlerTest {};
class SetAttachDeviceRight : public HandlerTest {};
class SetFirewallSwitch : public HandlerTest {};

// ---- GET_ATTACH_DEVICE_RIGHT -------------------------------------------------------------------

constexpr char kGet[] = "GET_ATTACH_DEVICE_RIGHT";

// Texts that end in the host index, followed by garbage.
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

TEST_F(GetAttachDeviceRight, ReportsEveryDevice)
{
    writes<devapi_get_host_num>(2);
    rights_are_known();
    EXPECT_EQ(run(kGet, R"({"maclist":7})"),
              R"({"maclist":7,"MACList":[)" + element(1) + "," + element(2) + R"(],"Status":"0"})");
    const int32_t none = 0;
    AttachDeviceRight first = {};
    first.HostIndex = 1;
    AttachDeviceRight second = {};
    second.HostIndex = 2;
    EXPECT_EQ(recording_device::calls(),
              (Calls{{"devapi_get_host_num", {contents(&none)}},
                     {"devapi_get_attach_device_right", {contents(&first)}},
                     {"devapi_get_attach_device_right", {contents(&second)}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(GetAttachDeviceRight, UsesTheCountThatAFailedCallLeft)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        recording_host::reset();
        writes<devapi_get_host_num>(2, result);
        rights_are_known();
        EXPECT_EQ(run(kGet),
                  R"({"MACList":[)" + element(1) + "," + element(2) + R"(],"Status":"0"})");
        EXPECT_EQ(recording_host::log_lines(),
                  (LogLines{{3, "host_num error! return =" + std::to_string(result) + "!\n"}}));
    }
    when<devapi_get_host_num>([](int32_t *) { return -1; });
    EXPECT_EQ(run(kGet), R"({"MACList":[],"Status":"0"})");
}

// What the line calls the index is the address of the index text, next to the record on the stack.
TEST_F(GetAttachDeviceRight, ADeviceThatCannotBeReadIsLeftOutAndLogged)
{
    for (const int32_t result : {-1, 1, 2, -2, 1000, INT32_MIN}) {
        recording_host::reset();
        writes<devapi_get_host_num>(3);
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
        const auto nearby = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(record));
        EXPECT_LT(std::abs(static_cast<int32_t>(address - nearby)), 4096) << line.text;
    }
}

TEST_F(GetAttachDeviceRight, ThereMayBeNoDevicesOrMany)
{
    for (const int32_t count : {0, -1, -5, INT32_MIN}) {
        recording_device::reset();
        writes<devapi_get_host_num>(count);
        EXPECT_EQ(run(kGet), R"({"MACList":[],"Status":"0"})") << count;
        EXPECT_EQ(recording_device::calls().size(), 1u);
    }
    writes<devapi_get_host_num>(20000);
    when<devapi_get_attach_device_right>([](AttachDeviceRight *right) {
        return describe(right, right->HostIndex % 2 == 0 ? -1 : 0);
    });
    const Json object = parse(run(kGet));
    EXPECT_EQ(cJSON_GetArraySize(object->child), 10000);
    EXPECT_EQ(print(object->child->child->prev), element(19999));
    EXPECT_EQ(recording_host::log_lines().size(), 10000u);
}

// ---- SET_ATTACH_DEVICE_RIGHT -------------------------------------------------------------------

TEST_F(SetAttachDeviceRight, ReturnsTheResultOfTheDevice)
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

TEST_F(SetFirewallSwitch, SwitchesTheFirewallAndLeavesTheKey)
{
    for (const size_t length : {0u, 1u, 14u, 15u, 16u, 10000u}) {
        recording_device::reset();
        const std::string text = text_of_length(length);
        EXPECT_EQ(run(kFirewall, R"({"enable":)" + quoted(text) + R"(,"Enable":"2"})"),
                  R"({"enable":)" + quoted(text) + R"(,"Enable":"2","Status":"0"})");
        FirewallSwitch expected = {};
        text.copy(expected.Enable, 15);
        EXPECT_EQ(recording_device::calls(),
                  (Calls{{"devapi_set_firewall_switch", {contents(&expected)}}}));
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_F(SetFirewallSwitch, AddsNothingWithoutASwitch)
{
    for (const Request &request : Request({}).with("Other", "1").without_text("Enable")) {
        EXPECT_EQ(run(kFirewall, request.json()), request.json());
    }
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_TRUE(recording_host::log_lines().empty());
}

} // namespace attached_device_rights_test
