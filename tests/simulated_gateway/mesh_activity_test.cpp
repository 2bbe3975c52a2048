// SPDX-License-Identifier: MIT
// The mesh over time: signals and speeds vary, stations roam.
#include "mesh_fixture.h"

namespace {

class MeshActivityTest : public MeshTest {};

TEST_F(MeshActivityTest, SignalsAndRatesVaryWithTime)
{
    std::set<std::string> signals;
    std::set<std::string> rates;
    for (int64_t seconds = 0; seconds < 300; seconds += 5) {
        ASSERT_EQ(open_when(kTime + seconds), "");
        const ChildRouterInfo attic = router(kAtticIndex);
        EXPECT_NEAR(std::stoi(attic.dbm), -58, 3);
        signals.insert(attic.dbm);
        rates.insert(attic.DownSpeed);
    }
    EXPECT_EQ(signals.size(), 7u);
    EXPECT_GT(rates.size(), 30u);
}

TEST_F(MeshActivityTest, RatesAreRedistributedOnceADeviceHasLeft)
{
    const auto expect_shared_out = [] {
        int sum = 0;
        for (const std::string &mac : devices()) {
            sum += std::stoi(device(mac).DownSpeed);
        }
        EXPECT_LE(sum, std::stoi(base().DownSpeed));
        EXPECT_GE(sum, std::stoi(base().DownSpeed) - host_count()); // each is rounded down
    };
    expect_shared_out();
    EXPECT_EQ(switch_ssid(5, "0"), 0);
    expect_shared_out();
}

TEST_F(MeshActivityTest, LinkSpeedsAreThoseOfTheLastMeasurement)
{
    const auto speed = [] {
        return std::stoi(tree_router(3).LinkSpeed);
    };
    const Options options = {.state_file = path("state")};
    ASSERT_EQ(open_at(kTime, options), "");
    EXPECT_EQ(speed(), 866);
    std::set<int> speeds;
    for (int64_t seconds = 0; seconds < 20; ++seconds) {
        ASSERT_EQ(open_at(kTime + seconds, options), "");
        EXPECT_EQ(devapi_call_tslink_set_topo_speed(), 0);
        const int measured = speed();
        EXPECT_GE(measured, 866 * 60 / 100);
        EXPECT_LE(measured, 866);
        speeds.insert(measured);
        ASSERT_EQ(open_at(kTime + seconds + 100, options), "");
        EXPECT_EQ(speed(), measured);
        EXPECT_STREQ(tree_router(2).LinkSpeed, "1000"); // a cable is always the same
    }
    EXPECT_GT(speeds.size(), 5u);
    simulated_gateway_power_cycle();
    EXPECT_EQ(speed(), 866);
}

TEST_F(MeshActivityTest, ARoamingHostIsAtTheRouterWithTheStrongestSignal)
{
    constexpr char phone[] = "DA:41:7C:0E:92:B3";
    const int64_t saturday = kTime + 2 * kDay;
    std::map<std::string, int> seen;
    std::string first_run;
    for (int run = 0; run < 2; ++run) {
        std::string places;
        for (int64_t quarter = 0; quarter < 96; ++quarter) {
            ASSERT_EQ(open_when(saturday + quarter * 900), "");
            const std::string place = router_of(phone);
            places += place + " ";
            const int hour = static_cast<int>(quarter / 4);
            if (hour < 6 || hour >= 22) {
                EXPECT_EQ(place, "main") << quarter;
                EXPECT_NEAR(std::stoi(device(phone).Dbm), -47, 3);
            }
            ++seen[place];
            const int dbm = std::stoi(device(phone).Dbm);
            EXPECT_GE(dbm, -67); // next to a router, wherever that is
            EXPECT_LE(dbm, -42);
        }
        EXPECT_TRUE(run == 0 || places == first_run);
        first_run = places;
    }
    EXPECT_EQ(seen.size(), 3u);
    EXPECT_GT(seen["main"], seen[kFirstFloor]);
    EXPECT_GT(seen[kFirstFloor], 4);
    EXPECT_GT(seen[kAttic], 4);
}

TEST_F(MeshActivityTest, AnAbsentOrStationaryHostStaysAtItsRouter)
{
    for (int64_t quarter = 0; quarter < 96; ++quarter) {
        ASSERT_EQ(open_when(kTime + quarter * 900), "");
        EXPECT_EQ(router_of("8C:79:F5:62:1A:09"), "main");
        EXPECT_EQ(router_of("70:F0:88:2C:A6:93"), kAttic);
        if (device("DA:41:7C:0E:92:B3").NetStatus == std::string("0")) {
            EXPECT_EQ(router_of("DA:41:7C:0E:92:B3"), "main");
        }
    }
}

} // namespace
