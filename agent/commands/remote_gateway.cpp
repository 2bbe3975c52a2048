// SPDX-License-Identifier: MIT
#include "commands/remote_gateway.h"

#include "io/exit_status.h"
#include "protocol/json_text.h"
#include "protocol/requests.h"

#include <cerrno>
#include <poll.h>
#include <system_error>
#include <utility>

namespace agent {

namespace {

template <class Work> auto with_service(Work work)
{
    try {
        return work();
    } catch (const ServiceError &problem) {
        throw HostError(kCannotLoad, problem.what());
    }
}

std::string refusal_in(const ServiceAnswer &answer)
{
    return "the service refuses: " + answer.error +
           (answer.code.empty() ? "" : " (" + answer.code + ")") +
           (answer.rule.empty() ? "" : ": " + answer.rule);
}

} // namespace

RemoteGateway::RemoteGateway(const std::string &socket, ServiceClient::EventHandler on_event)
    : client_(with_service([&] { return ServiceClient(socket, std::move(on_event)); }))
{
}

RemoteGateway::Reply RemoteGateway::ask(const std::string &request)
{
    ServiceAnswer answer = with_service([&] { return client_.ask(request); });
    if (!answer.error.empty()) {
        throw HostError(kCommandFailed, refusal_in(answer));
    }
    return {answer.result, answer.reply != nullptr ? std::move(answer.reply) : new_object()};
}

RemoteGateway::Reply RemoteGateway::command(const std::string &name, const cJSON *params)
{
    return ask(command_request(name, print(params)));
}

RemoteGateway::Reply RemoteGateway::report(const std::string &name, const cJSON *params)
{
    return ask(report_request(name, print(params)));
}

int32_t RemoteGateway::notice(const std::string &plugin_name, const std::string &text)
{
    return ask("\"notice\":{\"plugin_name\":" + agent::quoted(plugin_name) +
               ",\"text\":" + agent::quoted(text) + "}")
        .result;
}

bool RemoteGateway::subscribe(const std::string &pattern)
{
    return with_service([&] { return client_.ask(subscribe_request(pattern)); }).error.empty();
}

void RemoteGateway::await_events(const std::function<bool()> &is_enough)
{
    with_service([&] {
        for (client_.work(); !is_enough(); client_.work()) {
            pollfd socket = {client_.descriptor(), client_.wanted_events(), 0};
            if (poll(&socket, 1, -1) < 0 && errno != EINTR) {
                throw ServiceError("cannot wait for the service: " +
                                   std::generic_category().message(errno));
            }
        }
    });
}

} // namespace agent
