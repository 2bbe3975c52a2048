// SPDX-License-Identifier: MIT
// hgagent call: one command from the command line.
#pragma once

#include "commands/options.h"
#include "io/streams.h"
#include "protocol/json.h"

#include <cjson/cJSON.h>

#include <cstdint>

namespace agent {

// Runs the command, prints its reply, and waits until all work that it started has ended. Result:
// the exit status.
int run_call(const Options &options);

// The request's parameters. Null when they are not a JSON object: the error has been printed.
Json request_of(const CallOptions &call);

// Prints the reply to options.call. Result: the exit status that it implies.
int show_reply(const Options &options, int32_t result, const cJSON *reply, ReplyOutput &output,
               const StopSignals *stop = nullptr);

} // namespace agent
