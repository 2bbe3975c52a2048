// SPDX-License-Identifier: MIT
// Notices to the phone app, in the envelope that the platform forwards.
#include "recipes.h"

#include <stdio.h>
#include <time.h>

using namespace smart_router;

namespace {

constexpr char kName[] = "json_msg_notice_to_app";

// A text that the host has allocated; null when it could not.
class HostText {
  public:
    explicit HostText(char *text) : text_(text) {}
    ~HostText() { free_str_buf(&text_); }
    HostText(const HostText &) = delete;
    HostText &operator=(const HostText &) = delete;

    const char *text() const { return text_; }

  private:
    char *text_;
};

using TimeText = char[32];

// Writes the local time, such as "20250107090503". Result: false when it cannot be determined.
bool tell_time(TimeText &text)
{
    const time_t now = time(nullptr);
    struct tm local;
    tzset(); // the user may have moved the router to another time zone since it started
    if (now == static_cast<time_t>(-1) || localtime_r(&now, &local) == nullptr) {
        return false;
    }
    // The last years of a 64-bit clock exceed an int.
    const unsigned year = static_cast<unsigned>(local.tm_year) + 1900;
    snprintf(text, sizeof text, "%u%02d%02d%02d%02d%02d", year, local.tm_mon + 1, local.tm_mday,
             local.tm_hour, local.tm_min, local.tm_sec);
    return true;
}

using MacText = char[32];

// Writes the router's MAC address without colons, as the host converts the text from the device.
// cppcheck-suppress constParameter ; the host writes it
void tell_mac(MacText &text)
{
    MacText mac = "";
    devapi_get_iotagtd_device_mac(mac, sizeof mac);
    mac[sizeof mac - 1] = '\0';
    mac_form_translate(mac, HG_MAC_BARE, text);
}

// The envelope as printed JSON, which the caller frees with cJSON_free(). Null, with a line in the
// log, when it could not be built.
char *print_envelope(const char *message, const char *plugin_name)
{
    const HostText body(base64_encode(message));
    if (body.text() == nullptr) {
        LOG_ERROR("%s:base64_encode err\n", kName);
        return nullptr;
    }
    char md5[64] = "";
    getmd5(body.text(), md5);
    TimeText moment;
    if (!tell_time(moment)) {
        LOG_ERROR("%s:get time err\n", kName);
        return nullptr;
    }
    MacText mac = "";
    tell_mac(mac);

    Reply envelope;
    envelope.text("RPCMethod", "Push");
    envelope.text("Plugin_Name", plugin_name);
    envelope.text("time", moment);
    envelope.text("MD5", md5, sizeof md5);
    envelope.text("mac", mac, sizeof mac);
    envelope.text("Message", body.text());
    char *printed = envelope.print();
    if (printed == nullptr) {
        LOG_ERROR("%s:create json err\n", kName);
    }
    return printed;
}

} // namespace

int32_t json_msg_notice_to_app(const char *message, const char *plugin_name)
{
    if (message == nullptr || plugin_name == nullptr) {
        LOG_ERROR("%s:param is null\n", kName);
        return -1;
    }
    const PrintedJson envelope(print_envelope(message, plugin_name));
    if (envelope.text() == nullptr) {
        return -1;
    }
    LOG_DEBUG("notice to app:\n%s\n", envelope.text());
    const int32_t result = kaa_device_notice(envelope.text());
    if (result != 0) {
        log_error("kaa_device_notice failed!!!\n");
    }
    return result;
}
