// SPDX-License-Identifier: MIT
// What is drawn from a fleet's seed.
#include "fleet/plan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>

namespace {

using namespace agent::fleet;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST(MixTest, NamesScenariosWithWeights)
{
    EXPECT_THAT(Mix("a=3,b,./c.json=2").scenarios(), ElementsAre("a", "b", "./c.json"));
}

TEST(MixTest, DrawsScenariosByWeight)
{
    const Mix mix("a=3,b");
    std::map<std::string, int> counts;
    for (uint32_t number = 1; number <= 4000; ++number) {
        ++counts[mix.scenario_of(1, number)];
        EXPECT_EQ(mix.scenario_of(1, number), mix.scenario_of(1, number));
    }
    EXPECT_NEAR(counts["a"], 3000, 150);
    EXPECT_NEAR(counts["b"], 1000, 150);
}

TEST(MixTest, RefusesOthers)
{
    for (const char *text :
         {"", ",", "=1", "a=", "a=0", "a=-1", "a=x", "a=1000001", "a,,b", "a=1=1"}) {
        EXPECT_THROW(Mix{text}, std::invalid_argument) << text;
    }
}

TEST(WeaknessTest, IsRareAndOfEachKind)
{
    std::map<Weakness::Library, int> libraries;
    int flashes = 0;
    for (uint32_t number = 1; number <= 100'000; ++number) {
        const Weakness weakness = weakness_of(7, number);
        ++libraries[weakness.library];
        flashes += weakness.flash_fails ? 1 : 0;
        EXPECT_EQ(weakness.function.empty(), weakness.library == Weakness::Library::kWorks);
    }
    EXPECT_NEAR(libraries[Weakness::Library::kWorks], 99'900, 40);
    EXPECT_THAT(libraries, SizeIs(4));
    EXPECT_NEAR(flashes, 1000, 130);
}

TEST(WeaknessTest, IsAFaultOfTheDeviceLibrary)
{
    EXPECT_THAT(Weakness{}.faults(), IsEmpty());
    const Weakness weak = {Weakness::Library::kCrashes, "devapi_get_sn_info", true};
    EXPECT_THAT(weak.faults(),
                ElementsAre("devapi_get_sn_info=crash", "devapi_flash_update_image=-1"));
}

TEST(PowerLossTest, TakesOnePercentEachMinute)
{
    const auto losses = power_losses(7, 1, 100'000, 3);
    EXPECT_NEAR(static_cast<double>(losses.size()), 1000, 130);
    std::set<uint32_t> numbers;
    Time before{0};
    for (const PowerLoss &loss : losses) {
        EXPECT_GE(loss.time, std::max(before, Time(180'000)));
        EXPECT_LT(loss.time, Time(240'000));
        EXPECT_GE(loss.off, Time(2'000));
        EXPECT_LE(loss.off, Time(20'000));
        EXPECT_TRUE(numbers.insert(loss.number).second);
        before = loss.time;
    }
    EXPECT_GE(*numbers.begin(), 1U);
    EXPECT_LE(*numbers.rbegin(), 100'000U);
}

TEST(PowerLossTest, DoesNotDependOnTheRangeOfNumbers)
{
    const auto all = power_losses(7, 1, 2000, 0);
    const auto part = power_losses(7, 1001, 1000, 0);
    std::vector<uint32_t> of_part;
    std::vector<uint32_t> of_all;
    for (const PowerLoss &loss : part) {
        of_part.push_back(loss.number);
    }
    for (const PowerLoss &loss : all) {
        if (loss.number > 1000) {
            of_all.push_back(loss.number);
        }
    }
    EXPECT_EQ(of_part, of_all);
    EXPECT_FALSE(of_part.empty());
}

TEST(WaveTest, ComesOnceInEachInterval)
{
    for (uint32_t wave = 0; wave < 20; ++wave) {
        EXPECT_GE(wave_time(7, wave), wave * Time(kWaveInterval));
        EXPECT_LT(wave_time(7, wave), (wave + 1) * Time(kWaveInterval));
    }
}

TEST(WaveTest, CutsATenth)
{
    int cut = 0;
    for (uint32_t number = 1; number <= 10'000; ++number) {
        cut += is_cut(7, number, 2) ? 1 : 0;
    }
    EXPECT_NEAR(cut, 1000, 130);
}

TEST(RandomFractionTest, IsBetweenZeroAndOne)
{
    double sum = 0;
    for (uint64_t count = 0; count < 1000; ++count) {
        const double one = random_fraction(1, 2, count);
        EXPECT_GE(one, 0);
        EXPECT_LT(one, 1);
        sum += one;
    }
    EXPECT_NEAR(sum, 500, 50);
}

} // namespace
