#include "core/refusal.h"

#include "simulated_gateway/simulated_gateway.h"

#include <mutex>

namespace simulated_gateway {
namespace {

struct RefusalListener {
    std::mutex mutex; // held while it is told something
    SimulatedGatewayRefusal report = nullptr;
    void *context = nullptr;
};

// Never destroyed: a worker thread may call the device while the process ends.
RefusalListener &refusal_listener()
{
    static RefusalListener &only = *new RefusalListener;
    return only;
}

} // namespace

void report_refusal(const char *function, const std::string &reason)
{
    const std::lock_guard lock(refusal_listener().mutex);
    if (refusal_listener().report != nullptr) {
        refusal_listener().report(function, reason.c_str(), refusal_listener().context);
    }
}

} // namespace simulated_gateway

void simulated_gateway_on_refusal(SimulatedGatewayRefusal report, void *context)
{
    using namespace simulated_gateway;
    const std::lock_guard lock(refusal_listener().mutex);
    refusal_listener().report = report;
    refusal_listener().context = context;
}
