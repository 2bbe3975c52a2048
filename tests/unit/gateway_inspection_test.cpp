// SPDX-License-Identifier: MIT
#include "handler_test.h"

#include <cstring>

namespace gateway_inspection_test {

class HgInspection : public HandlerTest {};
class GetHgUplinkStatus : public HandlerTest {};
class HgWifiOptimization : public HandlerTest {};
class HgWifiChannelPowerOptimization : public HandlerTest {};

// ---- HG_INSPECTION -----------------------------------------------------------------------------

TEST_F(HgInspection, ReportsThreeRecords)
{
    when<devapi_inspect_hg>(
        [](WifiInspectInfo *wifi, FwInspectInfo *firmware, NetInspectInfo *net) {
            memset(net, '?', sizeof *net);
            memset(firmware, '?', sizeof *firmware);
            put(wifi->WiFiDevNum, "7");
            put(wifi->Security, "2");
            put(wifi->Channel, "36");
            put(wifi->Congestion, "1");
            put(wifi->PowerLevel, "80");
            put(wifi->FireWallEnable, "1");
            put(firmware->FWVersion, "V2.4.1");
            put(net->WanStatus, "Connected");
            put(net->NetStatus, "1");
            put(net->WanIP, "203.0.113.7");
            put(net->NetMask, "255.255.255.0");
            return 0;
        });
    EXPECT_EQ(run("HG_INSPECTION", R"({"Channel":"x"})"),
              R"({"Channel":"x","Status":"0","WiFiDevNum":"7","Security":"2","Channel":"36",)"
              R"("Congestion":"1","FWVersion":"V2.4.1","WanStatus":"Connected","NetStatus":"1",)"
              R"("WanIP":"203.0.113.7","NetMask":"255.255.255.0","PowerLevel":"80",)"
              R"("FireWallEnable":"1"})");
    const auto arguments = recording_device::calls().at(0).arguments;
    EXPECT_EQ(arguments,
              (Names{std::string(44, '\0'), std::string(1088, '\0'), std::string(1944, '\0')}));
}

TEST_F(GetHgUplinkStatus, PassesABufferOfEightBytes)
{
    run("GET_HG_UPLINK_STATUS");
    EXPECT_EQ(recording_device::calls().at(0).arguments.at(1), "8");
}

// ---- HG_WIFI_OPTIMIZATION, HG_WIFI_CHANNEL_POWER_OPTIMIZATION ---------------------------------

int32_t choose(WifiInspectInfo *info)
{
    put(info->Channel, "11");
    put(info->PowerLevel, "60");
    return 0;
}

TEST_F(HgWifiOptimization, ReportsWhatTheDeviceChose)
{
    when<devapi_optimize_hg_wifi>(choose);
    EXPECT_EQ(run("HG_WIFI_OPTIMIZATION", R"({"Channel":"6"})"),
              R"({"Status":"0","Channel":"11","Congestion":""})");
}

TEST_F(HgWifiChannelPowerOptimization, ReportsWhatTheDeviceChose)
{
    when<devapi_optimize_wifi_channel_power>(choose);
    EXPECT_EQ(run("HG_WIFI_CHANNEL_POWER_OPTIMIZATION", R"({"Channel":"6","PowerLevel":"100"})"),
              R"({"Status":"0","Channel":"11","Congestion":"","PowerLevel":"60"})");
}

} // namespace gateway_inspection_test
