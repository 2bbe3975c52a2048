// SPDX-License-Identifier: MIT
#include "host/program.h"

#include "host/plugin_host.h"
#include "host/workers.h"
#include "io/error_output.h"
#include "io/exit_status.h"
#include "io/streams.h"
#include "io/text.h"

#include <cstdio>
#include <exception>
#include <new>
#include <unistd.h>

namespace agent {

namespace {

// Has room for the names of all symbols that a library may lack.
constexpr size_t kMaxHostError = 65536;

int status_of_program(const std::function<int()> &work)
{
    try {
        secure_standard_streams();
        open_error_output();
        return work();
    } catch (const HostError &problem) {
        print_error(problem.what(), kMaxHostError);
        return problem.status();
    } catch (const StreamError &problem) {
        print_error(problem.what());
        return kCannotWrite;
    } catch (const std::bad_alloc &) {
        print_out_of_memory();
        return kOutOfMemory;
    } catch (const std::exception &problem) { // from the system, while the libraries are loaded
        print_error(problem.what());
        return kCannotLoad;
    }
}

} // namespace

int run_program(const std::function<int()> &work)
{
    const int exit_status = status_of_program(work);
    finish_error_output();
    if (has_other_threads()) {
        // A worker of the plug-in may still be running: nothing that it uses may be destroyed.
        fflush(nullptr);
        _exit(exit_status);
    }
    return exit_status;
}

} // namespace agent
