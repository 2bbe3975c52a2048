// SPDX-License-Identifier: MIT
// Kept answers, with a simulated time.
#include "service/gate/answer_cache.h"

#include <gtest/gtest.h>

namespace agent::service {

namespace {

using std::chrono::milliseconds;

constexpr AnswerCache::Time kAnswered{std::chrono::hours(1)};
constexpr AnswerCache::Time kExpiry = kAnswered + std::chrono::minutes(10);

// "none", "pending", "different", or the answer.
std::string found(AnswerCache &cache, std::string_view key, AnswerCache::Time now = kAnswered,
                  std::string_view request = "SET")
{
    AnswerCache::Entry entry;
    if (!cache.find(key, request, now, entry)) {
        return "none";
    }
    if (!entry.is_same_request) {
        return "different";
    }
    return entry.is_answered ? std::string(entry.answer) : "pending";
}

} // namespace

TEST(AnswerCache, KeepsAnAnswerForTenMinutesFromTheAnswer)
{
    AnswerCache cache;
    EXPECT_EQ(found(cache, "a"), "none");
    EXPECT_TRUE(cache.begin("a", "SET", kAnswered - std::chrono::hours(1)));
    EXPECT_EQ(found(cache, "a"), "pending");
    cache.keep("a", "done", Code::kOutcomeUnknown, kAnswered);
    EXPECT_EQ(found(cache, "a", kExpiry - milliseconds(1)), "done");
    AnswerCache::Entry entry;
    ASSERT_TRUE(cache.find("a", "SET", kAnswered, entry));
    EXPECT_EQ(entry.code, Code::kOutcomeUnknown);
    EXPECT_EQ(cache.answers(), 1U);
    EXPECT_EQ(cache.bytes(), 5U);
    EXPECT_EQ(found(cache, "a", kExpiry), "none");
    EXPECT_EQ(cache.answers(), 0U);
    EXPECT_EQ(cache.bytes(), 0U);
    EXPECT_TRUE(cache.begin("a", "SET", kExpiry));
}

TEST(AnswerCache, DistinguishesAKeysRequestFromAnother)
{
    AnswerCache cache;
    EXPECT_TRUE(cache.begin("a", "SET", kAnswered));
    EXPECT_EQ(found(cache, "a", kAnswered, "SET\n{}"), "different");
    cache.keep("a", "done", Code::kNone, kAnswered);
    EXPECT_EQ(found(cache, "a", kAnswered, "SET\n{}"), "different");
    EXPECT_EQ(found(cache, "b"), "none");
}

TEST(AnswerCache, ForgetsARequestThatWasNotExecuted)
{
    AnswerCache cache;
    EXPECT_TRUE(cache.begin("a", "SET", kAnswered));
    cache.forget("a");
    EXPECT_EQ(found(cache, "a"), "none");
    EXPECT_EQ(cache.bytes(), 0U);
    cache.forget("a");
    cache.keep("a", "done", Code::kNone, kAnswered); // no request began it
    EXPECT_EQ(found(cache, "a"), "none");
    EXPECT_EQ(cache.bytes(), 0U);
}

TEST(AnswerCache, TakesNoRequestBeyondItsLimitOfAnswers)
{
    AnswerCache cache;
    cache.set_limits({2, 1000});
    EXPECT_TRUE(cache.begin("a", "SET", kAnswered));
    EXPECT_TRUE(cache.begin("b", "SET", kAnswered));
    EXPECT_FALSE(cache.begin("c", "SET", kAnswered));
    cache.keep("b", "done", Code::kNone, kAnswered);
    EXPECT_FALSE(cache.begin("c", "SET", kExpiry - milliseconds(1)));
    EXPECT_EQ(found(cache, "a"), "pending");
    EXPECT_EQ(found(cache, "b"), "done");
    EXPECT_TRUE(cache.begin("c", "SET", kExpiry));
    EXPECT_EQ(found(cache, "a", kExpiry), "pending"); // however long its request takes
}

TEST(AnswerCache, TakesNoRequestBeyondItsLimitOfBytes)
{
    AnswerCache cache;
    cache.set_limits({100, 10});
    EXPECT_FALSE(cache.begin("a key too long", "SET", kAnswered));
    EXPECT_TRUE(cache.begin("a", "SET", kAnswered));
    cache.keep("a", "a long answer", Code::kNone, kAnswered);
    EXPECT_EQ(found(cache, "a"), "a long answer");
    EXPECT_FALSE(cache.begin("b", "SET", kAnswered));
    EXPECT_TRUE(cache.begin("b", "SET", kExpiry));
}

TEST(AnswerCache, EndsEachAnswerByItsOwnTime)
{
    AnswerCache cache;
    for (const char *key : {"a", "b", "c"}) {
        EXPECT_TRUE(cache.begin(key, "SET", kAnswered));
    }
    cache.keep("c", "first", Code::kNone, kAnswered);
    cache.keep("a", "second", Code::kNone, kAnswered + milliseconds(1));
    EXPECT_EQ(found(cache, "c", kExpiry), "none");
    EXPECT_EQ(found(cache, "a", kExpiry), "second");
    EXPECT_EQ(found(cache, "b", kExpiry), "pending");
    cache.forget("a");
    EXPECT_EQ(found(cache, "a", kExpiry), "none");
    EXPECT_EQ(cache.answers(), 1U);
}

} // namespace agent::service
