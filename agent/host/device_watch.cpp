// SPDX-License-Identifier: MIT
#include "host/device_watch.h"

#include "protocol/device_facts.h"
#include "protocol/device_text.h"
#include "protocol/value_at.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <malloc.h>
#include <string>
#include <string_view>
#include <vector>

namespace agent {

namespace {

using device_layout::Argument;
using device_layout::Field;
using device_layout::Kind;
using device_layout::Pointer;
using device_layout::Record;
using device_layout::Way;

constexpr size_t kGuardSize = 64;
constexpr char kGuardByte = '\xa5';
constexpr char kNoValue[] = "NULL";
// More entries than any home has; a longer list is taken for a cycle.
constexpr size_t kLongestList = 65536;

// Whether the memory may come from malloc(): memory of a loaded library never does.
bool may_be_freed(const void *memory)
{
    Dl_info library;
    return dladdr(memory, &library) == 0;
}

// The usable size of memory from malloc().
size_t room_of(char *memory)
{
    return malloc_usable_size(memory);
}

std::string entry_of(const std::string &path, size_t at)
{
    return path + "[" + std::to_string(at) + "]";
}

// The first field name in a path below a record: rules of QosInfo.rules[0].Name.
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

// The paths of texts that are empty although a device without a value must say "NULL".
using EmptyTexts = std::vector<std::string>;

// The memory of one argument: a copy of the plug-in's memory between guard areas.
class Guarded {
  public:
    Guarded(char *own, size_t size)
        : own_(own), size_(size), area_(size + 2 * kGuardSize, kGuardByte)
    {
        std::copy_n(own, size, value());
    }
    char *value() { return area_.data() + kGuardSize; }
    bool is_guard_broken(bool behind) const
    {
        const auto begin = behind ? area_.end() - kGuardSize : area_.begin();
        return std::any_of(begin, begin + kGuardSize, [](char byte) { return byte != kGuardByte; });
    }
    // Whether any byte, padding included, differs from the plug-in's memory.
    bool is_changed() { return memcmp(own_, value(), size_) != 0; }
    void copy_back() { std::copy_n(value(), size_, own_); }
    size_t size() const { return size_; }
    char *own() { return own_; }

  private:
    char *own_;
    size_t size_;
    std::vector<char> area_;
};

class CheckedCall {
  public:
    CheckedCall(DeviceCall &call, const DeviceWatcher &watcher)
        : call_(call), watcher_(watcher), facts_(*device_facts::find(call.function.name))
    {
    }

    void run(DeviceStage &next)
    {
        std::vector<Guarded> areas;
        areas.reserve(call_.arguments.size()); // areas must not move in memory
        std::vector<Guarded *> area_of(call_.arguments.size());
        for (size_t at = 0; at < area_of.size(); ++at) {
            const size_t size = device_text::size_of(argument(at), call_.arguments.data());
            if (size > 0 && call_.arguments[at] != 0) {
                area_of[at] = &areas.emplace_back(address_of(call_.arguments[at]), size);
            }
        }
        for (size_t at = 0; at < area_of.size(); ++at) {
            if (area_of[at] != nullptr) {
                call_.arguments[at] = reinterpret_cast<intptr_t>(area_of[at]->value());
            }
        }
        watcher_.calling(call_.function.name);
        next.run(call_);
        if (call_.is_missing) {
            fault("the library has no such function");
        } else if (!call_.function.has_result) {
            watcher_.answered(call_.function.name, 0, true);
            return;
        }
        check_result();
        bool wrote = false;
        for (size_t at = 0; at < area_of.size(); ++at) {
            if (area_of[at] != nullptr) {
                wrote = finish(argument(at), *area_of[at]) || wrote;
                call_.arguments[at] = reinterpret_cast<intptr_t>(area_of[at]->own());
            } else if (argument(at).is_chain && argument(at).way != Way::kIn) {
                check_list(*record_of(argument(at)), address_of(call_.arguments[at]));
            }
        }
        watcher_.answered(call_.function.name, call_.result, wrote);
    }

  private:
    const Argument &argument(size_t at) const { return call_.function.arguments[at]; }

    void fault(const std::string &what) const { watcher_.fault(call_.function.name, what.c_str()); }

    // For some functions a caller takes any other result for a success or ignores it.
    void check_result() const
    {
        if (!facts_.results.empty() && !facts_.results.contain(call_.result)) {
            fault("it answers " + std::to_string(call_.result) +
                  ", which the header does not know");
        }
    }

    // Result: whether anything was written.
    bool finish(const Argument &argument, Guarded &area) const
    {
        for (const bool behind : {false, true}) {
            if (area.is_guard_broken(behind)) {
                fault(std::string("it writes ") + (behind ? "behind" : "before") +
                      " what it is given");
            }
        }
        if (argument.way == Way::kIn) {
            if (area.is_changed()) {
                fault("it writes into what it may only read");
            }
            return false;
        }
        bool wrote = area.is_changed();
        if (argument.is_handed_over) {
            wrote = check_answer(area.value());
        } else if (argument.kind == Kind::kRecord) {
            check_filled(argument, area.value(), wrote);
        } else if (call_.result == 0 && argument.kind == Kind::kText) {
            check_text("the text", area.value(), area.size());
        } else if (call_.result == 0 && argument.is_count && value_at<int32_t>(area.value()) < 0) {
            fault("the count is " + std::to_string(value_at<int32_t>(area.value())));
        }
        area.copy_back();
        return wrote;
    }

    void check_text(const std::string &name, const char *text, size_t width) const
    {
        if (memchr(text, '\0', width) == nullptr) {
            fault(name + " does not end within its " + std::to_string(width) + " bytes");
        }
    }

    // Checks a text of any length from malloc(). Result: whether there is one.
    bool check_answer(char *place) const
    {
        char *answer = value_at<char *>(place);
        if (answer == nullptr) {
            if (call_.result == 0) {
                fault("it answers 0 and leaves no answer");
            }
        } else if (!may_be_freed(answer)) {
            fault("the answer is not from malloc()");
            answer = nullptr;
        } else if (memchr(answer, '\0', room_of(answer)) == nullptr) {
            fault("the answer does not end within its memory");
            answer[0] = '\0';
        }
        put_value_at(place, answer);
        return answer != nullptr;
    }

    void check_filled(const Argument &argument, char *at, bool wrote) const
    {
        const Record &record = *record_of(argument);
        // A text without a value must be "NULL", while a list may be empty.
        const bool has_texts = std::ranges::count(record.fields, Kind::kText, &Field::kind) > 0;
        if (call_.result == 0 && !wrote && argument.is_filled && has_texts) {
            fault("it answers 0 and fills nothing in");
        }
        // If the record can hold a reason for a refusal, it is read after a failure as well.
        const auto reason = std::ranges::find_if(record.fields, [](const Field &field) {
            return std::string_view(field.name) == "FailReason";
        });
        if (call_.result == 0 || reason != record.fields.end()) {
            EmptyTexts empty;
            const bool is_whole = call_.result == 0 && wrote && argument.is_filled;
            check(record, record.name, at, is_whole ? &empty : nullptr);
            warn_of_empty(empty);
        }
        if (call_.result != 0 && reason != record.fields.end()) {
            const char *text = at + reason->offset;
            const std::string said(text, strnlen(text, reason->size));
            if (!said.empty()) {
                watcher_.reason(call_.function.name, said.c_str());
            }
        }
    }

    void warn_of_empty(const EmptyTexts &texts) const
    {
        constexpr size_t kMostNamed = 4;
        if (texts.empty()) {
            return;
        }
        std::string names;
        for (size_t at = 0; at < texts.size() && at < kMostNamed; ++at) {
            names += (at == 0 ? "" : ", ") + texts[at];
        }
        if (texts.size() > kMostNamed) {
            names += " and " + std::to_string(texts.size() - kMostNamed) + " more";
        }
        watcher_.warning(call_.function.name, ("empty, and not \"NULL\": " + names).c_str());
    }

    // empty collects the texts that should be "NULL"; it is null if the record need not be filled.
    void check(const Record &record, const std::string &path, char *at, EmptyTexts *empty) const
    {
        for (const Field &field : record.fields) {
            const std::string field_path = path + "." + field.name;
            char *place = at + field.offset;
            if (field.kind == Kind::kText) {
                check_field(field, field_path, place, empty);
            } else if (field.pointer == Pointer::kOne) {
                check_each_behind(field, field_path, place, empty);
            } else if (field.pointer == Pointer::kArray) {
                check_array_behind(record, field, path, at, empty);
            } else if (field.pointer == Pointer::kNone) {
                const size_t amount = field.counted_by < 0
                                          ? field.length
                                          : counted(record, field, path, at, field.length);
                check_entries(field, field_path, place, amount, empty);
            }
        }
    }

    void check_field(const Field &field, const std::string &path, const char *text,
                     EmptyTexts *empty) const
    {
        if (field.is_reserved) {
            return;
        }
        check_text(path, text, field.size);
        const size_t length = strnlen(text, field.size);
        if (length == 0) {
            if (empty != nullptr && !field.may_be_empty && facts_.has_filled(field_in(path))) {
                empty->push_back(path);
            }
        } else if (length < field.size && field.is_number && strcmp(text, kNoValue) != 0 &&
                   !is_number(text)) {
            fault(path + " is \"" + text + "\", and is read as a decimal number");
        }
    }

    void check_entries(const Field &field, const std::string &path, char *first, size_t amount,
                       EmptyTexts *empty) const
    {
        for (size_t at = 0; field.kind == Kind::kRecord && at < amount; ++at) {
            check(*record_of(field), field.is_array ? entry_of(path, at) : path,
                  first + at * field.size, empty);
        }
    }

    // The number of entries of an array according to the record's count. Reports an impossible
    // count.
    size_t counted(const Record &record, const Field &array, const std::string &path,
                   const char *at, size_t room) const
    {
        const Field &counter = record.fields[static_cast<size_t>(array.counted_by)];
        const auto count = value_at<int32_t>(at + counter.offset);
        const std::string found = path + "." + counter.name + " is " + std::to_string(count);
        if (count < 0) {
            if (!counter.negative_is_none) {
                fault(found);
            }
            return 0;
        }
        if (static_cast<size_t>(count) > room) {
            fault(found + ", and there is room for " + std::to_string(room));
            return room;
        }
        return static_cast<size_t>(count);
    }

    // Pointers to one entry each, or null.
    void check_each_behind(const Field &field, const std::string &path, char *slots,
                           EmptyTexts *empty) const
    {
        for (size_t slot = 0; slot < field.length; ++slot) {
            char *place = slots + slot * sizeof(char *);
            char *entry = value_at<char *>(place);
            const std::string entry_path = field.is_array ? entry_of(path, slot) : path;
            if (entry == nullptr) {
                continue;
            }
            if (!may_be_freed(entry)) {
                fault(entry_path + " is not from malloc()");
                put_value_at<char *>(place, nullptr);
            } else if (room_of(entry) < field.size) {
                fault(entry_path + " is too small");
            } else {
                check(*record_of(field), entry_path, entry, empty);
            }
        }
    }

    // A separately allocated array with its count in the record.
    void check_array_behind(const Record &record, const Field &field, const std::string &path,
                            char *at, EmptyTexts *empty) const
    {
        const std::string field_path = path + "." + field.name;
        const size_t amount = counted(record, field, path, at, INT32_MAX);
        char *entries = value_at<char *>(at + field.offset);
        const bool is_foreign = entries != nullptr && !may_be_freed(entries);
        if (is_foreign) {
            fault(field_path + " is not from malloc()");
            put_value_at<char *>(at + field.offset, nullptr);
        } else if (entries == nullptr && amount > 0) {
            fault(field_path + " is NULL, and the count is " + std::to_string(amount));
        } else if (entries != nullptr && room_of(entries) < amount * field.size) {
            fault(field_path + " has no room for the " + std::to_string(amount) + " of the count");
        } else {
            check_entries(field, field_path, entries, amount, empty);
            return;
        }
        const Field &counter = record.fields[static_cast<size_t>(field.counted_by)];
        put_value_at<int32_t>(at + counter.offset, 0);
    }

    // Truncates the list before the first node that cannot be freed: the plug-in frees the list
    // after a failure as well.
    void check_list(const Record &record, char *first) const
    {
        const size_t next =
            std::ranges::find(record.fields, Pointer::kNext, &Field::pointer)->offset;
        size_t length = 0;
        for (char *node = first; node != nullptr; node = value_at<char *>(node + next)) {
            char *following = value_at<char *>(node + next);
            if (following != nullptr && !may_be_freed(following)) {
                fault("a node of the list is not from malloc()");
                put_value_at<char *>(node + next, nullptr);
            } else if (++length > kLongestList) {
                fault("the list has no end");
                put_value_at<char *>(first + next, nullptr);
                break;
            }
        }
        for (char *node = first; node != nullptr; node = value_at<char *>(node + next)) {
            check(record, record.name, node, nullptr);
        }
    }

    DeviceCall &call_;
    const DeviceWatcher &watcher_;
    const device_facts::Function &facts_;
};

} // namespace

void DeviceWatch::run(DeviceCall &call)
{
    CheckedCall(call, watcher_).run(next_);
}

} // namespace agent
