// SPDX-License-Identifier: MIT
#include "fleet/platform/page.h"

#include "io/streams.h"
#include "io/text.h"
#include "service/ways_in/http/static_files.h"

namespace agent::fleet::platform {

namespace {

constexpr size_t kMaxTemplate = 4UL * 1024 * 1024;
constexpr std::string_view kPlace = "REPORT_DATA";

} // namespace

std::optional<std::string> page_of(std::string_view json)
{
    const std::string folder = service::default_console_folder();
    if (folder.empty()) {
        print_error("no page is written: this build was made without Node.js");
        return std::nullopt;
    }
    const std::string path = folder + "/fleet_report.html";
    std::string page = read_all_of(path, kMaxTemplate);
    const size_t place = page.find(kPlace);
    if (place == std::string::npos) {
        print_error(path + " is not the template of the page");
        return std::nullopt;
    }
    // Within the script element "</script" would end it.
    std::string data;
    for (const char byte : json) {
        data += byte == '<' ? std::string("\\u003c") : std::string(1, byte);
    }
    return page.replace(place, kPlace.size(), data);
}

} // namespace agent::fleet::platform
