// SPDX-License-Identifier: MIT
// The device-access library of the benchmarks: queries copy constants, so that almost nothing is
// spent outside the measured code, and the same on both sides. Functions without a constant fail.
#pragma once

#include <cstddef>
#include <cstdint>

namespace benchmark_device {

// Sets the number of attached devices.
void set_host_count(int32_t count);

// Starts a new digest of all changes that are requested of the device, in order.
void watch();
uint64_t stop_watching();

// Adds the bytes to the digest, if one is kept.
void receive(const void *bytes, size_t size);

} // namespace benchmark_device
