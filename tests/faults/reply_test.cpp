// SPDX-License-Identifier: MIT
// What all replies and reports have in common: each key with a field of the device contains what
// the device wrote there, up to the width of the field; and, for each command, the memory that the
// device writes to was zeroed before.
#include "exceptions.h"
#include "handler_test.h"
#include "protocol/described_reply.h"
#include "protocol/device_facts.h"
#include "sweep_run.h"

namespace reply_test {

using rich_device::Fault;
using rich_device::Written;

class ReplyTest : public testing::TestWithParam<Subject> {
  protected:
    // Checks the items against the keys of their description.
    void check(const cJSON *items, const cJSON *keys, const std::string &path)
    {
        const cJSON *item;
        cJSON_ArrayForEach(item, items)
        {
            if (cJSON_IsArray(items) != 0) {
                check(item, keys, path);
                continue;
            }
            check_item(item, keys, path + item->string);
        }
    }

    // A key that is repeated may have a field in each place.
    void check_item(const cJSON *item, const cJSON *keys, const std::string &path)
    {
        const bool is_text = cJSON_IsString(item) != 0;
        const bool is_value = is_text || cJSON_IsNumber(item) != 0;
        const std::string value = is_text ? item->valuestring : std::to_string(item->valueint);
        std::vector<std::string> named;
        bool is_written = false;
        const cJSON *key;
        cJSON_ArrayForEach(key, keys)
        {
            if (std::string(item->string) != cJSON_GetObjectItem(key, "key")->valuestring) {
                continue;
            }
            const cJSON *field = cJSON_GetObjectItem(key, "field");
            if (field != nullptr && is_value) {
                named.emplace_back(field->valuestring);
                is_written = is_written || rich_device::has_written(field->valuestring, value);
            }
            check(item, cJSON_GetObjectItem(key, "items"), path + '.');
        }
        fields += named.size();
        EXPECT_TRUE(named.empty() || is_written || (value.empty() && is_first_refused))
            << path << " is not what the device wrote to " << testing::PrintToString(named) << ": "
            << value;
    }

    const Subject &subject = GetParam();
    const cJSON *description = description_of(subject.command);
    const std::string request = request_for(subject);
    size_t fields = 0;
    bool is_first_refused = false; // the first record then counts as empty
};

bool has_field(const cJSON *keys)
{
    const cJSON *key;
    cJSON_ArrayForEach(key, keys)
    {
        if (cJSON_GetObjectItem(key, "field") != nullptr ||
            has_field(cJSON_GetObjectItem(key, "items"))) {
            return true;
        }
    }
    return false;
}

TEST_P(ReplyTest, HasWhatTheDeviceWroteToTheFields)
{
    const Fault faults[] = {
        {},
        {.call = 0, .written = Written::kWidest, .lasts = true},
        {.call = 0, .result = -1, .written = Written::kWidest},
    };
    for (const Fault &fault : faults) {
        const SweepRun run = sweep_run(subject, request, {}, fault);
        const Json object = parse(run.object);
        const cJSON *reply = agent::reply_given(description, parse(request).get(), object.get());
        ASSERT_NE(reply, nullptr) << run.object;
        EXPECT_TRUE(fault.result.has_value() || run.succeeded(subject)) << run.object;
        const Json left(agent::left_of(description, reply, parse(request).get()));
        for (int count = cJSON_GetArraySize(left.get()); count > 0; --count) {
            cJSON_DeleteItemFromArray(object.get(), 0);
        }
        const cJSON *keys = cJSON_GetObjectItem(reply, "keys");
        fields = 0;
        is_first_refused = fault.result.has_value();
        check(object.get(), keys, "");
        EXPECT_EQ(fields != 0, has_field(keys)) << run.object;
    }
}

// Whether the request has a key for the field.
bool is_of_key(const std::string &field, const cJSON *keys)
{
    const cJSON *key;
    cJSON_ArrayForEach(key, keys)
    {
        const char *described = cJSON_GetStringValue(cJSON_GetObjectItem(key, "field"));
        if ((described != nullptr && field == described) ||
            is_of_key(field, cJSON_GetObjectItem(key, "items"))) {
            return true;
        }
    }
    return false;
}

TEST_P(ReplyTest, ComesFromRecordsThatWereZeroed)
{
    sweep_run(subject, request, {}, {});
    for (const auto &[function, field] : rich_device::given_fields()) {
        const device_facts::Function *facts = device_facts::find(function);
        EXPECT_TRUE(is_of_key(field, cJSON_GetObjectItem(description, "request")) ||
                    (facts != nullptr &&
                     device_facts::is_among(facts->given, field.substr(field.find('.') + 1))) ||
                    exception(subject, Rule::kZeroed, field) != nullptr)
            << field << " held something before the device wrote it";
    }
    EXPECT_EQ(stale_exceptions(subject, Rule::kZeroed), "") << "these are no longer exceptions";
}

class ReportTest : public ReplyTest {};

TEST_P(ReportTest, HasWhatTheDeviceWroteToTheFields)
{
    const Fault faults[] = {{}, {.call = 0, .written = Written::kWidest, .lasts = true}};
    for (const Fault &fault : faults) {
        const SweepRun run = sweep_run(subject, request, {}, fault);
        EXPECT_TRUE(run.succeeded(subject)) << run.object;
        const Json object = parse(run.object);
        fields = 0;
        const cJSON *reply;
        cJSON_ArrayForEach(reply, cJSON_GetObjectItem(report_of(subject), "replies"))
        {
            check(object.get(), cJSON_GetObjectItem(reply, "keys"), "");
        }
        EXPECT_NE(fields, 0U) << run.object;
    }
}

std::vector<Subject> reports()
{
    std::vector<Subject> reports = subjects();
    std::erase_if(reports, [](const Subject &subject) { return report_of(subject) == nullptr; });
    return reports;
}

INSTANTIATE_TEST_SUITE_P(Every, ReplyTest, testing::ValuesIn(commands()), name_of);
INSTANTIATE_TEST_SUITE_P(Every, ReportTest, testing::ValuesIn(reports()), name_of);

} // namespace reply_test
