// SPDX-License-Identifier: MIT
#include "service/gate/audit.h"

#include "io/text.h"
#include "protocol/secrets.h"
#include "service/gate/policy_names.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace agent::service {

namespace {

// A request can be as long as a line; the audit must stay readable.
constexpr size_t kMaxParams = 4096;
constexpr size_t kMaxName = 256;

std::string json_text(std::string_view text)
{
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string member(const char *key, std::string_view text)
{
    return std::string(",\"") + key + "\":" + json_text(text.substr(0, kMaxName));
}

std::string member(const char *key, int64_t number)
{
    return std::string(",\"") + key + "\":" + std::to_string(number);
}

// "2026-01-01T00:00:00.123456Z"
std::string time_text(std::chrono::system_clock::time_point now)
{
    const auto since = now.time_since_epoch();
    const auto seconds = std::chrono::floor<std::chrono::seconds>(since);
    const auto micros = std::chrono::duration_cast<std::chrono::microseconds>(since - seconds);
    const auto time = static_cast<time_t>(seconds.count());
    tm parts = {};
    gmtime_r(&time, &parts);
    char text[64];
    const size_t length = strftime(text, sizeof(text), "%Y-%m-%dT%H:%M:%S", &parts);
    snprintf(text + length, sizeof(text) - length, ".%06dZ", static_cast<int>(micros.count()));
    return text;
}

std::string_view subject_word(Subject subject)
{
    const auto &words = subject_words();
    const auto found = std::ranges::find(words, subject, &SubjectWord::subject);
    return found != words.end() ? found->word : "command";
}

// The JSON with the passwords in URLs replaced. Strings with escapes, such as "http:\/\/", are
// recognised as URLs as well.
std::string mask_addresses(const std::string &json)
{
    std::string shown;
    size_t at = 0;
    while (at < json.size()) {
        const size_t quote = std::min(json.find('"', at), json.size());
        const size_t end = quote < json.size() ? end_of_string(json, quote) : quote;
        const std::string literal = json.substr(quote, end - quote);
        shown += json.substr(at, quote - at);
        at = end;
        const bool may_be_address = literal.find_first_of("/\\") != std::string::npos;
        const auto text = may_be_address ? nlohmann::json::parse(literal).get<std::string>() : "";
        shown += text.find("://") != std::string::npos ? json_text(mask_address(text)) : literal;
    }
    return shown;
}

std::string params_member(std::string_view params)
{
    if (params.empty()) {
        return "";
    }
    if (params.size() > kMaxParams) {
        return member("params_bytes", static_cast<int64_t>(params.size()));
    }
    std::string masked = mask_json(params);
    if (!nlohmann::json::accept(masked)) {
        return ",\"params\":" + json_text(masked);
    }
    // In valid JSON, only whitespace between values can contain a line end.
    std::ranges::replace_if(
        masked, [](char letter) { return letter == '\n' || letter == '\r'; }, ' ');
    return ",\"params\":" + mask_addresses(masked);
}

std::string lost_line(uint64_t count, std::chrono::system_clock::time_point now)
{
    return "{\"time\":\"" + time_text(now) + "\",\"lost\":" + std::to_string(count) + "}\n";
}

} // namespace

std::string audit_line(const AuditRecord &record, std::chrono::system_clock::time_point now)
{
    std::string line = "{\"time\":\"" + time_text(now) + "\"";
    line += member("who", record.who.name);
    line += member("way_in", record.who.way_in);
    if (!record.role.empty()) {
        line += member("role", record.role);
    }
    line += member(std::string(subject_word(record.subject)).c_str(), record.name);
    line += params_member(record.params);
    if (record.code.empty()) {
        line += record.result ? member("result", *record.result) : "";
        line += record.status.empty() ? "" : member("status", record.status);
    } else {
        line += member("code", record.code);
    }
    if (record.is_repetition) {
        line += ",\"repetition\":true";
    }
    if (!record.rule.empty()) {
        line += member("rule", record.rule);
    }
    line += member("waited_us", record.waited.count());
    line += member("worked_us", record.worked.count());
    return line + "}\n";
}

AuditLog::~AuditLog()
{
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
}

std::string AuditLog::open(const std::string &path)
{
    int opened = -1;
    if (!path.empty()) {
        opened = ::open(path.c_str(),
                        O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0600);
        if (opened < 0) {
            return path + ": cannot be opened: " + std::generic_category().message(errno);
        }
        struct stat info = {};
        if (fstat(opened, &info) != 0 || !(S_ISREG(info.st_mode) || S_ISCHR(info.st_mode))) {
            close(opened);
            return path + ": is neither a regular file nor a character device";
        }
    }
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
    descriptor_ = opened;
    return "";
}

void AuditLog::write(const AuditRecord &record, std::chrono::system_clock::time_point now)
{
    if (descriptor_ < 0) {
        return;
    }
    if (unreported_ > 0 && append(lost_line(unreported_, now))) {
        unreported_ = 0;
    }
    if (unreported_ > 0 || !append(audit_line(record, now))) {
        ++unreported_;
        ++lost_;
    }
}

std::string AuditLog::take_problem()
{
    return std::exchange(problem_, {});
}

bool AuditLog::append(std::string_view line)
{
    const off_t before = lseek(descriptor_, 0, SEEK_END); // -1 for a device
    const bool went_well_before = unreported_ == 0;
    ssize_t written = -1;
    do {
        written = ::write(descriptor_, line.data(), line.size());
    } while (written < 0 && errno == EINTR);
    if (written == static_cast<ssize_t>(line.size())) {
        return true;
    }
    const int reason = written < 0 ? errno : ENOSPC; // only a full disk causes a partial write
    if (written > 0 && before >= 0 && ftruncate(descriptor_, before) != 0) {
        // A part of the line remains in the file. The next record must start on a new line.
        [[maybe_unused]] const ssize_t ended = ::write(descriptor_, "\n", 1);
    }
    if (went_well_before) {
        problem_ = "the audit cannot be written: " + std::generic_category().message(reason);
    }
    return false;
}

} // namespace agent::service
