// SPDX-License-Identifier: MIT
// One line of JSON for each request: who asked for what, how it ended and how long it took.
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
    std::string_view params; // as they came; passwords and keys are masked
    std::string_view code;   // of an error; empty for an answer
    std::string_view rule;   // of a refusal, and of what was allowed
    std::optional<int32_t> result;
    std::string_view status; // the reply's "Status"; empty: it has none
    std::chrono::microseconds waited{0};
    std::chrono::microseconds worked{0};
};

// The line, with its end. Params that are too long are left out, and the line says how long they
// are.
std::string audit_line(const AuditRecord &record, std::chrono::system_clock::time_point now);

// The file to which the lines are appended. Whatever becomes of it, the service goes on: a line
// that cannot be written whole is taken back and counted, and as soon as there is room, a line says
// how many are missing: {"time": TEXT, "lost": COUNT}.
class AuditLog {
  public:
    AuditLog() = default; // writes nothing
    ~AuditLog();
    AuditLog(const AuditLog &) = delete;
    AuditLog &operator=(const AuditLog &) = delete;

    // Opens the file, or another one, or the same again after it was renamed; the one before is
    // then closed. An empty path: none. Result: what went wrong, else empty; the file before stays
    // in use.
    std::string open(const std::string &path);

    void write(const AuditRecord &record, std::chrono::system_clock::time_point now);

    // Lines that are missing in the file and not told of there yet, and in all since the start.
    uint64_t untold() const { return untold_; }
    uint64_t lost() const { return lost_; }

    // What went wrong when a line was lost, once for each time that it begins; else empty.
    std::string take_problem();

  private:
    bool append(std::string_view line);

    int descriptor_ = -1;
    uint64_t untold_ = 0;
    uint64_t lost_ = 0;
    std::string problem_;
};

} // namespace agent::service
