// SET_GREENNET_DEVICE_LIST when there is no memory for the list of MAC addresses, which is not
// cJSON's.
#include "handler_test.h"
#include "request.h"
#include "worker_control.h"

namespace green_net_memory_test {

class GreenNetMemoryTest : public HandlerTest {
  protected:
    WorkerControl control;
};

TEST_F(GreenNetMemoryTest, WithoutRoomForTheAddressesTheTableStays)
{
    control.fail_next_calloc();
    EXPECT_EQ(run("SET_GREENNET_DEVICE_LIST",
                  R"({"Other":1,"DeviceList":[{"Mac":"A","Name":"n","NotifyEnable":"1"}]})"),
              R"({"Other":1,)" + failure("malloc mac_list failed") + "}");
    EXPECT_EQ(recording_device::calls(),
              (std::vector<recording_device::Call>{{"devapi_set_greenaccess_enable", {"1"}}}));
    EXPECT_TRUE(recording_host::log_lines().empty());
}

} // namespace green_net_memory_test
