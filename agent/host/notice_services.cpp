// SPDX-License-Identifier: MIT
// The functions that the agent provides for notices to the app.
#include "host/notice_receiver.h"
#include "smart_router_service/host_agent.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <openssl/evp.h>

char *base64_encode(const char *text)
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

void getmd5(const char *text, char *out)
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

int32_t kaa_device_notice(const char *text)
{
    return agent::receive_notice(text);
}
