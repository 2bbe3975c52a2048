// What the watch looks for in a record that the device library has filled. The fields are those of
// the descriptions, so a new record needs nothing here.
#pragma once

#include "protocol/device_facts.h"
#include "watched_call.h"

#include <string>
#include <type_traits>
#include <vector>

namespace agent::watch {

// The texts that are empty where a device without a value says "NULL".
using EmptyTexts = std::vector<std::string>;

// Whether it ends within its width, and is a number where the plug-in reads one. empty takes an
// empty one that should be "NULL"; it is null where the record need not be filled.
void check_text(const Call &call, const std::string &path, const device_facts::Field &fact,
                const char *text, size_t width, EmptyTexts *empty);

// How many entries of an array are there, by the record's count. Says so when that cannot be.
size_t counted(const Call &call, const std::string &record, const device_facts::Field &array,
               size_t room);

// What a pointer to an array of its own can be used for; what the plug-in could not free or read is
// taken out of the record. Result: how many entries may be looked at.
size_t check_array(const Call &call, const std::string &record, const device_facts::Field &array,
                   void *entries, size_t entry_size, int32_t &count, bool &is_foreign);

// Whether the entry that a pointer leads to may be looked at. One that the plug-in could not free
// has to be taken out.
bool check_entry(const Call &call, const std::string &path, const void *entry, size_t size,
                 bool &is_foreign);

template <class Record>
void check_record(const Call &call, const std::string &path, Record &record, EmptyTexts *empty)
{
    const auto check_entries = [&](const std::string &name, auto *entries, size_t amount) {
        for (size_t at = 0; at < amount; ++at) {
            check_record(call, name + "[" + std::to_string(at) + "]", entries[at], empty);
        }
    };
    device_facts::visit_fields(
        record, [&]<class Type>(const device_facts::Field &fact, Type &field) {
            using Entry = std::remove_extent_t<Type>;
            const std::string field_path = path + "." + fact.name;
            if constexpr (std::is_same_v<Entry, char>) {
                check_text(call, field_path, fact, field, sizeof field, empty);
            } else if constexpr (std::is_array_v<Type>) {
                constexpr size_t kRoom = std::extent_v<Type>;
                const size_t amount =
                    fact.counted_by != nullptr ? counted(call, path, fact, kRoom) : kRoom;
                if constexpr (std::is_class_v<Entry>) {
                    check_entries(field_path, field, amount);
                }
            }
        });
    device_facts::visit_pointers(
        record, [&]<class Type>(const device_facts::Field &fact, Type &pointer, auto &...count) {
            const std::string field_path = path + "." + fact.name;
            bool is_foreign = false;
            if constexpr (sizeof...(count) == 1) {
                const size_t amount =
                    check_array(call, path, fact, pointer, sizeof *pointer, count..., is_foreign);
                pointer = is_foreign ? nullptr : pointer;
                check_entries(field_path, pointer, amount);
            } else {
                for (size_t at = 0; at < std::extent_v<Type>; ++at) {
                    const std::string entry = field_path + "[" + std::to_string(at) + "]";
                    if (check_entry(call, entry, pointer[at], sizeof *pointer[at], is_foreign)) {
                        check_record(call, entry, *pointer[at], empty);
                    } else if (is_foreign) {
                        pointer[at] = nullptr;
                    }
                }
            }
        });
}

// As a function leaves it; is_filled says whether it should be whole.
template <class Record> void check_record(const Call &call, Record &record, bool is_filled)
{
    EmptyTexts empty;
    check_record(call, device_facts::kName<Record>, record, is_filled ? &empty : nullptr);
    call.warn_of_empty(empty);
}

// The list ends before the first node that nobody can free. The first one is the plug-in's.
template <class Node> void check_list(const Call &call, Node &first)
{
    // No home has so many; a list that is longer runs in a circle.
    constexpr size_t kLongestList = 65536;
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
    for (Node *node = first.next; node != nullptr; node = node->next) {
        check_record(call, *node, false);
    }
}

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
