#include "traffic.h"

#include <cjson/cJSON.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string>
#include <system_error>
#include <unistd.h>

namespace
{

std::string quoted(std::string_view text)
{
    const std::unique_ptr<cJSON, decltype(&cJSON_Delete)> item(
        cJSON_CreateString(std::string(text).c_str()), cJSON_Delete);
    const std::unique_ptr<char, decltype(&cJSON_free)> printed(cJSON_PrintUnformatted(item.get()),
                                                               cJSON_free);
    return printed.get();
}

// A line end can stand only between the tokens of a JSON text, where a blank means the same.
std::string on_one_line(std::string_view json)
{
    std::string line(json);
    std::replace_if(
        line.begin(), line.end(), [](char byte) { return byte == '\n' || byte == '\r'; }, ' ');
    return line;
}

[[noreturn]] void fail(const char *path)
{
    throw std::system_error(errno, std::generic_category(), path);
}

} // namespace

void record_traffic(std::string_view command, std::string_view request_json,
                    std::string_view reply_json)
{
    const char *path = std::getenv("PROTOCOL_TRAFFIC");
    if (path == nullptr) {
        return;
    }
    const std::string line = "{\"command\": " + quoted(command) +
                             ", \"request\": " + on_one_line(request_json) +
                             ", \"reply\": " + on_one_line(reply_json) + "}\n";

    const int file = open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    if (file < 0) {
        fail(path);
    }
    // One write: appending is atomic only within a call, and others append at the same time.
    const ssize_t written = write(file, line.data(), line.size());
    if (written != static_cast<ssize_t>(line.size())) {
        errno = written < 0 ? errno : ENOSPC;
        fail(path);
    }
    close(file);
}
