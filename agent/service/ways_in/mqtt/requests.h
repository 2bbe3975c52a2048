// SPDX-License-Identifier: MIT
// Turns messages into requests, and the lines of answers and events into payloads.
#pragma once

#include "service/common/request.h"
#include "service/ways_in/mqtt/topics.h"

#include <string>
#include <string_view>

namespace agent::service {

// The request of a message to a topic of the gateway. An invalid payload gives a request that
// contains the error, as with read_request().
Request request_of(const Topics::Target &target, std::string_view payload);

// The answer to a command or a report, without the id: {"result":0,"reply":{...}}.
std::string answer_payload(std::string_view line);

// The parts of an event's line. Empty if it is none.
struct EventParts {
    std::string_view name;
    std::string_view data; // JSON text
};
EventParts parts_of_event(std::string_view line);

} // namespace agent::service
