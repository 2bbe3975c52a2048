// SPDX-License-Identifier: MIT
#include "hosts_fixture.h"

namespace {

class RemovedHostsTest : public HostsTest {
  protected:
    static constexpr int32_t kKitchenSpeaker = 4;
    static constexpr char kSpeakerMac[] = "48:D6:D5:90:3C:11";
    static constexpr char kAnnasMac[] = "DA:41:7C:0E:92:B3";
    static constexpr char kOmasMac[] = "BE:27:15:F3:64:0A";
    static constexpr char kNasMac[] = "00:11:32:C8:55:E1";

    static int32_t count() { return reported_by(devapi_get_host_num); }
    // The index of the host; 0 when it is not listed.
    static int32_t index_of(const std::string &mac)
    {
        for (int32_t index = 1; index <= count(); ++index) {
            if (host(index).Mac == mac) {
                return index;
            }
        }
        return 0;
    }
    static int32_t remove(const std::string &mac) { return devapi_del_device(mac.c_str()); }
};

TEST_F(RemovedHostsTest, AHostThatIsSwitchedOffIsRemovedPermanently)
{
    EXPECT_EQ(remove("be-27-15-f3-64-0a"), 0);
    EXPECT_EQ(count(), kHosts - 1);
    EXPECT_EQ(index_of(kOmasMac), 0);
    EXPECT_EQ(reason(remove(kOmasMac)), "there is no device BE:27:15:F3:64:0A");
    EXPECT_EQ(devapi_reboot(), 0);
    ASSERT_EQ(open_when(kTime + kDay), "");
    EXPECT_EQ(index_of(kOmasMac), 0);
}

TEST_F(RemovedHostsTest, AnOnlineHostReturnsWhenItReattaches)
{
    const std::string neighbour = host(kKitchenSpeaker + 1).Mac;
    EXPECT_EQ(remove(kSpeakerMac), 0);
    EXPECT_EQ(count(), kHosts - 1);
    EXPECT_EQ(host(kKitchenSpeaker).Mac, neighbour);
    ASSERT_EQ(open_when(kTime + kDay), "");
    EXPECT_EQ(index_of(kSpeakerMac), 0);

    EXPECT_EQ(switch_ssid(1, "0"), 0);
    EXPECT_EQ(index_of(kSpeakerMac), 0);
    EXPECT_EQ(switch_ssid(1, "1"), 0);
    EXPECT_EQ(index_of(kSpeakerMac), kHosts);
    EXPECT_STREQ(host(kHosts).NetStatus, "1");
    EXPECT_STREQ(host(kHosts).Name, "kitchen-speaker");
    EXPECT_EQ(host(kHosts).AccessTime, std::to_string(kTime + kDay));
}

TEST_F(RemovedHostsTest, AnAbsentHostReturnsAfterItsAbsence)
{
    ASSERT_EQ(open_when(kFriday + 8 * kHour), ""); // Anna is away from 7:40 to 17:15
    EXPECT_STREQ(host(kAnnasPhone).NetStatus, "0");
    EXPECT_EQ(remove(kAnnasMac), 0);
    ASSERT_EQ(open_when(kFriday + 17 * kHour), "");
    EXPECT_EQ(index_of(kAnnasMac), 0);
    ASSERT_EQ(open_when(kFriday + 18 * kHour), "");
    EXPECT_EQ(index_of(kAnnasMac), kHosts);
}

TEST_F(RemovedHostsTest, ABootReattachesAll)
{
    EXPECT_EQ(remove(kSpeakerMac), 0);
    EXPECT_EQ(remove(kTabletMac), 0);
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_NE(index_of(kSpeakerMac), 0);
    EXPECT_NE(index_of(kTabletMac), 0);
    EXPECT_EQ(remove(kSpeakerMac), 0);
    simulated_gateway_power_cycle();
    EXPECT_NE(index_of(kSpeakerMac), 0);
}

TEST_F(RemovedHostsTest, WhatTheUserHasSetIsForgotten)
{
    EXPECT_EQ(with(&AdBaseInfo::ByName, "Files", 7), "");
    EXPECT_EQ(with(&AdBaseInfo::AccessEnable, "0", 7), "");
    EXPECT_EQ(with(&AdBaseInfo::DownLimit, "500", 7), "");
    EXPECT_EQ(remove(kNasMac), 0);
    EXPECT_EQ(devapi_reboot(), 0);
    const AdBaseInfo nas = host(index_of(kNasMac));
    EXPECT_STREQ(nas.ByName, "NULL");
    EXPECT_STREQ(nas.AccessEnable, "1");
    EXPECT_STREQ(nas.DownLimit, "0");
    EXPECT_STREQ(nas.StaticDhcpEnable, "0");
    EXPECT_STREQ(nas.ip, "192.168.1.100"); // the first of the pool, and no longer the bound one
}

TEST_F(RemovedHostsTest, ItsAddressIsFreeForOthers)
{
    EXPECT_EQ(remove(kNasMac), 0);
    EXPECT_EQ(bind("192.168.1.10"), "");
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_STREQ(host(index_of(kNasMac)).ip, "192.168.1.100");
}

TEST_F(RemovedHostsTest, ItReturnsOnlyOnceAnAddressIsFree)
{
    // .101 and .102 are held
    ASSERT_EQ(open_home(house({{"/lan/dhcp_pool/end", "192.168.1.102"}})), "");
    EXPECT_EQ(bind("192.168.1.100", 8), "");
    EXPECT_EQ(remove(kSpeakerMac), 0);
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_EQ(index_of(kSpeakerMac), 0);
    EXPECT_EQ(bind("192.168.1.130", 7), "");
    EXPECT_EQ(remove("F4:D4:88:5B:3F:72"), 0);
    EXPECT_NE(index_of(kSpeakerMac), 0);
}

TEST_F(RemovedHostsTest, ParentalControlKeepsItsEntry)
{
    EXPECT_EQ(remove(kTabletMac), 0);
    int32_t index = 0;
    EXPECT_EQ(devapi_get_greennet_index_by_mac(kTabletMac, &index), 1);
    EXPECT_EQ(index, 1);
    EXPECT_EQ(devapi_reboot(), 0);
    EXPECT_STREQ(host(index_of(kTabletMac)).GreennetProtectEnable, "1");
}

TEST_F(RemovedHostsTest, FactoryRecoveryRestoresAll)
{
    EXPECT_EQ(remove(kSpeakerMac), 0);
    EXPECT_EQ(remove(kOmasMac), 0);
    EXPECT_EQ(devapi_recovery(), 0);
    EXPECT_EQ(count(), kHosts);
    EXPECT_EQ(index_of(kSpeakerMac), kKitchenSpeaker);
    EXPECT_EQ(index_of(kOmasMac), kHosts);
}

TEST_F(RemovedHostsTest, AnythingButAHostIsRefused)
{
    for (const std::string &mac : kNoMacs) {
        EXPECT_EQ(remove(mac), -1) << mac;
    }
    EXPECT_EQ(remove("3C:6A:D2:22:81:40"), -1); // a child router
    EXPECT_EQ(remove("3C:6A:D2:10:4F:20"), -1); // the gateway itself
    EXPECT_EQ(reason(), "there is no device 3C:6A:D2:10:4F:20");
    EXPECT_EQ(remove(std::string(1 << 20, 'A')), -1);
    EXPECT_EQ(count(), kHosts);
}

TEST_F(RemovedHostsTest, AnInvalidStateFileIsRefused)
{
    EXPECT_EQ(remove(kSpeakerMac), 0);
    close();
    nlohmann::json kept = state_to_vary(path("state"));
    kept["home"]["ssids"].erase(7);
    const std::string host = path("state") + ": /removed_hosts/0/host/";
    const auto error_with = [&](const char *field, const nlohmann::json &value) {
        nlohmann::json damaged = kept;
        damaged["removed_hosts"][0]["host"][field] = value;
        close();
        std::filesystem::remove(path("state.good"));
        write("state", damaged.dump());
        return open_when(kTime);
    };
    EXPECT_EQ(error_with("ssid", 7), "");
    EXPECT_EQ(error_with("ssid", 8), host + "ssid: there is no SSID 8");
    // They would make the home invalid when the host reattaches.
    EXPECT_EQ(error_with("signal_dbm", 0),
              host + "signal_dbm: is missing, and the link is a radio link");
    EXPECT_EQ(error_with("router", "3C:6A:D2:00:00:01"),
              host + "router: there is no router 3C:6A:D2:00:00:01");
    EXPECT_THAT(error_with("mac", kTabletMac),
                StartsWith(host + "mac: " + kTabletMac + " belongs to /home/hosts/"));
    EXPECT_EQ(error_with("mac", "3C:6A:D2:10:4F:20"),
              host + "mac: 3C:6A:D2:10:4F:20 belongs to /home/identity/mac");
}

} // namespace
