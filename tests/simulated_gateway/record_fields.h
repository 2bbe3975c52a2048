// SPDX-License-Identifier: MIT
// The texts of a record by the names of its fields.
#pragma once

#include "protocol/device_facts.h"

#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <stdexcept>
#include <string>
#include <type_traits>

using Fields = std::map<std::string, std::string>;

// Copies a text into a record's field as the plug-in does: cut at its width, and with a NUL.
template <size_t width> void set(char (&field)[width], const std::string &text)
{
    field[text.copy(field, width - 1)] = '\0';
}

// Fills a field completely, without a NUL.
template <size_t width> void fill_completely(char (&field)[width], char letter)
{
    std::memset(field, letter, width);
}

// Calls visit(name, field) for each text of the record, and of the record in it.
template <class Record> void visit_texts(Record &record, const auto &visit)
{
    device_facts::visit_fields(
        record, [&]<class Type>(const device_facts::Field &fact, Type &field) {
            if constexpr (std::is_class_v<Type>) {
                visit_texts(field, visit);
            } else if constexpr (std::rank_v<Type> == 1 &&
                                 std::is_same_v<const std::remove_extent_t<Type>, const char>) {
                visit(fact.name, field);
            }
        });
}

// A record with these fields; the others are empty.
template <class Record> Record record_with(Fields texts)
{
    Record record = {};
    visit_texts(record, [&](const char *name, auto &field) {
        if (const auto text = texts.extract(name)) {
            set(field, text.mapped());
        }
    });
    if (!texts.empty()) {
        throw std::invalid_argument("there is no field " + texts.begin()->first);
    }
    return record;
}

// The result of a device function for this record.
template <class Record> int32_t set_by(int32_t (*function)(Record *), const Fields &texts)
{
    auto record = record_with<std::remove_const_t<Record>>(texts);
    return function(&record);
}

// The same for a function that gives its reason in the record: empty on success.
template <class Setting> std::string fail_reason(int32_t (*function)(Setting *), Setting setting)
{
    const int32_t result = function(&setting);
    EXPECT_EQ(result, setting.FailReason[0] == '\0' ? 0 : -1);
    return setting.FailReason;
}

// The record's texts in the fields that others has.
template <class Record> Fields like(const Fields &others, const Record &record)
{
    Fields texts;
    visit_texts(record, [&](const char *name, const auto &field) {
        if (others.contains(name)) {
            texts[name] = std::string(field, strnlen(field, sizeof field));
        }
    });
    return texts;
}
