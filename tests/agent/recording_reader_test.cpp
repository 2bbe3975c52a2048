// SPDX-License-Identifier: MIT
#include "record/recording_reader.h"

#include "io/exit_status.h"
#include "protocol/json_text.h"
#include "record/difference.h"
#include "record/json_members.h"
#include "record/recording_diff.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

using agent::Json;
using agent::record::BadRecording;
using agent::record::decoded_text;
using agent::record::Event;
using agent::record::EventKind;
using agent::record::FieldDifference;
using agent::record::find_differences;
using agent::record::hide_remains;
using agent::record::RecordingReader;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

namespace recording_reader_test {

constexpr char kHead[] =
    R"({"recording":1,"program":"test","session":"0000000000000000","seq":0,)"
    R"("started":"1970-01-01T00:00:00Z","interface":"1.0","bits":64,"secrets":"pseudonyms"})"
    "\n";
constexpr char kLines[] =
    R"({"seq":1,"thread":1,"time":0,"command":"GET_SN_INFO","request":{"a":"\u00e9"}})"
    "\n{}  \n"
    R"({"seq":2,"thread":1,"time":0,"took":1,"call":"devapi_get_sn_info",)"
    R"("arguments":{"info":{"before":{"MAC":"x"},"after":{"MAC":"y"}}},"result":0})"
    "\n"
    R"({"seq":3,"thread":2,"time":0,"took":1,"service":"sleep","arguments":{"seconds":1},"result":0})"
    "\n"
    R"({"seq":4,"thread":1,"time":0,"reply_hex":"7b2241223a22e9227d","result":0})"
    "\n"
    R"({"seq":5,"thread":1,"time":0,"end":true})"
    "\n";

// A file that is removed at the end.
class File {
  public:
    explicit File(const std::string &content)
        : path_(testing::TempDir() + "recording." + std::to_string(getpid()))
    {
        std::ofstream(path_, std::ios::binary) << content;
    }
    ~File() { unlink(path_.c_str()); }
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    const std::string &path() const { return path_; }

  private:
    const std::string path_;
};

std::vector<Event> events_in(RecordingReader &recording)
{
    recording.head();
    std::vector<Event> events;
    while (std::optional<Event> event = recording.next()) {
        events.push_back(std::move(*event));
    }
    return events;
}

std::string text_of(const Json &json)
{
    return agent::print(json.get(), {.raw_bytes = true});
}

TEST(RecordingReader, ReadsWhatThePlugInPassesAndReplies)
{
    const File file(std::string(kHead) + kLines);
    RecordingReader recording(file.path());
    const std::vector<Event> events = events_in(recording);
    ASSERT_EQ(events.size(), 4U);
    EXPECT_EQ(events[0].kind, EventKind::kRequest);
    EXPECT_EQ(events[0].name, "GET_SN_INFO");
    EXPECT_EQ(text_of(events[0].given), "{\"a\":\"\xc3\xa9\"}");
    EXPECT_EQ(events[1].kind, EventKind::kCall);
    EXPECT_EQ(text_of(events[1].given), R"({"info":{"MAC":"x"}})");
    EXPECT_EQ(events[1].place, file.path() + ":4");
    EXPECT_EQ(events[2].kind, EventKind::kService);
    EXPECT_EQ(events[2].thread, 2);
    EXPECT_EQ(text_of(events[2].given), R"({"seconds":1})");
    EXPECT_EQ(events[3].kind, EventKind::kReply);
    EXPECT_EQ(text_of(events[3].given), "{\"result\":0,\"reply\":{\"A\":\"\xe9\"}}");
    EXPECT_FALSE(recording.is_cut());
}

TEST(RecordingReader, ReadsTheWholeLinesOfACutFile)
{
    const std::string head = kHead;
    const std::string whole = head + kLines;
    for (size_t size = 0; size < whole.size(); ++size) {
        const File file(whole.substr(0, size));
        if (size < head.size()) {
            EXPECT_THROW(RecordingReader(file.path()), BadRecording) << size;
            continue;
        }
        RecordingReader recording(file.path());
        const auto lines = static_cast<size_t>(
            std::count(whole.begin(), whole.begin() + static_cast<ptrdiff_t>(size), '\n'));
        const size_t padding = lines > 2 ? 1 : 0;
        EXPECT_EQ(events_in(recording).size(), lines - 1 - padding) << size;
        EXPECT_TRUE(recording.is_cut()) << size;
    }
}

TEST(RecordingReader, SurvivesAnyChangedByte)
{
    const std::string whole = std::string(kHead) + kLines;
    for (size_t at = 0; at < whole.size(); ++at) {
        for (const char byte : {'\0', '"', '{', '9', '\n', '\xff'}) {
            std::string changed = whole;
            changed[at] = byte;
            const File file(changed);
            try {
                RecordingReader recording(file.path());
                events_in(recording);
            } catch (const BadRecording &problem) {
                EXPECT_THAT(problem.what(), HasSubstr("recording."));
            }
        }
    }
}

TEST(RecordingReader, ReadsOneSessionAfterTheOther)
{
    const File file(std::string(kHead) + kLines + kHead + kLines);
    RecordingReader recording(file.path());
    const auto sessions = recording.sessions();
    ASSERT_EQ(sessions.size(), 2U);
    for (const auto &session : sessions) {
        recording.go_to(session);
        EXPECT_EQ(events_in(recording).size(), 4U);
    }
}

TEST(RecordingReader, TakesArgumentsOfAService)
{
    const auto given = [](const std::string &arguments) {
        const File file(std::string(kHead) +
                        R"({"seq":1,"thread":1,"time":0,"took":1,"service":"sleep","arguments":)" +
                        arguments + R"(,"result":0})" + "\n");
        RecordingReader recording(file.path());
        return text_of(events_in(recording).at(0).given);
    };
    EXPECT_EQ(given(R"({"seconds":1})"), R"({"seconds":1})");
    EXPECT_EQ(given(R"([1,{"seconds":1}])"), "{}");
    EXPECT_EQ(given("1"), "{}");
}

TEST(RecordingDiff, TakesARequestWithoutAnObject)
{
    const std::string line = R"({"seq":1,"thread":1,"time":0,"command":"A"})";
    const File file(std::string(kHead) + line + "\n");
    EXPECT_EQ(agent::record::run_diff(file.path(), file.path()), agent::kSuccess);
}

TEST(RecordingReader, EndsAtANul)
{
    std::string content = std::string(kHead) + kLines;
    content[content.find("{}  ") + 2] = '\0';
    const File file(content);
    RecordingReader recording(file.path());
    EXPECT_EQ(recording.sessions().size(), 1U);
    recording.go_to({});
    EXPECT_EQ(events_in(recording).size(), 1U);
    EXPECT_FALSE(recording.next().has_value());
    EXPECT_TRUE(recording.is_cut());
}

TEST(RecordingReader, EndsWithTheSession)
{
    const File file(std::string(kHead) + kLines + kLines);
    RecordingReader recording(file.path());
    EXPECT_EQ(events_in(recording).size(), 4U);
    EXPECT_FALSE(recording.next().has_value());
    EXPECT_FALSE(recording.is_cut());
}

TEST(RecordingReader, CountsAnyNumberOfLines)
{
    const auto read = [](const std::string &seq, const std::string &rest) {
        std::string head = kHead;
        head.replace(head.find("\"seq\":0"), 7, "\"seq\":" + seq);
        const File file(head + rest);
        RecordingReader recording(file.path());
        return events_in(recording).size();
    };
    const std::string line = R"({"seq":2147483648,"thread":1,"command":"A"})"
                             "\n";
    const std::string next = R"({"seq":2147483649,"began":2147483648,"thread":1,"result":0})"
                             "\n";
    EXPECT_EQ(read("2147483647", line + next), 2U);
    EXPECT_THAT(
        [&] { read("2147483648", line); },
        ThrowsMessage<BadRecording>(HasSubstr("line 2147483649 of the session is missing")));
    EXPECT_THAT([&] { read("9007199254740992", line); },
                ThrowsMessage<BadRecording>(HasSubstr("line 1 of the session is missing")));
}

TEST(RecordingReader, DecodesTexts)
{
    const Json text(cJSON_Parse(R"(["a",{"hex":"00ff"},{"hex":"0"},{"hex":"0g"},{"hex":1},7])"));
    std::vector<std::optional<std::string>> decoded;
    const cJSON *item = nullptr;
    cJSON_ArrayForEach(item, text.get())
    {
        decoded.push_back(decoded_text(item));
    }
    EXPECT_THAT(decoded, ElementsAre("a", std::string("\0\xff", 2), std::nullopt, std::nullopt,
                                     std::nullopt, std::nullopt));
}

TEST(RecordingReader, HidesWhatIsBehindATextButItsLength)
{
    const Json value(cJSON_Parse(R"({"a":{"hex":"61006200"},"b":["x",{"hex":"c7eb"}]})"));
    hide_remains(value.get());
    EXPECT_EQ(text_of(value), R"({"a":{"hex":"6100ff00"},"b":["x",{"hex":"c7eb"}]})");
}

std::vector<std::string> differences(const char *expected, const char *found)
{
    std::vector<std::string> shown;
    const Json left(cJSON_Parse(expected));
    const Json right(cJSON_Parse(found));
    find_differences(left.get(), right.get(), [&](const FieldDifference &one) {
        shown.push_back(one.field + ": " + one.expected + " | " + one.found);
    });
    return shown;
}

TEST(Difference, NamesTheField)
{
    EXPECT_THAT(differences(R"({"a":[1,{"b":"x"}]})", R"({"a":[1,{"b":"y"}]})"),
                ElementsAre(R"(a[1].b: "x" | "y")"));
    EXPECT_THAT(differences(R"({"a":[1,2]})", R"({"a":[1]})"), ElementsAre("a[1]: 2 | "));
    EXPECT_THAT(differences(R"({"a":1})", R"({"a":"1"})"), ElementsAre(R"(a: 1 | "1")"));
    EXPECT_THAT(differences(R"({"a":1})", R"({"b":1})"), ElementsAre("a: 1 | ", "b:  | 1"));
    EXPECT_THAT(differences("1", "null"), ElementsAre(": 1 | null"));
}

TEST(Difference, CountsRepeatedKeysAndTheirOrder)
{
    EXPECT_THAT(differences(R"({"a":1,"a":2})", R"({"a":1,"a":2})"), ElementsAre());
    EXPECT_THAT(differences(R"({"a":1,"a":2})", R"({"a":1,"a":3})"), ElementsAre("a: 2 | 3"));
    EXPECT_THAT(differences(R"({"a":1,"b":2})", R"({"b":2,"a":1})"),
                ElementsAre(R"(: {"a":1,"b":2} | {"b":2,"a":1})"));
    EXPECT_THAT(differences("[1e999]", "[1e999]"), ElementsAre());
}

// Without bounds, these would need hours and terabytes.
TEST(Difference, TakesManyMembersBelowALongName)
{
    constexpr int kMembers = 50'000;
    std::string many;
    for (int at = 0; at < kMembers; ++at) {
        many += (at == 0 ? "\"" : ",\"") + std::to_string(at) + "\":1";
    }
    const std::string begin = "{\"" + std::string(1'000'000, 'x') + "\":{";
    const Json expected(cJSON_Parse((begin + many + "}}").c_str()));
    const Json found(cJSON_Parse((begin + "}}").c_str()));
    size_t count = 0;
    size_t longest = 0;
    find_differences(expected.get(), found.get(), [&](const FieldDifference &one) {
        ++count;
        longest = std::max(longest, one.field.size());
    });
    EXPECT_EQ(count, kMembers);
    EXPECT_LT(longest, 3000U);
}

} // namespace recording_reader_test
