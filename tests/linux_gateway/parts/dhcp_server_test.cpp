// SPDX-License-Identifier: MIT
#include "system/dhcp_server.h"
#include "temporary_folder.h"

#include <filesystem>
#include <gmock/gmock.h>

using namespace linux_gateway;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

DhcpServer server_of(const std::string &text)
{
    DhcpServer server;
    add_dhcp_settings(server, text);
    return server;
}

TEST(DhcpServerTest, ARangeMayFollowTags)
{
    const DhcpServer server = server_of(
        "dhcp-range=192.168.1.100,192.168.1.199,12h\n"
        "  dhcp-range = set:guests , interface:br1, 10.0.0.2, 10.0.0.9, 255.0.0.0 # guests\n"
        "dhcp-range=::100,::1ff,constructor:br0\n"
        "dhcp-range=192.168.3.0,static\n"
        "#dhcp-range=192.168.9.1,192.168.9.2\n"
        "dhcp-range\ndhcp-range=\n");
    ASSERT_THAT(server.ranges, SizeIs(2));
    EXPECT_EQ(server.ranges[0].end, "192.168.1.199");
    EXPECT_EQ(server.ranges[1].start, "10.0.0.2");
    const DhcpServer::Range *range = server.range_in("10.255.0.1", 8);
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->end, "10.0.0.9");
    EXPECT_EQ(server.range_in("192.168.2.1", 24), nullptr);
    EXPECT_EQ(server.range_in("", 24), nullptr);
}

TEST(DhcpServerTest, TheRouterMayBeAnother)
{
    EXPECT_EQ(server_of("dhcp-option=3,192.168.1.254").router, "192.168.1.254");
    EXPECT_EQ(server_of("dhcp-option=tag:a,option:router,192.168.1.253").router, "192.168.1.253");
    EXPECT_EQ(server_of("dhcp-option=option:router,0.0.0.0").router, "");
    EXPECT_EQ(server_of("dhcp-option=3").router, "");
    EXPECT_EQ(server_of("dhcp-option=6,192.168.1.254").router, "");
}

TEST(DhcpServerTest, AReservationNeedsAnAddress)
{
    const DhcpServer server = server_of("dhcp-host=a4:bb:6d:31:07:5e,192.168.1.101,pc\n"
                                        "dhcp-host=a4:bb:6d:31:07:5f,pc\n");
    EXPECT_THAT(server.reserved_hosts, ElementsAre(*parse_mac("A4BB6D31075E")));
}

TEST(DhcpServerTest, FilesThatNameEachOtherAreReadOnce)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("more"));
    folder.write("main", "conf-file=" + folder.path("main") + "\nconf-dir=" + folder.path("more") +
                             ",*.conf\ndhcp-leasefile=/run/leases\n");
    folder.write("more/b", "dhcp-range=192.168.1.2,192.168.1.3\nconf-file=" + folder.path("main"));
    folder.write("more/a", "dhcp-range=192.168.1.4,192.168.1.5");
    folder.write("more/.hidden", "dhcp-range=192.168.1.6,192.168.1.7");
    folder.write("more/a.dpkg-old", "dhcp-range=192.168.1.6,192.168.1.7");
    folder.write("more/a~", "dhcp-range=192.168.1.6,192.168.1.7");
    const DhcpServer server = read_dhcp_server({folder.path("main"), folder.path("missing")});
    EXPECT_EQ(server.lease_file, "/run/leases");
    ASSERT_THAT(server.ranges, SizeIs(2));
    EXPECT_EQ(server.ranges[0].start, "192.168.1.4");
}

TEST(DhcpServerTest, AMaskHasTheBitsOfItsPrefix)
{
    EXPECT_EQ(mask_of(0), "0.0.0.0");
    EXPECT_EQ(mask_of(24), "255.255.255.0");
    EXPECT_EQ(mask_of(25), "255.255.255.128");
    EXPECT_EQ(mask_of(32), "255.255.255.255");
}

} // namespace
