// SPDX-License-Identifier: MIT
// The attached devices, by their index in the built-in scenario.
#pragma once

#include "gateway_fixture.h"

// Invalid MAC addresses.
inline const std::vector<std::string> kNoMacs = {
    "",
    "NULL",
    "72",
    "72:9B:E0:46:D8",
    "72:9B:E0:46:D8:1",
    "72:9B:E0:46:D8:15:",
    "72:9B:E0:46:D8:15:00",
    " 72:9B:E0:46:D8:15",
    "72:9B:E0:46:D8:15 ",
    "72:9B:E0:46:D8:1G",
    "72:9B:E0:46-D8-15",
    "72-9B:E0:46:D8:15",
    "72.9B.E0.46.D8.15",
    "729B.E046.D815",
    "72 9B E0 46 D8 15",
    "729BE046D81",
    "729BE046D8155",
    "729BE046D81g",
    ":::::::::::::::::",
    "------------",
    "7:29B:E0:46:D8:15",
    "+2:9B:E0:46:D8:15",
    "72:9B:E0:46:D8:15,70:F0:88:2C:A6:93",
    "72_9B_E0_46_D8_15",
    "\xc3\xa4:9B:E0:46:D8:15",
    "\xff\xff:9B:E0:46:D8:15",
};

class HostsTest : public GatewayTest {
  protected:
    static constexpr int64_t kHour = 3600;
    static constexpr int64_t kDay = 24 * kHour;

    // kTime is the beginning of a Thursday.
    static constexpr int64_t kFriday = kTime + kDay;
    static constexpr int64_t kMonday = kTime + 4 * kDay;

    static constexpr int32_t kAnnasPhone = 3;
    static constexpr int32_t kLaptop = 8;
    static constexpr int32_t kTablet = 10;
    static constexpr int32_t kConsole = 11;
    static constexpr int32_t kOmasPhone = 12;
    static constexpr int32_t kHosts = 12;

    static constexpr char kTabletMac[] = "72:9B:E0:46:D8:15";
    static constexpr char kConsoleMac[] = "70:F0:88:2C:A6:93";

    std::string open_when(int64_t time)
    {
        return open_at(time, {.state_file = path("state"), .trace = path("trace")});
    }
    std::string open_home(const nlohmann::json &home, int64_t time = kTime)
    {
        close();
        std::filesystem::remove(path("state"));
        return open_at(time, {.scenario = write("home.json", home.dump()),
                              .state_file = path("state"),
                              .trace = path("trace")});
    }
    void SetUp() override { ASSERT_EQ(open_when(kTime), ""); }

    static AdBaseInfo host(int32_t index)
    {
        AdBaseInfo info = {};
        info.HostIndex = index;
        EXPECT_EQ(devapi_get_ad_base_info(&info), 0);
        return info;
    }
    static std::string right(int32_t index)
    {
        AttachDeviceRight info = {};
        info.HostIndex = index;
        EXPECT_EQ(devapi_get_attach_device_right(&info), 0);
        return info.InternetAccessRight;
    }
    static int32_t set_right(const std::string &mac, const std::string &right)
    {
        AttachDeviceRight info = {};
        set(info.MAC, mac);
        set(info.InternetAccessRight, right);
        return devapi_set_attach_device_right(&info);
    }

    // The current values of a device, as a setting that changes nothing.
    static AdBaseSetting setting_of(int32_t index)
    {
        const AdBaseInfo info = host(index);
        AdBaseSetting setting = {};
        set(setting.info.Mac, info.Mac);
        set(setting.info.DevType, info.DevType);
        set(setting.info.ByName, info.ByName);
        set(setting.info.AccessEnable, info.AccessEnable);
        set(setting.info.DownLimit, "-1");
        set(setting.info.StaticDhcpEnable, "-1");
        return setting;
    }
    // The same with one field changed. Result: empty on success, else the reason.
    template <size_t width>
    static std::string with(char (AdBaseInfo::*field)[width], const std::string &text,
                            int32_t index = 1)
    {
        AdBaseSetting setting = setting_of(index);
        set(setting.info.*field, text);
        return applied(setting);
    }
    static std::string bind(const std::string &ip, int32_t index = 1)
    {
        AdBaseSetting setting = setting_of(index);
        set(setting.info.StaticDhcpEnable, "1");
        set(setting.info.ip, ip);
        return applied(setting);
    }
    static std::string applied(AdBaseSetting &setting)
    {
        const int32_t result = devapi_set_ad_base_info(&setting);
        EXPECT_EQ(result, setting.FailReason[0] == '\0' ? 0 : -1);
        return setting.FailReason;
    }

    static std::string resources()
    {
        ResourceInfo info = {};
        EXPECT_EQ(devapi_inspect_hg_resource(&info), 0);
        return std::string(info.LanDevNum) + " " + info.ProtectedDevNum;
    }
    static int online()
    {
        int count = 0;
        for (int32_t index = 1; index <= kHosts; ++index) {
            count += host(index).NetStatus == std::string("1") ? 1 : 0;
        }
        return count;
    }
    static HgBaseInfo base()
    {
        HgBaseInfo info = {};
        EXPECT_EQ(devapi_get_hg_base_info(&info), 0);
        return info;
    }
};
