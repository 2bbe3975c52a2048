// SPDX-License-Identifier: MIT
#include "host/crash_report.h"
#include "host/plugin_host.h"
#include "record/recording.h"

#include <memory>
#include <stdexcept>

namespace agent::record {

namespace {

// It is not deleted: a crash while the process exits would still use it.
Recording *of_process = nullptr;

// Destroyed when the process exits, which it only does without threads of the plug-in.
class AtExit {
  public:
    AtExit() = default;
    ~AtExit() { of_process->finish(); }
    AtExit(const AtExit &) = delete;
    AtExit &operator=(const AtExit &) = delete;
};

void flush_at_crash()
{
    of_process->flush_after_crash();
}

RecordOptions record_options(const HostOptions &options, const std::string &plugin,
                             const std::string &device)
{
    RecordOptions record;
    record.file = *options.record;
    record.limit = static_cast<uint64_t>(options.record_limit);
    record.show_secrets = options.show_secrets;
    record.mask_key = options.mask_key;
    record.program = "hgagent " HGAGENT_VERSION;
    record.plugin = plugin;
    record.device = device;
    return record;
}

} // namespace

PluginSeam *find_recording(const HostOptions &options, const std::string &plugin,
                           const std::string &device)
{
    if (options.record && of_process == nullptr) {
        try {
            of_process =
                std::make_unique<Recording>(record_options(options, plugin, device)).release();
        } catch (const std::runtime_error &problem) {
            throw HostError(kCannotLoad, problem.what());
        }
        static const AtExit at_exit;
        at_crash(flush_at_crash);
    }
    return of_process;
}

} // namespace agent::record
