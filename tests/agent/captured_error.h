// SPDX-License-Identifier: MIT
// Captures what a part of the agent writes to standard error.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

// Guard: redirects standard error to a file.
class CapturedError {
  public:
    CapturedError() : file_(memfd_create("log", 0)), before_(dup(STDERR_FILENO))
    {
        dup2(file_, STDERR_FILENO);
    }
    ~CapturedError()
    {
        dup2(before_, STDERR_FILENO);
        close(before_);
        close(file_);
    }
    CapturedError(const CapturedError &) = delete;
    CapturedError &operator=(const CapturedError &) = delete;

    std::string text() const
    {
        std::string content(static_cast<size_t>(lseek(file_, 0, SEEK_END)), '\0');
        const ssize_t count = pread(file_, content.data(), content.size(), 0);
        EXPECT_EQ(count, static_cast<ssize_t>(content.size()));
        return content;
    }
    std::vector<std::string> lines() const
    {
        std::vector<std::string> lines;
        std::istringstream stream(text());
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(line);
        }
        return lines;
    }

  private:
    int file_;
    int before_;
};
