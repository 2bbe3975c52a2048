// A gateway in a process of its own, to be killed. gateway_process.cpp says what it does.
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

    // Waits for so many of its dots; false when it ends before.
    bool wait_for(int dots) const;
    void kill();
    // Lets it go; result: its exit status as waitpid() has it.
    int end();

  private:
    pid_t pid_ = 0;
    int input_ = -1;
    int output_ = -1;
};
