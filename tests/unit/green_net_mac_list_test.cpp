// The MAC addresses that SET_GREENNET_DEVICE_LIST keeps, as the device gets them in one text.
#include "handler_test.h"
#include "request.h"

namespace green_net_mac_list_test {

using recording_device::when;

// Every device has an entry already.
class GreenNetMacListTest : public HandlerTest {
  protected:
    GreenNetMacListTest()
    {
        when<devapi_get_greennet_index_by_mac>([](const char *, int32_t *index) {
            *index = 1;
            return 1;
        });
    }

    static std::string list_for(const std::vector<std::string> &macs)
    {
        std::string elements;
        for (const std::string &mac : macs) {
            elements += elements.empty() ? "" : ",";
            elements += R"({"Mac":)" + quoted(mac) + R"(,"Name":"n","NotifyEnable":"1"})";
        }
        EXPECT_EQ(run("SET_GREENNET_DEVICE_LIST", R"({"DeviceList":[)" + elements + "]}"),
                  R"({"Status":"0"})");
        const auto calls = recording_device::calls();
        EXPECT_EQ(calls.back().function, "devapi_del_green_net_info_by_maclist");
        return calls.back().arguments[0];
    }
};

TEST_F(GreenNetMacListTest, HoldsEachAddressWithACommaBehind)
{
    EXPECT_EQ(list_for({"A", "B"}), "A,B,");
    EXPECT_EQ(list_for({"A", "B", "A", "A"}), "A,B,A,A,");
    EXPECT_EQ(list_for({"00:11:22:33:44:55"}), "00:11:22:33:44:55,");
}

TEST_F(GreenNetMacListTest, HoldsAnyTextAsAnAddress)
{
    for (const std::string mac : {"", " ", ",", "NULL", "null", "aa-bb-cc", "not a MAC", "%s%n"}) {
        EXPECT_EQ(list_for({mac}), mac + ",");
    }
    EXPECT_EQ(list_for({"", "", ""}), ",,,");
}

TEST_F(GreenNetMacListTest, HoldsHundredsOfAddresses)
{
    std::vector<std::string> macs;
    std::string expected;
    for (int at = 0; at < 300; ++at) {
        macs.push_back("00:11:22:33:44:" + std::to_string(at));
        expected += macs.back() + ",";
    }
    EXPECT_EQ(list_for(macs), expected);
    EXPECT_EQ(recording_device::calls().size(), 2u + 2 * 300);
}

// There are twenty bytes for each device; what does not fit is cut, the comma included.
TEST_F(GreenNetMacListTest, IsCutAtItsRoom)
{
    for (size_t length = 0; length <= 80; ++length) {
        const std::string mac = text_of_length(length);
        const std::string kept = mac.substr(0, 63) + ",";
        EXPECT_EQ(list_for({mac}), kept.substr(0, 19)) << length;
        EXPECT_EQ(list_for({mac, "B", "C"}), (kept + "B,C,").substr(0, 59)) << length;
        EXPECT_EQ(list_for({"A", mac, mac}), ("A," + kept + kept).substr(0, 59)) << length;
    }
    EXPECT_EQ(list_for({text_of_length(18)}), text_of_length(18) + ",") << "it just fits";
    EXPECT_EQ(list_for({text_of_length(19)}), text_of_length(19)) << "without its comma";
    EXPECT_EQ(list_for({text_of_length(37), "BC"}), text_of_length(37) + ",B");
    EXPECT_EQ(list_for({text_of_length(38), "BC"}), text_of_length(38) + ",");
    EXPECT_EQ(list_for({text_of_length(39), "BC"}), text_of_length(39));
    EXPECT_EQ(list_for({text_of_length(10000), "BC"}), text_of_length(39));
}

} // namespace green_net_mac_list_test
