// SPDX-License-Identifier: MIT
#include "commands/protocol_pages.h"

#include "io/exit_status.h"
#include "io/pages.h"
#include "io/text.h"
#include "protocol/command_pages.h"
#include "protocol/protocol.h"

namespace agent {

int run_list(const std::string &pattern)
{
    const std::string page = list_page(pattern);
    if (page.empty()) {
        print_error("no command matches \"" + pattern + "\"");
        return kCommandFailed;
    }
    return show(page);
}

int run_list_of_events(const std::string &pattern)
{
    const std::string page = event_list_page(pattern);
    if (page.empty()) {
        print_error("no event matches \"" + pattern + "\"");
        return kCommandFailed;
    }
    return show(page);
}

int run_describe(const std::string &name)
{
    const std::string page = description_page(name);
    if (page.empty()) {
        print_error(no_such_command(name));
        return kUnknownCommand;
    }
    return show(page);
}

} // namespace agent
