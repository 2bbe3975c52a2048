// An image while it is fetched: a file that grows, and beside it what is known of where it comes
// from, so that a download that broke off can go on later.
#pragma once

#include "firmware/image.h"
#include "io/files.h"

#include <string>
#include <string_view>

namespace simulated_gateway {

class PartialImage {
  public:
    // Takes up what an earlier download from the address has left at the path. Throws an Error.
    PartialImage(std::string path, const std::string &address, ImageDemands demands);

    // How much is there already, and how the server names this version of the image. 0 and empty
    // when there is nothing to go on from.
    uint64_t size() const { return size_; }
    const std::string &validator() const { return validator_; }
    int32_t percent() const { return check_.percent(); }

    // Begins anew, with the version that the validator names; one without a name cannot go on
    // later. Throws an Error.
    void start_over(const std::string &validator);
    // Throws an Error when the image does not hold or cannot be kept. Nothing of it is left then.
    void append(std::string_view bytes);
    // Puts the image, which has to be whole, in the place of the file. As append().
    void finish(const std::string &path);

  private:
    bool take_up();
    void open_file(int flags);
    template <class Step> void or_remove(const Step &step);

    std::string path_;
    std::string origin_path_; // holds the origin and, on a line of its own, the validator
    std::string origin_;      // a digest of the address, in which passwords may stand
    ImageDemands demands_;
    ImageCheck check_;
    uint64_t size_ = 0;
    std::string validator_;
    FileDescriptor file_;
};

} // namespace simulated_gateway
