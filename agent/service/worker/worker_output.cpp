// SPDX-License-Identifier: MIT
#include "service/worker/worker_output.h"

#include <boost/asio/post.hpp>

#include <string>
#include <utility>

namespace agent::service {

WorkerOutput::WorkerOutput(boost::asio::io_context &loop, WorkerListener &listener)
    : loop_(&loop), listener_(listener)
{
}

template <class Report> bool WorkerOutput::post(Report report)
{
    const std::lock_guard lock(mutex_);
    if (loop_ == nullptr) {
        return false;
    }
    boost::asio::post(*loop_, [self = shared_from_this(), report = std::move(report)] {
        if (!self->has_left_) {
            report(self->listener_);
        }
    });
    return true;
}

bool WorkerOutput::write(std::initializer_list<std::string_view> pieces)
{
    size_t size = 0;
    for (const std::string_view piece : pieces) {
        size += piece.size();
    }
    std::string line;
    line.reserve(size);
    for (const std::string_view piece : pieces) {
        line += piece;
    }
    line.pop_back(); // the line end
    return post(
        [line = std::move(line)](WorkerListener &listener) { listener.on_worker_line(line); });
}

void WorkerOutput::end(const WorkerEnd &end)
{
    post([end](WorkerListener &listener) { listener.on_worker_end(end); });
}

void WorkerOutput::leave()
{
    has_left_ = true;
    const std::lock_guard lock(mutex_);
    loop_ = nullptr;
}

} // namespace agent::service
