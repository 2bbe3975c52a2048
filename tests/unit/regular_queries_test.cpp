// One test for each rule, over all queries that follow it.
#include "regular_commands.h"

#include "failing_memory.h"
#include "handler_test.h"

#include <cstring>

namespace regular_queries_test {

class RegularQueryTest : public HandlerTest, public testing::WithParamInterface<RegularQuery> {
  protected:
    const RegularQuery &query = GetParam();

    std::string text_for(const Place &place, size_t length) const
    {
        std::string text;
        while (text.size() < length) {
            text += std::string(place.key) + '.';
        }
        return text.substr(0, length);
    }

    // A device that fills every field that is reported up to so many bytes, and everything else
    // with rubbish.
    void answer_with(size_t (*length)(const Place &), int32_t result = 0)
    {
        query.program([=, this](char *record) {
            memset(record, '?', query.record_size);
            for (const Place &place : query.keys) {
                memset(record + place.offset, '\0', place.width);
                text_for(place, length(place)).copy(record + place.offset, place.width);
            }
            return result;
        });
    }

    std::string reply_with(size_t (*length)(const Place &), const std::string &before = "{") const
    {
        std::string reply = before;
        const auto append = [&reply](const std::string &key, const std::string &text) {
            reply += std::string(reply.size() > 1 ? "," : "") + '"' + key + "\":\"" + text + '"';
        };
        if (!query.status_last) {
            append("Status", "0");
        }
        for (const Place &place : query.keys) {
            append(place.key, text_for(place, length(place)));
        }
        if (query.status_last) {
            append("Status", "0");
        }
        return reply + "}";
    }

    std::string failure(const std::string &before = "{") const
    {
        const std::string reason =
            query.failure != nullptr ? std::string(R"(,"FailReason":")") + query.failure + '"' : "";
        return before + R"("Status":"1")" + reason + "}";
    }
};

size_t short_of_the_width(const Place &place)
{
    return std::min<size_t>(place.width - 1, 7);
}
size_t the_whole_width(const Place &place)
{
    return place.width;
}

TEST_P(RegularQueryTest, ReportsEachFieldInItsOrder)
{
    answer_with(short_of_the_width);
    EXPECT_EQ(run(query.command), reply_with(short_of_the_width));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_P(RegularQueryTest, ReadsNoFurtherThanAField)
{
    answer_with(the_whole_width);
    EXPECT_EQ(run(query.command), reply_with(the_whole_width));
}

TEST_P(RegularQueryTest, CallsOnceWithAZeroedRecord)
{
    std::string record;
    query.program([&](char *bytes) {
        record.assign(bytes, query.record_size);
        return 0;
    });
    run(query.command);
    EXPECT_EQ(record, std::string(query.record_size, '\0'));
    EXPECT_EQ(recording_device::called_functions(), std::vector<std::string>{query.function});
}

TEST_P(RegularQueryTest, FailsByTheDevicesResult)
{
    for (const int32_t result : {-1, 1, -2, 2, 1000, INT32_MIN, INT32_MAX}) {
        answer_with(short_of_the_width, result);
        const bool fails = result == -1 || !query.only_minus_one_fails;
        EXPECT_EQ(run(query.command), fails ? failure() : reply_with(short_of_the_width)) << result;
    }
    EXPECT_TRUE(recording_host::log_lines().empty());
}

TEST_P(RegularQueryTest, DeletesNothing)
{
    std::string request = R"({"Other":[1,{"x":null}],"Status":"7")";
    for (const Place &place : query.keys) {
        request += std::string(",\"") + place.key + "\":7";
    }
    answer_with(short_of_the_width);
    EXPECT_EQ(run(query.command, request + "}"), reply_with(short_of_the_width, request));
    query.program([](char *) { return -1; });
    EXPECT_EQ(run(query.command, request + "}"), failure(request + ","));
}

TEST_P(RegularQueryTest, WithoutMemoryFailsOrAddsNothing)
{
    for (const auto how : {FailingMemory::Fail::kOnce, FailingMemory::Fail::kLastingly}) {
        for (size_t first = 0;; ++first) {
            const Json object = parse("{}");
            bool failed;
            {
                const FailingMemory memory(first, how);
                hg_process_json_cmd(query.command, object.get());
                failed = memory.has_failed();
            }
            if (!failed) {
                EXPECT_EQ(first, 2 * query.keys.size() + 1)
                    << "two for each key, one for the status";
                break;
            }
            EXPECT_EQ(print(object.get()), how == FailingMemory::Fail::kOnce ? failure() : "{}")
                << "allocation " << first;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Commands, RegularQueryTest, testing::ValuesIn(kRegularQueries),
                         [](const auto &test) { return std::string(test.param.command); });

} // namespace regular_queries_test
