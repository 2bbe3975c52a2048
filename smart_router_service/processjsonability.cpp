// SPDX-License-Identifier: MIT
// The dispatcher: finds a command's handler by its name and calls it.
#include "smart_router_service/processjsonability.h"

#include "commands.h"

#include <string.h>

namespace {

using Handler = int32_t (*)(cJSON *obj);

} // namespace

// The handlers in the order of the table. Addresses would be relocated when the library is loaded,
// in pages that the process then no longer shares. Where size matters most, each entry is the
// distance from itself to its handler instead, which is known at link time.
#if defined(__mips__)
extern "C" [[gnu::visibility("hidden")]] const int32_t handler_distances[];
#define COMMAND_DISTANCE(name, handler) ".word " #handler " - .\n"
__asm__(".section .rodata.handler_distances, \"a\"\n"
        ".balign 4\n"
        ".globl handler_distances\n"
        ".hidden handler_distances\n"
        "handler_distances:\n" SMART_ROUTER_COMMANDS(COMMAND_DISTANCE) ".previous\n");
#undef COMMAND_DISTANCE

static Handler handler_at(size_t position)
{
    const int32_t *distance = handler_distances + position;
    return reinterpret_cast<Handler>(reinterpret_cast<intptr_t>(distance) + *distance);
}
#else
static Handler handler_at(size_t position)
{
#define COMMAND_HANDLER(name, handler) handler,
    static constexpr Handler kHandlers[] = {SMART_ROUTER_COMMANDS(COMMAND_HANDLER)};
#undef COMMAND_HANDLER
    return kHandlers[position];
}
#endif

namespace {

// The names are one string, since their offsets in it take less space than a pointer to each.
#define COMMAND_NAME(name, handler) name "\0"
constexpr char kNames[] = SMART_ROUTER_COMMANDS(COMMAND_NAME);
#undef COMMAND_NAME

#define COMMAND_ITSELF(name, handler) true,
constexpr bool kCommands[] = {SMART_ROUTER_COMMANDS(COMMAND_ITSELF)};
#undef COMMAND_ITSELF
constexpr size_t kCommandCount = sizeof(kCommands) / sizeof(kCommands[0]);
static_assert(sizeof kNames <= UINT16_MAX, "places are kept in 16 bits");
static_assert(kCommandCount <= UINT8_MAX, "positions are kept in 8 bits");

constexpr bool is_before(const char *left, const char *right)
{
    while (*left != '\0' && *left == *right) {
        ++left;
        ++right;
    }
    return *left < *right;
}

// The commands sorted by name, for a binary search: the offset of each name in kNames, and its
// position in the table.
struct NameIndex {
    uint16_t place[kCommandCount] = {};
    uint8_t position[kCommandCount] = {};

    constexpr NameIndex()
    {
        size_t next = 0;
        for (size_t count = 0; count < kCommandCount; ++count) {
            size_t at = count;
            for (; at > 0 && is_before(kNames + next, name(at - 1)); --at) {
                place[at] = place[at - 1];
                position[at] = position[at - 1];
            }
            place[at] = static_cast<uint16_t>(next);
            position[at] = static_cast<uint8_t>(count);
            while (kNames[next++] != '\0') {
            }
        }
    }
    constexpr const char *name(size_t at) const { return kNames + place[at]; }
    constexpr bool are_names_unique() const
    {
        for (size_t at = 1; at < kCommandCount; ++at) {
            if (!is_before(name(at - 1), name(at))) {
                return false;
            }
        }
        return true;
    }
};

constexpr NameIndex kByName;
static_assert(kByName.are_names_unique(), "two commands have the same name");

Handler find_handler(const char *name)
{
    size_t first = 0;
    size_t end = kCommandCount;
    while (first < end) {
        const size_t middle = (first + end) / 2;
        const int order = strcmp(name, kByName.name(middle));
        if (order == 0) {
            return handler_at(kByName.position[middle]);
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
    const Handler handler = cmd != nullptr ? find_handler(cmd) : nullptr;
    if (handler == nullptr) {
        return HG_NO_SUCH_COMMAND;
    }
    handler(obj);
    return 0;
}
