// SPDX-License-Identifier: MIT
// One request to the gate, and its answer.
#pragma once

#include "service/gate/gate.h"

#include <functional>
#include <memory>
#include <string>

namespace agent::service {

// Destroying it drops the request, if it has not been started. It must not be destroyed from within
// its callback.
class GateCall final : Client {
  public:
    using Done = std::function<void(const Answer &)>;

    GateCall(Gate &gate, std::shared_ptr<const Identity> who, Done done)
        : gate_(gate), done_(std::move(done)), session_(gate.open(std::move(who), *this))
    {
    }
    ~GateCall() { gate_.close(session_); }
    GateCall(const GateCall &) = delete;
    GateCall &operator=(const GateCall &) = delete;

    void submit(Request request) { gate_.submit(*session_, std::move(request)); }

  private:
    void on_answer(const Answer &answer) override { done_(answer); }
    void on_event(std::string_view) override {}
    bool has_room() const override { return true; }
    void on_less_full() override {}

    Gate &gate_;
    const Done done_;
    Session *const session_;
};

} // namespace agent::service
