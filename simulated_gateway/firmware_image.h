// Firmware images: a header, and behind it the payload to the end of the file.
//
//   offset  bytes
//        0      8  magic, "HGIMAGE" and a NUL
//        8      4  version of the format, 1
//       12      8  length of the payload, at least 1
//       20    256  product: the kind of device that the image is for
//      276     64  version of the firmware
//      340     32  date of the firmware
//      372     32  SHA-256 of all of the above and the payload
//
// Numbers begin with their lowest byte. Texts are UTF-8, and NULs fill them up.
#pragma once

#include "sha256.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace simulated_gateway {

struct ImageHeader {
    static constexpr size_t kSize = 404;
    static constexpr size_t kDigestOffset = 372; // the part in front of it is digested

    std::string product;
    std::string version;
    std::string date;
    uint64_t payload_size = 0;
    std::string sha256; // as bytes

    uint64_t image_size() const { return kSize + payload_size; }

    // The header's bytes. Throws an Error that names the field that does not hold.
    std::string encode() const;
};

// Checks an image that comes in pieces. Every function but the constructor throws an Error as soon
// as it can tell that the image will not hold.
class ImageCheck {
  public:
    // Without a product any is taken.
    ImageCheck(std::optional<std::string> product, uint64_t largest_image);

    void add(std::string_view bytes);

    // How much there is of it, 0 to 99 percent as long as the whole has not been verified.
    int32_t percent() const;

    // The header of an image that is whole.
    ImageHeader finish();

  private:
    void take_header();

    std::optional<std::string> product_;
    uint64_t largest_image_;
    std::string header_bytes_;
    std::optional<ImageHeader> header_; // once all its bytes are there
    uint64_t size_ = 0;
    Sha256 digest_;
};

} // namespace simulated_gateway
