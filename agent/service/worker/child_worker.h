// SPDX-License-Identifier: MIT
// `hgagent serve` as a child process, over a pair of pipes.
#pragma once

#include "service/common/line_stream.h"
#include "service/worker/worker.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/posix/stream_descriptor.hpp>

#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace agent::service {

class ChildWorker : public Worker, LineListener {
  public:
    // The arguments are for this executable.
    ChildWorker(boost::asio::io_context &loop, std::vector<std::string> arguments);
    ~ChildWorker() override;
    ChildWorker(const ChildWorker &) = delete;
    ChildWorker &operator=(const ChildWorker &) = delete;

    // Sets the arguments of the next start.
    void set_arguments(std::vector<std::string> arguments) { arguments_ = std::move(arguments); }

    void start(WorkerListener &listener) override;
    void send(std::string_view line) override;
    void finish() override;
    void terminate() override;
    void kill() override;

  private:
    void on_line(std::string_view line) override;
    void on_too_long() override;
    void on_input_end(bool is_gone) override;
    void on_drained() override {}
    void wait_for_end();
    void reap();

    boost::asio::io_context &loop_;
    std::vector<std::string> arguments_;
    WorkerListener *listener_ = nullptr;
    std::shared_ptr<LineStream> lines_;
    pid_t process_ = -1;
    std::optional<boost::asio::posix::stream_descriptor>
        end_; // readable once the process has ended
};

} // namespace agent::service
