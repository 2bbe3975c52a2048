// SPDX-License-Identifier: MIT
#include "protocol/reply.h"

#include "io/error_output.h"
#include "io/text.h"
#include "protocol/json_text.h"

#include <cstring>

namespace agent {

ExitStatus status_of(const cJSON *reply)
{
    ExitStatus status = kSuccess;
    const cJSON *item = nullptr;
    cJSON_ArrayForEach(item, reply)
    {
        if (strcmp(item->string, "Status") == 0) {
            const bool success = cJSON_IsString(item) != 0 && strcmp(item->valuestring, "0") == 0;
            status = success ? kSuccess : kCommandFailed;
        }
    }
    return status;
}

ExitStatus write_reply(const cJSON *reply, bool raw_bytes, ReplyOutput &output,
                       const StopSignals *stop)
{
    const WithoutStatusLine status; // both may be on the same terminal
    const bool terminal = output.is_terminal();
    const std::string text = print(reply, {.indented = terminal, .raw_bytes = raw_bytes});
    if (!output.write_line(terminal && !raw_bytes ? json_for_terminal(text) : text, stop)) {
        print_error("nobody reads the reply");
        return kCannotWrite;
    }
    return status_of(reply);
}

} // namespace agent
