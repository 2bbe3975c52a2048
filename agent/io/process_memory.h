// SPDX-License-Identifier: MIT
// Memory of the executable: wiped before it is freed, with a reserve for when it runs out.
#pragma once

namespace agent {

// Lets cJSON wipe its trees and texts as well, those of the plug-in too, and OpenSSL use the
// reserve. To be called before either is used.
void set_up_memory();

} // namespace agent
