// SPDX-License-Identifier: MIT
// A transfer from or to a web server: what downloads and uploads have in common.
#pragma once

#include "firmware/curl.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace simulated_gateway {

// Why a transfer fails that goes_on() has ended.
constexpr char kTransferEnded[] = "the gateway was closed or is about to be";

struct WebLimits {
    std::chrono::seconds connect_timeout{10};
    std::chrono::seconds stall_timeout{30}; // below 1000 bytes a second
    std::chrono::seconds transfer_timeout{1800};
    std::string ca_file; // empty: the system's
};

// What remains for an exchange over all its transfers and their redirects. A server can send
// without end where no body is read: in redirects, headers, trailers, around chunks.
class TransferBudget {
  public:
    explicit TransferBudget(const WebLimits &limits)
        : end_(std::chrono::steady_clock::now() + limits.transfer_timeout)
    {
    }

    std::chrono::milliseconds time_left() const; // at least 1, since 0 means no limit to libcurl
    void count_received(size_t bytes) { surplus_ += bytes; }
    void count_taken(size_t bytes) { surplus_ -= std::min<uint64_t>(bytes, surplus_); }
    bool is_exceeded() const;

    static constexpr uint64_t kLargestSurplus = 4U << 20;

  private:
    std::chrono::steady_clock::time_point end_;
    uint64_t surplus_ = 0; // bytes received other than the bodies that were read
};

class WebAddress {
  public:
    // Throws an Error if the text is not an address.
    explicit WebAddress(const std::string &text);

    CURLU *get() const { return url_.get(); }
    // The address with *** for a password, for the values of query parameters, and for the
    // fragment.
    std::string masked() const;
    std::string part(CURLUPart part, unsigned flags = 0) const;
    bool is_web() const; // http or https

  private:
    std::unique_ptr<CURLU, void (*)(CURLU *)> url_;
};

// What is specific to one direction is in a derived class.
class WebTransfer {
  public:
    // goes_on is called about every second and whenever data has moved; the transfer ends when it
    // returns false. Everything that the arguments refer to has to outlive the transfer. Throws an
    // Error.
    WebTransfer(const WebAddress &address, const WebLimits &limits, TransferBudget &budget,
                const std::function<bool()> &goes_on);
    virtual ~WebTransfer() = default;
    WebTransfer(const WebTransfer &) = delete;
    WebTransfer &operator=(const WebTransfer &) = delete;

  protected:
    template <class Value> void set(CURLoption option, Value value)
    {
        require(curl().easy_setopt(curl_.get(), option, value));
    }
    void add_header(const std::string &header);

    // Runs to the end of the last response, after all redirects. False if take() has ended it
    // before. Throws an Error.
    bool perform();

    // Of the last response; a missing header is empty.
    long status() const;
    std::string header(const char *name) const;

  private:
    // Processes a part of a response body. False ends the transfer.
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
    std::unique_ptr<CURL, void (*)(CURL *)> curl_; // destroyed first, since it refers to the others
};

} // namespace simulated_gateway
