// SPDX-License-Identifier: MIT
#include "service/common/gzip.h"

#include <new>
#include <utility>
#include <zlib.h>

namespace agent::service {

namespace {

constexpr int kGzipFormat = 16; // added to the window's bits

} // namespace

std::string gzip(std::string_view text)
{
    constexpr int kMemoryLevel = 8;
    z_stream stream = {};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, MAX_WBITS + kGzipFormat,
                     kMemoryLevel, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::bad_alloc();
    }
    std::string packed(deflateBound(&stream, text.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH); // has room for all, so it succeeds
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
}

std::optional<std::string> gunzip(std::string_view packed, size_t max_bytes)
{
    constexpr size_t kStep = 64UL * 1024;
    z_stream stream = {};
    if (inflateInit2(&stream, MAX_WBITS + kGzipFormat) != Z_OK) {
        throw std::bad_alloc();
    }
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    std::string text;
    int result = Z_OK;
    while (result == Z_OK && text.size() <= max_bytes) {
        const size_t size = text.size();
        text.resize(size + kStep);
        stream.next_out = reinterpret_cast<Bytef *>(text.data() + size);
        stream.avail_out = kStep;
        result = inflate(&stream, Z_NO_FLUSH);
        text.resize(stream.total_out);
    }
    inflateEnd(&stream);
    return result == Z_STREAM_END && text.size() <= max_bytes ? std::optional(std::move(text))
                                                              : std::nullopt;
}

} // namespace agent::service
