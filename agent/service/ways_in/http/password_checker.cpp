// SPDX-License-Identifier: MIT
#include "service/ways_in/http/password_checker.h"

#include <boost/asio/post.hpp>

#include <cstring>
#include <utility>

namespace agent::service {

namespace {

constexpr size_t kMostWaiting = 8;

} // namespace

PasswordChecker::PasswordChecker(boost::asio::io_context &loop, const Security &security)
    : loop_(loop), security_(security), thread_([this] { run(); })
{
}

PasswordChecker::~PasswordChecker()
{
    {
        const std::lock_guard lock(mutex_);
        is_ending_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

bool PasswordChecker::check(std::string hash, std::string password, Done done)
{
    const std::lock_guard lock(mutex_);
    if (tasks_.size() >= kMostWaiting) {
        return false;
    }
    tasks_.push_back({std::move(hash), std::move(password), std::move(done)});
    changed_.notify_one();
    return true;
}

void PasswordChecker::run()
{
    for (;;) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return is_ending_ || !tasks_.empty(); });
        if (is_ending_) {
            return;
        }
        Task task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        const bool is_right = security_.is_password(task.hash, task.password);
        explicit_bzero(task.password.data(), task.password.size());
        boost::asio::post(loop_, [done = std::move(task.done), is_right] { done(is_right); });
    }
}

} // namespace agent::service
