// SPDX-License-Identifier: MIT
#include "protocol/device_text.h"

#include "protocol/value_at.h"

#include <algorithm>
#include <cstring>

namespace device_text {

using device_layout::Argument;
using device_layout::Field;
using device_layout::Kind;
using device_layout::Pointer;
using device_layout::Record;
using device_layout::Way;

namespace {

constexpr size_t kMostBytes = 4096;
constexpr size_t kMostRecords = 3;
constexpr size_t kMostNumbers = 16;
constexpr size_t kLongestList = 65536; // a longer one has a cycle

const char *address_of(intptr_t value)
{
    return reinterpret_cast<const char *>(value); // NOLINT(performance-no-int-to-ptr)
}

// A list of entries, of which the first ones are shown.
class Entries {
  public:
    explicit Entries(size_t most) : most_(most) {}

    bool has_room() const { return count_ < most_; }
    void add(const std::string &entry)
    {
        text_ += (count_ == 0 ? "" : ", ") + entry;
        ++count_;
    }
    std::string text(size_t more) const
    {
        return "[" + text_ + (more == 0 ? "" : ", " + std::to_string(more) + " more") + "]";
    }

  private:
    size_t most_;
    size_t count_ = 0;
    std::string text_;
};

class Formatter {
  public:
    Formatter(const Style &style, bool success) : style_(style), success_(success) {}

    std::string text(const char *text, size_t width, std::string_view form, bool is_secret) const
    {
        const size_t length = strnlen(text, width);
        if (is_secret && !style_.show_secrets && length > 0) {
            return "***";
        }
        std::string shown(text, length);
        if (!style_.show_secrets) {
            shown = style_.masked(form, shown);
        }
        if (shown.size() <= kMostBytes) {
            return style_.in_quotes(shown);
        }
        return style_.in_quotes(std::string_view(shown).substr(0, kMostBytes)) + " [" +
               std::to_string(shown.size() - kMostBytes) + " more bytes]";
    }

    std::string record(const Record &record, const char *at) const
    {
        std::string fields;
        add_fields(fields, record, at);
        return "{" + fields + "}";
    }

    std::string list(const Record &record, const char *first) const
    {
        const auto next = std::ranges::find(record.fields, Pointer::kNext, &Field::pointer);
        Entries entries(kMostRecords);
        size_t more = 0;
        for (const char *node = first; node != nullptr;
             node = value_at<const char *>(node + next->offset)) {
            if (entries.has_room()) {
                entries.add(this->record(record, node));
            } else if (++more > kLongestList) {
                break;
            }
        }
        return entries.text(more);
    }

  private:
    void add_fields(std::string &fields, const Record &record, const char *at) const
    {
        for (const Field &field : record.fields) {
            if (field.is_reserved || field.pointer == Pointer::kNext) {
                continue;
            }
            const char *place = at + field.offset;
            if (field.kind == Kind::kRecord && !field.is_array && field.pointer == Pointer::kNone) {
                add_fields(fields, *record_of(field), place);
                continue;
            }
            fields += fields.empty() ? "" : ", ";
            fields += field.name;
            fields += '=';
            fields += field.is_array ? array(record, field, at) : entry(field, place);
        }
    }

    std::string entry(const Field &field, const char *at) const
    {
        switch (field.kind) {
        case Kind::kText:
            return text(at, field.size, field.form, field.is_secret);
        case Kind::kRecord:
            return record(*record_of(field), at);
        default:
            return std::to_string(number_at(field.kind, at));
        }
    }

    std::string array(const Record &record, const Field &field, const char *at) const
    {
        const char *first = at + field.offset;
        size_t count = field.length;
        if (field.counted_by >= 0) {
            const Field &counter = record.fields[static_cast<size_t>(field.counted_by)];
            count = static_cast<size_t>(std::max(value_at<int32_t>(at + counter.offset), 0));
        }
        if (field.pointer == Pointer::kArray) {
            first = value_at<const char *>(first);
            if (first == nullptr || !success_) {
                return first == nullptr ? "null" : "unread";
            }
        } else {
            count = std::min(count, field.length);
        }
        Entries entries(field.kind == Kind::kRecord ? kMostRecords : kMostNumbers);
        if (field.pointer == Pointer::kOne) {
            return success_ ? entries_behind(field, first, count, entries) : "unread";
        }
        size_t shown = 0;
        for (; shown < count && entries.has_room(); ++shown) {
            entries.add(entry(field, first + shown * field.size));
        }
        return entries.text(count - shown);
    }

    std::string entries_behind(const Field &field, const char *slots, size_t count,
                               Entries &entries) const
    {
        size_t more = 0;
        for (size_t slot = 0; slot < count; ++slot) {
            const auto *at = value_at<const char *>(slots + slot * sizeof(void *));
            if (at != nullptr && entries.has_room()) {
                entries.add(entry(field, at));
            } else if (at != nullptr) {
                ++more;
            }
        }
        return entries.text(more);
    }

    const Style &style_;
    const bool success_;
};

} // namespace

size_t width_of(const Argument &argument, const intptr_t *arguments)
{
    if (argument.size_at < 0) {
        return argument.width;
    }
    const auto size = static_cast<int32_t>(arguments[argument.size_at]);
    return static_cast<size_t>(std::max(size, 0)) + (argument.is_size_less_one ? 1 : 0);
}

size_t size_of(const Argument &argument, const intptr_t *arguments)
{
    if (argument.way == Way::kValue || argument.is_chain ||
        (argument.kind == Kind::kText && argument.way == Way::kIn)) {
        return 0;
    }
    switch (argument.kind) {
    case Kind::kText:
        return argument.is_handed_over ? sizeof(char *) : width_of(argument, arguments);
    case Kind::kInt16:
        return sizeof(int16_t);
    case Kind::kInt32:
        return sizeof(int32_t);
    case Kind::kAddress:
        return sizeof(intptr_t);
    case Kind::kRecord:
        return record_of(argument)->size;
    }
    return 0;
}

int64_t number_at(Kind kind, const char *place)
{
    return kind == Kind::kInt16   ? value_at<int16_t>(place)
           : kind == Kind::kInt32 ? value_at<int32_t>(place)
                                  : value_at<intptr_t>(place);
}

std::string shown_record(const Style &style, const Record &record, const void *at, bool success)
{
    return Formatter(style, success).record(record, static_cast<const char *>(at));
}

std::string shown_argument(const Style &style, const Argument &argument, intptr_t value,
                           const intptr_t *arguments, bool success)
{
    if (argument.way == Way::kValue) {
        return std::to_string(value);
    }
    const char *at = address_of(value);
    if (at != nullptr && argument.is_handed_over) {
        at = value_at<const char *>(at);
    }
    if (at == nullptr) {
        return "null";
    }
    if (argument.is_handed_over && !success) {
        return "unread";
    }
    const Formatter formatter(style, success);
    switch (argument.kind) {
    case Kind::kText: {
        const bool is_bounded = argument.way != Way::kIn || argument.width > 0;
        const size_t width = is_bounded && !argument.is_handed_over ? width_of(argument, arguments)
                                                                    : std::string_view::npos;
        return formatter.text(at, width, argument.form, argument.is_secret);
    }
    case Kind::kRecord:
        return argument.is_chain && argument.way != Way::kIn
                   ? formatter.list(*record_of(argument), at)
                   : formatter.record(*record_of(argument), at);
    default:
        return std::to_string(number_at(argument.kind, at));
    }
}

} // namespace device_text
