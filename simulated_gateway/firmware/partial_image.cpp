// SPDX-License-Identifier: MIT
#include "firmware/partial_image.h"

#include "io/text.h"

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace simulated_gateway {

static std::string digest_of(const std::string &address)
{
    Sha256 digest;
    digest.add(address);
    return hexadecimal(digest.finish());
}

PartialImage::PartialImage(std::string path, const std::string &address, ImageDemands demands)
    : path_(std::move(path)), origin_path_(path_ + ".origin"), origin_(digest_of(address)),
      demands_(std::move(demands)), check_(demands_)
{
    if (!resume()) {
        start_over("");
    }
}

// An invalid partial image is not an error: the download then starts from the beginning.
bool PartialImage::resume()
try {
    const std::string origin = read_file(origin_path_);
    const std::string first_line = origin_ + "\n";
    if (!origin.starts_with(first_line) || origin.size() == first_line.size()) {
        return false;
    }
    read_file(path_, [&](std::string_view bytes) {
        check_.add(bytes);
        size_ += bytes.size();
    });
    open_file(O_APPEND);
    validator_ = origin.substr(first_line.size());
    return true;
} catch (const Error &) {
    return false;
}

void PartialImage::start_over(const std::string &validator)
{
    // In this order, so that bytes are never next to the validator of another version.
    unlink(path_.c_str());
    if (!validator.empty()) {
        replace_file(origin_path_, origin_ + "\n" + validator);
    } else {
        unlink(origin_path_.c_str());
    }
    open_file(O_CREAT | O_EXCL);
    check_ = ImageCheck(demands_);
    size_ = 0;
    validator_ = validator;
}

void PartialImage::open_file(int flags)
{
    file_ = FileDescriptor(
        open(path_.c_str(), O_WRONLY | O_CLOEXEC | O_NOFOLLOW | flags, S_IRUSR | S_IWUSR));
    if (!file_.is_open()) {
        refuse_file(path_);
    }
}

void PartialImage::append(std::string_view bytes)
{
    or_remove([&] {
        check_.add(bytes);
        if (!write_all(file_.get(), bytes)) {
            refuse_file(path_);
        }
        size_ += bytes.size();
    });
}

void PartialImage::finish(const std::string &path)
{
    or_remove([&] {
        check_.finish();
        if (fsync(file_.get()) != 0 || rename(path_.c_str(), path.c_str()) != 0) {
            refuse_file(path);
        }
    });
    unlink(origin_path_.c_str());
}

template <class Step> void PartialImage::or_remove(const Step &step)
try {
    step();
} catch (const Error &) {
    unlink(path_.c_str());
    throw;
}

} // namespace simulated_gateway
