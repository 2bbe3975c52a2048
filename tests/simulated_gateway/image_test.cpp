// SPDX-License-Identifier: MIT
// The format of images, byte by byte.
#include "firmware/image.h"
#include "firmware_fixture.h"
#include "io/text.h"

using namespace simulated_gateway;

namespace {

class ImageTest : public testing::Test {
  protected:
    // What is wrong with the image; empty when it is valid.
    static std::string message_about(const std::string &image, uint64_t largest = 1'000'000)
    {
        ImageCheck check({.product = "HGU-AX3000", .largest = largest});
        try {
            check.add(image);
            check.finish();
            return "";
        } catch (const Error &error) {
            return error.what();
        }
    }
    // An image whose bytes are changed and whose digest is still valid.
    static std::string changed(size_t offset, const std::string &bytes)
    {
        std::string image = make_image();
        image.replace(offset, bytes.size(), bytes);
        Sha256 digest;
        const ImageHeader header;
        digest.add(std::string_view(image).substr(0, header.digest_offset()));
        digest.add(std::string_view(image).substr(header.size()));
        return image.replace(header.digest_offset(), Sha256::kSize, digest.finish());
    }
};

TEST_F(ImageTest, HasTheDocumentedFormat)
{
    const std::string whole = make_image({.payload_size = 0x01020304});
    EXPECT_EQ(whole.substr(0, 20), std::string("HGIMAGE\0\1\0\0\0\4\3\2\1\0\0\0\0", 20));
    EXPECT_STREQ(whole.data() + 20, "HGU-AX3000");
    EXPECT_STREQ(whole.data() + 276, "V3.2.0");
    EXPECT_STREQ(whole.data() + 340, "2026-02-01");
    EXPECT_EQ(whole.size(), 404u + 0x01020304);
    EXPECT_EQ(message_about(whole, whole.size()), "");
}

TEST_F(ImageTest, IsValidInChunksOfAnySize)
{
    const std::string whole = make_image({.payload_size = 700});
    for (size_t piece = 1; piece < whole.size(); piece = piece * 3 + 1) {
        ImageCheck check({.largest = whole.size()});
        int32_t percent = 0;
        for (size_t at = 0; at < whole.size(); at += piece) {
            check.add(std::string_view(whole).substr(at, piece));
            EXPECT_GE(check.percent(), percent);
            percent = check.percent();
        }
        EXPECT_EQ(percent, 99);
        const ImageHeader header = check.finish();
        EXPECT_EQ(header.product, "HGU-AX3000");
        EXPECT_EQ(header.version, "V3.2.0");
        EXPECT_EQ(header.date, "2026-02-01");
        EXPECT_EQ(header.payload_size, 700u);
        EXPECT_EQ(header.sha256, whole.substr(header.digest_offset(), Sha256::kSize));
    }
}

TEST_F(ImageTest, AnInvalidFieldIsNamed)
{
    const struct {
        size_t offset;
        std::string bytes;
        const char *expected_error;
    } wrong_fields[] = {
        {0, "h", "this is not an image: it does not begin with the magic bytes of one"},
        {7, "!", "this is not an image: it does not begin with the magic bytes of one"},
        {8, "\3", "the image has format version 3, not 1 or 2"},
        {11, "\1", "the image has format version 16777217, not 1 or 2"},
        {12, std::string(8, '\0'), "the image has no payload"},
        {12, std::string(8, '\xff'),
         "the image has a payload of 18446744073709551615 bytes; no more than 1000000 bytes are "
         "taken in all"},
        {20, std::string(256, 'x'), "the image is invalid: its product is longer than 255 bytes"},
        {20, "hgu", "the image is for \"hgu-AX3000\", not for \"HGU-AX3000\""},
        {276, std::string(1, '\0'), "the image is invalid: its version is empty"},
        {276, "V3\n",
         "the image is invalid: its version contains control characters or is not UTF-8"},
        {276, "\xff",
         "the image is invalid: its version contains control characters or is not UTF-8"},
        {276, std::string(64, 'x'), "the image is invalid: its version is longer than 63 bytes"},
        {340, std::string(32, 'x'), "the image is invalid: its date is longer than 31 bytes"},
    };
    for (const auto &[offset, bytes, expected_error] : wrong_fields) {
        EXPECT_EQ(message_about(changed(offset, bytes)), expected_error);
    }
}

TEST_F(ImageTest, EveryTruncationIsDetected)
{
    const std::string whole = make_image({.payload_size = 300});
    EXPECT_EQ(message_about(""), "the image is empty");
    for (size_t size = 1; size < whole.size(); ++size) {
        EXPECT_EQ(message_about(whole.substr(0, size)),
                  "the image ends after " + std::to_string(size) + " of " +
                      std::to_string(size < 404 ? 404 : whole.size()) + " bytes");
    }
}

TEST_F(ImageTest, EveryFlippedBitIsDetected)
{
    const std::string whole = make_image({.payload_size = 40});
    for (size_t bit = 0; bit < whole.size() * 8; ++bit) {
        std::string flipped = whole;
        flipped[bit / 8] = static_cast<char>(flipped[bit / 8] ^ (1 << bit % 8));
        EXPECT_NE(message_about(flipped), "") << "bit " << bit;
    }
    std::string damaged = whole;
    damaged.back() = static_cast<char>(~damaged.back());
    EXPECT_EQ(message_about(damaged),
              "the image is damaged: its SHA-256 is not the one in its header");
}

TEST_F(ImageTest, TrailingBytesAreRefused)
{
    const std::string whole = make_image({.payload_size = 300});
    EXPECT_EQ(message_about(whole + "x"),
              "the image continues after the 704 bytes given in its header");
}

TEST_F(ImageTest, TheMaximumSizeIsAcceptedAndALargerOneRefused)
{
    const std::string whole = make_image({.payload_size = 300});
    EXPECT_EQ(message_about(whole, 704), "");
    for (const uint64_t largest : {703, 404, 300, 1}) {
        EXPECT_EQ(message_about(whole, largest),
                  "the image has a payload of 300 bytes; no more than " + std::to_string(largest) +
                      " bytes are taken in all");
    }
}

TEST_F(ImageTest, IsNotBuiltFromInvalidFields)
{
    EXPECT_THROW(make_image({.product = ""}), Error);
    EXPECT_THROW(make_image({.version = std::string(64, 'x')}), Error);
    EXPECT_THROW(make_image({.date = "2026\n"}), Error);
}

} // namespace
