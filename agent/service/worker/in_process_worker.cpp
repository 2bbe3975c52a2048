// SPDX-License-Identifier: MIT
#include "service/worker/in_process_worker.h"

#include "commands/serve.h"
#include "host/workers.h"
#include "io/streams.h"
#include "io/text.h"
#include "service/common/sockets.h"
#include "service/worker/worker_output.h"

#include <csignal>
#include <mutex>
#include <new>
#include <poll.h>
#include <sys/eventfd.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace agent::service {

// Between the event loop and the thread: lines in, lines out.
class InProcessWorker::Shared {
  public:
    Shared(boost::asio::io_context &loop, WorkerListener &listener)
        : output_(std::make_shared<WorkerOutput>(loop, listener))
    {
        if (changed_.get() < 0) {
            throw WorkerError(system_problem("cannot make an event descriptor"));
        }
    }

    void send(std::string_view line)
    {
        {
            const std::lock_guard lock(mutex_);
            lines_.emplace_back(line);
        }
        wake();
    }

    void finish()
    {
        {
            const std::lock_guard lock(mutex_);
            is_finishing_ = true;
        }
        wake();
    }

    // No more lines are passed on after this.
    void leave() { output_->leave(); }

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
                                         return output_->write(pieces);
                                     });
                serve(session);
                await_workers(host);
                session.poll();
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
        report_end(end);
    }

    void report_end(const WorkerEnd &end) { output_->end(end); }

  private:
    // Result: false at the end of the lines. No line: it is time for ServeSession::poll().
    bool next(std::string &line, bool &has_line, std::optional<std::chrono::milliseconds> time)
    {
        bool is_last = take(line, has_line);
        if (!has_line && !is_last) {
            wait(time);
            is_last = take(line, has_line);
        }
        return has_line || !is_last;
    }

    // Result: whether no more lines will come.
    bool take(std::string &line, bool &has_line)
    {
        const std::lock_guard lock(mutex_);
        has_line = !lines_.empty();
        if (has_line) {
            line = std::move(lines_.front());
            lines_.erase(lines_.begin());
        }
        return is_finishing_;
    }

    void wake() const
    {
        const uint64_t one = 1;
        [[maybe_unused]] const ssize_t written = write(changed_.get(), &one, sizeof(one));
    }

    // Until wake(), or until time has passed.
    void wait(std::optional<std::chrono::milliseconds> time) const
    {
        pollfd woken = {changed_.get(), POLLIN, 0};
        if (time && poll(&woken, 1, static_cast<int>(time->count())) <= 0) {
            return;
        }
        uint64_t count = 0;
        [[maybe_unused]] const ssize_t got = read(changed_.get(), &count, sizeof(count));
    }

    void serve(ServeSession &session)
    {
        std::string line;
        bool has_line = false;
        while (next(line, has_line, session.next_poll())) {
            if (has_line) {
                session.answer(line);
            } else {
                session.poll();
            }
        }
    }

    std::mutex mutex_;
    // Cheaper than a condition variable, which takes the waiting thread another system call.
    const Descriptor changed_{eventfd(0, EFD_CLOEXEC)};
    const std::shared_ptr<WorkerOutput> output_;
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
    if (shared_ != nullptr) {
        shared_->leave(); // its thread may run on
    }
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
    shared_->report_end(end);
}

} // namespace agent::service
