// SPDX-License-Identifier: MIT
// Firmware images: a header, followed by the payload up to the end of the file.
//
//   offset  bytes
//        0      8  magic, "HGIMAGE" and a NUL
//        8      4  version of the format, 1 or 2
//       12      8  length of the payload, at least 1
//       20    256  product: the device type that the image is for
//      276     64  version of the firmware
//      340     32  date of the firmware
//
// and then in format 1, which is not signed,
//
//      372     32  SHA-256 of all of the above and the payload
//
// or in format 2
//
//      372      4  rollback number, which is never less than that of a firmware before
//      376     32  SHA-256 of all of the above and the payload
//      408     64  Ed25519 signature of all of the above
//
// Numbers are little-endian. Texts are UTF-8, padded with NULs. The signature covers the digest
// instead of the payload, so that it can be verified before the payload is downloaded.
#pragma once

#include "firmware/signature.h"
#include "io/sha256.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace simulated_gateway {

struct ImageHeader {
    bool is_signed = false; // of format 2
    std::string product;
    std::string version;
    std::string date;
    uint64_t payload_size = 0;
    uint32_t rollback = 0; // 0 in format 1, which has none
    std::string sha256;    // as raw bytes
    std::string signature; // as raw bytes

    size_t digest_offset() const { return is_signed ? 376 : 372; }
    size_t size() const
    {
        return digest_offset() + Sha256::kSize + (is_signed ? kSignatureSize : 0);
    }
    uint64_t image_size() const { return size() + payload_size; }

    // The header's bytes. With an empty digest or signature they end before it: that part is what
    // is digested or signed. Throws an Error that names the invalid field.
    std::string encode() const;
};

// What an image has to be, besides complete and undamaged.
struct ImageDemands {
    std::optional<std::string> product = {}; // without one any product is accepted
    uint64_t largest = UINT64_MAX;           // total size in bytes
    int64_t least_rollback = 0;
    std::shared_ptr<const VerificationKey> key = nullptr; // without one signatures are not verified
};

// Checks an image piece by piece. Every function but the constructor throws an Error as soon as it
// can tell that the image is invalid.
class ImageCheck {
  public:
    explicit ImageCheck(ImageDemands demands) : demands_(std::move(demands)) {}

    void add(std::string_view bytes);

    // The part received so far, 0 to 99 percent until the whole has been verified.
    int32_t percent() const;

    // The header of a complete image.
    ImageHeader finish();

  private:
    size_t header_size() const;
    void take_header();
    void check_origin(const ImageHeader &header) const;

    ImageDemands demands_;
    std::string header_bytes_;
    std::optional<ImageHeader> header_; // once all its bytes have arrived
    uint64_t size_ = 0;
    Sha256 digest_;
};

} // namespace simulated_gateway
