// SPDX-License-Identifier: MIT
#include "firmware/store.h"

#include "firmware/progress.h"
#include "io/text.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>

namespace simulated_gateway {
namespace {

FirmwareSlot content_of(const ImageHeader &header)
{
    return {header.version, header.date, hexadecimal(header.sha256), header.rollback};
}

// A link placed instead of the folder would redirect the images elsewhere.
void refuse_link(const std::string &folder)
{
    struct stat info = {};
    if (lstat(folder.c_str(), &info) != 0) {
        refuse_file(folder);
    }
    if (S_ISLNK(info.st_mode)) {
        throw Error(folder + ": is a link");
    }
}

} // namespace

FirmwareStore::FirmwareStore(std::optional<std::string> folder, const FetchLimits &limits,
                             std::shared_ptr<const VerificationKey> key)
    : limits_(limits), key_(std::move(key)), is_temporary_(!folder), folder_(std::move(folder))
{
}

FirmwareStore::~FirmwareStore()
{
    if (is_temporary_ && folder_) {
        std::error_code ignored;
        std::filesystem::remove_all(*folder_, ignored);
    }
}

ImageDemands FirmwareStore::demands_for(const Router &router) const
{
    return {router.product, limits_.largest_image, router.rollback, key_};
}

std::string FirmwareStore::path(const std::string &name)
{
    const std::lock_guard lock(making_folder_);
    if (!folder_) {
        std::string made = std::filesystem::temp_directory_path() / "simulated_gateway.XXXXXX";
        if (mkdtemp(made.data()) == nullptr) {
            refuse_file(made);
        }
        folder_ = made;
    } else if (mkdir(folder_->c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        refuse_file(*folder_);
    }
    refuse_link(*folder_);
    return *folder_ + "/" + name;
}

std::unique_lock<std::mutex> FirmwareStore::begin_download()
{
    std::unique_lock right(downloading_, std::try_to_lock);
    if (!right) {
        throw Error("another download is under way");
    }
    return right;
}

void FirmwareStore::download(const std::string &address, const Router &router)
{
    Progress progress("firmware");
    PartialImage image(path("download.part"), address, demands_for(router));
    fetch(address, image, limits_, [&] {
        progress.report(image.percent());
        return !stopped_;
    });
    image.finish(downloaded_path());
    progress.report(100);
}

std::string FirmwareStore::slot_path(int64_t slot)
{
    return path("slot_" + std::to_string(slot) + ".image");
}

FirmwareStore::SlotImage FirmwareStore::copy_for(int64_t slot, const Router &router)
{
    if (!std::filesystem::exists(downloaded_path())) {
        throw Error("no image was downloaded");
    }
    NewFile file(slot_path(slot));
    ImageCheck check(demands_for(router));
    read_file(downloaded_path(), [&](std::string_view bytes) {
        check.add(bytes);
        file.write(bytes);
    });
    const ImageHeader header = check.finish();
    file.sync();
    std::string warning;
    if (!header.is_signed) {
        warning = "is not signed";
    } else if (key_ == nullptr) {
        warning = "has a signature that is not verified without a firmware key";
    }
    return {std::move(file), content_of(header), std::move(warning)};
}

void FirmwareStore::check(int64_t slot, const FirmwareSlot &content, const Router &router)
{
    ImageDemands demands = demands_for(router);
    demands.largest = UINT64_MAX; // the size was checked when it was downloaded
    ImageCheck check(demands);
    read_file(slot_path(slot), [&](std::string_view bytes) { check.add(bytes); });
    if (content_of(check.finish()).sha256 != content.sha256) {
        throw Error(slot_path(slot) + ": is another image");
    }
}

} // namespace simulated_gateway
