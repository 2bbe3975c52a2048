// Fetching an image from an address.
#pragma once

#include "firmware/partial_image.h"
#include "firmware/web_transfer.h"

#include <cstdint>
#include <functional>
#include <string>

namespace simulated_gateway {

struct FetchLimits : WebLimits {
    uint64_t largest_image = 64U << 20;
    std::string file_folder; // the real path of what file:// may reach; empty: nothing
};

// Fetches the rest of the image, or the whole where the server cannot go on. goes_on is asked about
// every second and whenever something has arrived; the fetching ends when it says no. Throws an
// Error; what has arrived by then stays in the image unless it does not hold.
void fetch(const std::string &address, PartialImage &image, const FetchLimits &limits,
           const std::function<bool()> &goes_on);

} // namespace simulated_gateway
