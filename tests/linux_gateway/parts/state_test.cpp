// SPDX-License-Identifier: MIT
#include "core/state.h"
#include "system/error.h"

#include <gmock/gmock.h>

using namespace linux_gateway;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::ThrowsMessage;

namespace {

const Mac kFirst = *parse_mac("A4:BB:6D:31:07:5E");
const Mac kSecond = *parse_mac("72:9B:E0:46:D8:15");

State full_state()
{
    State state;
    state.name = "Küche \"1\"";
    state.hosts[kFirst] = {"Anna", "Computer", true, 20'000};
    state.hosts[kSecond] = {"", "", false, 0};
    state.green_net = true;
    state.access_restricted = true;
    GreenHost green;
    green.mac = kSecond;
    green.name = "Jonas";
    green.notify = true;
    green.is_protected = true;
    green.periods = {{true, "22:00", "07:30", "12345"}, {false, "", "", ""}};
    state.green_hosts[7] = green;
    return state;
}

TEST(StateTest, AStateIsReadAsItWasWritten)
{
    EXPECT_EQ(read_state(to_json(full_state())), full_state());
    EXPECT_EQ(read_state(to_json(State())), State());
    EXPECT_EQ(read_state("{}"), State());
}

TEST(StateTest, ATextThatIsNotUtf8IsWrittenAllTheSame)
{
    State state;
    state.name = "a\xff";
    EXPECT_EQ(read_state(to_json(state)).name, "a\ufffd");
}

TEST(StateTest, AWrongValueIsNamed)
{
    const std::pair<const char *, const char *> wrong[] = {
        {"", "it is not JSON"},
        {"{", "it is not JSON"},
        {"[]", "is not an object"},
        {R"({"name": 1})", "name is not a text"},
        {R"({"green_net": "1"})", "green_net is neither"},
        {R"({"hosts": {}})", "hosts is not a list"},
        {R"({"hosts": [1]})", "is not an object"},
        {R"({"hosts": [{}]})", "mac is not a MAC address"},
        {R"({"hosts": [{"mac": "A4:BB:6D:31:07:5E", "down_limit_kbps": -1}]})", "down_limit_kbps"},
        {R"({"hosts": [{"mac": "A4:BB:6D:31:07:5E", "down_limit_kbps": 1e99}]})",
         "down_limit_kbps"},
        {R"({"hosts": [{"mac": "A4:BB:6D:31:07:5E", "down_limit_kbps": 18446744073709551615}]})",
         "down_limit_kbps"},
        {R"({"green_hosts": [{"mac": "A4:BB:6D:31:07:5E", "number": 65}]})", "number"},
        {R"({"green_hosts": [{"mac": "A4:BB:6D:31:07:5E"}]})", "number"},
        {R"({"green_hosts": [{"mac": "A4:BB:6D:31:07:5E", "number": 1},
                             {"mac": "72:9B:E0:46:D8:15", "number": 1}]})",
         "used twice"},
    };
    for (const auto &entry : wrong) {
        const char *json = entry.first;
        const char *error = entry.second;
        EXPECT_THAT([&] { read_state(json); }, ThrowsMessage<Error>(HasSubstr(error))) << json;
    }
    EXPECT_THAT([] { read_state(R"({"name": ")" + std::string(257, 'x') + "\"}"); },
                ThrowsMessage<Error>(HasSubstr("name")));
    EXPECT_THROW(read_state(std::string(100'000, '[')), Error);
}

TEST(StateTest, RulesFollowFromTheState)
{
    State state = full_state();
    const Rules rules = rules_of(state, "br0", kSecond);
    EXPECT_EQ(rules.lan_bridge, "br0");
    EXPECT_EQ(rules.management_host, kSecond);
    EXPECT_THAT(rules.blocked, ElementsAre(kFirst));
    EXPECT_THAT(rules.limits, ElementsAre(Pair(kFirst, 20'000'000)));
    const Period night = {22 * 60, 7 * 60 + 30, {1, 2, 3, 4, 5}};
    EXPECT_THAT(rules.periods, ElementsAre(Pair(kSecond, ElementsAre(night))));
    EXPECT_TRUE(is_protected(state, kSecond));
    EXPECT_FALSE(is_protected(state, kFirst));
    EXPECT_EQ(green_number_of(state, kSecond), 7);
    EXPECT_EQ(green_number_of(state, kFirst), 0);
}

TEST(StateTest, EachSwitchEndsThePeriods)
{
    const auto periods_after = [](void (*change)(State &)) {
        State state = full_state();
        change(state);
        return rules_of(state, "br0", std::nullopt).periods;
    };
    EXPECT_THAT(periods_after([](State &state) { state.green_net = false; }), IsEmpty());
    EXPECT_THAT(periods_after([](State &state) { state.access_restricted = false; }), IsEmpty());
    EXPECT_THAT(periods_after([](State &state) { state.green_hosts[7].is_protected = false; }),
                IsEmpty());
    EXPECT_THAT(
        periods_after([](State &state) { state.green_hosts[7].periods[0].enabled = false; }),
        IsEmpty());
    EXPECT_THAT(periods_after([](State &state) { state.green_hosts[7].periods[0].end = "24:00"; }),
                IsEmpty());
    EXPECT_THAT(periods_after([](State &state) { state.green_hosts[7].periods[0].days = ""; }),
                IsEmpty());
}

} // namespace
