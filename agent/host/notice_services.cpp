// SPDX-License-Identifier: MIT
#include "host/notice_services.h"

#include "host/notice_receiver.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <openssl/evp.h>

namespace agent {

char *base64_of(const char *text)
{
    const size_t length = text != nullptr ? strlen(text) : 0;
    if (text == nullptr || length > INT_MAX) {
        return nullptr;
    }
    auto *encoded = static_cast<unsigned char *>(malloc((length + 2) / 3 * 4 + 1));
    if (encoded != nullptr) {
        EVP_EncodeBlock(encoded, reinterpret_cast<const unsigned char *>(text),
                        static_cast<int>(length));
    }
    return reinterpret_cast<char *>(encoded);
}

void write_md5(const char *text, char *out)
{
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned length = 0;
    out[0] = '\0';
    if (text == nullptr ||
        EVP_Digest(text, strlen(text), digest, &length, EVP_md5(), nullptr) != 1) {
        return;
    }
    for (unsigned at = 0; at < length; ++at, out += 2) {
        snprintf(out, 3, "%02x", digest[at]);
    }
}

int32_t pass_notice_on(const char *text)
{
    return receive_notice(text);
}

} // namespace agent
