// Where the gateway keeps images: the one that is fetched, the one that was downloaded, and those
// in the two slots.
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
    // The images lie in the folder, or without one in a temporary folder that ends with the store.
    // Either is made when it is needed.
    // Images have to be signed by the key; without one any is taken.
    FirmwareStore(std::optional<std::string> folder, const FetchLimits &limits,
                  std::shared_ptr<const VerificationKey> key);
    ~FirmwareStore();
    FirmwareStore(const FirmwareStore &) = delete;
    FirmwareStore &operator=(const FirmwareStore &) = delete;

    // The right to download; only one at a time has it. Throws an Error when it is taken.
    std::unique_lock<std::mutex> begin_download();

    // The router that an image is for.
    struct Router {
        std::string product;
        int64_t rollback; // of the firmware that runs
    };

    // Fetches and verifies an image, and keeps it as the downloaded one in place of the one before.
    // Throws an Error.
    void download(const std::string &address, const Router &router);

    // The right to write a slot; others wait for it.
    std::unique_lock<std::mutex> begin_flash() { return std::unique_lock(flashing_); }

    // The downloaded image, written aside for a slot and verified once more.
    struct SlotImage {
        NewFile file;
        FirmwareSlot content;
        std::string warning; // where nobody vouches for the image
    };
    // Throws an Error, also when nothing was downloaded.
    SlotImage copy_for(int64_t slot, const Router &router);

    // Throws an Error unless the slot's file is the image that it should hold.
    void check(int64_t slot, const FirmwareSlot &content, const Router &router);

    // Lets the download that is under way fail, and every later one.
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
