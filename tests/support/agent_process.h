// Runs the reference agent as a process of its own, as a user does.
#pragma once

#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

// How a process ended and what it wrote.
struct AgentResult {
    int exit_status = 0; // or minus the number of the signal that killed it
    std::string output;
    std::string error;
    long peak_kilobytes = 0; // the most memory that it had in use
};

// kOneTerminal: standard error goes to the same terminal, and comes out with the output.
// kUnreadError: standard error is a pipe that only read_error() and wait() read.
enum class OutputTo { kPipe, kTerminal, kOneTerminal, kFullDevice, kUnreadError };

// An agent that is running. A test that fails half-way does not leave it behind: its input ends
// with this object, and its end is awaited.
class AgentProcess {
  public:
    explicit AgentProcess(const std::vector<std::string> &arguments,
                          OutputTo output = OutputTo::kPipe);
    ~AgentProcess();
    AgentProcess(const AgentProcess &) = delete;
    AgentProcess &operator=(const AgentProcess &) = delete;

    // Writes to the agent's standard input; what it does not read any more is dropped.
    void send(std::string_view text);
    void close_input();
    // The next line of its standard output without its end; an empty text at the end of output.
    std::string read_line();
    void close_output();
    // Waits until the text stands on its standard error, or until it has ended. Result: whether the
    // text is there.
    bool await_error(std::string_view text) const;
    // What stands on its standard error now, of kUnreadError; waits until there is something.
    std::string read_error() const;
    void signal(int number);
    pid_t process() const { return process_; }

    // Ends its input, and waits.
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

// Makes a file for a test, or only its name, in a folder that goes with the test's process.
std::string test_file(const std::string &name);
std::string test_file(const std::string &name, std::string_view content);
