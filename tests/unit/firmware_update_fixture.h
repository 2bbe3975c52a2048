// SPDX-License-Identifier: MIT
// Firmware updates, with the worker under the test's control. An update in progress is a flash that
// sleeps until the test releases it.
#pragma once

#include "handler_test.h"
#include "request.h"
#include "worker_control.h"

#include <climits>
#include <string>
#include <vector>

// Every result other than success is a failure, regardless of its sign.
inline constexpr int32_t kFailures[] = {1, -1, 5, INT_MIN};

inline constexpr char kAddress[] = "http://updates.example/r7.bin";

// The reason if another update holds the lock.
inline constexpr char kDownloading[] = "dev is dowing image now";

// The lock, held by another update.
class Busy {
  public:
    Busy() { EXPECT_EQ(pthread_mutex_trylock(&downimagelock), 0); }
    ~Busy() { pthread_mutex_unlock(&downimagelock); }
    Busy(const Busy &) = delete;
    Busy &operator=(const Busy &) = delete;
};

// Whether the lock is held at this moment.
inline bool is_busy()
{
    if (pthread_mutex_trylock(&downimagelock) != 0) {
        return true;
    }
    pthread_mutex_unlock(&downimagelock);
    return false;
}

class FirmwareUpdateTest : public HandlerTest {
  protected:
    // None of the commands logs anything.
    ~FirmwareUpdateTest() override
    {
        control.end_all_sleeps();
        control.wait_until_idle();
        EXPECT_TRUE(control.is_idle());
        EXPECT_TRUE(recording_host::log_lines().empty());
    }

    // What has been called once the worker is done, if one was started.
    Calls calls() const
    {
        control.wait_until_idle();
        return recording_device::calls();
    }

    // What a worker does with the address from beginning to end.
    static Calls whole_update(const std::string &address)
    {
        return {{"devapi_flash_update_image", {address}},
                {"sigaction", {"SIGCHLD", "SIG_IGN", "0x10000", "no mask"}},
                {"system", {"sync;reboot"}}};
    }

    // Forgets the calls, as soon as no worker makes any.
    void start_over() const
    {
        control.wait_until_idle();
        recording_device::reset();
    }

    WorkerControl control;
};
