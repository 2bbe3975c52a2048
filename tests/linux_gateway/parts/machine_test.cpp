// SPDX-License-Identifier: MIT
#include "system/machine.h"

#include <gtest/gtest.h>

using namespace linux_gateway;

namespace {

constexpr char kStatus[] = "Package: linux-gateway-doc\n"
                           "Status: install ok installed\n"
                           "Version: 9\n"
                           "\n"
                           "Package: linux-gateway\n"
                           "Status: install ok installed\n"
                           "Description: a library\n"
                           " Version: no\n"
                           "Version: 1.2-3\n"
                           "\n"
                           "Package: removed\n"
                           "Status: deinstall ok config-files\n"
                           "Version: 4\n"
                           "\n"
                           "Package: last\n"
                           "Status: install ok installed\n"
                           "Version: 5";

TEST(MachineTest, TheVersionIsThatOfTheInstalledPackage)
{
    EXPECT_EQ(installed_version(kStatus, "linux-gateway-doc"), "9");
    EXPECT_EQ(installed_version(kStatus, "linux-gateway"), "1.2-3");
    EXPECT_EQ(installed_version(kStatus, "last"), "5");
    EXPECT_EQ(installed_version(kStatus, "removed"), std::nullopt);
    EXPECT_EQ(installed_version(kStatus, "linux"), std::nullopt);
    EXPECT_EQ(installed_version("", "linux-gateway"), std::nullopt);
}

TEST(MachineTest, WithoutThePackageTheSystemsVersionIsReported)
{
    SoftwareReader reader("no-package-has-this-name");
    const Software software = reader.read();
    EXPECT_NE(software.version, "");
    ASSERT_EQ(software.date.size(), 10u);
    EXPECT_EQ(software.date[4], '-');
    EXPECT_EQ(reader.read().version, software.version);
}

TEST(MachineTest, EveryMachineHasADescription)
{
    const Machine machine = read_machine();
    EXPECT_NE(machine.product, "");
    EXPECT_NE(machine.processor, "");
    EXPECT_GT(uptime_seconds(), 0);
    EXPECT_NE(host_name(), "");
}

} // namespace
