// SPDX-License-Identifier: MIT
#include "golden.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

void expect_golden(const std::string &file, const std::string &text)
{
    const std::string path = std::string(GOLDEN_FOLDER) + "/" + file;
    if (getenv("RENEW_GOLDEN_FILES") != nullptr) {
        std::ofstream golden(path, std::ios::binary);
        golden << text << std::flush;
        ASSERT_TRUE(golden) << "cannot write " << path;
        GTEST_SKIP() << "wrote " << path;
    }
    std::ifstream golden(path, std::ios::binary);
    ASSERT_TRUE(golden) << "cannot read " << path;
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(golden), {}), text) << path;
}
