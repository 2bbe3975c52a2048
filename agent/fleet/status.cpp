// SPDX-License-Identifier: MIT
#include "fleet/status.h"

#include <iomanip>
#include <sstream>

namespace agent::fleet {

namespace {

double in_megabytes(uint64_t bytes)
{
    return static_cast<double>(bytes) / (1024.0 * 1024.0);
}

uint32_t running(const Status &status)
{
    return status.up + status.connecting;
}

// A family of metrics with one label.
class Family {
  public:
    Family(std::ostream &out, const char *name, const char *type, const char *help)
        : out_(out), name_(name)
    {
        out << "# HELP " << name << ' ' << help << "\n# TYPE " << name << ' ' << type << '\n';
    }
    template <class Value> Family &add(const char *label, const char *of, Value value)
    {
        out_ << name_ << '{' << label << "=\"" << of << "\"} " << value << '\n';
        return *this;
    }
    template <class Value> void add(Value value) { out_ << name_ << ' ' << value << '\n'; }

  private:
    std::ostream &out_;
    const char *name_;
};

} // namespace

std::vector<std::string> table_of(const Status &status)
{
    std::ostringstream text;
    text << std::left << "  up " << std::setw(8) << status.up << " connecting " << std::setw(6)
         << status.connecting << " starting " << std::setw(6) << status.starting << " off "
         << std::setw(6) << status.off << " failed " << status.failed << "\n  requests "
         << std::fixed << std::setprecision(0) << status.requests_per_second << "/s, "
         << status.requests << " in all\n  crashed " << status.crashes << "   hung " << status.hangs
         << "   power lost " << status.power_losses << "   connections lost " << status.losses
         << "   taken over " << status.takeovers << "\n  memory " << std::setprecision(2)
         << in_megabytes(status.memory_each) << " MB each, " << std::setprecision(0)
         << in_megabytes(status.memory_each) * running(status) << " MB in all   processors "
         << std::setprecision(2) << status.processors << '\n';
    std::vector<std::string> lines;
    std::istringstream in(text.str());
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string metrics_of(const Status &status)
{
    std::ostringstream out;
    out.precision(12);
    Family(out, "hgfleet_gateways", "gauge", "Gateways by state.")
        .add("state", "up", status.up)
        .add("state", "connecting", status.connecting)
        .add("state", "starting", status.starting)
        .add("state", "off", status.off)
        .add("state", "failed", status.failed);
    Family(out, "hgfleet_restarts_total", "counter", "Ends of gateways, by cause.")
        .add("cause", "crash", status.crashes)
        .add("cause", "hang", status.hangs)
        .add("cause", "power", status.power_losses)
        .add("cause", "start", status.failed_starts);
    Family(out, "hgfleet_requests_total", "counter", "Requests that gateways have carried out.")
        .add(status.requests);
    Family(out, "hgfleet_connections_total", "counter", "Connections to the broker.")
        .add(status.connections);
    Family(out, "hgfleet_lost_connections_total", "counter", "Connections that were lost.")
        .add(status.losses);
    Family(out, "hgfleet_taken_over_total", "counter",
           "Connections that were lost to another client with the same name.")
        .add(status.takeovers);
    Family(out, "hgfleet_waves_total", "counter", "Waves of connections cut by plan.")
        .add(status.waves);
    Family(out, "hgfleet_cpu_seconds_total", "counter", "Processor time of all gateways.")
        .add(status.processor_seconds);
    Family(out, "hgfleet_memory_bytes", "gauge", "Private memory of all gateways, by a sample.")
        .add(status.memory_each * running(status));
    return out.str();
}

} // namespace agent::fleet
