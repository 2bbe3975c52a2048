// SPDX-License-Identifier: MIT
// How the log renders printf formats.
#include "protocol/log_format.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstdio>

namespace log_format_test {

__attribute__((format(printf, 2, 3))) std::string format(bool show_secrets, const char *text, ...)
{
    va_list arguments;
    va_start(arguments, text);
    const std::string result = agent::format_log_text(show_secrets, text, arguments);
    va_end(arguments);
    return result;
}

// The C library's output for the same call.
#define EXPECT_AS_PRINTF(...)                                                                      \
    do {                                                                                           \
        char expected[2000];                                                                       \
        snprintf(expected, sizeof(expected), __VA_ARGS__);                                         \
        EXPECT_EQ(format(false, __VA_ARGS__), expected);                                           \
        EXPECT_EQ(format(true, __VA_ARGS__), expected);                                            \
    } while (false)

TEST(LogFormat, RendersAsPrintfDoes)
{
    const char text[] = {'n', 'o', ' ', 'e', 'n', 'd'};
    EXPECT_AS_PRINTF("%s", "only text");
    EXPECT_AS_PRINTF("100%%, %s%%", "all");
    EXPECT_AS_PRINTF("[%10s] [%-10s] [%.2s] [%8.3s]", "right", "left", "cut", "both");
    EXPECT_AS_PRINTF("[%*s] [%*s] [%.*s] [%.*s]", 8, "right", -8, "left", 3, text, -1, "whole");
    EXPECT_AS_PRINTF("%d %i %u %o %x %X %c", -1, INT_MIN, UINT_MAX, 8U, 255U, 255U, 'c');
    EXPECT_AS_PRINTF("%+d % d %05d %-5d| %#x %.3d %8.3d", 1, 2, 3, 4, 5U, 6, 7);
    EXPECT_AS_PRINTF("%hhd %hd %ld %lld %jd %zd %td", static_cast<signed char>(-1),
                     static_cast<short>(-2), LONG_MIN, LLONG_MIN, INTMAX_MAX,
                     static_cast<ssize_t>(-3), static_cast<ptrdiff_t>(-4));
    EXPECT_AS_PRINTF("%hhu %hu %lu %llu %ju %zu", static_cast<unsigned char>(255),
                     static_cast<unsigned short>(65535), ULONG_MAX, ULLONG_MAX, UINTMAX_MAX,
                     SIZE_MAX);
    EXPECT_AS_PRINTF("%f %.02f %e %G %a %Lf", 1.5, 2.555, 3e9, 4e-9, 5.0, 6.5L);
    EXPECT_AS_PRINTF("%p", static_cast<const void *>(text));
    EXPECT_AS_PRINTF("%d is %s of %5.1f%%", 3, "part", 12.34);
}

TEST(LogFormat, ShowsANullText)
{
    const char *volatile none = nullptr;
    EXPECT_EQ(format(false, "[%s] [%d]", none, 1), "[(null)] [1]");
}

TEST(LogFormat, MasksLabelledSecrets)
{
    EXPECT_EQ(format(false, "set, Account:%s|Password:%s|Enable:%s", "me", "x", "1"),
              "set, Account:me|Password:***|Enable:1");
    EXPECT_EQ(format(false, "PPPOE_PASSWORD= %s \n", "x"), "PPPOE_PASSWORD= *** \n");
    EXPECT_EQ(format(false, "ssid = %s,pwd = %s,encrypt = %s\r\n", "home", "x", "psk"),
              "ssid = home,pwd = ***,encrypt = psk\r\n");
    EXPECT_EQ(
        format(false, "WPA PSK: \"%s\", Passwd <%-8s>, passphrase %d, next %d", "x", "y", 12, 34),
        "WPA PSK: \"***\", Passwd <***>, passphrase ***, next 34");
    EXPECT_EQ(format(false, "%s = %s", "GuestPwd", "x"), "GuestPwd = ***");
    EXPECT_EQ(format(false, "%s= %s \n", "PPPOE_PASSWORD", "x"), "PPPOE_PASSWORD= *** \n");
    EXPECT_EQ(format(false, "%s= %s \n", "PPPOE_USERNAME", "x"), "PPPOE_USERNAME= x \n");
    EXPECT_EQ(format(true, "Password:%s", "x"), "Password:x");
}

TEST(LogFormat, ShowsWhatIsNotSecret)
{
    EXPECT_EQ(format(false, "can not find PWD object! ret=%d", -1),
              "can not find PWD object! ret=-1");
    EXPECT_EQ(format(false, "password of host %s", "tv"), "password of host tv");
}

TEST(LogFormat, MasksJsonInTextArguments)
{
    EXPECT_EQ(format(false, "out = %s", R"({"PWD":"x","SSID":"y"})"),
              R"(out = {"PWD":"***","SSID":"y"})");
    EXPECT_EQ(format(false, "out = %.12s", R"({"PWD":"hidden"})"), R"(out = {"PWD":"***")");
    EXPECT_EQ(format(true, "out = %s", R"({"PWD":"x"})"), R"(out = {"PWD":"x"})");
}

TEST(LogFormat, BoundsWidthsThatAreArguments)
{
    EXPECT_EQ(format(false, "%*d", 2000, 1).size(), 1000U);
    EXPECT_EQ(format(false, "%*s", -2000, "1").size(), 1000U);
    EXPECT_EQ(format(false, "%.*d", INT_MAX, 1).size(), 1000U);
}

TEST(LogFormat, WithholdsArgumentsItDoesNotUnderstand)
{
    EXPECT_EQ(format(false, "%ls and %s", L"wide", "text"), "wide and text");
    EXPECT_EQ(format(false, "%ls, password %s", L"wide", "x"),
              "%ls, password %s (arguments withheld)");
    EXPECT_EQ(format(true, "%ls, password %s", L"wide", "x"), "wide, password x");
    EXPECT_EQ(format(false, "%ls %s", L"wide", R"({"PWD":"x"})"), R"(wide {"PWD":"***"})");
}

} // namespace log_format_test
