// SPDX-License-Identifier: MIT
// A device-access library that is steered by the bytes of the input. Its functions, and the code
// that fills each record, are generated from the descriptions; new ones need no change here.
#include "device_answer.h"
#include "device_records.h"
#include "give_up.h"
#include "smart_router_service/device_functions.h"

#include <cstdlib>
#include <cstring>
#include <tuple>
#include <utility>

namespace fuzz {
namespace {

// ---- Arguments from the plug-in have to comply with device_access.h ---------------------------

template <class Record> void check_record(const char *function, const Record &record)
{
    device_facts::visit_fields(
        record, [&]<class Type>(const device_facts::Field &, const Type &field) {
            using Entry = std::remove_extent_t<Type>;
            if constexpr (std::is_same_v<Entry, char>) {
                if (memchr(field, '\0', sizeof field) == nullptr) {
                    give_up(function, "a text that does not end within its field");
                }
            } else if constexpr (std::is_array_v<Type> && std::is_class_v<Entry>) {
                for (const Entry &entry : field) {
                    check_record(function, entry);
                }
            } else if constexpr (std::is_class_v<Type>) {
                check_record(function, field);
            }
        });
}

void take_text(const char *text)
{
    // Read, so that a text without a NUL is detected.
    volatile size_t length = text != nullptr ? strlen(text) : 0;
    static_cast<void>(length);
}

// ---- What the device allocates ------------------------------------------------------------------

template <class Entry> Entry *allocated(size_t count)
{
    return static_cast<Entry *>(calloc(count > 0 ? count : 1, sizeof(Entry)));
}

// An array of count entries, or none.
template <class Entry> void fill_array(DeviceAnswer &answer, int32_t &count, Entry *&entries)
{
    const size_t amount = answer.amount();
    if (amount == 0) {
        entries = answers().byte() % 2 == 0 ? nullptr : allocated<Entry>(1);
        count = entries == nullptr ? answers().number() : -static_cast<int32_t>(answers().byte());
        return;
    }
    count = static_cast<int32_t>(amount);
    entries = allocated<Entry>(amount);
    for (size_t at = 0; at < amount; ++at) {
        fill_record(answer, entries[at]);
    }
}

void fill_record(DeviceAnswer &answer, ChannelPowerResult &result)
{
    fill_array(answer, result.count, result.entries);
}

void fill_record(DeviceAnswer &answer, PortStatisticsInfo &info)
{
    fill_array(answer, info.count, info.entries);
}

void fill_record(DeviceAnswer &answer, ScanResult &result)
{
    constexpr size_t slots = std::extent_v<decltype(result.entries)>;
    const size_t amount = answer.amount() % (slots + 1);
    const size_t step = 1 + answers().byte() % 3;
    for (size_t at = 0, slot = 0; at < amount && slot < slots; ++at, slot += step) {
        result.entries[slot] = allocated<ScanEntry>(1);
        fill_record(answer, *result.entries[slot]);
    }
}

void fill_record(DeviceAnswer &answer, TopoNode &first)
{
    first.level = answers().byte() % 2 == 0 ? 1 : answers().number();
    TopoNode *last = &first;
    for (size_t left = answer.amount() % 80; left > 0; --left) {
        last->next = allocated<TopoNode>(1);
        last = last->next;
        last->level = static_cast<int32_t>(2 + answers().byte() % 3);
    }
}

void fill_record(DeviceAnswer &answer, NodeBaseInfo &first)
{
    NodeBaseInfo *last = &first;
    for (size_t left = answer.amount() % 80; left > 0; --left) {
        last->next = allocated<NodeBaseInfo>(1);
        last = last->next;
        answer.fill("Mac", last->Mac);
        last->Kind = answers().byte() % 8 == 1 ? 1 : 0;
    }
}

// ---- Arguments ----------------------------------------------------------------------------------

size_t width_of(const char *function)
{
    const size_t width = device_facts::find(function)->text_width;
    if (width == 0) {
        give_up(function, "a text of unknown width");
    }
    return width;
}

void take(const char *, DeviceAnswer &, int64_t) {}
void take(const char *, DeviceAnswer &, const char *text)
{
    take_text(text);
}
void take(const char *function, DeviceAnswer &answer, char *text)
{
    answer.fill_text(function, {text, width_of(function)});
}
void take(const char *function, DeviceAnswer &answer, int32_t *number)
{
    if (answer.writes()) {
        *number = answer.count_or_number(function);
    }
}
void take(const char *, DeviceAnswer &answer, char **text)
{
    std::string written;
    if (answer.free_text(written)) {
        *text = strdup(written.c_str());
    }
}
template <class Record> void take(const char *function, DeviceAnswer &, const Record *record)
{
    check_record(function, *record);
}
void take(const char *, DeviceAnswer &, const TopoNode *) {}
template <class Record> void take(const char *, DeviceAnswer &answer, Record *record)
{
    if (answer.writes()) {
        fill_record(answer, *record);
    }
}

template <class... Arguments>
void take_all(const char *function, DeviceAnswer &answer, Arguments... arguments)
{
    (take(function, answer, arguments), ...);
}
// A text and its width.
void take_all(const char *function, DeviceAnswer &answer, char *text, int32_t size)
{
    answer.fill_text(function, {text, static_cast<size_t>(size)});
}
// A text and its length.
void take_all(const char *function, DeviceAnswer &, const char *text, int32_t length)
{
    if (strcmp(function, "devapi_cmdstring_sendto_tslink") == 0 &&
        strlen(text) != static_cast<size_t>(length)) {
        give_up(function, "another length than the text's");
    }
    take_text(text);
}
// Completes a list that it has created before.
void take_all(const char *, DeviceAnswer &, int32_t, TopoNode *) {}

template <class Result, class... Arguments>
Result call(const char *function, Arguments... arguments)
{
    if constexpr (std::is_void_v<Result>) {
        static_assert(std::is_same_v<std::tuple<Arguments...>, std::tuple<TopoNode *>>);
        for (TopoNode *node : {arguments...}) {
            while (node != nullptr) {
                free(std::exchange(node, node->next));
            }
        }
    } else {
        DeviceAnswer answer(function);
        take_all(function, answer, arguments...);
        return answer.result();
    }
}

} // namespace
} // namespace fuzz

#define COMMA_BEFORE(...) __VA_OPT__(, ) __VA_ARGS__
#define STEERED_FUNCTION(result, name, parameters, arguments)                                      \
    result name parameters                                                                         \
    {                                                                                              \
        return fuzz::call<result>(#name COMMA_BEFORE arguments);                                   \
    }

DEVICE_FUNCTIONS(STEERED_FUNCTION)
