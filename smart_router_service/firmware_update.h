// SPDX-License-Identifier: MIT
// What firmware update exports in addition to its handlers: the function that starts the worker,
// the worker, and the helpers of UPDATE_IMMEDIATE.
#pragma once

#include "recipes.h"

namespace smart_router {

// Size of the buffer for the failure text of json_hg_image_down_and_upgrade(), in bytes.
constexpr size_t kUpdateFailureSize = 64;

// The results of start_prthead_dowing_image() other than success.
constexpr int32_t kNoAddress = -1; // url is null, or there was no memory to copy it
constexpr int32_t kBusy = -2;      // an image is being downloaded or flashed already
constexpr int32_t kNoThread = -3;  // the thread could not be started

} // namespace smart_router

extern "C" {

// Starts the worker that downloads the image from the URL, flashes it and restarts the router. The
// URL is copied. Result: 0 when the worker has been started, which holds downimagelock until it
// ends; otherwise one of those above.
SMART_ROUTER_API int32_t start_prthead_dowing_image(const char *url);

// The worker: a thread entry. It owns the URL, which is from malloc() or null, and releases
// downimagelock when it ends.
SMART_ROUTER_API void *dowing_imageing(void *url);

// Starts the worker with the "UpdateUrl" of an "Image" object. Result: 0, or -1 with the reason in
// failreason, a buffer of kUpdateFailureSize bytes. When failreason is null, nothing is started and
// the result is -1, which is only logged.
SMART_ROUTER_API int32_t json_hg_image_down_and_upgrade(cJSON *image, char *failreason);

// The rules for deep packet inspection cannot be updated separately: a request with rules succeeds
// without being read. Result: 0.
SMART_ROUTER_API int32_t json_dpi_features_update(cJSON *item, char *failreason);
SMART_ROUTER_API int32_t json_dpi_http_features_update(void);
}
