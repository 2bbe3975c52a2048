// SPDX-License-Identifier: MIT
#include "fleet/platform/process_watch.h"

#include <chrono>
#include <csignal>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace agent::fleet::platform {

namespace {

using WatchClock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kPause(500); // at least, between two readings
constexpr std::chrono::seconds kMemoryPause(10); // the same for memory
constexpr int kReadingShare = 20;                // of the time at most one part is spent on reading

std::string file_text(int process, const char *file)
{
    std::ifstream stream("/proc/" + std::to_string(process) + "/" + file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

// The process and its children.
std::vector<int> family_of(int process)
{
    std::vector<int> all = {process};
    std::istringstream children(
        file_text(process, ("task/" + std::to_string(process) + "/children").c_str()));
    for (int child = 0; children >> child;) {
        all.push_back(child);
    }
    return all;
}

// Processor time of a process and of the children that it has waited for.
double processor_of(int process)
{
    static const auto ticks = static_cast<double>(sysconf(_SC_CLK_TCK));
    const std::string stat = file_text(process, "stat");
    const size_t end = stat.rfind(')'); // of the program's name, which may be anything
    if (end == std::string::npos) {
        return 0;
    }
    std::istringstream fields(stat.substr(end + 1));
    std::string skipped;
    constexpr int kFieldsBefore = 11; // from the state to the page faults
    for (int field = 0; field < kFieldsBefore; ++field) {
        fields >> skipped;
    }
    double sum = 0;
    constexpr int kTimes = 4; // own and of children, each in user mode and in the kernel
    double time = 0;
    for (int field = 0; field < kTimes && fields >> time; ++field) {
        sum += time;
    }
    return sum / ticks;
}

double memory_of(int process)
{
    std::istringstream lines(file_text(process, "smaps_rollup"));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("Pss:")) {
            constexpr double kKilobyte = 1024;
            return std::stod(line.substr(4)) * kKilobyte;
        }
    }
    return 0;
}

} // namespace

ProcessWatch::ProcessWatch(std::vector<WatchedProcess> processes) : processes_(std::move(processes))
{
    for (const WatchedProcess &process : processes_) {
        uses_.push_back({process.name});
    }
    // Signals are for the thread with the event loop.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this] { run(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

ProcessWatch::~ProcessWatch()
{
    {
        const std::lock_guard lock(mutex_);
        has_ended_ = true;
    }
    ends_.notify_one();
    thread_.join();
}

std::vector<ProcessWatch::Use> ProcessWatch::uses() const
{
    const std::lock_guard lock(mutex_);
    return uses_;
}

void ProcessWatch::run()
{
    std::vector<double> first(processes_.size(), -1);
    std::vector<Use> uses = this->uses();
    auto next_memory = WatchClock::now();
    auto last_begin = next_memory - kPause;
    std::unique_lock lock(mutex_);
    while (!has_ended_) {
        lock.unlock();
        const auto begin = WatchClock::now();
        const bool with_memory = begin >= next_memory;
        for (size_t at = 0; at < processes_.size(); ++at) {
            Use &use = uses[at];
            double processor = 0;
            double memory = 0;
            const std::vector<int> family = family_of(processes_[at].process);
            for (const int process : family) {
                processor += processor_of(process);
                memory += with_memory ? memory_of(process) : 0;
            }
            use.processes = family.size();
            first[at] = first[at] < 0 ? processor : first[at];
            // A child's time is missing between its end and the parent's wait for it.
            const double before = use.processor;
            use.processor = std::max(before, processor - first[at]);
            use.share = (use.processor - before) /
                        std::chrono::duration<double>(begin - last_begin).count();
            use.memory = with_memory ? memory : use.memory;
        }
        last_begin = begin;
        const auto cost = WatchClock::now() - begin;
        if (with_memory) {
            next_memory = WatchClock::now() +
                          std::max<WatchClock::duration>(kMemoryPause, cost * kReadingShare);
        }
        lock.lock();
        uses_ = uses;
        ends_.wait_for(
            lock,
            std::max<WatchClock::duration>(kPause, with_memory ? kPause : cost * kReadingShare),
            [this] { return has_ended_; });
    }
}

} // namespace agent::fleet::platform
