// SPDX-License-Identifier: MIT
// The threads that download and flash firmware, and the lock that allows only one at a time.
#include "firmware_update.h"

#include <pthread.h>
#include <signal.h>
#include <stdlib.h>

using namespace smart_router;

// Held while an image is downloaded or flashed. Only pthread_mutex_trylock() is used, since no
// command may wait for minutes. A worker unlocks what another thread locked, which works with a
// default mutex.
pthread_mutex_t downimagelock = PTHREAD_MUTEX_INITIALIZER;
char g_update_url[HG_UPDATE_URL_SIZE] = "";

namespace {

// Restarts the router into the new firmware.
void reboot()
{
#if defined(__mips__) && defined(__linux__)
    // The number below is this flag on the target; other kernels ignore it.
    static_assert(SIGCHLD == 18 && SA_NOCLDWAIT == 0x10000, "not the numbers of the target");
#endif
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    ignore.sa_flags = 0x10000;
    sigemptyset(&ignore.sa_mask);
    sigaction(SIGCHLD, &ignore, nullptr);
    // A constant command, whose result cannot be used any more.
    (void)system("sync;reboot"); // NOLINT(concurrency-mt-unsafe)
}

} // namespace

int32_t start_prthead_dowing_image(const char *url)
{
    if (url == nullptr) {
        return kNoAddress;
    }
    const size_t size = strlen(url) + 1;
    char *copy = static_cast<char *>(malloc(size));
    if (copy == nullptr) {
        return kNoAddress;
    }
    memcpy(copy, url, size);
    if (pthread_mutex_trylock(&downimagelock) != 0) {
        free(copy);
        return kBusy;
    }
    pthread_t worker;
    if (pthread_create(&worker, nullptr, dowing_imageing, copy) != 0) {
        pthread_mutex_unlock(&downimagelock);
        free(copy);
        return kNoThread;
    }
    return 0;
}

void *dowing_imageing(void *url)
{
    pthread_detach(pthread_self());
    if (url != nullptr) {
        if (devapi_flash_update_image(static_cast<char *>(url)) == 0) {
            reboot();
        }
        free(url);
    }
    pthread_mutex_unlock(&downimagelock);
    return nullptr;
}

void *pthread_hg_image_upgrade(void *)
{
    if (g_update_url[0] == '\0') {
        log_error("update_url is err!\n");
    } else if (devapi_download_image(g_update_url, 1) != 0) {
        log_error("download image failed");
    } else if (devapi_update_image() != 0) {
        log_error("update image failed");
    }
    pthread_mutex_unlock(&downimagelock);
    return nullptr;
}
