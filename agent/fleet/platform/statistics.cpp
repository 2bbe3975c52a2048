// SPDX-License-Identifier: MIT
#include "fleet/platform/statistics.h"

#include "io/text.h"

#include <cmath>
#include <cstdio>
#include <sstream>

namespace agent::fleet::platform {

namespace {

constexpr std::array<double, 4> kPercentiles = {50, 90, 99, 99.9};
constexpr std::array<double, 9> kBounds = {0.001, 0.0025, 0.005, 0.01, 0.05, 0.1, 1, 10, 60};
constexpr size_t kMostProblems = 50;
constexpr size_t kMostCodes = 50;
constexpr size_t kLongestCode = 40;

double milliseconds(Histogram::Time time)
{
    return std::chrono::duration<double, std::milli>(time).count();
}

// Three digits suffice, and the report stays small.
double rounded(double value)
{
    constexpr double kThousand = 1000;
    return std::round(value * kThousand) / kThousand;
}

void write_head(std::ostream &out, const char *name, const char *type, const char *help)
{
    out << "# HELP " << name << ' ' << help << "\n# TYPE " << name << ' ' << type << '\n';
}

nlohmann::ordered_json json_of(const Histogram &times)
{
    nlohmann::ordered_json json;
    for (const double share : kPercentiles) {
        char name[24];
        snprintf(name, sizeof(name), "p%g", share);
        json[name] = rounded(milliseconds(times.percentile(share)));
    }
    json["max"] = rounded(milliseconds(times.largest()));
    json["mean"] = times.count() > 0
                       ? rounded(milliseconds(times.sum()) / static_cast<double>(times.count()))
                       : 0;
    return json;
}

nlohmann::ordered_json json_of(const std::array<uint64_t, kEndings> &endings)
{
    nlohmann::ordered_json json;
    for (size_t at = 0; at < kEndings; ++at) {
        json[name_of(static_cast<Ending>(at))] = endings[at];
    }
    return json;
}

} // namespace

const char *name_of(Ending ending)
{
    switch (ending) {
    case Ending::kSuccess:
        return "success";
    case Ending::kFailure:
        return "failure";
    case Ending::kError:
        return "error";
    case Ending::kUnknown:
        return "unknown";
    case Ending::kInvalid:
        return "invalid";
    case Ending::kUnanswered:
        return "unanswered";
    case Ending::kDropped:
        return "not_sent";
    case Ending::kWeak:
        return "weak_gateway";
    }
    return "";
}

Statistics::Statistics() = default;

void Statistics::count(const std::string &command, Ending ending, const std::string &code,
                       Clock::duration time)
{
    CommandCounts &counts = commands_[command];
    const auto at = static_cast<size_t>(ending);
    ++counts.endings[at];
    ++endings_[at];
    if (!code.empty()) { // a gateway may send any text
        std::string name = one_line(code, kLongestCode);
        ++codes_[codes_.size() < kMostCodes || codes_.contains(name) ? std::move(name) : "others"];
    }
    ++current_.requests;
    if (ending != Ending::kSuccess && ending != Ending::kFailure) {
        ++current_.errors;
    }
    if (ending != Ending::kUnanswered && ending != Ending::kDropped && ending != Ending::kWeak) {
        const auto taken = std::chrono::duration_cast<Histogram::Time>(time);
        counts.times.add(taken);
        times_.add(taken);
        interval_times_.add(taken);
    }
}

void Statistics::add_problem(std::string_view text)
{
    if (problems_.size() < kMostProblems) {
        problems_.push_back(one_line(text));
    }
}

uint64_t Statistics::requests() const
{
    uint64_t sum = 0;
    for (const uint64_t count : endings_) {
        sum += count;
    }
    return sum;
}

void Statistics::end_interval(const std::string &phase, const Platform &platform,
                              const std::vector<ProcessWatch::Use> &uses)
{
    const auto now = Clock::now();
    const PlatformCounts &counts = platform.counts();
    Interval &interval = current_;
    interval.seconds = std::chrono::duration<double>(now - begin_).count();
    interval.length = std::chrono::duration<double>(now - interval_begin_).count();
    interval.phase = phase;
    interval.repetitions = counts.repetitions - last_counts_.repetitions;
    interval.announcements = counts.states - last_counts_.states;
    interval.up = platform.up();
    interval.open = platform.open();
    for (size_t at = 0; at < kPercentiles.size(); ++at) {
        interval.percentiles[at] = milliseconds(interval_times_.percentile(kPercentiles[at]));
    }
    interval.largest = milliseconds(interval_times_.largest());
    for (const ProcessWatch::Use &use : uses) {
        interval.processor.push_back(use.share);
        interval.memory.push_back(use.memory);
    }
    last_uses_ = uses;
    last_counts_ = counts;
    intervals_.push_back(std::exchange(current_, {}));
    interval_times_ = {};
    interval_begin_ = now;
}

std::string Statistics::table_head() const
{
    char text[256];
    snprintf(text, sizeof(text), "%7s %-9s %7s %8s %8s %8s %8s %8s %6s %7s %6s", "time", "phase",
             "req/s", "p50 ms", "p90", "p99", "p99.9", "max", "open", "errors", "up");
    std::string head = text;
    for (const ProcessWatch::Use &use : last_uses_) {
        snprintf(text, sizeof(text), " %14s", (use.name + " cpu/MB").c_str());
        head += text;
    }
    return head;
}

std::string Statistics::table_row() const
{
    if (intervals_.empty()) {
        return "";
    }
    const Interval &interval = intervals_.back();
    char text[256];
    snprintf(text, sizeof(text), "%6.0fs %-9s %7.0f %8.2f %8.2f %8.2f %8.2f %8.2f %6zu %7llu %6zu",
             interval.seconds, interval.phase.c_str(),
             static_cast<double>(interval.requests) / interval.length, interval.percentiles[0],
             interval.percentiles[1], interval.percentiles[2], interval.percentiles[3],
             interval.largest, interval.open, static_cast<unsigned long long>(interval.errors),
             interval.up);
    std::string row = text;
    for (size_t at = 0; at < interval.processor.size(); ++at) {
        constexpr double kPercent = 100;
        constexpr double kMegabyte = 1e6;
        snprintf(text, sizeof(text), "  %5.0f%% %6.0f", interval.processor[at] * kPercent,
                 interval.memory[at] / kMegabyte);
        row += text;
    }
    return row;
}

std::string Statistics::metrics(const Platform &platform) const
{
    std::ostringstream out;
    const PlatformCounts &counts = platform.counts();
    const auto single = [&](const char *name, const char *type, const char *help, auto value) {
        write_head(out, name, type, help);
        out << name << ' ' << value << '\n';
    };
    single("hgdrive_gateways", "gauge", "Gateways that are driven.", platform.gateways().size());
    single("hgdrive_gateways_up", "gauge", "Gateways that are connected to the broker.",
           platform.up());
    single("hgdrive_gateways_restarted", "gauge", "Gateways that have restarted at least once.",
           platform.restarted());
    single("hgdrive_open_requests", "gauge", "Requests without an answer.", platform.open());
    single("hgdrive_repetitions_total", "counter", "Requests that were sent again.",
           counts.repetitions);
    single("hgdrive_late_answers_total", "counter", "Answers that came twice or too late.",
           counts.late);
    single("hgdrive_interruptions_total", "counter", "Connections to the broker that were lost.",
           counts.interruptions);
    write_head(out, "hgdrive_requests_total", "counter",
               "Requests, by command and how they ended.");
    for (const auto &[command, one] : commands_) {
        for (size_t at = 0; at < kEndings; ++at) {
            if (one.endings[at] > 0) {
                out << "hgdrive_requests_total{command=\"" << command << "\",ending=\""
                    << name_of(static_cast<Ending>(at)) << "\"} " << one.endings[at] << '\n';
            }
        }
    }
    constexpr char kSeconds[] = "hgdrive_request_duration_seconds";
    write_head(out, kSeconds, "histogram",
               "Time from when a request should be sent to its answer, by command.");
    for (const auto &[command, one] : commands_) {
        const std::string label = "command=\"" + command + "\"";
        for (const double bound : kBounds) {
            constexpr double kMicro = 1e6;
            out << kSeconds << "_bucket{" << label << ",le=\"" << bound << "\"} "
                << one.times.count_up_to(Histogram::Time(std::llround(bound * kMicro))) << '\n';
        }
        out << kSeconds << "_bucket{" << label << ",le=\"+Inf\"} " << one.times.count() << '\n'
            << kSeconds << "_sum{" << label << "} "
            << std::chrono::duration<double>(one.times.sum()).count() << '\n'
            << kSeconds << "_count{" << label << "} " << one.times.count() << '\n';
    }
    write_head(out, "hgdrive_process_cpu_seconds_total", "counter",
               "Processor time of a watched process and its children.");
    for (const ProcessWatch::Use &use : last_uses_) {
        out << "hgdrive_process_cpu_seconds_total{process=\"" << use.name << "\"} " << use.processor
            << '\n';
    }
    write_head(out, "hgdrive_process_memory_bytes", "gauge",
               "Memory of a watched process and its children, shared memory divided.");
    for (const ProcessWatch::Use &use : last_uses_) {
        out << "hgdrive_process_memory_bytes{process=\"" << use.name << "\"} " << use.memory
            << '\n';
    }
    return out.str();
}

nlohmann::ordered_json Statistics::to_json() const
{
    nlohmann::ordered_json json;
    json["requests"] = requests();
    json["endings"] = json_of(endings_);
    json["codes"] = codes_;
    json["milliseconds"] = json_of(times_);
    for (const auto &[command, one] : commands_) {
        json["commands"][command] = {{"endings", json_of(one.endings)},
                                     {"milliseconds", json_of(one.times)}};
    }
    json["processes"] = nlohmann::ordered_json::array();
    for (const ProcessWatch::Use &use : last_uses_) {
        json["processes"].push_back({{"name", use.name},
                                     {"processes", use.processes},
                                     {"cpu_seconds", rounded(use.processor)},
                                     {"memory_bytes", use.memory}});
    }
    json["problems"] = problems_;
    // In columns, as they are drawn.
    nlohmann::ordered_json curves;
    const auto column = [&](const char *name, auto value) {
        auto &values = curves[name] = nlohmann::ordered_json::array();
        for (const Interval &interval : intervals_) {
            values.push_back(value(interval));
        }
    };
    column("seconds", [](const Interval &one) { return rounded(one.seconds); });
    column("phase", [](const Interval &one) { return one.phase; });
    column("requests_per_second", [](const Interval &one) {
        return rounded(static_cast<double>(one.requests) / one.length);
    });
    column("errors_per_second", [](const Interval &one) {
        return rounded(static_cast<double>(one.errors) / one.length);
    });
    column("repetitions_per_second", [](const Interval &one) {
        return rounded(static_cast<double>(one.repetitions) / one.length);
    });
    column("announcements_per_second", [](const Interval &one) {
        return rounded(static_cast<double>(one.announcements) / one.length);
    });
    column("up", [](const Interval &one) { return one.up; });
    column("open", [](const Interval &one) { return one.open; });
    for (size_t at = 0; at < kPercentiles.size(); ++at) {
        char name[24];
        snprintf(name, sizeof(name), "p%g", kPercentiles[at]);
        // Without an answer there is no percentile, and the curve has a gap.
        column(name, [at](const Interval &one) {
            return one.largest > 0 ? nlohmann::ordered_json(rounded(one.percentiles[at]))
                                   : nlohmann::ordered_json();
        });
    }
    column("max", [](const Interval &one) {
        return one.largest > 0 ? nlohmann::ordered_json(rounded(one.largest))
                               : nlohmann::ordered_json();
    });
    for (size_t at = 0; at < last_uses_.size(); ++at) {
        column(("cpu_" + last_uses_[at].name).c_str(),
               [at](const Interval &one) { return rounded(one.processor.at(at)); });
        column(("memory_" + last_uses_[at].name).c_str(),
               [at](const Interval &one) { return one.memory.at(at); });
    }
    json["intervals"] = curves;
    return json;
}

} // namespace agent::fleet::platform
