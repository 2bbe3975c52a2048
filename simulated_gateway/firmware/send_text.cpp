// SPDX-License-Identifier: MIT
#include "firmware/send_text.h"

#include "io/text.h"

namespace simulated_gateway {
namespace {

// A server only has to say whether it accepted the text.
constexpr size_t kLargestAnswer = 64U << 10;

class Upload : public WebTransfer {
  public:
    Upload(const WebAddress &address, const std::string &text, const WebLimits &limits,
           TransferBudget &budget, const std::function<bool()> &goes_on)
        : WebTransfer(address, limits, budget, goes_on), text_(text)
    {
        add_header("Content-Type: text/plain; charset=utf-8");
        set(CURLOPT_UPLOAD, 1L);
        set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(text.size()));
        set(CURLOPT_READFUNCTION, &Upload::give);
        set(CURLOPT_READDATA, this);
        set(CURLOPT_SEEKFUNCTION, &Upload::seek);
        set(CURLOPT_SEEKDATA, this);
    }

    void run()
    {
        if (!perform()) {
            throw Error("the server's response is too long");
        }
        if (status() < 200 || status() > 299) {
            throw Error("the server answers with HTTP status " + std::to_string(status()));
        }
    }

  private:
    bool take(std::string_view bytes) override
    {
        answered_ += bytes.size();
        return answered_ <= kLargestAnswer;
    }

    static size_t give(char *buffer, size_t, size_t size, void *upload)
    {
        auto *self = static_cast<Upload *>(upload);
        const size_t given = self->text_.copy(buffer, size, self->position_);
        self->position_ += given;
        return given;
    }

    // After a redirect the text is sent again.
    static int seek(void *upload, curl_off_t offset, int)
    {
        auto *self = static_cast<Upload *>(upload);
        self->position_ = static_cast<size_t>(offset);
        return self->position_ <= self->text_.size() ? CURL_SEEKFUNC_OK : CURL_SEEKFUNC_FAIL;
    }

    const std::string &text_;
    size_t position_ = 0;
    size_t answered_ = 0;
};

} // namespace

void send_text(const WebAddress &address, const std::string &text, const WebLimits &limits,
               const std::function<bool()> &goes_on)
{
    if (!address.is_web()) {
        throw Error("the address is invalid: its scheme is none of http, https");
    }
    TransferBudget budget(limits);
    Upload(address, text, limits, budget, goes_on).run();
}

} // namespace simulated_gateway
