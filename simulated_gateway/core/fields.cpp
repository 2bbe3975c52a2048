#include "core/fields.h"

#include <algorithm>
#include <charconv>

namespace simulated_gateway {

void refuse_for(const char *name, const std::string &complaint)
{
    if (!complaint.empty()) {
        throw Error(std::string(name) + " " + complaint);
    }
}

bool flag_of(const char *name, const std::string &text)
{
    refuse_for(name, complaint(text, one_of("0", "1")));
    return text == "1";
}

int64_t number_of(const char *name, const std::string &text)
{
    int64_t number = 0;
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end) {
        throw Error(std::string(name) + " is no number");
    }
    return number;
}

void put_text(std::span<char> field, const std::string &text)
{
    const std::string &shown = text.empty() ? kNoValue : text;
    std::string_view fitting = shown;
    if (fitting.size() >= field.size()) {
        fitting = whole_letters(fitting.substr(0, field.size() - 1));
    }
    std::ranges::copy(fitting, field.begin());
    field[fitting.size()] = '\0';
}

} // namespace simulated_gateway
