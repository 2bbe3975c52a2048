// SPDX-License-Identifier: MIT
// What describes the interface to programs.
#pragma once

#include "service/ways_in/http/static_files.h"

namespace agent::service {

// {"protocol": VERSION, "commands": […], "events": […]}: all descriptions.
const StaticFile &protocol_document();
// The interface as OpenAPI 3.1.
const StaticFile &openapi_document();

} // namespace agent::service
