// SPDX-License-Identifier: MIT
// The files of the console, in memory: a request can name only what was read at the start.
#pragma once

#include "service/ways_in/http/request_reader.h"
#include "service/ways_in/http/response.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace agent::service {

// A text with its type, its gzip variant if that is smaller, and its ETag.
struct StaticFile {
    std::string type;
    std::shared_ptr<const std::string> plain;
    std::shared_ptr<const std::string> gzip; // null: none
    std::string tag;
    std::string caching = "no-cache";

    static StaticFile make(std::string type, std::string text);
    HttpResponse response(const HttpRequest &request) const;
};

class StaticFiles {
  public:
    // Reads the folder's files. Without a console the only file is a page that says so.
    // Throws std::runtime_error.
    void load(const std::string &folder);

    bool has_console() const { return has_console_; }
    // Null when there is no such file.
    const StaticFile *find(std::string_view path) const;

  private:
    std::map<std::string, StaticFile, std::less<>> files_; // by path, which begins with "/"
    bool has_console_ = false;
};

// Where the console is installed or built; empty if it is not.
std::string default_console_folder();

} // namespace agent::service
