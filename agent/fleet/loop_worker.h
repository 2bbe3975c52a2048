// SPDX-License-Identifier: MIT
// The plug-in on the thread of the event loop: the least memory, and nothing is passed between
// threads. A command that takes long holds up everything else of the gateway, and only that.
#pragma once

#include "commands/options.h"
#include "commands/serve.h"
#include "fleet/slot.h"
#include "service/worker/worker.h"
#include "service/worker/worker_output.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <memory>
#include <optional>
#include <string>

namespace agent::fleet {

class LoopWorker : public service::Worker {
  public:
    // The options are those of `serve`. With was_off, the gateway has been without power.
    LoopWorker(boost::asio::io_context &loop, Options options, bool was_off, Slot &slot);
    ~LoopWorker() override;

    void start(service::WorkerListener &listener) override;
    void send(std::string_view line) override;
    void finish() override;
    void terminate() override {}
    void kill() override { end(kCannotLoad); }
    bool can_be_killed() const override { return false; }

  private:
    void end(int status);
    void look_later();

    boost::asio::io_context &loop_;
    const Options options_;
    const bool was_off_;
    Slot &slot_;
    service::WorkerListener *listener_ = nullptr;
    std::shared_ptr<service::WorkerOutput> output_; // also of threads of the plug-in
    std::optional<PluginHost> host_;
    std::optional<ServeSession> session_;
    boost::asio::steady_timer look_;
};

} // namespace agent::fleet
