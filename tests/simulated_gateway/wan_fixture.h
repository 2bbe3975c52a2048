// SPDX-License-Identifier: MIT
// WAN connections as texts of their fields.
#pragma once

#include "gateway_fixture.h"

#include <map>

class WanTest : public GatewayTest {
  protected:
    using Fields = std::map<std::string, std::string>;
    using Member = char (WanInfo::*)[64];

    std::string open_after(int64_t seconds)
    {
        return open_at(kTime + seconds, {.state_file = path("state"), .trace = path("trace")});
    }
    std::string open_home(const nlohmann::json &home)
    {
        close();
        std::filesystem::remove(path("state"));
        return open_at(kTime, {.scenario = write("home.json", home.dump()),
                               .state_file = path("state"),
                               .trace = path("trace")});
    }
    void SetUp() override { ASSERT_EQ(open_after(0), ""); }

    static WanInfo wan(const std::string &name)
    {
        WanInfo info = {};
        set(info.WANName, name);
        EXPECT_EQ(devapi_query_wan_info(&info), 0);
        return info;
    }

    // The fields of a setting; the others are empty.
    static int32_t set_wan(const Fields &fields, const std::string &name = "Internet")
    {
        WanInfo info = {};
        set(info.WANName, name);
        for (const auto &[field, text] : fields) {
            set(info.*members().at(field), text);
        }
        return devapi_set_route_wan_info(&info);
    }

    // The values of a record in the fields that others names.
    static Fields with_names(const WanInfo &info, const Fields &others)
    {
        Fields fields;
        for (const auto &[field, text] : others) {
            fields[field] = info.*members().at(field);
        }
        return fields;
    }

    static const std::map<std::string, Member> &members()
    {
        static const std::map<std::string, Member> members = {
            {"SERVICELIST", &WanInfo::SERVICELIST},
            {"ADDRESSTYPE", &WanInfo::ADDRESSTYPE},
            {"IPADDRESS", &WanInfo::IPADDRESS},
            {"SUBNETMASK", &WanInfo::SUBNETMASK},
            {"GATEWAY", &WanInfo::GATEWAY},
            {"DNS1", &WanInfo::DNS1},
            {"DNS2", &WanInfo::DNS2},
            {"IPV6_IPADDRESS", &WanInfo::IPV6_IPADDRESS},
            {"IPV6_PREFIXLENGTH", &WanInfo::IPV6_PREFIXLENGTH},
            {"IPV6_GATEWAY", &WanInfo::IPV6_GATEWAY},
            {"IPV6_DNS1", &WanInfo::IPV6_DNS1},
            {"IPV6_DNS2", &WanInfo::IPV6_DNS2},
            {"IPV6_PRIFIX", &WanInfo::IPV6_PRIFIX},
            {"PPPOE_USR_NAME", &WanInfo::PPPOE_USR_NAME},
            {"PPPOE_PASSWORD", &WanInfo::PPPOE_PASSWORD},
            {"NATENABLE", &WanInfo::NATENABLE},
            {"QOSENABLE", &WanInfo::QOSENABLE},
            {"VLANID", &WanInfo::VLANID},
            {"VLANPRIORITY", &WanInfo::VLANPRIORITY},
        };
        return members;
    }

    static std::string wan_uptime()
    {
        HgBaseInfo info = {};
        EXPECT_EQ(devapi_get_hg_base_info(&info), 0);
        return info.WanUptime;
    }
};
