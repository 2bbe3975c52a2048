// SPDX-License-Identifier: MIT
#include "service/gate/metrics.h"

#include "protocol/protocol.h"
#include "service/gate/policy_names.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace agent::service {

namespace {

// Clients choose names, so only known ones become labels.
std::string label_of(Subject subject, std::string_view name)
{
    const std::string text(name);
    switch (subject) {
    case Subject::kCommand:
        return find_description(text) != nullptr ? text : "other";
    case Subject::kReport: {
        const auto known = known_names(subject);
        return std::ranges::find(known, text) != known.end() ? "report:" + text : "other";
    }
    case Subject::kNotice:
        return "notice";
    case Subject::kControl:
        return "control";
    case Subject::kSubscription:
        return "subscription";
    }
    return "other";
}

// Whether the request has not been run.
bool is_refusal(std::string_view code)
{
    return !code.empty() && code != name_of(Code::kTimeout) &&
           !code.starts_with(name_of(Code::kOutcomeUnknown));
}

std::string result_text(std::string_view code, std::optional<int32_t> result)
{
    if (!code.empty()) {
        return std::string(code);
    }
    return result == 0 ? "success" : "failure";
}

size_t resident_bytes()
{
    size_t pages = 0;
    size_t resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return resident * static_cast<size_t>(sysconf(_SC_PAGESIZE));
}

void write_head(std::ostream &out, const char *name, const char *type, const char *help)
{
    out << "# HELP " << name << ' ' << help << "\n# TYPE " << name << ' ' << type << '\n';
}

} // namespace

void Metrics::count(Subject subject, std::string_view name, std::string_view code,
                    std::optional<int32_t> result, std::chrono::microseconds time)
{
    if (is_refusal(code)) {
        ++refusals_[std::string(code)];
        return;
    }
    Histogram &histogram = requests_[{label_of(subject, name), result_text(code, result)}];
    const double seconds = std::chrono::duration<double>(time).count();
    for (size_t at = 0; at < kBounds.size(); ++at) {
        histogram.buckets[at] += seconds <= kBounds[at] ? 1 : 0;
    }
    ++histogram.count;
    histogram.sum += time;
}

std::string Metrics::text(const State &state) const
{
    std::ostringstream out;
    constexpr char kRequests[] = "hgagent_request_duration_seconds";
    write_head(out, kRequests, "histogram",
               "Time from a request's arrival to its answer, by command and result.");
    for (const auto &[labels, histogram] : requests_) {
        const std::string both =
            "command=\"" + labels.first + "\",result=\"" + labels.second + "\"";
        for (size_t at = 0; at < kBounds.size(); ++at) {
            out << kRequests << "_bucket{" << both << ",le=\"" << kBounds[at] << "\"} "
                << histogram.buckets[at] << '\n';
        }
        out << kRequests << "_bucket{" << both << ",le=\"+Inf\"} " << histogram.count << '\n'
            << kRequests << "_sum{" << both << "} "
            << std::chrono::duration<double>(histogram.sum).count() << '\n'
            << kRequests << "_count{" << both << "} " << histogram.count << '\n';
    }
    write_head(out, "hgagent_refusals_total", "counter",
               "Requests that were not run, by the code of the error.");
    for (const auto &[code, count] : refusals_) {
        out << "hgagent_refusals_total{code=\"" << code << "\"} " << count << '\n';
    }
    write_head(out, "hgagent_worker_restarts_total", "counter",
               "Starts of a worker after the first one.");
    out << "hgagent_worker_restarts_total " << (workers_ > 0 ? workers_ - 1 : 0) << '\n';
    write_head(out, "hgagent_worker_idle", "gauge", "1 while the worker can take a command.");
    out << "hgagent_worker_idle " << (state.is_idle ? 1 : 0) << '\n';
    write_head(out, "hgagent_queue_length", "gauge", "Requests that wait for the worker.");
    out << "hgagent_queue_length " << state.waiting << '\n';
    write_head(out, "hgagent_clients", "gauge", "Clients that are connected, by transport.");
    for (const auto &[transport, count] : state.clients) {
        out << "hgagent_clients{transport=\"" << transport << "\"} " << count << '\n';
    }
    write_head(out, "process_resident_memory_bytes", "gauge",
               "Resident memory of the service, without the worker.");
    out << "process_resident_memory_bytes " << resident_bytes() << '\n';
    return out.str();
}

} // namespace agent::service
