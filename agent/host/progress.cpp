// SPDX-License-Identifier: MIT
#include "host/progress.h"

#include "io/error_output.h"
#include "io/text.h"
#include "protocol/log_sink.h"
#include "simulated_gateway/simulated_gateway.h"

#include <algorithm>
#include <exception>
#include <unistd.h>
#include <utility>

namespace agent {

namespace {

constexpr int32_t kWhole = 100;
constexpr size_t kBarWidth = 40;
constexpr size_t kMaxTask = 30;

std::string bar_of(const std::string &task, int32_t percent)
{
    const size_t done = kBarWidth * static_cast<size_t>(percent) / kWhole;
    return one_line(task, kMaxTask) + " [" + std::string(done, '#') +
           std::string(kBarWidth - done, '.') + "] " + std::to_string(percent) + " %";
}

void show_bar(const std::string &task, int32_t percent)
{
    const std::string bar = bar_of(task, percent);
    const bool done = percent == kWhole;
    set_status_line(done ? "" : bar);
    if (done) {
        write_error_line(bar);
    }
}

} // namespace

Progress::Progress(const PluginHost &host, Report report)
    : report_(std::move(report)), set_(reinterpret_cast<decltype(&simulated_gateway_on_progress)>(
                                      host.device_symbol("simulated_gateway_on_progress")))
{
    if (set_ != nullptr) {
        set_(receive, this);
    }
}

Progress::~Progress()
{
    if (set_ != nullptr) {
        set_(nullptr, nullptr);
    }
}

void Progress::receive(const char *task, int32_t percent, void *progress)
{
    try {
        static_cast<Progress *>(progress)->report_(task != nullptr ? task : "",
                                                   std::clamp(percent, 0, kWhole));
    } catch (const std::exception &problem) { // exceptions must not reach the C callers
        log_line(kLogError, "progress is lost: %s", problem.what());
    }
}

ProgressBar::ProgressBar(const PluginHost &host)
{
    if (isatty(STDERR_FILENO) != 0) {
        progress_.emplace(host, show_bar);
    }
}

ProgressBar::~ProgressBar()
{
    if (progress_) {
        progress_.reset();
        set_status_line("");
    }
}

} // namespace agent
