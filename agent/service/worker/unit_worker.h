// SPDX-License-Identifier: MIT
// A worker that is a separate systemd unit, behind a Unix socket: it alone may have capabilities.
// It ends when the connection does, and its service manager starts the next one.
#pragma once

#include "service/common/line_stream.h"
#include "service/worker/worker.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>

#include <memory>
#include <string>
#include <sys/un.h>

namespace agent::service {

class UnitWorker : public Worker, LineListener {
  public:
    UnitWorker(boost::asio::io_context &loop, const std::string &path);
    ~UnitWorker() override;

    void start(WorkerListener &listener) override;
    void send(std::string_view line) override;
    void finish() override;
    void terminate() override { end("was disconnected"); }
    void kill() override { end("was disconnected"); }

  private:
    void on_line(std::string_view line) override;
    void on_too_long() override;
    void on_input_end(bool is_gone) override;
    void on_drained() override {}
    void connect();
    void end(const std::string &how);

    boost::asio::io_context &loop_;
    const sockaddr_un address_;
    WorkerListener *listener_ = nullptr;
    std::shared_ptr<LineStream> lines_;
    std::string unsent_; // until connected
    bool is_ending_ = false;
    int attempts_ = 0; // to connect
    boost::asio::steady_timer retry_;
};

} // namespace agent::service
