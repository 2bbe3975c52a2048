// SPDX-License-Identifier: MIT
// The traffic of the tests, kept for the check against the protocol's description.
#pragma once

#include <string_view>

// Appends a line that the agent wrote, a JSON text.
void record_session_line(std::string_view line);

// Appends a command with its request and its reply, each as JSON text, and the name of this
// program to the file that the environment variable PROTOCOL_TRAFFIC names; does nothing when it
// is not set.
void record_traffic(std::string_view command, std::string_view request_json,
                    std::string_view reply_json);
