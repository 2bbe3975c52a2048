// SPDX-License-Identifier: MIT
// The reply of one command or builder on its way out.
#pragma once

#include "io/exit_status.h"
#include "io/streams.h"

#include <cjson/cJSON.h>

namespace agent {

// What the reply's last "Status" makes of the exit status: a request may bring one of its own,
// which comes first.
ExitStatus status_of(const cJSON *reply);

// Writes the reply, indented on a terminal. With signals, gives up when one arrives while nobody
// reads. Result: what the reply, or the lack of a reader, makes of the exit status. Throws
// StreamError.
ExitStatus write_reply(const cJSON *reply, bool raw_bytes, ReplyOutput &output,
                       const StopSignals *stop = nullptr);

} // namespace agent
