#include "watched_records.h"

#include <utility>

namespace agent::watch {

namespace {

// No home has so many; a list that is longer runs in a circle.
constexpr size_t kLongestList = 65536;

// An array of its own beside its count. It is taken out where the plug-in could not free or read
// it.
template <class Record> void check_array(const Call &call, const char *name, Record &record)
{
    const std::string path = std::string(name) + ".entries";
    const device_facts::Field entries = {
        .name = "entries", .counted_by = "count", .count = record.count, .negative_is_none = true};
    const size_t amount = counted(call, name, entries, INT32_MAX);
    const size_t size = amount * sizeof *record.entries;
    const bool is_foreign = record.entries != nullptr && !may_be_freed(record.entries);
    if (is_foreign) {
        call.fault(path + " is not from malloc()");
    } else if (record.entries == nullptr && amount > 0) {
        call.fault(path + " is NULL, and the count is " + std::to_string(amount));
    } else if (record.entries != nullptr && room_of(record.entries) < size) {
        call.fault(path + " has no room for the " + std::to_string(amount) + " of the count");
    } else {
        for (size_t at = 0; at < amount; ++at) {
            check_record(call, path + "[" + std::to_string(at) + "]", record.entries[at]);
        }
        return;
    }
    record.count = 0;
    if (is_foreign) {
        record.entries = nullptr;
    }
}

// The list ends before the first node that nobody can free.
template <class Node> void check_nodes(const Call &call, Node &first)
{
    size_t length = 0;
    for (Node *node = &first; node->next != nullptr; node = node->next) {
        if (!may_be_freed(node->next)) {
            call.fault("a node of the list is not from malloc()");
            node->next = nullptr;
            return;
        }
        if (++length > kLongestList) {
            call.fault("the list has no end");
            first.next = nullptr;
            return;
        }
    }
}

} // namespace

size_t counted(const Call &call, const std::string &record, const device_facts::Field &array,
               size_t room)
{
    const std::string value =
        record + "." + array.counted_by + " is " + std::to_string(array.count);
    if (array.count < 0) {
        if (!array.negative_is_none) {
            call.fault(value);
        }
        return 0;
    }
    if (static_cast<size_t>(array.count) > room) {
        call.fault(value + ", and there is room for " + std::to_string(room));
        return room;
    }
    return static_cast<size_t>(array.count);
}

void check_record(const Call &call, ScanResult &result)
{
    for (ScanEntry *&entry : result.entries) {
        if (entry == nullptr) {
            continue;
        }
        const std::string path =
            "ScanResult.entries[" + std::to_string(&entry - result.entries) + "]";
        if (!may_be_freed(entry)) {
            call.fault(path + " is not from malloc()");
            entry = nullptr;
        } else if (room_of(entry) < sizeof *entry) {
            call.fault(path + " is too small");
        } else {
            check_record(call, path, *entry);
        }
    }
}

void check_record(const Call &call, ChannelPowerResult &result)
{
    check_array(call, "ChannelPowerResult", result);
}

void check_record(const Call &call, PortStatisticsInfo &info)
{
    check_array(call, "PortStatisticsInfo", info);
}

void check_list(const Call &call, TopoNode &first)
{
    check_nodes(call, first);
}

void check_list(const Call &call, NodeBaseInfo &first)
{
    check_nodes(call, first);
    for (const NodeBaseInfo *node = first.next; node != nullptr; node = node->next) {
        if (memchr(node->Mac, '\0', sizeof node->Mac) == nullptr) {
            call.fault("NodeBaseInfo.Mac does not end within its " +
                       std::to_string(sizeof node->Mac) + " bytes");
        }
    }
}

} // namespace agent::watch
