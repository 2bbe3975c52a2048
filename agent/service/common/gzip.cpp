// SPDX-License-Identifier: MIT
#include "service/common/gzip.h"

#include <new>
#include <zlib.h>

namespace agent::service {

std::string gzip(std::string_view text)
{
    constexpr int kGzipFormat = 16; // added to the window's bits
    constexpr int kMemoryLevel = 8;
    z_stream stream = {};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, MAX_WBITS + kGzipFormat, kMemoryLevel,
                     Z_DEFAULT_STRATEGY) != Z_OK) {
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

} // namespace agent::service
