// SPDX-License-Identifier: MIT
// The machine that the gateway runs on, which a command to the router must never restart.
#pragma once

namespace simulated_gateway {

// Whether a restart of the router would restart this machine. The plug-in calls system() for it:
// this is so if that resolves to the C library's function instead of the gateway's or one of the
// host.
bool reboot_would_be_real();

// Throws an Error if it would, and prints it on standard error: the plug-in does not report why an
// update failed.
void refuse_real_reboot();

} // namespace simulated_gateway
