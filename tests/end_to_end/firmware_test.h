// SPDX-License-Identifier: MIT
// Tests in which the simulated gateway fetches firmware from a web server.
#pragma once

#include "gateway_test.h"
#include "http_server.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

constexpr char kOldVersion[] = "V2.4.1";
constexpr char kNewVersion[] = "V9.1.4";

class FirmwareTest : public GatewayTest {
  protected:
    FirmwareTest();

    // The address of a file; words before its name make the server misbehave.
    std::string address(const std::string &path) const { return server_.address(path); }
    // Serves the image under another name as well, unchanged or with one byte changed.
    void serve_image_as(const std::string &name) const;
    void serve_broken_image(const std::string &name) const;

    // Expects every command that reports the running firmware to report this version.
    void expect_version(const std::string &version) const;

    const std::string folder_;
    const std::string image_; // the file
    const HttpServer server_;
};

// An agent that serves, and reports progress between its answers.
class ServingAgent {
  public:
    explicit ServingAgent(const std::vector<std::string> &options);

    // Runs a command. Result: its reply.
    std::string ask(const std::string &command, const std::string &request = "{}");
    // Reads until this much progress has been reported.
    void await_progress(int percent);
    // All progress reported so far.
    const std::vector<int> &progress() const { return progress_; }

    AgentProcess &process() { return process_; }

  private:
    // The next line, unless it reports progress.
    nlohmann::ordered_json read();

    AgentProcess process_;
    std::vector<int> progress_;
};
