// GET_QOS_INFO when there is no memory for the record, which is not cJSON's.
#include "handler_test.h"
#include "request.h"
#include "worker_control.h"

namespace qos_memory_test {

class QosMemoryTest : public HandlerTest {
  protected:
    WorkerControl control;
};

TEST_F(QosMemoryTest, WithoutRoomForTheRecordTheDeviceIsNotAsked)
{
    control.fail_next_calloc();
    EXPECT_EQ(run("GET_QOS_INFO", R"({"Other":1})"),
              R"({"Other":1,)" + failure("get uplink qos info error") + "}");
    EXPECT_TRUE(recording_device::calls().empty());
    EXPECT_TRUE(recording_host::log_lines().empty());
}

} // namespace qos_memory_test
