// SPDX-License-Identifier: MIT
// The commands as protocol/ describes them, one description for each (protocol/command.schema.json
// defines their contents).
#pragma once

#include "protocol/description.h"

#include <chrono>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

// Version of the commands and of the lines of serve. The first number changes when something that a
// client may rely on is removed, the second when something is added.
constexpr char kProtocolVersion[] = "1.0";

// All descriptions, by the commands' names.
const std::vector<Description> &descriptions();

// Null when there is no such command.
const Description *find_description(std::string_view command);

// The time limit of the command; for a command without a description, the usual limit.
std::chrono::seconds seconds_of(std::string_view command);

// Whether the command may change the router. Commands without a description are assumed to.
bool may_change(std::string_view command);

// All descriptions of events, by the events' names (protocol/event.schema.json).
const std::vector<Description> &events();

// Null when there is no such event.
const Description *find_event(std::string_view event);

// The most similar names, the nearest first, at most three.
std::vector<std::string> nearest_commands(std::string_view name);

// "no command \"NAME\"; the nearest are …", for people.
std::string no_such_command(std::string_view name);

// The keys, in lower case, that any description marks as secret.
const std::set<std::string> &secret_keys();

} // namespace agent
