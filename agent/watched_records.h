// What the watch looks for in a record that the device library has filled. The fields are those of
// the descriptions, so a new record needs nothing here, unless it has pointers.
#pragma once

#include "protocol/device_facts.h"
#include "watched_call.h"

#include <cstring>
#include <vector>

namespace agent::watch {

// How many entries of an array are there, by the record's count. Says so when that cannot be.
size_t counted(const Call &call, const std::string &record, const device_facts::Field &array,
               size_t room);

template <class Record>
void check_record(const Call &call, const std::string &path, const Record &record)
{
    device_facts::visit_fields(
        record, [&]<class Type>(const device_facts::Field &fact, const Type &field) {
            using Entry = std::remove_extent_t<Type>;
            const std::string field_path = path + "." + fact.name;
            if constexpr (std::is_same_v<Entry, char>) {
                if (!fact.is_reserved && memchr(field, '\0', sizeof field) == nullptr) {
                    call.fault(field_path + " does not end within its " +
                               std::to_string(sizeof field) + " bytes");
                }
            } else if constexpr (std::is_array_v<Type>) {
                constexpr size_t kRoom = std::extent_v<Type>;
                const size_t amount =
                    fact.counted_by != nullptr ? counted(call, path, fact, kRoom) : kRoom;
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
    check_record(call, device_facts::kName<Record>, record);
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
    device_facts::visit_fields(record, [&]<class Type>(const device_facts::Field &, const Type &) {
        found = found || std::is_same_v<std::remove_extent_t<Type>, char>;
    });
    return found;
}

// Whether the device may say in the record why it refuses, and so is read after a failure as well.
template <class Record> constexpr bool kTellsReason = requires(Record record)
{
    record.FailReason;
};

} // namespace agent::watch
