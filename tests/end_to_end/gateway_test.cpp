// SPDX-License-Identifier: MIT
#include "gateway_test.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <cstdlib>

static std::string name_of_test()
{
    const testing::TestInfo &test = *testing::UnitTest::GetInstance()->current_test_info();
    return std::string(test.test_suite_name()) + "." + test.name();
}

GatewayTest::GatewayTest() : state_(test_file(name_of_test() + ".json"))
{
    set_time(kStart);
}

GatewayTest::~GatewayTest()
{
    unsetenv("SIMULATED_GATEWAY_TIME");
}

void GatewayTest::set_time(int64_t time)
{
    setenv("SIMULATED_GATEWAY_TIME", std::to_string(time).c_str(), 1);
}

AgentResult GatewayTest::run(const std::string &command, const std::string &request) const
{
    return call(command, request, {"--state", state_});
}

std::string GatewayTest::reply(const std::string &command, const std::string &request) const
{
    return run(command, request).output;
}

std::string GatewayTest::text(const std::string &command, const std::string &key) const
{
    return nlohmann::json::parse(reply(command))[key];
}

void GatewayTest::expect_kept(const std::string &setting, const std::string &request,
                              const std::string &query, const std::string &keys) const
{
    EXPECT_EQ(reply(setting, request), kDone) << request;
    EXPECT_THAT(reply(query),
                testing::AllOf(testing::HasSubstr(R"("Status":"0")"), testing::HasSubstr(keys)))
        << setting;
}
