// SPDX-License-Identifier: MIT
#include "network_namespace.h"

#include "smart_router_service/host_agent.h"

#include <array>
#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <sched.h>
#include <unistd.h>

// A thread of the library writes it as well.
static std::mutex log_mutex;
static std::string logged;

extern "C" void ts_mod_log_printf(const char *module, int32_t level, const char *format, ...)
{
    std::array<char, 1024> text{};
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    EXPECT_STREQ(module, "liblinux_gateway");
    const std::lock_guard lock(log_mutex);
    logged += std::to_string(level) + " " + text.data() + "\n";
}

namespace linux_gateway {

// Users who are not root may do it in a user namespace.
static bool enter_namespace()
{
    static const bool has_entered =
        unshare(CLONE_NEWNET) == 0 || unshare(CLONE_NEWUSER | CLONE_NEWNET) == 0;
    return has_entered;
}

NetworkNamespaceTest::NetworkNamespaceTest()
{
    enter_namespace();
}

void NetworkNamespaceTest::SetUp()
{
    if (!enter_namespace()) {
        GTEST_SKIP() << "this process may not make a network namespace";
    }
    {
        const std::lock_guard lock(log_mutex);
        logged.clear();
    }
    run("nft flush ruleset");
    run("ip link delete lan0 2>/dev/null; ip link add lan0 type bridge && ip link set lan0 up");
}

std::string NetworkNamespaceTest::run(const std::string &command)
{
    FILE *pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        ADD_FAILURE() << command << " cannot be run";
        return "";
    }
    std::string output;
    std::array<char, 4096> part{};
    size_t size = 0;
    while ((size = fread(part.data(), 1, part.size(), pipe)) > 0) {
        output.append(part.data(), size);
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    return output;
}

bool NetworkNamespaceTest::has_tables()
{
    return run("nft list tables").find("linux_gateway") != std::string::npos;
}

std::string NetworkNamespaceTest::tables()
{
    return run("nft list table inet linux_gateway 2>/dev/null;"
               "nft list table bridge linux_gateway 2>/dev/null; true");
}

Mac NetworkNamespaceTest::host(uint16_t number)
{
    return Mac{{2, 0, 0, 0, static_cast<uint8_t>(number >> 8), static_cast<uint8_t>(number)}};
}

std::string NetworkNamespaceTest::log()
{
    const std::lock_guard lock(log_mutex);
    return logged;
}

} // namespace linux_gateway
