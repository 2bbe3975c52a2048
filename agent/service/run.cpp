#include "service/run.h"

namespace agent::service {

int run_service(const RunOptions &options)
{
    return check_config(options);
}

} // namespace agent::service
