// SPDX-License-Identifier: MIT
// What a worker within the process reports to its listener, from any thread, on the event loop.
#pragma once

#include "service/worker/worker.h"

#include <boost/asio/io_context.hpp>

#include <initializer_list>
#include <memory>
#include <mutex>
#include <string_view>

namespace agent::service {

// Outlives the worker while a thread of it runs on; hence shared.
class WorkerOutput : public std::enable_shared_from_this<WorkerOutput> {
  public:
    WorkerOutput(boost::asio::io_context &loop, WorkerListener &listener);

    // A line in pieces, with its line end. Result: false after leave().
    bool write(std::initializer_list<std::string_view> pieces);

    void end(const WorkerEnd &end);

    // Nothing is passed on after this. On the event loop's thread.
    void leave();

  private:
    template <class Report> bool post(Report report);

    std::mutex mutex_;
    boost::asio::io_context *loop_; // null after leave()
    bool has_left_ = false;         // the same, for the event loop alone
    WorkerListener &listener_;
};

} // namespace agent::service
