// SPDX-License-Identifier: MIT
// An agent that does not replace system(), such as the example, on the simulated gateway: after an
// update the simulated router restarts, never the machine.
#include "firmware_test.h"
#include "reboot_programs.h"

#include <gmock/gmock.h>

#include <cstdlib>

using testing::HasSubstr;

namespace real_reboot_test {

constexpr char kStarted[] = "{\"Status\":\"0\",\"updateResult\":\"0\"}\n";
constexpr char kRefused[] = "the reboot would restart this machine";

class RealReboot : public FirmwareTest {
  protected:
    RealReboot()
    {
        setenv("SIMULATED_GATEWAY_STATE", state_.c_str(), 1);
        // Its libraries may be loaded before the sanitizer's, and it does not free cJSON's trees.
        const char *given = getenv("ASAN_OPTIONS");
        sanitizer_ = given != nullptr ? given : "";
        setenv("ASAN_OPTIONS", (sanitizer_ + ":verify_asan_link_order=0:detect_leaks=0").c_str(),
               1);
    }
    ~RealReboot() override
    {
        unsetenv("SIMULATED_GATEWAY_STATE");
        unsetenv("SIMULATED_GATEWAY_FAULTS");
        setenv("ASAN_OPTIONS", sanitizer_.c_str(), 1);
    }

    // Makes the host update its firmware, from an address that needs no escapes.
    void update(const std::string &host, const std::string &variables = "")
    {
        const std::string out = test_file("host.out");
        const std::string error = test_file("host.err");
        const std::string request =
            R"({"MainRouter":{"UpdateUrl":")" + address("new.image") + "\"}}";
        const std::string command = variables + " '" + host + "' IMAGE_DOWNLOAD '" + request +
                                    "' >'" + out + "' 2>'" + error + "'";
        EXPECT_EQ(std::system(command.c_str()), 0);
        EXPECT_EQ(content_of(out), kStarted);
        said_ = content_of(error);
    }

    const RebootPrograms programs_;
    std::string said_;

  private:
    std::string sanitizer_;
};

TEST_F(RealReboot, BecomesARestartOfTheRouterInALinkedHost)
{
    ASSERT_TRUE(programs_.are_found());
    expect_version(kOldVersion);
    set_time(kStart + 5000);
    update(LINKED_HOST);
    EXPECT_FALSE(programs_.were_run()) << "the machine of the test was to be rebooted";
    EXPECT_EQ(said_, "simulated gateway: restarts the model instead of this machine\n");
    expect_version(kNewVersion);
    EXPECT_EQ(text("GET_HG_BASE_INFO", "UpTime"), "0");
}

TEST_F(RealReboot, IsNotReachedInAHostThatLoadsTheLibraries)
{
    ASSERT_TRUE(programs_.are_found());
    update(LOADING_HOST);
    EXPECT_FALSE(programs_.were_run()) << "the machine of the test was to be rebooted";
    EXPECT_THAT(said_, HasSubstr(kRefused));
    expect_version(kOldVersion);
}

TEST_F(RealReboot, IsNotReachedWithAFaultPlan)
{
    ASSERT_TRUE(programs_.are_found());
    setenv("SIMULATED_GATEWAY_FAULTS", "devapi_flash_update_image=0", 1);
    update(LOADING_HOST);
    EXPECT_FALSE(programs_.were_run()) << "the machine of the test was to be rebooted";
}

TEST_F(RealReboot, BecomesARestartOfTheRouterWhereTheGatewayIsLoadedFirst)
{
    ASSERT_TRUE(programs_.are_found());
    update(LOADING_HOST, "LD_PRELOAD='" SIMULATED_GATEWAY_PATH "'");
    EXPECT_FALSE(programs_.were_run()) << "the machine of the test was to be rebooted";
    EXPECT_EQ(said_, "simulated gateway: restarts the model instead of this machine\n");
    expect_version(kNewVersion);
}

} // namespace real_reboot_test
