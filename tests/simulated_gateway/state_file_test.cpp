// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"
#include "sample.h"

#include <cstdlib>
#include <ctime>
#include <random>
#include <sys/resource.h>

namespace {

class StateFileTest : public GatewayTest {
  protected:
    std::string state() const { return path("state.json"); }

    // A state as the gateway first writes it, for the test to change.
    nlohmann::json written_state()
    {
        write_state();
        return state_to_vary(state());
    }
    void write_state()
    {
        EXPECT_EQ(open({.state_file = state()}), "");
        close();
    }
    std::string copy() const { return state() + ".good"; }

    // The error of opening a state file with this text, without the file's name.
    std::string message_about(const std::string &text)
    {
        write("state.json", text);
        const std::string error = open({.state_file = state()});
        close();
        return error;
    }

    // The error of opening a state file with this text; the file has to stay unchanged.
    std::string error_of(const std::string &text)
    {
        const std::string error = message_about(text);
        EXPECT_EQ(read(state()), text);
        return error.starts_with(state()) ? "state.json" + error.substr(state().size()) : error;
    }
};

TEST_F(StateFileTest, IsCreatedWhenMissingAndHoldsEverything)
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

// A field that homes of earlier versions do not have is optional.
TEST_F(StateFileTest, OfVersion010IsLoaded)
{
    size_t count = 0;
    for (const auto &file : std::filesystem::directory_iterator(OLD_STATES)) {
        write("state.json", read(file.path()));
        EXPECT_EQ(open({.state_file = state()}), "");
        close();
        ++count;
    }
    EXPECT_GT(count, 0U);
}

TEST_F(StateFileTest, IsUsableWithoutItsScenario)
{
    nlohmann::json home = house();
    home["identity"]["device_type"] = "FROM-FILE";
    const std::string scenario = write("my_home.json", home.dump());
    ASSERT_EQ(open({.scenario = scenario, .state_file = state()}), "");
    close();
    std::filesystem::remove(scenario);
    ASSERT_EQ(open({.state_file = state()}), "");
    const SnInfo info = reported_by(devapi_get_sn_info);
    EXPECT_STREQ(info.DeviceType, "FROM-FILE");
}

TEST_F(StateFileTest, OfAnotherScenarioIsAnErrorThatNamesBoth)
{
    write_state();
    const nlohmann::json made = json_of(state());
    EXPECT_EQ(open({.scenario = "castle", .state_file = state()}),
              state() + ": holds the home of scenario \"three_storey_house\", not of \"castle\"");
    EXPECT_EQ(json_of(state()), made);
    EXPECT_EQ(open({.scenario = "three_storey_house", .state_file = state()}), "");
}

TEST_F(StateFileTest, DamagedIsAnErrorAndStaysUnchanged)
{
    const std::string whole = written_state().dump();
    EXPECT_EQ(error_of(""), "state.json: is empty");
    EXPECT_EQ(error_of(whole.substr(0, whole.size() / 2)).substr(0, 20), "state.json: line 1, ");
    EXPECT_EQ(error_of("{\"a\": 1, \"a\": 2}"), "state.json: /a: is repeated");
    EXPECT_EQ(error_of(house().dump()), "state.json: /format: is \"simulated gateway scenario\", "
                                        "not \"simulated gateway state\"");
    const struct {
        const char *pointer;
        nlohmann::json value;
        const char *expected_error;
    } wrong_values[] = {
        {"/version", 2, "is 2, not 1"},
        {"/scenario", "", "is empty"},
        {"/boot_time", -1, "-1 is not within 0 to 9223372036854775807"},
        {"/boot_count", 0, "0 is not within 1 to 2147483647"},
        {"/home/identity/mac", "x", "\"x\" is not a MAC address like \"3C:6A:D2:10:4F:20\""},
        {"/home/lan/dhcp_pool/end", "192.168.1.5", "192.168.1.5 is before the start of the pool"},
        {"/factory/hosts/0/ip", "10.0.0.1", "10.0.0.1 is not a LAN address"},
        {"/home/hosts/0/colour", "red", "there is no such field"},
    };
    for (const auto &[pointer, value, expected_error] : wrong_values) {
        nlohmann::json wrong = nlohmann::json::parse(whole);
        wrong[nlohmann::json::json_pointer(pointer)] = value;
        EXPECT_EQ(error_of(wrong.dump()),
                  std::string("state.json: ") + pointer + ": " + expected_error);
    }
}

TEST_F(StateFileTest, WithoutAChecksumItLoadsAndGetsOne)
{
    nlohmann::json old = written_state();
    old["home"]["name"] = "Kept";
    ASSERT_EQ(message_about(old.dump()), "");
    EXPECT_EQ(json_of(state()).at("home").at("name"), "Kept");
    EXPECT_EQ(json_of(state()).at("checksum").get<std::string>().size(), 64u);
    EXPECT_EQ(read(copy()), read(state()));
}

TEST_F(StateFileTest, WithAnotherChecksumItIsRefused)
{
    setenv("SIMULATED_GATEWAY_TIME", std::to_string(kTime).c_str(), 1);
    write_state();
    const std::string whole = read(state());
    nlohmann::ordered_json changed = nlohmann::ordered_json::parse(whole);
    changed["home"]["name"] = "Changed";
    std::filesystem::remove(copy());
    const std::string not_that = "/checksum: does not match the content of the file";
    EXPECT_EQ(error_of(changed.dump()), "state.json: " + not_that);
    for (const nlohmann::ordered_json &checksum :
         {nlohmann::ordered_json(7), nlohmann::ordered_json(nullptr), nlohmann::ordered_json("")}) {
        changed = nlohmann::ordered_json::parse(whole);
        changed["checksum"] = checksum;
        EXPECT_EQ(error_of(changed.dump()), "state.json: " + not_that);
    }
    // The checksum covers the content, not the layout.
    EXPECT_EQ(message_about(nlohmann::ordered_json::parse(whole).dump(1)), "");
    EXPECT_TRUE(read(state()) == whole);
}

TEST_F(StateFileTest, AFlippedBitIsRefusedOrChangesNothing)
{
    setenv("SIMULATED_GATEWAY_TIME", std::to_string(kTime).c_str(), 1);
    write_state();
    const std::string whole = read(state());
    std::minstd_rand random(1);
    int refused = 0;
    const int flips = 200 / sample_of(5);
    for (int times = 0; times < flips; ++times) {
        std::string flipped = whole;
        const size_t bit = random() % (8 * whole.size());
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ 1 << bit % 8);
        const std::string error = message_about(flipped);
        if (error.empty()) {
            EXPECT_EQ(read(state()), whole) << "bit " << bit;
        } else {
            ++refused;
            EXPECT_EQ(read(state()), flipped) << "bit " << bit;
            EXPECT_TRUE(error.starts_with(state() + ": ")) << error;
            EXPECT_TRUE(error.ends_with("; the last good copy is " + copy())) << error;
        }
        EXPECT_EQ(read(copy()), whole) << "bit " << bit;
    }
    EXPECT_GT(refused, flips * 3 / 4);
}

TEST_F(StateFileTest, TheCopyOfADamagedOneHasTheLastChange)
{
    ASSERT_EQ(open({.state_file = state()}), "");
    simulated_gateway_power_cycle();
    simulated_gateway_power_cycle();
    close();
    const std::string whole = read(state());
    ASSERT_NE(message_about(whole.substr(0, 1000)), "");
    std::filesystem::copy_file(copy(), state(), std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(read(state()), whole);
    EXPECT_EQ(open({.state_file = state()}), "");
    EXPECT_EQ(json_of(state()).at("boot_count"), 3);
}

TEST_F(StateFileTest, AnInvalidCopyIsNotOffered)
{
    write_state();
    const std::string whole = read(state());
    write("state.json.good", whole.substr(0, whole.size() / 2));
    EXPECT_EQ(error_of(""), "state.json: is empty");
    EXPECT_EQ(read(copy()), whole.substr(0, whole.size() / 2));
}

TEST_F(StateFileTest, OnlyItsOwnerReadsItAndItsCopy)
{
    write_state();
    for (const std::string &file : {state(), copy()}) {
        EXPECT_EQ(std::filesystem::status(file).permissions(),
                  std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    }
}

TEST_F(StateFileTest, AFolderOrALinkToNowhereIsAnError)
{
    std::filesystem::create_directory(state());
    EXPECT_EQ(open({.state_file = state()}), state() + ": is not a regular file");
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

TEST_F(StateFileTest, AClockThatWentBackGivesNoNegativeUptime)
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
    // The folder has the name of the temporary file, so nothing can be written.
    std::filesystem::create_directory(state() + ".tmp");
    simulated_gateway_power_cycle();
    EXPECT_EQ(lines(path("trace")).at(0).substr(3),
              " power cycle failed, " + state() + ".tmp: Is a directory");
    std::filesystem::remove(state() + ".tmp");
    simulated_gateway_power_cycle();
    EXPECT_EQ(json_of(state()).at("boot_count"), 2);
}

TEST_F(StateFileTest, AChangeWhoseCopyCannotBeSavedDoesNotHappen)
{
    ASSERT_EQ(open({.state_file = state(), .trace = path("trace")}), "");
    const std::string before = read(state());
    std::filesystem::create_directory(copy() + ".tmp");
    simulated_gateway_power_cycle();
    EXPECT_EQ(lines(path("trace")).at(0).substr(3),
              " power cycle failed, " + copy() + ".tmp: Is a directory");
    EXPECT_EQ(read(state()), before);
}

TEST_F(StateFileTest, IsFoundAfterAChangeOfTheWorkingDirectory)
{
    const std::filesystem::path start = std::filesystem::current_path();
    std::filesystem::current_path(path(""));
    ASSERT_EQ(open({.state_file = "state.json"}), "");
    std::filesystem::current_path(start);
    simulated_gateway_power_cycle();
    EXPECT_EQ(json_of(state()).at("boot_count"), 2);
}

TEST_F(StateFileTest, AFileSizeLimitDoesNotEndTheProcess)
{
    ASSERT_EQ(open({.state_file = state(), .trace = path("trace")}), "");
    const auto power_cycle_with_little_space = [] {
        const rlimit limit = {.rlim_cur = 1024, .rlim_max = 1024};
        setrlimit(RLIMIT_FSIZE, &limit);
        simulated_gateway_power_cycle();
        std::exit(0);
    };
    EXPECT_EXIT(power_cycle_with_little_space(), testing::ExitedWithCode(0), "");
    EXPECT_THAT(read(path("trace")),
                HasSubstr("power cycle failed, " + state() + ": File too large"));
}

} // namespace
