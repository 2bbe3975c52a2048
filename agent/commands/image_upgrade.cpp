// SPDX-License-Identifier: MIT
#include "commands/image_upgrade.h"

#include "host/plugin_call.h"
#include "host/plugin_host.h"
#include "host/progress.h"
#include "host/workers.h"
#include "io/exit_status.h"
#include "io/streams.h"
#include "io/text.h"
#include "protocol/log_sink.h"
#include "protocol/requests.h"
#include "smart_router_service/processjsonability.h"

#include <cstring>
#include <exception>
#include <pthread.h>
#include <string>
#include <thread>

namespace agent {

namespace {

constexpr char kWork[] = "pthread_hg_image_upgrade";

// The plug-in's exports for the upgrade.
struct Upgrade {
    PluginSeam *seam;
    void *(*work)(void *);
    pthread_mutex_t *lock;
    char *url;
};

Upgrade upgrade_of(const PluginHost &host)
{
    return {host.seam(),
            reinterpret_cast<decltype(&pthread_hg_image_upgrade)>(host.required_symbol(kWork)),
            static_cast<pthread_mutex_t *>(host.required_symbol("downimagelock")),
            static_cast<char *>(host.required_symbol("g_update_url"))};
}

// Starts the thread, which releases the lock when it ends. Throws Busy.
void start(const Upgrade &upgrade, const std::string &url, std::thread &thread)
{
    if (pthread_mutex_trylock(upgrade.lock) != 0) {
        throw Busy("an image is being fetched or flashed already");
    }
    memcpy(upgrade.url, url.c_str(), url.size() + 1);
    try {
        thread = std::thread([upgrade, url] {
            const PluginCall call(upgrade.seam, kWork, {{"url", url}});
            upgrade.work(nullptr);
            call.end(nullptr, 0);
        });
    } catch (const std::exception &) {
        pthread_mutex_unlock(upgrade.lock);
        throw Busy("cannot start a thread for the upgrade");
    }
}

// Throws BadRequest.
void check_length(const std::string &url)
{
    if (url.size() >= HG_UPDATE_URL_SIZE) {
        throw BadRequest("the address is longer than " + std::to_string(HG_UPDATE_URL_SIZE - 1) +
                         " bytes");
    }
}

} // namespace

void start_image_upgrade(const PluginHost &host, const std::string &url)
{
    check_length(url);
    std::thread thread;
    start(upgrade_of(host), url, thread);
    thread.detach();
}

int run_image_upgrade(const Options &options)
{
    const std::string &url = options.update_url;
    try {
        check_length(url);
    } catch (const BadRequest &problem) {
        print_error(problem.what());
        return kWrongUsage;
    }

    const StopSignals stop;
    const PluginHost host(options.host);
    const ProgressBar bar(host);
    const Upgrade upgrade = upgrade_of(host);
    const unsigned long errors = errors_of_libraries();
    std::thread thread;
    const int ended = until_workers_end(host, stop, [&]() -> int {
        try {
            start(upgrade, url, thread);
            return kSuccess;
        } catch (const Busy &problem) {
            print_error(problem.what());
            return kCommandFailed;
        }
    });
    if (ended != kSuccess) {
        if (thread.joinable()) {
            thread.detach();
        }
        return ended;
    }
    thread.join();
    // The thread returns no result: a failure shows only in the log.
    if (errors_of_libraries() != errors) {
        print_error("the firmware was not installed");
        return kCommandFailed;
    }
    return kSuccess;
}

} // namespace agent
