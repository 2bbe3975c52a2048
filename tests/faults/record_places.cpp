// SPDX-License-Identifier: MIT
#include "record_places.h"

#include "protocol/device_facts.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <map>
#include <utility>

namespace {

using Places = std::map<std::pair<std::string, std::string>, std::vector<RecordPlace>>;

template <class Record>
void add_places(Places &places, const Record &record, const char *outer, size_t outer_size)
{
    device_facts::visit_fields(record, [&]<class Member>(const device_facts::Field &fact,
                                                         const Member &member) {
        const auto offset = static_cast<size_t>(reinterpret_cast<const char *>(&member) - outer);
        using Entry = std::remove_extent_t<Member>;
        if constexpr (std::is_class_v<Member>) {
            add_places(places, member, outer, outer_size);
        } else if constexpr (std::is_class_v<Entry>) {
            add_places(places, member[0], outer, outer_size);
        } else if constexpr (std::is_same_v<Entry, char> || std::is_same_v<Member, int32_t>) {
            places[{device_facts::kName<Record>, fact.name}].push_back(
                {outer_size, offset, sizeof member, std::is_same_v<Member, int32_t>});
        }
    });
}

} // namespace

int32_t number_in(const std::string &text)
{
    const long long number = strtoll(text.c_str(), nullptr, 10);
    return static_cast<int32_t>(std::clamp<long long>(number, INT_MIN, INT_MAX));
}

bool RecordPlace::holds(const std::string &record, const std::string &text) const
{
    std::string with = record;
    put(with, text);
    return with == record;
}

void RecordPlace::put(std::string &record, const std::string &text) const
{
    if (is_number) {
        const int32_t number = number_in(text);
        memcpy(record.data() + offset, &number, sizeof number);
        return;
    }
    memset(record.data() + offset, 0, width);
    text.copy(record.data() + offset, width - 1);
}

const std::vector<RecordPlace> &places_of(const std::string &record, const std::string &member)
{
    static const Places kPlaces = [] {
        Places places;
        device_facts::visit_records([&]<class Record>(std::type_identity<Record>) {
            static const Record kOuter = {};
            add_places(places, kOuter, reinterpret_cast<const char *>(&kOuter), sizeof kOuter);
        });
        return places;
    }();
    static const std::vector<RecordPlace> kNone;
    const auto found = kPlaces.find({record, member});
    return found != kPlaces.end() ? found->second : kNone;
}
