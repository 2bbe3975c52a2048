// SPDX-License-Identifier: MIT
// A folder that exists for one test.
#pragma once

#include <string>

class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    // The path of a file in it.
    std::string path(const std::string &name) const;
    std::string write(const std::string &name, const std::string &text) const;
    // The text of a file; empty if there is none.
    std::string read(const std::string &name) const;

  private:
    std::string folder_;
};
