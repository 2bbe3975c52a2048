// SPDX-License-Identifier: MIT
#include "protocol/plain_json.h"

#include "io/text.h"

#include <cstddef>

namespace agent {

namespace {

constexpr size_t kMostLevels = 32; // each level takes stack
constexpr ptrdiff_t kLongestNumber = 63;
constexpr std::string_view kEscapes = "\"\\/bfnrt";

class Scan {
  public:
    explicit Scan(std::string_view text) : at_(text.data()), end_(text.data() + text.size()) {}

    bool is_one_value()
    {
        const bool has_value = take_value(0);
        skip_space();
        return has_value && at_ == end_;
    }

  private:
    char next() const { return at_ != end_ ? *at_ : '\0'; }

    char skip_space()
    {
        while (next() == ' ' || next() == '\t' || next() == '\r' || next() == '\n') {
            ++at_;
        }
        return next();
    }

    // Consumes the character if it is next.
    bool take(char mark)
    {
        const bool found = next() == mark;
        at_ += found ? 1 : 0;
        return found;
    }

    bool take_value(size_t level)
    {
        switch (skip_space()) {
        case '{':
            return level < kMostLevels && take_members('}', level + 1);
        case '[':
            return level < kMostLevels && take_members(']', level + 1);
        case '"':
            return take_text();
        case 't':
            return take_literal("true");
        case 'f':
            return take_literal("false");
        case 'n':
            return take_literal("null");
        default:
            return take_number();
        }
    }

    // From the opening bracket to the closing one.
    bool take_members(char closing, size_t level)
    {
        ++at_;
        if (skip_space() == closing) {
            return take(closing);
        }
        do {
            skip_space();
            if (closing == '}' && !(take_text() && skip_space() == ':' && take(':'))) {
                return false;
            }
            if (!take_value(level)) {
                return false;
            }
            skip_space();
        } while (take(','));
        return take(closing);
    }

    bool take_text()
    {
        if (!take('"')) {
            return false;
        }
        while (at_ != end_) {
            const auto letter = static_cast<unsigned char>(*at_++);
            if (letter == '"') {
                return true;
            }
            if (letter < ' ' || (letter == '\\' && !take_escape())) {
                return false;
            }
        }
        return false;
    }

    bool take_escape() { return at_ != end_ && kEscapes.find(*at_++) != std::string_view::npos; }

    bool take_literal(std::string_view literal)
    {
        const bool found =
            std::string_view(at_, static_cast<size_t>(end_ - at_)).starts_with(literal);
        at_ += found ? literal.size() : 0;
        return found;
    }

    // An exponent is not consumed: the check for what may follow a value then fails.
    bool take_number()
    {
        const char *begin = at_;
        take('-');
        return (take('0') || take_digits()) && (!take('.') || take_digits()) &&
               at_ - begin <= kLongestNumber;
    }

    bool take_digits()
    {
        const char *begin = at_;
        while (next() >= '0' && next() <= '9') {
            ++at_;
        }
        return at_ != begin;
    }

    const char *at_;
    const char *end_;
};

} // namespace

bool is_plain_json(std::string_view text)
{
    return is_valid_utf8(text) && Scan(text).is_one_value();
}

} // namespace agent
