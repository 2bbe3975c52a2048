# SPDX-License-Identifier: MIT
"""Generates protocol/device_facts.h: properties of the device interface that its declarations do not express."""

TOP = """\
// Properties of the device functions and their records, for programs that check a device library or
// replace one. Generated from protocol/device by protocol/generate.py.
#pragma once

#include "smart_router_service/device_access.h"

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

// clang-format off
namespace device_facts {

// A short list of results of a function.
struct Results {
    int32_t values[4] = {};
    size_t count = 0;

    constexpr bool empty() const { return count == 0; }
    constexpr bool contain(int32_t result) const
    {
        return std::find(values, values + count, result) != values + count;
    }
};

struct Function {
    std::string_view name;
    size_t text_width = 0;          // of the text that it writes; 0 if the width is an argument
    bool is_size_less_one = false;  // that argument is the width minus one
    bool fills = false;             // on success, it fills a record or writes a text
    std::string_view filled = {};   // the fields that it fills, each between blanks; empty for all
    std::string_view given = {};    // the fields that it is given, in the same way
    bool counts = false;            // the number that it sets is a count, which is not negative
    bool is_answer = false;         // its result is the requested value
    Results answers = {};           // results other than 0 that are not failures
    Results results = {};           // all possible results; empty if any result is possible
    Results known = {};             // those that say more than that it failed
    std::string_view minus_one_fails_for = {}; // callers for which only -1 is a failure, between blanks
    std::string_view other_rules_for = {};     // callers with other rules than that or that 0 is success

    constexpr bool has_filled(std::string_view field) const
    {
        for (size_t at = filled.find(field); at != filled.npos; at = filled.find(field, at + 1)) {
            if (filled[at - 1] == ' ' && filled[at + field.size()] == ' ') {
                return true;
            }
        }
        return filled.empty();
    }
};

// One field of a record.
struct Field {
    const char *name;
    bool is_reserved = false;
    bool is_secret = false;
    const char *counted_by = nullptr; // of an array: the field with the number of entries
    int32_t count = 0;                // the value of that field
    bool negative_is_none = false;    // of a count: it may be negative
};

template <class Given, class Record>
concept RecordOf = std::same_as<std::remove_const_t<Given>, Record>;

// Sorted by name.
inline constexpr Function kFunctions[] = {
"""
FIND = """\
};

// Null if there is no device function with the name.
constexpr const Function *find(std::string_view name)
{
    const Function *const end = kFunctions + std::size(kFunctions);
    const Function *const found = std::lower_bound(
        kFunctions, end, name, [](const Function &row, std::string_view wanted) { return row.name < wanted; });
    return found != end && found->name == name ? found : nullptr;
}

// Whether the caller is among those between blanks; "*" stands for all.
constexpr bool is_among(std::string_view callers, std::string_view caller)
{
    for (size_t at = callers.find(caller); at != callers.npos; at = callers.find(caller, at + 1)) {
        if (callers[at - 1] == ' ' && callers[at + caller.size()] == ' ') {
            return true;
        }
    }
    return callers == " * ";
}

// Whether the result is not a failure.
constexpr bool is_success(const Function &function, int32_t result)
{
    return result == 0 || function.answers.contain(result) || (function.is_answer && result > 0);
}

// The name of a record; null for other types.
template <class Record> inline constexpr const char *kName = nullptr;
"""
VISIT = """\

// Each calls visit(Field, field) for the record's fields in order, except pointers.
"""
RECORDS = """\

// Calls visit(std::type_identity<Record>()) for each record.
void visit_records(const auto &visit)
{
"""
BOTTOM = """\
}

} // namespace device_facts
"""


def device_facts_header(interface):
    functions = [function_row(interface, interface.functions[name]) for name in sorted(interface.functions)]
    names = [f'template <> inline constexpr const char *kName<{name}> = "{name}";' for name in interface.records]
    visits = [visit_function(record) for record in interface.records.values()]
    records = [f"    visit(std::type_identity<{name}>());" for name in interface.records]
    return "".join([TOP, lines(functions), FIND, lines(names), VISIT, *visits, RECORDS, lines(records), BOTTOM])


def lines(texts):
    return "".join(f"{text}\n" for text in texts)


def function_row(interface, function):
    members = [f'.name = "{function["function"]}"', *function_members(interface, function)]
    return f"    {{{', '.join(members)}}},"


def function_members(interface, function):
    arguments = function.get("arguments", [])
    for argument in arguments:
        if argument["type"] == "text" and argument.get("way") == "out" and "width" in argument \
                and "size" not in argument:
            yield f".text_width = {interface.number(argument['width'])}"
        if "size_is" in argument:
            yield ".is_size_less_one = true"
    if any(fills(interface, argument) for argument in arguments):
        yield ".fills = true"
    filled = [field for argument in arguments for field in argument.get("filled", [])]
    if filled:
        yield '.filled = " ' + " ".join(filled) + ' "'
    given = [field for argument in arguments for field in argument.get("given", [])]
    if given:
        yield '.given = " ' + " ".join(given) + ' "'
    if any(argument.get("count") and argument.get("way") == "out" and not argument.get("negative")
           for argument in arguments):
        yield ".counts = true"
    result = function.get("result", {})
    if result.get("failure") == "answer":
        yield ".is_answer = true"
    known = result.get("known", [])
    answers = [interface.number(each["result"]) for each in known if each.get("answer")]
    if answers:
        yield f".answers = {results(answers)}"
    rules = [result, *result.get("callers", [])]
    if result.get("exhaustive") or any(rule.get("failure") == "-1" for rule in rules):
        yield f".results = {results([0, -1, *(interface.number(each['result']) for each in known)])}"
    if known:
        yield f".known = {results([interface.number(each['result']) for each in known])}"
    for member, of_rule in (("minus_one_fails_for", lambda rule: rule == "-1"),
                            ("other_rules_for", lambda rule: rule not in ("not 0", "-1"))):
        callers = [caller for rule in rules if "failure" in rule and of_rule(rule["failure"])
                   for caller in rule.get("who", ["*"])]
        if callers:
            yield f'.{member} = " {" ".join(callers)} "'


def fills(interface, argument):
    return (argument.get("way") in ("out", "in_out") and argument["type"] in interface.records
            and not {"may_fill", "chain"} & argument.keys())


def results(values):
    return f"{{{{{', '.join(map(str, values))}}}, {len(values)}}}"


def visit_function(record):
    """An array of which the entries are counted comes with what its count says."""
    fields = {field["name"]: field for field in record["fields"]}
    body = lines(f"    visit(Field{{{', '.join(field_members(field, fields))}}}, record.{field['name']});"
                 for field in record["fields"] if "points_to" not in field)
    return (f"template <RecordOf<{record['record']}> Given> void visit_fields(Given &record, const auto &visit)\n"
            f"{{\n{body}}}\n")


def field_members(field, fields):
    yield f'.name = "{field["name"]}"'
    if field.get("reserved"):
        yield ".is_reserved = true"
    if field.get("secret"):
        yield ".is_secret = true"
    if "counted_by" in field:
        yield f'.counted_by = "{field["counted_by"]}", .count = record.{field["counted_by"]}'
        if fields[field["counted_by"]].get("negative"):
            yield ".negative_is_none = true"
