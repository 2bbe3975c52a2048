// SPDX-License-Identifier: MIT
#include "record/device_values.h"

#include "protocol/device_facts.h"
#include "protocol/device_text.h"
#include "protocol/value_at.h"

#include <algorithm>
#include <cstring>

namespace agent::record {

namespace {

using device_layout::Argument;
using device_layout::Field;
using device_layout::Kind;
using device_layout::Pointer;
using device_layout::Record;
using device_layout::Way;

constexpr size_t kLongestList = 65536; // a longer one has a cycle
constexpr std::string_view kNothing = "{}";

bool is_zero(const char *bytes, size_t size)
{
    return size == 0 || (bytes[0] == 0 && memcmp(bytes, bytes + 1, size - 1) == 0);
}

class Values {
  public:
    // After a failure, nothing that a record points to is read.
    Values(LineText &line, const Pseudonyms *pseudonyms, bool success)
        : line_(line), pseudonyms_(pseudonyms), success_(success)
    {
    }

    void text(std::string_view text, bool is_secret) const
    {
        if (pseudonyms_ == nullptr || (!is_secret && !may_contain_secrets(text))) {
            line_.add_text(text);
        } else {
            line_.add_text(is_secret ? pseudonyms_->text(text)
                                     : pseudonyms_->without_secrets(text));
        }
    }

    void record(const Record &record, const char *at) const
    {
        line_.add('{');
        for (const Field &field : record.fields) {
            if (!field.is_reserved && field.pointer != Pointer::kNext) {
                add_field(record, field, at);
            }
        }
        line_.add('}');
    }

    void list(const Record &record, const char *first) const
    {
        const auto next = std::ranges::find(record.fields, Pointer::kNext, &Field::pointer);
        size_t count = 0;
        line_.add('[');
        for (const char *node = first; node != nullptr && count < kLongestList;
             node = value_at<const char *>(node + next->offset)) {
            line_.add(count++ == 0 ? "" : ",");
            this->record(record, node);
        }
        line_.add(']');
    }

  private:
    void add_field(const Record &record, const Field &field, const char *at) const
    {
        const char *place = at + field.offset;
        if (field.pointer == Pointer::kArray) {
            const auto *entries = value_at<const char *>(place);
            if (entries != nullptr) {
                line_.add_name(field.name);
                this->entries(field, entries, success_ ? count_of(record, field, at) : 0);
            }
            return;
        }
        const size_t size = field.pointer == Pointer::kOne ? sizeof(void *) : field.size;
        size_t count = field.length;
        while (count > 0 && is_zero(place + (count - 1) * size, size)) {
            --count;
        }
        if (count == 0) {
            return;
        }
        line_.add_name(field.name);
        if (field.pointer == Pointer::kOne) {
            slots(field, place, count);
        } else if (field.is_array) {
            entries(field, place, count);
        } else {
            entry(field, place);
        }
    }

    static size_t count_of(const Record &record, const Field &field, const char *at)
    {
        const Field &counter = record.fields[static_cast<size_t>(field.counted_by)];
        const auto count = value_at<int32_t>(at + counter.offset);
        return std::min(static_cast<size_t>(std::max(count, 0)), kLongestList);
    }

    void entries(const Field &field, const char *first, size_t count) const
    {
        line_.add('[');
        for (size_t at = 0; at < count; ++at) {
            line_.add(at == 0 ? "" : ",");
            entry(field, first + at * field.size);
        }
        line_.add(']');
    }

    void slots(const Field &field, const char *first, size_t count) const
    {
        line_.add('[');
        for (size_t at = 0; at < count; ++at) {
            line_.add(at == 0 ? "" : ",");
            const auto *place = value_at<const char *>(first + at * sizeof(void *));
            if (place == nullptr) {
                line_.add("null");
            } else if (success_) {
                entry(field, place);
            } else {
                line_.add(kNothing);
            }
        }
        line_.add(']');
    }

    void entry(const Field &field, const char *at) const
    {
        if (field.kind == Kind::kRecord) {
            record(*record_of(field), at);
        } else if (field.kind == Kind::kText) {
            field_text(field, at);
        } else {
            line_.add_number(device_text::number_at(field.kind, at));
        }
    }

    void field_text(const Field &field, const char *at) const
    {
        const size_t length = strnlen(at, field.size);
        size_t size = field.size;
        if (is_zero(at + length, size - length)) {
            text({at, length}, field.is_secret);
            return;
        }
        while (at[size - 1] == '\0') {
            --size;
        }
        if (pseudonyms_ == nullptr) {
            line_.add_text({at, size});
            return;
        }
        // What is behind the text may be the remains of a secret.
        std::string masked;
        for (size_t from = 0; from < size;) {
            const size_t part = strnlen(at + from, size - from);
            const std::string_view bytes(at + from, part);
            masked += from == 0 && !field.is_secret ? pseudonyms_->without_secrets(bytes)
                                                    : pseudonyms_->text(bytes);
            from += part;
            if (from < size) {
                masked += '\0';
                ++from;
            }
        }
        line_.add_text(masked);
    }

    LineText &line_;
    const Pseudonyms *pseudonyms_;
    const bool success_;
};

// Whether the call cannot change the argument, or leaves nothing of it.
bool is_fixed(const DeviceCall &call, const Argument &argument)
{
    return argument.way == Way::kValue || argument.way == Way::kIn || call.function.frees;
}

// Whether the argument points to bytes that can be compared. A list is more than its first node,
// and what is behind a text does not belong to it.
bool has_bytes(const Argument &argument)
{
    return argument.kind != Kind::kText && !argument.is_chain;
}

std::string_view bytes_of(const DeviceCall &call, size_t at)
{
    return {address_of(call.arguments[at]),
            device_text::size_of(call.function.arguments[at], call.arguments.data())};
}

// The value of an argument before the call that a recording leaves out.
std::string_view empty_value(const Argument &argument)
{
    return argument.is_handed_over ? "null" : argument.is_chain ? "[{}]" : R"("")";
}

bool is_success(const DeviceCall &call)
{
    return call.function.has_result &&
           device_facts::is_success(*device_facts::find(call.function.name), call.result);
}

} // namespace

ArgumentsText::ArgumentsText(const DeviceCall &call, const Pseudonyms *pseudonyms, Memory &memory)
    : call_(call), pseudonyms_(pseudonyms), memory_(memory)
{
    memory_.texts.cut(0);
    memory_.bytes.cut(0);
    for (size_t at = 0; at < call_.arguments.size(); ++at) {
        take(at);
    }
}

void ArgumentsText::take(size_t at)
{
    const Argument &argument = call_.function.arguments[at];
    const bool is_kept = is_fixed(call_, argument);
    if (!is_kept && call_.arguments[at] == 0) {
        return;
    }
    if (!is_kept && has_bytes(argument)) {
        const std::string_view bytes = bytes_of(call_, at);
        if (is_zero(bytes.data(), bytes.size())) {
            return;
        }
        before_[at].bytes = {memory_.bytes.size(), bytes.size()};
        memory_.bytes.add(bytes);
    }
    const size_t begin = memory_.texts.size();
    add_value(memory_.texts, at, true);
    if (is_kept || memory_.texts.text().substr(begin) != empty_value(argument)) {
        before_[at].text = {begin, memory_.texts.size() - begin};
    } else {
        memory_.texts.cut(begin);
    }
}

void ArgumentsText::add_to(LineText &line) const
{
    if (call_.arguments.empty()) {
        return;
    }
    line.add_name("arguments");
    line.add('{');
    for (size_t at = 0; at < call_.arguments.size(); ++at) {
        line.add_name(call_.function.arguments[at].name);
        add_argument(line, at);
    }
    line.add('}');
}

void ArgumentsText::add_argument(LineText &line, size_t at) const
{
    const Argument &argument = call_.function.arguments[at];
    const auto [begin, size] = before_[at].text;
    const std::string_view before = memory_.texts.text().substr(begin, size);
    if (is_fixed(call_, argument)) {
        line.add(before);
        return;
    }
    if (call_.arguments[at] == 0) {
        line.add("null");
        return;
    }
    line.add('{');
    if (!before.empty()) {
        line.add_name("before");
        line.add(before);
    }
    const size_t end = line.size();
    if (!has_bytes(argument) || is_changed(at)) {
        line.add_name("after");
        const size_t after = line.size();
        add_value(line, at, argument.is_chain || is_success(call_));
        if (!has_bytes(argument) &&
            line.text().substr(after) == (before.empty() ? empty_value(argument) : before)) {
            line.cut(end);
        }
    }
    line.add('}');
}

bool ArgumentsText::is_changed(size_t at) const
{
    const auto [begin, size] = before_[at].bytes;
    const std::string_view bytes = bytes_of(call_, at);
    return size == 0 ? !is_zero(bytes.data(), bytes.size())
                     : memory_.bytes.text().substr(begin, size) != bytes;
}

void ArgumentsText::add_value(LineText &line, size_t at, bool success) const
{
    const Argument &argument = call_.function.arguments[at];
    const intptr_t value = call_.arguments[at];
    if (argument.way == Way::kValue) {
        line.add_number(value);
        return;
    }
    const char *place = address_of(value);
    if (place != nullptr && argument.is_handed_over) {
        place = value_at<const char *>(place);
    }
    if (place == nullptr) {
        line.add("null");
        return;
    }
    const Values values(line, pseudonyms_, success);
    switch (argument.kind) {
    case Kind::kText: {
        const bool is_bounded = argument.way != Way::kIn || argument.width > 0;
        const size_t width = is_bounded && !argument.is_handed_over
                                 ? device_text::width_of(argument, call_.arguments.data())
                                 : std::string_view::npos;
        const bool is_unread = argument.is_handed_over && !success;
        values.text({place, is_unread ? 0 : strnlen(place, width)}, argument.is_secret);
        break;
    }
    case Kind::kRecord:
        if (argument.is_chain && argument.way != Way::kIn) {
            values.list(*record_of(argument), place);
        } else {
            values.record(*record_of(argument), place);
        }
        break;
    default:
        line.add_number(device_text::number_at(argument.kind, place));
    }
}

} // namespace agent::record
