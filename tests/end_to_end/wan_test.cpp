// SPDX-License-Identifier: MIT
// WAN connections: what one agent sets, the next one reports.
#include "gateway_test.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

using Json = nlohmann::ordered_json;

namespace wan_test {

constexpr char kNewAccount[] =
    R"({"WANName":"Internet","SERVICELIST":"INTERNET","ADDRESSTYPE":"PPPoE",)"
    R"("PPPOE_USR_NAME":"mueller@fibre.example","PPPOE_PASSWORD":"very hidden",)"
    R"("NATENABLE":"1","QOSENABLE":"1","VLANID":"9","VLANPRIORITY":"3"})";

class Wan : public GatewayTest {
  protected:
    Json query(const std::string &name) const
    {
        return Json::parse(reply("QUERY_WAN_INFO", R"({"WANName":")" + name + "\"}"));
    }
};

TEST_F(Wan, IsKeptAsItIsSet)
{
    const Json before = query("Internet");
    EXPECT_EQ(reply("SET_ROUTE_WAN_INFO", kNewAccount), kDone);
    Json expected = before;
    expected["PPPOE_USR_NAME"] = "mueller@fibre.example";
    expected["PPPOE_PASSWORD"] = "very hidden";
    expected["QOSENABLE"] = "1";
    expected["VLANID"] = "9";
    expected["VLANPRIORITY"] = "3";
    EXPECT_EQ(query("Internet"), expected);
    EXPECT_EQ(text("GET_HG_PPPOE_INFO", "Account"), "mueller@fibre.example");
}

TEST_F(Wan, IsRefusedWhenItIsInvalid)
{
    const Json before = query("Internet");
    const AgentResult refused =
        run("SET_ROUTE_WAN_INFO", R"({"WANName":"Internet","SERVICELIST":"INTERNET",)"
                                  R"("ADDRESSTYPE":"PPPoE","VLANID":"5000"})");
    EXPECT_EQ(refused.exit_status, 1);
    EXPECT_EQ(refused.output, "{\"Status\":\"1\",\"FailReason\":\"SET_ROUTE_WAN_INFO_FAIL\"}\n");
    EXPECT_EQ(query("Internet"), before);
    EXPECT_EQ(run("QUERY_WAN_INFO", R"({"WANName":"Attic"})").exit_status, 1);
}

TEST_F(Wan, ShowsItsPasswordOnlyOnRequest)
{
    const std::vector<std::string> options = {"--state", state_,    "--log-level",
                                              "7",       "--trace", "-"};
    const AgentResult masked = call("SET_ROUTE_WAN_INFO", kNewAccount, options);
    EXPECT_EQ(masked.exit_status, 0);
    EXPECT_THAT(masked.error,
                AllOf(HasSubstr("<7> libtsiotAgtd: PPPOE_PASSWORD= *** \n"),
                      HasSubstr("PPPOE_USR_NAME= mueller@fibre.example \n"),
                      HasSubstr("devapi_set_route_wan_info"), Not(HasSubstr("very hidden"))));
    const AgentResult queried = call("QUERY_WAN_INFO", R"({"WANName":"Internet"})", options);
    EXPECT_THAT(queried.output, HasSubstr("very hidden"));
    EXPECT_THAT(queried.error,
                AllOf(HasSubstr("devapi_query_wan_info"), Not(HasSubstr("very hidden"))));

    std::vector<std::string> showing = options;
    showing.emplace_back("--show-secrets");
    EXPECT_THAT(call("SET_ROUTE_WAN_INFO", kNewAccount, showing).error,
                AllOf(HasSubstr("<7> libtsiotAgtd: PPPOE_PASSWORD= very hidden \n"),
                      HasSubstr("PPPOE_PASSWORD=\"very hidden\"")));
}

} // namespace wan_test
