// SPDX-License-Identifier: MIT
// Every example in the description of the protocol is valid for a new simulated gateway, whose
// clock is stopped so that uptime and rates are those of the examples.
#include "agent_commands.h"
#include "embedded/protocol_commands.h"
#include "standing_clock.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <set>

using Json = nlohmann::ordered_json;

namespace embedded {

// How GoogleTest prints an example that failed.
static void PrintTo(const Text &file, std::ostream *out)
{
    *out << file.file_name;
}

} // namespace embedded

namespace examples_test {

class Examples : public testing::TestWithParam<embedded::Text> {
    const StandingClock clock_;
};

std::string command_of(const testing::TestParamInfo<embedded::Text> &file)
{
    return std::filesystem::path(file.param.file_name).stem();
}

TEST_P(Examples, AreWhatTheCommandsReply)
{
    const Json description = Json::parse(GetParam().text);
    const Json &example = description["example"];
    const AgentResult result = call(description["command"], example["request"].dump());
    EXPECT_EQ(result.output, example["reply"].dump() + "\n");
    EXPECT_EQ(result.exit_status, example["reply"].value("Status", "0") == "0" ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(All, Examples, testing::ValuesIn(embedded::protocol_commands()),
                         command_of);

std::string last_of(const std::string &path)
{
    return path.substr(path.rfind('/') + 1);
}

// The texts in an example that its description marks as secret.
std::set<std::string> secrets_in(const Json &description)
{
    std::set<std::string> keys;
    const Json flat = description.flatten();
    for (const auto &[path, value] : flat.items()) {
        if (last_of(path) == "secret" && value == true) {
            keys.insert(flat[path.substr(0, path.rfind('/')) + "/key"]);
        }
    }
    std::set<std::string> texts;
    const Json example = description["example"].flatten();
    for (const auto &[path, value] : example.items()) {
        if (keys.count(last_of(path)) != 0 && value.is_string() &&
            value != "NULL") { // which means that there is none
            texts.insert(value);
        }
    }
    return texts;
}

std::vector<embedded::Text> with_secrets()
{
    std::vector<embedded::Text> files;
    for (const embedded::Text &file : embedded::protocol_commands()) {
        // Each test is a process of its own and makes this list: most files need not be parsed.
        if (file.text.find("\"secret\"") != std::string_view::npos &&
            !secrets_in(Json::parse(file.text)).empty()) {
            files.push_back(file);
        }
    }
    return files;
}

class SecretExamples : public Examples {};

TEST_P(SecretExamples, AreNotLogged)
{
    const Json description = Json::parse(GetParam().text);
    const AgentResult result = call(description["command"],
                                    description["example"]["request"].dump(), {"--log-level", "7"});
    for (const std::string &secret : secrets_in(description)) {
        EXPECT_THAT(result.error, testing::Not(testing::HasSubstr(secret)));
    }
}

INSTANTIATE_TEST_SUITE_P(All, SecretExamples, testing::ValuesIn(with_secrets()), command_of);

} // namespace examples_test
