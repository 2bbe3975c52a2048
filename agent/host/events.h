// SPDX-License-Identifier: MIT
// What the gateway does by itself: updates that end, reboots, workers that outlive their command.
// protocol/events describes each event.
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

// Listens for as long as it lives; there may be one at a time. It belongs to the thread that runs
// the commands: no other may try the locks of the plug-in's workers, since a command that tries one
// at that moment would be refused.
class Events {
  public:
    // Gets a name and its data, a JSON object. Called on any thread.
    using Tell = std::function<void(const char *event, const std::string &data)>;

    // Without tell, only reboots are kept in mind.
    Events(const PluginHost &host, Tell tell);
    ~Events();
    Events(const Events &) = delete;
    Events &operator=(const Events &) = delete;

    // Tells of workers that have started or ended since the last time, and of a reboot that is
    // over.
    void look();
    // When to look again: while something is under way that ends without a command.
    std::optional<std::chrono::milliseconds> next_look() const;

    bool is_rebooting();

  private:
    static void receive_update(const char *version, const char *reason, void *events);
    static void receive_reboot(int32_t seconds, void *events);
    void begin_reboot(int32_t seconds);
    void tell(const char *event, const std::string &data) const;

    const Tell tell_;
    WorkerWatch workers_;
    void (*on_update_)(void (*)(const char *, const char *, void *), void *) = nullptr;
    void (*on_reboot_)(void (*)(int32_t, void *), void *);
    mutable std::mutex mutex_; // guards what follows
    std::optional<std::chrono::steady_clock::time_point> reboot_end_;
};

} // namespace agent
