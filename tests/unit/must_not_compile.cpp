// Mistakes in a field table that the compiler has to refuse. CASE picks one; 0 is none of them.
#include "handler_support.h"

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
constexpr auto kFields = Fields{FIELD(One, "Name", Name), FIELD(One, "name", Other)};
#elif CASE == 2
constexpr auto kFields = Fields{FIELD(One, "Name", Name), FIELD(Two, "Other", Name)};
#elif CASE == 3
constexpr auto kFields = Fields{FIELD(One, "Number", Number)};
#elif CASE == 4
constexpr auto kFields = Fields{FIELD(One, "ThisKeyIsMuchTooLongForAnyTableOfFields", Name)};
#else
constexpr auto kFields = Fields{FIELD(One, "Name", Name)};
#endif

#if CASE == 5
HANDLER(handler, query<get_two>(kFields, "no"))
#else
constexpr auto kTwoFields = Fields{FIELD(Two, "Name", Name)};
HANDLER(handler, query<get_two>(kTwoFields, "no"))
#endif

static_assert((*FieldList(kFields).begin()).width == 8);

} // namespace
