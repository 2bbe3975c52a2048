// SPDX-License-Identifier: MIT
// The folder with the states of a fleet's gateways. It belongs to one seed, prefix and mix of
// scenarios: with others the homes in it would not be those of the fleet.
#pragma once

#include "fleet/options.h"
#include "service/common/sockets.h"

#include <cstdint>
#include <memory>
#include <string>

namespace agent::fleet {

class States {
  public:
    // Makes the folder if there is none. Throws std::runtime_error when it belongs to something
    // else, is in use, or has no room for the states.
    explicit States(const FleetOptions &options);

    // Makes the file's folder as well.
    std::string file_of(uint32_t number) const;

  private:
    const FleetOptions &options_;
    service::Descriptor lock_;
};

} // namespace agent::fleet
