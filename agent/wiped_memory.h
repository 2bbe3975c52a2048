// Memory of the executable, which is wiped before it is freed.
#pragma once

namespace agent {

// Lets cJSON wipe its trees and texts as well, those of the plug-in too. To be called before the
// first of them is made.
void wipe_json();

} // namespace agent
