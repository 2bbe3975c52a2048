// A web server in a process of its own, for what is downloaded in tests. http_server.py says how it
// can be made to misbehave.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

class HttpServer {
  public:
    enum class Protocol { kHttp, kHttps };

    // Serves the folder's files until this object ends.
    explicit HttpServer(const std::string &folder, Protocol protocol = Protocol::kHttp);
    ~HttpServer();
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;

    // "http://127.0.0.1:PORT/" and the path behind it.
    std::string address(const std::string &path) const { return root_ + path; }
    // The certificate to trust.
    std::string ca_file() const { return work_ + "/certificate.pem"; }

    // Lets everything go on that the server holds back, now and later.
    void release() const;

    // What was asked for until now: a path each, with "PUT " in front or a Range behind it, where
    // there is one.
    std::vector<std::string> requests() const;

    // What was put until now.
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
