// Handles one command with as many elements in its list as the program's argument says, for a
// profiler that counts what the handler does.
#pragma once

#include "handler_test.h"

#include <cstdio>
#include <cstdlib>

// A command with its request, of which the first key is the list, and one element of that list.
struct ListCommand {
    const char *command;
    const char *request;
    const char *element;
    size_t calls; // of the device, whatever is in the list
    size_t calls_for_each;
};

// Result: what main() returns.
inline int handle_list(const ListCommand &list, int argc, char **argv)
{
    const size_t count = argc == 2 ? strtoul(argv[1], nullptr, 10) : 0;
    const Json element = parse(list.element);
    const Json object = parse(list.request);
    for (size_t at = 0; at < count; ++at) {
        cJSON_AddItemToArray(object->child, cJSON_Duplicate(element.get(), 1));
    }

    hg_process_json_cmd(list.command, object.get());

    if (print(object.get()) != R"({"Status":"0"})" ||
        recording_device::calls().size() != list.calls + count * list.calls_for_each ||
        !recording_host::log_lines().empty()) {
        fprintf(stderr, "the list was not handled as it should be\n");
        return 1;
    }
    return 0;
}
