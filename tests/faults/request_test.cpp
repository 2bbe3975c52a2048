// SPDX-License-Identifier: MIT
// The common rules for reading a request, for each command and each of its described keys. Where a
// command differs, exceptions.cpp gives the reason.
#include "exceptions.h"
#include "handler_test.h"
#include "protocol/described_reply.h"
#include "record_places.h"
#include "request.h"
#include "sweep_run.h"
#include "traffic.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstring>

namespace request_test {

// ---- Keys --------------------------------------------------------------------------------------

// A key of the request; one of a list's elements or of an object has its name before a dot.
struct Key {
    std::string path;
    const cJSON *described;

    bool is_nested() const { return path.find('.') != std::string::npos; }
    std::string name() const { return path.substr(path.find('.') + 1); }
    const char *type() const
    {
        const char *type = cJSON_GetStringValue(cJSON_GetObjectItem(described, "type"));
        return type != nullptr ? type : "text";
    }
    bool is_required() const
    {
        return cJSON_IsTrue(cJSON_GetObjectItem(described, "required")) != 0;
    }

    // The place of the key: in the request, in the first element of its list, or in its object.
    cJSON *holder(cJSON *request) const
    {
        if (!is_nested()) {
            return request;
        }
        cJSON *outer = cJSON_GetObjectItem(request, path.substr(0, path.find('.')).c_str());
        return cJSON_IsArray(outer) != 0 ? outer->child : outer;
    }
    cJSON *item(cJSON *request) const
    {
        return cJSON_GetObjectItem(holder(request), name().c_str());
    }
};

// The described keys that the request has.
std::vector<Key> keys_of(const cJSON *description, cJSON *request)
{
    std::vector<Key> keys;
    const cJSON *key;
    cJSON_ArrayForEach(key, cJSON_GetObjectItem(description, "request"))
    {
        const std::string name = cJSON_GetObjectItem(key, "key")->valuestring;
        keys.push_back({name, key});
        const cJSON *inner;
        cJSON_ArrayForEach(inner, cJSON_GetObjectItem(key, "items"))
        {
            keys.push_back({name + '.' + cJSON_GetObjectItem(inner, "key")->valuestring, inner});
        }
    }
    std::erase_if(keys, [&](const Key &one) { return one.item(request) == nullptr; });
    return keys;
}

bool lists(const cJSON *reply, const char *property, const std::string &key)
{
    const cJSON *listed;
    cJSON_ArrayForEach(listed, cJSON_GetObjectItem(reply, property))
    {
        if (key == listed->valuestring) {
            return true;
        }
    }
    return false;
}

// ---- Calls -------------------------------------------------------------------------------------

// The calls with another text wherever the field is the one before.
std::vector<Call> with_text(std::vector<Call> calls, const std::string &field,
                            const std::string &before, const std::string &cut)
{
    const std::string owner = field.substr(0, field.find('.'));
    const std::string member = field.substr(field.find('.') + 1);
    for (Call &call : calls) {
        for (std::string &argument : call.arguments) {
            if (call.function == owner && argument == before) {
                argument = cut;
            }
            for (const RecordPlace &place : places_of(owner, member)) {
                if (place.record_size == argument.size() && place.holds(argument, before)) {
                    place.put(argument, cut);
                    break;
                }
            }
        }
    }
    return calls;
}

bool has(const std::vector<std::string> &list, const std::string &text)
{
    return std::find(list.begin(), list.end(), text) != list.end();
}

std::string formatted(const std::string &json)
{
    char *text = cJSON_Print(parse(json).get());
    std::string formatted = text;
    cJSON_free(text);
    return formatted;
}

// The calls with the request that is sent to a child router as another one.
std::vector<Call> with_request(std::vector<Call> calls, const std::string &before,
                               const std::string &request)
{
    const std::string old_text = formatted(before);
    const std::string text = formatted(request);
    for (Call &call : calls) {
        if (has(call.arguments, old_text)) {
            std::replace(call.arguments.begin(), call.arguments.end(), old_text, text);
            std::replace(call.arguments.begin(), call.arguments.end(),
                         std::to_string(old_text.size()), std::to_string(text.size()));
        }
    }
    return calls;
}

bool changes_device(const SweepRun &run)
{
    return std::any_of(run.calls.begin(), run.calls.end(),
                       [](const Call &call) { return !is_query(call.function); });
}

bool calls_same_functions(const SweepRun &one, const SweepRun &other)
{
    return std::equal(one.calls.begin(), one.calls.end(), other.calls.begin(), other.calls.end(),
                      [](const Call &left, const Call &right) {
                          return left.function == right.function &&
                                 left.arguments.size() == right.arguments.size();
                      });
}

// Whether the calls are the first ones of those.
bool begins(const std::vector<Call> &calls, const std::vector<Call> &all)
{
    return calls.size() <= all.size() && std::equal(calls.begin(), calls.end(), all.begin());
}

// ---- A command ---------------------------------------------------------------------------------

class RequestTest : public testing::TestWithParam<Subject> {
  protected:
    void SetUp() override
    {
        rich = request_for(subject);
        request = parse(rich);
        keys = keys_of(description, request.get());
        whole = run(rich);
        const Json object = parse(whole.object);
        success = agent::reply_given(description, request.get(), object.get());
        ASSERT_NE(success, nullptr)
            << agent::undescribed(description, request.get(), object.get()) << '\n'
            << rich << "\nbecame " << whole.object;
        added = members_behind(left(request.get(), success), whole.object);
    }

    // Another program checks the traffic against the descriptions as well.
    SweepRun run(const std::string &with)
    {
        SweepRun run = sweep_run(subject, with, {}, {});
        if ((keeps_successes || !run.succeeded(subject)) && with.size() < 1000 &&
            with.starts_with('{')) {
            record_traffic(subject.command, with, run.object);
        }
        return run;
    }

    std::string left(const cJSON *of, const cJSON *reply) const
    {
        return print(Json(agent::left_of(description, reply, of)).get());
    }

    // The members of a printed object after those of another.
    static std::string members_behind(const std::string &object, const std::string &all)
    {
        const size_t begin = object == "{}" ? 1 : object.size();
        return all.size() > begin ? all.substr(begin, all.size() - begin - 1) : "";
    }

    // The object after a command that removes what the reply removes and adds these members.
    std::string answered(const cJSON *changed, const cJSON *reply, const std::string &members) const
    {
        std::string object = left(changed, reply);
        object.pop_back();
        const bool has_comma = members.starts_with(',');
        if (object == "{") {
            return object + (has_comma ? members.substr(1) : members) + "}";
        }
        return object + (has_comma || members.empty() ? "" : ",") + members + "}";
    }

    // The members of a reply that is described text by text.
    static std::string fixed_members(const cJSON *reply)
    {
        std::string members;
        const cJSON *key;
        cJSON_ArrayForEach(key, cJSON_GetObjectItem(reply, "keys"))
        {
            const Json text(cJSON_Duplicate(cJSON_GetObjectItem(key, "text"), 1));
            members += (members.empty() ? "" : ",") +
                       quoted(cJSON_GetObjectItem(key, "key")->valuestring) + ":" +
                       print(text.get());
        }
        return members;
    }

    const cJSON *reply_to(const char *property, const std::string &key) const
    {
        const cJSON *reply;
        cJSON_ArrayForEach(reply, cJSON_GetObjectItem(description, "replies"))
        {
            if (lists(reply, property, key)) {
                return reply;
            }
        }
        return nullptr;
    }

    // Runs a changed request and checks what is true of every command.
    struct Case {
        Json request;
        SweepRun run;
    };
    template <class Change> Case changed(Change change)
    {
        Case changed = {parse(rich), {}};
        change(changed.request.get());
        changed.run = run(print(changed.request.get()));
        EXPECT_EQ(damage(subject, changed.run), "") << changed.run.request;
        const Json object = parse(changed.run.object);
        EXPECT_EQ(agent::undescribed(description, changed.request.get(), object.get()), "")
            << changed.run.request << "\nbecame " << changed.run.object;
        return changed;
    }

    // Checks a rule unless there is an exception from it.
    void check_rule(Rule rule, const std::string &key, const std::string &why, const SweepRun &of)
    {
        if (!why.empty() && exception(subject, rule, key) == nullptr) {
            ADD_FAILURE() << key << ": " << why << "\n  " << of.request.substr(0, 1000)
                          << "\n  became " << of.object.substr(0, 1000);
        }
    }
    void expect_exceptions_used(Rule rule)
    {
        EXPECT_EQ(stale_exceptions(subject, rule), "") << "these are no longer exceptions";
    }

    // Why the run is not a refusal by this reply.
    std::string other_than_refused(const Case &of, const Key &key, const cJSON *reply) const
    {
        const std::string expected = answered(of.request.get(), reply, fixed_members(reply));
        if (of.run.object != expected) {
            return "should have become " + expected;
        }
        if (!begins(of.run.calls, whole.calls)) {
            return "makes other calls before it is refused";
        }
        return !key.is_nested() && changes_device(of.run) ? "changes the device" : "";
    }

    // Why the run is not one that leaves out an optional key.
    std::string other_than_left_out(const Case &of) const
    {
        if (!of.run.succeeded(subject)) {
            return "should succeed";
        }
        return calls_same_functions(of.run, whole) ? "" : "makes other calls";
    }

    // Why the run is not what it is with the whole request.
    std::string other_than_whole(const Case &of) const
    {
        const std::string expected = answered(of.request.get(), success, added);
        if (of.run.object != expected) {
            return "should have become " + expected;
        }
        return of.run.calls == with_request(whole.calls, rich, of.run.request)
                   ? ""
                   : "makes other calls";
    }

    bool keeps_successes = true;
    const Subject &subject = GetParam();
    const cJSON *description = description_of(subject.command);
    std::string rich;
    Json request;
    std::vector<Key> keys;
    SweepRun whole;
    const cJSON *success = nullptr;
    std::string added; // the members that the whole run adds
};

std::string replaced(std::string text, const std::string &part, const std::string &by)
{
    for (size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += by.size()) {
        text.replace(at, part.size(), by);
    }
    return text;
}

void remove(const Key &key, cJSON *request)
{
    cJSON_DeleteItemFromObject(key.holder(request), key.name().c_str());
}

// ---- Rules -------------------------------------------------------------------------------------

TEST_P(RequestTest, AnswersToAnAbsentKey)
{
    for (const Key &key : keys) {
        const Case without = changed([&](cJSON *object) { remove(key, object); });
        const cJSON *reply = reply_to("without", key.path);
        check_rule(Rule::kAbsentKey, key.path,
                   reply != nullptr ? other_than_refused(without, key, reply)
                                    : other_than_left_out(without),
                   without.run);
    }
    expect_exceptions_used(Rule::kAbsentKey);
}

bool is_of_type(const std::string &json, const char *type)
{
    const Json value = parse(json);
    return strcmp(type, "any") == 0 ||
           (strcmp(type, "array") == 0 && cJSON_IsArray(value.get()) != 0) ||
           (strcmp(type, "object") == 0 && cJSON_IsObject(value.get()) != 0);
}

TEST_P(RequestTest, AnswersToAValueOfAnotherType)
{
    keeps_successes = false; // the schemas do not cover such requests
    for (const Key &key : keys) {
        const Case without = changed([&](cJSON *object) { remove(key, object); });
        std::vector<std::string> values = kNoTexts;
        if (strcmp(key.type(), "text") != 0) {
            values.emplace_back(R"("x")");
        }
        for (const std::string &json : values) {
            if (is_of_type(json, key.type()) && strcmp(key.type(), "any") != 0) {
                continue;
            }
            const Case other = changed([&](cJSON *object) {
                cJSON_ReplaceItemInObject(key.holder(object), key.name().c_str(),
                                          parse(json).release());
            });
            const cJSON *reply = reply_to("without_text", key.path);
            std::string why;
            if (reply != nullptr) {
                why = other_than_refused(other, key, reply);
            } else if (strcmp(key.type(), "any") == 0) {
                why = other_than_left_out(other);
            } else {
                why = other.run.calls != without.run.calls ? "is not left out"
                                                           : other_than_left_out(other);
            }
            check_rule(Rule::kOtherType, key.path, why, other.run);
        }
    }
    expect_exceptions_used(Rule::kOtherType);
}

// If an absent key and one without text have different answers, absence is checked first.
TEST_P(RequestTest, ChecksAbsenceFirst)
{
    for (const Key &absent : keys) {
        for (const Key &wrong : keys) {
            const cJSON *reply = reply_to("without", absent.path);
            if (reply == nullptr || lists(reply, "without_text", absent.path) ||
                !lists(reply, "without", wrong.path) || absent.path == wrong.path) {
                continue;
            }
            const Case both = changed([&](cJSON *object) {
                cJSON_ReplaceItemInObject(object, wrong.name().c_str(), cJSON_CreateNumber(7));
                remove(absent, object);
            });
            EXPECT_EQ(other_than_refused(both, absent, reply), "") << both.run.request;
        }
    }
}

// A text that occurs nowhere else, not even as a number.
constexpr char kMark[] = "91357";

// Compares the command's run with a text to its run with the mark in its place.
TEST_P(RequestTest, CutsATextToItsFieldAndNowhereElse)
{
    for (const Key &key : keys) {
        const cJSON *field = cJSON_GetObjectItem(key.described, "field");
        if (field == nullptr || cJSON_IsString(key.item(request.get())) == 0) {
            continue;
        }
        const auto with = [&](const std::string &text) {
            return changed(
                [&](cJSON *object) { cJSON_SetValuestring(key.item(object), text.c_str()); });
        };
        const cJSON *bytes = cJSON_GetObjectItem(key.described, "max_bytes");
        const size_t most = bytes != nullptr ? static_cast<size_t>(bytes->valueint) : SIZE_MAX;
        std::vector<std::string> texts = {"", text_of_length(100000)};
        for (size_t length = most - 1; most != SIZE_MAX && length <= most + 1; ++length) {
            texts.push_back(text_of_length(length));
        }
        const Case marked = with(kMark);
        const cJSON *reply =
            agent::reply_given(description, marked.request.get(), parse(marked.run.object).get());
        ASSERT_NE(reply, nullptr);
        const std::string members =
            members_behind(left(marked.request.get(), reply), marked.run.object);
        for (const std::string &text : texts) {
            const Case other = with(text);
            const std::string cut = text.substr(0, most);
            const std::string object =
                answered(other.request.get(), reply, replaced(members, quoted(kMark), quoted(cut)));
            const auto with_it = [&](const std::string &what) {
                return with_text(marked.run.calls, field->valuestring, kMark, what);
            };
            const bool is_same = other.run.calls == with_it(cut) ||
                                 other.run.calls == with_it(std::to_string(number_in(cut)));
            check_rule(text.empty() ? Rule::kEmptyText : Rule::kCut, key.path,
                       with_it(cut) == marked.run.calls ? "does not reach its field"
                       : other.run.object != object     ? "should have become " + object
                       : !is_same                       ? "makes other calls"
                                                        : "",
                       other.run);
        }
    }
    expect_exceptions_used(Rule::kEmptyText);
    expect_exceptions_used(Rule::kCut);
}

TEST_P(RequestTest, ReadsAndRemovesOnlyTheFirstOfRepeatedKeys)
{
    for (const Key &key : keys) {
        for (const char *json : {R"("another")", "{}"}) {
            const Case twice = changed([&](cJSON *object) {
                std::string name = key.name();
                name[0] = static_cast<char>(tolower(name[0]));
                for (const std::string &repeated : {key.name(), name}) {
                    cJSON_AddItemToObject(key.holder(object), repeated.c_str(),
                                          parse(json).release());
                }
            });
            check_rule(Rule::kRepeatedKey, key.path, other_than_whole(twice), twice.run);
        }
    }
    expect_exceptions_used(Rule::kRepeatedKey);
}

void turn_case(char *name)
{
    for (; *name != '\0'; ++name) {
        *name = static_cast<char>(islower(*name) ? toupper(*name) : tolower(*name));
    }
}

TEST_P(RequestTest, FindsAKeyInAnyLetterCase)
{
    const bool is_case_sensitive =
        cJSON_IsTrue(cJSON_GetObjectItem(description, "case_sensitive")) != 0;
    for (const Key &key : keys) {
        const Case other = changed([&](cJSON *object) { turn_case(key.item(object)->string); });
        const cJSON *reply = is_case_sensitive ? reply_to("without", key.path) : success;
        check_rule(Rule::kOtherCase, key.path,
                   !is_case_sensitive ? other_than_whole(other)
                   : reply != nullptr ? other_than_refused(other, key, reply)
                                      : other_than_left_out(other),
                   other.run);
    }
    expect_exceptions_used(Rule::kOtherCase);
}

// The keys of every reply, and one of no reply, before and after those of the request.
TEST_P(RequestTest, LeavesKeysThatAreThereAlready)
{
    std::vector<std::string> names = {"Other"};
    const cJSON *reply;
    cJSON_ArrayForEach(reply, cJSON_GetObjectItem(description, "replies"))
    {
        const cJSON *key;
        cJSON_ArrayForEach(key, cJSON_GetObjectItem(reply, "keys"))
        {
            names.emplace_back(cJSON_GetObjectItem(key, "key")->valuestring);
        }
    }
    const cJSON *key;
    cJSON_ArrayForEach(key, cJSON_GetObjectItem(description, "request"))
    {
        std::erase_if(names, [&](const std::string &name) {
            return strcasecmp(name.c_str(), cJSON_GetObjectItem(key, "key")->valuestring) == 0;
        });
    }
    for (const std::string &name : names) {
        for (const char *json : {R"({"kept":[1]})", R"("1")"}) {
            for (const int before : {0, INT_MAX}) {
                const Case with = changed([&](cJSON *object) {
                    cJSON *item = parse(json).release();
                    cJSON_AddItemToObject(object, name.c_str(), item);
                    if (before == 0 && item != object->child) {
                        cJSON_DetachItemViaPointer(object, item);
                        cJSON_InsertItemInArray(object, 0, item);
                    }
                });
                check_rule(Rule::kPresentKey, name, other_than_whole(with), with.run);
            }
        }
    }
    expect_exceptions_used(Rule::kPresentKey);
}

TEST_P(RequestTest, MakesTheDescribedCallsInTheirOrder)
{
    std::vector<std::string> made;
    for (const Call &call : whole.calls) {
        if (call.function.starts_with("devapi_") && call.function != "devapi_free_topo_list" &&
            !has(made, call.function)) {
            made.push_back(call.function);
        }
    }
    std::vector<std::string> described;
    const cJSON *function;
    cJSON_ArrayForEach(function, cJSON_GetObjectItem(description, "device_calls"))
    {
        if (has(made, function->valuestring)) { // another request of the command may not need it
            described.emplace_back(function->valuestring);
        }
    }
    if (made != described && exception(subject, Rule::kCallOrder, "") == nullptr) {
        EXPECT_EQ(made, described);
    }
    expect_exceptions_used(Rule::kCallOrder);
}

// A success logs no error.
TEST_P(RequestTest, LogsNoError)
{
    for (const recording_host::LogLine &line : whole.log) {
        EXPECT_TRUE(line.level != 3 || exception(subject, Rule::kNoError, "") != nullptr)
            << line.text;
    }
    expect_exceptions_used(Rule::kNoError);
}

TEST_P(RequestTest, LeavesValuesOtherThanObjectsUnchanged)
{
    for (const std::string &json :
         {std::string(), "[" + rich + "]", std::string("[]"), std::string("7"), std::string("true"),
          std::string(R"("x")"), std::string("null")}) {
        const SweepRun nothing = run(json);
        const std::string harm = damage(subject, nothing);
        const std::string before = json.empty() ? "null" : print(parse(json).get());
        check_rule(Rule::kNoObject, json.substr(0, 1),
                   !harm.empty()              ? harm
                   : nothing.object != before ? "is changed"
                   : changes_device(nothing)  ? "changes the device"
                                              : "",
                   nothing);
    }
    expect_exceptions_used(Rule::kNoObject);
}

INSTANTIATE_TEST_SUITE_P(Every, RequestTest, testing::ValuesIn(commands()), name_of);

} // namespace request_test
