#include "firmware_image.h"

#include "rules.h"

#include <algorithm>
#include <array>

namespace simulated_gateway {
namespace {

constexpr std::string_view kMagic("HGIMAGE\0", 8);
constexpr uint64_t kFormatVersion = 1;

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
    const std::string wrong = complaint(text, Text{field.width});
    if (!wrong.empty()) {
        refuse_image(std::string("does not hold: its ") + field.name + " " + wrong);
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

} // namespace

std::string ImageHeader::encode() const
{
    std::string bytes(kMagic);
    append_number(bytes, kFormatVersion, 4);
    append_number(bytes, payload_size, 8);
    for (const TextField &field : kTextFields) {
        check_field(field, this->*field.value);
        bytes += this->*field.value;
        bytes.resize(field.offset + field.width);
    }
    return bytes + sha256;
}

ImageCheck::ImageCheck(std::optional<std::string> product, uint64_t largest_image)
    : product_(std::move(product)), largest_image_(largest_image)
{
}

void ImageCheck::add(std::string_view bytes)
{
    size_ += bytes.size();
    if (!header_) {
        const size_t part = std::min(bytes.size(), ImageHeader::kSize - header_bytes_.size());
        header_bytes_ += bytes.substr(0, part);
        bytes.remove_prefix(part);
        // A file of another kind shows in its first bytes, and may be shorter than a header.
        if (!kMagic.starts_with(std::string_view(header_bytes_).substr(0, kMagic.size()))) {
            refuse_image("is none: it does not open with an image's magic");
        }
        if (header_bytes_.size() < ImageHeader::kSize) {
            return;
        }
        take_header();
    }
    if (size_ > header_->image_size()) {
        refuse_image("goes on behind the " + std::to_string(header_->image_size()) +
                     " bytes that its header tells of");
    }
    digest_.add(bytes);
}

void ImageCheck::take_header()
{
    const std::string_view bytes = header_bytes_;
    const uint64_t format = number_in(bytes.substr(8, 4));
    if (format != kFormatVersion) {
        refuse_image("has format version " + std::to_string(format) + ", not " +
                     std::to_string(kFormatVersion));
    }
    ImageHeader header;
    header.payload_size = number_in(bytes.substr(12, 8));
    if (header.payload_size == 0) {
        refuse_image("has no payload");
    }
    if (largest_image_ < ImageHeader::kSize ||
        header.payload_size > largest_image_ - ImageHeader::kSize) {
        refuse_image("has a payload of " + std::to_string(header.payload_size) +
                     " bytes; no more than " + std::to_string(largest_image_) +
                     " bytes are taken in all");
    }
    for (const TextField &field : kTextFields) {
        const std::string_view text = bytes.substr(field.offset, field.width);
        header.*field.value = text.substr(0, text.find('\0'));
        check_field(field, header.*field.value);
    }
    if (product_ && header.product != *product_) {
        refuse_image("is for " + in_quotes(header.product) + ", not for " + in_quotes(*product_));
    }
    header.sha256 = bytes.substr(ImageHeader::kDigestOffset);
    digest_.add(bytes.substr(0, ImageHeader::kDigestOffset));
    header_ = std::move(header);
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
    const uint64_t whole = header_ ? header_->image_size() : ImageHeader::kSize;
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
