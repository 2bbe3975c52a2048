// SPDX-License-Identifier: MIT
// The plug-in in this process, on a separate thread. It is faster than a process, but the service
// is not isolated from it: it cannot be killed, and a crash in it crashes the service.
#pragma once

#include "commands/options.h"
#include "service/worker/worker.h"

#include <boost/asio/io_context.hpp>

#include <memory>
#include <string>

namespace agent::service {

class InProcessWorker : public Worker {
  public:
    // The options are those of `serve`.
    InProcessWorker(boost::asio::io_context &loop, Options options);
    ~InProcessWorker() override;

    void start(WorkerListener &listener) override;
    void send(std::string_view line) override;
    void finish() override;
    void terminate() override {}
    void kill() override;
    bool can_be_killed() const override { return false; }

  private:
    class Shared;

    boost::asio::io_context &loop_;
    const Options options_;
    std::shared_ptr<Shared> shared_; // shared with the thread, which may outlive this object
};

} // namespace agent::service
