// SPDX-License-Identifier: MIT
#include "record_fields.h"

#include "protocol/device_facts.h"

#include <map>

namespace {

// The type, width and number of a member's elements. All texts have the same type.
template <class Member> struct Shape {
    using Type = Member;
    static constexpr size_t kWidth = sizeof(Member);
    static constexpr size_t kCount = 1;
};
template <size_t width> struct Shape<char[width]> {
    using Type = char;
    static constexpr size_t kWidth = width;
    static constexpr size_t kCount = 1;
};
template <class Entry, size_t count> struct Shape<Entry[count]> {
    using Type = Entry;
    static constexpr size_t kWidth = sizeof(Entry);
    static constexpr size_t kCount = count;
};

template <class Record> std::vector<RecordField> fields()
{
    static const Record record = {};
    std::vector<RecordField> all;
    device_facts::visit_fields(
        record, [&]<class Member>(const device_facts::Field &fact, const Member &member) {
            if constexpr (!std::is_class_v<Member>) {
                using Found = Shape<Member>;
                const auto offset = static_cast<size_t>(reinterpret_cast<const char *>(&member) -
                                                        reinterpret_cast<const char *>(&record));
                all.push_back({fact.name, offset, typeid(typename Found::Type), Found::kWidth,
                               Found::kCount});
            }
        });
    return all;
}

} // namespace

const std::vector<RecordField> &fields_of(std::type_index record)
{
    static const auto kRecords = [] {
        std::map<std::type_index, std::vector<RecordField>> all;
        device_facts::visit_records([&]<class Record>(std::type_identity<Record>) {
            all.emplace(typeid(Record), fields<Record>());
        });
        return all;
    }();
    static const std::vector<RecordField> kNone;
    const auto found = kRecords.find(record);
    return found != kRecords.end() ? found->second : kNone;
}
