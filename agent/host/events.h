// SPDX-License-Identifier: MIT
// Asynchronous events of the gateway: finished updates, reboots, workers that outlive their
// command. protocol/events describes each event.
#pragma once

#include "host/plugin_host.h"
#include "host/workers.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace agent {

// Listens during its lifetime; only one instance may exist at a time. It must be used on the thread
// that runs the commands: if another thread tried the locks of the plug-in's workers, a command
// that tries one at that moment would be refused.
class Events {
  public:
    // Receives the event's name and data, a JSON object. Called from any thread.
    using Report = std::function<void(const char *event, const std::string &data)>;

    // Without report, only reboots are tracked.
    Events(const PluginHost &host, Report report);
    ~Events();
    Events(const Events &) = delete;
    Events &operator=(const Events &) = delete;

    // Reports workers that have started or ended since the last call, and a finished reboot.
    void poll();
    // How long to wait before the next poll(), while work is running that ends without a command.
    std::optional<std::chrono::milliseconds> next_poll() const;

    bool is_rebooting();

  private:
    static void receive_update(const char *version, const char *reason, void *events);
    static void receive_reboot(int32_t seconds, void *events);
    void begin_reboot(int32_t seconds);
    void report(const char *event, const std::string &data) const;

    const Report report_;
    WorkerWatch workers_;
    void (*on_update_)(void (*)(const char *, const char *, void *), void *) = nullptr;
    void (*on_reboot_)(void (*)(int32_t, void *), void *);
    mutable std::mutex mutex_; // guards the members below
    std::optional<std::chrono::steady_clock::time_point> reboot_end_;
};

} // namespace agent
