// SPDX-License-Identifier: MIT
// Values in memory that need not be aligned for them.
#pragma once

#include <cstring>

template <class Value> Value value_at(const void *place)
{
    Value value;
    memcpy(&value, place, sizeof value);
    return value;
}

template <class Value> void put_value_at(void *place, Value value)
{
    memcpy(place, &value, sizeof value);
}
