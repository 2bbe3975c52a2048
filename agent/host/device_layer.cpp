// SPDX-License-Identifier: MIT
// Every function of device_access.h, generated from their list: passes the call to the first stage.
#include "host/device_layer.h"

#include "smart_router_service/device_access.h"
#include "smart_router_service/device_functions.h"

#include <array>
#include <exception>
#include <type_traits>
#include <utility>

namespace agent::layer {

namespace {

DeviceStage *first_stage = nullptr;

template <class Type> intptr_t word_of(Type value)
{
    if constexpr (std::is_pointer_v<Type>) {
        return reinterpret_cast<intptr_t>(value);
    } else {
        return value;
    }
}

template <class Type> Type value_of(intptr_t word)
{
    if constexpr (std::is_pointer_v<Type>) {
        return reinterpret_cast<Type>(word); // NOLINT(performance-no-int-to-ptr)
    } else {
        return static_cast<Type>(word);
    }
}

template <class Result, class... Types>
int32_t make(void *function, [[maybe_unused]] const intptr_t *arguments)
{
    const auto device = reinterpret_cast<Result (*)(Types...)>(function);
    return [&]<size_t... at>(std::index_sequence<at...>)->int32_t
    {
        if constexpr (std::is_void_v<Result>) {
            device(value_of<Types>(arguments[at])...);
            return 0;
        } else {
            return device(value_of<Types>(arguments[at])...);
        }
    }
    (std::index_sequence_for<Types...>());
}

// The callers are C code: no exception may reach them, and running out of memory is a failed call.
template <class Result, class... Types>
Result pass_on(const device_layout::Function &function, Result (*)(Types...), Types... arguments)
{
    std::array<intptr_t, sizeof...(Types)> words = {word_of(arguments)...};
    DeviceCall call = {.function = function, .arguments = words, .make = make<Result, Types...>};
    try {
        first_stage->run(call);
    } catch (const std::exception &) {
        call.result = -1;
    }
    return static_cast<Result>(call.result);
}

} // namespace

} // namespace agent::layer

extern "C" __attribute__((visibility("default"))) void device_layer_start(agent::DeviceStage *first)
{
    agent::layer::first_stage = first;
}

#define COMMA_BEFORE(...) __VA_OPT__(, ) __VA_ARGS__
#define LAYER_FUNCTION(result, name, parameters, arguments)                                        \
    __attribute__((visibility("default"))) result name parameters                                  \
    {                                                                                              \
        static constexpr const device_layout::Function &function = *device_layout::find(#name);    \
        return agent::layer::pass_on(function, &name COMMA_BEFORE arguments);                      \
    }

DEVICE_FUNCTIONS(LAYER_FUNCTION)
