// SPDX-License-Identifier: MIT
// A hostile server: after any answer, the download ends and has changed nothing.
#include "firmware_fixture.h"

#include <algorithm>
#include <iterator>

namespace {

struct Lie {
    const char *name; // of lying_answers.py
    const char *reason;
    const char *limit = nullptr; // where only a time limit ends it
};

constexpr char kStalls[] = "STALL_TIMEOUT";
constexpr char kGoesOn[] = "TRANSFER_TIMEOUT";
constexpr char kTooSlow[] = "Operation too slow";
constexpr char kTooLong[] = "Operation timed out";
constexpr char kNoHttp[] = "Received HTTP/0.9 when not allowed";
constexpr char kSurplus[] = "the server sends more than 4194304 bytes in addition to its response";
constexpr char kTooManyHeaders[] = "Too large response headers";

constexpr Lie kLies[] = {
    {"nothing", "Empty reply from server"},
    {"reset", "Connection reset by peer"},
    {"reset-half-way", "Connection reset by peer"},
    {"silence", kTooSlow, kStalls},
    {"silence-half-way", kTooSlow, kStalls},
    {"cut-headers", "the image is empty"},
    {"truncated", "transfer closed with 1 bytes remaining to read"},
    {"no-headers", kNoHttp},
    {"tls-alert", kNoHttp},
    {"version-from-the-future", "Unsupported HTTP version"},
    {"protocol-switch", "101"},
    {"announces-less", "the image ends after 50202 of 100404 bytes"},
    {"announces-more", "transfer closed with 1000 bytes remaining to read"},
    {"negative-length", "Invalid Content-Length: value"},
    {"a-terabyte", "Maximum file size exceeded"},
    {"length-beyond-64-bits", "Maximum file size exceeded"},
    {"image-without-end", "the image continues after the 100404 bytes"},
    {"nonsense-without-end", "this is not an image"},
    {"chunk-without-size", "Illegal or missing hexadecimal sequence"},
    {"endless-size-of-a-chunk", "Too long hexadecimal number"},
    {"endless-extension-of-a-chunk", kSurplus},
    {"cut-chunk", "transfer closed with outstanding read data remaining"},
    {"endless-trailers", kSurplus},
    {"endless-headers", kTooManyHeaders},
    {"endless-header", "Out of memory"}, // as libcurl says of a line without an end
    {"endless-continues", kTooManyHeaders},
    {"compressed", "this is not an image"},
    {"redirect-loop", "Maximum (5) redirects followed"},
    {"redirect-to-nowhere", "the server answers with HTTP status 302"},
    {"redirect-to-a-file", "not supported or disabled"},
    {"redirect-to-another-protocol", "not supported or disabled"},
    {"redirect-with-endless-chunks", kSurplus},
    {"redirect-that-drips", kTooLong, kGoesOn},
    {"range-that-nobody-asked-for", "the server answers with HTTP status 206"},
    {"range-not-satisfiable", "the server answers with HTTP status 416"},
    {"drip", kTooLong, kGoesOn},
    {"drip-of-headers", kTooLong, kGoesOn},
};

static_assert(std::size(kLies) >= 35);

class LyingServerTest : public FirmwareTest, public testing::WithParamInterface<Lie> {
  protected:
    std::string address() const { return server_.address(std::string("lie/") + GetParam().name); }
};

TEST_P(LyingServerTest, EndsAndChangesNothing)
{
    if (GetParam().limit != nullptr) {
        set_limit(GetParam().limit, "1");
    }
    ASSERT_EQ(open_at(kTime, options()), "");
    ASSERT_EQ(devapi_download_image(("file://" + path("new.image")).c_str(), 0), 0) << reason();
    const std::string state = read(path("state"));

    EXPECT_THAT(refusal(address()), HasSubstr(GetParam().reason));
    EXPECT_EQ(devapi_flash_update_image(address().c_str()), -1);
    EXPECT_EQ(read(path("state")), state);
    EXPECT_EQ(read(path("state.firmware/downloaded.image")), make_image());

    EXPECT_EQ(refusal(""), "the address is empty") << "another download is refused";
    EXPECT_EQ(version_after_flash(), "V3.2.0");
}

INSTANTIATE_TEST_SUITE_P(Every, LyingServerTest, testing::ValuesIn(kLies), [](const auto &lie) {
    std::string name = lie.param.name;
    std::ranges::replace(name, '-', '_');
    return name;
});

} // namespace
