// SPDX-License-Identifier: MIT
#include "request.h"

#include "agent_calls.h"
#include "give_up.h"
#include "protocol_words.h"
#include "smart_router_service/processjsonability.h"

namespace fuzz {

std::string print(const cJSON *json)
{
    char *text = cJSON_PrintUnformatted(json);
    if (text == nullptr) {
        give_up("cJSON", "nothing printed");
    }
    std::string copy = text;
    cJSON_free(text);
    return copy;
}

Request parse_request(std::string_view input)
{
    Request request;
    const size_t end = input.find('\n');
    request.command = input.substr(0, end);
    if (end == std::string_view::npos) {
        return request;
    }
    request.rest = input.substr(end + 1);
    const char *behind = nullptr;
    request.object.reset(
        cJSON_ParseWithLengthOpts(request.rest.data(), request.rest.size(), &behind, 0));
    if (request.object != nullptr) {
        request.rest.remove_prefix(static_cast<size_t>(behind - request.rest.data()));
    }
    if (request.rest.starts_with('\n')) {
        request.rest.remove_prefix(1);
    }
    return request;
}

std::string print_request(const Request &request)
{
    std::string text = request.command + '\n';
    if (request.object != nullptr) {
        text += print(request.object.get()) + '\n';
    }
    return text.append(request.rest);
}

void run_command(const std::string &command, cJSON *object)
{
    if (call_of_the_agent(command, object)) {
        check_reply(command, object);
        return;
    }
    const bool is_known = find_command(command.c_str()) != nullptr;
    const std::string before = is_known ? "" : print(object);
    const int32_t result = hg_process_json_cmd(command.c_str(), object);
    if (result != (is_known ? 0 : HG_NO_SUCH_COMMAND)) {
        give_up(command, "taken for what it is not");
    }
    if (!is_known && print(object) != before) {
        give_up(command, "no command, and yet the object has changed");
    }
    check_reply(command, object);
}

void check_reply(const std::string &function, const cJSON *object)
{
    const std::string reply = print(object);
    if (Json(cJSON_Parse(reply.c_str())) == nullptr) {
        give_up(function, "the reply is not JSON");
    }
}

} // namespace fuzz
