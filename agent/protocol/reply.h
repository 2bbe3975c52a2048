// SPDX-License-Identifier: MIT
// Output of the reply of one command or report builder.
#pragma once

#include "io/exit_status.h"
#include "io/streams.h"

#include <cjson/cJSON.h>

namespace agent {

// The exit status according to the reply's last "Status": the request may contain a "Status"
// itself, which precedes the reply's.
ExitStatus status_of(const cJSON *reply);

// Writes the reply, indented on a terminal. With signals, gives up when one arrives while the
// output blocks. Result: the exit status according to the reply or the lack of a reader. Throws
// StreamError.
ExitStatus write_reply(const cJSON *reply, bool raw_bytes, ReplyOutput &output,
                       const StopSignals *stop = nullptr);

} // namespace agent
