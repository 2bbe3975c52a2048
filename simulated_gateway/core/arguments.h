// SPDX-License-Identifier: MIT
// The arguments of a device call, as the trace shows them.
//
// A record is shown with its texts and numbers; describe() is overloaded for records that need a
// different form.
#pragma once

#include "io/text.h"
#include "protocol/device_facts.h"

#include <concepts>
#include <cstring>
#include <span>
#include <string>
#include <type_traits>

namespace simulated_gateway {

// A record in readable form: {MAC="3C:6A:D2:10:4F:20", tslinkstatus="1"}.
class RecordText {
  public:
    explicit RecordText(bool show_secrets) : show_secrets_(show_secrets) {}

    // A text is not read beyond its field, even if it has no NUL.
    template <size_t width> void field(const char *name, const char (&value)[width])
    {
        add(name, in_quotes({value, strnlen(value, width)}));
    }
    void field(const char *name, int32_t value) { add(name, std::to_string(value)); }

    // A field that is masked unless secrets are to be shown; an empty one is shown as empty.
    template <size_t width> void secret(const char *name, const char (&value)[width])
    {
        if (show_secrets_ || value[0] == '\0') {
            field(name, value);
        } else {
            add(name, "***");
        }
    }

    std::string text() const { return "{" + fields_ + "}"; }

  private:
    void add(const char *name, const std::string &value);

    bool show_secrets_;
    std::string fields_;
};

// The texts and numbers of a record; for arrays, their counts.
template <class Record> void describe(RecordText &text, const Record &record)
{
    device_facts::visit_fields(
        record, [&]<class Type>(const device_facts::Field &fact, const Type &field) {
            if constexpr (std::is_class_v<Type>) {
                describe(text, field);
            } else if constexpr (std::is_same_v<Type, int32_t>) {
                text.field(fact.name, field);
            } else if constexpr (std::is_same_v<std::remove_extent_t<Type>, char>) {
                if (fact.is_secret) {
                    text.secret(fact.name, field);
                } else if (!fact.is_reserved) {
                    text.field(fact.name, field);
                }
            }
        });
}

// One argument of a device call.
struct Argument {
    const char *name;
    const void *value;
    bool is_reply; // filled by the function, undefined before
    std::string (*shown)(const void *value, bool show_secrets); // as the trace shows it
    std::span<char> fail_reason = {};           // where the device writes the reason of a refusal
    void (*spoil)(const void *value) = nullptr; // fills it with random bytes
};

template <class Record> std::string shown_record(const void *record, bool show_secrets)
{
    RecordText text(show_secrets);
    describe(text, *static_cast<const Record *>(record));
    return text.text();
}

template <std::integral Number> std::string shown_number(const void *number, bool)
{
    return std::to_string(*static_cast<const Number *>(number));
}

// Random bytes that do not end a text, as a broken device library may leave them.
void spoil_text(char *text, size_t width);
int32_t random_number();

// Pointers stay as they are: a process does not survive those.
template <class Record> void spoil_fields(Record &record)
{
    device_facts::visit_fields(record, []<class Type>(const device_facts::Field &, Type &field) {
        if constexpr (std::is_class_v<Type>) {
            spoil_fields(field);
        } else if constexpr (std::is_same_v<Type, int32_t>) {
            field = random_number();
        } else if constexpr (std::is_same_v<std::remove_extent_t<Type>, char>) {
            spoil_text(field, sizeof(field));
        }
    });
}

template <class Record> void spoil_record(const void *record)
{
    spoil_fields(*static_cast<Record *>(const_cast<void *>(record)));
}

// A record that the function reads.
template <class Record> Argument request(const char *name, const Record *record)
{
    return {name, record, false, shown_record<Record>};
}

// A record that the function fills.
template <class Record> Argument reply(const char *name, Record *record)
{
    Argument argument = {name, record, true, shown_record<Record>};
    argument.spoil = spoil_record<Record>;
    return argument;
}

// A record that the function reads and then fills; the trace shows it as it is after the call.
template <class Record> Argument exchange(const char *name, Record *record)
{
    return {name, record, false, shown_record<Record>};
}

// A setting followed by a FailReason field, which says why the call failed.
template <class Setting> Argument request_with_reason(const char *name, Setting *setting)
{
    Argument argument = exchange(name, setting);
    if (setting != nullptr) {
        argument.fail_reason = setting->FailReason;
    }
    return argument;
}

// A plain text that the function fills.
Argument reply_text(const char *name, const char *text);

// A plain text that the function reads.
Argument request_text(const char *name, const char *text);

// The same for a text that may be null; it has to outlive the call.
Argument request_text_or_null(const char *name, const char *const &text);

// A URL, which may contain a password.
Argument request_address(const char *name, const char *address);

// A plain number that the function fills.
Argument reply_number(const char *name, const int32_t *number);

// A number; it has to outlive the call.
template <std::integral Number> Argument number(const char *name, const Number &value)
{
    return {name, &value, false, shown_number<Number>};
}

} // namespace simulated_gateway
