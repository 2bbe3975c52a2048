// SPDX-License-Identifier: MIT
// Tests of what is put into the kernel run in a network namespace of their process, which ends with
// it. They are skipped where the process may not make one.
#pragma once

#include "system/mac.h"

#include <gtest/gtest.h>
#include <string>

namespace linux_gateway {

class NetworkNamespaceTest : public testing::Test {
  protected:
    static constexpr char kBridge[] = "lan0";

    // Enters the namespace before the members of tests are made, whose sockets belong to it.
    NetworkNamespaceTest();
    void SetUp() override; // with a bridge, without rules

    // Runs a command of the shell that has to succeed, and returns its output.
    static std::string run(const std::string &command);
    static bool has_tables();
    // What is listed of both tables; empty without them.
    static std::string tables();

    static Mac host(uint16_t number);

    // What the library has logged in this test.
    static std::string log();
};

} // namespace linux_gateway
