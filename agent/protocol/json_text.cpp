// SPDX-License-Identifier: MIT
#include "protocol/json_text.h"

#include "io/text.h"
#include "protocol/json.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>
#include <new>

namespace agent {

namespace {

using PrintedText = std::unique_ptr<char, decltype(&cJSON_free)>;

PrintedText print_bytes(const cJSON *item, bool indented)
{
    PrintedText text(indented ? cJSON_Print(item) : cJSON_PrintUnformatted(item), cJSON_free);
    if (text == nullptr) {
        throw std::bad_alloc();
    }
    return text;
}

// The text as UTF-8, allocated for an item to own.
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

// Converts every string to UTF-8 in the item, in its following siblings and in all their
// descendants.
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

Json copy_in_utf8(const cJSON *item)
{
    Json copy(cJSON_Duplicate(item, 1));
    if (copy == nullptr) {
        throw std::bad_alloc();
    }
    make_utf8(copy.get());
    return copy;
}

} // namespace

std::string print(const cJSON *item, const Form &form)
{
    const PrintedText text = print_bytes(item, form.indented);
    if (form.raw_bytes || is_valid_utf8(text.get())) {
        return text.get();
    }
    return print_bytes(copy_in_utf8(item).get(), form.indented).get();
}

std::string_view ReplyPrinter::print(const cJSON *reply, bool raw_bytes)
{
    print_bytes(reply);
    if (!raw_bytes && !is_valid_utf8({memory_.get(), used_})) {
        print_bytes(copy_in_utf8(reply).get());
    }
    return {memory_.get(), used_};
}

void ReplyPrinter::print_bytes(const cJSON *item)
{
    constexpr size_t most = INT_MAX;
    constexpr size_t spare = 256; // cJSON requires more room than the text takes
    forget();
    const auto room = static_cast<int>(std::min(size_, most));
    if (cJSON_PrintPreallocated(const_cast<cJSON *>(item), memory_.get(), room, 0) == 0) {
        used_ = size_;
        forget(); // the truncated output
        const PrintedText text = agent::print_bytes(item, false);
        const size_t length = strlen(text.get());
        const size_t size = length + length / 4 + spare;
        memory_ = std::make_unique_for_overwrite<char[]>(size);
        size_ = size;
        memcpy(memory_.get(), text.get(), length + 1);
    }
    used_ = strlen(memory_.get());
}

void ReplyPrinter::forget()
{
    if (used_ > 0) { // otherwise there may be no memory yet
        explicit_bzero(memory_.get(), used_);
    }
    used_ = 0;
}

std::string quoted(std::string_view text)
{
    return print(Json(cJSON_CreateString(std::string(text).c_str())).get());
}

} // namespace agent
