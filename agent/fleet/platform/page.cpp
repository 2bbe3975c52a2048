// SPDX-License-Identifier: MIT
#include "fleet/platform/page.h"

#include "fleet/platform/platform_options.h"
#include "io/streams.h"
#include "service/ways_in/http/static_files.h"

namespace agent::fleet::platform {

namespace {

constexpr size_t kMaxTemplate = 4UL * 1024 * 1024;
constexpr std::string_view kPlace = "REPORT_DATA";

} // namespace

std::string page_template()
{
    const std::string folder = service::default_console_folder();
    if (folder.empty()) {
        throw WrongUsage(
            "--page: there is no template of the page, since this build was made without Node.js");
    }
    const std::string path = folder + "/fleet_report.html";
    std::string page = read_all_of(path, kMaxTemplate);
    if (page.find(kPlace) == std::string::npos) {
        throw WrongUsage("--page: " + path + " is not the template of the page");
    }
    return page;
}

std::string page_of(std::string page_template, std::string_view json)
{
    // Within the script element "</script" would end it.
    std::string data;
    for (const char byte : json) {
        data += byte == '<' ? std::string("\\u003c") : std::string(1, byte);
    }
    return page_template.replace(page_template.find(kPlace), kPlace.size(), data);
}

} // namespace agent::fleet::platform
