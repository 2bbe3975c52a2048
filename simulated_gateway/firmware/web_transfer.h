// An exchange with a web server, the same for what is fetched and for what is sent.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <curl/curl.h>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace simulated_gateway {

struct WebLimits {
    std::chrono::seconds connect_timeout{10};
    std::chrono::seconds stall_timeout{30}; // with fewer than 1000 bytes a second
    std::chrono::seconds transfer_timeout{1800};
    std::string ca_file; // empty: those of the system
};

// What an exchange may still take, over all its transfers and their redirects. A server can send
// without an end where no body is taken: in redirects, headers, trailers, around chunks.
class TransferBudget {
  public:
    explicit TransferBudget(const WebLimits &limits)
        : end_(std::chrono::steady_clock::now() + limits.transfer_timeout)
    {
    }

    std::chrono::milliseconds time_left() const; // at least one, since 0 is no limit for libcurl
    void count_received(size_t bytes) { surplus_ += bytes; }
    void count_taken(size_t bytes) { surplus_ -= std::min<uint64_t>(bytes, surplus_); }
    bool is_exceeded() const;

    static constexpr uint64_t kLargestSurplus = 4U << 20;

  private:
    std::chrono::steady_clock::time_point end_;
    uint64_t surplus_ = 0; // what has arrived beside the bodies that were taken
};

class WebAddress {
  public:
    // Throws an Error when the text is no address.
    explicit WebAddress(const std::string &text);

    CURLU *get() const { return url_.get(); }
    // The address with *** in place of a password, of what the query's parameters say, and of the
    // fragment.
    std::string masked() const;
    std::string part(CURLUPart part, unsigned flags = 0) const;
    bool is_of_web() const; // of http or https

  private:
    std::unique_ptr<CURLU, void (*)(CURLU *)> url_;
};

// What the two directions do beside stands in a class of their own.
class WebTransfer {
  public:
    // goes_on is asked about every second and whenever something has moved; the transfer ends when
    // it says no. Whatever the arguments refer to has to outlive the transfer. Throws an Error.
    WebTransfer(const WebAddress &address, const WebLimits &limits, TransferBudget &budget,
                const std::function<bool()> &goes_on);
    virtual ~WebTransfer() = default;
    WebTransfer(const WebTransfer &) = delete;
    WebTransfer &operator=(const WebTransfer &) = delete;

  protected:
    template <class Value> void set(CURLoption option, Value value)
    {
        require(curl_easy_setopt(curl_.get(), option, value));
    }
    void add_header(const std::string &header);

    // Runs to the end of the last answer, behind all redirects. False when take() has ended it
    // before. Throws an Error.
    bool perform();

    // Of the last answer; a header that it lacks is empty.
    long status() const;
    std::string header(const char *name) const;

  private:
    // A part of an answer's body. False ends the transfer.
    virtual bool take(std::string_view bytes) = 0;

    static void require(CURLcode outcome);
    static int count(CURL *, curl_infotype kind, char *, size_t size, void *transfer);
    static size_t pass_on(char *bytes, size_t, size_t size, void *transfer);
    static int ask(void *transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t);

    TransferBudget &budget_;
    const std::function<bool()> &goes_on_;
    bool went_on_ = true;
    bool was_ended_ = false;
    std::exception_ptr failure_;
    char reason_[CURL_ERROR_SIZE] = {};
    std::unique_ptr<curl_slist, void (*)(curl_slist *)> headers_;
    std::unique_ptr<CURL, void (*)(CURL *)> curl_; // ends first, since it refers to the others
};

} // namespace simulated_gateway
