// SPDX-License-Identifier: MIT
// The table of parental control.
#pragma once

#include "hosts_fixture.h"

class GreenNetTest : public HostsTest {
  protected:
    static int32_t count() { return reported_by(devapi_get_greennet_num); }
    static GreenHostInfo entry(int32_t number)
    {
        return reported_by(devapi_get_green_net_info,
                           record_with<GreenHostInfo>({{"HostIndex", std::to_string(number)}}));
    }
    // 0 when there is none.
    static int32_t number_of(const std::string &mac)
    {
        int32_t number = -1;
        const int32_t result = devapi_get_greennet_index_by_mac(mac.c_str(), &number);
        EXPECT_EQ(result, number > 0 ? 1 : 0);
        return number;
    }
    // The number of the new entry; 0 when it is refused.
    static int32_t add(const std::string &mac)
    {
        int32_t number = 0;
        const int32_t result = devapi_add_greennet_mac(mac.c_str(), &number);
        EXPECT_EQ(result, number > 0 ? 0 : -1);
        return number;
    }
    static int32_t set_entry(int32_t number, const std::string &mac, const std::string &name,
                             const std::string &notify)
    {
        return set_by(devapi_set_green_net_info, {{"HostIndex", std::to_string(number)},
                                                  {"Mac", mac},
                                                  {"Name", name},
                                                  {"NotifyEnable", notify}});
    }
    static std::string mac_of(int number)
    {
        char mac[18];
        snprintf(mac, sizeof mac, "02:00:00:00:%02X:%02X", number / 256, number % 256);
        return mac;
    }

    static int32_t periods(int32_t number)
    {
        int32_t count = -1;
        EXPECT_EQ(devapi_get_duration_num_by_index(number, &count), 0);
        return count;
    }
    // "12:30 15:00 1 12345"
    static std::string period(int32_t number, int32_t at)
    {
        ProtectPeriodInfo asked = {};
        asked.HostIndex = number;
        asked.PeriodNum = at;
        const ProtectPeriodInfo info = reported_by(devapi_get_protect_period_info, asked);
        return std::string(info.StartTime) + " " + info.EndTime + " " + info.Enable + " " +
               info.DaysOfWeek;
    }
    static int32_t set_period(int32_t number, int32_t at, const std::string &start,
                              const std::string &end, const std::string &enable,
                              const std::string &days)
    {
        auto info = record_with<ProtectPeriodInfo>(
            {{"StartTime", start}, {"EndTime", end}, {"Enable", enable}, {"DaysOfWeek", days}});
        info.HostIndex = number;
        info.PeriodNum = at;
        return devapi_set_protect_period_info(&info);
    }
    static void add_period(int32_t number, const std::string &start, const std::string &end,
                           const std::string &enable, const std::string &days)
    {
        int32_t at = 0;
        ASSERT_EQ(devapi_add_greennet_duration(number, &at), 0);
        ASSERT_EQ(set_period(number, at, start, end, enable, days), 0);
    }
};
