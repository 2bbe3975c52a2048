// SPDX-License-Identifier: MIT
// The text of a line of a recording while it is built.
#pragma once

#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace agent::record {

// A reader takes no longer line, so that its memory does not depend on what a file contains.
constexpr size_t kMostLineBytes = size_t{4} << 20;

// Grows to the longest text and keeps its memory.
class LineText {
  public:
    LineText() = default;
    ~LineText();
    LineText(const LineText &) = delete;
    LineText &operator=(const LineText &) = delete;

    std::string_view text() const { return {memory_, used_}; }
    size_t size() const { return used_; }
    void cut(size_t size) { used_ = size; }

    void add(char letter)
    {
        *room(1) = letter;
        ++used_;
    }
    void add(std::string_view text)
    {
        if (!text.empty()) { // it may be null
            memcpy(room(text.size()), text.data(), text.size());
            used_ += text.size();
        }
    }
    void add_number(std::integral auto number)
    {
        constexpr size_t kDigits = 24;
        char *const begin = room(kDigits);
        used_ += static_cast<size_t>(std::to_chars(begin, begin + kDigits, number).ptr - begin);
    }
    void add_number(double number);
    void add_hex(std::string_view bytes);
    // As a JSON string. Bytes that are not ASCII are unchanged.
    void add_quoted(std::string_view text);
    // As a JSON string or, if it is not UTF-8 or contains a NUL, as {"hex": ...}.
    void add_text(std::string_view text);

    // A member of an object: a comma unless it is the first one, the name and a colon.
    void add_name(std::string_view name);

  private:
    // Memory for so many bytes at the end. Throws std::bad_alloc.
    char *room(size_t size)
    {
        if (size_ - used_ < size || memory_ == nullptr) {
            grow(size);
        }
        return memory_ + used_;
    }
    void grow(size_t size);

    char *memory_ = nullptr;
    size_t used_ = 0;
    size_t size_ = 0;
};

bool is_utf8(std::string_view text);

} // namespace agent::record
