// SPDX-License-Identifier: MIT
// Helpers for sockets and descriptors.
#pragma once

#include <string>
#include <sys/un.h>

namespace agent::service {

constexpr std::string_view kUnixPrefix = "unix:";

// "cannot do this: No such file or directory", by errno.
std::string system_problem(const std::string &what);

// Throws std::runtime_error where the path is too long or empty.
sockaddr_un address_of(const std::string &path);

// A new socket bound to the path; only the user may connect. Throws std::runtime_error.
int bind_socket(const std::string &path);

// A guard that closes its descriptor.
class Descriptor {
  public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor();
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int get() const { return descriptor_; }
    int release();

  private:
    int descriptor_;
};

} // namespace agent::service
