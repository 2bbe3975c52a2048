// SPDX-License-Identifier: MIT
// A device whose queries are answered from a recording, with what was recorded last.
#pragma once

#include "host/device_layer.h"
#include "protocol/json.h"

#include <map>
#include <mutex>
#include <string>

namespace agent::record {

class RecordedDevice : public DeviceStage {
  public:
    explicit RecordedDevice(const std::string &file); // throws BadRecording

    // A query that was not recorded and everything that changes the device are refused, with a
    // message on standard error.
    void run(DeviceCall &call) override;

  private:
    std::mutex mutex_;                    // guards the trees
    std::map<std::string, Json> answers_; // the recorded call, by function and input
};

} // namespace agent::record
