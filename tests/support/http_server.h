// SPDX-License-Identifier: MIT
// A web server in a separate process, for downloads in tests. http_server.py describes how it can
// be made to misbehave.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

class HttpServer {
  public:
    enum class Protocol { kHttp, kHttps };

    // Serves the folder's files until the destructor.
    explicit HttpServer(const std::string &folder, Protocol protocol = Protocol::kHttp);
    ~HttpServer();
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;

    // "http://127.0.0.1:PORT/" and the path behind it.
    std::string address(const std::string &path) const { return root_ + path; }
    // The certificate to trust.
    std::string ca_file() const { return work_ + "/certificate.pem"; }

    // Releases every response that the server holds back, now and later.
    void release() const;

    // The requests so far: a path each, after "PUT " and before a Range where there is one.
    std::vector<std::string> requests() const;

    // The bodies of the PUT requests so far.
    struct Upload {
        std::string path;
        std::string body;
    };
    std::vector<Upload> uploads() const;

  private:
    std::string work_;
    std::string root_;
    pid_t process_ = -1;
    int input_ = -1;
};
