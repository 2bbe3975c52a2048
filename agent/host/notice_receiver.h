// SPDX-License-Identifier: MIT
// Who receives the notices to the app that the plug-in raises.
#pragma once

#include "protocol/json.h"

#include <cstdint>
#include <functional>

namespace agent {

// Takes what is handed to kaa_device_notice() for as long as it lives; there may be one at a time.
class NoticeReceiver {
  public:
    // Gets what a notice is: the JSON that its text holds, or the text. Called on the thread that
    // raises it, by one at a time. Result: whether the notice has been passed on.
    using PassOn = std::function<bool(Json notice)>;

    // A refusal other than 0 is what every notice is answered with, without being passed on.
    NoticeReceiver(int32_t refusal, PassOn pass_on);
    ~NoticeReceiver();
    NoticeReceiver(const NoticeReceiver &) = delete;
    NoticeReceiver &operator=(const NoticeReceiver &) = delete;

    int32_t receive(const char *text) const;

  private:
    int32_t refusal_;
    PassOn pass_on_;
};

// What kaa_device_notice() does. Result: 0 when a receiver has passed the notice on.
int32_t receive_notice(const char *text);

} // namespace agent
