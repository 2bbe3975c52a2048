// SPDX-License-Identifier: MIT
// What the functions of host_agent.h for notices to the app do.
#pragma once

#include <cstdint>

namespace agent {

char *base64_of(const char *text); // a text to be freed; null for null or out of memory
void write_md5(const char *text, char *out);
int32_t pass_notice_on(const char *text);

} // namespace agent
