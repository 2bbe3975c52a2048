// SPDX-License-Identifier: MIT
// The keys of a request: finding them as cJSON does, that is, the first match, ignoring case;
// filling records from them; and removing them from the object.
#pragma once

#include "fields.h"

#include <cjson/cJSON.h>
#include <stddef.h>
#include <stdint.h>

namespace smart_router {

// The text of the item, or null if item is null or not a string.
[[gnu::pure]] const char *text_of(const cJSON *item);

// The text of the key, or null if the key is absent or not a string.
const char *text_under(const cJSON *obj, const char *key);

// The item of the key if it is an array, otherwise null.
cJSON *array_of(const cJSON *obj, const char *key);

// Removes an item of obj and deletes it; does nothing for null.
void remove_key(cJSON *obj, cJSON *item);

// Writes a text to the field of the record.
void store(const Field &field, void *record, const char *text);

// The largest number of keys in a setting.
constexpr size_t kMostKeys = 20;

// Fills a record from the keys of an item. Result: 0, or -1 when an argument is null, or a required
// key is absent or not a string, and then the record is unchanged.
int32_t read_record(cJSON *item, FieldList fields, void *record);

template <class Record, size_t count, size_t keys_size>
int32_t read_fields(cJSON *item, const Fields<Record, count, keys_size> &fields, Record *record)
{
    static_assert(count <= kMostKeys, "make kMostKeys larger");
    return read_record(item, fields, record);
}

// The value of a field that the request does not give: the device leaves the setting unchanged, or
// uses its default.
inline constexpr char kNotGiven[] = "-1";

// Fills optional fields with the text of the key, or with kNotGiven. With kIsRemoved, keys with a
// text are removed from obj; a key that is not a string stays.
enum class Found { kStays, kIsRemoved };
void copy_optional(cJSON *obj, FieldList fields, void *record, Found found);

// The failure texts of a command for a required key that is absent, and for one that is not a
// string.
struct MissingTexts {
    const char *absent;
    const char *no_text;

    // cppcheck-suppress noExplicitConstructor ; most commands have one text for both
    constexpr MissingTexts(const char *either) : absent(either), no_text(either) {}
    constexpr MissingTexts(const char *absent_key, const char *key_without_text)
        : absent(absent_key), no_text(key_without_text)
    {
    }
};

constexpr MissingTexts node_or_value_null()
{
    return {"json node null", "value string null"};
}

// Finds the keys of the table in obj and stores their items in the order of the table; null for an
// absent key.
void find_items(const cJSON *obj, FieldList fields, cJSON **items);

// The same. Result: null when all required keys are strings, otherwise the failure text. An absent
// key takes precedence over one that is not a string, regardless of their order in the table.
const char *find_required(cJSON *obj, FieldList fields, const MissingTexts &missing, cJSON **items);

// Copies the texts of the items to the fields of the record, and kNotGiven where there is none.
void copy_items(FieldList fields, cJSON *const *items, void *record);

} // namespace smart_router
