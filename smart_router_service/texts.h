// SPDX-License-Identifier: MIT
// The texts in the fields of records, and the numbers and counts in them. Every function knows the
// width of its field: it writes at most width minus one bytes and a NUL, and it never reads beyond
// the width, since the device library may have omitted the NUL.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

namespace smart_router {

// Copies a text into a field.
void copy_text(char *field, size_t width, const char *text);
template <size_t width> void copy_text(char (&field)[width], const char *text)
{
    copy_text(field, width, text);
}

// Whether the field holds exactly this text.
bool holds(const char *field, size_t width, const char *text);
template <size_t width> bool holds(const char (&field)[width], const char *text)
{
    return holds(field, width, text);
}

// The same, ignoring case.
bool holds_any_case(const char *field, size_t width, const char *text);
template <size_t width> bool holds_any_case(const char (&field)[width], const char *text)
{
    return holds_any_case(field, width, text);
}

// Whether the field contains the text.
enum class Case { kMatters, kIsIgnored };
bool contains(const char *field, size_t width, const char *text, Case letters);
template <size_t width>
bool contains(const char (&field)[width], const char *text, Case letters = Case::kMatters)
{
    return contains(field, width, text, letters);
}

// Copies the text of a field and terminates it. The copy needs one byte more than the field.
void end_text(char *text, const char *field, size_t width);

// The text of a field, NUL-terminated, for functions that take no width.
template <size_t width> class Ended {
  public:
    explicit Ended(const char (&field)[width]) { end_text(text_, field, width); }
    const char *text() const { return text_; }

  private:
    char text_[width + 1];
};

// The number at the start of a decimal text, like atoi(): 0 if there is none. A number out of range
// is clamped.
int32_t number_of(const char *text);

// The same for the text of a field.
constexpr size_t kWidestNumber = 64;
int32_t number_in(const char *field, size_t width);
template <size_t width> int32_t number_in(const char (&field)[width])
{
    static_assert(width <= kWidestNumber, "make kWidestNumber larger");
    return number_in(field, width);
}

using NumberText = char[12]; // for any 32-bit number

// Writes a number in decimal.
void put_number(char *field, size_t width, int32_t number);
template <size_t width> void put_number(char (&field)[width], int32_t number)
{
    put_number(field, width, number);
}

// The number of array entries to read, given the count that the device library reported.
constexpr size_t clamped(int32_t count, size_t most)
{
    if (count <= 0) {
        return 0;
    }
    return static_cast<size_t>(count) < most ? static_cast<size_t>(count) : most;
}

} // namespace smart_router
