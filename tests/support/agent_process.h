// SPDX-License-Identifier: MIT
// Runs the reference agent as a separate process, as a user does.
#pragma once

#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

// How a process ended and what it wrote.
struct AgentResult {
    int exit_status = 0; // or the negative number of the signal that killed it
    std::string output;
    std::string error;
    long peak_kilobytes = 0; // its maximum resident set size
};

// kOneTerminal: standard error goes to the same terminal and is part of the output.
// kUnreadError: standard error is a pipe that only read_error() and wait() read.
enum class OutputTo { kPipe, kTerminal, kOneTerminal, kFullDevice, kUnreadError };

// A running agent. A failing test does not leave it behind: the destructor closes its input and
// waits until it has ended.
class AgentProcess {
  public:
    explicit AgentProcess(const std::vector<std::string> &arguments,
                          OutputTo output = OutputTo::kPipe);
    ~AgentProcess();
    AgentProcess(const AgentProcess &) = delete;
    AgentProcess &operator=(const AgentProcess &) = delete;

    // Writes to the agent's standard input; what the agent no longer reads is dropped.
    void send(std::string_view text);
    void close_input();
    // The next line of its standard output without the line end; empty at end of file.
    std::string read_line();
    void close_output();
    // Waits until its standard error contains the text this many times, or until it has ended.
    // Result: whether the text was written.
    bool await_error(std::string_view text, int times = 1) const;
    // The contents of its standard error (kUnreadError); waits until there is something.
    std::string read_error() const;
    void signal(int number);
    pid_t process() const { return process_; }

    // Closes its input and waits until it has ended.
    AgentResult finish();
    // Waits until it has ended, without reading anything.
    void await_end() const;
    // Reads the rest of its output and waits until it has ended.
    AgentResult wait();

  private:
    void start(const std::vector<std::string> &arguments, int input, int output, int error);
    bool read_more();
    bool has_ended() const;

    const bool is_serving_; // what it writes is recorded for the check of the protocol
    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
    int error_ = -1;
    std::string unread_;
};

// Runs the agent on the input to its end.
AgentResult run_agent(const std::vector<std::string> &arguments, std::string_view input = "");

// Creates a file for a test, or only its name, in a folder that is removed with the test's process.
std::string test_file(const std::string &name);
std::string test_file(const std::string &name, std::string_view content);
