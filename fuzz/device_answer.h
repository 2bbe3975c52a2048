// SPDX-License-Identifier: MIT
// A call of the steered device: its result, and what it writes to its arguments.
#pragma once

#include "answers.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

namespace fuzz {

class DeviceAnswer {
  public:
    // Reads the bytes that steer this call.
    explicit DeviceAnswer(const char *function);

    int32_t result() const { return result_; }

    // Whether it writes anything.
    bool writes() const { return content_ != Content::kNothing; }

    // One field; the name may be null.
    template <size_t width> void fill(const char *name, char (&field)[width])
    {
        fill_text(name, field);
    }
    template <size_t length> void fill(const char *, int32_t (&numbers)[length])
    {
        for (int32_t &entry : numbers) {
            entry = number();
        }
    }
    template <size_t length> void fill(const char *, int16_t (&numbers)[length])
    {
        for (int16_t &entry : numbers) {
            entry = static_cast<int16_t>(number());
        }
    }
    void fill(const char *name, int32_t &field) { field = count_or_number(name); }
    template <class Record, size_t length> void fill(const char *, Record (&records)[length])
    {
        for (Record &record : records) {
            fill_record(*this, record);
        }
    }

    void fill_text(const char *name, std::span<char> field);
    int32_t count_or_number(const char *name);

    // The number of entries that the device passes.
    size_t amount();

    // A text of any length; false for none.
    bool free_text(std::string &text);

  private:
    enum class Content { kPlausible, kNothing, kFull, kEmpty, kFieldByField, kRaw };

    int32_t number();

    const char *function_;
    int32_t result_ = 0;
    Content content_ = Content::kPlausible;
};

} // namespace fuzz
