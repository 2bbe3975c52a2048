// SPDX-License-Identifier: MIT
#include "service/worker/unit_worker.h"

#include "io/text.h"
#include "service/common/sockets.h"

#include <boost/asio/post.hpp>

#include <sys/socket.h>

namespace agent::service {

namespace {

constexpr std::chrono::milliseconds kConnectAgain(100);
constexpr int kReportedAfter = 10; // attempts: a unit that starts again needs some
constexpr size_t kMostLeft = 1024UL * 1024;

} // namespace

UnitWorker::UnitWorker(boost::asio::io_context &loop, const std::string &path)
    : loop_(loop), address_(address_of(path)), retry_(loop)
{
}

UnitWorker::~UnitWorker()
{
    if (lines_ != nullptr) {
        lines_->close();
    }
}

void UnitWorker::start(WorkerListener &listener)
{
    listener_ = &listener;
    unsent_.clear();
    is_ending_ = false;
    attempts_ = 0;
    connect();
}

// The unit may be about to start, so connecting is retried until the supervisor's time limit.
void UnitWorker::connect()
{
    Descriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    if (::connect(connection.get(), reinterpret_cast<const sockaddr *>(&address_),
                  sizeof(address_)) == 0) {
        lines_ = LineStream::make(loop_, connection.release(), -1, kMaxWorkerLine, *this);
        lines_->start();
        if (!unsent_.empty()) {
            lines_->send(unsent_);
        }
        return;
    }
    if (++attempts_ == kReportedAfter) {
        print_error(system_problem("the worker at " + std::string(address_.sun_path) +
                                   " cannot be reached"));
    }
    retry_.expires_after(kConnectAgain);
    retry_.async_wait([this](const boost::system::error_code &problem) {
        if (!problem && !is_ending_) {
            connect();
        }
    });
}

void UnitWorker::send(std::string_view line)
{
    if (lines_ != nullptr) {
        lines_->send(line);
    } else {
        unsent_ = line; // only one line is in transit at a time
    }
}

void UnitWorker::finish()
{
    if (lines_ != nullptr) {
        lines_->end_output();
    } else {
        end("was not there");
    }
}

void UnitWorker::end(const std::string &how)
{
    if (is_ending_) {
        return;
    }
    is_ending_ = true;
    retry_.cancel();
    boost::asio::post(loop_, [this, how] {
        if (lines_ != nullptr) {
            lines_->drain(kMostLeft);
            lines_->close();
            lines_.reset();
        }
        WorkerEnd end;
        end.text = how;
        listener_->on_worker_end(end);
    });
}

void UnitWorker::on_line(std::string_view line)
{
    listener_->on_worker_line(line);
}

void UnitWorker::on_too_long()
{
    listener_->on_worker_fault("writes a line of more than " + std::to_string(kMaxWorkerLine) +
                               " bytes");
}

void UnitWorker::on_input_end(bool)
{
    end("has ended");
}

} // namespace agent::service
