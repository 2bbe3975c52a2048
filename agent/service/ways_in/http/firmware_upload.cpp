// SPDX-License-Identifier: MIT
#include "service/ways_in/http/firmware_upload.h"

#include "protocol/json_text.h"
#include "service/common/sockets.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <openssl/evp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace agent::service {

namespace {

namespace fs = std::filesystem;

constexpr size_t kMostImage = 64UL * 1024 * 1024;
constexpr char kImagePrefix[] = "image-";
constexpr size_t kNameDigits = 16;

class Digest {
  public:
    explicit Digest(const EVP_MD *kind) : context_(EVP_MD_CTX_new(), EVP_MD_CTX_free)
    {
        EVP_DigestInit_ex(context_.get(), kind, nullptr);
    }

    void add(std::string_view bytes)
    {
        EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size());
    }

    std::string text()
    {
        std::array<unsigned char, EVP_MAX_MD_SIZE> digest = {};
        unsigned int size = 0;
        EVP_DigestFinal_ex(context_.get(), digest.data(), &size);
        return in_hex(digest.data(), size);
    }

  private:
    std::unique_ptr<EVP_MD_CTX, void (*)(EVP_MD_CTX *)> context_;
};

class FirmwareUpload : public HttpHandler {
  public:
    explicit FirmwareUpload(HttpConnection &connection) : connection_(connection)
    {
        const std::string &folder = connection.server().options().uploads;
        std::error_code ignored;
        fs::create_directories(folder, ignored);
        path_ =
            (fs::path(folder) / (kImagePrefix + random_token().substr(0, kNameDigits))).string();
        file_.emplace(open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                           S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH));
        if (file_->get() < 0) {
            problem_ = system_problem("cannot write " + path_);
        }
    }

    // An image that has not arrived whole is removed.
    ~FirmwareUpload() override
    {
        if (!is_whole_) {
            unlink(path_.c_str());
        }
        connection_.server().end_upload();
    }
    FirmwareUpload(const FirmwareUpload &) = delete;
    FirmwareUpload &operator=(const FirmwareUpload &) = delete;

    size_t most_body() const override { return kMostImage; }
    bool takes_long() const override { return true; }

    bool on_body(std::string_view part) override
    {
        for (std::string_view rest = part; problem_.empty() && !rest.empty();) {
            const ssize_t written = write(file_->get(), rest.data(), rest.size());
            if (written >= 0) {
                rest.remove_prefix(static_cast<size_t>(written));
            } else if (errno != EINTR) {
                problem_ = system_problem("cannot write " + path_);
            }
        }
        if (!problem_.empty()) {
            connection_.respond(refusal(status::kNoStorage, problem_));
            return false;
        }
        size_ += part.size();
        sha256_.add(part);
        md5_.add(part);
        return true;
    }

    void run() override
    {
        if (size_ == 0) {
            connection_.respond(error_response(Code::kBadRequest, "there is no image"));
            return;
        }
        is_whole_ = true;
        remove_others();
        std::error_code ignored; // an empty path is refused by the gateway
        const std::string url = "file://" + fs::absolute(path_, ignored).string();
        connection_.respond(json_response(status::kOk, R"({"url":)" + agent::quoted(url) +
                                                           R"(,"size":)" + std::to_string(size_) +
                                                           R"(,"sha256":")" + sha256_.text() +
                                                           R"(","md5":")" + md5_.text() + "\"}"));
    }

  private:
    void remove_others() const
    {
        std::error_code problem;
        fs::directory_iterator entry(fs::path(path_).parent_path(), problem);
        for (; !problem && entry != fs::directory_iterator(); entry.increment(problem)) {
            const fs::path &path = entry->path();
            if (path != path_ && path.filename().string().starts_with(kImagePrefix)) {
                std::error_code ignored;
                fs::remove(path, ignored);
            }
        }
    }

    HttpConnection &connection_;
    std::string path_;
    std::optional<Descriptor> file_;
    std::string problem_;
    size_t size_ = 0;
    bool is_whole_ = false;
    Digest sha256_{EVP_sha256()};
    Digest md5_{EVP_md5()};
};

} // namespace

std::unique_ptr<HttpHandler> make_firmware_upload(HttpConnection &connection)
{
    return std::make_unique<FirmwareUpload>(connection);
}

} // namespace agent::service
