// SPDX-License-Identifier: MIT
// The running firmware, downloading an image, and flashing it.
#include "core/device_call.h"
#include "core/gateway.h"
#include "core/update_report.h"
#include "firmware/machine.h"

using namespace simulated_gateway;

int32_t devapi_get_update_status_info(UpdateStatusInfo *info)
{
    return query(__func__, {reply("info", info)}, [&](const State &state) {
        const Identity &identity = state.home.identity;
        put(info->Name, state.home.name);
        put(info->HWVersion, identity.hardware_version);
        put(info->FWVersion, identity.software_version);
        put(info->FWDATA, identity.firmware_date);
        put(info->DeviceType, identity.device_type);
        put(info->AreaCode, identity.area_code);
        return 0;
    });
}

// ---- Download and flash ------------------------------------------------------------------------

static void download(Gateway &gateway, const char *address)
{
    gateway.firmware().download(address, router_of(gateway.state()));
}

// The slot's image is written without the gateway's lock, and moved into place while holding it: a
// restart in between may have booted the old content of the slot.
static void flash(Gateway &gateway)
{
    FirmwareStore &store = gateway.firmware();
    const std::unique_lock right = store.begin_flash();
    const State before = gateway.state();
    const int64_t slot = before.firmware.not_running();
    FirmwareStore::SlotImage image = store.copy_for(slot, router_of(before));
    gateway.change([&](State &state) {
        if (state.firmware.running == slot) {
            throw Error("the router was restarted meanwhile");
        }
        image.file.replace();
        state.firmware.slot(slot) = image.content;
        state.firmware.next = slot;
    });
    if (!image.warning.empty()) {
        gateway.warn("firmware " + image.content.version + " " + image.warning);
    }
    report_flashed_image(image.content.version);
}

int32_t devapi_download_image(const char *url, int32_t mode)
{
    return long_work(__func__, {request_address("url", url), number("mode", mode)},
                     [&](Gateway &gateway) {
                         refuse_for("mode", validation_error(mode, Range{0, 1}));
                         const std::unique_lock right = gateway.firmware().begin_download();
                         download(gateway, url);
                         return 0;
                     });
}

int32_t devapi_update_image()
{
    return long_work(__func__, {}, [](Gateway &gateway) {
        flash(gateway);
        return 0;
    });
}

int32_t devapi_flash_update_image(const char *url)
{
    const auto flash_from = [&](Gateway &gateway) {
        refuse_real_reboot();
        // Held until the end, so that the image from this address is the one flashed.
        const std::unique_lock right = gateway.firmware().begin_download();
        download(gateway, url);
        flash(gateway);
        return 0;
    };
    const int32_t result = long_work(__func__, {request_address("url", url)}, flash_from);
    // A fault plan may make the function return 0, too.
    return result == 0 && reboot_would_be_real() ? -1 : result;
}
