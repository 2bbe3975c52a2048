// SPDX-License-Identifier: MIT
// Verifies passwords on a separate thread, one after the other, since each takes long on purpose.
#pragma once

#include "service/ways_in/http/security.h"

#include <boost/asio/io_context.hpp>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace agent::service {

class PasswordChecker {
  public:
    using Done = std::function<void(bool is_right)>;

    PasswordChecker(boost::asio::io_context &loop, const Security &security);
    // Waits for the one that is being verified.
    ~PasswordChecker();
    PasswordChecker(const PasswordChecker &) = delete;
    PasswordChecker &operator=(const PasswordChecker &) = delete;

    // Calls back from the loop. Result: false when too many are waiting.
    bool check(std::string hash, std::string password, Done done);

  private:
    struct Task {
        std::string hash;
        std::string password;
        Done done;
    };
    void run();

    boost::asio::io_context &loop_;
    const Security &security_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Task> tasks_;
    bool is_ending_ = false;
    std::thread thread_; // the last member: it uses the others
};

} // namespace agent::service
