// The one door: finds a command's handler by its name and calls it.
#include "smart_router_service/processjsonability.h"

#include "commands.h"

#include <string.h>

namespace {

struct Command {
    const char *name;
    int32_t (*handler)(cJSON *obj);
};

#define COMMAND_ROW(name, handler) {name, handler},
constexpr Command kCommands[] = {SMART_ROUTER_COMMANDS(COMMAND_ROW)};
#undef COMMAND_ROW

constexpr unsigned kCommandCount = sizeof(kCommands) / sizeof(kCommands[0]);
static_assert(kCommandCount <= UINT8_MAX, "the index below counts commands in bytes");

constexpr int compare(const char *left, const char *right)
{
    while (*left != '\0' && *left == *right) {
        ++left;
        ++right;
    }
    return static_cast<unsigned char>(*left) - static_cast<unsigned char>(*right);
}

// Positions in the table, sorted by name: the table itself keeps the order of the protocol's list.
struct NameIndex {
    uint8_t position[kCommandCount] = {};

    constexpr NameIndex()
    {
        for (unsigned sorted = 0; sorted < kCommandCount; ++sorted) {
            unsigned at = sorted;
            while (at > 0 &&
                   compare(kCommands[sorted].name, kCommands[position[at - 1]].name) < 0) {
                position[at] = position[at - 1];
                --at;
            }
            position[at] = static_cast<uint8_t>(sorted);
        }
    }

    constexpr bool names_are_unique() const
    {
        for (unsigned at = 1; at < kCommandCount; ++at) {
            if (compare(kCommands[position[at - 1]].name, kCommands[position[at]].name) == 0) {
                return false;
            }
        }
        return true;
    }
};

constexpr NameIndex kByName;
static_assert(kByName.names_are_unique(), "two commands have the same name");

const Command *find_command(const char *name)
{
    unsigned first = 0;
    unsigned end = kCommandCount;
    while (first < end) {
        const unsigned middle = (first + end) / 2;
        const Command &candidate = kCommands[kByName.position[middle]];
        const int order = strcmp(name, candidate.name);
        if (order == 0) {
            return &candidate;
        }
        if (order < 0) {
            end = middle;
        } else {
            first = middle + 1;
        }
    }
    return nullptr;
}

} // namespace

int32_t hg_process_json_cmd(const char *cmd, cJSON *obj)
{
    const Command *command = cmd != nullptr ? find_command(cmd) : nullptr;
    if (command == nullptr) {
        return HG_NO_SUCH_COMMAND;
    }
    command->handler(obj);
    return 0;
}
