// SPDX-License-Identifier: MIT
// Captures what a part of the agent writes to standard output.
#pragma once

#include "io/streams.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <optional>
#include <sstream>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

// Guard: redirects standard output, and the agent's output with it, to a file.
class CapturedOutput {
  public:
    CapturedOutput() : before_(dup(STDOUT_FILENO)), file_(memfd_create("output", 0))
    {
        fflush(stdout);
        dup2(file_, STDOUT_FILENO);
        output_.emplace();
    }
    ~CapturedOutput()
    {
        dup2(before_, STDOUT_FILENO);
        close(before_);
        close(file_);
    }
    CapturedOutput(const CapturedOutput &) = delete;
    CapturedOutput &operator=(const CapturedOutput &) = delete;

    agent::ReplyOutput &output() { return *output_; }
    std::vector<std::string> lines() const
    {
        std::string content(static_cast<size_t>(lseek(file_, 0, SEEK_END)), '\0');
        EXPECT_EQ(pread(file_, content.data(), content.size(), 0),
                  static_cast<ssize_t>(content.size()));
        std::vector<std::string> lines;
        std::istringstream stream(content);
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(line);
        }
        return lines;
    }

  private:
    int before_;
    int file_;
    std::optional<agent::ReplyOutput> output_;
};
