// SPDX-License-Identifier: MIT
#include "core/device_call.h"

#include "system/log.h"
#include "system/text.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>

namespace linux_gateway {
namespace {

// The gateway of the process. It is not destroyed: threads of the host may still make calls while
// the process ends.
class Holder {
  public:
    // Throws an Error if it is not open.
    Gateway &gateway()
    {
        const std::lock_guard lock(mutex_);
        if (gateway_ == nullptr) {
            throw Error(failure_);
        }
        return *gateway_;
    }

    // Opens it. What fails, such as a bridge that is not there yet while the machine starts, is
    // attempted again until it succeeds: the rules have to be in force even if nobody calls. For
    // the same reason it takes over from another process.
    void open()
    {
        const std::lock_guard lock(mutex_);
        if (!attempt()) {
            attempts_ = std::thread([this] { attempt_again(); });
        }
    }

    void close()
    {
        {
            const std::lock_guard lock(mutex_);
            is_closing_ = true;
        }
        closing_.notify_all();
        if (attempts_.joinable()) {
            attempts_.join();
        }
        const std::lock_guard lock(mutex_);
        if (gateway_ != nullptr) {
            gateway_->close();
        }
    }

  private:
    // Whether this process controls the gateway now.
    bool attempt()
    {
        const std::string before = failure_;
        try {
            if (gateway_ == nullptr) {
                gateway_ = std::make_unique<Gateway>();
            }
            return gateway_->take_control();
        } catch (const std::exception &problem) {
            failure_ = printable(problem.what());
        }
        if (failure_ != before) {
            log_error(failure_);
        }
        return false;
    }

    void attempt_again()
    {
        constexpr std::chrono::seconds pause{1};
        std::unique_lock lock(mutex_);
        while (!closing_.wait_for(lock, pause, [&] { return is_closing_; }) && !attempt()) {
        }
    }

    std::mutex mutex_; // guards everything below, except the thread
    std::condition_variable closing_;
    std::thread attempts_;
    std::unique_ptr<Gateway> gateway_;
    std::string failure_;
    bool is_closing_ = false;
};

Holder &holder()
{
    static auto &only = *new Holder;
    return only;
}

int32_t guarded(const char *function, std::span<char> fail_reason,
                const std::function<int32_t(Gateway &)> &body)
{
    std::string reason;
    try {
        return body(holder().gateway());
    } catch (const std::exception &problem) {
        reason = printable(problem.what());
    }
    if (!fail_reason.empty()) {
        put_text(fail_reason, reason);
    }
    log_error(std::string(function) + ": " + reason);
    return -1;
}

} // namespace

void open_gateway()
{
    holder().open();
}

void close_gateway()
{
    holder().close();
}

int32_t query(const char *function, const std::function<int32_t(const View &)> &body)
{
    return guarded(function, {}, [&](Gateway &gateway) { return body(gateway.view()); });
}

int32_t setting(const char *function, std::span<char> fail_reason,
                const std::function<void(State &, const View &)> &body)
{
    return guarded(function, fail_reason, [&](Gateway &gateway) {
        gateway.change(body);
        return 0;
    });
}

} // namespace linux_gateway
