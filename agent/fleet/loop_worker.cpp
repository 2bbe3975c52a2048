// SPDX-License-Identifier: MIT
#include "fleet/loop_worker.h"

#include "host/workers.h"
#include "protocol/protocol.h"
#include "simulated_gateway/simulated_gateway.h"

#include <boost/asio/post.hpp>

#include <utility>

namespace agent::fleet {

namespace {

constexpr std::chrono::seconds kMargin(10); // beyond the time that a command may take

std::string_view command_in(std::string_view line)
{
    constexpr std::string_view mark = "\"command\":\"";
    const size_t at = line.find(mark);
    if (at == std::string_view::npos) {
        return {};
    }
    const std::string_view rest = line.substr(at + mark.size());
    return rest.substr(0, rest.find('"'));
}

} // namespace

LoopWorker::LoopWorker(boost::asio::io_context &loop, Options options, bool was_off, Slot &slot)
    : loop_(loop), options_(std::move(options)), was_off_(was_off), slot_(slot), look_(loop)
{
}

LoopWorker::~LoopWorker()
{
    if (output_ != nullptr) {
        output_->leave();
    }
}

void LoopWorker::start(service::WorkerListener &listener)
{
    listener_ = &listener;
    try {
        host_.emplace(options_.host);
    } catch (const HostError &problem) {
        throw service::WorkerError(problem.what());
    }
    if (was_off_) {
        reinterpret_cast<decltype(&simulated_gateway_power_cycle)>(
            host_->device_symbol("simulated_gateway_power_cycle"))();
    }
    output_ = std::make_shared<service::WorkerOutput>(loop_, listener);
    session_.emplace(options_, *host_,
                     [output = output_](std::initializer_list<std::string_view> pieces) {
                         return output->write(pieces);
                     });
}

void LoopWorker::send(std::string_view line)
{
    const std::string_view command = command_in(line);
    slot_.command.set(command);
    slot_.busy_until =
        steady_milliseconds() +
        std::chrono::duration_cast<std::chrono::milliseconds>(seconds_of(command) + kMargin)
            .count();
    session_->answer(line);
    slot_.busy_until = 0;
    ++slot_.requests;
    look_later();
}

void LoopWorker::look_later()
{
    const auto pause = session_->next_poll();
    if (!pause) {
        return;
    }
    look_.expires_after(*pause);
    look_.async_wait([this](const boost::system::error_code &problem) {
        if (!problem && session_) {
            session_->poll();
            look_later();
        }
    });
}

void LoopWorker::finish()
{
    reinterpret_cast<decltype(&simulated_gateway_end_transfers)>(
        host_->device_symbol("simulated_gateway_end_transfers"))();
    await_workers(*host_);
    end(kSuccess);
}

void LoopWorker::end(int status)
{
    boost::asio::post(loop_, [this, status] {
        look_.cancel();
        output_->leave();
        session_.reset();
        host_.reset();
        service::WorkerEnd how;
        how.text = "has ended";
        how.exit_status = status;
        listener_->on_worker_end(how);
    });
}

} // namespace agent::fleet
