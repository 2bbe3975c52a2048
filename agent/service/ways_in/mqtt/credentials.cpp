// SPDX-License-Identifier: MIT
#include "service/ways_in/mqtt/credentials.h"

#include "io/text.h"
#include "service/common/sockets.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace agent::service {

namespace {

constexpr size_t kMaxFile = 4096;

// The bits of the mode that let others read or change the file. systemd gives a service its
// credentials by an access list, which shows as the right of the group.
mode_t rights_of_others(const std::string &path)
{
    const char *folder = getenv("CREDENTIALS_DIRECTORY"); // NOLINT(concurrency-mt-unsafe): alone
    const bool is_of_systemd = folder != nullptr && path.starts_with(std::string(folder) + "/");
    return S_IROTH | S_IWOTH | S_IWGRP | (is_of_systemd ? 0 : S_IRGRP);
}

std::string take_line(std::string_view &text)
{
    const size_t end = std::min(text.find('\n'), text.size());
    std::string line(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    return line;
}

} // namespace

Credentials read_credentials(const std::string &path)
{
    // Without blocking, because a pipe would stop the service.
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (file.get() < 0 || fstat(file.get(), &status) != 0) {
        throw std::runtime_error(system_problem("cannot read " + path));
    }
    if (!S_ISREG(status.st_mode)) {
        throw std::runtime_error(path + " is not a regular file");
    }
    if ((status.st_mode & rights_of_others(path)) != 0) {
        throw std::runtime_error(path + " has a password in it, and others may read it: chmod 600");
    }
    std::array<char, kMaxFile + 1> buffer = {};
    const ssize_t size = read(file.get(), buffer.data(), buffer.size());
    if (size < 0) {
        throw std::runtime_error(system_problem("cannot read " + path));
    }
    std::string_view text(buffer.data(), static_cast<size_t>(size));
    if (text.size() > kMaxFile || text.find('\0') != std::string_view::npos ||
        !is_valid_utf8(text)) {
        throw std::runtime_error(path + " is not a user and a password, each on a line");
    }
    Credentials credentials;
    credentials.user = take_line(text);
    credentials.password = take_line(text);
    if (credentials.user.empty() || !text.empty()) {
        throw std::runtime_error(path + " is not a user and a password, each on a line");
    }
    return credentials;
}

} // namespace agent::service
