// SPDX-License-Identifier: MIT
#include "system/error.h"
#include "system/probes.h"

#include <gmock/gmock.h>

using namespace linux_gateway;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::ThrowsMessage;

namespace {

TEST(ProbesTest, OnlyAddressesArePinged)
{
    for (const std::string target : {"", "localhost", "8.8.8.8; reboot", "256.1.1.1"}) {
        EXPECT_THAT([&] { ping(target); }, ThrowsMessage<Error>(HasSubstr("is not an IP address")));
    }
    EXPECT_THAT([&] { ping(std::string(100'000, '1')); },
                ThrowsMessage<Error>(HasSubstr("is not an IP address")));
}

TEST(ProbesTest, TheMachineItselfAnswers)
{
    for (const char *target : {"127.0.0.1", "::1"}) {
        try {
            ping(target);
        } catch (const Error &error) {
            if (std::string(error.what()).find("no echo requests may be sent") == 0 ||
                std::string(error.what()).find("cannot be reached") != std::string::npos) {
                GTEST_SKIP() << error.what();
            }
            FAIL() << error.what();
        }
    }
}

TEST(ProbesTest, WithoutServersNobodyAnswers)
{
    EXPECT_FALSE(does_name_server_answer({}));
    EXPECT_FALSE(does_name_server_answer({"no address"}));
}

TEST(ProbesTest, OnlyAddressesAreNameServers)
{
    EXPECT_THAT(name_servers_in("# comment\nnameserver 192.0.2.1\n nameserver\t2001:db8::1 \n"
                                "nameserver\nnameserver example\nsearch example\n"),
                ElementsAre("192.0.2.1", "2001:db8::1"));
    EXPECT_THAT(name_servers_in(""), IsEmpty());
    std::string many;
    for (int i = 0; i < 100; ++i) {
        many += "nameserver 192.0.2.1\n";
    }
    EXPECT_THAT(name_servers_in(many), SizeIs(8));
}

} // namespace
