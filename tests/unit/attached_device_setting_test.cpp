#include "handler_test.h"
#include "request.h"

#include <cstring>

namespace attached_device_setting_test {

using recording_device::Call;
using recording_device::contents;
using recording_host::LogLine;

constexpr char kCommand[] = "SET_AD_BASE_INFO";
constexpr char kSuccess[] = R"({"Status":"0"})";

class AttachedDeviceSettingTest : public HandlerTest {};

const LogLine kInvalid = {3, "json_set_attach_dev_base_info : Err, invalid param\n"};
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

TEST_F(AttachedDeviceSettingTest, ASettingMayGiveEverything)
{
    EXPECT_EQ(run(kCommand, kAll.with("Name", R"("kept")").json()),
              R"({"Name":"kept","Status":"0"})");
    EXPECT_EQ(recording_device::calls().size(), 1u);
    expect_record(record_of("512", "1", "192.168.1.7"), "all");
    EXPECT_EQ(recording_host::log_lines(), std::vector<LogLine>{kBound});
}

TEST_F(AttachedDeviceSettingTest, ASettingMayLeaveOutItsOptions)
{
    EXPECT_EQ(run(kCommand, kNeeded.json()), kSuccess);
    expect_record(record_of("-1", "-1", ""), "none");
    EXPECT_EQ(recording_host::log_lines(), std::vector<LogLine>{kNotBound});
}

TEST_F(AttachedDeviceSettingTest, ASettingNeedsFourKeys)
{
    for (const auto &[key, json] : kNeeded.keys()) {
        std::vector<Request> requests = {kAll.without(key), kNeeded.without(key)};
        for (const std::string &no_text : kNoTexts) {
            requests.push_back(kAll.with(key, no_text));
        }
        for (const Request &request : requests) {
            recording_host::reset();
            EXPECT_EQ(run(kCommand, request.with("Other", "1").json()),
                      R"({"Other":1,)" + failure("INVALID_PARAM") + "}");
            EXPECT_EQ(recording_host::log_lines(), std::vector<LogLine>{kInvalid});
        }
    }
    EXPECT_EQ(run(kCommand), "{" + failure("INVALID_PARAM") + "}");
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(AttachedDeviceSettingTest, TheLimitIsSentOnlyWithItsSwitch)
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

TEST_F(AttachedDeviceSettingTest, AnAddressIsBoundOnlyWithTheSwitch)
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
                  std::vector<LogLine>{bound != nullptr && bound[0] == '"' ? kBound : kNotBound});
    }
}

TEST_F(AttachedDeviceSettingTest, ABindingNeedsAnAddress)
{
    std::vector<Request> requests = {kAll.without("ip"),
                                     kNeeded.with("StaticDhcpEnable", R"("0")")};
    for (const std::string &no_text : kNoTexts) {
        requests.push_back(kAll.with("ip", no_text));
    }
    for (const Request &request : requests) {
        recording_host::reset();
        EXPECT_EQ(run(kCommand, request.with("Other", "1").json()),
                  R"({"Other":1,)" + failure("ip/mac binding: ip addr missing!") + "}");
        EXPECT_EQ(recording_host::log_lines(), (std::vector<LogLine>{kBound, kNoAddress}));
    }
    EXPECT_TRUE(recording_device::calls().empty());
}

TEST_F(AttachedDeviceSettingTest, AnyTextIsAMacAddress)
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
