// SPDX-License-Identifier: MIT
#include "enforcement/time_zone.h"

#include "system/error.h"

#include <date/tz.h>

#include <chrono>
#include <cstdlib>

namespace linux_gateway {
namespace {

// In TZ the name may have a colon before it; an empty one is UTC, as for the C library.
const date::time_zone *machines_zone()
{
    const char *variable = std::getenv("TZ"); // NOLINT(concurrency-mt-unsafe): nothing sets it
    if (variable == nullptr) {
        return date::current_zone();
    }
    const std::string name = variable[0] == ':' ? variable + 1 : variable;
    return date::locate_zone(name.empty() ? "UTC" : name);
}

} // namespace

TimeZone::TimeZone(const std::string &name)
{
    try {
        zone_ = name.empty() ? machines_zone() : date::locate_zone(name);
    } catch (const std::exception &) {
        throw Error(name.empty()
                        ? "the machine's time zone is unknown: neither TZ nor /etc/localtime "
                          "names one of /usr/share/zoneinfo"
                        : "there is no time zone \"" + name + "\" in /usr/share/zoneinfo");
    }
}

int64_t TimeZone::day_of(int64_t time) const
{
    const date::sys_seconds point{std::chrono::seconds(time)};
    return date::floor<date::days>(zone_->to_local(point)).time_since_epoch().count();
}

int64_t TimeZone::time_of(int64_t day, int minute, Occurrence occurrence) const
{
    const date::local_seconds local{date::days(day) + std::chrono::minutes(minute)};
    const date::choose choice =
        occurrence == Occurrence::kFirst ? date::choose::earliest : date::choose::latest;
    return zone_->to_sys(local, choice).time_since_epoch().count();
}

} // namespace linux_gateway
