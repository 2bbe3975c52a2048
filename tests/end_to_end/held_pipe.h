// SPDX-License-Identifier: MIT
// What holds the worker of tests/support/service_plugin.c.
#pragma once

#include "agent_process.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

// A named pipe for which a worker waits until the test opens it.
class HeldPipe {
  public:
    HeldPipe() : path_(test_file("pipe"))
    {
        std::filesystem::remove(path_);
        EXPECT_EQ(mkfifo(path_.c_str(), 0600), 0);
    }
    ~HeldPipe() { close(writer_); }
    HeldPipe(const HeldPipe &) = delete;
    HeldPipe &operator=(const HeldPipe &) = delete;

    const std::string &path() const { return path_; }
    // The pipe stays open: the worker may not have got as far as opening it.
    void release() { writer_ = open(path_.c_str(), O_RDWR | O_CLOEXEC); }

  private:
    const std::string path_;
    int writer_ = -1;
};
