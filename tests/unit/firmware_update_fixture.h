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

inline const Request kEmpty({});

// Addresses that a shell, a printf() or a short buffer would not survive, and none at all.
inline const std::vector<std::string> kOddAddresses = {
    "",
    " ",
    "http://updates.example/a b;reboot|`id`$(id)&&'x'>/etc/passwd\t\n\r\x01\x7f",
    "%s%n%d%100000d",
    "\xc4\xe3\xba\xc3\xff",
    std::string(1 << 20, '/'),
};

// The lock, held by somebody else.
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
    using Call = recording_device::Call;
    using Calls = std::vector<Call>;

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

inline const std::string kZeroedStatus(sizeof(UpdateStatusInfo), '\0');

// The text as a JSON text; its bytes go through as they are, save those that JSON does not take.
inline std::string escaped(const std::string &text)
{
    const Json item(cJSON_CreateString(text.c_str()));
    return print(item.get());
}

// Why a worker could not be started.
inline constexpr char kUrlIsNull[] = "url is null";
inline constexpr char kDownloading[] = "dev is dowing image now";
inline constexpr char kNoThread[] = "failed to create down image thread";

// A request with an image between two keys that are none of the command's, and what is left of it.
inline Request image(const std::string &json)
{
    return Request({{"First", "1"}, {"Image", json}, {"Last", "{}"}});
}
inline const Request kNothing = image("").without("Image");

// What IMAGE_DOWNLOAD and PLATEFORM_UPDATE_IMMEDIATE answer when no worker could be started.
inline std::string refused(const std::string &reason)
{
    return kNothing.followed_by(R"("updateResult":"-1",)" + failure(reason));
}
