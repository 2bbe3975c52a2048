// SPDX-License-Identifier: MIT
#include "client/service_client.h"

#include "protocol/json_text.h"
#include "protocol/requests.h"

#include <cerrno>
#include <poll.h>
#include <system_error>
#include <utility>

namespace agent {

namespace {

std::string members_of_request(const char *kind, std::string_view name, std::string_view params)
{
    return "\"" + std::string(kind) + "\":" + quoted(name) + ",\"params\":" + std::string(params);
}

ServiceAnswer answer_from(cJSON *line)
{
    ServiceAnswer answer;
    const cJSON *result = cJSON_GetObjectItemCaseSensitive(line, "result");
    answer.result = result != nullptr ? result->valueint : 0;
    answer.reply.reset(cJSON_DetachItemFromObjectCaseSensitive(line, "reply"));
    answer.error = string_at(line, "error");
    answer.code = string_at(line, "code");
    answer.rule = string_at(line, "rule");
    if (answer.error.empty() && cJSON_IsNumber(result) == 0) {
        answer.error = "the answer has neither a result nor an error";
    }
    return answer;
}

} // namespace

ServiceAnswer read_answer(std::string_view text)
{
    return answer_from(parse_object(text).get());
}

std::string command_request(std::string_view name, std::string_view params)
{
    return members_of_request("command", name, params);
}

std::string report_request(std::string_view name, std::string_view params)
{
    return members_of_request("report", name, params);
}

std::string hello_request()
{
    return R"("hello":{})";
}

std::string subscribe_request(std::string_view pattern)
{
    return "\"subscribe\":" + quoted(pattern);
}

std::string unsubscribe_request(std::string_view pattern)
{
    return "\"unsubscribe\":" + quoted(pattern);
}

ServiceClient::ServiceClient(const std::string &path, EventHandler on_event)
    : socket_(path), on_event_(std::move(on_event))
{
}

void ServiceClient::begin(const std::string &request)
{
    answer_.reset();
    socket_.send("{\"id\":" + std::to_string(++last_id_) + "," + request + "}");
}

void ServiceClient::work()
{
    socket_.work();
    std::string line;
    while (socket_.next(line)) {
        take(line);
    }
}

void ServiceClient::take(const std::string &line)
{
    Json object;
    try {
        object = parse_object(line);
    } catch (const BadRequest &problem) {
        throw ServiceError("the peer is not a service: " + std::string(problem.what()));
    }
    const cJSON *id = cJSON_GetObjectItemCaseSensitive(object.get(), "id");
    const std::string event = string_at(object.get(), "event");
    if (id == nullptr && !event.empty() && on_event_) {
        on_event_(event, cJSON_GetObjectItemCaseSensitive(object.get(), "data"));
    }
    // An answer with a null id: the service could not read the request or rejected it unread.
    if (cJSON_IsNull(id) != 0 ||
        (cJSON_IsNumber(id) != 0 && id->valuedouble == static_cast<double>(last_id_))) {
        answer_ = answer_from(object.get());
    }
}

std::optional<ServiceAnswer> ServiceClient::take_answer()
{
    return std::exchange(answer_, std::nullopt);
}

ServiceAnswer ServiceClient::ask(const std::string &request)
{
    begin(request);
    for (;;) {
        work();
        if (std::optional<ServiceAnswer> answer = take_answer()) {
            return std::move(*answer);
        }
        pollfd socket = {descriptor(), wanted_events(), 0};
        if (poll(&socket, 1, -1) < 0 && errno != EINTR) {
            throw ServiceError("cannot wait for the service: " +
                               std::generic_category().message(errno));
        }
    }
}

} // namespace agent
