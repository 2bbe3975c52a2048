// SPDX-License-Identifier: MIT
// hgagent replay, diff and make-test: what recordings are used for.
#pragma once

#include "commands/options.h"

namespace agent {

void add_recordings(CLI::App &app, Options &options);

} // namespace agent
