# SPDX-License-Identifier: MIT
"""Generates protocol/device_layout.h: the memory layout of the arguments of device functions and of record fields."""

TOP = """\
// The memory layout of the arguments of the device functions and the fields of their records, and
// the properties of each, for programs that handle calls of any function generically.
// Generated from protocol/device by protocol/generate.py.
#pragma once

#include "smart_router_service/device_access.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>

// clang-format off
namespace device_layout {

// kAddress is a number as wide as a pointer.
enum class Kind : uint8_t { kText, kInt16, kInt32, kAddress, kRecord };
enum class Pointer : uint8_t { kNone, kOne, kArray, kNext };
enum class Way : uint8_t { kValue, kIn, kOut, kInOut };

struct Field {
    const char *name;
    Kind kind = Kind::kText;
    size_t offset = 0;
    size_t size = 0;                  // of one entry; for a pointer, of what it points to
    size_t length = 1;                // number of entries that there is room for
    Pointer pointer = Pointer::kNone; // what the entries point to
    int record = -1;                  // index in kRecords
    int counted_by = -1;              // index of the field with the number of entries
    bool is_array = false;
    bool negative_is_none = false;    // of a count: it may be negative
    bool is_reserved = false;
    bool is_secret = false;
    bool may_be_empty = false;        // an empty text has a meaning
    bool is_number = false;           // a text that the plug-in reads as a decimal number
    std::string_view form = {};
};

struct Record {
    const char *name;
    size_t size;
    std::span<const Field> fields;
};

struct Argument {
    const char *name;
    Kind kind;
    Way way = Way::kValue;
    size_t width = 0;               // of a text; 0 if it may have any
    int size_at = -1;               // index of the argument with the width
    bool is_size_less_one = false;  // that argument is the width minus one
    int record = -1;                // index in kRecords
    bool is_chain = false;          // the first node of a list
    bool is_handed_over = false;    // set to memory that the caller frees
    bool is_count = false;          // a count, which is not negative
    bool is_filled = false;         // filled on success
    bool is_secret = false;
    std::string_view form = {};
};

struct Function {
    const char *name;
    std::span<const Argument> arguments = {};
    bool has_result = true;
    bool frees = false; // it frees its argument
    bool reads = false; // it changes nothing on the device
};

namespace parts {
"""
RECORDS = """\
} // namespace parts

inline constexpr Record kRecords[] = {
"""
FUNCTIONS = """\
};

// Sorted by name.
inline constexpr Function kFunctions[] = {
"""
BOTTOM = """\
};

constexpr const Record *record_of(const auto &part)
{
    return part.record < 0 ? nullptr : &kRecords[part.record];
}

// Null if there is no device function with the name.
constexpr const Function *find(std::string_view name)
{
    const Function *const end = std::end(kFunctions);
    const Function *const found = std::lower_bound(
        kFunctions, end, name, [](const Function &row, std::string_view wanted) { return row.name < wanted; });
    return found != end && found->name == name ? found : nullptr;
}

} // namespace device_layout
"""
KINDS = {"text": "kText", "int16_t": "kInt16", "int32_t": "kInt32", "intptr_t": "kAddress"}
WAYS = {"in": "kIn", "out": "kOut", "in_out": "kInOut"}


def device_layout_header(interface):
    records = list(interface.records)
    functions = [interface.functions[name] for name in sorted(interface.functions)]
    freeing = {part["freed_with"] for function in functions for part in function.get("arguments", [])
               if "freed_with" in part}
    fields = [table("Field", f"fields_of_{name}", interface.records[name]["fields"], field_members(interface, name))
              for name in records]
    arguments = [table("Argument", f"arguments_of_{function['function']}", function["arguments"],
                       argument_members(interface, function["arguments"]))
                 for function in functions if function.get("arguments")]
    return "".join([TOP, *fields, *arguments,
                    RECORDS, *(f'    {{"{name}", sizeof({name}), parts::fields_of_{name}}},\n' for name in records),
                    FUNCTIONS, *(function_row(function, freeing) for function in functions), BOTTOM])


def table(kind, name, parts, members):
    rows = "".join(f"    {{{', '.join(members(part))}}},\n" for part in parts)
    return f"inline constexpr {kind} {name}[] = {{\n{rows}}};\n"


def field_members(interface, record):
    fields = interface.records[record]["fields"]
    places = {field["name"]: place for place, field in enumerate(fields)}

    def members(field):
        name, kind = field["name"], field.get("type", "text")
        yield f'.name = "{name}"'
        yield f".kind = Kind::{KINDS.get(kind, 'kRecord')}"
        yield f".offset = offsetof({record}, {name})"
        if kind == "text":
            yield f".size = {field['width']}"
        else:
            yield f".size = sizeof({kind})"
        if "length" in field:
            yield f".length = {field['length']}"
        if "points_to" in field:
            yield f".pointer = Pointer::k{field['points_to'].capitalize()}"
        if kind in interface.records:
            yield f".record = {list(interface.records).index(kind)}"
        if "counted_by" in field:
            yield f".counted_by = {places[field['counted_by']]}"
        if "length" in field or field.get("points_to") == "array":
            yield ".is_array = true"
        yield from flags(field, {"negative": "negative_is_none", "reserved": "is_reserved", "secret": "is_secret"})
        if "empty" in field:
            yield ".may_be_empty = true"
        yield from flags(field, {"number": "is_number"})
        if "form" in field:
            yield f'.form = "{field["form"]}"'

    return members


def argument_members(interface, arguments):
    places = {argument["name"]: place for place, argument in enumerate(arguments)}

    def members(argument):
        kind, way = argument["type"], argument.get("way")
        yield f'.name = "{argument["name"]}"'
        yield f".kind = Kind::{KINDS.get(kind, 'kRecord')}"
        if way:
            yield f".way = Way::{WAYS[way]}"
        if "width" in argument:
            yield f".width = {argument['width']}"
        if "size" in argument:
            yield f".size_at = {places[argument['size']]}"
        if "size_is" in argument:
            yield ".is_size_less_one = true"
        if kind in interface.records:
            yield f".record = {list(interface.records).index(kind)}"
        yield from flags(argument, {"chain": "is_chain"})
        if kind == "text" and "freed_with" in argument:
            yield ".is_handed_over = true"
        if argument.get("count") and way == "out" and not argument.get("negative"):
            yield ".is_count = true"
        if way in ("out", "in_out") and kind in interface.records and not {"may_fill", "chain"} & argument.keys():
            yield ".is_filled = true"
        yield from flags(argument, {"secret": "is_secret"})
        if "form" in argument:
            yield f'.form = "{argument["form"]}"'

    return members


def flags(part, names):
    return [f".{member} = true" for name, member in names.items() if part.get(name)]


def function_row(function, freeing):
    name = function["function"]
    members = [f'.name = "{name}"']
    if function.get("arguments"):
        members.append(f".arguments = parts::arguments_of_{name}")
    if "result" not in function:
        members.append(".has_result = false")
    if name in freeing:
        members.append(".frees = true")
    if function["effect"]["kind"] == "reads":
        members.append(".reads = true")
    return f"    {{{', '.join(members)}}},\n"
