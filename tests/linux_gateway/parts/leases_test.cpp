// SPDX-License-Identifier: MIT
#include "system/leases.h"
#include "temporary_folder.h"

#include <gmock/gmock.h>

using namespace linux_gateway;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

TEST(LeasesTest, ALineHasAddressAndName)
{
    const auto leases =
        parse_leases("1795344631 a4:bb:6d:31:07:5e 192.168.1.101 workshop-pc 01:a4:bb:6d:31:07:5e\n"
                     "0 72:9b:e0:46:d8:15 192.168.1.102 * *\n");
    ASSERT_THAT(leases, SizeIs(2));
    EXPECT_EQ(to_text(leases[0].mac), "A4:BB:6D:31:07:5E");
    EXPECT_EQ(leases[0].ipv4, "192.168.1.101");
    EXPECT_EQ(leases[0].name, "workshop-pc");
    EXPECT_EQ(to_text(leases[1].mac), "72:9B:E0:46:D8:15");
    EXPECT_EQ(leases[1].name, "");
}

TEST(LeasesTest, LinesThatAreNoIpv4LeaseAreSkipped)
{
    EXPECT_THAT(parse_leases("duid 00:01:00:01:2b:4e\n"
                             "1795344631 123456 fd00::1234 workshop-pc 00:01:00:01\n"
                             "1795344631 a4:bb:6d:31:07:5e\n"
                             "1795344631 a4:bb:6d:31:07:5e 192.168.1.999 pc *\n"
                             "1795344631 a4:bb:6d:31:07 192.168.1.1 pc *\n"
                             "\n\n   \n\t\n"),
                IsEmpty());
    EXPECT_THAT(parse_leases(""), IsEmpty());
    EXPECT_THAT(parse_leases(std::string(100'000, 'x')), IsEmpty());
    EXPECT_THAT(parse_leases(std::string(1000, '\0')), IsEmpty());
}

TEST(LeasesTest, AHostCannotSmuggleControlCharactersOrBadUtf8IntoItsName)
{
    const auto leases = parse_leases("0 a4:bb:6d:31:07:5e 192.168.1.2 a\x1b[2J\xff\xe2\x80\xae"
                                     "b *");
    ASSERT_THAT(leases, SizeIs(1));
    EXPECT_EQ(leases[0].name, "a[2J\xef\xbf\xbd"
                              "b");
    const auto longer =
        parse_leases("0 a4:bb:6d:31:07:5e 192.168.1.2 " + std::string(5000, 'n') + " *");
    ASSERT_THAT(longer, SizeIs(1));
    EXPECT_THAT(longer[0].name, SizeIs(255));
}

TEST(LeasesTest, AFileThatIsMissingOrNoFileHasNoLeases)
{
    const TemporaryFolder folder;
    EXPECT_THAT(read_leases(folder.path("missing")), IsEmpty());
    EXPECT_THAT(read_leases(folder.path("")), IsEmpty());
    folder.write("leases", "0 a4:bb:6d:31:07:5e 192.168.1.2 pc *");
    EXPECT_THAT(read_leases(folder.path("leases")), SizeIs(1));
}

} // namespace
