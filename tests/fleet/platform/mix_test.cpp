// SPDX-License-Identifier: MIT
#include "fleet/platform/ledger.h"
#include "fleet/platform/mix.h"
#include "service/common/config_error.h"

#include <gtest/gtest.h>

namespace agent::fleet::platform {
namespace {

Mix usual()
{
    return parse_mix(default_mix(), "the usual mix");
}

TEST(Mix, UsualOneHasQueriesAndSettings)
{
    const Mix mix = usual();
    EXPECT_TRUE(std::ranges::any_of(mix, [](const MixEntry &one) { return one.is_setting; }));
    EXPECT_TRUE(std::ranges::any_of(mix, [](const MixEntry &one) { return !one.is_setting; }));
    for (const MixEntry &entry : mix) {
        EXPECT_EQ(entry.is_setting, !entry.values.empty()) << entry.command;
        EXPECT_GT(entry.weight, 0) << entry.command;
    }
}

TEST(Mix, FillsInTheGatewayAndTheNumberOfTheChange)
{
    const Mix mix = parse_mix("[[request]]\ncommand = \"SET_HG_BASE_INFO\"\n"
                              "values = [\"{gateway}: {sequence}\", \"other {sequence}\"]\n",
                              "mix");
    EXPECT_EQ(mix.front().value("home-1", 2), "home-1: 2");
    EXPECT_EQ(mix.front().value("home-1", 3), "other 3");
    EXPECT_EQ(mix.front().key, "Name");
}

TEST(Mix, HasWeightsWhoseSumIsANumber)
{
    const auto weight = [](const std::string &text) {
        return parse_mix("[[request]]\ncommand = \"GET_SN_INFO\"\nweight = " + text + "\n", "mix")
            .front()
            .weight;
    };
    EXPECT_EQ(weight("1e6"), 1e6);
    EXPECT_EQ(weight("1e-9"), 1e-9);
    for (const char *wrong : {"0", "-1", "1e308", "1000001", "nan", "inf"}) {
        EXPECT_THROW(weight(wrong), service::ConfigError) << wrong;
    }
}

TEST(Mix, ASettingWithParamsIsOutsideTheLedger)
{
    const Mix mix = parse_mix(
        "[[request]]\ncommand = \"SET_UPNP_STATE\"\nparams = '{\"Enable\": \"1\"}'\n", "mix");
    EXPECT_FALSE(mix.front().is_setting);
    EXPECT_TRUE(mix.front().is_change);
    EXPECT_EQ(mix.front().params, R"({"Enable": "1"})");
}

class LedgerTest : public testing::Test {
  protected:
    void SetUp() override { ledger_.begin(0, 0, setting("Before").get()); }

    static Json setting(const char *name)
    {
        Json object(cJSON_CreateObject());
        cJSON_AddStringToObject(object.get(), "Name", name);
        return object;
    }

    Ledger::Confirmed change(Ledger::End end)
    {
        const Ledger::Change made = ledger_.change(0, 0, "home-1");
        return ledger_.end(0, 0, end, {++number_, made.params, "epoch", "{}", made.value, {}});
    }

    Ledger::Verdict compare(const char *name)
    {
        std::string text;
        const Ledger::Verdict verdict = ledger_.compare(0, 0, setting(name).get(), &text);
        EXPECT_EQ(text.empty(), verdict == Ledger::Verdict::kAsSet);
        return verdict;
    }

    Mix mix_ =
        parse_mix("[[request]]\ncommand = \"SET_HG_BASE_INFO\"\nvalue = \"{sequence}\"\n", "mix");
    Ledger ledger_{mix_, 1};
    uint64_t number_ = 0;
};

TEST_F(LedgerTest, AConfirmedChangeLeavesOneValue)
{
    change(Ledger::End::kConfirmed);
    EXPECT_EQ(compare("1"), Ledger::Verdict::kAsSet);
    change(Ledger::End::kConfirmed);
    EXPECT_EQ(compare("1"), Ledger::Verdict::kLost);
    EXPECT_EQ(ledger_.counts().lost, 1U);
    EXPECT_EQ(compare("1"), Ledger::Verdict::kAsSet) << "a loss is counted once";
}

TEST_F(LedgerTest, ARefusedChangeLeavesTheValueBefore)
{
    change(Ledger::End::kRefused);
    EXPECT_EQ(compare("Before"), Ledger::Verdict::kAsSet);
    change(Ledger::End::kRefused);
    EXPECT_EQ(compare("2"), Ledger::Verdict::kLost);
}

TEST_F(LedgerTest, AnUnknownOutcomeLeavesBoth)
{
    change(Ledger::End::kUnknown);
    EXPECT_EQ(compare("1"), Ledger::Verdict::kAsSet);
    EXPECT_EQ(ledger_.counts().resolved, 1U);
    change(Ledger::End::kUnknown);
    EXPECT_EQ(compare("1"), Ledger::Verdict::kAsSet);
    EXPECT_EQ(compare("2"), Ledger::Verdict::kLost) << "it has been seen not to be in force";
}

TEST_F(LedgerTest, AChangeAskedForAgainMustNotBeInForceAgain)
{
    EXPECT_EQ(change(Ledger::End::kConfirmed).number, 0U);
    const Ledger::Confirmed before = change(Ledger::End::kConfirmed);
    EXPECT_EQ(before.number, 1U);
    EXPECT_EQ(before.value, "1");
    ledger_.repeat(0, 0, before.value);
    EXPECT_FALSE(ledger_.is_free(0, 0));
    ledger_.release(0, 0);
    EXPECT_TRUE(ledger_.is_free(0, 0));
    EXPECT_EQ(compare("2"), Ledger::Verdict::kAsSet);
    EXPECT_EQ(compare("1"), Ledger::Verdict::kTwice);
    EXPECT_EQ(ledger_.counts().twice, 1U);
    EXPECT_EQ(ledger_.counts().lost, 0U);
}

TEST_F(LedgerTest, OneChangeAtATime)
{
    EXPECT_TRUE(ledger_.is_free(0, 0));
    EXPECT_FALSE(ledger_.is_touched(0));
    ledger_.change(0, 0, "home-1");
    EXPECT_FALSE(ledger_.is_free(0, 0));
    EXPECT_EQ(ledger_.version(0, 0), 0U);
    EXPECT_TRUE(ledger_.is_touched(0));
}

TEST_F(LedgerTest, AValueInForceIsSetAgainIfThereIsNoOther)
{
    const Mix same = parse_mix(
        "[[request]]\ncommand = \"SET_HG_BASE_INFO\"\nvalues = [\"A\", \"A\", \"A\"]\n", "mix");
    Ledger other(same, 1);
    other.begin(0, 0, setting("A").get());
    EXPECT_EQ(other.change(0, 0, "home-1").value, "A");
    const Mix two =
        parse_mix("[[request]]\ncommand = \"SET_HG_BASE_INFO\"\nvalues = [\"A\", \"B\"]\n", "mix");
    for (const char *before : {"A", "B"}) {
        Ledger changed(two, 1);
        changed.begin(0, 0, setting(before).get());
        EXPECT_NE(changed.change(0, 0, "home-1").value, before);
    }
}

TEST_F(LedgerTest, WithoutAValueNothingIsChanged)
{
    Ledger other(mix_, 1);
    other.begin(0, 0, nullptr);
    EXPECT_FALSE(other.is_free(0, 0));
    EXPECT_EQ(other.counts().without, 1U);
    EXPECT_EQ(other.compare(0, 0, nullptr, nullptr), Ledger::Verdict::kUnread);
}

} // namespace
} // namespace agent::fleet::platform
