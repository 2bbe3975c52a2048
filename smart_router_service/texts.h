// The texts in the fields of records, and the numbers and counts in them. Every function knows the
// width of its field: what it writes is cut at the width less one and ends in NUL, and it reads no
// further than the width, since the device library may have left out the NUL.
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

// The same without regard to case.
bool holds_any_case(const char *field, size_t width, const char *text);
template <size_t width> bool holds_any_case(const char (&field)[width], const char *text)
{
    return holds_any_case(field, width, text);
}

// Whether the text is a part of what the field holds.
enum class Case { kMatters, kIsIgnored };
bool contains(const char *field, size_t width, const char *text, Case letters);
template <size_t width>
bool contains(const char (&field)[width], const char *text, Case letters = Case::kMatters)
{
    return contains(field, width, text, letters);
}

// Copies the text of a field and ends it in NUL. The copy needs one byte more than the field.
void end_text(char *text, const char *field, size_t width);

// The text of a field, ended in NUL, for functions that take no width.
template <size_t width> class Ended {
  public:
    explicit Ended(const char (&field)[width]) { end_text(text_, field, width); }
    const char *text() const { return text_; }

  private:
    char text_[width + 1];
};

// The number that a decimal text begins with, as atoi() reads it: 0 where there is none. A number
// that does not fit becomes the nearest one that does.
int32_t number_of(const char *text);

// The same for the text of a field.
constexpr size_t kWidestNumber = 64;
int32_t number_in(const char *field, size_t width);
template <size_t width> int32_t number_in(const char (&field)[width])
{
    static_assert(width <= kWidestNumber, "make kWidestNumber larger");
    return number_in(field, width);
}

using NumberText = char[12]; // for every 32-bit number

// Writes a number in decimal.
void put_number(char *field, size_t width, int32_t number);
template <size_t width> void put_number(char (&field)[width], int32_t number)
{
    put_number(field, width, number);
}

// How many entries of an array to read, by a count that the device library gave.
constexpr size_t clamped(int32_t count, size_t most)
{
    if (count <= 0) {
        return 0;
    }
    return static_cast<size_t>(count) < most ? static_cast<size_t>(count) : most;
}

} // namespace smart_router
