// SPDX-License-Identifier: MIT
// Records for the tests of what handlers are made of.
#pragma once

#include "fields.h"

struct Lamp {
    int32_t number;
    char Colour[8];
    char Level[4];
    struct {
        char Maker[16];
    } origin;
};

inline constexpr auto kLampFields = smart_router::Fields{
    FIELD(Lamp, Colour),
    FIELD(Lamp, Level),
};

struct Door {
    char Name[6];
    char Code[2];
    int32_t width;
};

inline constexpr auto kDoorFields = smart_router::Fields{
    FIELD(Door, Name),
    FIELD_AS(Door, width, "Width"),
    FIELD(Door, Code),
};

// A field without room for a NUL, followed by data that must not be read.
struct FullField {
    char field[4];
    char behind[4];
};

inline constexpr FullField kFullField = {{'4', '2', 'b', 'C'}, {'D', '7', '7', '\0'}};
