// SPDX-License-Identifier: MIT
// Commands to the real plug-in through the agent. Requests and replies are recorded for the check
// of the protocol.
#pragma once

#include "agent_process.h"

#include <string>
#include <vector>

// Runs "hgagent [options] call COMMAND REQUEST".
AgentResult call(const std::string &command, const std::string &request = "{}",
                 const std::vector<std::string> &options = {});

// The same with the request on standard input.
AgentResult call_with_input(const std::string &command, const std::string &request);

// Sends a line to a serving agent and reads its answer.
std::string ask(AgentProcess &serving, const std::string &line);

// Runs "hgagent [options] serve [serve options]" on an input.
AgentResult serve(const std::string &input, const std::vector<std::string> &options = {},
                  const std::vector<std::string> &serve_options = {});

// Runs the agent, which has to end with this status and without output. Result: its error.
std::string error_of(const std::vector<std::string> &words, int status);

// Records a command that was run in another way.
void record(const std::string &command, const std::string &request, const std::string &reply);

std::vector<std::string> lines_of(const std::string &text);
std::string content_of(const std::string &file);
