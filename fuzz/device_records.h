// SPDX-License-Identifier: MIT
// Filling every record of the device interface.
#pragma once

#include "device_answer.h"
#include "protocol/device_facts.h"

namespace fuzz {

template <class Record> void fill_record(DeviceAnswer &answer, Record &record)
{
    device_facts::visit_fields(record, [&]<class Type>(const device_facts::Field &fact,
                                                       Type &field) {
        if constexpr (!std::is_class_v<Type>) { // not the setting in a record with a failure reason
            answer.fill(fact.name, field);
        }
    });
}

} // namespace fuzz
