// SPDX-License-Identifier: MIT
#include "record/json_members.h"

#include "record/line_text.h"

#include <cmath>
#include <new>

namespace agent::record {

namespace {

int value_of_digit(char digit)
{
    return digit >= '0' && digit <= '9'   ? digit - '0'
           : digit >= 'a' && digit <= 'f' ? digit - 'a' + 10
                                          : -1;
}

} // namespace

const cJSON *member(const cJSON *object, const char *name)
{
    return cJSON_GetObjectItemCaseSensitive(object, name);
}

std::optional<int64_t> number_in(const cJSON *object, const char *name)
{
    constexpr double kMost = 9007199254740991;
    const cJSON *number = member(object, name);
    const double value = cJSON_IsNumber(number) != 0 ? number->valuedouble : NAN;
    return std::abs(value) <= kMost && std::floor(value) == value
               ? std::optional(static_cast<int64_t>(value))
               : std::nullopt;
}

Json new_object()
{
    Json object(cJSON_CreateObject());
    if (object == nullptr) {
        throw std::bad_alloc();
    }
    return object;
}

void add_member(cJSON *object, const char *name, Json value)
{
    if (value == nullptr || cJSON_AddItemToObject(object, name, value.get()) == 0) {
        throw std::bad_alloc();
    }
    static_cast<void>(value.release());
}

std::optional<std::string> decoded_text(const cJSON *text)
{
    if (cJSON_IsString(text) != 0) {
        return text->valuestring;
    }
    const cJSON *hex = member(text, "hex");
    return cJSON_IsString(hex) != 0 ? bytes_of_hex(hex->valuestring) : std::nullopt;
}

std::optional<std::string> bytes_of_hex(std::string_view digits)
{
    std::string bytes;
    for (size_t at = 0; at + 1 < digits.size(); at += 2) {
        const int high = value_of_digit(digits[at]);
        const int low = value_of_digit(digits[at + 1]);
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        bytes += static_cast<char>(high * 16 + low);
    }
    return digits.size() % 2 == 0 ? std::optional(bytes) : std::nullopt;
}

Json text_of_bytes(std::string_view bytes)
{
    LineText text;
    text.add_text(bytes);
    Json value(cJSON_ParseWithLength(text.text().data(), text.text().size()));
    if (value == nullptr) {
        throw std::bad_alloc();
    }
    return value;
}

} // namespace agent::record
