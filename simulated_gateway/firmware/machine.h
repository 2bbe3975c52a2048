// The machine that the gateway runs on, which no command to the router may restart.
#pragma once

namespace simulated_gateway {

// The plug-in restarts the router by system(). Whether that would restart this machine: the process
// calls the C library's function, and neither the gateway's nor one of the host's own.
bool reboot_would_be_real();

// Throws an Error where it would be, and says so on standard error: the plug-in tells nobody why an
// update has failed.
void refuse_real_reboot();

} // namespace simulated_gateway
