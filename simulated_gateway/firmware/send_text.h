// SPDX-License-Identifier: MIT
// Uploading a text to a URL.
#pragma once

#include "firmware/web_transfer.h"

#include <functional>
#include <string>

namespace simulated_gateway {

// Uploads the text to the address, of http or https. goes_on as in a fetch. Throws an Error, also
// if the server does not accept it.
void send_text(const WebAddress &address, const std::string &text, const WebLimits &limits,
               const std::function<bool()> &goes_on);

} // namespace simulated_gateway
