// SPDX-License-Identifier: MIT
// The layer forwards the arguments and the result of every function unchanged.
#include "host/device_layer.h"

#include "smart_router_service/device_access.h"
#include "smart_router_service/device_functions.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <new>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using agent::DeviceCall;
using agent::DeviceStage;

constexpr int32_t kResult = -4711;

// The arguments of the last call of a device function, as bytes.
std::vector<intptr_t> given;

template <class Type> intptr_t word_of(Type value)
{
    if constexpr (std::is_pointer_v<Type>) {
        return reinterpret_cast<intptr_t>(value);
    } else {
        return value;
    }
}

template <class Result, class... Types> Result device_function(Types... arguments)
{
    given = {word_of(arguments)...};
    return static_cast<Result>(kResult);
}

class Recorder : public DeviceStage {
  public:
    void run(DeviceCall &call) override
    {
        function = &call.function;
        arguments.assign(call.arguments.begin(), call.arguments.end());
        if (out_of_memory) {
            throw std::bad_alloc();
        }
        call.result = call.make(device, call.arguments.data());
    }

    void *device = nullptr;
    bool out_of_memory = false;
    const device_layout::Function *function = nullptr;
    std::vector<intptr_t> arguments;
};

Recorder recorder;

// Never zero and never the same twice; negative numbers show truncation.
template <class Type> Type value(size_t at)
{
    static char memory[16];
    if constexpr (std::is_pointer_v<Type>) {
        return reinterpret_cast<Type>(memory + at);
    } else {
        return static_cast<Type>(-7 - static_cast<intptr_t>(at));
    }
}

void *layer()
{
    static void *const library = dlopen(DEVICE_LAYER, RTLD_NOW | RTLD_LOCAL);
    return library;
}

template <class Result, class... Types> void check(const char *name, Result (*)(Types...))
{
    SCOPED_TRACE(name);
    const auto function = reinterpret_cast<Result (*)(Types...)>(dlsym(layer(), name));
    ASSERT_NE(function, nullptr);
    recorder.device = reinterpret_cast<void *>(device_function<Result, Types...>);
    [&]<size_t... at>(std::index_sequence<at...>)
    {
        const std::vector<intptr_t> wanted = {word_of(value<Types>(at))...};
        if constexpr (std::is_void_v<Result>) {
            function(value<Types>(at)...);
        } else {
            EXPECT_EQ(function(value<Types>(at)...), kResult);
        }
        EXPECT_STREQ(recorder.function->name, name);
        EXPECT_EQ(recorder.function->arguments.size(), sizeof...(Types));
        EXPECT_EQ(recorder.function->has_result, !std::is_void_v<Result>);
        EXPECT_EQ(recorder.arguments, wanted);
        EXPECT_EQ(given, wanted);
    }
    (std::index_sequence_for<Types...>());
}

class DeviceLayerTest : public testing::Test {
  protected:
    DeviceLayerTest()
    {
        const auto start =
            reinterpret_cast<agent::StartDeviceLayer>(dlsym(layer(), agent::kStartDeviceLayer));
        start(&recorder);
        recorder.out_of_memory = false;
    }
};

TEST_F(DeviceLayerTest, ForwardsTheArgumentsOfEveryFunction)
{
    size_t count = 0;
#define CHECK_FUNCTION(result, name, parameters, arguments)                                        \
    check(#name, static_cast<decltype(&name)>(nullptr));                                           \
    ++count;
    DEVICE_FUNCTIONS(CHECK_FUNCTION)
    EXPECT_EQ(count, std::size(device_layout::kFunctions));
}

TEST_F(DeviceLayerTest, LetsNoExceptionReachThePlugin)
{
    recorder.out_of_memory = true;
    const auto function =
        reinterpret_cast<decltype(&devapi_reboot)>(dlsym(layer(), "devapi_reboot"));
    EXPECT_EQ(function(), -1);
}

} // namespace
