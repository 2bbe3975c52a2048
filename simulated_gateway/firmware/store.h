// SPDX-License-Identifier: MIT
// Where the gateway stores images: the one being downloaded, the downloaded one, and those in the
// two slots.
#pragma once

#include "firmware/fetch.h"
#include "model/firmware.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

namespace simulated_gateway {

class FirmwareStore {
  public:
    // The images are in the folder, or without one in a temporary folder that is deleted with the
    // store. Either is created when it is needed. Images have to be signed by the key; without one
    // any image is accepted.
    FirmwareStore(std::optional<std::string> folder, const FetchLimits &limits,
                  std::shared_ptr<const VerificationKey> key);
    ~FirmwareStore();
    FirmwareStore(const FirmwareStore &) = delete;
    FirmwareStore &operator=(const FirmwareStore &) = delete;

    // The exclusive right to download. Throws an Error if a download is running.
    std::unique_lock<std::mutex> begin_download();

    // The router that an image is for.
    struct Router {
        std::string product;
        int64_t rollback; // of the running firmware
    };

    // Downloads and verifies an image, and stores it in place of the one downloaded before. Throws
    // an Error.
    void download(const std::string &address, const Router &router);

    // The exclusive right to write a slot; others wait for it.
    std::unique_lock<std::mutex> begin_flash() { return std::unique_lock(flashing_); }

    // The downloaded image, written to a temporary file for a slot and verified again.
    struct SlotImage {
        NewFile file;
        FirmwareSlot content;
        std::string warning; // if the image's origin is not verified
    };
    // Throws an Error, also if nothing was downloaded.
    SlotImage copy_for(int64_t slot, const Router &router);

    // Throws an Error unless the slot's file is the expected image.
    void check(int64_t slot, const FirmwareSlot &content, const Router &router);

    // Makes the running download and every later one fail.
    void stop() { stopped_ = true; }
    bool is_stopped() const { return stopped_; }

  private:
    ImageDemands demands_for(const Router &router) const;
    std::string path(const std::string &name);
    std::string slot_path(int64_t slot);
    std::string downloaded_path() { return path("downloaded.image"); }

    const FetchLimits limits_;
    const std::shared_ptr<const VerificationKey> key_;
    const bool is_temporary_;
    std::mutex making_folder_;
    std::optional<std::string> folder_;
    std::atomic<bool> stopped_ = false;
    std::mutex downloading_;
    std::mutex flashing_;
};

} // namespace simulated_gateway
