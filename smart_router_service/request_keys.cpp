// SPDX-License-Identifier: MIT
#include "request_keys.h"

#include "texts.h"

#include <string.h>
#include <strings.h>

namespace smart_router {

const char *text_of(const cJSON *item)
{
    // The same as cJSON_IsString(), without a call, since this runs for every text of a request.
    // cJSON stores the type of an item in the lowest byte, and flags in the others.
    return item != nullptr && (item->type & 0xFF) == cJSON_String ? item->valuestring : nullptr;
}

const char *text_under(const cJSON *obj, const char *key)
{
    return text_of(cJSON_GetObjectItem(obj, key));
}

cJSON *array_of(const cJSON *obj, const char *key)
{
    cJSON *item = cJSON_GetObjectItem(obj, key);
    return cJSON_IsArray(item) != 0 ? item : nullptr;
}

void remove_key(cJSON *obj, cJSON *item)
{
    if (item != nullptr) {
        cJSON_Delete(cJSON_DetachItemViaPointer(obj, item));
    }
}

// The field with the key, ignoring case; the end of the table when there is none.
static FieldList::Iterator field_with(const char *key, FieldList fields)
{
    auto field = fields.begin();
    while (field.left() != 0 && strcasecmp((*field).key, key) != 0) {
        ++field;
    }
    return field;
}

// Most requests have their keys in the order and spelling of the table, so the field after the last
// match is tried first. That is one comparison for most keys; searching the object for each field
// would take many.
void find_items(const cJSON *obj, FieldList fields, cJSON **items)
{
    const size_t count = fields.count();
    for (size_t at = 0; at < count; ++at) {
        items[at] = nullptr;
    }
    auto expected = fields.begin();
    cJSON *item;
    cJSON_ArrayForEach(item, obj)
    {
        if (item->string == nullptr) {
            continue;
        }
        auto field = expected;
        if (strcmp((*field).key, item->string) != 0) {
            field = field_with(item->string, fields);
            if (field.left() == 0) {
                continue;
            }
        }
        cJSON *&found = items[count - field.left()];
        if (found == nullptr) {
            found = item; // the first of repeated keys counts
        }
        expected = field.left() != 1 ? ++field : fields.begin();
    }
}

const char *find_required(cJSON *obj, FieldList fields, const MissingTexts &missing, cJSON **items)
{
    find_items(obj, fields, items);
    const char *wrong = nullptr;
    for (size_t at = 0; at < fields.required(); ++at) {
        // find_items() has set an item for each field, which the analyser does not detect.
        // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult)
        if (items[at] == nullptr) {
            return missing.absent;
        }
        if (text_of(items[at]) == nullptr) {
            wrong = missing.no_text;
        }
    }
    return wrong;
}

void store(const Field &field, void *record, const char *text)
{
    void *place = static_cast<char *>(record) + field.offset;
    if (field.is_number()) {
        *static_cast<int32_t *>(place) = number_of(text);
    } else {
        copy_text(static_cast<char *>(place), field.width, text);
    }
}

void copy_items(FieldList fields, cJSON *const *items, void *record)
{
    for (const Field field : fields) {
        // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): set by find_items() as well
        const char *text = text_of(*items++);
        store(field, record, text != nullptr ? text : kNotGiven);
    }
}

int32_t read_record(cJSON *item, FieldList fields, void *record)
{
    cJSON *items[kMostKeys];
    if (item == nullptr || record == nullptr ||
        find_required(item, fields, node_or_value_null(), items) != nullptr) {
        return -1;
    }
    copy_items(fields, items, record);
    return 0;
}

void copy_optional(cJSON *obj, FieldList fields, void *record, Found found)
{
    for (const Field field : fields) {
        cJSON *item = cJSON_GetObjectItem(obj, field.key);
        const char *text = text_of(item);
        store(field, record, text != nullptr ? text : kNotGiven);
        if (text != nullptr && found == Found::kIsRemoved) {
            remove_key(obj, item);
        }
    }
}

} // namespace smart_router
