// SPDX-License-Identifier: MIT
#include "service/worker/in_process_worker.h"

#include "commands/serve.h"
#include "host/workers.h"
#include "io/streams.h"
#include "io/text.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/post.hpp>

#include <condition_variable>
#include <csignal>
#include <mutex>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

namespace agent::service {

// Between the event loop and the thread: lines in, lines out.
class InProcessWorker::Shared : public std::enable_shared_from_this<InProcessWorker::Shared> {
  public:
    Shared(boost::asio::io_context &loop, WorkerListener &listener)
        : loop_(&loop), listener_(&listener)
    {
    }

    void send(std::string_view line)
    {
        {
            const std::lock_guard lock(mutex_);
            lines_.emplace_back(line);
        }
        changed_.notify_one();
    }

    void finish()
    {
        {
            const std::lock_guard lock(mutex_);
            is_finishing_ = true;
        }
        changed_.notify_one();
    }

    // No more lines are passed on after this.
    void leave()
    {
        has_left_ = true;
        const std::lock_guard lock(mutex_);
        loop_ = nullptr;
    }

    void run(const Options &options)
    {
        WorkerEnd end;
        end.text = "has ended";
        end.exit_status = kSuccess;
        try {
            const PluginHost host(options.host);
            {
                ServeSession session(options, host,
                                     [this](std::initializer_list<std::string_view> pieces) {
                                         return hand_out(pieces);
                                     });
                serve(session);
                await_workers(host);
                session.look();
            }
        } catch (const HostError &problem) {
            print_error(problem.what());
            end.exit_status = problem.status();
        } catch (const std::bad_alloc &) {
            print_out_of_memory();
            end.exit_status = kOutOfMemory;
        } catch (const std::exception &problem) {
            print_error(problem.what());
            end.exit_status = kCannotLoad;
        }
        end.text = "ended with exit status " + std::to_string(*end.exit_status);
        tell_end(end);
    }

    void tell_end(const WorkerEnd &end)
    {
        const std::lock_guard lock(mutex_);
        if (loop_ != nullptr) {
            boost::asio::post(*loop_, [self = shared_from_this(), end] {
                if (!self->has_left_) {
                    self->listener_->on_worker_end(end);
                }
            });
        }
    }

  private:
    // Result: false at the end of the lines. No line: it is time for ServeSession::look().
    bool next(std::string &line, bool &has_line, std::optional<std::chrono::milliseconds> look)
    {
        std::unique_lock lock(mutex_);
        const auto is_due = [this] {
            return !lines_.empty() || is_finishing_;
        };
        if (look) {
            changed_.wait_for(lock, *look, is_due);
        } else {
            changed_.wait(lock, is_due);
        }
        has_line = !lines_.empty();
        if (has_line) {
            line = std::move(lines_.front());
            lines_.erase(lines_.begin());
        }
        return has_line || !is_finishing_;
    }

    void serve(ServeSession &session)
    {
        std::string line;
        bool has_line = false;
        while (next(line, has_line, session.next_look())) {
            if (has_line) {
                session.answer(line);
            } else {
                session.look();
            }
        }
    }

    bool hand_out(std::initializer_list<std::string_view> pieces)
    {
        std::string line;
        for (const std::string_view piece : pieces) {
            line += piece;
        }
        line.pop_back(); // the line end
        const std::lock_guard lock(mutex_);
        if (loop_ == nullptr) {
            return false;
        }
        boost::asio::post(*loop_, [self = shared_from_this(), line = std::move(line)] {
            if (!self->has_left_) {
                self->listener_->on_worker_line(line);
            }
        });
        return true;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    boost::asio::io_context *loop_; // null after leave()
    bool has_left_ = false;         // the same, for the event loop alone
    WorkerListener *const listener_;
    std::vector<std::string> lines_; // usually one
    bool is_finishing_ = false;
};

InProcessWorker::InProcessWorker(boost::asio::io_context &loop, Options options)
    : loop_(loop), options_(std::move(options))
{
}

InProcessWorker::~InProcessWorker()
{
    if (shared_ != nullptr) {
        shared_->leave();
    }
}

void InProcessWorker::start(WorkerListener &listener)
{
    shared_ = std::make_shared<Shared>(loop_, listener);
    // Signals are handled by the event loop's thread.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, &before);
    try {
        std::thread([shared = shared_, options = options_] { shared->run(options); }).detach();
    } catch (const std::system_error &problem) {
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        throw WorkerError(std::string("cannot start a thread: ") + problem.what());
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

void InProcessWorker::send(std::string_view line)
{
    shared_->send(line);
}

void InProcessWorker::finish()
{
    shared_->finish();
}

// The thread cannot be killed: it runs on detached.
void InProcessWorker::kill()
{
    WorkerEnd end;
    end.text = "is left behind";
    shared_->tell_end(end);
}

} // namespace agent::service
