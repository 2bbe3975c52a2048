// SPDX-License-Identifier: MIT
#include "device_answer.h"

#include "protocol_words.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

namespace fuzz {
namespace {

bool contains(const char *text, const char *part)
{
    return strstr(text, part) != nullptr;
}

// The result of success of functions for which it is not 0, and other results of interest.
int32_t plausible_result(const char *function)
{
    if (contains(function, "index_by_mac") || contains(function, "systerm_timetype")) {
        return 1;
    }
    return contains(function, "mesh_type") ? 2 : 0;
}

// By its contract, the plug-in iterates up to these counts, regardless of their size; more than
// this only takes time.
constexpr int32_t kMostWalked = 70;
bool is_walked(const char *function)
{
    static constexpr const char *kWalked[] = {
        "devapi_get_ssid_num", "devapi_get_host_num", "devapi_get_dev_tol_num",
        "devapi_get_duration_num_by_index", "devapi_topo_xml_getinfo"};
    return std::any_of(std::begin(kWalked), std::end(kWalked),
                       [&](const char *name) { return strcmp(name, function) == 0; });
}

constexpr int32_t kNumbers[] = {0,  1,  2,  3,   4,   5,    6,    7,       8,       9,      31,
                                32, 33, 63, 64,  65,  127,  128,  255,     256,     1000,   1001,
                                -1, -2, -8, -33, 100, 4095, 4096, INT_MAX, INT_MIN, 100000, 60};
constexpr int32_t kResults[] = {-1, -2, 1, 2, 3, 4, 5, 8, 1000, -3, INT_MAX, INT_MIN, 255, 7, 0};

constexpr std::string_view kWords[] = {"1",       "0",
                                       "2",       "NULL",
                                       "-1",      "3C:6A:D2:10:4F:20",
                                       "TH_OLV",  "QX2040B",
                                       "-52",     "192.168.1.1",
                                       "5GHz",    "2.4GHz",
                                       "up",      "1767301200",
                                       "64",      "8",
                                       "33",      "Connected",
                                       "3",       "4294967295",
                                       "-60",     "XX-ARVEN-31",
                                       "20:00",   "2147483648",
                                       "Bridged", "WPA2",
                                       "999999",  "0x10",
                                       "1 2 3",   "\xc4\xe3\xba\xc3",
                                       "\"\\\n",  "00:00:00:00:00:00"};

// A plausible text for a field with the name.
std::string_view plausible_text(const char *name, size_t turn)
{
    static constexpr std::string_view kMacs[] = {"3C:6A:D2:10:4F:20", "3C6AD2228140",
                                                 "8C:79:F5:62:1A:09"};
    static constexpr std::string_view kAreas[] = {"XX-ARVEN-31", "TH_OLV", "NULL"};
    if (contains(name, "Mac") || contains(name, "MAC") || contains(name, "view")) {
        return kMacs[turn % std::size(kMacs)];
    }
    if (contains(name, "rea")) {
        return kAreas[turn % std::size(kAreas)];
    }
    if (contains(name, "model")) {
        return turn % 2 == 0 ? "QX2040B" : "HGU-AX3000";
    }
    if (contains(name, "Time")) {
        return "1767300000";
    }
    return kWords[turn % 3];
}

void put(std::span<char> field, std::string_view text)
{
    std::fill(field.begin(), field.end(), '\0');
    text.copy(field.data(), field.size());
}

// The next byte decides how the field is filled.
void fill_by_byte(const char *name, std::span<char> field, size_t turn)
{
    const uint8_t how = answers().byte();
    if (how < 4) {
        put(field, plausible_text(name, turn));
    } else if (how < 6) {
        put(field, "");
    } else if (how < 10) { // the whole field, without a NUL
        std::fill(field.begin(), field.end(), how == 9 ? '9' : static_cast<char>(0x80 + how));
    } else if (how < 20) {
        put(field, answers().text(how % 10 * 4));
    } else if (how < 30) { // the longest text
        put(field, std::string(field.size() - 1, static_cast<char>('a' + how)));
    } else {
        put(field, kWords[how % std::size(kWords)]);
    }
}

} // namespace

DeviceAnswer::DeviceAnswer(const char *function)
    : function_(function), result_(plausible_result(function))
{
    const size_t turn = answers().next_call();
    const uint8_t how = answers().byte();
    const uint8_t more = how >> 4;
    switch (how & 15) {
    case 8:
        content_ = Content::kNothing;
        break;
    case 9:
        content_ = Content::kFull;
        break;
    case 10:
    case 11:
        content_ = Content::kFieldByField;
        break;
    case 12:
        content_ = Content::kNothing;
        result_ = kResults[more % std::size(kResults)];
        break;
    case 13: // a failure that has still written
        result_ = kResults[more % std::size(kResults)];
        content_ = more % 2 == 0 ? Content::kPlausible : Content::kFull;
        break;
    case 14:
        content_ = Content::kEmpty;
        break;
    case 15:
        result_ = more % 2 == 0 ? result_ : answers().number();
        content_ = Content::kRaw;
        break;
    default: // the device works
        if (turn % 13 == 12 && strcmp(function, "devapi_get_ad_base_info") == 0) {
            result_ = 1000; // an entry without a device
        }
        break;
    }
}

void DeviceAnswer::fill_text(const char *name, std::span<char> field)
{
    const size_t turn = answers().next_word();
    switch (content_) {
    case Content::kNothing:
        return;
    case Content::kPlausible:
        put(field, plausible_text(name, turn));
        break;
    case Content::kFull:
        std::fill(field.begin(), field.end(), 'B');
        break;
    case Content::kEmpty:
        put(field, "");
        break;
    case Content::kRaw:
        put(field, answers().text(field.size()));
        break;
    case Content::kFieldByField:
        fill_by_byte(name, field, turn);
        break;
    }
    const std::string text(field.data(), strnlen(field.data(), field.size()));
    if (is_walked(function_) && strtol(text.c_str(), nullptr, 10) > kMostWalked) {
        put(field, std::to_string(kMostWalked));
    }
}

int32_t DeviceAnswer::number()
{
    switch (content_) {
    case Content::kFull:
        return INT_MAX;
    case Content::kEmpty:
        return 0;
    case Content::kRaw:
        return answers().number();
    case Content::kFieldByField:
        return kNumbers[answers().byte() % std::size(kNumbers)];
    default:
        return static_cast<int32_t>(1 + answers().next_word() % 4);
    }
}

int32_t DeviceAnswer::count_or_number(const char *name)
{
    const bool is_count = contains(name, "count") || contains(name, "num");
    const int32_t value = content_ == Content::kPlausible ? (is_count ? 3 : 1) : number();
    return is_walked(function_) ? std::min(value, kMostWalked) : value;
}

size_t DeviceAnswer::amount()
{
    switch (content_) {
    case Content::kNothing:
    case Content::kEmpty:
        return 0;
    case Content::kPlausible:
        return 3;
    default:
        return answers().byte();
    }
}

bool DeviceAnswer::free_text(std::string &text)
{
    switch (content_) {
    case Content::kNothing:
        return false;
    case Content::kEmpty:
        text = "";
        return true;
    case Content::kFull:
        text = std::string(5000, '[');
        return true;
    case Content::kPlausible: // the reply of another router to a query for its devices
        text = find_command("GET_AD_BASE_INFO")->reply;
        return true;
    case Content::kFieldByField:
        text = commands()[answers().byte() % commands().size()].reply;
        return true;
    case Content::kRaw:
        text = answers().text(answers().byte() * 4U);
        return true;
    }
    return false;
}

} // namespace fuzz
