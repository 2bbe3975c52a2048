// SPDX-License-Identifier: MIT
#include "fleet/plan.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace agent::fleet {

namespace {

// In parts of a million.
constexpr uint64_t kMillion = 1'000'000;
constexpr uint64_t kPowerLosses = 10'000; // each minute
constexpr uint64_t kBadLibraries = 1'000;
constexpr uint64_t kBadFlashes = 10'000;
constexpr uint64_t kCuts = 100'000; // of a wave

constexpr Time kMinute{60'000};
constexpr Time kShortestOff{2'000};
constexpr Time kLongestOff{20'000};

constexpr uint64_t kMostWeight = 1'000'000;

// Behind common queries, so that a weak library is noticed.
constexpr const char *kWeakFunctions[] = {"devapi_get_hg_base_info", "devapi_get_lan_ip_info",
                                          "devapi_get_wan_ip_info"};
constexpr char kHang[] = "=0@3600000ms";
constexpr char kCrash[] = "=crash";
constexpr char kRubbish[] = "=rubbish";
constexpr char kFlashFails[] = "devapi_flash_update_image=-1";

enum class Subject : uint64_t { kScenario = 1, kLibrary, kFlash, kPower, kWave, kCut, kOther };

// The finalizer of SplitMix64.
uint64_t mixed(uint64_t bits)
{
    bits += 0x9e3779b97f4a7c15;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111eb;
    return bits ^ (bits >> 31);
}

uint64_t draw(uint64_t seed, Subject subject, uint64_t number, uint64_t count = 0)
{
    return mixed(mixed(mixed(mixed(seed) + static_cast<uint64_t>(subject)) + number) + count);
}

uint64_t weight_of(std::string_view text)
{
    uint64_t weight = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), weight);
    if (error != std::errc() || end != text.data() + text.size() || weight < 1 ||
        weight > kMostWeight) {
        throw std::invalid_argument("\"" + std::string(text) + "\" is no weight from 1 to " +
                                    std::to_string(kMostWeight));
    }
    return weight;
}

} // namespace

Mix::Mix(std::string_view text)
{
    while (!text.empty()) {
        const std::string_view part = text.substr(0, text.find(','));
        text.remove_prefix(std::min(text.size(), part.size() + 1));
        const size_t equals = part.find('=');
        const std::string scenario(part.substr(0, equals));
        if (scenario.empty()) {
            throw std::invalid_argument("a scenario has no name");
        }
        parts_.push_back(
            {scenario, equals == std::string_view::npos ? 1 : weight_of(part.substr(equals + 1))});
        sum_ += parts_.back().weight;
    }
    if (parts_.empty()) {
        throw std::invalid_argument("there is no scenario");
    }
}

std::vector<std::string> Mix::scenarios() const
{
    std::vector<std::string> all;
    for (const Part &part : parts_) {
        all.push_back(part.scenario);
    }
    return all;
}

const std::string &Mix::scenario_of(uint64_t seed, uint32_t number) const
{
    uint64_t rest = draw(seed, Subject::kScenario, number) % sum_;
    for (const Part &part : parts_) {
        if (rest < part.weight) {
            return part.scenario;
        }
        rest -= part.weight;
    }
    return parts_.back().scenario;
}

Weakness weakness_of(uint64_t seed, uint32_t number)
{
    Weakness weakness;
    const uint64_t bits = draw(seed, Subject::kLibrary, number);
    if (bits % kMillion < kBadLibraries) {
        constexpr Weakness::Library kinds[] = {Weakness::Library::kHangs,
                                               Weakness::Library::kCrashes,
                                               Weakness::Library::kAnswersRubbish};
        const uint64_t more = mixed(bits);
        weakness.library = kinds[more % std::size(kinds)];
        weakness.function = kWeakFunctions[more / std::size(kinds) % std::size(kWeakFunctions)];
    }
    weakness.flash_fails = draw(seed, Subject::kFlash, number) % kMillion < kBadFlashes;
    return weakness;
}

std::vector<std::string> Weakness::faults() const
{
    std::vector<std::string> all;
    switch (library) {
    case Library::kWorks:
        break;
    case Library::kHangs:
        all.push_back(function + kHang);
        break;
    case Library::kCrashes:
        all.push_back(function + kCrash);
        break;
    case Library::kAnswersRubbish:
        all.push_back(function + kRubbish);
        break;
    }
    if (flash_fails) {
        all.emplace_back(kFlashFails);
    }
    return all;
}

std::vector<PowerLoss> power_losses(uint64_t seed, uint32_t first, uint32_t count, uint32_t minute)
{
    std::vector<PowerLoss> losses;
    for (uint32_t number = first; number < first + count; ++number) {
        const uint64_t bits = draw(seed, Subject::kPower, number, minute);
        if (bits % kMillion >= kPowerLosses) {
            continue;
        }
        const uint64_t more = mixed(bits);
        const auto range = static_cast<uint64_t>((kLongestOff - kShortestOff).count());
        losses.push_back({minute * kMinute + Time(more % kMinute.count()),
                          kShortestOff + Time(mixed(more) % range), number});
    }
    std::ranges::sort(losses, {}, &PowerLoss::time);
    return losses;
}

Time wave_time(uint64_t seed, uint32_t wave)
{
    constexpr Time kInterval = kWaveInterval;
    return wave * kInterval + Time(draw(seed, Subject::kWave, wave) % kInterval.count());
}

bool is_cut(uint64_t seed, uint32_t number, uint32_t wave)
{
    return draw(seed, Subject::kCut, number, wave) % kMillion < kCuts;
}

double random_fraction(uint64_t seed, uint64_t number, uint64_t count)
{
    return static_cast<double>(draw(seed, Subject::kOther, number, count) >> 11) / (1ULL << 53);
}

} // namespace agent::fleet
