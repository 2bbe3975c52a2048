// SPDX-License-Identifier: MIT
// Downloading an image from a URL.
#pragma once

#include "firmware/partial_image.h"
#include "firmware/web_transfer.h"

#include <cstdint>
#include <functional>
#include <string>

namespace simulated_gateway {

struct FetchLimits : WebLimits {
    uint64_t largest_image = 64U << 20;
    std::string file_folder; // the real path of the only folder that file:// may read; empty: none
};

// Downloads the rest of the image, or the whole if the server cannot resume. goes_on is called
// about every second and whenever data has arrived; the download ends when it returns false. Throws
// an Error; what has arrived so far stays in the image unless it is invalid.
void fetch(const std::string &address, PartialImage &image, const FetchLimits &limits,
           const std::function<bool()> &goes_on);

} // namespace simulated_gateway
