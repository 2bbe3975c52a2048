#include "gateway_fixture.h"

#include <ctime>
#include <sys/resource.h>

namespace {

class StateFileTest : public GatewayTest {
  protected:
    std::string state() const { return path("state.json"); }

    // A state as the gateway wrote it, to be varied.
    nlohmann::json written_state()
    {
        EXPECT_EQ(open({.state_file = state()}), "");
        close();
        return json_of(state());
    }

    // What opening a state file with this text says; the file has to stay as it is.
    std::string error_of(const std::string &text)
    {
        write("state.json", text);
        const std::string error = open({.state_file = state()});
        close();
        EXPECT_EQ(read(state()), text);
        return error.starts_with(state()) ? "state.json" + error.substr(state().size()) : error;
    }
};

TEST_F(StateFileTest, IsMadeWhenItIsMissingAndHoldsEverything)
{
    const time_t before = time(nullptr);
    const nlohmann::json made = written_state();
    EXPECT_EQ(made.at("format"), "simulated gateway state");
    EXPECT_EQ(made.at("version"), 1);
    EXPECT_EQ(made.at("scenario"), "three_storey_house");
    EXPECT_EQ(made.at("boot_count"), 1);
    EXPECT_GE(made.at("boot_time"), before);
    nlohmann::json home = house();
    home.erase("format");
    home.erase("version");
    EXPECT_EQ(made.at("home"), home);
    EXPECT_EQ(made.at("factory"), home);
}

TEST_F(StateFileTest, IsOfUseWithoutItsScenario)
{
    nlohmann::json home = house();
    home["identity"]["device_type"] = "FROM-FILE";
    const std::string scenario = write("my_home.json", home.dump());
    ASSERT_EQ(open({.scenario = scenario, .state_file = state()}), "");
    close();
    std::filesystem::remove(scenario);
    ASSERT_EQ(open({.state_file = state()}), "");
    SnInfo info = {};
    EXPECT_EQ(devapi_get_sn_info(&info), 0);
    EXPECT_STREQ(info.DeviceType, "FROM-FILE");
}

TEST_F(StateFileTest, OfAnotherScenarioIsAnErrorThatNamesBoth)
{
    const nlohmann::json made = written_state();
    EXPECT_EQ(open({.scenario = "castle", .state_file = state()}),
              state() + ": holds the home of scenario \"three_storey_house\", not of \"castle\"");
    EXPECT_EQ(json_of(state()), made);
    EXPECT_EQ(open({.scenario = "three_storey_house", .state_file = state()}), "");
}

TEST_F(StateFileTest, DamagedIsAnErrorAndStaysAsItIs)
{
    const std::string whole = written_state().dump();
    EXPECT_EQ(error_of(""), "state.json: is empty");
    EXPECT_EQ(error_of(whole.substr(0, whole.size() / 2)).substr(0, 20), "state.json: line 1, ");
    EXPECT_EQ(error_of("{\"a\": 1, \"a\": 2}"), "state.json: /a: stands twice");
    EXPECT_EQ(error_of(house().dump()), "state.json: /format: is \"simulated gateway scenario\", "
                                        "not \"simulated gateway state\"");
    const struct {
        const char *pointer;
        nlohmann::json value;
        const char *complaint;
    } wrong_values[] = {
        {"/version", 2, "is 2, not 1"},
        {"/scenario", "", "is empty"},
        {"/boot_time", -1, "-1 is not within 0 to 9223372036854775807"},
        {"/boot_count", 0, "0 is not within 1 to 2147483647"},
        {"/home/identity/mac", "x", "\"x\" is no MAC address like \"3C:6A:D2:10:4F:20\""},
        {"/home/lan/dhcp_pool/end", "192.168.1.5", "192.168.1.5 lies before the start of the pool"},
        {"/factory/hosts/0/ip", "10.0.0.1", "10.0.0.1 is no address of the LAN"},
        {"/home/hosts/0/colour", "red", "there is no such field"},
    };
    for (const auto &[pointer, value, complaint] : wrong_values) {
        nlohmann::json wrong = nlohmann::json::parse(whole);
        wrong[nlohmann::json::json_pointer(pointer)] = value;
        EXPECT_EQ(error_of(wrong.dump()), std::string("state.json: ") + pointer + ": " + complaint);
    }
}

TEST_F(StateFileTest, AFolderOrALinkToNowhereIsAnError)
{
    std::filesystem::create_directory(state());
    EXPECT_EQ(open({.state_file = state()}), state() + ": is no regular file");
    std::filesystem::create_symlink(path("nowhere"), path("link"));
    EXPECT_EQ(open({.state_file = path("link")}), path("link") + ": No such file or directory");
    EXPECT_EQ(open({.state_file = path("no/state")}),
              path("no/state.lock") + ": No such file or directory");
}

TEST_F(StateFileTest, UptimeRunsBetweenProcessesAndAPowerCycleResetsIt)
{
    nlohmann::json long_running = written_state();
    long_running["boot_time"] = time(nullptr) - 5000;
    write("state.json", long_running.dump());

    ASSERT_EQ(open({.state_file = state(), .trace = path("trace")}), "");
    call();
    simulated_gateway_power_cycle();
    call();
    close();
    const std::vector<std::string> trace = lines(path("trace"));
    ASSERT_EQ(trace.size(), 3u);
    EXPECT_GE(std::stol(trace[0].substr(1)), 5000);
    EXPECT_LT(std::stol(trace[2].substr(1)), 5000);
    EXPECT_EQ(json_of(state()).at("boot_count"), 2);
    EXPECT_GT(json_of(state()).at("boot_time"), long_running.at("boot_time"));
}

TEST_F(StateFileTest, AClockThatWentBackIsNoNegativeUptime)
{
    nlohmann::json future = written_state();
    future["boot_time"] = INT64_MAX;
    write("state.json", future.dump());
    ASSERT_EQ(open({.state_file = state(), .trace = path("trace")}), "");
    call();
    EXPECT_EQ(lines(path("trace")).at(0).substr(0, 4), "[0] ");
}

TEST_F(StateFileTest, IsSavedAfterEveryChangeAndNotOnlyOnClose)
{
    ASSERT_EQ(open({.state_file = state()}), "");
    simulated_gateway_power_cycle();
    EXPECT_EQ(json_of(state()).at("boot_count"), 2);
    simulated_gateway_power_cycle();
    EXPECT_EQ(json_of(state()).at("boot_count"), 3);
}

TEST_F(StateFileTest, AChangeThatCannotBeSavedDoesNotHappen)
{
    ASSERT_EQ(open({.state_file = state(), .trace = path("trace")}), "");
    // Nothing can be written where a folder has the name of the temporary file.
    std::filesystem::create_directory(state() + ".tmp");
    simulated_gateway_power_cycle();
    EXPECT_EQ(lines(path("trace")).at(0).substr(3),
              " power cycle failed, " + state() + ".tmp: Is a directory");
    std::filesystem::remove(state() + ".tmp");
    simulated_gateway_power_cycle();
    EXPECT_EQ(json_of(state()).at("boot_count"), 2);
}

TEST_F(StateFileTest, IsFoundWhereverTheHostGoes)
{
    const std::filesystem::path start = std::filesystem::current_path();
    std::filesystem::current_path(path(""));
    ASSERT_EQ(open({.state_file = "state.json"}), "");
    std::filesystem::current_path(start);
    simulated_gateway_power_cycle();
    EXPECT_EQ(json_of(state()).at("boot_count"), 2);
}

TEST_F(StateFileTest, AFileSizeLimitIsNoReasonToEnd)
{
    ASSERT_EQ(open({.state_file = state(), .trace = path("trace")}), "");
    const auto power_cycle_with_little_space = [] {
        const rlimit limit = {.rlim_cur = 1024, .rlim_max = 1024};
        setrlimit(RLIMIT_FSIZE, &limit);
        simulated_gateway_power_cycle();
        std::exit(0);
    };
    EXPECT_EXIT(power_cycle_with_little_space(), testing::ExitedWithCode(0), "");
    EXPECT_NE(read(path("trace")).find("power cycle failed, " + state() + ": File too large"),
              std::string::npos);
}

} // namespace
