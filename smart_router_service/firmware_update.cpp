// SPDX-License-Identifier: MIT
// Firmware: the running version, and the commands that download and flash an image. Downloading and
// flashing take minutes, so most of them start a worker and reply at once.
#include "firmware_update.h"

#include <pthread.h>

using namespace smart_router;

namespace {

constexpr auto kUpdateStatus = Fields{
    FIELD_AS(UpdateStatusInfo, Name, "name"), FIELD(UpdateStatusInfo, HWVersion),
    FIELD(UpdateStatusInfo, FWVersion),       FIELD(UpdateStatusInfo, FWDATA),
    FIELD(UpdateStatusInfo, DeviceType),      FIELD(UpdateStatusInfo, AreaCode),
};

// The reply to the app for each result of the starter.
const char *starter_text(int32_t result)
{
    switch (result) {
    case kNoAddress:
        return "url is null";
    case kBusy:
        return "dev is dowing image now";
    default:
        return "failed to create down image thread";
    }
}

// These commands compare their keys case-sensitively.
cJSON *item_of(const cJSON *obj, const char *key)
{
    return cJSON_GetObjectItemCaseSensitive(obj, key);
}

bool is_flash_now(const char *update)
{
    return strcmp(update, "1") == 0;
}

// Starts the worker with the URL and replies. The item that contains the URL is removed from obj,
// but not before the worker has a copy of the URL.
int32_t start_and_answer(cJSON *obj, cJSON *holder, const char *url, Reply &success)
{
    const int32_t result = success.complete() ? start_prthead_dowing_image(url) : kNoAddress;
    remove_key(obj, holder);
    if (result == 0) {
        success.join(obj);
        return result;
    }
    Reply refused;
    refused.text("updateResult", "-1");
    refused.status("1");
    refused.text(kFailReason, starter_text(result));
    answer(obj, refused, starter_text(result));
    return result;
}

// The reason why the platform's update cannot be started; null when it can, with the URL in *url.
const char *platform_update_refusal(const cJSON *image, const char **url)
{
    UpdateStatusInfo status = {};
    if (devapi_get_update_status_info(&status) != 0) {
        return "get update status error";
    }
    if (image == nullptr) {
        return "json no Image";
    }
    if (item_of(image, "Version") == nullptr) {
        return "get version error";
    }
    *url = text_of(item_of(image, "UpdateUrl"));
    if (*url == nullptr) {
        return "get UpdateUrl error";
    }
    // A platform that has nothing newer sends the running version instead of a URL.
    return holds(status.FWVersion, *url) ? "the same version error" : nullptr;
}

} // namespace

int32_t json_hg_get_update_status(cJSON *obj)
{
    constexpr const char *kFailure = "get update status info failed";
    UpdateStatusInfo status = {};
    const int32_t result = devapi_get_update_status_info(&status);
    if (result != 0) {
        fail(obj, kFailure);
        return result;
    }
    SuccessReply reply;
    reply.text("up_status", "0");
    reply.fields(kUpdateStatus, &status);
    return answer(obj, reply, kFailure); // GET_UPDATE_STATUS uses this result
}

int32_t json_hg_image_down_and_upgrade(cJSON *image, char *failreason)
{
    if (failreason == nullptr) {
        log_error("out_failreason is null!\n");
        return -1;
    }
    const char *url = text_of(item_of(image, "UpdateUrl"));
    if (url == nullptr) {
        copy_text(failreason, kUpdateFailureSize, "json no UpdateUrl");
        return -1;
    }
    const int32_t result = start_prthead_dowing_image(url);
    if (result != 0) {
        copy_text(failreason, kUpdateFailureSize, starter_text(result));
        return -1;
    }
    return 0;
}

int32_t json_dpi_features_update(cJSON *, char *)
{
    return 0;
}

int32_t json_dpi_http_features_update()
{
    return 0;
}

int32_t json_update_immediately(cJSON *obj)
{
    char reason[kUpdateFailureSize] = "";
    cJSON *image = item_of(obj, "Image");
    cJSON *dpi = item_of(obj, "Dpi");
    cJSON *dpi_http = item_of(obj, "DpiHttp");
    SuccessReply success;
    int32_t result = 0;
    if (!success.complete()) {
        copy_text(reason, starter_text(kNoAddress));
        result = -1;
    } else {
        // The last part of an update decides the result, even if the image failed.
        if (image != nullptr) {
            result = json_hg_image_down_and_upgrade(image, reason);
        }
        if (dpi != nullptr) {
            result = json_dpi_features_update(dpi, reason);
        }
        if (dpi_http != nullptr) {
            result = json_dpi_http_features_update();
        }
    }
    remove_key(obj, image);
    remove_key(obj, dpi);
    remove_key(obj, dpi_http);
    conclude(obj, success, result == -1, reason);
    return result;
}

int32_t json_update_all_from_platform(cJSON *obj)
{
    cJSON *image = item_of(obj, "Image");
    const char *url = nullptr;
    const char *refusal = platform_update_refusal(image, &url);
    if (refusal != nullptr) {
        // The platform evaluates the last reason; the first one is for people.
        Reply refused;
        refused.text(kFailReason, refusal);
        refused.status("1");
        refused.text(kFailReason, "handle pack error");
        remove_key(obj, image);
        answer(obj, refused, refusal);
        return -1;
    }
    SuccessReply success;
    success.text("updateResult", "0");
    success.text(kFailReason, "success");
    return start_and_answer(obj, image, url, success);
}

int32_t json_image_download(cJSON *obj)
{
    remove_key(obj, item_of(obj, "ChildRouter")); // child routers download their images themselves
    cJSON *router = item_of(obj, "MainRouter");
    if (router == nullptr) {
        return refuse(obj, "Get mainrouter error");
    }
    const char *url = text_of(item_of(router, "UpdateUrl"));
    if (url == nullptr) {
        remove_key(obj, router);
        return refuse(obj, "Get UpdateUrl null");
    }
    SuccessReply success;
    success.text("updateResult", "0");
    return start_and_answer(obj, router, url, success);
}

int32_t json_hg_image_download(cJSON *obj)
{
    constexpr const char *kFailure = "hg download image failed";
    cJSON *item = item_of(obj, "UpdateUrl");
    if (text_of(item) == nullptr) {
        return refuse(obj, "json_url node null");
    }
    UpdateStatusInfo status = {};
    if (devapi_get_update_status_info(&status) != 0) { // no update without a known status
        return refuse(obj, "get update status error");
    }
    SuccessReply success;
    if (!can_conclude(obj, success, kFailure)) {
        return -1;
    }
    if (pthread_mutex_trylock(&downimagelock) != 0) {
        return refuse(obj, "update status maybe downloading or upgrading");
    }
    const int32_t result = devapi_download_image(text_of(item), 0);
    if (result == 0) {
        remove_key(obj, item);
    }
    conclude(obj, success, result != 0, kFailure);
    pthread_mutex_unlock(&downimagelock);
    return result;
}

int32_t json_image_update(cJSON *obj)
{
    cJSON *router = item_of(obj, "MainRouter");
    if (router == nullptr) {
        return refuse(obj, "Get MainRouter error");
    }
    const char *update = text_of(item_of(router, "Update"));
    const char *failure = update == nullptr ? "Get Update error" : "update image failed";
    SuccessReply success;
    int32_t result = update != nullptr && success.complete() ? 0 : -1;
    if (result == 0 && is_flash_now(update)) {
        if (pthread_mutex_trylock(&downimagelock) != 0) {
            failure = "update status maybe downloding or upgrading";
            result = -1;
        } else {
            result = devapi_update_image();
            pthread_mutex_unlock(&downimagelock);
        }
    }
    remove_key(obj, router);
    conclude(obj, success, result != 0, failure);
    return result;
}

int32_t json_hg_image_update(cJSON *obj)
{
    constexpr const char *kFailure = "gghelper_update_image failed";
    const char *update = text_of(item_of(obj, "Update"));
    if (update == nullptr) {
        return refuse(obj, "json node null");
    }
    SuccessReply success;
    if (!can_conclude(obj, success, kFailure)) {
        return -1;
    }
    // Without the lock, unlike IMAGE_UPDATE: a user who requests the update is not refused because
    // the platform's download is running.
    const int32_t result = is_flash_now(update) ? devapi_update_image() : 0;
    conclude(obj, success, result != 0, kFailure);
    return result;
}
