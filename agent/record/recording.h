// SPDX-License-Identifier: MIT
// The recording as a seam between the plug-in and its host.
#pragma once

#include "host/plugin_seam.h"
#include "record/recorded_services.h"
#include "record/recorder.h"

#include <optional>

namespace agent::record {

class RecordedCalls : public DeviceStage {
  public:
    RecordedCalls(Recorder &recorder, DeviceStage &next) : recorder_(recorder), next_(next) {}
    void run(DeviceCall &call) override;

  private:
    Recorder &recorder_;
    DeviceStage &next_;
};

class Recording : public PluginSeam {
  public:
    // Throws std::runtime_error.
    explicit Recording(const RecordOptions &options) : recorder_(options) {}

    DeviceStage &stage(DeviceStage &next) override { return calls_.emplace(recorder_, next); }
    PluginServices &services(PluginServices &next) override
    {
        return services_.emplace(recorder_, next);
    }
    void begin_command(std::string_view command, const cJSON *request) override;
    void begin_function(const char *function, Texts arguments) override;
    void end(const cJSON *reply, int32_t result) override;

    void finish() { recorder_.finish(); }
    void flush_after_crash() { recorder_.flush_after_crash(); }

  private:
    Recorder recorder_;
    std::optional<RecordedCalls> calls_;
    std::optional<RecordedServices> services_;
};

// The recording for the options; null without --record. One recording serves all plug-ins that the
// process loads. Throws HostError.
PluginSeam *find_recording(const HostOptions &options, const std::string &plugin,
                           const std::string &device);

} // namespace agent::record
