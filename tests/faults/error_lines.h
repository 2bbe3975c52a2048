// SPDX-License-Identifier: MIT
// The lines of level "error" that a subject logs when memory or the device fails.
#pragma once

#include "sweep_run.h"

#include <set>
#include <string>

using ErrorLines = std::set<std::string>;

// Adds those of a run; numbers count as equal. The result of a builder counts as a line.
void add_error_lines(ErrorLines &lines, const Subject &subject, const SweepRun &run);

// How the lines differ from those in error_lines.txt, by the type of faults that caused them; empty
// if they do not. With the environment variable ERROR_LINES they are appended to that file instead,
// to be reviewed and sorted.
std::string other_error_lines(const Subject &subject, const std::string &faults,
                              const ErrorLines &lines);
