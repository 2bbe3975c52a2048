// SPDX-License-Identifier: MIT
// Mistakes in a field table that the compiler must reject. CASE picks one; 0 is none of them.
#include "recipes.h"

using namespace smart_router;

namespace {

struct One {
    char Name[8];
    char Other[8];
    double Number;
};

struct Two {
    char Name[8];
};

int32_t get_two(Two *)
{
    return 0;
}

#if CASE == 1
constexpr auto kFields = Fields{FIELD(One, Name), FIELD_AS(One, Other, "name")};
#elif CASE == 2
constexpr auto kFields = Fields{FIELD(One, Name), FIELD_AS(Two, Name, "Other")};
#elif CASE == 3
constexpr auto kFields = Fields{FIELD(One, Number)};
#elif CASE == 4
constexpr auto kFields = Fields{FIELD_AS(One, Name, "ThisKeyIsMuchTooLongForAnyTableOfFields")};
#elif CASE == 6
constexpr auto kPart = Fields{FIELD(One, Name)};
constexpr auto kFields = Fields{FIELD_AS(One, Other, "NAME"), kPart};
#else
constexpr auto kFields = Fields{FIELD(One, Name)};
#endif

#if CASE == 5
HANDLER(handler, query<get_two>(kFields, "no"))
#else
constexpr auto kTwoFields = Fields{FIELD(Two, Name)};
HANDLER(handler, query<get_two>(kTwoFields, "no"))
#endif

static_assert((*FieldList(kFields).begin()).width == 8);

} // namespace
