// What all replies have in common, for each command: each key with a field of the device holds what
// the device wrote there, up to the width of the field and no further.
#include "described_reply.h"
#include "handler_test.h"
#include "sweep_run.h"

namespace reply_test {

using rich_device::Fault;
using rich_device::Written;

class ReplyTest : public testing::TestWithParam<Subject> {
  protected:
    // Holds the items against the keys that they are described with.
    void check(const cJSON *items, const cJSON *keys, const std::string &path)
    {
        const cJSON *item;
        cJSON_ArrayForEach(item, items)
        {
            if (cJSON_IsArray(items) != 0) {
                check(item, keys, path);
                continue;
            }
            const cJSON *key;
            cJSON_ArrayForEach(key, keys)
            {
                if (std::string(item->string) == cJSON_GetObjectItem(key, "key")->valuestring) {
                    check_item(item, key, path + item->string);
                }
            }
        }
    }

    void check_item(const cJSON *item, const cJSON *key, const std::string &path)
    {
        const cJSON *field = cJSON_GetObjectItem(key, "field");
        const bool is_text = cJSON_IsString(item) != 0;
        if (field != nullptr && (is_text || cJSON_IsNumber(item) != 0)) {
            ++fields;
            const std::string value = is_text ? item->valuestring : std::to_string(item->valueint);
            EXPECT_TRUE(rich_device::has_told(field->valuestring, value))
                << path << " is not what the device wrote to " << field->valuestring << ": "
                << value;
        }
        check(item, cJSON_GetObjectItem(key, "items"), path + '.');
    }

    const Subject &subject = GetParam();
    size_t fields = 0;
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
    const cJSON *description = description_of(subject.command);
    const std::string request = request_for(subject);
    for (const auto written : {Written::kWhole, Written::kWidest}) {
        const SweepRun run =
            sweep_run(subject, request, {}, {.call = 0, .written = written, .lasts = true});
        const Json object = parse(run.object);
        const cJSON *reply = reply_given(description, parse(request).get(), object.get());
        ASSERT_NE(reply, nullptr) << run.object;
        ASSERT_TRUE(run.succeeded(subject)) << run.object;
        const Json left(left_of(description, reply, parse(request).get()));
        for (int count = cJSON_GetArraySize(left.get()); count > 0; --count) {
            cJSON_DeleteItemFromArray(object.get(), 0);
        }
        const cJSON *keys = cJSON_GetObjectItem(reply, "keys");
        fields = 0;
        check(object.get(), keys, "");
        EXPECT_EQ(fields != 0, has_field(keys)) << run.object;
    }
}

std::vector<Subject> commands()
{
    std::vector<Subject> commands = subjects();
    std::erase_if(commands, [](const Subject &subject) { return subject.builder != nullptr; });
    return commands;
}

std::string name_of(const testing::TestParamInfo<Subject> &info)
{
    return test_name(info.param);
}

INSTANTIATE_TEST_SUITE_P(Every, ReplyTest, testing::ValuesIn(commands()), name_of);

} // namespace reply_test
