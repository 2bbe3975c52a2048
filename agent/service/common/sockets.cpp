// SPDX-License-Identifier: MIT
#include "service/common/sockets.h"

#include <cerrno>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace agent::service {

std::string system_problem(const std::string &what)
{
    return what + ": " + std::generic_category().message(errno);
}

sockaddr_un address_of(const std::string &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof(address.sun_path)) {
        throw std::runtime_error("the path of a socket has 1 to " +
                                 std::to_string(sizeof(address.sun_path) - 1) + " bytes: " + path);
    }
    path.copy(address.sun_path, path.size());
    return address;
}

int bind_socket(const std::string &path)
{
    const sockaddr_un address = address_of(path);
    Descriptor made(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    // Set through the umask: otherwise others could connect before the mode is set.
    const mode_t before = umask(S_IRWXG | S_IRWXO | S_IXUSR);
    const int bound =
        bind(made.get(), reinterpret_cast<const sockaddr *>(&address), sizeof(address));
    const int reason = errno;
    umask(before);
    if (bound != 0) {
        errno = reason;
        throw std::runtime_error(system_problem("cannot listen at " + path));
    }
    return made.release();
}

Descriptor::~Descriptor()
{
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

int Descriptor::release()
{
    return std::exchange(descriptor_, -1);
}

} // namespace agent::service
