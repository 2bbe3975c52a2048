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
        complain("no command matches \"" + pattern + "\"");
        return kCommandFailed;
    }
    return show(page);
}

int run_describe(const std::string &command)
{
    const Description *description = find_description(command);
    if (description == nullptr) {
        complain(no_such_command(command));
        return kUnknownCommand;
    }
    return show(description_page(*description));
}

} // namespace agent
