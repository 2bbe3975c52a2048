// SPDX-License-Identifier: MIT
// Quality-of-service rules, from one agent to the next.
#include "gateway_test.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using testing::ElementsAre;
using testing::HasSubstr;

using Json = nlohmann::ordered_json;

namespace qos_test {

std::string failed(const std::string &number)
{
    return R"({"Id":")" + number + R"(","Status":"1","FailReason":"set qos cls info error"})" +
           "\n";
}

class Qos : public GatewayTest {
  protected:
    std::string add(const std::string &name) const
    {
        return reply("SET_QOS_CLASSIFICATION_INFO",
                     R"({"Id":"0","Action":"1","Name":")" + name +
                         R"(","PriorityLevel":"2","type_list":[)"
                         R"({"Type":"DPORT","Min":"3074","Max":"3080"}]})");
    }
    std::string remove(const std::string &number) const
    {
        return reply("SET_QOS_CLASSIFICATION_INFO", R"({"Id":")" + number + R"(","Action":"2"})");
    }
    // The numbers and names of the rules.
    std::vector<std::string> rules() const
    {
        const Json info = Json::parse(reply("GET_QOS_INFO"));
        std::vector<std::string> names;
        for (const Json &rule : info["classification_info_list"]) {
            names.push_back(rule["Id"].get<std::string>() + " " + rule["Name"].get<std::string>());
        }
        return names;
    }
};

TEST_F(Qos, AddsAndDeletesRules)
{
    EXPECT_THAT(rules(), ElementsAre("1 Voice of the office"));
    EXPECT_EQ(add("Games"), "{\"Status\":\"0\",\"Id\":\"2\"}\n");
    EXPECT_THAT(rules(), ElementsAre("1 Voice of the office", "2 Games"));
    EXPECT_THAT(reply("GET_QOS_INFO"),
                HasSubstr(R"("Id":"2","Name":"Games","PriorityLevel":"2","type_list":[)"
                          R"({"Type":"DPORT","Min":"3074","Max":"3080"}])"));
    EXPECT_EQ(remove("1"), kDone);
    EXPECT_EQ(remove("1"), failed("1"));
    EXPECT_THAT(rules(), ElementsAre("2 Games"));
    EXPECT_EQ(add("Work"), "{\"Status\":\"0\",\"Id\":\"1\"}\n");
    EXPECT_THAT(rules(), ElementsAre("2 Games", "1 Work"));
}

} // namespace qos_test
