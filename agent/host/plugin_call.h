// SPDX-License-Identifier: MIT
// A call of a function that the plug-in exports, reported to what stands between it and its host.
#pragma once

#include "host/plugin_seam.h"

namespace agent {

class PluginCall {
  public:
    // Without a seam nothing is reported.
    PluginCall(PluginSeam *seam, const char *function, PluginSeam::Texts arguments = {})
        : seam_(seam)
    {
        if (seam_ != nullptr) {
            seam_->begin_function(function, arguments);
        }
    }

    // The function has returned; the reply is null if there is none. Result: its result.
    int32_t end(const cJSON *reply, int32_t result) const
    {
        if (seam_ != nullptr) {
            seam_->end(reply, result);
        }
        return result;
    }

  private:
    PluginSeam *seam_;
};

} // namespace agent
