// The keys of a request: finding them as cJSON finds keys, which is the first one and without
// regard to case, filling records from them, and removing them from the object.
#pragma once

#include "fields.h"

#include <cjson/cJSON.h>
#include <stddef.h>
#include <stdint.h>

namespace smart_router {

// The text of the item, or null where there is no item or it is not a text.
[[gnu::pure]] const char *text_of(const cJSON *item);

// The text under the key, or null where there is none.
const char *text_under(const cJSON *obj, const char *key);

// The item under the key when it is an array; anything else counts as absent.
cJSON *array_of(const cJSON *obj, const char *key);

// Removes an item that was found in obj, and deletes it; does nothing for null.
void remove_key(cJSON *obj, cJSON *item);

// Writes a text into its field of the record.
void store(const Field &field, void *record, const char *text);

// The most keys that a setting has.
constexpr size_t kMostKeys = 20;

// Fills a record from the keys of an item. Result: 0, or -1 when an argument is null or a required
// key has no text, and then the record is untouched.
int32_t read_record(cJSON *item, FieldList fields, void *record);

template <class Record, size_t count, size_t keys_size>
int32_t read_fields(cJSON *item, const Fields<Record, count, keys_size> &fields, Record *record)
{
    static_assert(count <= kMostKeys, "make kMostKeys larger");
    return read_record(item, fields, record);
}

// Stands in a record for a value that the request does not give: the device leaves the setting
// unchanged, or uses its default.
inline constexpr char kNotGiven[] = "-1";

// Fills fields that a request may leave out: with the text of the key, or with kNotGiven. Where
// asked for, keys with a text are removed from obj; a key without a text stays.
enum class Found { kStays, kIsRemoved };
void copy_optional(cJSON *obj, FieldList fields, void *record, Found found);

// What a command answers when a required key is absent, and when the key has no text.
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

// Finds the keys of the table in obj and stores their items, in the order of the table; null for
// an absent key.
void find_items(const cJSON *obj, FieldList fields, cJSON **items);

// The same. Result: null when all required keys have a text, else the text to answer. A key that is
// absent takes precedence over one without a text, wherever they stand in the table.
const char *find_required(cJSON *obj, FieldList fields, const MissingTexts &missing, cJSON **items);

// Copies the texts of the items into the fields of the record, and kNotGiven where there is none.
void copy_items(FieldList fields, cJSON *const *items, void *record);

} // namespace smart_router
