// SPDX-License-Identifier: MIT
// Strings known to break programs, in every text of every command's request. A failing case prints
// the line that repeats it alone: the environment variable NAUGHTY_CASE names the text's place in
// the request and the string's in the list. A sample begins at another string in each place and
// command, so that all of them are used.
#include "clock_control.h"
#include "failing_memory.h"
#include "handler_test.h"
#include "protocol/described_reply.h"
#include "protocol/device_facts.h"
#include "rich_device.h"
#include "sample.h"
#include "subject.h"
#include "worker_control.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace naughty_strings_test {

std::vector<std::string> read_strings()
{
    std::vector<std::string> strings;
    std::ifstream file(NAUGHTY_STRINGS);
    for (std::string digits; std::getline(file, digits);) {
        std::string text;
        for (size_t at = 0; at + 1 < digits.size(); at += 2) {
            unsigned char byte = 0;
            std::from_chars(&digits[at], &digits[at] + 2, byte, 16);
            text += static_cast<char>(byte);
        }
        strings.push_back(text);
    }
    return strings;
}

const std::vector<std::string> &strings()
{
    static const std::vector<std::string> kStrings = read_strings();
    return kStrings;
}

// ---- What reaches the device -------------------------------------------------------------------

recording_device::AnswerForAll rich_answer;
std::string unterminated; // the field of a record that was passed with a text without a NUL

template <class Record> void check_record(const Record &record)
{
    device_facts::visit_fields(
        record, []<class Type>(const device_facts::Field &fact, const Type &field) {
            using Entry = std::remove_extent_t<Type>;
            if constexpr (std::is_same_v<Entry, char>) {
                if (memchr(field, '\0', sizeof field) == nullptr) {
                    unterminated = fact.name;
                }
            } else if constexpr (std::is_array_v<Type> && std::is_class_v<Entry>) {
                for (const Entry &entry : field) {
                    check_record(entry);
                }
            } else if constexpr (std::is_class_v<Type>) {
                check_record(field);
            }
        });
}

void check(const recording_device::Argument &argument)
{
    device_facts::visit_records([&]<class Record>(std::type_identity<Record>) {
        if (*argument.type == typeid(Record)) {
            check_record(*static_cast<const Record *>(argument.address));
        }
    });
}

int32_t answer(const char *function, std::initializer_list<recording_device::Argument> arguments)
{
    for (const recording_device::Argument &argument : arguments) {
        if (argument.address != nullptr) {
            check(argument);
        }
    }
    return rich_answer(function, arguments);
}

// ---- A case ------------------------------------------------------------------------------------

// The texts of an object and of all that it contains.
void add_texts(cJSON *parent, std::vector<cJSON *> &texts)
{
    cJSON *item;
    cJSON_ArrayForEach(item, parent)
    {
        if (cJSON_IsString(item) != 0) {
            texts.push_back(item);
        }
        add_texts(item, texts);
    }
}

std::string with_text(const std::string &request, size_t place, const std::string &text)
{
    const Json object = parse(request);
    std::vector<cJSON *> texts;
    add_texts(object.get(), texts);
    cJSON_SetValuestring(texts.at(place), text.c_str());
    return print(object.get());
}

// What is wrong with a command's run; empty if nothing is.
std::string damage(const Subject &subject, const std::string &request, WorkerControl &control)
{
    recording_device::reset();
    recording_host::reset();
    rich_device::set_up(subject.home, {}, has_endless_walk(subject));
    rich_answer = recording_device::answer_for_all();
    recording_device::answer_all(answer);
    unterminated.clear();

    Json object = parse(request);
    const FailingMemory memory(SIZE_MAX, FailingMemory::Fail::kOnce);
    const int32_t result = hg_process_json_cmd(subject.command.c_str(), object.get());
    control.wait_until_idle();
    const std::string reply = print(object.get());
    object.reset();

    if (result != 0) {
        return "the dispatcher returned " + std::to_string(result);
    }
    if (!unterminated.empty()) {
        return "the text in " + unterminated + " does not end within its field";
    }
    if (!control.is_idle()) {
        return "a lock is held";
    }
    if (memory.blocks() != 0) {
        return std::to_string(memory.blocks()) + " blocks were not freed, or freed twice";
    }
    const Json again = parse(reply);
    if (print(again.get()) != reply) {
        return "the object cannot be read back";
    }
    return agent::undescribed(description_of(subject.command), parse(request).get(), again.get());
}

class NaughtyStringsTest : public testing::TestWithParam<Subject> {
  protected:
    bool is_wanted(size_t place, size_t at) const
    {
        return only == nullptr ? (at + place + subject.name.size()) % every == 0
                               : name(place, at) == only;
    }

    static std::string name(size_t place, size_t at)
    {
        return std::to_string(place) + ":" + std::to_string(at);
    }

    static std::string repeating_line(size_t place, size_t at)
    {
        const auto *test = testing::UnitTest::GetInstance()->current_test_info();
        return "repeat: NAUGHTY_CASE=" + name(place, at) + ' ' + program_invocation_name +
               " --gtest_filter=" + test->test_suite_name() + '.' + test->name();
    }

    const Subject &subject = GetParam();
    const char *const only = getenv("NAUGHTY_CASE");
    const size_t every = static_cast<size_t>(sample_of(20));
};

TEST_P(NaughtyStringsTest, CountAsTexts)
{
    const std::string request = request_for(subject);
    std::vector<cJSON *> texts;
    const Json object = parse(request);
    add_texts(object.get(), texts);
    const ClockControl clock(1'700'000'000);
    WorkerControl control;
    control.count_everything();
    char version[HG_VERSION_INFO_SIZE] = "";
    info_wersion = version;
    size_t cases = 0;
    for (size_t place = 0; place < texts.size() && !HasFailure(); ++place) {
        for (size_t at = 0; at < strings().size() && !HasFailure(); ++at) {
            if (is_wanted(place, at)) {
                const std::string changed = with_text(request, place, strings()[at]);
                const std::string why = damage(subject, changed, control);
                EXPECT_EQ(why, "")
                    << changed.substr(0, 1000) << "\n  " << repeating_line(place, at);
                ++cases;
            }
        }
    }
    info_wersion = nullptr;
    EXPECT_GT(cases, 0U) << "this test has no such case";
    printf("%zu cases\n", cases);
}

// The commands with a request, each once.
std::vector<Subject> commands_with_requests()
{
    std::vector<Subject> with_requests = commands();
    std::erase_if(with_requests, [](const Subject &subject) {
        return subject.name != subject.command || request_for(subject) == "{}";
    });
    return with_requests;
}

INSTANTIATE_TEST_SUITE_P(Every, NaughtyStringsTest, testing::ValuesIn(commands_with_requests()),
                         name_of);

// A string for a command's name, alone and around one.
TEST(NaughtyStrings, AreNoCommands)
{
    EXPECT_GE(strings().size(), 500U);
    for (const std::string &text : strings()) {
        for (const std::string &name : {text, "GET_SN_INFO" + text, text + "GET_SN_INFO"}) {
            const Json object = parse(R"({"a":1})");
            const bool is_command = name == "GET_SN_INFO";
            EXPECT_EQ(hg_process_json_cmd(name.c_str(), object.get()),
                      is_command ? 0 : HG_NO_SUCH_COMMAND)
                << name;
            EXPECT_EQ(print(object.get()) == R"({"a":1})", !is_command) << name;
        }
    }
}

} // namespace naughty_strings_test
