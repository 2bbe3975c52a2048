// SPDX-License-Identifier: MIT
#include "core/configuration.h"
#include "system/error.h"
#include "temporary_folder.h"

#include <cstdlib>
#include <gmock/gmock.h>

using namespace linux_gateway;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::ThrowsMessage;

namespace {

class ConfigurationTest : public testing::Test {
  protected:
    ~ConfigurationTest() override { unsetenv("LINUX_GATEWAY_CONFIG"); }

    Configuration read(const std::string &text)
    {
        setenv("LINUX_GATEWAY_CONFIG", folder_.write("gateway.toml", text).c_str(), 1);
        return find_configuration();
    }

    TemporaryFolder folder_;
};

TEST_F(ConfigurationTest, EveryKeyIsRead)
{
    const Configuration configuration = read(R"(
lan_bridge = "br7"
wan_port = "wan7"
lease_file = "/run/leases"
dnsmasq_configuration = "/etc/other.conf"
resolver_configuration = "/run/resolv.conf"
state = "/srv/state.json"
time_zone = "Europe/Berlin"
package = "gateway"
area_code = "NORTH-07"
management_host = "192.168.1.5"
remove_at_exit = true
)");
    EXPECT_EQ(configuration.lan_bridge, "br7");
    EXPECT_EQ(configuration.wan_port, "wan7");
    EXPECT_EQ(configuration.lease_file, "/run/leases");
    EXPECT_THAT(configuration.dnsmasq_configuration, ElementsAre("/etc/other.conf"));
    EXPECT_EQ(configuration.resolver_configuration, "/run/resolv.conf");
    EXPECT_EQ(configuration.state, "/srv/state.json");
    EXPECT_EQ(configuration.time_zone, "Europe/Berlin");
    EXPECT_EQ(configuration.package, "gateway");
    EXPECT_EQ(configuration.area_code, "NORTH-07");
    EXPECT_EQ(configuration.management_host, "192.168.1.5");
    EXPECT_TRUE(configuration.remove_at_exit);
}

TEST_F(ConfigurationTest, TheManagementHostHasAnAddress)
{
    const std::string key = "lan_bridge = \"br7\"\nmanagement_host = ";
    EXPECT_EQ(read(key + "\"02-00-5e-10-00-0A\"").management_host, "02:00:5E:10:00:0A");
    EXPECT_EQ(read(key + "\"FD00:0::0A\"").management_host, "fd00::a");
    for (const char *wrong : {"laptop", "192.168.8.300", "02:00:5e", "192.168.8.10/24"}) {
        EXPECT_THAT([&] { read(key + '"' + wrong + '"'); },
                    ThrowsMessage<Error>(HasSubstr("line 2: management_host is neither")))
            << wrong;
    }
}

TEST_F(ConfigurationTest, TheLeaseFileIsThatOfDnsmasq)
{
    const std::string dnsmasq = folder_.write("dnsmasq.conf", "dhcp-leasefile=/run/its_leases\n");
    const std::string bridge =
        "lan_bridge = \"br7\"\ndnsmasq_configuration = \"" + dnsmasq + "\"\n";
    EXPECT_EQ(read(bridge).lease_file, "/run/its_leases");
    folder_.write("dnsmasq.conf", "");
    EXPECT_EQ(read(bridge).lease_file, "/var/lib/misc/dnsmasq.leases");
}

TEST_F(ConfigurationTest, AnErrorNamesFileAndLine)
{
    const std::pair<const char *, const char *> wrong[] = {
        {"\nlan = \"br0\"", "line 2: lan is not a key of this file"},
        {"lan_bridge = 1", "line 1: lan_bridge is not a text"},
        {"lan_bridge = \"\"", "line 1: lan_bridge is not a text"},
        {"remove_at_exit = \"yes\"", "line 1: remove_at_exit is neither true nor false"},
        {"lan_bridge = ", "line 1: "},
        {"\"lan\\n\\u202e\" = 1", "line 1: lan is not a key of this file"},
    };
    for (const auto &entry : wrong) {
        const char *text = entry.first;
        const char *error = entry.second;
        EXPECT_THAT([&] { read(text); },
                    ThrowsMessage<Error>(AllOf(HasSubstr("gateway.toml"), HasSubstr(error))))
            << text;
    }
}

TEST_F(ConfigurationTest, NoFileEndsTheProcess)
{
    std::string dots = "a";
    for (int count = 0; count < 30'000; ++count) {
        dots += ".a";
    }
    for (const std::string &text : std::vector<std::string>{
             "[[[[[[lan_bridge", dots + " = 1", '[' + dots + ']', "\xce\xb1 = 1",
             "\xe2\x81\x9f = 1", std::string(10'000, '['), std::string("\0", 1)}) {
        EXPECT_THROW(parse_configuration(text, "gateway.toml"), Error) << text.substr(0, 20);
    }
}

TEST_F(ConfigurationTest, ANamedFileHasToBeThere)
{
    setenv("LINUX_GATEWAY_CONFIG", folder_.path("missing.toml").c_str(), 1);
    EXPECT_THAT([] { find_configuration(); }, ThrowsMessage<Error>(HasSubstr("missing.toml")));
}

} // namespace
