// The device-access library of the benchmarks: every answer is a copy of a constant, so that next
// to nothing is spent outside of what is measured, and the same on both sides. What it has no
// answer for fails.
#pragma once

#include <cstddef>
#include <cstdint>

namespace benchmark_device {

// How many attached devices there are.
void set_host_count(int32_t count);

// From here on the device keeps a digest of whatever it is told to change, in the order in which it
// comes; telling which begins it anew.
void watch();
uint64_t stop_watching();

// Adds the bytes to the digest, if one is kept.
void receive(const void *bytes, size_t size);

} // namespace benchmark_device
