// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include <atomic>
#include <latch>
#include <thread>

namespace {

using ThreadsTest = GatewayTest;

TEST_F(ThreadsTest, CallsPowerCyclesAndReopeningMix)
{
    setenv("SIMULATED_GATEWAY_TRACE", path("trace").c_str(), 1);
    ASSERT_EQ(open({.state_file = path("state"), .faults = {"devapi_get_system_info=-1*50@1ms"}}),
              "");
    constexpr int callers = 4;
    constexpr int calls = 200;
    std::atomic<int> wrong = 0;
    std::latch start(callers + 2);
    std::vector<std::thread> threads;
    for (int caller = 0; caller < callers; ++caller) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            for (int times = 0; times < calls; ++times) {
                SnInfo sn = {};
                SystemInfo system = {};
                const int32_t sn_result = devapi_get_sn_info(&sn);
                const int32_t system_result = devapi_get_system_info(&system);
                // A call during which the gateway is closed fails; any other is complete.
                const bool sn_right = sn_result == 0 ? std::string("3C:6A:D2:10:4F:20") == sn.MAC
                                                     : sn_result == -1 && sn.MAC[0] == '\0';
                const bool system_right = system_result == 0
                                              ? std::string("V2.4.1") == system.SWVersion
                                              : system_result == -1 && system.SWVersion[0] == '\0';
                wrong += sn_right && system_right ? 0 : 1;
            }
        });
    }
    threads.emplace_back([&] {
        start.arrive_and_wait();
        for (int times = 0; times < 50; ++times) {
            simulated_gateway_power_cycle();
        }
    });
    threads.emplace_back([&] {
        start.arrive_and_wait();
        for (int times = 0; times < 50; ++times) {
            simulated_gateway_close();
            simulated_gateway_open(nullptr, nullptr, 0);
        }
    });
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);

    // Every line of the trace is complete, and there is one for each call.
    int called = 0;
    for (const std::string &line : lines(path("trace"))) {
        EXPECT_EQ(line.substr(0, 1), "[") << line;
        EXPECT_EQ(line.find('[', 1), std::string::npos) << line;
        called += line.find("] devapi_") != std::string::npos ? 1 : 0;
    }
    EXPECT_EQ(called, callers * calls * 2);
}

TEST_F(ThreadsTest, ADelayedFaultHoldsUpNoOtherCallAndEndsWithTheGateway)
{
    // For a call that starts only after the gateway was closed.
    setenv("SIMULATED_GATEWAY_FAULTS", "devapi_get_system_info=-4", 1);
    ASSERT_EQ(open({.faults = {"devapi_get_system_info=-4@3600000ms"}}), "");
    std::thread delayed([] {
        SystemInfo info = {};
        EXPECT_EQ(devapi_get_system_info(&info), -4);
    });
    for (int times = 0; times < 100; ++times) {
        EXPECT_EQ(call(), 0);
        std::this_thread::yield();
    }
    simulated_gateway_close();
    delayed.join();
}

TEST_F(ThreadsTest, SettingsAndQueriesMix)
{
    ASSERT_EQ(open({.state_file = path("state")}), "");
    const auto move_to = [](const std::string &subnet) {
        EXPECT_EQ(set_by(devapi_set_lan_ip_info, {{"GatewayLanIP", subnet + "1"},
                                                  {"SubnetMask", "255.255.255.0"},
                                                  {"StartIp", subnet + "20"},
                                                  {"EndIp", subnet + "99"}}),
                  0);
    };
    move_to("10.0.0.");
    std::atomic<int> torn = 0;
    std::vector<std::thread> threads;
    for (const char *subnet : {"10.0.0.", "10.0.1."}) {
        threads.emplace_back([&, subnet] {
            for (int times = 0; times < 50; ++times) {
                move_to(subnet);
            }
        });
        threads.emplace_back([&] {
            for (int times = 0; times < 200; ++times) {
                LanIpInfo info = {};
                ResourceInfo resources = {};
                EXPECT_EQ(devapi_get_lan_ip_info(&info), 0);
                EXPECT_EQ(devapi_optimize_hg_resource(&resources), 0);
                const std::string seen = std::string(info.GatewayLanIP) + " " + info.EndIp;
                const bool whole = seen == "10.0.0.1 10.0.0.99" || seen == "10.0.1.1 10.0.1.99";
                torn += whole ? 0 : 1;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(torn, 0);
}

} // namespace
