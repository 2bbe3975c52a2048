// SPDX-License-Identifier: MIT
#include "service/worker/child_worker.h"

#include "service/common/sockets.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

extern "C" { // missing in this C library's header
#include <sys/pidfd.h>
}

namespace agent::service {

namespace {

constexpr char kExecutable[] = "/proc/self/exe";
constexpr int kCannotRun = 127;

// What a worker has written when it ends fits into the pipe; another process with the pipe may keep
// writing.
constexpr size_t kMostLeftInPipe = 1024UL * 1024;

// Runs in the child between fork() and exec. Only async-signal-safe calls are allowed.
[[noreturn]] void run_child(const std::vector<char *> &words, int input, int output, pid_t parent)
{
    dup2(input, STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    // A separate process group: its children are killed with it, and Ctrl-C at a terminal reaches
    // only the service, which ends its worker cleanly.
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL); // no worker outlives the service
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr); // NOLINT(concurrency-mt-unsafe): alone since fork()
    if (getppid() == parent) {
        execv(kExecutable, words.data());
    }
    _exit(kCannotRun);
}

WorkerEnd end_of(int status)
{
    WorkerEnd end;
    if (WIFSIGNALED(status)) {
        end.signal = WTERMSIG(status);
        end.text = "was killed by signal " + std::to_string(*end.signal) + " (" +
                   sigdescr_np(*end.signal) + ")";
    } else {
        end.exit_status = WEXITSTATUS(status);
        end.text = "ended with exit status " + std::to_string(*end.exit_status);
    }
    return end;
}

} // namespace

ChildWorker::ChildWorker(boost::asio::io_context &loop, std::vector<std::string> arguments)
    : loop_(loop), arguments_(std::move(arguments))
{
}

ChildWorker::~ChildWorker()
{
    if (lines_ != nullptr) {
        lines_->close();
    }
    if (process_ > 0) {
        ::kill(-process_, SIGKILL);
        waitpid(process_, nullptr, WNOHANG); // it may not end
    }
}

void ChildWorker::start(WorkerListener &listener)
{
    listener_ = &listener;
    std::array<int, 2> in = {-1, -1};
    std::array<int, 2> out = {-1, -1};
    if (pipe2(in.data(), O_CLOEXEC) < 0) {
        throw WorkerError(system_problem("cannot make a pipe"));
    }
    const Descriptor child_input(in[0]);
    Descriptor to_child(in[1]);
    if (pipe2(out.data(), O_CLOEXEC) < 0) {
        throw WorkerError(system_problem("cannot make a pipe"));
    }
    Descriptor from_child(out[0]);
    const Descriptor child_output(out[1]);

    std::vector<char *> words = {const_cast<char *>("hgagent")};
    for (const std::string &argument : arguments_) {
        words.push_back(const_cast<char *>(argument.c_str()));
    }
    words.push_back(nullptr);
    const pid_t parent = getpid();
    const pid_t process = fork();
    if (process < 0) {
        throw WorkerError(system_problem("cannot start a process"));
    }
    if (process == 0) {
        run_child(words, child_input.get(), child_output.get(), parent);
    }
    setpgid(process, process); // both processes set it, to avoid a race
    process_ = process;

    const int end = pidfd_open(process, 0);
    if (end < 0) {
        const int reason = errno;
        ::kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
        process_ = -1;
        errno = reason;
        throw WorkerError(system_problem("cannot watch a process"));
    }
    end_.emplace(loop_, end);
    wait_for_end();
    lines_ =
        LineStream::make(loop_, from_child.release(), to_child.release(), kMaxWorkerLine, *this);
    lines_->start();
}

void ChildWorker::wait_for_end()
{
    end_->async_wait(boost::asio::posix::stream_descriptor::wait_read,
                     [this](const boost::system::error_code &problem) {
                         if (!problem) {
                             reap();
                         }
                     });
}

void ChildWorker::reap()
{
    int status = 0;
    waitpid(process_, &status, 0);
    ::kill(-process_, SIGKILL); // children that it left behind
    process_ = -1;
    end_.reset();
    lines_->drain(kMostLeftInPipe);
    lines_->close();
    lines_.reset();
    listener_->on_worker_end(end_of(status));
}

void ChildWorker::send(std::string_view line)
{
    lines_->send(line);
}

void ChildWorker::finish()
{
    if (lines_ != nullptr) {
        lines_->end_output();
    }
}

void ChildWorker::terminate()
{
    if (process_ > 0) {
        ::kill(process_, SIGTERM);
    }
}

void ChildWorker::kill()
{
    if (process_ > 0) {
        ::kill(-process_, SIGKILL);
    }
}

void ChildWorker::on_line(std::string_view line)
{
    listener_->on_worker_line(line);
}

void ChildWorker::on_too_long()
{
    listener_->on_worker_fault("writes a line of more than " + std::to_string(kMaxWorkerLine) +
                               " bytes");
}

void ChildWorker::on_input_end(bool)
{
    // The process has ended as well, or is about to; a worker that lives on without its pipe is
    // detected by its command's time limit.
}

} // namespace agent::service
