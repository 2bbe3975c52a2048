// SPDX-License-Identifier: MIT
#include "reply.h"

#include "texts.h"

#include <string.h>

namespace smart_router {

// The text of a field of the record. The text of a text field is returned in place: it ends after
// *width bytes, or at a NUL before that. The text of a number is written to the buffer.
static const char *text_in(const Field &field, const void *record, NumberText &number,
                           size_t *width)
{
    const void *place = static_cast<const char *>(record) + field.offset;
    if (field.is_number()) {
        put_number(number, *static_cast<const int32_t *>(place));
        *width = sizeof number;
        // cppcheck-suppress CastIntegerToAddressAtReturn ; it is an array of characters
        return number;
    }
    *width = field.width;
    return static_cast<const char *>(place);
}

// Does what cJSON_AddItemToObjectCS() does, for an item that has no key yet.
static void append_item(cJSON *object, const char *key, cJSON *item)
{
    item->string = const_cast<char *>(key);
    item->type |= cJSON_StringIsConst;
    cJSON_AddItemToArray(object, item);
}

// A text item for size bytes, which the caller writes, followed by a NUL; null when memory ran out.
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

// cJSON_CreateString() needs a NUL, which the field of a record may lack. An item that is built
// from the length of its text reads the field once and allocates no more than cJSON would.
bool add_text(cJSON *object, const char *key, const char *text, size_t width)
{
    const size_t length = strnlen(text, width);
    cJSON *item = create_text(length);
    if (item == nullptr) {
        return false;
    }
    memcpy(item->valuestring, text, length);
    append_item(object, key, item);
    return true;
}

bool add_constant(cJSON *object, const char *key, const char *text)
{
    cJSON *item = cJSON_CreateStringReference(text);
    if (item == nullptr) {
        return false;
    }
    append_item(object, key, item);
    return true;
}

bool add_fields(cJSON *object, FieldList fields, const void *record)
{
    for (const Field field : fields) {
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

Reply::Reply() : root_(), complete_(true)
{
    root_.type = cJSON_Object;
}

void Reply::text(const char *key, const char *text)
{
    this->text(key, text, SIZE_MAX);
}

void Reply::text(const char *key, const char *text, size_t width)
{
    complete_ = complete_ && add_text(&root_, key, text, width);
}

void Reply::fields(FieldList fields, const void *record)
{
    complete_ = complete_ && add_fields(&root_, fields, record);
}

void Reply::status(const char *status)
{
    complete_ = complete_ && add_constant(&root_, kStatus, status);
}

void Reply::success()
{
    status("0");
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
    for (const Field field : fields) {
        add(field.key, create_text(field.is_number() ? sizeof(NumberText) : field.width));
    }
}

void Reply::set_reserved(FieldList fields, const void *record)
{
    for (const Field field : fields) {
        NumberText number;
        size_t width;
        const char *value = text_in(field, record, number, &width);
        char *reserved = cJSON_GetObjectItem(&root_, field.key)->valuestring;
        const size_t length = strnlen(value, width);
        memcpy(reserved, value, length);
        reserved[length] = '\0';
    }
}

void Reply::append(cJSON *list, FieldList fields, const void *record)
{
    append(list, complete_ ? object_of(fields, record) : nullptr);
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
    // cJSON_IsObject() is false for null too; the null check is for the compiler's analyser.
    if (!complete_ || obj == nullptr || cJSON_IsObject(obj) == 0) {
        return false;
    }
    cJSON *first = root_.child;
    root_.child = nullptr;
    if (obj->child == nullptr) {
        obj->child = first;
    } else if (first != nullptr) {
        cJSON *last = obj->child;
        while (last->next != nullptr) {
            last = last->next;
        }
        last->next = first;
        obj->child->prev = first->prev; // where cJSON stores the last item of a list
        first->prev = last;
    }
    return true;
}

SuccessReply::SuccessReply()
{
    success();
}

bool fail(cJSON *obj, const char *reason, size_t width)
{
    Reply reply;
    reply.status("1");
    if (reason != nullptr) {
        reply.text(kFailReason, reason, width);
    }
    return reply.join(obj);
}

bool fail(cJSON *obj, const char *reason)
{
    return fail(obj, reason, SIZE_MAX);
}

int32_t refuse(cJSON *obj, const char *reason)
{
    fail(obj, reason);
    return -1;
}

int32_t answer(cJSON *obj, Reply &reply, const char *reason)
{
    return reply.join(obj) ? 0 : refuse(obj, reason);
}

} // namespace smart_router
