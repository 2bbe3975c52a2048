// SPDX-License-Identifier: MIT
// The services of the host agent: the log is formatted and discarded, the rest is as simple as
// possible.
#include "smart_router_service/host_agent.h"

#include <cctype>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

void ts_mod_log_printf(const char *, int32_t, const char *format, ...)
{
    // Formatted, so that a text without a NUL is detected.
    static std::string line(1024, '\0');
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(line.data(), line.size(), format, arguments);
    va_end(arguments);
    if (length < 0) {
        abort();
    }
}

char *base64_encode(const char *text)
{
    constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    if (text == nullptr) {
        return nullptr;
    }
    const std::string_view bytes = text;
    std::string encoded;
    for (size_t at = 0; at < bytes.size(); at += 3) {
        unsigned group = 0;
        for (size_t of = 0; of < 3; ++of) {
            group =
                group << 8 | (at + of < bytes.size() ? static_cast<uint8_t>(bytes[at + of]) : 0U);
        }
        for (size_t of = 0; of < 4; ++of) {
            encoded += at + of <= bytes.size() ? digits[group >> (18 - 6 * of) & 63] : '=';
        }
    }
    return strdup(encoded.c_str());
}

void getmd5(const char *, char *out)
{
    memcpy(out, "d41d8cd98f00b204e9800998ecf8427e", HG_MD5_TEXT_SIZE);
}

void mac_form_translate(const char *in, int32_t form, char *out)
{
    std::string digits;
    for (; in != nullptr && *in != '\0' && digits.size() < 12; ++in) {
        if (isxdigit(static_cast<unsigned char>(*in)) != 0) {
            digits += static_cast<char>(toupper(static_cast<unsigned char>(*in)));
        }
    }
    std::string text;
    for (size_t at = 0; digits.size() == 12 && at < 12; at += 2) {
        text += (form == HG_MAC_WITH_COLONS && at > 0 ? ":" : "") + digits.substr(at, 2);
    }
    memcpy(out, text.c_str(), text.size() + 1);
}

void ts_sys_mgr_get_brmac(char *mac)
{
    memcpy(mac, "3C:6A:D2:10:4F:20", HG_MAC_TEXT_SIZE);
}

int32_t dev_is_exist(int32_t index)
{
    return index % 4 == 3 ? 1 : 0;
}

int32_t kaa_device_notice(const char *text)
{
    return strlen(text) % 2 == 0 ? 0 : -1;
}

int32_t kaa_update_profile_info()
{
    return 0;
}

void free_str_buf(char **text)
{
    free(*text);
    *text = nullptr;
}
