#include "protocol/json_text.h"

#include "io/text.h"
#include "protocol/json.h"

#include <cstring>
#include <memory>
#include <new>

namespace agent {

namespace {

std::string print_bytes(const cJSON *item, bool indented)
{
    const std::unique_ptr<char, decltype(&cJSON_free)> text(
        indented ? cJSON_Print(item) : cJSON_PrintUnformatted(item), cJSON_free);
    if (text == nullptr) {
        throw std::bad_alloc();
    }
    return text.get();
}

// The text as UTF-8, for an item to own.
char *new_utf8_text(const char *text)
{
    const std::string converted = to_utf8(text);
    auto *copy = static_cast<char *>(cJSON_malloc(converted.size() + 1));
    if (copy == nullptr) {
        throw std::bad_alloc();
    }
    memcpy(copy, converted.c_str(), converted.size() + 1);
    return copy;
}

// Makes every text UTF-8 in the item, in those behind it and in all that they contain.
void make_utf8(cJSON *item)
{
    for (; item != nullptr; item = item->next) {
        if (item->valuestring != nullptr) {
            char *text = new_utf8_text(item->valuestring);
            cJSON_free(item->valuestring);
            item->valuestring = text;
        }
        if (item->string != nullptr) {
            char *key = new_utf8_text(item->string);
            if ((item->type & cJSON_StringIsConst) == 0) {
                cJSON_free(item->string);
            }
            item->string = key;
            item->type &= ~cJSON_StringIsConst;
        }
        make_utf8(item->child);
    }
}

} // namespace

std::string print(const cJSON *item, const Form &form)
{
    std::string text = print_bytes(item, form.indented);
    if (form.raw_bytes || is_valid_utf8(text)) {
        return text;
    }
    const Json copy(cJSON_Duplicate(item, 1));
    if (copy == nullptr) {
        throw std::bad_alloc();
    }
    make_utf8(copy.get());
    return print_bytes(copy.get(), form.indented);
}

std::string quoted(std::string_view text)
{
    return print(Json(cJSON_CreateString(std::string(text).c_str())).get());
}

} // namespace agent
