#include "fetch.h"

#include "text.h"

namespace simulated_gateway {
namespace {

class Download : public WebTransfer {
  public:
    Download(const WebAddress &address, PartialImage &image, const FetchLimits &limits,
             const std::function<bool()> &goes_on)
        : WebTransfer(address, limits, goes_on), image_(image)
    {
        if (image.size() > 0) {
            // A server whose image is another one by now sends that whole.
            add_header("If-Range: " + image.validator());
            set(CURLOPT_RANGE, (std::to_string(image.size()) + "-").c_str());
        }
    }

    // False when the server cannot go on from where the image ends.
    bool run()
    {
        // An answer without a body has not been looked at yet.
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

    // Looks at the status and the headers. False when the body is not what is missing.
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

    // By what the server tells versions of the image apart. A weak ETag does not tell bytes apart.
    std::string validator() const
    {
        const std::string tag = header("ETag");
        return tag.starts_with("\"") ? tag : header("Last-Modified");
    }

    PartialImage &image_;
    bool has_begun_ = false; // the body of the last answer, behind all redirects
};

void copy_file(const WebAddress &address, PartialImage &image, const std::function<bool()> &goes_on)
{
    image.start_over("");
    read_file(address.part(CURLUPART_PATH, CURLU_URLDECODE), [&](std::string_view bytes) {
        if (!goes_on()) {
            throw Error("the gateway was closed");
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
        copy_file(address, image, goes_on);
        return;
    }
    if (!address.is_of_web()) {
        throw Error("the address does not hold: its scheme is none of http, https, file");
    }
    if (!Download(address, image, limits, goes_on).run()) {
        image.start_over("");
        Download(address, image, limits, goes_on).run();
    }
}

} // namespace simulated_gateway
