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

// Every name has these places; together with the length they tell nearly all names apart.
constexpr size_t kHashedPlaces[] = {0, 4, 9};
constexpr size_t kShortestName = 10;

// A few characters and not all, so that a long name costs no more than a short one.
constexpr uint32_t hash_of(const char *name, size_t length)
{
    auto hash = static_cast<uint32_t>(length);
    for (const size_t place : kHashedPlaces) {
        hash = hash * 33 + static_cast<unsigned char>(name[place]);
    }
    return hash * 33 + static_cast<unsigned char>(name[length - 2]);
}

constexpr size_t length_of(const char *name)
{
    size_t length = 0;
    while (name[length] != '\0') {
        ++length;
    }
    return length;
}

constexpr bool are_same(const char *left, const char *right)
{
    while (*left != '\0' && *left == *right) {
        ++left;
        ++right;
    }
    return *left == *right;
}

// Positions in the table by the hash of the name, or in the next free slot: the table itself keeps
// the order of the protocol's list. Twice as many slots as names keep the ways short.
struct NameIndex {
    static constexpr size_t kSlots = 256;
    static constexpr uint8_t kFree = UINT8_MAX;
    static_assert(kCommandCount < kSlots / 2 && kCommandCount < kFree, "give the index more slots");

    uint8_t position[kSlots] = {};
    uint8_t mark[kSlots] = {}; // of the hash: whether comparing the name is worth it
    bool are_names_unique = true;
    bool are_names_long_enough = true;

    static constexpr size_t first_slot(uint32_t hash) { return hash % kSlots; }
    static constexpr size_t next_slot(size_t slot) { return (slot + 1) % kSlots; }
    static constexpr uint8_t mark_of(uint32_t hash) { return hash / kSlots % kSlots; }

    constexpr NameIndex()
    {
        for (uint8_t &entry : position) {
            entry = kFree;
        }
        for (unsigned at = 0; at < kCommandCount; ++at) {
            const char *name = kCommands[at].name;
            are_names_long_enough = are_names_long_enough && length_of(name) >= kShortestName;
            const uint32_t hash = hash_of(name, length_of(name));
            size_t slot = first_slot(hash);
            while (position[slot] != kFree) {
                are_names_unique =
                    are_names_unique && !are_same(kCommands[position[slot]].name, name);
                slot = next_slot(slot);
            }
            position[slot] = static_cast<uint8_t>(at);
            mark[slot] = mark_of(hash);
        }
    }
};

constexpr NameIndex kByName;
static_assert(kByName.are_names_unique, "two commands have the same name");
static_assert(kByName.are_names_long_enough, "a name ends before the places that are hashed");

const Command *find_command(const char *name)
{
    const size_t length = strlen(name);
    if (length < kShortestName) {
        return nullptr;
    }
    const uint32_t hash = hash_of(name, length);
    size_t slot = NameIndex::first_slot(hash);
    while (kByName.position[slot] != NameIndex::kFree) {
        const Command &candidate = kCommands[kByName.position[slot]];
        if (kByName.mark[slot] == NameIndex::mark_of(hash) && strcmp(name, candidate.name) == 0) {
            return &candidate;
        }
        slot = NameIndex::next_slot(slot);
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
