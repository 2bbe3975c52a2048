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

class HostsTest : public HouseTest {
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

    static std::string right(int32_t index)
    {
        AttachDeviceRight asked = {};
        asked.HostIndex = index;
        return reported_by(devapi_get_attach_device_right, asked).InternetAccessRight;
    }
    static int32_t set_right(const std::string &mac, const std::string &right)
    {
        return set_by(devapi_set_attach_device_right,
                      {{"MAC", mac}, {"InternetAccessRight", right}});
    }

    // The current values of a device, as a setting that changes nothing.
    static AdBaseSetting setting_of(int32_t index)
    {
        const AdBaseInfo info = host(index);
        return record_with<AdBaseSetting>({{"Mac", info.Mac},
                                           {"DevType", info.DevType},
                                           {"ByName", info.ByName},
                                           {"AccessEnable", info.AccessEnable},
                                           {"DownLimit", "-1"},
                                           {"StaticDhcpEnable", "-1"}});
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
    static std::string applied(const AdBaseSetting &setting)
    {
        return fail_reason(devapi_set_ad_base_info, setting);
    }

    static std::string resources()
    {
        const ResourceInfo info = reported_by(devapi_inspect_hg_resource);
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
};
