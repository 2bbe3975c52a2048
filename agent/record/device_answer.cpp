// SPDX-License-Identifier: MIT
#include "record/device_answer.h"

#include "protocol/device_text.h"
#include "protocol/value_at.h"
#include "record/device_values.h"
#include "record/json_members.h"
#include "record/line_text.h"
#include "record/recording_reader.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <optional>
#include <string>

namespace agent::record {

namespace {

using device_layout::Argument;
using device_layout::Field;
using device_layout::Kind;
using device_layout::Pointer;
using device_layout::Record;
using device_layout::Way;

// A longer list or array is cut: the plug-in uses the count of an array unchecked.
constexpr size_t kMostRecorded = 65536;

template <class Value> void put_number_as(char *place, const cJSON *number)
{
    const double value = cJSON_IsNumber(number) != 0 ? number->valuedouble : 0;
    // The largest number of 64 bits is not a double, but the smallest one is.
    constexpr auto kLeast = static_cast<double>(std::numeric_limits<Value>::min());
    const bool is_in_range = value >= kLeast && value < -kLeast;
    put_value_at(place, is_in_range ? static_cast<Value>(value) : Value());
}

void put_number(Kind kind, char *place, const cJSON *number)
{
    if (kind == Kind::kInt16) {
        put_number_as<int16_t>(place, number);
    } else if (kind == Kind::kInt32) {
        put_number_as<int32_t>(place, number);
    } else {
        put_number_as<intptr_t>(place, number);
    }
}

// Zeroed memory that the plug-in frees.
char *new_memory(size_t count, size_t size)
{
    auto *memory = static_cast<char *>(calloc(std::max<size_t>(count, 1), size));
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void write_text(char *place, size_t width, const cJSON *text)
{
    const std::string bytes = decoded_text(text).value_or("");
    memcpy(place, bytes.data(), std::min(bytes.size(), width));
    if (bytes.size() < width) {
        place[bytes.size()] = '\0';
    }
}

void write_record(const Record &record, char *at, const cJSON *value);

void write_entry(const Field &field, char *place, const cJSON *value)
{
    switch (field.kind) {
    case Kind::kText:
        memset(place, 0, field.size);
        write_text(place, field.size, value);
        break;
    case Kind::kRecord:
        write_record(*record_of(field), place, value);
        break;
    default:
        put_number(field.kind, place, value);
        break;
    }
}

// An array that the field points to. Result: the number of its entries.
size_t write_array(const Field &field, char *place, const cJSON *value)
{
    char *array = nullptr;
    size_t count = 0;
    if (cJSON_IsArray(value) != 0) {
        count = std::min(static_cast<size_t>(cJSON_GetArraySize(value)), kMostRecorded);
        array = new_memory(count, field.size);
        const cJSON *entry = value->child;
        for (size_t at = 0; at < count; ++at, entry = entry->next) {
            write_entry(field, array + at * field.size, entry);
        }
    }
    put_value_at(place, array);
    return count;
}

// A pointer to a separate record for each entry.
void write_slots(const Field &field, char *place, const cJSON *value)
{
    const cJSON *entry = cJSON_IsArray(value) != 0 ? value->child : nullptr;
    for (size_t at = 0; at < field.length; ++at) {
        char *own = nullptr;
        if (cJSON_IsObject(entry) != 0) {
            own = new_memory(1, field.size);
            write_entry(field, own, entry);
        }
        put_value_at(place + at * sizeof own, own);
        entry = entry != nullptr ? entry->next : nullptr;
    }
}

void write_inline_array(const Field &field, char *place, const cJSON *value)
{
    const cJSON *entry = cJSON_IsArray(value) != 0 ? value->child : nullptr;
    for (size_t at = 0; at < field.length; ++at) {
        write_entry(field, place + at * field.size, entry);
        entry = entry != nullptr ? entry->next : nullptr;
    }
}

void write_record(const Record &record, char *at, const cJSON *value)
{
    for (const Field &field : record.fields) {
        if (field.is_reserved || field.pointer == Pointer::kNext) {
            continue;
        }
        char *place = at + field.offset;
        const cJSON *given = member(value, field.name);
        if (field.pointer == Pointer::kOne) {
            write_slots(field, place, given);
        } else if (field.is_array && field.pointer == Pointer::kNone) {
            write_inline_array(field, place, given);
        } else if (field.pointer == Pointer::kNone) {
            write_entry(field, place, given);
        }
    }
    // Last, since a count may not exceed its array.
    for (const Field &field : record.fields) {
        if (field.pointer == Pointer::kArray) {
            const auto count = static_cast<int32_t>(
                write_array(field, at + field.offset, member(value, field.name)));
            char *counter = at + record.fields[static_cast<size_t>(field.counted_by)].offset;
            put_value_at(counter, std::min(value_at<int32_t>(counter), count));
        }
    }
}

size_t place_of_next(const Record &record)
{
    return std::ranges::find(record.fields, Pointer::kNext, &Field::pointer)->offset;
}

void free_list(const Record &record, char *node)
{
    const size_t next = place_of_next(record);
    while (node != nullptr) {
        char *following = value_at<char *>(node + next);
        free(node);
        node = following;
    }
}

// The first node belongs to the caller; the others are reused, added and freed as needed.
void write_list(const Record &record, char *node, const cJSON *list)
{
    const size_t next = place_of_next(record);
    size_t count = 0;
    const cJSON *value = nullptr;
    cJSON_ArrayForEach(value, list)
    {
        if (count > 0) {
            char *following = value_at<char *>(node + next);
            if (following == nullptr) {
                following = new_memory(1, record.size);
                put_value_at(node + next, following);
            }
            node = following;
        }
        write_record(record, node, value);
        if (++count == kMostRecorded) {
            break;
        }
    }
    if (count > 0) {
        free_list(record, value_at<char *>(node + next));
        put_value_at<char *>(node + next, nullptr);
    }
}

void write_handed_over(char *place, const cJSON *text)
{
    const std::optional<std::string> bytes = decoded_text(text);
    char *copy = nullptr;
    if (bytes) {
        copy = new_memory(bytes->size() + 1, 1);
        memcpy(copy, bytes->c_str(), bytes->size() + 1);
    }
    put_value_at(place, copy);
}

void write_argument(const DeviceCall &call, size_t at, const cJSON *value)
{
    const Argument &argument = call.function.arguments[at];
    char *place = address_of(call.arguments[at]);
    if (argument.is_handed_over) {
        write_handed_over(place, value);
        return;
    }
    switch (argument.kind) {
    case Kind::kText:
        write_text(place, device_text::width_of(argument, call.arguments.data()), value);
        break;
    case Kind::kRecord:
        if (argument.is_chain) {
            write_list(*record_of(argument), place, value);
        } else {
            write_record(*record_of(argument), place, value);
        }
        break;
    default:
        put_number(argument.kind, place, value);
        break;
    }
}

// What a function frees has come from a replayed call, or from the plug-in.
void free_arguments(const DeviceCall &call)
{
    for (size_t at = 0; at < call.arguments.size(); ++at) {
        const Argument &argument = call.function.arguments[at];
        if (argument.is_chain) {
            free_list(*record_of(argument), address_of(call.arguments[at]));
        }
    }
}

} // namespace

Json given_to(const DeviceCall &call)
{
    LineText text;
    text.add('{');
    ArgumentsText::Memory memory;
    ArgumentsText(call, nullptr, memory).add_to(text);
    text.add('}');
    const Json line(cJSON_ParseWithLength(text.text().data(), text.text().size()));
    return given_to_call(call.function, member(line.get(), "arguments"));
}

void answer_call(DeviceCall &call, const cJSON *line)
{
    const cJSON *result = member(line, "result");
    call.is_missing = cJSON_IsTrue(member(line, "missing")) != 0;
    call.result = cJSON_IsNumber(result) != 0 ? result->valueint : call.is_missing ? -1 : 0;
    if (call.function.frees) {
        free_arguments(call);
        return;
    }
    const cJSON *arguments = member(line, "arguments");
    for (size_t at = 0; at < call.arguments.size(); ++at) {
        const Argument &argument = call.function.arguments[at];
        const cJSON *after = member(member(arguments, argument.name), "after");
        const bool is_written = argument.way == Way::kOut || argument.way == Way::kInOut;
        if (is_written && after != nullptr && call.arguments[at] != 0) {
            write_argument(call, at, after);
        }
    }
}

void refuse_call(DeviceCall &call)
{
    call.result = -1;
    if (call.function.frees) {
        free_arguments(call);
    }
}

} // namespace agent::record
