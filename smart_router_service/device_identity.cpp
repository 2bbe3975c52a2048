// SPDX-License-Identifier: MIT
// The router's identity: serial number, description, and the version report for the agent.
#include "recipes.h"

#include <string.h>

using namespace smart_router;

char *info_wersion = nullptr;

namespace {

constexpr auto kSnFields = Fields{
    FIELD(SnInfo, MAC),
    FIELD(SnInfo, tslinkstatus),
    FIELD(SnInfo, DeviceType),
};

constexpr auto kSystemFields = Fields{
    FIELD(SystemInfo, SWVersion),  FIELD(SystemInfo, HDVersion), FIELD(SystemInfo, ProductCLass),
    FIELD(SystemInfo, CPUClass),   FIELD(SystemInfo, DEVType),   FIELD(SystemInfo, DEVType1),
    FIELD(SystemInfo, Capability), FIELD(SystemInfo, Card),      FIELD(SystemInfo, UPLink),
    FIELD(SystemInfo, Cardno),     FIELD(SystemInfo, IPV6),      FIELD(SystemInfo, VLANbind),
    FIELD(SystemInfo, LED),        FIELD(SystemInfo, NFC),       FIELD(SystemInfo, VLANCapability),
};

// Copies the printed report to the agent's buffer, in full or not at all.
void keep_version_report(const char *report)
{
    const size_t length = strlen(report);
    if (length >= HG_VERSION_INFO_SIZE) {
        log_debug("json_response_router_version is too long\n");
        return;
    }
    if (info_wersion == nullptr) {
        // The buffer is missing. The text stays wrong because platforms search their logs for it.
        log_debug("the time of json_response_router_version is too long\n");
        return;
    }
    memcpy(info_wersion, report, length + 1);
}

} // namespace

HANDLER(json_get_sn_info, query<devapi_get_sn_info>(kSnFields, "get sn failed"))

HANDLER(json_query_sys_info,
        query<devapi_get_system_info>(kSystemFields, "Get System Info Failed From Gdbus"))

int32_t json_response_router_version(cJSON *obj)
{
    const char *version = text_under(obj, "VersionInfo");
    const bool answered = version != nullptr && version[0] != '\0';

    Reply reply;
    reply.status(answered ? "0" : "1");
    const bool joined = reply.join(obj);
    if (!joined) {
        fail(obj, nullptr);
    }
    // The report is the whole object, so without a status there is no report.
    const PrintedJson report(joined ? cJSON_Print(obj) : nullptr);
    if (report.text() == nullptr) {
        log_debug("cJSON_Print json fail\n");
        return -1;
    }
    LOG_DEBUG("json_response_router_version out = %s\n", report.text());
    keep_version_report(report.text());
    return 0;
}
