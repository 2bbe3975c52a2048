// SPDX-License-Identifier: MIT
#include "core/device_call.h"

#include "system/log.h"
#include "system/text.h"

#include <exception>
#include <memory>

namespace linux_gateway {
namespace {

// The gateway of the process. It is not destroyed: threads of the host may still make calls while
// the process ends.
class Holder {
  public:
    // Opens it if it is not open. Throws an Error.
    Gateway &gateway()
    {
        const std::lock_guard lock(mutex_);
        if (gateway_ == nullptr) {
            // What failed at the start, such as a bridge that was not there yet, may work by now.
            // Callers that repeat quickly get the last answer.
            const auto now = std::chrono::steady_clock::now();
            if (is_closed_ || (!failure_.empty() && now < next_attempt_)) {
                throw Error(is_closed_ ? "the gateway is closed" : failure_);
            }
            try {
                gateway_ = std::make_unique<Gateway>();
            } catch (const Error &error) {
                failure_ = error.what();
                next_attempt_ = now + std::chrono::seconds(1);
                throw;
            }
        }
        return *gateway_;
    }

    void close()
    {
        const std::lock_guard lock(mutex_);
        is_closed_ = true;
        if (gateway_ != nullptr) {
            gateway_->close();
        }
    }

  private:
    std::mutex mutex_;
    std::unique_ptr<Gateway> gateway_;
    std::string failure_;
    std::chrono::steady_clock::time_point next_attempt_;
    bool is_closed_ = false;
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

// The rules have to be in force as soon as the library is loaded: the first call may come much
// later.
__attribute__((constructor)) void open_at_load()
{
    try {
        holder().gateway();
    } catch (const std::exception &problem) {
        log_error(printable(problem.what()));
    }
}

__attribute__((destructor)) void close_at_exit()
{
    holder().close();
}

} // namespace

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
