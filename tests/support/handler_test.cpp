// SPDX-License-Identifier: MIT
#include "handler_test.h"

#include "traffic.h"

Json parse(const std::string &text)
{
    Json json(cJSON_ParseWithLength(text.data(), text.size()));
    EXPECT_NE(json, nullptr) << "no JSON: " << text.substr(0, 200);
    return json;
}

std::string print(const cJSON *json)
{
    if (json == nullptr) {
        return "null";
    }
    const std::unique_ptr<char, decltype(&cJSON_free)> text(cJSON_PrintUnformatted(json),
                                                            cJSON_free);
    return text.get();
}

std::string run(const std::string &command, const std::string &request)
{
    const Json object = parse(request);
    const std::string sent = print(object.get());
    EXPECT_EQ(hg_process_json_cmd(command.c_str(), object.get()), 0) << command;
    std::string reply = print(object.get());
    record_traffic(command, sent, reply);
    return reply;
}

std::string text_of_length(size_t length)
{
    std::string text;
    while (text.size() < length) {
        text += static_cast<char>('a' + text.size() % 26);
    }
    return text;
}
