// SPDX-License-Identifier: MIT
// A stack trace for the log after a crash.
#pragma once

namespace agent {

// From now on, a fatal signal caused by a fault first writes the stack trace to standard error. A
// core dump would contain more, but also every password of the home, so none is written
// (forbid_core_dumps()).
void report_crashes();

} // namespace agent
