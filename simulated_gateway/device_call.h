// What a device function is made of. A function is its name, its arguments and a body that works on
// the state; fault plan, trace, lock and saving come with query() and setting():
//
//   int32_t devapi_get_sn_info(SnInfo *info)
//   {
//       return query(__func__, {reply("info", info)}, [&](const State &state) {
//           put(info->MAC, state.home.identity.mac);
//           return 0;
//       });
//   }
//
// The body runs under the gateway's lock: it calls no device function.
//
// A record is described once, for the trace:
//
//   static void describe(RecordText &text, const SnInfo &info)
//   {
//       text.field("MAC", info.MAC);
//   }
#pragma once

#include "model.h"

#include <cstring>
#include <functional>
#include <initializer_list>
#include <string>

namespace simulated_gateway {

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

// One argument of a device call, as the trace shows it.
struct Argument {
    const char *name;
    const void *value;
    bool is_reply; // filled by the function
    void (*describe)(RecordText &text, const void *value);
};

template <class Record> void describe_record(RecordText &text, const void *record)
{
    describe(text, *static_cast<const Record *>(record));
}

// A record that the function reads.
template <class Record> Argument request(const char *name, const Record *record)
{
    return {name, record, false, describe_record<Record>};
}

// A record that the function fills.
template <class Record> Argument reply(const char *name, Record *record)
{
    return {name, record, true, describe_record<Record>};
}

// Runs a device call that looks at the state. Fails with -1 when an argument is null or the gateway
// cannot be opened.
int32_t query(const char *function, std::initializer_list<Argument> arguments,
              const std::function<int32_t(const State &)> &body);

// Runs a device call that changes the state. The change takes effect when the body returns 0, the
// model still holds and the state could be saved; else nothing has changed, and where the body had
// no objection the call fails with -1.
int32_t setting(const char *function, std::initializer_list<Argument> arguments,
                const std::function<int32_t(State &)> &body);

// Puts a text into a record's field, cut at its width; a field without a value says "NULL".
void put_text(char *field, size_t width, const std::string &text);
template <size_t width> void put(char (&field)[width], const std::string &text)
{
    put_text(field, width, text);
}
template <size_t width> void put(char (&field)[width], bool flag)
{
    put_text(field, width, flag ? "1" : "0");
}

} // namespace simulated_gateway
