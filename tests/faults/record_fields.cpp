#include "record_fields.h"

#include "smart_router_service/device_access.h"
#include "smart_router_service/device_functions.h"

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

template <class Member> RecordField field_of(std::string_view name, size_t offset)
{
    using Made = Shape<Member>;
    return {name, offset, typeid(typename Made::Type), Made::kWidth, Made::kCount};
}

} // namespace

const std::vector<RecordField> &fields_of(std::type_index record)
{
#define FIELD(member) field_of<decltype(Record::member)>(#member, offsetof(Record, member)),
#define RECORD(name, fields)                                                                       \
    {typeid(name), [] {                                                                            \
         using Record = name;                                                                      \
         return std::vector<RecordField>{fields};                                                  \
     }()},
    static const std::map<std::type_index, std::vector<RecordField>> kRecords = {
        DEVICE_RECORDS(RECORD, FIELD)};
#undef FIELD
#undef RECORD
    static const std::vector<RecordField> kNone;
    const auto found = kRecords.find(record);
    return found != kRecords.end() ? found->second : kNone;
}
