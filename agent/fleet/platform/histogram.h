// SPDX-License-Identifier: MIT
// Times in buckets whose width grows with the time, so that any percentile from a microsecond to
// hours is known to within 1/64 at a fixed cost: one addition for a time, 16 KB for a histogram,
// and histograms can be added.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdint>

namespace agent::fleet::platform {

class Histogram {
  public:
    using Time = std::chrono::microseconds;

    void add(Time time)
    {
        const auto value = static_cast<uint64_t>(std::max<int64_t>(time.count(), 0));
        ++buckets_[bucket_of(value)];
        ++count_;
        sum_ += value;
        largest_ = std::max(largest_, value);
    }

    void add(const Histogram &other)
    {
        for (size_t at = 0; at < buckets_.size(); ++at) {
            buckets_[at] += other.buckets_[at];
        }
        count_ += other.count_;
        sum_ += other.sum_;
        largest_ = std::max(largest_, other.largest_);
    }

    uint64_t count() const { return count_; }
    Time sum() const { return Time(sum_); }
    Time largest() const { return Time(largest_); }

    // The time that this share of all does not exceed, rounded up to the end of its bucket; 0 if
    // there is none.
    Time percentile(double share) const
    {
        const auto wanted =
            static_cast<uint64_t>(std::ceil(share / 100 * static_cast<double>(count_)));
        uint64_t seen = 0;
        for (size_t at = 0; at < buckets_.size(); ++at) {
            seen += buckets_[at];
            if (seen > 0 && seen >= wanted) {
                return Time(std::min(end_of(at), largest_));
            }
        }
        return Time(0);
    }

    // How many are certainly not longer than the limit.
    uint64_t count_up_to(Time limit) const
    {
        uint64_t seen = 0;
        for (size_t at = 0; at < buckets_.size(); ++at) {
            if (end_of(at) > static_cast<uint64_t>(limit.count())) {
                break;
            }
            seen += buckets_[at];
        }
        return seen;
    }

  private:
    // Values below 2^kFine have a bucket each; from there on each power of two has 2^kFine / 2.
    static constexpr unsigned kFine = 7;
    static constexpr unsigned kBits = 36; // 19 hours
    static constexpr uint64_t kHalf = 1U << (kFine - 1);

    static size_t bucket_of(uint64_t value)
    {
        value = std::min(value, (uint64_t{1} << kBits) - 1);
        const auto bits = static_cast<unsigned>(std::bit_width(value));
        if (bits <= kFine) {
            return value;
        }
        const unsigned shift = bits - kFine;
        return shift * kHalf + (value >> shift);
    }

    // The largest value in the bucket.
    static uint64_t end_of(size_t bucket)
    {
        if (bucket < 2 * kHalf) {
            return bucket;
        }
        const size_t shift = bucket / kHalf - 1;
        const uint64_t mantissa = bucket - shift * kHalf;
        return ((mantissa + 1) << shift) - 1;
    }

    std::array<uint64_t, (kBits - kFine + 2) *kHalf> buckets_ = {};
    uint64_t count_ = 0;
    uint64_t sum_ = 0;
    uint64_t largest_ = 0;
};

} // namespace agent::fleet::platform
