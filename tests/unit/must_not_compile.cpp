// SPDX-License-Identifier: MIT
// Mistakes in a field table that the compiler must reject. A macro chooses one of them.
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

#if defined(REPEATED_KEY)
constexpr auto kFields = Fields{FIELD(One, Name), FIELD_AS(One, Other, "name")};
#elif defined(FIELD_OF_ANOTHER_RECORD)
constexpr auto kFields = Fields{FIELD(One, Name), FIELD_AS(Two, Name, "Other")};
#elif defined(FIELD_OF_ANOTHER_TYPE)
constexpr auto kFields = Fields{FIELD(One, Number)};
#elif defined(KEY_TOO_LONG)
constexpr auto kFields = Fields{FIELD_AS(One, Name, "ThisKeyIsMuchTooLongForAnyTableOfFields")};
#elif defined(REPEATED_KEY_IN_A_PART)
constexpr auto kPart = Fields{FIELD(One, Name)};
constexpr auto kFields = Fields{FIELD_AS(One, Other, "NAME"), kPart};
#else
constexpr auto kFields = Fields{FIELD(One, Name)};
#endif

#if defined(TABLE_OF_ANOTHER_RECORD)
HANDLER(handler, query<get_two>(kFields, "no"))
#else
constexpr auto kTwoFields = Fields{FIELD(Two, Name)};
HANDLER(handler, query<get_two>(kTwoFields, "no"))
#endif

static_assert((*FieldList(kFields).begin()).width == 8);

} // namespace
