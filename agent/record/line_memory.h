// SPDX-License-Identifier: MIT
// The line that a thread builds: one at a time.
#pragma once

#include "record/line_text.h"

namespace agent::record {

inline LineText &empty_line()
{
    thread_local LineText line;
    line.cut(0);
    return line;
}

} // namespace agent::record
