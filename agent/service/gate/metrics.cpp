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

constexpr std::string_view kReportLabel = "report:";

std::vector<std::string> report_labels()
{
    std::vector<std::string> labels = known_names(Subject::kReport);
    for (std::string &label : labels) {
        label.insert(0, kReportLabel);
    }
    return labels;
}

// Clients choose names, so only known ones become labels. The label is valid as long as the name.
std::string_view label_of(Subject subject, std::string_view name)
{
    constexpr std::string_view other = "other";
    switch (subject) {
    case Subject::kCommand:
        return find_description(name) != nullptr ? name : other;
    case Subject::kReport: {
        static const std::vector<std::string> labels = report_labels();
        const auto label = std::ranges::find_if(labels, [&](std::string_view known) {
            return known.substr(kReportLabel.size()) == name;
        });
        return label != labels.end() ? *label : other;
    }
    case Subject::kNotice:
        return "notice";
    case Subject::kControl:
        return "control";
    case Subject::kSubscription:
        return "subscription";
    }
    return other;
}

// Whether the request has not been run.
bool is_refusal(std::string_view code)
{
    return !code.empty() && code != name_of(Code::kTimeout) &&
           !code.starts_with(name_of(Code::kOutcomeUnknown));
}

std::string_view result_text(std::string_view code, std::optional<int32_t> result)
{
    if (!code.empty()) {
        return code;
    }
    return result == 0 ? "success" : "failure";
}

// The value under the key, which is new if there is none.
template <class Map> auto &value_of(Map &map, std::string_view key)
{
    const auto found = map.find(key);
    return found != map.end() ? found->second : map[std::string(key)];
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
        ++value_of(refusals_, code);
        return;
    }
    Histogram &histogram =
        value_of(value_of(requests_, label_of(subject, name)), result_text(code, result));
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
    for (const auto &[name, results] : requests_) {
        for (const auto &[result, histogram] : results) {
            std::string labels = "command=\"";
            labels.append(name).append("\",result=\"").append(result).append("\"");
            for (size_t at = 0; at < kBounds.size(); ++at) {
                out << kRequests << "_bucket{" << labels << ",le=\"" << kBounds[at] << "\"} "
                    << histogram.buckets[at] << '\n';
            }
            out << kRequests << "_bucket{" << labels << ",le=\"+Inf\"} " << histogram.count << '\n'
                << kRequests << "_sum{" << labels << "} "
                << std::chrono::duration<double>(histogram.sum).count() << '\n'
                << kRequests << "_count{" << labels << "} " << histogram.count << '\n';
        }
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
