// What a device function is made of. A function is its name, its arguments and a body that works on
// the state; fault plan, trace, lock and saving come with query(), setting() and long_work():
//
//   int32_t devapi_get_sn_info(SnInfo *info)
//   {
//       return query(__func__, {reply("info", info)}, [&](const State &state) {
//           put(info->MAC, state.home.identity.mac);
//           return 0;
//       });
//   }
//
// The body of the first two runs under the gateway's lock: it calls no device function.
//
// For the trace, a record is shown with its texts and numbers; describe() is overloaded for one of
// which something else says more.
#pragma once

#include "model/model.h"
#include "protocol/device_facts.h"

#include <concepts>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <new>
#include <span>
#include <string>

namespace simulated_gateway {

class Gateway;

// A record in readable form: {MAC="3C:6A:D2:10:4F:20", tslinkstatus="1"}.
class RecordText {
  public:
    explicit RecordText(bool show_secrets) : show_secrets_(show_secrets) {}

    // A text is read no further than its field, also where it lacks its NUL.
    template <size_t width> void field(const char *name, const char (&value)[width])
    {
        add(name, in_quotes({value, strnlen(value, width)}));
    }
    void field(const char *name, int32_t value) { add(name, std::to_string(value)); }

    // A field that is masked unless secrets are asked for; one without a value shows that.
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

// The texts and numbers of a record; of arrays, their counts.
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
    bool is_reply; // filled by the function, and unset before
    std::string (*shown)(const void *value, bool show_secrets); // as the trace shows it
    std::span<char> fail_reason = {}; // where the device says why it refuses
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

// A record that the function reads.
template <class Record> Argument request(const char *name, const Record *record)
{
    return {name, record, false, shown_record<Record>};
}

// A record that the function fills.
template <class Record> Argument reply(const char *name, Record *record)
{
    return {name, record, true, shown_record<Record>};
}

// A record that the function reads and then fills; the trace shows it as it is after the call.
template <class Record> Argument exchange(const char *name, Record *record)
{
    return {name, record, false, shown_record<Record>};
}

// A setting with a FailReason behind it, which says why the call failed.
template <class Setting> Argument request_with_reason(const char *name, Setting *setting)
{
    Argument argument = exchange(name, setting);
    if (setting != nullptr) {
        argument.fail_reason = setting->FailReason;
    }
    return argument;
}

// A bare text that the function fills.
Argument reply_text(const char *name, const char *text);

// A bare text that the function reads.
Argument request_text(const char *name, const char *text);

// The same for one that may be null; it has to outlive the call.
Argument request_text_or_null(const char *name, const char *const &text);

// An address of the web, in which a password may stand.
Argument request_address(const char *name, const char *address);

// A bare number that the function fills.
Argument reply_number(const char *name, const int32_t *number);

// A number; it has to outlive the call.
template <std::integral Number> Argument number(const char *name, const Number &value)
{
    return {name, &value, false, shown_number<Number>};
}

// Throws an Error with the name in front of the complaint, if there is one.
void refuse_for(const char *name, const std::string &complaint);

// What a text says; they throw an Error in the given name when it says nothing of the kind.
bool flag_of(const char *name, const std::string &text);
int64_t number_of(const char *name, const std::string &text);

// Runs a device call that looks at the state. Fails with -1 when an argument is null or the gateway
// cannot be opened.
int32_t query(const char *function, std::initializer_list<Argument> arguments,
              const std::function<int32_t(const State &)> &body);

// Runs a device call that changes the state. The change takes effect when the body returns 0, the
// model still holds and the state could be saved; else nothing has changed, and where the body had
// no objection the call fails with -1. A body refuses by throwing an Error: then the call fails
// with -1, and trace and FailReason say why.
int32_t setting(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t(State &)> &body);

// Runs a device call that takes its time: the body works without the gateway's lock, and other
// calls go on meanwhile. For its steps on the state it asks the gateway (gateway.h). A body refuses
// as it does in a setting.
int32_t long_work(const char *function, std::initializer_list<Argument> arguments,
                  const std::function<int32_t(Gateway &)> &body);

// Zeroed memory for what the caller frees.
template <class Entry> Entry *allocated(size_t count)
{
    auto *entries = static_cast<Entry *>(std::calloc(count, sizeof(Entry)));
    if (entries == nullptr) {
        throw std::bad_alloc();
    }
    return entries;
}

// What a field without a value says.
constexpr char kNoValue[] = "NULL";

// Puts a text into a record's field, cut at its width behind a whole letter; without one it
// says that there is no value.
void put_text(std::span<char> field, const std::string &text);
template <size_t width> void put(char (&field)[width], const std::string &text)
{
    put_text(field, text);
}
// A number, or a flag as "1" or "0".
template <size_t width, std::integral Number> void put(char (&field)[width], Number value)
{
    put_text(field, std::to_string(value));
}

// A text that comes in by a record's field: read no further than the field, and without the part of
// a letter that the plug-in's cut may have left at its end.
template <size_t width> std::string taken(const char (&field)[width])
{
    return std::string(whole_letters({field, strnlen(field, width)}));
}
// The same for a text that has to hold by a rule, and for a flag. They refuse in the name of the
// field.
template <size_t width, class Rule>
std::string taken(const char *name, const char (&field)[width], const Rule &rule)
{
    std::string text = taken(field);
    refuse_for(name, complaint(text, rule));
    return text;
}
template <size_t width> std::string taken_text(const char *name, const char (&field)[width])
{
    return taken(name, field, Text{width});
}
// A text that may be taken away, by an empty one or by what the gateway says for none.
template <size_t width> std::string taken_or_none(const char *name, const char (&field)[width])
{
    const std::string text = taken(field);
    return text.empty() || text == kNoValue ? "" : taken_text(name, field);
}
template <size_t width> bool taken_flag(const char *name, const char (&field)[width])
{
    return flag_of(name, taken(field));
}
template <size_t width> int64_t taken_number(const char *name, const char (&field)[width])
{
    return number_of(name, taken(field));
}

// A setting that says "-1" of something leaves that as it is.
template <size_t width> bool is_given(const char (&field)[width])
{
    return taken(field) != "-1";
}

} // namespace simulated_gateway
