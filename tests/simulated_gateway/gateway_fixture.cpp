// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include <cstdlib>
#include <fstream>
#include <sstream>

GatewayTest::GatewayTest()
{
    std::string name = (std::filesystem::temp_directory_path() / "gateway_test_XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    folder_ = name;
    for (const char *variable :
         {"SIMULATED_GATEWAY_SCENARIO", "SIMULATED_GATEWAY_STATE", "SIMULATED_GATEWAY_FAULTS",
          "SIMULATED_GATEWAY_TRACE", "SIMULATED_GATEWAY_SHOW_SECRETS", "SIMULATED_GATEWAY_TIME",
          "SIMULATED_GATEWAY_LARGEST_IMAGE", "SIMULATED_GATEWAY_CONNECT_TIMEOUT",
          "SIMULATED_GATEWAY_STALL_TIMEOUT", "SIMULATED_GATEWAY_TRANSFER_TIMEOUT",
          "SIMULATED_GATEWAY_CA_FILE", "SIMULATED_GATEWAY_FIRMWARE_FOLDER",
          "SIMULATED_GATEWAY_FIRMWARE_KEY"}) {
        unsetenv(variable);
    }
}

GatewayTest::~GatewayTest()
{
    close();
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

std::string GatewayTest::open(const Options &options)
{
    const auto text_or_null = [](const std::string &text) {
        return text.empty() ? nullptr : text.c_str();
    };
    std::vector<const char *> faults;
    for (const std::string &fault : options.faults) {
        faults.push_back(fault.c_str());
    }
    faults.push_back(nullptr);

    SimulatedGatewayOptions given = {};
    given.scenario = text_or_null(options.scenario);
    given.state_file = text_or_null(options.state_file);
    given.faults = options.faults.empty() ? nullptr : faults.data();
    given.trace = text_or_null(options.trace);
    given.show_secrets = options.show_secrets ? 1 : 0;
    given.firmware_folder = text_or_null(options.firmware_folder);
    given.firmware_key = text_or_null(options.firmware_key);
    given.reboot_seconds = options.reboot_seconds;
    given.home = options.home ? &*options.home : nullptr;

    char error[1024] = "no reason given";
    return simulated_gateway_open(&given, error, sizeof(error)) == 0 ? "" : error;
}

std::string GatewayTest::write(const std::string &name, const std::string &text) const
{
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
}

std::string GatewayTest::read(const std::string &path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

std::vector<std::string> GatewayTest::lines(const std::string &path)
{
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string GatewayTest::reopen(const Options &options)
{
    close();
    return open(options);
}

std::string GatewayTest::open_at(int64_t time, const Options &options)
{
    setenv("SIMULATED_GATEWAY_TIME", std::to_string(time).c_str(), 1);
    return reopen(options);
}

std::string GatewayTest::open_when(int64_t time) const
{
    return open_at(time, {.state_file = path("state"), .trace = path("trace")});
}

std::string GatewayTest::open_kept_home(const nlohmann::json &home, int64_t time) const
{
    close();
    std::filesystem::remove(path("state"));
    return open_at(time, {.scenario = write("home.json", home.dump()),
                          .state_file = path("state"),
                          .trace = path("trace")});
}

std::string GatewayTest::open_home(const nlohmann::json &home, int64_t time) const
{
    return open_at(time, {.scenario = write("home.json", home.dump()), .trace = path("trace")});
}

std::string GatewayTest::reason(int32_t result) const
{
    EXPECT_EQ(result, -1);
    return reason();
}

std::string GatewayTest::reason() const
{
    const std::string line = last_line();
    const size_t end_of_duration = line.find(" us", line.rfind(") = "));
    return line.substr(std::min(line.size(), end_of_duration + std::string(" us, ").size()));
}

nlohmann::json GatewayTest::house(const Changes &changes)
{
    nlohmann::json home = json_of(SCENARIO_FOLDER "/three_storey_house.json");
    for (const auto &[pointer, value] : changes) {
        home[nlohmann::json::json_pointer(pointer)] = value;
    }
    return home;
}

nlohmann::json GatewayTest::house_without_wan(const char *fault)
{
    return house({{"/wan/connected", false}, {"/wan/fault", fault}});
}

nlohmann::json GatewayTest::house_without_radios()
{
    const auto none = nlohmann::json::array();
    return house(
        {{"/radios", none}, {"/ssids", none}, {"/guest_networks", none}, {"/hosts", none}});
}

nlohmann::json GatewayTest::json_of(const std::string &path)
{
    return nlohmann::json::parse(read(path));
}

nlohmann::json GatewayTest::state_to_vary(const std::string &path)
{
    std::filesystem::remove(path + ".good");
    nlohmann::json state = json_of(path);
    state.erase("checksum");
    return state;
}

int32_t GatewayTest::call()
{
    SnInfo info = {};
    return devapi_get_sn_info(&info);
}

std::string GatewayTest::mac()
{
    SnInfo info = {};
    return devapi_get_sn_info(&info) == 0 ? info.MAC : "";
}

AdBaseInfo GatewayTest::host(int32_t index)
{
    AdBaseInfo asked = {};
    asked.HostIndex = index;
    return reported_by(devapi_get_ad_base_info, asked);
}

SsidInfo GatewayTest::ssid(int32_t index)
{
    SsidInfo asked = {};
    asked.SSIDIndex = index;
    return reported_by(devapi_get_ssid_info, asked);
}

int32_t GatewayTest::switch_ssid(int32_t index, const char *enable)
{
    SsidInfo info = ssid(index);
    set(info.Enable, enable);
    return devapi_set_ssid_info(&info);
}
