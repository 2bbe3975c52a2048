// SPDX-License-Identifier: MIT
#include "texts.h"

#include <stdlib.h>
#include <strings.h>

namespace smart_router {

int32_t number_of(const char *text)
{
    const int digit = text[0] - '0';
    if (digit >= 0 && digit <= 9 && text[1] == '\0') {
        return digit; // the usual case: switches and indexes
    }
    const long number = strtol(text, nullptr, 10);
    if (number > INT32_MAX) {
        return INT32_MAX;
    }
    return number < INT32_MIN ? INT32_MIN : static_cast<int32_t>(number);
}

void copy_text(char *field, size_t width, const char *text)
{
    size_t at = 0; // most texts are too short for strnlen() and memcpy() to pay off
    for (; at < width - 1 && text[at] != '\0'; ++at) {
        field[at] = text[at];
    }
    field[at] = '\0';
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

void end_text(char *text, const char *field, size_t width)
{
    const size_t length = strnlen(field, width);
    memcpy(text, field, length);
    text[length] = '\0';
}

int32_t number_in(const char *field, size_t width)
{
    char text[kWidestNumber + 1];
    end_text(text, field, width);
    return number_of(text);
}

// Not snprintf(): a report can contain hundreds of numbers, and formatting one would take longer
// than creating its item.
void put_number(char *field, size_t width, int32_t number)
{
    NumberText text;
    char *digit = text + sizeof text - 1;
    *digit = '\0';
    auto rest = static_cast<uint32_t>(number);
    if (number < 0) {
        rest = 0 - rest;
    }
    do {
        *--digit = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (number < 0) {
        *--digit = '-';
    }
    copy_text(field, width, digit);
}

} // namespace smart_router
