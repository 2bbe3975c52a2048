#include "handler_support.h"

#include <string.h>

namespace smart_router {

namespace {

// cJSON_CreateString() wants a terminated text; a record's field need not be one. Building the item
// from its length reads the field once and allocates no more than cJSON would.
bool add_text_of_length(cJSON *object, const char *key, const char *text, size_t length)
{
    cJSON *item = cJSON_CreateNull();
    char *copy = static_cast<char *>(item != nullptr ? cJSON_malloc(length + 1) : nullptr);
    if (copy == nullptr) {
        cJSON_Delete(item);
        return false;
    }
    memcpy(copy, text, length);
    copy[length] = '\0';
    item->type = cJSON_String;
    item->valuestring = copy;
    cJSON_AddItemToObjectCS(object, key, item);
    return true;
}

} // namespace

const char *text_of(const cJSON *item)
{
    return item != nullptr && cJSON_IsString(item) != 0 ? item->valuestring : nullptr;
}

void copy_text(char *field, size_t width, const char *text)
{
    const size_t length = strnlen(text, width - 1);
    memcpy(field, text, length);
    field[length] = '\0';
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

void copy_items(FieldList fields, cJSON *const *items, void *record)
{
    for (const Field &field : fields) {
        copy_text(static_cast<char *>(record) + field.offset, field.width, text_of(*items++));
    }
}

bool add_text(cJSON *object, const char *key, const char *text)
{
    return add_text_of_length(object, key, text, strlen(text));
}

bool add_text(cJSON *object, const char *key, const char *text, size_t width)
{
    return add_text_of_length(object, key, text, strnlen(text, width));
}

bool add_fields(cJSON *object, FieldList fields, const void *record)
{
    for (const Field &field : fields) {
        const char *text = static_cast<const char *>(record) + field.offset;
        if (!add_text(object, field.key, text, field.width)) {
            return false;
        }
    }
    return true;
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

void fail(cJSON *obj, const char *reason)
{
    fail(obj, reason, reason != nullptr ? strlen(reason) : 0);
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

void answer(cJSON *obj, Reply &reply, const char *reason)
{
    if (!reply.join(obj)) {
        fail(obj, reason);
    }
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

bool SettingRun::begin(void *record, const MissingTexts &missing, const char *failure, Consume when)
{
    const char *wrong = find_required(obj_, fields_, missing, items_);
    if (wrong != nullptr) {
        if (when == Consume::kAlways) {
            consume_items();
        }
        fail(obj_, wrong);
        return false;
    }
    success_.success();
    if (!success_.complete()) {
        end(true, failure, when);
        return false;
    }
    copy_items(fields_, items_, record);
    return true;
}

void SettingRun::end(bool failed, const char *failure, Consume when)
{
    if (when != Consume::kOnSuccess || !failed) {
        consume_items();
    }
    if (failed) {
        fail(obj_, failure);
    } else {
        success_.join(obj_);
    }
}

void SettingRun::consume_items()
{
    for (size_t at = 0; at < fields_.count; ++at) {
        consume(obj_, items_[at]);
    }
}

} // namespace smart_router
