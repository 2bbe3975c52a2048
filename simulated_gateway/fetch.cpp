#include "fetch.h"

#include "rules.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <curl/curl.h>
#include <exception>
#include <memory>
#include <optional>

namespace simulated_gateway {
namespace {

constexpr size_t kAddressWidth = 2048;
constexpr long kMostRedirects = 5;
constexpr long kStalledBytesPerSecond = 1000;
constexpr char kStopped[] = "the gateway was closed";

template <class Handle> using Owned = std::unique_ptr<Handle, void (*)(Handle *)>;

// What libcurl gives away as a plain pointer.
std::string taken_text(char *text)
{
    const std::unique_ptr<char, void (*)(void *)> owner(text, curl_free);
    return text != nullptr ? text : "";
}

class Address {
  public:
    explicit Address(const std::string &text) : url_(curl_url(), curl_url_cleanup)
    {
        const std::string wrong = complaint(text, Text{kAddressWidth});
        if (!wrong.empty()) {
            throw Error("the address " + wrong);
        }
        const CURLUcode failure =
            curl_url_set(url_.get(), CURLUPART_URL, text.c_str(), CURLU_NON_SUPPORT_SCHEME);
        if (failure != CURLUE_OK) {
            throw Error(std::string("the address does not hold: ") + curl_url_strerror(failure));
        }
    }

    CURLU *get() const { return url_.get(); }
    std::string part(CURLUPart part, unsigned flags = 0) const
    {
        char *text = nullptr;
        curl_url_get(url_.get(), part, &text, flags);
        return taken_text(text);
    }

  private:
    Owned<CURLU> url_;
};

// One exchange with a server, redirects included.
class Transfer {
  public:
    Transfer(const Address &address, PartialImage &image, const FetchLimits &limits,
             const std::function<bool()> &goes_on)
        : image_(image), goes_on_(goes_on), headers_(nullptr, curl_slist_free_all),
          curl_(curl_easy_init(), curl_easy_cleanup)
    {
        set(CURLOPT_ERRORBUFFER, reason_);
        set(CURLOPT_CURLU, address.get());
        set(CURLOPT_PROTOCOLS_STR, "http,https");
        set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
        set(CURLOPT_FOLLOWLOCATION, 1L);
        set(CURLOPT_MAXREDIRS, kMostRedirects);
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_CONNECTTIMEOUT, static_cast<long>(limits.connect_timeout.count()));
        set(CURLOPT_LOW_SPEED_LIMIT, kStalledBytesPerSecond);
        set(CURLOPT_LOW_SPEED_TIME, static_cast<long>(limits.stall_timeout.count()));
        if (!limits.ca_file.empty()) {
            set(CURLOPT_CAINFO, limits.ca_file.c_str());
        }
        set(CURLOPT_NOPROGRESS, 0L);
        set(CURLOPT_XFERINFOFUNCTION, &Transfer::goes_on);
        set(CURLOPT_XFERINFODATA, this);
        set(CURLOPT_WRITEFUNCTION, &Transfer::take);
        set(CURLOPT_WRITEDATA, this);
        if (image.size() > 0) {
            // A server whose image is another one by now sends that whole.
            headers_.reset(curl_slist_append(nullptr, ("If-Range: " + image.validator()).c_str()));
            set(CURLOPT_HTTPHEADER, headers_.get());
            set(CURLOPT_RANGE, (std::to_string(image.size()) + "-").c_str());
        }
    }

    // False when the server cannot go on from where the image ends.
    bool run()
    {
        const WithoutWriteSignals without_signals; // a secure connection may raise SIGPIPE
        const CURLcode outcome = curl_easy_perform(curl_.get());
        if (failure_) {
            std::rethrow_exception(failure_);
        }
        if (!went_on_) {
            throw Error(kStopped);
        }
        if (is_other_part_) {
            return false;
        }
        if (outcome != CURLE_OK) {
            throw Error(*reason_ != '\0' ? reason_ : curl_easy_strerror(outcome));
        }
        // An answer without a body has not been looked at yet.
        return has_begun_ || begin();
    }

  private:
    template <class Value> void set(CURLoption option, Value value)
    {
        const CURLcode failure = curl_easy_setopt(curl_.get(), option, value);
        if (failure != CURLE_OK) {
            throw Error(std::string("libcurl: ") + curl_easy_strerror(failure));
        }
    }

    static int goes_on(void *transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
    {
        auto *self = static_cast<Transfer *>(transfer);
        self->went_on_ = self->goes_on_();
        return self->went_on_ ? 0 : 1;
    }

    // Any result but the size ends the transfer. No exception may pass through C.
    static size_t take(char *bytes, size_t, size_t size, void *transfer)
    {
        auto *self = static_cast<Transfer *>(transfer);
        try {
            if (!self->has_begun_ && !self->begin()) {
                self->is_other_part_ = true;
                return CURL_WRITEFUNC_ERROR;
            }
            self->image_.append({bytes, size});
            return size;
        } catch (...) {
            self->failure_ = std::current_exception();
            return CURL_WRITEFUNC_ERROR;
        }
    }

    // Looks at the status and the headers. False when the body is not what is missing.
    bool begin()
    {
        has_begun_ = true;
        long status = 0;
        curl_easy_getinfo(curl_.get(), CURLINFO_RESPONSE_CODE, &status);
        if (status == 206 && image_.size() > 0) {
            return header("Content-Range")
                       .starts_with("bytes " + std::to_string(image_.size()) + "-") &&
                   validator() == image_.validator();
        }
        if (status == 416 && image_.size() > 0) {
            return false;
        }
        if (status != 200) {
            throw Error("the server answers with HTTP status " + std::to_string(status));
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

    std::string header(const char *name) const
    {
        curl_header *found = nullptr;
        return curl_easy_header(curl_.get(), name, 0, CURLH_HEADER, -1, &found) == CURLHE_OK
                   ? found->value
                   : "";
    }

    PartialImage &image_;
    const std::function<bool()> &goes_on_;
    Owned<curl_slist> headers_;
    char reason_[CURL_ERROR_SIZE] = {};
    bool has_begun_ = false; // the body of the last answer, behind all redirects
    bool is_other_part_ = false;
    bool went_on_ = true;
    std::exception_ptr failure_;
    Owned<CURL> curl_; // ends first, since it refers to the others
};

void copy_file(const Address &address, PartialImage &image, const std::function<bool()> &goes_on)
{
    image.start_over("");
    read_file(address.part(CURLUPART_PATH, CURLU_URLDECODE), [&](std::string_view bytes) {
        if (!goes_on()) {
            throw Error(kStopped);
        }
        image.append(bytes);
    });
}

} // namespace

void fetch(const std::string &text, PartialImage &image, const FetchLimits &limits,
           const std::function<bool()> &goes_on)
{
    static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
    if (ready != CURLE_OK) {
        throw Error(std::string("libcurl: ") + curl_easy_strerror(ready));
    }
    const Address address(text);
    const std::string scheme = address.part(CURLUPART_SCHEME);
    if (scheme == "file") {
        copy_file(address, image, goes_on);
        return;
    }
    if (scheme != "http" && scheme != "https") {
        throw Error("the address does not hold: its scheme is none of http, https, file");
    }
    if (!Transfer(address, image, limits, goes_on).run()) {
        image.start_over("");
        Transfer(address, image, limits, goes_on).run();
    }
}

} // namespace simulated_gateway
