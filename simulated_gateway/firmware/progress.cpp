#include "firmware/progress.h"

#include "simulated_gateway/simulated_gateway.h"

#include <mutex>

namespace simulated_gateway {
namespace {

struct Listener {
    std::mutex mutex; // held while it is told something
    SimulatedGatewayProgress report = nullptr;
    void *context = nullptr;
};

// Never destroyed: a worker thread may call the device while the process ends.
Listener &listener()
{
    static Listener &only = *new Listener;
    return only;
}

} // namespace

void Progress::report(int32_t percent)
{
    if (percent <= last_) {
        return;
    }
    last_ = percent;
    const std::lock_guard lock(listener().mutex);
    if (listener().report != nullptr) {
        listener().report(task_, percent, listener().context);
    }
}

} // namespace simulated_gateway

void simulated_gateway_on_progress(SimulatedGatewayProgress report, void *context)
{
    using namespace simulated_gateway;
    const std::lock_guard lock(listener().mutex);
    listener().report = report;
    listener().context = context;
}
