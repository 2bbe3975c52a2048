// The reply of one command or builder on its way out.
#pragma once

#include "exit_status.h"
#include "streams.h"

#include <cjson/cJSON.h>

namespace agent {

// Writes the reply, indented on a terminal. With signals, gives up when one arrives while nobody
// reads. Result: what the reply, or the lack of a reader, makes of the exit status. Throws
// StreamError.
ExitStatus write_reply(const cJSON *reply, bool raw_bytes, ReplyOutput &output,
                       const StopSignals *stop = nullptr);

} // namespace agent
