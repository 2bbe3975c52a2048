// SPDX-License-Identifier: MIT
// The receiver of the notices to the app that the plug-in raises.
#pragma once

#include "protocol/json.h"

#include <cstdint>
#include <functional>

namespace agent {

// Receives what is passed to kaa_device_notice() during its lifetime; only one instance may exist
// at a time.
class NoticeReceiver {
  public:
    // Receives a notice: the JSON in its text, or the text itself. Called on the thread that raises
    // it, by one thread at a time. Result: whether the notice has been passed on.
    using PassOn = std::function<bool(Json notice)>;

    // With a refusal other than 0, every notice gets that result and is not passed on.
    NoticeReceiver(int32_t refusal, PassOn pass_on);
    ~NoticeReceiver();
    NoticeReceiver(const NoticeReceiver &) = delete;
    NoticeReceiver &operator=(const NoticeReceiver &) = delete;

    int32_t receive(const char *text) const;

  private:
    int32_t refusal_;
    PassOn pass_on_;
};

// Implements kaa_device_notice(). Result: 0 when a receiver has passed the notice on.
int32_t receive_notice(const char *text);

} // namespace agent
