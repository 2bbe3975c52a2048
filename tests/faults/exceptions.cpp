// SPDX-License-Identifier: MIT
#include "exceptions.h"

#include <array>

namespace {

struct Row {
    std::string_view subject; // a command; or a subject, where it is another request
    Rule rule;
    std::string_view key; // empty for all
    const char *why;
    bool is_used = false;
};

constexpr char kReportedInPlace[] = "the device reports its choice in the same field";
constexpr char kFilledByDevice[] = "the record contains what the device has left in it";
constexpr char kEndOfGuests[] = "the end is computed from it";
constexpr char kReasonOfMinusOne[] = "the reply has a reason only for -1";
constexpr char kOneOfSome[] = "any other text is refused";
constexpr char kToUpperRadio[] = "it is also passed to the 5 GHz radio, uncut";
constexpr char kTurnsOff[] = "the number at its start counts, and a mesh does not allow 0";
constexpr char kRules[] = "the rules in the request decide the result";

Row rows[] = {
    {"GET_TSLINK_TOPOLOGY_INFO", Rule::kResult, "devapi_get_dev_tol_num", kReasonOfMinusOne},
    {"GET_WIFI_INFO", Rule::kCut, "SSIDIndex", "a text that is not a number is refused"},
    {"GET_WIFI_INFO", Rule::kEmptyText, "SSIDIndex", "it has a separate reply"},
    {"GET_WIFI_LIST_INFO", Rule::kZeroed, "devapi_get_wifi_stactrl", "it begins at -1"},
    {"HG_WIFI_CHANNEL_POWER_OPTIMIZATION", Rule::kEmptyText, "", kReportedInPlace},
    {"HG_WIFI_OPTIMIZATION", Rule::kEmptyText, "", kReportedInPlace},
    {"SET_GREENNET_DEVICE_LIST", Rule::kCallOrder, "",
     "only the second device is new to the table"},
    {"SET_GREENNET_DEVICE_LIST", Rule::kCut, "", kFilledByDevice},
    {"SET_GREENNET_DEVICE_LIST", Rule::kEmptyText, "", kFilledByDevice},
    {"SET_GREENNET_NOTIFY_ENABLE", Rule::kCut, "Mac", kFilledByDevice},
    {"SET_GREENNET_NOTIFY_ENABLE", Rule::kEmptyText, "Mac", kFilledByDevice},
    {"SET_HG_GUEST_SSID", Rule::kCut, "ContinueTime", kEndOfGuests},
    {"SET_HG_GUEST_SSID", Rule::kCut, "HourTime", kEndOfGuests},
    {"SET_HG_GUEST_SSID", Rule::kEmptyText, "ContinueTime", kEndOfGuests},
    {"SET_HG_GUEST_SSID", Rule::kEmptyText, "HourTime", kEndOfGuests},
    {"SET_LED_STATUS", Rule::kOtherType, "", "the device refuses a value that is not a string"},
    {"SET_QOS_CLASSIFICATION_INFO", Rule::kEmptyText, "Id", kReportedInPlace},
    {"SET_QOS_CLASSIFICATION_INFO", Rule::kZeroed, "QosRule.type_count",
     "it is the length of the request's list"},
    {"SET_QOS_CLASSIFICATION_INFO_to_delete", Rule::kCut, "Action", kOneOfSome},
    {"SET_QOS_CLASSIFICATION_INFO_to_delete", Rule::kEmptyText, "Action", kOneOfSome},
    {"SET_TSLINK_SSID", Rule::kCut, "Enable", kOneOfSome},
    {"SET_TSLINK_SSID", Rule::kEmptyText, "Enable", kOneOfSome},
    {"SET_UPLINK_WIFI_INFO", Rule::kNoError, "", "its trace line has the level of errors"},
    {"SET_UPLINK_WIFI_INFO", Rule::kEmptyText, "SSID", kReportedInPlace},
    {"SET_WIFI_INFO", Rule::kCut, "PowerLevel", kToUpperRadio},
    {"SET_WIFI_INFO", Rule::kEmptyText, "PowerLevel", kToUpperRadio},
    {"SET_WIFI_INFO_LIST", Rule::kCut, "WIFILIST.Enable", kTurnsOff},
    {"SET_WIFI_INFO_LIST", Rule::kEmptyText, "WIFILIST.Enable", kTurnsOff},
    {"SET_WIFI_INFO_LIST", Rule::kEmptyText, "FastRoaming", "the setting stays unchanged"},
    {"SET_WIFI_SLEEP_SCHEDULE", Rule::kCut, "", kFilledByDevice},
    {"SET_WIFI_SLEEP_SCHEDULE", Rule::kZeroed, "", kFilledByDevice},
    {"SET_WIFI_SLEEP_SCHEDULE", Rule::kEmptyText, "", kFilledByDevice},
    {"UPDATE_IMMEDIATE", Rule::kAbsentKey, "Image", "without an image no worker is started"},
    {"UPDATE_IMMEDIATE", Rule::kOtherCase, "Image", "without an image no worker is started"},
    {"UPDATE_IMMEDIATE", Rule::kAbsentKey, "Image.UpdateUrl", kRules},
    {"UPDATE_IMMEDIATE", Rule::kOtherCase, "Image.UpdateUrl", kRules},
    {"UPDATE_IMMEDIATE", Rule::kOtherType, "Image", kRules},
    {"UPDATE_IMMEDIATE", Rule::kOtherType, "Image.UpdateUrl", kRules},
};

bool fits(const Row &row, const Subject &subject, Rule rule)
{
    return row.rule == rule && (row.subject == subject.name || row.subject == subject.command);
}

} // namespace

const char *exception(const Subject &subject, Rule rule, const std::string &key)
{
    for (Row &row : rows) {
        if (fits(row, subject, rule) && (row.key.empty() || row.key == key)) {
            row.is_used = true;
            return row.why;
        }
    }
    return nullptr;
}

std::string stale_exceptions(const Subject &subject, Rule rule)
{
    std::string stale;
    for (const Row &row : rows) {
        if (fits(row, subject, rule) && !row.is_used) {
            stale += " " + std::string(row.key) + ": " + row.why + ";";
        }
    }
    return stale;
}
