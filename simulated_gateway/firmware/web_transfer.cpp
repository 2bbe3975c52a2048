// SPDX-License-Identifier: MIT
#include "firmware/web_transfer.h"

#include "io/files.h"
#include "model/rules.h"

#include <algorithm>
#include <sstream>

namespace simulated_gateway {
namespace {

constexpr size_t kAddressWidth = 2048;
constexpr char kMask[] = "***";
constexpr long kMostRedirects = 5;
constexpr long kStalledBytesPerSecond = 1000;

// Frees what libcurl allocates.
std::string text_and_free(char *text)
{
    const std::unique_ptr<char, void (*)(void *)> guard(text, curl().free);
    return text != nullptr ? text : "";
}

} // namespace

WebAddress::WebAddress(const std::string &text) : url_(curl().url(), curl().url_cleanup)
{
    const std::string wrong = validation_error(text, Text{kAddressWidth});
    if (!wrong.empty()) {
        throw Error("the address " + wrong);
    }
    const CURLUcode failure =
        curl().url_set(url_.get(), CURLUPART_URL, text.c_str(), CURLU_NON_SUPPORT_SCHEME);
    if (failure != CURLUE_OK) {
        throw Error(std::string("the address is invalid: ") + curl().url_strerror(failure));
    }
}

std::string WebAddress::part(CURLUPart part, unsigned flags) const
{
    char *text = nullptr;
    curl().url_get(url_.get(), part, &text, flags);
    return text_and_free(text);
}

std::string WebAddress::masked() const
{
    const std::unique_ptr<CURLU, void (*)(CURLU *)> url(curl().url_dup(url_.get()),
                                                        curl().url_cleanup);
    const auto mask = [&](CURLUPart masked_part, const std::string &text) {
        if (!part(masked_part).empty() &&
            curl().url_set(url.get(), masked_part, text.c_str(), 0) != CURLUE_OK) {
            throw Error("the address cannot be masked");
        }
    };
    mask(CURLUPART_PASSWORD, kMask);
    mask(CURLUPART_FRAGMENT, kMask);
    std::string query;
    std::istringstream parameters(part(CURLUPART_QUERY));
    for (std::string parameter; std::getline(parameters, parameter, '&');) {
        const size_t name_end = parameter.find('=');
        const bool has_name = name_end != std::string::npos;
        query += (query.empty() ? "" : "&") + (has_name ? parameter.substr(0, name_end + 1) : "") +
                 kMask;
    }
    mask(CURLUPART_QUERY, query);
    char *text = nullptr;
    curl().url_get(url.get(), CURLUPART_URL, &text, 0);
    return text_and_free(text);
}

bool WebAddress::is_web() const
{
    const std::string scheme = part(CURLUPART_SCHEME);
    return scheme == "http" || scheme == "https";
}

std::chrono::milliseconds TransferBudget::time_left() const
{
    using namespace std::chrono;
    return std::max(duration_cast<milliseconds>(end_ - steady_clock::now()), 1ms);
}

bool TransferBudget::is_exceeded() const
{
    return surplus_ > kLargestSurplus;
}

WebTransfer::WebTransfer(const WebAddress &address, const WebLimits &limits, TransferBudget &budget,
                         const std::function<bool()> &goes_on)
    : budget_(budget), goes_on_(goes_on), headers_(nullptr, curl().slist_free_all),
      curl_(nullptr, curl().easy_cleanup)
{
    static const CURLcode ready = curl().global_init(CURL_GLOBAL_DEFAULT);
    require(ready);
    curl_.reset(curl().easy_init());
    set(CURLOPT_ERRORBUFFER, reason_);
    set(CURLOPT_CURLU, address.get());
    set(CURLOPT_PROTOCOLS_STR, "http,https"); // also after a redirect
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, kMostRedirects);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // when it is ended, does not wait for a name server
    set(CURLOPT_TIMEOUT_MS, static_cast<long>(budget.time_left().count()));
    set(CURLOPT_CONNECTTIMEOUT, static_cast<long>(limits.connect_timeout.count()));
    set(CURLOPT_LOW_SPEED_LIMIT, kStalledBytesPerSecond);
    set(CURLOPT_LOW_SPEED_TIME, static_cast<long>(limits.stall_timeout.count()));
    if (!limits.ca_file.empty()) {
        set(CURLOPT_CAINFO, limits.ca_file.c_str());
    }
    set(CURLOPT_NOPROGRESS, 0L);
    set(CURLOPT_XFERINFOFUNCTION, &WebTransfer::ask);
    set(CURLOPT_XFERINFODATA, this);
    // Only the debug callback sees the bodies of redirects and what surrounds chunks.
    set(CURLOPT_VERBOSE, 1L);
    set(CURLOPT_DEBUGFUNCTION, &WebTransfer::count);
    set(CURLOPT_DEBUGDATA, this);
    set(CURLOPT_WRITEFUNCTION, &WebTransfer::pass_on);
    set(CURLOPT_WRITEDATA, this);
}

void WebTransfer::add_header(const std::string &header)
{
    curl_slist *longer = curl().slist_append(headers_.get(), header.c_str());
    if (longer == nullptr) {
        throw std::bad_alloc();
    }
    static_cast<void>(headers_.release()); // now part of the longer list
    headers_.reset(longer);
    set(CURLOPT_HTTPHEADER, headers_.get());
}

bool WebTransfer::perform()
{
    const WithoutWriteSignals without_signals; // a secure connection may raise SIGPIPE
    const CURLcode outcome = curl().easy_perform(curl_.get());
    if (failure_) {
        std::rethrow_exception(failure_);
    }
    if (!went_on_) {
        throw Error(kTransferEnded);
    }
    if (was_ended_) {
        return false;
    }
    if (budget_.is_exceeded()) {
        throw Error("the server sends more than " +
                    std::to_string(TransferBudget::kLargestSurplus) +
                    " bytes in addition to its response");
    }
    if (outcome != CURLE_OK) {
        throw Error(*reason_ != '\0' ? reason_ : curl().easy_strerror(outcome));
    }
    return true;
}

long WebTransfer::status() const
{
    long status = 0;
    curl().easy_getinfo(curl_.get(), CURLINFO_RESPONSE_CODE, &status);
    return status;
}

std::string WebTransfer::header(const char *name) const
{
    curl_header *found = nullptr;
    return curl().easy_header(curl_.get(), name, 0, CURLH_HEADER, -1, &found) == CURLHE_OK
               ? found->value
               : "";
}

void WebTransfer::require(CURLcode outcome)
{
    if (outcome != CURLE_OK) {
        throw Error(std::string("libcurl: ") + curl().easy_strerror(outcome));
    }
}

// Any result other than the size ends the transfer. No exception may pass through C code.
size_t WebTransfer::pass_on(char *bytes, size_t, size_t size, void *transfer)
{
    auto *self = static_cast<WebTransfer *>(transfer);
    self->budget_.count_taken(size);
    try {
        if (self->take({bytes, size})) {
            return size;
        }
        self->was_ended_ = true;
    } catch (...) {
        self->failure_ = std::current_exception();
    }
    return CURL_WRITEFUNC_ERROR;
}

int WebTransfer::ask(void *transfer, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    auto *self = static_cast<WebTransfer *>(transfer);
    self->went_on_ = self->goes_on_();
    return self->went_on_ && !self->budget_.is_exceeded() ? 0 : 1;
}

int WebTransfer::count(CURL *, curl_infotype kind, char *, size_t size, void *transfer)
{
    if (kind == CURLINFO_HEADER_IN || kind == CURLINFO_DATA_IN) {
        static_cast<WebTransfer *>(transfer)->budget_.count_received(size);
    }
    return 0;
}

} // namespace simulated_gateway
