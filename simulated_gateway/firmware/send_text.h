// Sending a text to an address.
#pragma once

#include "firmware/web_transfer.h"

#include <functional>
#include <string>

namespace simulated_gateway {

// Puts the text where the address, of http or https, says. goes_on as in a fetch. Throws an Error,
// also when the server does not take it.
void send_text(const WebAddress &address, const std::string &text, const WebLimits &limits,
               const std::function<bool()> &goes_on);

} // namespace simulated_gateway
