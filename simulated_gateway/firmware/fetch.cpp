// SPDX-License-Identifier: MIT
#include "firmware/fetch.h"

#include "io/text.h"

#include <climits>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace simulated_gateway {
namespace {

class Download : public WebTransfer {
  public:
    Download(const WebAddress &address, PartialImage &image, const FetchLimits &limits,
             TransferBudget &budget, const std::function<bool()> &goes_on)
        : WebTransfer(address, limits, budget, goes_on), image_(image)
    {
        set(CURLOPT_MAXFILESIZE_LARGE,
            static_cast<curl_off_t>(limits.largest_image + TransferBudget::kLargestSurplus));
        if (image.size() > 0) {
            // A server that has another image by now sends that one completely.
            add_header("If-Range: " + image.validator());
            set(CURLOPT_RANGE, (std::to_string(image.size()) + "-").c_str());
        }
    }

    // False if the server cannot resume where the image ends.
    bool run()
    {
        // The headers of a response without a body have not been checked yet.
        return perform() && (has_begun_ || begin());
    }

  private:
    bool take(std::string_view bytes) override
    {
        if (!has_begun_ && !begin()) {
            return false;
        }
        image_.append(bytes);
        return true;
    }

    // Checks the status and the headers. False if the body is not the missing part.
    bool begin()
    {
        has_begun_ = true;
        if (status() == 206 && image_.size() > 0) {
            return header("Content-Range")
                       .starts_with("bytes " + std::to_string(image_.size()) + "-") &&
                   validator() == image_.validator();
        }
        if (status() == 416 && image_.size() > 0) {
            return false;
        }
        if (status() != 200) {
            throw Error("the server answers with HTTP status " + std::to_string(status()));
        }
        image_.start_over(validator());
        return true;
    }

    // The server's identification of the image's version. A weak ETag does not guarantee identical
    // bytes.
    std::string validator() const
    {
        const std::string tag = header("ETag");
        return tag.starts_with("\"") ? tag : header("Last-Modified");
    }

    PartialImage &image_;
    bool has_begun_ = false; // the body of the last response, after all redirects
};

// The file with all links resolved, if it is below the folder; as a descriptor, so that it cannot
// be exchanged. A refusal does not reveal whether anything exists outside the folder.
FileDescriptor find_below(const std::string &folder, const std::string &path)
{
    FileDescriptor file(open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat info = {};
    char real[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(file.get());
    const ssize_t size = file.is_open() ? readlink(link.c_str(), real, sizeof(real)) : -1;
    if (size < 0 || !std::string_view(real, static_cast<size_t>(size)).starts_with(folder + "/") ||
        fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) {
        throw Error("the address is invalid: no such file in the firmware folder");
    }
    return file;
}

void copy_file(const WebAddress &address, PartialImage &image, const FetchLimits &limits,
               const std::function<bool()> &goes_on)
{
    if (limits.file_folder.empty()) {
        throw Error("the address is invalid: file is for a gateway with a firmware folder");
    }
    const FileDescriptor file =
        find_below(limits.file_folder, address.part(CURLUPART_PATH, CURLU_URLDECODE));
    image.start_over("");
    read_file("/proc/self/fd/" + std::to_string(file.get()), [&](std::string_view bytes) {
        if (!goes_on()) {
            throw Error(kTransferEnded);
        }
        image.append(bytes);
    });
}

} // namespace

void fetch(const std::string &text, PartialImage &image, const FetchLimits &limits,
           const std::function<bool()> &goes_on)
{
    const WebAddress address(text);
    if (address.part(CURLUPART_SCHEME) == "file") {
        copy_file(address, image, limits, goes_on);
        return;
    }
    if (!address.is_web()) {
        throw Error("the address is invalid: its scheme is none of http, https, file");
    }
    TransferBudget budget(limits);
    if (!Download(address, image, limits, budget, goes_on).run()) {
        image.start_over("");
        Download(address, image, limits, budget, goes_on).run();
    }
}

} // namespace simulated_gateway
