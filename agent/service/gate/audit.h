// SPDX-License-Identifier: MIT
// The audit: one line of JSON for each request with the client, the request, its result and its
// duration.
#pragma once

#include "service/common/request.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace agent::service {

struct AuditRecord {
    const Identity &who;
    std::string_view role; // empty: none
    Subject subject = Subject::kCommand;
    std::string_view name;
    std::string_view params; // unchanged; passwords and keys are masked in the line
    std::string_view code;   // of an error; empty for an answer
    std::string_view rule;   // that refused or allowed the request
    std::optional<int32_t> result;
    std::string_view status;    // the reply's "Status"; empty if absent
    bool is_repetition = false; // the answer is that of an earlier request
    std::chrono::microseconds waited{0};
    std::chrono::microseconds worked{0};
};

// The line with its end. Params that are too long are replaced by their length.
std::string audit_line(const AuditRecord &record, std::chrono::system_clock::time_point now);

// The file to which the lines are appended. The service continues regardless of write errors: a
// line that cannot be written whole is removed and counted, and as soon as there is room, a line
// reports how many are missing: {"time": TEXT, "lost": COUNT}.
class AuditLog {
  public:
    AuditLog() = default; // writes nothing
    ~AuditLog();
    AuditLog(const AuditLog &) = delete;
    AuditLog &operator=(const AuditLog &) = delete;

    // Opens a file, also the same one again after it was renamed, and closes the previous one. An
    // empty path: no file. Result: empty, or the error; the previous file then stays in use.
    std::string open(const std::string &path);

    void write(const AuditRecord &record, std::chrono::system_clock::time_point now);

    // The number of lost lines that the file does not report yet, and the total since the start.
    uint64_t unreported() const { return unreported_; }
    uint64_t lost() const { return lost_; }

    // The error when lines begin to be lost, returned once each time; otherwise empty.
    std::string take_problem();

  private:
    bool append(std::string_view line);

    int descriptor_ = -1;
    uint64_t unreported_ = 0;
    uint64_t lost_ = 0;
    std::string problem_;
};

} // namespace agent::service
