// SPDX-License-Identifier: MIT
#include "system/netlink.h"

#include "network_namespace.h"

#include <gmock/gmock.h>
#include <linux/rtnetlink.h>
#include <set>
#include <sys/socket.h>

namespace linux_gateway {
namespace {

class RouteSocketTest : public NetworkNamespaceTest {
  protected:
    // The indexes of all interfaces. During the answer, another one is made.
    std::set<int> links(const std::string &made_meanwhile = "")
    {
        std::set<int> indexes;
        ifinfomsg request = {};
        request.ifi_family = AF_UNSPEC;
        socket_.dump(RTM_GETLINK, request, [&](const nlmsghdr &message) {
            if (indexes.empty() && !made_meanwhile.empty()) {
                run("ip link add " + made_meanwhile + " type bridge");
            }
            indexes.insert(static_cast<const ifinfomsg *>(NLMSG_DATA(&message))->ifi_index);
        });
        return indexes;
    }

  private:
    RouteSocket socket_;
};

TEST_F(RouteSocketTest, AnAnswerDuringAChangeIsReadToItsEnd)
{
    constexpr int many = 60; // more than one message of the kernel has room for
    for (int i = 0; i < many; ++i) {
        run("ip link add more" + std::to_string(i) + " type bridge");
    }
    const std::set<int> before = links();
    EXPECT_GT(before.size(), many);
    EXPECT_THAT(links("meanwhile"), testing::IsSupersetOf(before));
    EXPECT_EQ(links().size(), before.size() + 1);
}

} // namespace
} // namespace linux_gateway
