// SPDX-License-Identifier: MIT
#include "handler_test.h"

#include <cstring>

namespace gateway_inspection_test {

class HgInspection : public HandlerTest {};
class GetHgUplinkStatus : public HandlerTest {};
class GatewayInspectionTest : public HandlerTest {};

// ---- HG_INSPECTION -----------------------------------------------------------------------------

template <size_t width> void set(char (&field)[width], const char *text)
{
    strncpy(field, text, width);
}

TEST_F(HgInspection, TheWholeInspectionMixesThreeRecords)
{
    when<devapi_inspect_hg>(
        [](WifiInspectInfo *wifi, FwInspectInfo *firmware, NetInspectInfo *net) {
            memset(net, '?', sizeof *net);
            memset(firmware, '?', sizeof *firmware);
            set(wifi->WiFiDevNum, "7");
            set(wifi->Security, "2");
            set(wifi->Channel, "36");
            set(wifi->Congestion, "1");
            set(wifi->PowerLevel, "80");
            set(wifi->FireWallEnable, "1");
            set(firmware->FWVersion, "V2.4.1");
            set(net->WanStatus, "Connected");
            set(net->NetStatus, "1");
            set(net->WanIP, "203.0.113.7");
            set(net->NetMask, "255.255.255.0");
            return 0;
        });
    EXPECT_EQ(run("HG_INSPECTION", R"({"Channel":"x"})"),
              R"({"Channel":"x","Status":"0","WiFiDevNum":"7","Security":"2","Channel":"36",)"
              R"("Congestion":"1","FWVersion":"V2.4.1","WanStatus":"Connected","NetStatus":"1",)"
              R"("WanIP":"203.0.113.7","NetMask":"255.255.255.0","PowerLevel":"80",)"
              R"("FireWallEnable":"1"})");
    const auto arguments = recording_device::calls().at(0).arguments;
    EXPECT_EQ(arguments, (std::vector<std::string>{std::string(44, '\0'), std::string(1088, '\0'),
                                                   std::string(1944, '\0')}));
}

TEST_F(GetHgUplinkStatus, TheUplinkIsToldTheSizeOfItsBuffer)
{
    run("GET_HG_UPLINK_STATUS");
    EXPECT_EQ(recording_device::calls().at(0).arguments.at(1), "8");
}

// ---- HG_WIFI_OPTIMIZATION, HG_WIFI_CHANNEL_POWER_OPTIMIZATION ---------------------------------

TEST_F(GatewayInspectionTest, AnOptimisationTellsWhatTheDeviceChose)
{
    const auto chooses = [](WifiInspectInfo *info) {
        set(info->Channel, "11");
        set(info->PowerLevel, "60");
        return 0;
    };
    when<devapi_optimize_hg_wifi>(chooses);
    when<devapi_optimize_wifi_channel_power>(chooses);
    EXPECT_EQ(run("HG_WIFI_OPTIMIZATION", R"({"Channel":"6"})"),
              R"({"Status":"0","Channel":"11","Congestion":""})");
    EXPECT_EQ(run("HG_WIFI_CHANNEL_POWER_OPTIMIZATION", R"({"Channel":"6","PowerLevel":"100"})"),
              R"({"Status":"0","Channel":"11","Congestion":"","PowerLevel":"60"})");
}

} // namespace gateway_inspection_test
