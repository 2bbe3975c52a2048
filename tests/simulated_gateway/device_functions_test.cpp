// SPDX-License-Identifier: MIT
// What holds for every device function.
#include "gateway_fixture.h"
#include "smart_router_service/device_functions.h"

#include <array>

namespace {

class DeviceFunctionsTest : public HouseTest {
  protected:
    // A null pointer in place of each pointer in turn; the others point to zeroed memory.
    template <class... Types> void expect_refused(const char *name, int32_t (*function)(Types...))
    {
        [&]<size_t... at>(std::index_sequence<at...>)
        {
            for (size_t null = 0; null < sizeof...(Types); ++null) {
                if (std::array{std::is_pointer_v<Types>...}[null]) {
                    SCOPED_TRACE(name + std::string(", argument ") + std::to_string(null));
                    EXPECT_EQ(reason(function(argument<Types>(at != null)...)),
                              "an argument is null");
                    ++refused_;
                }
            }
        }
        (std::index_sequence_for<Types...>());
    }
    void expect_refused(const char *, int32_t (*)()) {}
    // The one function without a result frees a list, which may be empty.
    void expect_refused(const char *, void (*function)(TopoNode *)) { function(nullptr); }

    int refused_ = 0;

  private:
    template <class Type> static Type argument(bool given)
    {
        if constexpr (std::is_pointer_v<Type>) {
            return given ? reinterpret_cast<Type>(zeroed_.data()) : nullptr;
        } else {
            return 8;
        }
    }

    alignas(max_align_t) static inline std::array<char, 1 << 20> zeroed_;
};

TEST_F(DeviceFunctionsTest, ANullPointerIsAFailedCall)
{
    const std::string before = read(path("state"));
#define EXPECT_REFUSED(result, name, parameters, arguments)                                        \
    if (#name != std::string("devapi_del_green_net_info_by_maclist")) { /* which takes it */       \
        expect_refused(#name, name);                                                               \
    }
    DEVICE_FUNCTIONS(EXPECT_REFUSED)
    EXPECT_GT(refused_, 150);
    EXPECT_EQ(read(path("state")), before);
}

} // namespace
