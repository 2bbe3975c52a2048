// SPDX-License-Identifier: MIT
// gateway_process STATE COUNT STEP [ADDRESS...]: opens a gateway on the state file, flashes the
// image of each address, power-cycles the gateway COUNT times, and keeps it open until its input
// ends. It prints "." when the gateway is open, after each flash and after each power cycle.
//
// It kills itself at this step of its file operations, counted from 0; -1 is none. It aborts where
// a file is renamed into place before all of it is synced. For both it intercepts the library's
// system calls.
#include "simulated_gateway/simulated_gateway.h"
#include "smart_router_service/device_access.h"

#include <atomic>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

long steps_left = -1;

bool is_last_step()
{
    return steps_left >= 0 && steps_left-- == 0;
}

void die_at_last_step()
{
    if (is_last_step()) {
        raise(SIGKILL);
    }
}

// By file descriptor: written to and not synced since.
std::atomic<bool> is_unsynced[1024];

void note(int fd, bool unsynced)
{
    if (fd >= 0 && static_cast<size_t>(fd) < std::size(is_unsynced)) {
        is_unsynced[fd] = unsynced;
    }
}

void abort_if_unsynced(const char *path)
{
    struct stat named = {};
    if (stat(path, &named) != 0) {
        return;
    }
    for (size_t fd = 0; fd < std::size(is_unsynced); ++fd) {
        struct stat written = {};
        if (is_unsynced[fd] && fstat(static_cast<int>(fd), &written) == 0 &&
            written.st_ino == named.st_ino && written.st_dev == named.st_dev) {
            std::abort();
        }
    }
}

} // namespace

extern "C" int open(const char *path, int flags, ...)
{
    die_at_last_step();
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    const int fd = static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
    note(fd, false);
    return fd;
}

extern "C" ssize_t write(int fd, const void *data, size_t size)
{
    if (is_last_step()) {
        syscall(SYS_write, fd, data, size / 2);
        raise(SIGKILL);
    }
    note(fd, true);
    return syscall(SYS_write, fd, data, size);
}

extern "C" int fsync(int fd)
{
    die_at_last_step();
    note(fd, false);
    return static_cast<int>(syscall(SYS_fsync, fd));
}

extern "C" int rename(const char *from, const char *to) noexcept
{
    die_at_last_step();
    abort_if_unsynced(from);
    return static_cast<int>(syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

extern "C" int unlink(const char *path) noexcept
{
    die_at_last_step();
    return static_cast<int>(syscall(SYS_unlinkat, AT_FDCWD, path, 0));
}

extern "C" int mkdir(const char *path, mode_t mode) noexcept
{
    die_at_last_step();
    return static_cast<int>(syscall(SYS_mkdirat, AT_FDCWD, path, mode));
}

namespace {

bool say_dot()
{
    return syscall(SYS_write, STDOUT_FILENO, ".", 1) == 1;
}

bool flash(char **addresses)
{
    for (; *addresses != nullptr; ++addresses) {
        if (devapi_flash_update_image(*addresses) != 0 || !say_dot()) {
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 4) {
        return 2;
    }
    steps_left = std::atol(argv[3]);
    SimulatedGatewayOptions options = {};
    options.state_file = argv[1];
    char error[512];
    if (simulated_gateway_open(&options, error, sizeof(error)) != 0) {
        std::fprintf(stderr, "%s\n", error);
        return 1;
    }
    for (long times = std::atol(argv[2]); say_dot() && times > 0; --times) {
        if (!flash(argv + 4)) {
            return 1;
        }
        simulated_gateway_power_cycle();
    }
    char end_of_input;
    while (read(STDIN_FILENO, &end_of_input, 1) > 0) {
    }
    simulated_gateway_close();
    return 0;
}
