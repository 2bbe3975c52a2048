// SPDX-License-Identifier: MIT
#include "gateway_fixture.h"

#include <fcntl.h>
#include <regex>
#include <unistd.h>

namespace {

using TraceTest = GatewayTest;

TEST_F(TraceTest, OneLineForEveryCall)
{
    ASSERT_EQ(open({.faults = {"devapi_get_system_info=5*1"}, .trace = path("trace")}), "");
    SystemInfo system = {};
    EXPECT_EQ(call(), 0);
    EXPECT_EQ(devapi_get_system_info(&system), 5);
    EXPECT_EQ(devapi_get_sn_info(nullptr), -1);
    simulated_gateway_power_cycle();

    const char *const expected[] = {
        (R"(\[\d+\] devapi_get_sn_info\(info=\{MAC="3C:6A:D2:10:4F:20", tslinkstatus="1", )"
         R"(DeviceType="HGU-AX3000"\}\) = 0 in \d+ us)"),
        R"(\[\d+\] devapi_get_system_info\(info=unset\) = 5 in \d+ us, fault)",
        R"(\[\d+\] devapi_get_sn_info\(info=null\) = -1 in \d+ us, an argument is null)",
        R"(\[\d+\] power cycle)",
    };
    const std::vector<std::string> trace = lines(path("trace"));
    ASSERT_EQ(trace.size(), std::size(expected));
    for (size_t at = 0; at < trace.size(); ++at) {
        EXPECT_TRUE(std::regex_match(trace[at], std::regex(expected[at]))) << trace[at];
    }
}

TEST_F(TraceTest, PassesItsReasonsToTheHost)
{
    std::vector<std::string> reported;
    simulated_gateway_on_refusal(
        [](const char *function, const char *reason, void *all) {
            static_cast<std::vector<std::string> *>(all)->push_back(std::string(function) + ": " +
                                                                    reason);
        },
        &reported);
    ASSERT_EQ(open({.faults = {"devapi_get_system_info=5*1"}}), "");
    SystemInfo system = {};
    UpnpState upnp = {"up"};
    EXPECT_EQ(call(), 0);
    EXPECT_EQ(devapi_get_system_info(&system), 5);
    EXPECT_EQ(devapi_get_sn_info(nullptr), -1);
    EXPECT_EQ(devapi_set_upnp_state(&upnp), -1);
    simulated_gateway_on_refusal(nullptr, nullptr);
    EXPECT_EQ(devapi_get_sn_info(nullptr), -1);
    EXPECT_EQ(reported, (std::vector<std::string>{
                            "devapi_get_system_info: fault",
                            "devapi_get_sn_info: an argument is null",
                            R"(devapi_set_upnp_state: Enable "up" is none of "0", "1")",
                        }));
}

TEST_F(TraceTest, IsAppendedTo)
{
    write("trace", "what was there\n");
    for (int times = 0; times < 2; ++times) {
        ASSERT_EQ(open({.trace = path("trace")}), "");
        call();
        close();
    }
    ASSERT_EQ(lines(path("trace")).size(), 3u);
    EXPECT_EQ(lines(path("trace")).at(0), "what was there");
}

TEST_F(TraceTest, AFileThatCannotBeWrittenIsAnError)
{
    EXPECT_EQ(open({.trace = path("no/trace")}), path("no/trace") + ": No such file or directory");
    EXPECT_EQ(open({.trace = path("")}), path("") + ": Is a directory");
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(open({.trace = path("pipe")}), path("pipe") + ": No such device or address");
}

TEST_F(TraceTest, AFullDiskFailsNoCall)
{
    ASSERT_EQ(open({.trace = "/dev/full"}), "");
    EXPECT_EQ(call(), 0);
}

TEST_F(TraceTest, AnUnreadPipeFailsNoCall)
{
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    const int reader = ::open(path("pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(reader, 0);
    ASSERT_EQ(open({.trace = path("pipe")}), "");
    EXPECT_EQ(call(), 0);
    char line[512];
    EXPECT_GT(::read(reader, line, sizeof(line)), 0);
    ::close(reader);
    EXPECT_EQ(call(), 0);
}

} // namespace
