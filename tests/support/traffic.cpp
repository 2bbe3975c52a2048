#include "traffic.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>

void record_traffic(std::string_view command, std::string_view request_json,
                    std::string_view reply_json)
{
    const char *file = getenv("PROTOCOL_TRAFFIC");
    if (file == nullptr) {
        return;
    }
    std::string line = "{\"command\":\"";
    line.append(command).append("\",\"by\":\"").append(program_invocation_short_name);
    line.append("\",\"request\":").append(request_json);
    line.append(",\"reply\":").append(reply_json).append("}\n");

    // Tests run side by side: one write to a file opened for appending keeps the lines apart.
    const int descriptor = open(file, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (descriptor < 0 ||
        write(descriptor, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        perror(file);
        abort();
    }
    close(descriptor);
}
