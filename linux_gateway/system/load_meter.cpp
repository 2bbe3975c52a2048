// SPDX-License-Identifier: MIT
#include "system/load_meter.h"

#include "system/files.h"
#include "system/text.h"

#include <algorithm>
#include <thread>
#include <utility>
#include <vector>

namespace linux_gateway {

constexpr size_t kMostProcBytes = 1 << 20;

Rates Load::rates_of(const std::string &interface) const
{
    const auto found = rates.find(interface);
    return found != rates.end() ? found->second : Rates();
}

LoadCounters load_counters(std::string_view processors, std::string_view interfaces)
{
    LoadCounters counters;
    // "cpu", user, nice, system, idle, waiting, interrupts, soft interrupts, stolen; user and nice
    // contain the guests that follow.
    const std::vector<std::string_view> words = words_of(split(processors, '\n').front());
    constexpr size_t idle = 4;
    constexpr size_t waiting = 5;
    constexpr size_t last = 8;
    for (size_t i = 1; i < words.size() && i <= last; ++i) {
        const uint64_t ticks = number_in<uint64_t>(words[i]).value_or(0);
        counters.all_ticks += ticks;
        counters.busy_ticks += i == idle || i == waiting ? 0 : ticks;
    }
    for (const std::string_view line : split(interfaces, '\n')) {
        const size_t colon = line.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const std::vector<std::string_view> columns = words_of(line.substr(colon + 1));
        constexpr size_t sent_bytes = 8;
        if (columns.size() > sent_bytes) {
            counters.interfaces[std::string(trimmed(line.substr(0, colon)))] = {
                number_in<uint64_t>(columns[0]).value_or(0),
                number_in<uint64_t>(columns[sent_bytes]).value_or(0)};
        }
    }
    return counters;
}

int64_t memory_percent(std::string_view memory)
{
    int64_t total = 0;
    int64_t available = 0;
    for (const std::string_view line : split(memory, '\n')) {
        const std::vector<std::string_view> words = words_of(line);
        if (words.size() > 1 && words[0] == "MemTotal:") {
            total = number_in<int64_t>(words[1]).value_or(0);
        } else if (words.size() > 1 && words[0] == "MemAvailable:") {
            available = number_in<int64_t>(words[1]).value_or(0);
        }
    }
    if (total <= 0) {
        return 0;
    }
    const int64_t used = total - std::clamp<int64_t>(available, 0, total);
    return std::min<int64_t>(used / std::max<int64_t>(total / 100, 1), 100);
}

static int64_t kbps_between(uint64_t before, uint64_t after, std::chrono::milliseconds time)
{
    // Bits per millisecond are kbit/s.
    return after > before
               ? static_cast<int64_t>((after - before) * 8 / static_cast<uint64_t>(time.count()))
               : 0;
}

Load load_between(const LoadCounters &before, const LoadCounters &after,
                  std::chrono::milliseconds time)
{
    Load load;
    time = std::max(time, std::chrono::milliseconds(1));
    if (after.all_ticks > before.all_ticks && after.busy_ticks > before.busy_ticks) {
        load.cpu_percent = static_cast<int64_t>((after.busy_ticks - before.busy_ticks) * 100 /
                                                (after.all_ticks - before.all_ticks));
    }
    for (const auto &[name, counters] : after.interfaces) {
        const auto earlier = before.interfaces.find(name);
        if (earlier != before.interfaces.end()) {
            load.rates[name] = {
                kbps_between(earlier->second.received_bytes, counters.received_bytes, time),
                kbps_between(earlier->second.sent_bytes, counters.sent_bytes, time)};
        }
    }
    return load;
}

LoadMeter::LoadMeter()
{
    read();
}

void LoadMeter::read()
{
    counters_ =
        load_counters(read_file_if_there("/proc/stat", kMostProcBytes).value_or(""),
                      read_file_if_there("/proc/self/net/dev", kMostProcBytes).value_or(""));
    read_time_ = Clock::now();
}

std::shared_ptr<const Load> LoadMeter::load()
{
    constexpr std::chrono::seconds shortest{1};
    constexpr std::chrono::seconds longest{10};
    constexpr std::chrono::milliseconds measurement{200};
    const std::lock_guard lock(mutex_);
    const auto passed = Clock::now() - read_time_;
    if (load_ != nullptr && passed < shortest) {
        return load_;
    }
    if (passed > longest) {
        read(); // the average of hours is not what is asked for
    }
    if (Clock::now() - read_time_ < measurement) {
        std::this_thread::sleep_for(measurement);
    }
    const LoadCounters before = counters_;
    const Clock::time_point start = read_time_;
    read();
    auto load = std::make_shared<Load>(
        load_between(before, counters_,
                     std::chrono::duration_cast<std::chrono::milliseconds>(read_time_ - start)));
    load->memory_percent =
        memory_percent(read_file_if_there("/proc/meminfo", kMostProcBytes).value_or(""));
    load_ = std::move(load);
    return load_;
}

} // namespace linux_gateway
