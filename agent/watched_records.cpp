#include "watched_records.h"

#include <cstdlib>
#include <cstring>

namespace agent::watch {

namespace {

constexpr char kNoValue[] = "NULL";

// The field of a record that a path such as QosInfo.rules[0].Name leads into.
std::string_view field_in(std::string_view path)
{
    path.remove_prefix(path.find('.') + 1);
    return path.substr(0, path.find_first_of(".["));
}

bool is_number(const char *text)
{
    char *end = nullptr;
    strtol(text, &end, 10);
    return end != text && *end == '\0';
}

} // namespace

void check_text(const Call &call, const std::string &path, const device_facts::Field &fact,
                const char *text, size_t width, EmptyTexts *empty)
{
    if (fact.is_reserved) {
        return;
    }
    const size_t length = strnlen(text, width);
    if (length == width) {
        call.fault(path + " does not end within its " + std::to_string(width) + " bytes");
    } else if (length == 0) {
        if (empty != nullptr && !fact.may_be_empty && call.facts().has_filled(field_in(path))) {
            empty->push_back(path);
        }
    } else if (fact.is_number && strcmp(text, kNoValue) != 0 && !is_number(text)) {
        call.fault(path + " is \"" + text + "\", and is read as a decimal number");
    }
}

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

size_t check_array(const Call &call, const std::string &record, const device_facts::Field &array,
                   void *entries, size_t entry_size, int32_t &count, bool &is_foreign)
{
    const std::string path = record + "." + array.name;
    const size_t amount = counted(call, record, array, INT32_MAX);
    is_foreign = entries != nullptr && !may_be_freed(entries);
    if (is_foreign) {
        call.fault(path + " is not from malloc()");
    } else if (entries == nullptr && amount > 0) {
        call.fault(path + " is NULL, and the count is " + std::to_string(amount));
    } else if (entries != nullptr && room_of(entries) < amount * entry_size) {
        call.fault(path + " has no room for the " + std::to_string(amount) + " of the count");
    } else {
        return amount;
    }
    count = 0;
    return 0;
}

bool check_entry(const Call &call, const std::string &path, const void *entry, size_t size,
                 bool &is_foreign)
{
    is_foreign = entry != nullptr && !may_be_freed(entry);
    if (is_foreign) {
        call.fault(path + " is not from malloc()");
    } else if (entry != nullptr && room_of(entry) < size) {
        call.fault(path + " is too small");
    } else {
        return entry != nullptr;
    }
    return false;
}

} // namespace agent::watch
