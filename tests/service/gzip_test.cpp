// SPDX-License-Identifier: MIT
// Compression, and what is not compressed text.
#include "service/common/gzip.h"

#include <gtest/gtest.h>

namespace agent::service {

TEST(Gzip, GivesBackTheText)
{
    std::string long_text;
    for (int number = 0; number < 50000; ++number) {
        long_text += std::to_string(number);
    }
    for (const std::string &text : {std::string(), std::string("{}"), long_text}) {
        const std::string packed = gzip(text);
        EXPECT_EQ(gunzip(packed, text.size()), text);
        if (!text.empty()) {
            EXPECT_EQ(gunzip(packed, text.size() - 1), std::nullopt);
            EXPECT_EQ(gunzip(packed.substr(0, packed.size() - 1), text.size()), std::nullopt);
        }
    }
    EXPECT_LT(gzip(long_text).size(), long_text.size() / 2);
}

TEST(Gzip, RefusesWhatIsNotCompressed)
{
    EXPECT_EQ(gunzip("", 100), std::nullopt);
    EXPECT_EQ(gunzip("{\"result\":0}", 100), std::nullopt);
}

// A small message must not take all memory.
TEST(Gzip, EndsAtTheLimit)
{
    EXPECT_EQ(gunzip(gzip(std::string(50'000'000, ' ')), 1'000'000), std::nullopt);
}

} // namespace agent::service
