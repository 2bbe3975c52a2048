// The one door: finds a command's handler by its name and calls it.
#include "smart_router_service/processjsonability.h"

#include "commands.h"

#include <string.h>

namespace {

using Handler = int32_t (*)(cJSON *obj);

// The names and the handlers stand apart, in the order of the table: the names are one text, since
// a pointer to each would take more room than the places where they begin.
#define COMMAND_HANDLER(name, handler) handler,
constexpr Handler kHandlers[] = {SMART_ROUTER_COMMANDS(COMMAND_HANDLER)};
#undef COMMAND_HANDLER
#define COMMAND_NAME(name, handler) name "\0"
constexpr char kNames[] = SMART_ROUTER_COMMANDS(COMMAND_NAME);
#undef COMMAND_NAME

constexpr unsigned kCommandCount = sizeof(kHandlers) / sizeof(kHandlers[0]);

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

// Where each name begins, and the last one ends.
struct NamePlaces {
    uint16_t place[kCommandCount + 1] = {};

    constexpr NamePlaces()
    {
        static_assert(sizeof kNames <= UINT16_MAX, "places are kept in 16 bits");
        size_t at = 0;
        for (unsigned position = 0; position < kCommandCount; ++position) {
            place[position] = static_cast<uint16_t>(at);
            at += length_of(kNames + at) + 1;
        }
        place[kCommandCount] = static_cast<uint16_t>(at);
    }
};

constexpr NamePlaces kPlaces;

constexpr const char *name_at(unsigned position)
{
    return kNames + kPlaces.place[position];
}

bool is_name_at(unsigned position, const char *name, size_t length)
{
    const size_t size = static_cast<size_t>(kPlaces.place[position + 1] - kPlaces.place[position]);
    return size == length + 1 && memcmp(name_at(position), name, length) == 0;
}

// Positions in the table by the hash of the name, or in the next free slot: the table itself keeps
// the order of the protocol's list. Twice as many slots as names keep the ways short.
struct NameIndex {
    static constexpr size_t kSlots = 256;
    static constexpr uint8_t kFree = UINT8_MAX;
    static_assert(kCommandCount < kSlots / 2 && kCommandCount < kFree, "give the index more slots");

    uint8_t position[kSlots] = {};
    bool are_names_unique = true;
    bool are_names_long_enough = true;
    unsigned longest_way = 0;

    static constexpr size_t first_slot(uint32_t hash) { return hash % kSlots; }
    static constexpr size_t next_slot(size_t slot) { return (slot + 1) % kSlots; }

    constexpr NameIndex()
    {
        for (uint8_t &entry : position) {
            entry = kFree;
        }
        for (unsigned at = 0; at < kCommandCount; ++at) {
            const char *name = name_at(at);
            are_names_long_enough = are_names_long_enough && length_of(name) >= kShortestName;
            const uint32_t hash = hash_of(name, length_of(name));
            size_t slot = first_slot(hash);
            unsigned way = 1;
            while (position[slot] != kFree) {
                are_names_unique = are_names_unique && !are_same(name_at(position[slot]), name);
                slot = next_slot(slot);
                ++way;
            }
            position[slot] = static_cast<uint8_t>(at);
            longest_way = way > longest_way ? way : longest_way;
        }
    }
};

constexpr NameIndex kByName;
static_assert(kByName.are_names_unique, "two commands have the same name");
static_assert(kByName.are_names_long_enough, "a name ends before the places that are hashed");
static_assert(kByName.longest_way <= 4, "names meet in one slot too often: hash other places");

Handler find_handler(const char *name)
{
    const size_t length = strlen(name);
    if (length < kShortestName) {
        return nullptr;
    }
    size_t slot = NameIndex::first_slot(hash_of(name, length));
    while (kByName.position[slot] != NameIndex::kFree) {
        const unsigned position = kByName.position[slot];
        if (is_name_at(position, name, length)) {
            return kHandlers[position];
        }
        slot = NameIndex::next_slot(slot);
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
