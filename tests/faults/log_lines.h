// SPDX-License-Identifier: MIT
// The lines that a subject logs: those of level "error" when memory or the device fails, and those
// of level "debug" when nothing fails, the device refuses its first call, or the request has no
// keys.
#pragma once

#include "sweep_run.h"

#include <set>
#include <string>

using LinesLogged = std::set<std::string>;

// Add those of a run; numbers count as equal. The result of a builder counts as an error line.
void add_error_lines(LinesLogged &lines, const Subject &subject, const SweepRun &run);
void add_debug_lines(LinesLogged &lines, const SweepRun &run);

// How the lines differ from those in log_lines.txt of this kind: "memory" and "device" for the
// error lines by what fails, "debug" for the debug lines; empty if they do not. With the
// environment variable LOG_LINES they are appended to that file instead, to be reviewed and sorted.
std::string other_log_lines(const Subject &subject, const std::string &kind,
                            const LinesLogged &lines);
