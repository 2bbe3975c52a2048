#include "record_fields.h"

#include "device_fields.h"
#include "smart_router_service/device_access.h"

#include <map>

namespace {

// How a member is made. All texts are of one type, whatever their width.
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

template <class Member>
RecordField field_of(const std::type_info &record, std::string_view name, size_t offset)
{
    using Made = Shape<Member>;
    return {record, name, offset, typeid(typename Made::Type), Made::kWidth, Made::kCount};
}

} // namespace

const std::vector<RecordField> &fields_of(std::type_index record)
{
    static const auto kRecords = [] {
#define FIELD(record, member)                                                                      \
    field_of<decltype(record::member)>(typeid(record), #member, offsetof(record, member)),
        std::map<std::type_index, std::vector<RecordField>> records;
        for (const RecordField &field : {DEVICE_FIELDS(FIELD)}) {
            records[field.record].push_back(field);
        }
#undef FIELD
        return records;
    }();
    static const std::vector<RecordField> kNone;
    const auto found = kRecords.find(record);
    return found != kRecords.end() ? found->second : kNone;
}
