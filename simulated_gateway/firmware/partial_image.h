// SPDX-License-Identifier: MIT
// A partly downloaded image: a growing file, and next to it a file that records where it comes
// from, so that an interrupted download can be resumed.
#pragma once

#include "firmware/image.h"
#include "io/files.h"

#include <string>
#include <string_view>

namespace simulated_gateway {

class PartialImage {
  public:
    // Resumes what an earlier download from the address left at the path. Throws an Error.
    PartialImage(std::string path, const std::string &address, ImageDemands demands);

    // The bytes that are there already, and the server's validator for this version of the image. 0
    // and empty if there is nothing to resume.
    uint64_t size() const { return size_; }
    const std::string &validator() const { return validator_; }
    int32_t percent() const { return check_.percent(); }

    // Starts from the beginning, with the version that the validator names; without a validator it
    // cannot be resumed later. Throws an Error.
    void start_over(const std::string &validator);
    // Throws an Error if the image is invalid or cannot be stored. It is removed then.
    void append(std::string_view bytes);
    // Moves the image, which has to be complete, to the path. Throws as append() does.
    void finish(const std::string &path);

  private:
    bool resume();
    void open_file(int flags);
    template <class Step> void or_remove(const Step &step);

    std::string path_;
    std::string origin_path_; // contains the origin and, on a separate line, the validator
    std::string origin_;      // a digest of the address, which may contain passwords
    ImageDemands demands_;
    ImageCheck check_;
    uint64_t size_ = 0;
    std::string validator_;
    FileDescriptor file_;
};

} // namespace simulated_gateway
