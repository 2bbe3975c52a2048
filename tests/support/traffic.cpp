// SPDX-License-Identifier: MIT
#include "traffic.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace {

// Tests run in parallel: one write to a file opened for appending keeps the lines apart.
void append(const char *file, const std::string &line)
{
    const int descriptor = open(file, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (descriptor < 0 ||
        write(descriptor, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        perror(file);
        abort();
    }
    close(descriptor);
}

const char *traffic_file()
{
    return getenv("PROTOCOL_TRAFFIC");
}

} // namespace

void record_traffic(std::string_view command, std::string_view request_json,
                    std::string_view reply_json)
{
    if (traffic_file() == nullptr) {
        return;
    }
    std::string line = "{\"command\":\"";
    line.append(command).append("\",\"by\":\"").append(program_invocation_short_name);
    line.append("\",\"request\":").append(request_json);
    line.append(",\"reply\":").append(reply_json).append("}\n");
    append(traffic_file(), line);
}

void record_session_line(std::string_view line)
{
    if (traffic_file() != nullptr) {
        append(traffic_file(), "{\"line\":" + std::string(line) + "}\n");
    }
}
