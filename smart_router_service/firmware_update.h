// What firmware update exports beside its handlers: the starter of the worker, its entry, and the
// helpers of UPDATE_IMMEDIATE.
#pragma once

#include "recipes.h"

namespace smart_router {

// Width of the text in which json_hg_image_down_and_upgrade() says why it failed, in bytes.
constexpr size_t kUpdateFailureSize = 64;

// The results of start_prthead_dowing_image() other than success.
constexpr int32_t kNoAddress = -1; // url is null, or there was no memory to copy it
constexpr int32_t kBusy = -2;      // an image is being downloaded or flashed already
constexpr int32_t kNoThread = -3;  // the thread could not be started

} // namespace smart_router

extern "C" {

// Starts the worker that fetches the image from the address, flashes it and restarts the router.
// The address is copied. Result: 0 when the worker has been started, and downimagelock is its own
// until it ends; else one of those above.
SMART_ROUTER_API int32_t start_prthead_dowing_image(const char *url);

// The worker: a thread entry. It owns the address, from malloc(), which may be null, and releases
// downimagelock at its end.
SMART_ROUTER_API void *dowing_imageing(void *url);

// Starts the worker with the "UpdateUrl" of an "Image" object. Result: 0, or -1 with the reason in
// failreason, a buffer of kUpdateFailureSize bytes; without one it is -1, and only logged.
SMART_ROUTER_API int32_t json_hg_image_down_and_upgrade(cJSON *image, char *failreason);

// The rules for deep packet inspection have no update of their own: a request that brings some is
// taken as done, and nothing of it is read. Result: 0.
SMART_ROUTER_API int32_t json_dpi_features_update(cJSON *item, char *failreason);
SMART_ROUTER_API int32_t json_dpi_http_features_update(void);
}
