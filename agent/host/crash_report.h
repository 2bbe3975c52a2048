// SPDX-License-Identifier: MIT
// What is known of a crash, for the log.
#pragma once

namespace agent {

// From here on a signal that ends the process because of a fault writes the calls that led there to
// standard error first. A core dump would say more, but it would hold every password of the home,
// so there is none (forbid_core_dumps()).
void report_crashes();

} // namespace agent
