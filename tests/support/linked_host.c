/* SPDX-License-Identifier: MIT */
/* The example's agent, linked with the plug-in and the simulated gateway. */
#include "smart_router_service/processjsonability.h"
#include "waiting_host.h"

int main(int count, char **words)
{
    const int status = run_minimal_host(count, words);
    await_worker(&downimagelock);
    return status;
}
