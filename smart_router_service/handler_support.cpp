#include "handler_support.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

namespace smart_router {

const char *text_of(const cJSON *item)
{
    return item != nullptr && cJSON_IsString(item) != 0 ? item->valuestring : nullptr;
}

int32_t number_of(const char *text)
{
    const long number = strtol(text, nullptr, 10);
    if (number > INT32_MAX) {
        return INT32_MAX;
    }
    return number < INT32_MIN ? INT32_MIN : static_cast<int32_t>(number);
}

cJSON *array_of(const cJSON *obj, const char *key)
{
    cJSON *item = cJSON_GetObjectItem(obj, key);
    return cJSON_IsArray(item) != 0 ? item : nullptr;
}

void copy_text(char *field, size_t width, const char *text)
{
    const size_t length = strnlen(text, width - 1);
    memcpy(field, text, length);
    field[length] = '\0';
}

bool holds(const char *field, size_t width, const char *text)
{
    const size_t length = strlen(text);
    return strnlen(field, width) == length && memcmp(field, text, length) == 0;
}

bool holds_any_case(const char *field, size_t width, const char *text)
{
    const size_t length = strlen(text);
    return strnlen(field, width) == length && strncasecmp(field, text, length) == 0;
}

bool contains(const char *field, size_t width, const char *text, Case letters)
{
    const auto compare = letters == Case::kMatters ? strncmp : strncasecmp;
    const size_t length = strlen(text);
    const size_t field_length = strnlen(field, width);
    for (size_t at = 0; at + length <= field_length; ++at) {
        if (compare(field + at, text, length) == 0) {
            return true;
        }
    }
    return false;
}

void consume(cJSON *obj, cJSON *item)
{
    if (item != nullptr) {
        cJSON_Delete(cJSON_DetachItemViaPointer(obj, item));
    }
}

const char *find_required(cJSON *obj, FieldList fields, const MissingTexts &missing, cJSON **items)
{
    bool all_present = true;
    bool all_texts = true;
    for (const Field &field : fields) {
        cJSON *item = cJSON_GetObjectItem(obj, field.key);
        all_present = all_present && item != nullptr;
        all_texts = all_texts && text_of(item) != nullptr;
        *items++ = item;
    }
    if (!all_present) {
        return missing.absent;
    }
    return all_texts ? nullptr : missing.no_text;
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

// The text of a field of the record: in place, no longer than *width and without a NUL where it is
// that long, or in number for a number.
using NumberText = char[12];
static const char *text_in(const Field &field, const void *record, NumberText &number,
                           size_t *width)
{
    const void *place = static_cast<const char *>(record) + field.offset;
    if (field.is_number()) {
        snprintf(number, sizeof number, "%d", *static_cast<const int32_t *>(place));
        *width = sizeof number;
        // cppcheck-suppress CastIntegerToAddressAtReturn ; it is an array of characters
        return number;
    }
    *width = field.width;
    return static_cast<const char *>(place);
}

void copy_items(FieldList fields, cJSON *const *items, void *record)
{
    for (const Field &field : fields) {
        store(field, record, (*items++)->valuestring);
    }
}

int32_t read_items(cJSON *item, FieldList fields, cJSON **items, void *record)
{
    if (item == nullptr || record == nullptr ||
        find_required(item, fields, kNodeOrValueNull, items) != nullptr) {
        return -1;
    }
    copy_items(fields, items, record);
    return 0;
}

void copy_optional(cJSON *obj, FieldList fields, void *record, Found found)
{
    for (const Field &field : fields) {
        cJSON *item = cJSON_GetObjectItem(obj, field.key);
        const char *text = text_of(item);
        store(field, record, text != nullptr ? text : kNotGiven);
        if (text != nullptr && found == Found::kIsConsumed) {
            consume(obj, item);
        }
    }
}

// A text item with room for so many bytes, to be written by the caller, and the NUL behind them;
// null when memory ran out.
static cJSON *create_text(size_t size)
{
    cJSON *item = cJSON_CreateNull();
    char *text = static_cast<char *>(item != nullptr ? cJSON_malloc(size + 1) : nullptr);
    if (text == nullptr) {
        cJSON_Delete(item);
        return nullptr;
    }
    text[size] = '\0';
    item->type = cJSON_String;
    item->valuestring = text;
    return item;
}

// cJSON_CreateString() wants a terminated text; a record's field need not be one. Building the item
// from its length reads the field once and allocates no more than cJSON would.
bool add_text(cJSON *object, const char *key, const char *text, size_t width)
{
    const size_t length = strnlen(text, width);
    cJSON *item = create_text(length);
    if (item == nullptr) {
        return false;
    }
    memcpy(item->valuestring, text, length);
    cJSON_AddItemToObjectCS(object, key, item);
    return true;
}

bool add_fields(cJSON *object, FieldList fields, const void *record)
{
    for (const Field &field : fields) {
        NumberText number;
        size_t width;
        const char *text = text_in(field, record, number, &width);
        if (!add_text(object, field.key, text, width)) {
            return false;
        }
    }
    return true;
}

cJSON *object_of(FieldList fields, const void *record)
{
    cJSON *object = cJSON_CreateObject();
    if (object != nullptr && !add_fields(object, fields, record)) {
        cJSON_Delete(object);
        return nullptr;
    }
    return object;
}

bool append_if_possible(cJSON *list, FieldList fields, const void *record)
{
    cJSON *object = object_of(fields, record);
    if (object == nullptr) {
        return false;
    }
    cJSON_AddItemToArray(list, object);
    return true;
}

void Reply::add(const char *key, cJSON *item)
{
    complete_ = complete_ && item != nullptr;
    if (item != nullptr) {
        cJSON_AddItemToObjectCS(&root_, key, item);
    }
}

void Reply::reserve(FieldList fields)
{
    for (const Field &field : fields) {
        add(field.key, create_text(field.is_number() ? sizeof(NumberText) : field.width));
    }
}

void Reply::set_reserved(FieldList fields, const void *record)
{
    for (const Field &field : fields) {
        NumberText number;
        size_t width;
        const char *value = text_in(field, record, number, &width);
        char *reserved = cJSON_GetObjectItem(&root_, field.key)->valuestring;
        const size_t length = strnlen(value, width);
        memcpy(reserved, value, length);
        reserved[length] = '\0';
    }
}

cJSON *Reply::list(const char *key)
{
    cJSON *list = cJSON_CreateArray();
    add(key, list);
    return list;
}

void Reply::append(cJSON *list, cJSON *element)
{
    complete_ = complete_ && element != nullptr;
    if (complete_) {
        cJSON_AddItemToArray(list, element);
    } else {
        cJSON_Delete(element);
    }
}

bool Reply::join(cJSON *obj)
{
    if (!complete_ || cJSON_IsObject(obj) == 0) {
        return false;
    }
    while (root_.child != nullptr) {
        cJSON_AddItemToArray(obj, cJSON_DetachItemViaPointer(&root_, root_.child));
    }
    return true;
}

void fail(cJSON *obj, const char *reason, size_t width)
{
    Reply reply;
    reply.text(kStatus, "1");
    if (reason != nullptr) {
        reply.text(kFailReason, reason, width);
    }
    reply.join(obj);
}

int32_t answer(cJSON *obj, Reply &reply, const char *reason)
{
    if (reply.join(obj)) {
        return 0;
    }
    fail(obj, reason);
    return -1;
}

void answer_query(cJSON *obj, bool failed, FieldList fields, const void *record,
                  const char *failure, StatusAt status)
{
    if (failed) {
        fail(obj, failure);
        return;
    }
    Reply reply;
    if (status == StatusAt::kFirst) {
        reply.success();
    }
    reply.fields(fields, record);
    if (status == StatusAt::kLast) {
        reply.success();
    }
    answer(obj, reply, failure);
}

bool can_conclude(cJSON *obj, const Reply &success, const char *failure)
{
    if (cJSON_IsObject(obj) != 0 && success.complete()) {
        return true;
    }
    fail(obj, failure);
    return false;
}

void conclude(cJSON *obj, Reply &success, bool failed, const char *failure, size_t width)
{
    if (failed) {
        fail(obj, failure, width);
    } else {
        success.join(obj);
    }
}

int32_t carry_out(cJSON *obj, int32_t (*call)(), const char *failure)
{
    Reply success;
    success.success();
    if (!can_conclude(obj, success, failure)) {
        return -1;
    }
    const int32_t result = call();
    conclude(obj, success, result != 0, failure);
    return result;
}

bool SettingSteps::find(const MissingTexts &missing)
{
    const char *wrong = find_required(obj_, fields_, missing, items_);
    if (wrong == nullptr) {
        success_.success();
        return true;
    }
    if (when_ == Consume::kAlways) {
        consume_items();
    }
    fail(obj_, wrong);
    return false;
}

bool SettingSteps::fill_record(void *record, const char *failure, size_t width)
{
    if (!success_.complete()) {
        end(true, failure, width);
        return false;
    }
    copy_items(fields_, items_, record);
    return true;
}

void SettingSteps::end(bool failed, const char *failure, size_t width)
{
    if (when_ != Consume::kOnSuccess || !failed) {
        consume_items();
    }
    conclude(obj_, success_, failed, failure, width);
}

void SettingSteps::consume_items()
{
    for (size_t at = 0; at < fields_.count; ++at) {
        consume(obj_, items_[at]);
    }
}

} // namespace smart_router
