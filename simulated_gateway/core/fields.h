// The fields of records: what comes in by them, and what goes out.
#pragma once

#include "model/rules.h"

#include <concepts>
#include <cstdlib>
#include <cstring>
#include <new>
#include <span>
#include <string>

namespace simulated_gateway {

// Throws an Error with the name in front of the complaint, if there is one.
void refuse_for(const char *name, const std::string &complaint);

// What a text says; they throw an Error in the given name when it says nothing of the kind.
bool flag_of(const char *name, const std::string &text);
int64_t number_of(const char *name, const std::string &text);

// Zeroed memory for what the caller frees.
template <class Entry> Entry *allocated(size_t count)
{
    auto *entries = static_cast<Entry *>(std::calloc(count, sizeof(Entry)));
    if (entries == nullptr) {
        throw std::bad_alloc();
    }
    return entries;
}

// What a field without a value says.
constexpr char kNoValue[] = "NULL";

// Puts a text into a record's field, cut at its width behind a whole letter; without one it
// says that there is no value.
void put_text(std::span<char> field, const std::string &text);
template <size_t width> void put(char (&field)[width], const std::string &text)
{
    put_text(field, text);
}
// A number, or a flag as "1" or "0".
template <size_t width, std::integral Number> void put(char (&field)[width], Number value)
{
    put_text(field, std::to_string(value));
}

// A text that comes in by a record's field: read no further than the field, and without the part of
// a letter that the plug-in's cut may have left at its end.
template <size_t width> std::string taken(const char (&field)[width])
{
    return std::string(whole_letters({field, strnlen(field, width)}));
}
// The same for a text that has to hold by a rule, and for a flag. They refuse in the name of the
// field.
template <size_t width, class Rule>
std::string taken(const char *name, const char (&field)[width], const Rule &rule)
{
    std::string text = taken(field);
    refuse_for(name, complaint(text, rule));
    return text;
}
template <size_t width> std::string taken_text(const char *name, const char (&field)[width])
{
    return taken(name, field, Text{width});
}
// A text that may be taken away, by an empty one or by what the gateway says for none.
template <size_t width> std::string taken_or_none(const char *name, const char (&field)[width])
{
    const std::string text = taken(field);
    return text.empty() || text == kNoValue ? "" : taken_text(name, field);
}
template <size_t width> bool taken_flag(const char *name, const char (&field)[width])
{
    return flag_of(name, taken(field));
}
template <size_t width> int64_t taken_number(const char *name, const char (&field)[width])
{
    return number_of(name, taken(field));
}

// A setting that says "-1" of something leaves that as it is.
template <size_t width> bool is_given(const char (&field)[width])
{
    return taken(field) != "-1";
}

} // namespace simulated_gateway
