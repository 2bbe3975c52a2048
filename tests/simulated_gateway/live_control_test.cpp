// SPDX-License-Identifier: MIT
// Settings that the host changes while the gateway is open.
#include "gateway_fixture.h"

#include <map>

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::MatchesRegex;

namespace live_control_test {

constexpr size_t kErrorSize = 1024;

// Empty on success, else the error.
std::string set_faults(std::vector<const char *> faults)
{
    faults.push_back(nullptr);
    char error[kErrorSize] = "";
    const int32_t result = simulated_gateway_set_faults(faults.data(), error, sizeof(error));
    EXPECT_EQ(result, *error == '\0' ? 0 : -1);
    return error;
}

std::string load(const char *scenario)
{
    char error[kErrorSize] = "";
    const int32_t result = simulated_gateway_load(scenario, error, sizeof(error));
    EXPECT_EQ(result, *error == '\0' ? 0 : -1);
    return error;
}

std::string set_clock(const char *clock)
{
    char error[kErrorSize] = "";
    const int32_t result = simulated_gateway_set_clock(clock, error, sizeof(error));
    EXPECT_EQ(result, *error == '\0' ? 0 : -1);
    return error;
}

std::map<std::string, std::vector<std::string>> shown()
{
    std::map<std::string, std::vector<std::string>> all;
    simulated_gateway_show(
        [](const char *name, const char *text, void *context) {
            (*static_cast<decltype(all) *>(context))[name].emplace_back(text);
        },
        &all);
    return all;
}

std::string gateway_name()
{
    const HgBaseInfo info = reported_by(devapi_get_hg_base_info);
    return info.Name;
}

std::string device_type()
{
    const SnInfo info = reported_by(devapi_get_sn_info);
    return info.DeviceType;
}

void rename_gateway(const std::string &name)
{
    HgBaseInfo info = {};
    set(info.Name, name);
    ASSERT_EQ(devapi_set_hg_base_info(&info), 0);
}

int64_t uptime()
{
    const HgBaseInfo info = reported_by(devapi_get_hg_base_info);
    return std::stoll(info.UpTime);
}

class LiveControl : public GatewayTest {
  protected:
    ~LiveControl() override
    {
        simulated_gateway_on_call(nullptr, nullptr);
        set_clock(nullptr);
    }
};

TEST_F(LiveControl, ReplacesTheFaultPlan)
{
    ASSERT_EQ(open({.faults = {"devapi_get_sn_info=-1"}}), "");
    EXPECT_EQ(call(), -1);
    EXPECT_EQ(set_faults({"devapi_get_sn_info=7*2@1ms", "devapi_get_system_info=5"}), "");
    EXPECT_EQ(call(), 7);
    EXPECT_THAT(shown()["fault"],
                ElementsAre("devapi_get_sn_info=7*1@1ms", "devapi_get_system_info=5"));
    EXPECT_EQ(set_faults({}), "");
    EXPECT_EQ(call(), 0);
    EXPECT_THAT(shown()["fault"], IsEmpty());
}

TEST_F(LiveControl, KeepsTheFaultPlanWhenOneIsWrong)
{
    ASSERT_EQ(open({.faults = {"devapi_get_sn_info=9"}}), "");
    EXPECT_EQ(set_faults({"devapi_get_system_info=-1", "devapi_get_sn_info"}),
              "fault \"devapi_get_sn_info\": has to be FUNCTION=RESULT[*COUNT][@DELAYms]");
    EXPECT_THAT(shown()["fault"], ElementsAre("devapi_get_sn_info=9"));
    EXPECT_EQ(call(), 9);
}

TEST_F(LiveControl, LoadsAnotherHome)
{
    ASSERT_EQ(open({.scenario = "three_storey_house", .state_file = path("state")}), "");
    EXPECT_EQ(load("operator_variant"), "");
    EXPECT_EQ(gateway_name(), "Casa Arven");
    EXPECT_THAT(shown()["scenario"], ElementsAre("operator_variant"));
    EXPECT_EQ(json_of(path("state")).at("scenario"), "operator_variant");
    EXPECT_EQ(json_of(path("state")).at("opened_as"), "three_storey_house");

    // The same command line as before opens what is in the file.
    EXPECT_EQ(reopen({.scenario = "three_storey_house", .state_file = path("state")}), "");
    EXPECT_EQ(gateway_name(), "Casa Arven");
    EXPECT_THAT(reopen({.scenario = "single_router", .state_file = path("state")}),
                HasSubstr("holds the home of scenario \"operator_variant\""));

    EXPECT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_EQ(load("three_storey_house"), "");
    EXPECT_FALSE(json_of(path("state")).contains("opened_as"));
}

TEST_F(LiveControl, ResetsTheHomeOfAScenarioFile)
{
    nlohmann::json home = house();
    home["identity"]["device_type"] = "FROM-FILE";
    const std::string file = write("mine.json", home.dump());
    ASSERT_EQ(open({.scenario = file, .state_file = path("state")}), "");
    rename_gateway("Renamed");
    std::filesystem::remove(file);
    EXPECT_EQ(load("mine"), "");
    EXPECT_EQ(gateway_name(), "Lindenhof");
    EXPECT_EQ(device_type(), "FROM-FILE");
    EXPECT_EQ(reopen({.state_file = path("state")}), "");
    EXPECT_EQ(device_type(), "FROM-FILE");
}

TEST_F(LiveControl, LoadsNoFilesAndNoUnknownScenarios)
{
    ASSERT_EQ(open({}), "");
    rename_gateway("Renamed");
    constexpr char kNoFiles[] = "a scenario file can only be given when the gateway is opened";
    EXPECT_EQ(load("/etc/passwd"), kNoFiles);
    EXPECT_EQ(load("castle.json"), kNoFiles);
    EXPECT_THAT(load("castle"), StartsWith("there is no scenario \"castle\"; built in: "));
    EXPECT_THAT(load(""), StartsWith("there is no scenario \"\""));
    EXPECT_THAT(load(nullptr), StartsWith("there is no scenario \"\""));
    EXPECT_THAT(load(std::string(5000, 'x').c_str()), StartsWith("there is no scenario \"xx"));
    EXPECT_EQ(gateway_name(), "Renamed");
    EXPECT_THAT(shown()["scenarios"], Contains("single_router"));
}

TEST_F(LiveControl, KeepsTheHomeThatItCannotSave)
{
    const std::string folder = path("folder");
    std::filesystem::create_directory(folder);
    ASSERT_EQ(open({.state_file = folder + "/state"}), "");
    std::filesystem::remove_all(folder);
    EXPECT_THAT(load("single_router"), Not(IsEmpty()));
    EXPECT_THAT(shown()["scenario"], ElementsAre("three_storey_house"));
}

TEST_F(LiveControl, SetsTheClock)
{
    ASSERT_EQ(open({}), "");
    EXPECT_THAT(shown()["clock"], IsEmpty());
    EXPECT_THAT(shown()["time"], ElementsAre(MatchesRegex("20..-..-..T..:..:..")));

    EXPECT_EQ(set_clock("2028-02-29T23:59:59"), "");
    EXPECT_THAT(shown()["clock"], ElementsAre("2028-02-29T23:59:59"));
    EXPECT_THAT(shown()["time"], ElementsAre("2028-02-29T23:59:59"));
    const int64_t before = uptime();
    EXPECT_EQ(set_clock("+3601"), "");
    EXPECT_THAT(shown()["clock"], ElementsAre("2028-03-01T01:00:00"));
    EXPECT_EQ(uptime() - before, 3601);

    EXPECT_EQ(set_clock(nullptr), "");
    EXPECT_THAT(shown()["clock"], IsEmpty());
    EXPECT_EQ(set_clock("+60"), "");
    EXPECT_EQ(set_clock("+60"), "");
    EXPECT_THAT(shown()["clock"], ElementsAre("+120")) << "it runs, ahead of the machine's";
    EXPECT_EQ(set_clock(nullptr), "");
    EXPECT_THAT(shown()["clock"], IsEmpty());
}

TEST_F(LiveControl, RefusesWhatIsNoTime)
{
    ASSERT_EQ(open({}), "");
    EXPECT_EQ(set_clock("2026-01-01T00:00:00"), "");
    for (const char *clock :
         {"", "+", "+-1", "++1", "+1s", "+316224001", "+99999999999999999999", "1767225600", "-60",
          "2026-02-29T00:00:00", "2026-13-01T00:00:00", "2026-01-01T24:00:00",
          "2026-01-01T00:60:00", "2026-01-01T00:00:60", "1969-12-31T23:59:59",
          "2026-01-01 00:00:00", "2026-01-01T00:00:00Z", "2026-01-01"}) {
        EXPECT_THAT(set_clock(clock), StartsWith("clock: \"")) << clock;
    }
    EXPECT_THAT(shown()["clock"], ElementsAre("2026-01-01T00:00:00"));
}

TEST_F(LiveControl, LimitsHowFarARunningClockIsAhead)
{
    ASSERT_EQ(open({}), "");
    for (int decade = 0; decade < 10; ++decade) {
        EXPECT_EQ(set_clock("+316224000"), "");
        EXPECT_EQ(call(), 0);
    }
    EXPECT_EQ(set_clock("+1"), "clock: more than a hundred years ahead of the machine's");
    EXPECT_EQ(call(), 0);
}

TEST_F(LiveControl, ReportsCallsWithSecretsMasked)
{
    ASSERT_EQ(open({.faults = {"devapi_get_system_info=5*1"}, .show_secrets = true}), "");
    std::vector<std::string> calls;
    simulated_gateway_on_call(
        [](const char *function, int32_t result, const char *line, void *all) {
            static_cast<std::vector<std::string> *>(all)->push_back(
                std::string(function) + " " + std::to_string(result) + ": " + line);
        },
        &calls);
    SystemInfo system = {};
    EXPECT_EQ(call(), 0);
    EXPECT_EQ(devapi_get_system_info(&system), 5);
    const LoginInfo admin = reported_by(devapi_get_admin_info);
    ASSERT_STRNE(admin.Password, "");
    simulated_gateway_on_call(nullptr, nullptr);
    EXPECT_EQ(call(), 0);
    ASSERT_EQ(calls.size(), 3U);
    EXPECT_THAT(
        calls[0],
        MatchesRegex(R"(devapi_get_sn_info 0: \[[0-9]+\] devapi_get_sn_info\(.*\) = 0 in .*)"));
    EXPECT_THAT(calls[1], EndsWith(", fault"));
    EXPECT_THAT(calls[2], Not(HasSubstr(admin.Password)));
}

TEST_F(LiveControl, NeedsAnOpenGateway)
{
    close();
    EXPECT_EQ(set_faults({}), "no gateway is open");
    EXPECT_EQ(load("single_router"), "no gateway is open");
    EXPECT_EQ(set_clock(nullptr), "no gateway is open");
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_EQ(simulated_gateway_load("single_router", nullptr, 0), -1);
}

} // namespace live_control_test
