// SPDX-License-Identifier: MIT
#include "service/ways_in/http/announce.h"

#include "io/error_output.h"
#include "io/text.h"
#include "service/common/sockets.h"

#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace agent::service {

namespace {

void write_private_file(const std::string &path, const std::string &text)
{
    unlink(path.c_str()); // of a service that was killed
    const Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                               S_IRUSR | S_IWUSR));
    if (file.get() < 0 ||
        write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        throw std::runtime_error(system_problem("cannot write " + path));
    }
}

} // namespace

Announcement::Announcement(const HttpServer &server, const std::string &file)
{
    if (!server.has_console()) {
        print_error(
            "no console is installed, only HTTP for programs: it is built if there is Node.js");
    }
    if (server.has_token() && isatty(STDERR_FILENO) == 1) {
        write_error_line("listening on " + server.address_with_token());
        return;
    }
    if (server.has_token()) {
        write_private_file(file, server.address_with_token() + "\n");
        file_ = file;
        write_error_line("the address with the token is in " + file);
    }
    write_error_line("listening on " + server.address());
}

Announcement::~Announcement()
{
    if (!file_.empty()) {
        unlink(file_.c_str());
    }
}

} // namespace agent::service
