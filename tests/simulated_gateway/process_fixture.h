// SPDX-License-Identifier: MIT
// A gateway in a separate process, which tests kill. gateway_process.cpp describes the process.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

class GatewayProcess {
  public:
    explicit GatewayProcess(std::vector<std::string> arguments);
    ~GatewayProcess();
    GatewayProcess(const GatewayProcess &) = delete;
    GatewayProcess &operator=(const GatewayProcess &) = delete;

    // Waits for this many dots; false when it ends before.
    bool wait_for(int dots) const;
    void kill();
    // Closes its input. Result: its exit status as waitpid() reports it.
    int end();

  private:
    pid_t pid_ = 0;
    int input_ = -1;
    int output_ = -1;
};
