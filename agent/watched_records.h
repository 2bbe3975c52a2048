// What the watch looks for in a record that the device library has filled. The fields are read from
// device_access.h, so a new record needs nothing here, unless it has pointers.
#pragma once

#include "smart_router_service/device_access.h"
#include "smart_router_service/device_functions.h"
#include "watched_call.h"

#include <cstring>
#include <type_traits>
#include <vector>

namespace agent::watch {

// Calls visit(name, field) for each field of a record.
#define WATCHED_FIELD(field) visit(#field, record.field);
#define WATCHED_RECORD(name, fields)                                                               \
    inline const char *name_of(const name &)                                                       \
    {                                                                                              \
        return #name;                                                                              \
    }                                                                                              \
    template <class Visit> void for_each_field(const name &record, const Visit &visit)             \
    {                                                                                              \
        fields                                                                                     \
    }
DEVICE_RECORDS(WATCHED_RECORD, WATCHED_FIELD)

// Only those of which the header says that a negative count is none.
template <class Record>
constexpr bool kNegativeIsNone =
    std::is_same_v<Record, QosInfo> || std::is_same_v<Record, QosRule> ||
    std::is_same_v<Record, PortBindingInfo> || std::is_same_v<Record, ChannelPowerResult> ||
    std::is_same_v<Record, PortStatisticsInfo>;

inline bool is_reserved(const char *field)
{
    return strncasecmp(field, "reserved", strlen("reserved")) == 0;
}

// The counts of a record, in its order; the n-th one belongs to the n-th array of the record.
struct Count {
    const char *field;
    int32_t value;
};

template <class Record> std::vector<Count> counts_of(const Record &record)
{
    std::vector<Count> counts;
    for_each_field(record, [&]<class Field>(const char *name, const Field &field) {
        if constexpr (std::is_same_v<Field, int32_t>) {
            if (strstr(name, "count") != nullptr) {
                counts.push_back({name, field});
            }
        }
    });
    return counts;
}

// How many entries of an array are there, by the record's count. Says so when that cannot be.
size_t counted(const Call &call, const std::string &record, const Count &count, size_t room,
               bool negative_is_none);

template <class Record>
void check_record(const Call &call, const std::string &path, const Record &record)
{
    const std::vector<Count> counts = counts_of(record);
    size_t arrays = 0;
    for_each_field(record, [&]<class Field>(const char *name, const Field &field) {
        using Entry = std::remove_extent_t<Field>;
        const std::string field_path = path + "." + name;
        if constexpr (std::is_same_v<Entry, char>) {
            if (!is_reserved(name) && memchr(field, '\0', sizeof field) == nullptr) {
                call.fault(field_path + " does not end within its " + std::to_string(sizeof field) +
                           " bytes");
            }
        } else if constexpr (std::is_array_v<Field>) {
            constexpr size_t kRoom = std::extent_v<Field>;
            const size_t at = arrays++;
            const size_t amount =
                at < counts.size() ? counted(call, path, counts[at], kRoom, kNegativeIsNone<Record>)
                                   : kRoom;
            if constexpr (std::is_class_v<Entry>) {
                for (size_t entry = 0; entry < amount; ++entry) {
                    check_record(call, field_path + "[" + std::to_string(entry) + "]",
                                 field[entry]);
                }
            }
        }
    });
}

template <class Record> void check_record(const Call &call, const Record &record)
{
    check_record(call, name_of(record), record);
}

// Those with pointers. What the plug-in could not free is taken out of the record.
void check_record(const Call &call, ScanResult &result);
void check_record(const Call &call, ChannelPowerResult &result);
void check_record(const Call &call, PortStatisticsInfo &info);
void check_list(const Call &call, TopoNode &first);
void check_list(const Call &call, NodeBaseInfo &first);

// Whether the record has texts, of which each without a value is "NULL": a query that succeeds
// leaves something in it, while a list may be empty.
template <class Record> bool has_texts(const Record &record)
{
    bool found = false;
    if constexpr (requires { name_of(record); }) {
        for_each_field(record, [&]<class Field>(const char *, const Field &) {
            found = found || std::is_same_v<std::remove_extent_t<Field>, char>;
        });
    }
    return found;
}

// Whether the device may say in the record why it refuses, and so is read after a failure as well.
template <class Record> constexpr bool kTellsReason = requires(Record record)
{
    record.FailReason;
};

} // namespace agent::watch
