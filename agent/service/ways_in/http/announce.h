// SPDX-License-Identifier: MIT
// Where the console's address, which contains the token, is shown: at a terminal, otherwise in a
// file that only the user can read, since standard error may go to a log.
#pragma once

#include "service/ways_in/http/server.h"

#include <string>

namespace agent::service {

class Announcement {
  public:
    // Throws std::runtime_error.
    Announcement(const HttpServer &server, const std::string &file);
    // Removes the file.
    ~Announcement();
    Announcement(const Announcement &) = delete;
    Announcement &operator=(const Announcement &) = delete;

  private:
    std::string file_; // empty: none
};

} // namespace agent::service
