// The fields of every record of device_access.h.
#pragma once

#include "device_answer.h"
#include "smart_router_service/device_access.h"
#include "smart_router_service/device_functions.h"

namespace fuzz {

// Calls visit(name, field) for each.
#define VISITED_FIELD(field) visit(#field, record.field);
#define VISITED_RECORD(name, fields)                                                               \
    template <class Visit> void for_each_field(name &record, const Visit &visit)                   \
    {                                                                                              \
        fields                                                                                     \
    }                                                                                              \
    template <class Visit> void for_each_field(const name &record, const Visit &visit)             \
    {                                                                                              \
        fields                                                                                     \
    }

DEVICE_RECORDS(VISITED_RECORD, VISITED_FIELD)

template <class Record> void fill_record(DeviceAnswer &answer, Record &record)
{
    for_each_field(record, [&](const char *name, auto &field) { answer.fill(name, field); });
}

} // namespace fuzz
