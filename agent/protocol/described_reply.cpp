// SPDX-License-Identifier: MIT
#include "protocol/described_reply.h"

#include <cstring>

namespace agent {

namespace {

const char *text_of(const cJSON *object, const char *key)
{
    return cJSON_GetStringValue(cJSON_GetObjectItemCaseSensitive(object, key));
}

std::string keys_undescribed(const cJSON *item, const cJSON *keys);

std::string text_undescribed(const cJSON *value, const cJSON *key)
{
    const char *text = cJSON_GetStringValue(value);
    if (text == nullptr) {
        return "should be a text";
    }
    const char *fixed = text_of(key, "text");
    if (fixed != nullptr && strcmp(text, fixed) != 0) {
        return "should be \"" + std::string(fixed) + '"';
    }
    const cJSON *choices = cJSON_GetObjectItemCaseSensitive(key, "one_of");
    bool is_chosen = choices == nullptr;
    const cJSON *choice;
    cJSON_ArrayForEach(choice, choices)
    {
        is_chosen = is_chosen || strcmp(text, choice->valuestring) == 0;
    }
    if (!is_chosen) {
        return "should be another text";
    }
    const cJSON *most = cJSON_GetObjectItemCaseSensitive(key, "max_bytes");
    return most != nullptr && strlen(text) > static_cast<size_t>(most->valueint) ? "is too long"
                                                                                 : "";
}

std::string value_undescribed(const cJSON *value, const cJSON *key)
{
    const char *type = text_of(key, "type");
    const cJSON *items = cJSON_GetObjectItemCaseSensitive(key, "items");
    if (type == nullptr) {
        return text_undescribed(value, key);
    }
    if (strcmp(type, "number") == 0) {
        return cJSON_IsNumber(value) != 0 ? "" : "should be a number";
    }
    if (strcmp(type, "object") == 0) {
        if (cJSON_IsObject(value) == 0) {
            return "should be an object";
        }
        return items != nullptr ? keys_undescribed(value->child, items) : "";
    }
    if (strcmp(type, "array") == 0 && cJSON_IsArray(value) == 0) {
        return "should be an array";
    }
    if (strcmp(type, "array") == 0 && items != nullptr) {
        const cJSON *element;
        cJSON_ArrayForEach(element, value)
        {
            std::string why = cJSON_IsObject(element) != 0 ? keys_undescribed(element->child, items)
                                                           : "should hold objects";
            if (!why.empty()) {
                return why;
            }
        }
    }
    return "";
}

// Checks an item and its following siblings against the keys.
std::string keys_undescribed(const cJSON *item, const cJSON *keys)
{
    const cJSON *key;
    cJSON_ArrayForEach(key, keys)
    {
        const std::string name = text_of(key, "key");
        if (item != nullptr && name == item->string) {
            const std::string why = value_undescribed(item, key);
            if (!why.empty()) {
                return std::string(name).append(" ").append(why);
            }
            item = item->next;
        } else if (cJSON_IsTrue(cJSON_GetObjectItemCaseSensitive(key, "optional")) == 0) {
            return name + " is missing";
        }
    }
    return item == nullptr ? "" : std::string(item->string) + " is not described";
}

// Removes the keys from the request that the reply says are removed.
void remove_described(cJSON *request, const cJSON *reply, const char *list, bool is_case_sensitive,
                      bool only_texts)
{
    const cJSON *key;
    cJSON_ArrayForEach(key, cJSON_GetObjectItemCaseSensitive(reply, list))
    {
        cJSON *item = is_case_sensitive
                          ? cJSON_GetObjectItemCaseSensitive(request, key->valuestring)
                          : cJSON_GetObjectItem(request, key->valuestring);
        if (item != nullptr && (!only_texts || cJSON_IsString(item) != 0)) {
            cJSON_Delete(cJSON_DetachItemViaPointer(request, item));
        }
    }
}

// Why the object is not this reply to the request.
std::string other_than(const cJSON *reply, const cJSON *description, const cJSON *request,
                       const cJSON *object)
{
    cJSON *rest = left_of(description, reply, request);
    const cJSON *item = object->child;
    std::string why;
    const cJSON *left;
    cJSON_ArrayForEach(left, rest)
    {
        if (item == nullptr || strcmp(item->string, left->string) != 0 ||
            cJSON_Compare(item, left, 1) == 0) {
            why = std::string(left->string) + " of the request should be left";
            break;
        }
        item = item->next;
    }
    cJSON_Delete(rest);
    return why.empty() ? keys_undescribed(item, cJSON_GetObjectItemCaseSensitive(reply, "keys"))
                       : why;
}

} // namespace

cJSON *left_of(const cJSON *description, const cJSON *reply, const cJSON *request)
{
    const bool is_case_sensitive =
        cJSON_IsTrue(cJSON_GetObjectItemCaseSensitive(description, "case_sensitive")) != 0;
    cJSON *rest = cJSON_Duplicate(request, 1);
    remove_described(rest, reply, "removes", is_case_sensitive, false);
    remove_described(rest, reply, "removes_if_text", is_case_sensitive, true);
    return rest;
}

bool is_of_request(const cJSON *reply)
{
    const cJSON *key = cJSON_GetObjectItemCaseSensitive(reply, "without");
    key = key != nullptr ? key : cJSON_GetObjectItemCaseSensitive(reply, "without_text");
    // The key of an element can be missing when the device has been called for others.
    return key != nullptr && strchr(key->child->valuestring, '.') == nullptr;
}

const cJSON *reply_given(const cJSON *description, const cJSON *request, const cJSON *object)
{
    const cJSON *given = nullptr;
    const cJSON *reply;
    cJSON_ArrayForEach(reply, cJSON_GetObjectItemCaseSensitive(description, "replies"))
    {
        if ((given == nullptr || is_of_request(given)) &&
            other_than(reply, description, request, object).empty()) {
            given = reply;
        }
    }
    return given;
}

std::string undescribed(const cJSON *description, const cJSON *request, const cJSON *object)
{
    if (reply_given(description, request, object) != nullptr) {
        return "";
    }
    std::string reasons;
    const cJSON *reply;
    cJSON_ArrayForEach(reply, cJSON_GetObjectItemCaseSensitive(description, "replies"))
    {
        reasons += "\n  not when " + std::string(text_of(reply, "when")) + ": " +
                   other_than(reply, description, request, object);
    }
    return "no described reply" + reasons;
}

} // namespace agent
