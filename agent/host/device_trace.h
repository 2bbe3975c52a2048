// SPDX-License-Identifier: MIT
// The trace: one line for every device call, in the order in which the calls ended.
#pragma once

#include "host/device_layer.h"
#include "line_output.h"

#include <mutex>
#include <string>

namespace agent {

class DeviceTrace : public DeviceStage {
  public:
    // Appends to the file; "-" is standard error. Throws HostError.
    DeviceTrace(DeviceStage &next, const std::string &file, bool show_secrets);
    ~DeviceTrace() override;

    void run(DeviceCall &call) override;

    // Writes the pending output while its reader takes it. Lines may still follow.
    void finish();

  private:
    void write(const std::string &line);

    DeviceStage &next_;
    const bool show_secrets_;
    int file_ = -1;    // -1 for standard error
    std::mutex mutex_; // guards the members below
    line_output::LineOutput output_{"trace", -1};
};

} // namespace agent
