// SPDX-License-Identifier: MIT
#include "firmware/image.h"

#include "model/rules.h"

#include <algorithm>
#include <array>

namespace simulated_gateway {
namespace {

constexpr std::string_view kMagic("HGIMAGE\0", 8);
constexpr uint64_t kUnsignedFormat = 1;
constexpr uint64_t kSignedFormat = 2;
constexpr size_t kRollbackOffset = 372;

struct TextField {
    const char *name;
    size_t offset;
    size_t width;
    std::string ImageHeader::*value;
};
constexpr std::array<TextField, 3> kTextFields = {{{"product", 20, 256, &ImageHeader::product},
                                                   {"version", 276, 64, &ImageHeader::version},
                                                   {"date", 340, 32, &ImageHeader::date}}};

[[noreturn]] void refuse_image(const std::string &reason)
{
    throw Error("the image " + reason);
}

void check_field(const TextField &field, const std::string &text)
{
    const std::string wrong = validation_error(text, Text{field.width});
    if (!wrong.empty()) {
        refuse_image(std::string("is invalid: its ") + field.name + " " + wrong);
    }
}

void append_number(std::string &bytes, uint64_t number, size_t width)
{
    for (size_t at = 0; at < width; ++at) {
        bytes += static_cast<char>(number >> (8 * at) & 0xff);
    }
}

uint64_t number_in(std::string_view bytes)
{
    uint64_t number = 0;
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
        number = number << 8 | static_cast<uint8_t>(*byte);
    }
    return number;
}

// At the same offset in every format, so the bytes of the shortest header are enough to read it.
uint64_t format_of(std::string_view header)
{
    return number_in(header.substr(8, 4));
}

} // namespace

std::string ImageHeader::encode() const
{
    std::string bytes(kMagic);
    append_number(bytes, is_signed ? kSignedFormat : kUnsignedFormat, 4);
    append_number(bytes, payload_size, 8);
    for (const TextField &field : kTextFields) {
        check_field(field, this->*field.value);
        bytes += this->*field.value;
        bytes.resize(field.offset + field.width);
    }
    if (is_signed) {
        append_number(bytes, rollback, 4);
    }
    return bytes + sha256 + signature;
}

void ImageCheck::add(std::string_view bytes)
{
    size_ += bytes.size();
    if (!header_) {
        const auto take_up_to = [&](size_t size) {
            const size_t missing = size - std::min(size, header_bytes_.size());
            header_bytes_ += bytes.substr(0, missing);
            bytes.remove_prefix(std::min(bytes.size(), missing));
        };
        take_up_to(ImageHeader().size());
        // A file of another format is recognised by its first bytes, and may be shorter than a
        // header.
        if (!kMagic.starts_with(std::string_view(header_bytes_).substr(0, kMagic.size()))) {
            throw Error("this is not an image: it does not begin with the magic bytes of one");
        }
        take_up_to(header_size());
        if (header_bytes_.size() < header_size()) {
            return;
        }
        take_header();
    }
    if (size_ > header_->image_size()) {
        refuse_image("continues after the " + std::to_string(header_->image_size()) +
                     " bytes given in its header");
    }
    digest_.add(bytes);
}

// As far as it is known yet.
size_t ImageCheck::header_size() const
{
    ImageHeader header;
    header.is_signed =
        header_bytes_.size() >= header.size() && format_of(header_bytes_) == kSignedFormat;
    return header.size();
}

void ImageCheck::take_header()
{
    const std::string_view bytes = header_bytes_;
    const uint64_t format = format_of(bytes);
    if (format != kUnsignedFormat && format != kSignedFormat) {
        refuse_image("has format version " + std::to_string(format) + ", not " +
                     std::to_string(kUnsignedFormat) + " or " + std::to_string(kSignedFormat));
    }
    ImageHeader header;
    header.is_signed = format == kSignedFormat;
    header.payload_size = number_in(bytes.substr(12, 8));
    if (header.payload_size == 0) {
        refuse_image("has no payload");
    }
    const uint64_t largest = demands_.largest;
    if (largest < header.size() || header.payload_size > largest - header.size()) {
        refuse_image("has a payload of " + std::to_string(header.payload_size) +
                     " bytes; no more than " + std::to_string(largest) + " bytes are taken in all");
    }
    for (const TextField &field : kTextFields) {
        const std::string_view text = bytes.substr(field.offset, field.width);
        header.*field.value = text.substr(0, text.find('\0'));
        check_field(field, header.*field.value);
    }
    if (demands_.product && header.product != *demands_.product) {
        refuse_image("is for " + in_quotes(header.product) + ", not for " +
                     in_quotes(*demands_.product));
    }
    if (header.is_signed) {
        header.rollback = static_cast<uint32_t>(number_in(bytes.substr(kRollbackOffset, 4)));
        header.signature = bytes.substr(header.digest_offset() + Sha256::kSize);
    }
    header.sha256 = bytes.substr(header.digest_offset(), Sha256::kSize);
    check_origin(header);
    digest_.add(bytes.substr(0, header.digest_offset()));
    header_ = std::move(header);
}

void ImageCheck::check_origin(const ImageHeader &header) const
{
    if (demands_.key && !header.is_signed) {
        refuse_image("is not signed");
    }
    const std::string_view bytes = header_bytes_;
    if (demands_.key &&
        !demands_.key->verifies(header.signature,
                                bytes.substr(0, header.digest_offset() + Sha256::kSize))) {
        refuse_image("is invalid: its signature is not by the firmware key");
    }
    if (header.rollback < demands_.least_rollback) {
        refuse_image("has the rollback number " + std::to_string(header.rollback) +
                     ", which is less than the running firmware's " +
                     std::to_string(demands_.least_rollback));
    }
}

int32_t ImageCheck::percent() const
{
    return header_ ? static_cast<int32_t>(99 * size_ / header_->image_size()) : 0;
}

ImageHeader ImageCheck::finish()
{
    if (size_ == 0) {
        refuse_image("is empty");
    }
    const uint64_t whole = header_ ? header_->image_size() : header_size();
    if (size_ < whole) {
        refuse_image("ends after " + std::to_string(size_) + " of " + std::to_string(whole) +
                     " bytes");
    }
    if (digest_.finish() != header_->sha256) {
        refuse_image("is damaged: its SHA-256 is not the one in its header");
    }
    return *header_;
}

} // namespace simulated_gateway
