// SPDX-License-Identifier: MIT
// What is behind the agent's transports in a fuzzer: the gate, and a worker that executes nothing.
#pragma once

#include "give_up.h"
#include "service/gate/gate.h"

#include <boost/asio/io_context.hpp>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

// Ends the process unless the text is a JSON object on one line.
void check_object(std::string_view text);

// A line that the worker was given.
struct Given {
    std::string line;
    bool is_valid = false; // otherwise the worker refuses it
    std::string command;   // empty: another request
};

class Backend {
  public:
    // policy: TOML; empty: for the owner only.
    explicit Backend(const std::string &policy);
    ~Backend();
    Backend(const Backend &) = delete;
    Backend &operator=(const Backend &) = delete;

    boost::asio::io_context &loop() { return loop_; }
    agent::service::Gate &gate() { return gate_; }

    // Runs the loop, and the worker, until nothing is left to do.
    void settle();
    // Whether the worker keeps its answers.
    void hold(bool holds) { holds_ = holds; }

    const std::vector<Given> &given() const { return given_; }
    // Ends the process if the worker was given a request that changes something.
    void check_only_queries() const;

  private:
    class FakeWorker;

    std::unique_ptr<agent::service::Worker> make_worker();

    boost::asio::io_context loop_;
    std::vector<Given> given_;
    FakeWorker *worker_ = nullptr; // the gate's
    agent::service::Gate gate_;
    bool holds_ = false;
};

} // namespace fuzz
