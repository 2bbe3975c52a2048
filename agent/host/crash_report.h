// SPDX-License-Identifier: MIT
// A stack trace for the log after a crash.
#pragma once

namespace agent {

// From now on, a fatal signal caused by a fault first writes the stack trace to standard error. A
// core dump would contain more, but also every password of the home, so none is written
// (forbid_core_dumps()).
void report_crashes();

// Such a signal also does this work, after the stack trace. It must be safe in a signal handler.
void at_crash(void (*work)());

} // namespace agent
