// SPDX-License-Identifier: MIT
// A device-access library for unit tests: it records every call with the bytes that reached it, and
// returns what the test has programmed. The functions themselves are generated from
// device_access.h, so a new one needs no change here.
#pragma once

#include "smart_router_service/device_access.h"

#include <cstring>
#include <functional>
#include <initializer_list>
#include <ostream>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

namespace recording_device {

struct Call {
    std::string function;
    // The value of each argument on entry: the bytes of a record, a text, or a number.
    std::vector<std::string> arguments;

    bool operator==(const Call &) const = default;
};

// For the messages of failing tests: the call with its arguments, each run of NUL bytes as one "|".
void PrintTo(const Call &call, std::ostream *out);

// The calls since the last reset, in order.
std::vector<Call> calls();
std::vector<std::string> called_functions();

// The record that was passed as an argument, as it was on entry.
template <class Record> Record record(const Call &call, size_t argument = 0)
{
    Record copy;
    std::memcpy(&copy, call.arguments.at(argument).data(), sizeof copy);
    return copy;
}

// Forgets the calls and every programmed answer.
void reset();

void write_down(const char *function, std::vector<std::string> arguments);
void at_reset(std::function<void()> forget);

inline std::string contents(const char *text)
{
    return text != nullptr ? text : "(null)";
}
inline std::string contents(int64_t number)
{
    return std::to_string(number);
}
template <class Record> std::string contents(Record *record)
{
    static_assert(std::is_trivially_copyable_v<Record>);
    return std::string(reinterpret_cast<const char *>(record), sizeof *record);
}

template <class Function> struct Answer;
template <class Result, class... Arguments> struct Answer<Result (*)(Arguments...)> {
    using Type = std::function<Result(Arguments...)>;
};

template <auto function> typename Answer<decltype(function)>::Type &answer()
{
    static typename Answer<decltype(function)>::Type programmed;
    return programmed;
}

// Programs what a device function does from now on: a callable with the function's signature. An
// unprogrammed function writes nothing and returns 0.
template <auto function, class Callable> void when(Callable callable)
{
    answer<function>() = callable;
    at_reset([] { answer<function>() = nullptr; });
}

// Whether a function can write the value to the argument. A text is written with its NUL.
template <class Argument, class Value>
constexpr bool kTakes = std::is_same_v<Argument, Value *> ||
                        (std::is_same_v<Argument, char *> && std::is_same_v<Value, std::string>);

template <class Argument, class Value> void write_to(Argument argument, const Value &value)
{
    if constexpr (std::is_same_v<Argument, Value *>) {
        *argument = value;
    } else if constexpr (kTakes<Argument, Value>) {
        std::memcpy(argument, value.c_str(), value.size() + 1);
    }
}

// Programs a function to write the value, a number, a record or a text, and to return the result.
template <auto function, class Given> void writes(const Given &given, int32_t result = 0)
{
    using Value =
        std::conditional_t<std::is_convertible_v<const Given &, std::string>, std::string, Given>;
    when<function>([value = Value(given), result](auto... arguments) {
        static_assert((kTakes<decltype(arguments), Value> || ...), "no argument for the value");
        (write_to(arguments, value), ...);
        return result;
    });
}

// An argument as passed to the answer for all functions.
struct Argument {
    const std::type_info *type; // of a number, or of what the address points to
    void *address;              // null for a number
    bool is_read_only;          // the function may not write there
    int64_t number;             // 0 for an address
};

inline Argument argument(int64_t number)
{
    return {&typeid(number), nullptr, true, number};
}
template <class Content> Argument argument(Content *content)
{
    return {&typeid(Content), const_cast<std::remove_const_t<Content> *>(content),
            std::is_const_v<Content>, 0};
}

// Sets one answer for every function that returns a number or nothing, until the next reset. What
// single functions are programmed to do applies to the others only.
using AnswerForAll = int32_t (*)(const char *function, std::initializer_list<Argument> arguments);
void answer_all(AnswerForAll answer);
AnswerForAll answer_for_all(); // null when there is none

template <auto function, class... Arguments> auto call(const char *name, Arguments... arguments)
{
    write_down(name, {contents(arguments)...});
    using Result = decltype(function(arguments...));
    if constexpr (std::is_void_v<Result> || std::is_same_v<Result, int32_t>) {
        if (const AnswerForAll for_all = answer_for_all()) {
            return static_cast<Result>(for_all(name, {argument(arguments)...}));
        }
    }
    return answer<function>() ? answer<function>()(arguments...) : Result();
}

} // namespace recording_device
