// SPDX-License-Identifier: MIT
#include "io/text.h"

#include "io/error_output.h"

#include <algorithm>
#include <new>
#include <numeric>

namespace agent {

namespace {

char lower(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

void print_message(std::string_view message, size_t max_bytes, Level level)
{
    try {
        write_error_line(PROGRAM_NAME ": " + one_line(message, max_bytes), level);
    } catch (const std::bad_alloc &) {
        print_out_of_memory();
    }
}

} // namespace

std::string list_of_names(const std::vector<std::string> &names, bool all)
{
    constexpr size_t kMany = 6;
    constexpr size_t kFew = 3;
    const size_t shown = all || names.size() < kMany ? names.size() : kFew;
    std::string list;
    for (size_t at = 0; at < shown; ++at) {
        list += (at == 0 ? "" : ", ") + names[at];
    }
    return shown == names.size() ? list
                                 : list + " and " + std::to_string(names.size() - shown) +
                                       " more (--verbose names all)";
}

size_t edit_distance(std::string_view from, std::string_view to)
{
    std::vector<size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (size_t i = 0; i < from.size(); ++i) {
        size_t diagonal = row[0];
        row[0] = i + 1;
        for (size_t j = 0; j < to.size(); ++j) {
            const size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

size_t end_of_string(std::string_view text, size_t quote)
{
    for (size_t at = quote + 1; at < text.size(); ++at) {
        if (text[at] == '\\') {
            ++at;
        } else if (text[at] == '"') {
            return at + 1;
        }
    }
    return text.size();
}

bool same_text(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char one, char other) { return lower(one) == lower(other); });
}

std::string lower_case(std::string_view text)
{
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

void print_error(std::string_view message, size_t max_bytes)
{
    print_message(message, max_bytes, Level::kError);
}

void print_notice(std::string_view message)
{
    print_message(message, kMaxMessage, Level::kNotice);
}

void print_out_of_memory()
{
    write_error_line(PROGRAM_NAME ": out of memory", Level::kError);
}

} // namespace agent
