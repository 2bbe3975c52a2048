// SPDX-License-Identifier: MIT
// Which router is attached to which, from reports that may be inconsistent.
#include "commands/topology_routers.h"

#include "protocol/requests.h"

#include <gmock/gmock.h>

using agent::MeshNode;
using agent::Router;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace topology_routers_test {

std::string router(int number)
{
    return R"({"Mac":"02:00:00:00:00:0)" + std::to_string(number) + "\"}";
}

// The main router has number 0.
std::string attached_to(int number, const std::string &parent)
{
    return R"({"Mac":"0200000000)" + std::string("0") + std::to_string(number) +
           R"(","ParentMacAddress":")" + parent + "\"}";
}

std::string join(const std::vector<std::string> &items)
{
    std::string list;
    for (const std::string &item : items) {
        list += (list.empty() ? "" : ",") + item;
    }
    return "[" + list + "]";
}

// For each of three child routers and the main one, the indexes of those attached to it.
std::vector<std::vector<size_t>> tree(const std::vector<std::string> &relations)
{
    const agent::Json topology =
        agent::parse_object(R"({"MainRouter":)" + router(0) + R"(,"ChildRouter":)" +
                            join({router(1), router(2), router(3)}) + "}");
    const agent::Json parameters =
        agent::parse_object(R"({"ChildRouter":)" + join(relations) + "}");
    std::vector<std::vector<size_t>> places;
    for (const Router &one : agent::routers_of(topology.get(), parameters.get())) {
        places.push_back(one.routers);
    }
    return places;
}

const auto kStar = ElementsAre(ElementsAre(1, 2, 3), IsEmpty(), IsEmpty(), IsEmpty());

MeshNode node(const std::string &device)
{
    const agent::Json topology =
        agent::parse_object(R"({"MainRouter":{"MainBaseInfo":[)" + device + "]}}");
    return agent::routers_of(topology.get(), nullptr).front().devices.at(0);
}

TEST(TopologyRouters, AreAttachedAsTheTreeSays)
{
    EXPECT_THAT(tree({attached_to(1, "02:00:00:00:00:02"), attached_to(2, "02:00:00:00:00:00"),
                      attached_to(3, "020000000001")}),
                ElementsAre(ElementsAre(2), ElementsAre(3), ElementsAre(1), IsEmpty()));
    EXPECT_THAT(tree({attached_to(3, "02-00-00-00-00-01")}),
                ElementsAre(ElementsAre(1, 2), ElementsAre(3), IsEmpty(), IsEmpty()));
}

TEST(TopologyRouters, AreAttachedToTheMainRouterWithoutAValidParent)
{
    EXPECT_THAT(tree({}), kStar);
    EXPECT_THAT(tree({attached_to(1, "02:00:00:00:00:99"), attached_to(2, "NULL"), R"({"Mac":3})",
                      R"("text")", "null", "[]", attached_to(3, "")}),
                kStar);
    EXPECT_THAT(tree({attached_to(1, "02:00:00:00:00:01")}), kStar);
}

TEST(TopologyRouters, NeverFormACycle)
{
    EXPECT_THAT(tree({attached_to(1, "020000000002"), attached_to(2, "020000000003"),
                      attached_to(3, "020000000001")}),
                ElementsAre(ElementsAre(1), ElementsAre(3), IsEmpty(), ElementsAre(2)));
}

TEST(TopologyRouters, WithTheSameAddressStaySeparate)
{
    const agent::Json topology =
        agent::parse_object(R"({"MainRouter":{},"ChildRouter":[{},{"Mac":"NULL"},)" + router(4) +
                            "," + router(4) + "]}");
    const std::vector<Router> routers = agent::routers_of(topology.get(), topology.get());
    ASSERT_THAT(routers, SizeIs(5));
    EXPECT_THAT(routers[0].routers, ElementsAre(1, 2, 3, 4));
}

TEST(TopologyRouters, MayBeMissingFromTheReport)
{
    for (const char *text : {"{}", R"({"MainRouter":"text","ChildRouter":7})",
                             R"({"MainRouter":{"MainBaseInfo":"text"},"ChildRouter":null})"}) {
        const agent::Json topology = agent::parse_object(text);
        const std::vector<Router> routers = agent::routers_of(topology.get(), topology.get());
        ASSERT_THAT(routers, SizeIs(1));
        EXPECT_THAT(routers[0].devices, IsEmpty());
    }
}

TEST(TopologyRouters, HaveTheNameThatTheUserSet)
{
    EXPECT_EQ(node(R"({"ByName":"Anna","Name":"phone","Mac":"m"})").name, "Anna");
    EXPECT_EQ(node(R"({"ByName":"NULL","Name":"phone","Mac":"m"})").name, "phone");
    EXPECT_EQ(node(R"({"ByName":"","Name":"NULL","Mac":"m"})").name, "m");
    EXPECT_EQ(node(R"({"ByName":"a\nb"})").name, "a\\nb");
    EXPECT_EQ(node("{}").name, "");
}

TEST(TopologyRouters, MarkWhatIsUnusual)
{
    const auto state = [](const std::string &online, const std::string &access) {
        return node(R"({"NetStatus":")" + online + R"(","AccessEnable":")" + access + "\"}").state;
    };
    EXPECT_EQ(state("1", "1"), "");
    EXPECT_EQ(state("0", "1"), "offline");
    EXPECT_EQ(state("1", "0"), "blocked");
    EXPECT_EQ(state("0", "0"), "offline, blocked");
    EXPECT_EQ(state("NULL", ""), "");

    const agent::Json topology = agent::parse_object(R"({"MainRouter":{"NetStatus":"0"}})");
    EXPECT_EQ(agent::routers_of(topology.get(), nullptr).front().self.state, "no Internet");
}

} // namespace topology_routers_test
