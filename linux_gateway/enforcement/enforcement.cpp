// SPDX-License-Identifier: MIT
#include "enforcement/enforcement.h"

#include "enforcement/periods.h"
#include "system/error.h"
#include "system/log.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <ifaddrs.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace linux_gateway {
namespace {

using namespace std::chrono_literals;

// Changes come in bursts. A program that keeps removing the rules is not to keep the machine busy.
constexpr auto kSettlingTime = 50ms;
constexpr auto kBetweenChecks = 300ms;
constexpr auto kRetryTime = 5s; // unless there is a change before

bool wants_block(const Rules &rules, const Mac &mac)
{
    return rules.blocked.contains(mac) || rules.periods.contains(mac);
}

bool is_management_host(const Rules &rules, const Mac &mac)
{
    return rules.management_host && *rules.management_host == mac;
}

bool enforces_something(const Rules &rules)
{
    return !rules.blocked.empty() || !rules.limits.empty() || !rules.periods.empty();
}

// Without link-local ones.
std::set<std::string> addresses_of_machine()
{
    ifaddrs *list = nullptr;
    if (getifaddrs(&list) != 0) {
        throw Error("the machine's addresses cannot be listed");
    }
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> guard(list, freeifaddrs);
    std::set<std::string> addresses;
    for (const ifaddrs *entry = list; entry != nullptr; entry = entry->ifa_next) {
        if (entry->ifa_addr == nullptr) {
            continue;
        }
        const int family = entry->ifa_addr->sa_family;
        std::array<char, NI_MAXHOST> text{};
        const socklen_t size = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
        if ((family == AF_INET || family == AF_INET6) &&
            getnameinfo(entry->ifa_addr, size, text.data(), text.size(), nullptr, 0,
                        NI_NUMERICHOST) == 0) {
            const std::string address = text.data();
            if (address.find('%') == std::string::npos) {
                addresses.insert(address);
            }
        }
    }
    return addresses;
}

} // namespace

int64_t system_time()
{
    return std::time(nullptr);
}

Enforcement::Enforcement(const std::string &time_zone, Clock clock, FlowTables find_flow_tables)
    : zone_(time_zone), clock_(std::move(clock)), find_flow_tables_(std::move(find_flow_tables))
{
}

Enforcement::~Enforcement()
{
    stop();
}

std::string Enforcement::refusal(const Rules &rules) const
{
    if (!rules.management_host || !wants_block(rules, *rules.management_host) ||
        wants_block(*rules_, *rules.management_host)) {
        return "";
    }
    return to_text(*rules.management_host) + " manages this gateway and cannot be blocked";
}

std::string Enforcement::apply(const Rules &rules)
{
    const std::lock_guard lock(mutex_);
    if (!rules_) {
        apply_first(rules);
        return "";
    }
    if (std::string reason = refusal(rules); !reason.empty()) {
        return reason;
    }
    try {
        replace(rules);
    } catch (const std::exception &error) {
        // Puts the previous rules back: the limits may be the new ones already.
        limits_failed_ = true;
        blocks_failed_ = true;
        check_kernel();
        return error.what();
    }
    rules_ = rules;
    return "";
}

void Enforcement::apply_first(const Rules &rules)
{
    rules_ = rules;
    limits_failed_ = true;
    blocks_failed_ = true;
    flow_tables_ = find_flow_tables_();
    if (rules.management_host && wants_block(rules, *rules.management_host)) {
        log_error(to_text(*rules.management_host) + " manages this gateway and is not blocked");
    }
    try {
        start_thread_for(rules);
    } catch (const std::exception &error) {
        log_failure(error.what());
    }
    check_kernel();
}

// Only what has changed, so that one kind of rules can be set while the other fails.
void Enforcement::replace(const Rules &rules)
{
    start_thread_for(rules);
    const bool is_same_bridge = rules.lan_bridge == rules_->lan_bridge;
    if (!is_same_bridge || rules.limits != rules_->limits) {
        put_limits(rules);
    }
    if (!is_same_bridge || rules.blocked != rules_->blocked || rules.periods != rules_->periods ||
        rules.management_host != rules_->management_host) {
        put_blocks(rules);
    }
}

void Enforcement::put_limits(const Rules &rules)
{
    limits_failed_ = true;
    limits_.apply(rules.lan_bridge, rules.limits);
    limits_failed_ = false;
}

void Enforcement::put_blocks(const Rules &rules)
{
    blocks_failed_ = true;
    Blocks blocks;
    blocks.lan_bridge = rules.lan_bridge;
    const int64_t now = clock_();
    std::set<Mac> restricted;
    std::optional<int64_t> next_change;
    for (const auto &[mac, periods] : rules.periods) {
        const Restriction restriction = restriction_at(now, periods, zone_);
        if (restriction.next_change) {
            next_change =
                std::min(next_change.value_or(*restriction.next_change), *restriction.next_change);
        }
        if (restriction.until && !is_management_host(rules, mac)) {
            restricted.insert(mac);
            blocks.hosts[mac] = *restriction.until - now;
        }
    }
    for (const Mac &mac : rules.blocked) {
        if (!is_management_host(rules, mac)) {
            blocks.hosts[mac] = std::nullopt;
        }
    }
    blocks.own_addresses = addresses_of_machine();
    filter_.apply(blocks);

    own_addresses_ = std::move(blocks.own_addresses);
    restricted_ = std::move(restricted);
    next_change_ = next_change;
    clock_time_ = now;
    steady_time_ = std::chrono::steady_clock::now();
    blocks_failed_ = false;
    if (wake_.get() >= 0) {
        eventfd_write(wake_.get(), 1);
    }
}

// ---- The thread --------------------------------------------------------------------------------

void Enforcement::start_thread_for(const Rules &rules)
{
    if (thread_.joinable() || !enforces_something(rules)) {
        return;
    }
    watch_.emplace();
    wake_ = FileDescriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
    if (wake_.get() < 0) {
        throw Error("no event descriptor is free");
    }
    is_stopping_ = false;
    flow_tables_changed_ = true; // perhaps, while nothing was watched
    check_at_ = std::chrono::steady_clock::now();
    thread_ = std::thread(&Enforcement::run, this);
}

void Enforcement::stop()
{
    std::thread thread;
    {
        const std::lock_guard lock(mutex_);
        is_stopping_ = true;
        if (wake_.get() >= 0) {
            eventfd_write(wake_.get(), 1);
        }
        thread = std::move(thread_);
    }
    if (thread.joinable()) {
        thread.join();
        const std::lock_guard lock(mutex_);
        wake_ = FileDescriptor();
        watch_.reset();
    }
}

void Enforcement::run()
{
    std::unique_lock lock(mutex_);
    while (!is_stopping_) {
        wait(lock);
        if (is_stopping_) {
            break;
        }
        try {
            note(watch_->read(rules_ ? rules_->lan_bridge : ""));
            follow_clock();
            if (check_at_ && *check_at_ <= std::chrono::steady_clock::now()) {
                check_at_.reset();
                check_kernel();
                checked_at_ = std::chrono::steady_clock::now();
            }
        } catch (const std::exception &error) {
            log_failure(error.what());
            check_at_ = std::chrono::steady_clock::now() + kRetryTime;
        }
    }
}

// Until something may have to be done. While there are periods, the clock is read every second,
// since it may be set at any time.
void Enforcement::wait(std::unique_lock<std::mutex> &lock)
{
    int milliseconds = rules_ && !rules_->periods.empty() ? 1000 : -1;
    if (check_at_) {
        const auto until_check = std::chrono::ceil<std::chrono::milliseconds>(
            *check_at_ - std::chrono::steady_clock::now());
        const auto bounded = static_cast<int>(std::clamp<int64_t>(until_check.count(), 0, 10'000));
        milliseconds = milliseconds < 0 ? bounded : std::min(milliseconds, bounded);
    }
    const std::array<int, 2> watched = watch_->descriptors();
    std::array<pollfd, 3> descriptors{
        {{wake_.get(), POLLIN, 0}, {watched[0], POLLIN, 0}, {watched[1], POLLIN, 0}}};
    lock.unlock();
    poll(descriptors.data(), descriptors.size(), milliseconds);
    eventfd_t count = 0;
    eventfd_read(descriptors[0].fd, &count);
    lock.lock();
}

void Enforcement::note(const KernelChanges &changes)
{
    const bool concerns_blocks =
        changes.tables || (changes.addresses && addresses_of_machine() != own_addresses_);
    flow_tables_changed_ = flow_tables_changed_ || changes.flow_tables;
    if (concerns_blocks || changes.queueing || changes.flow_tables) {
        const SteadyTime due = std::max(std::chrono::steady_clock::now() + kSettlingTime,
                                        checked_at_ + kBetweenChecks);
        check_at_ = std::min(check_at_.value_or(due), due);
    }
}

void Enforcement::follow_clock()
{
    if (!rules_ || rules_->periods.empty()) {
        return;
    }
    const int64_t now = clock_();
    const int64_t elapsed = std::chrono::duration_cast<std::chrono::seconds>(
                                std::chrono::steady_clock::now() - steady_time_)
                                .count();
    constexpr int64_t rounding = 1;
    const bool was_set = std::abs(now - clock_time_ - elapsed) > rounding;
    if (!was_set && (!next_change_ || now < *next_change_)) {
        return;
    }
    const std::set<Mac> before = restricted_;
    put_blocks(*rules_);
    for (const auto &[mac, periods] : rules_->periods) {
        if (restricted_.contains(mac) && !before.contains(mac)) {
            log_info(to_text(mac) + ": a period without Internet access begins");
        } else if (!restricted_.contains(mac) && before.contains(mac)) {
            log_info(to_text(mac) + ": a period without Internet access ends");
        }
    }
}

// Puts back what is missing in the kernel or has never been there.
void Enforcement::check_kernel()
{
    if (!rules_) {
        return;
    }
    std::string failure;
    try {
        const bool was_changed = !blocks_failed_ && !filter_.is_intact();
        if (was_changed || blocks_failed_ || addresses_of_machine() != own_addresses_) {
            put_blocks(*rules_);
        }
        if (was_changed) {
            log_error(
                "another program has changed the tables linux_gateway of nftables: they have been "
                "put back");
        }
    } catch (const std::exception &error) {
        failure = error.what();
    }
    try {
        const bool was_changed = !limits_failed_ && !limits_.is_intact();
        if (was_changed || limits_failed_) {
            put_limits(*rules_);
        }
        if (was_changed) {
            log_error("another program has changed the download limits of " + rules_->lan_bridge +
                      ": they have been put back");
        }
    } catch (const std::exception &error) {
        failure += (failure.empty() ? "" : "; ") + std::string(error.what());
    }
    if (std::exchange(flow_tables_changed_, false)) {
        report_new_flow_tables();
    }
    if (failure.empty()) {
        logged_failure_.clear();
    } else {
        log_failure(failure);
        check_at_ = std::chrono::steady_clock::now() + kRetryTime;
    }
}

void Enforcement::report_new_flow_tables()
{
    std::set<std::string> found = find_flow_tables_();
    for (const std::string &table : found) {
        if (!flow_tables_.contains(table)) {
            log_error(flow_table_sentence(table));
        }
    }
    flow_tables_ = std::move(found);
}

// A failure that lasts is logged once.
void Enforcement::log_failure(const std::string &text)
{
    if (text != logged_failure_) {
        logged_failure_ = text;
        log_error("rules are not in force: " + text);
    }
}

} // namespace linux_gateway
