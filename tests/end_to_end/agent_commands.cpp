// SPDX-License-Identifier: MIT
#include "agent_commands.h"

#include "traffic.h"

#include <cjson/cJSON.h>

#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>

namespace {

using JsonItem = std::unique_ptr<cJSON, decltype(&cJSON_Delete)>;

JsonItem parse(const std::string &text)
{
    return {cJSON_Parse(text.c_str()), cJSON_Delete};
}

std::string print(const cJSON *item)
{
    const std::unique_ptr<char, decltype(&cJSON_free)> text(cJSON_PrintUnformatted(item),
                                                            cJSON_free);
    return text.get();
}

void record_call(const std::string &command, const std::string &request, const AgentResult &result)
{
    if (result.exit_status == 0 || result.exit_status == 1) {
        record(command, request, result.output);
    }
}

void record_line(const std::string &line, const std::string &answer)
{
    const JsonItem answered = parse(answer);
    const cJSON *reply = cJSON_GetObjectItem(answered.get(), "reply");
    const cJSON *result = cJSON_GetObjectItem(answered.get(), "result");
    if (reply == nullptr || cJSON_GetNumberValue(result) != 0) {
        return;
    }
    const JsonItem asked = parse(line);
    const cJSON *params = cJSON_GetObjectItem(asked.get(), "params");
    const cJSON *command = cJSON_GetObjectItem(asked.get(), "command");
    if (command != nullptr) { // otherwise it is a report or a hello
        record_traffic(cJSON_GetStringValue(command), params != nullptr ? print(params) : "{}",
                       print(reply));
    }
}

} // namespace

AgentResult call(const std::string &command, const std::string &request,
                 const std::vector<std::string> &options)
{
    std::vector<std::string> words = options;
    words.insert(words.end(), {"call", command, request});
    AgentResult result = run_agent(words);
    record_call(command, request, result);
    return result;
}

AgentResult call_with_input(const std::string &command, const std::string &request)
{
    AgentResult result = run_agent({"call", command, "-"}, request);
    record_call(command, request, result);
    return result;
}

std::string ask(AgentProcess &serving, const std::string &line)
{
    serving.send(line + "\n");
    std::string answer = serving.read_line();
    record_line(line, answer);
    return answer;
}

AgentResult serve(const std::string &input, const std::vector<std::string> &options,
                  const std::vector<std::string> &serve_options)
{
    std::vector<std::string> words = options;
    words.emplace_back("serve");
    words.insert(words.end(), serve_options.begin(), serve_options.end());
    AgentResult result = run_agent(words, input);

    const std::vector<std::string> asked = lines_of(input);
    std::vector<std::string> answered = lines_of(result.output);
    std::erase_if(answered, [](const std::string &line) { return !line.starts_with("{\"id\":"); });
    for (size_t at = 0; at < std::min(asked.size(), answered.size()); ++at) {
        record_line(asked[at], answered[at]);
    }
    return result;
}

std::string error_of(const std::vector<std::string> &words, int status)
{
    const AgentResult result = run_agent(words);
    EXPECT_EQ(result.exit_status, status) << testing::PrintToString(words);
    EXPECT_EQ(result.output, "") << testing::PrintToString(words);
    return result.error;
}

void record(const std::string &command, const std::string &request, const std::string &reply)
{
    // One record is one line, regardless of the layout of the texts.
    record_traffic(command, print(parse(request).get()), print(parse(reply).get()));
}

std::vector<std::string> lines_of(const std::string &text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string content_of(const std::string &file)
{
    std::ostringstream content;
    content << std::ifstream(file, std::ios::binary).rdbuf();
    return content.str();
}
