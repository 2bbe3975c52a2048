// SPDX-License-Identifier: MIT
// Recipes for regular commands. A query, a setting or an action is one line, which names the device
// call, the table of fields and the failure text. A command that fits no recipe is a plain function
// that uses the same parts, such as the steps of a setting. Handlers include this header, which
// includes the others.
#pragma once

#include "commands.h"
#include "fields.h"
#include "guards.h"
#include "log.h"
#include "reply.h"
#include "request_keys.h"
#include "smart_router_service/device_access.h"
#include "texts.h"

#include <stddef.h>
#include <stdint.h>
#include <string.h>

namespace smart_router {

// Decides which results of a device call are failures.
using FailureRule = bool (*)(int32_t result);
constexpr bool non_zero(int32_t result)
{
    return result != 0;
}
constexpr bool minus_one(int32_t result)
{
    return result == -1;
}

// Reads one of several records for a report that includes those that could be read. After a failed
// call the record is zeroed, even if the call wrote to it.
template <auto call, class Record> bool read_or_empty(Record &record)
{
    record = {};
    if (call(&record) == 0) {
        return true;
    }
    record = {};
    return false;
}

// Where a query puts its status.
enum class StatusAt { kFirst, kLast };

// When a setting removes its request keys from the object.
enum class RemoveKeys {
    kAfterCall, // after the device call, regardless of its result
    kOnSuccess, // only after a device call that succeeded
    kAlways,    // even when a key was missing
};

void answer_query(cJSON *obj, bool failed, FieldList fields, const void *record,
                  const char *failure, StatusAt status);

// A regular command is a row: its fields, its texts and its device call. All rows of one type share
// an engine, which has the record on its stack. The engine has four parameters, as many as MIPS
// passes in registers, so that a row takes little code.
using RecordCall = int32_t (*)(void *record);
using Engine = int32_t (*)(cJSON *obj, FieldList fields, const char *texts, RecordCall call);

constexpr size_t kLargestRecord = 2048; // used by a row

template <auto call, class Record> int32_t call_with(void *record)
{
    static_assert(sizeof(Record) <= kLargestRecord, "make kLargestRecord larger");
    return call(static_cast<Record *>(record));
}

// The texts of a row: the failure, or the failure followed by the text for a missing key.
struct OneText {
    const char *text;
};
template <size_t size> struct TwoTexts {
    char text[size];
};

template <size_t failure_size, size_t missing_size>
constexpr TwoTexts<failure_size + missing_size> texts_of(const char (&failure)[failure_size],
                                                         const char (&missing)[missing_size])
{
    TwoTexts<failure_size + missing_size> texts = {};
    char *at = texts.text;
    for (const char letter : failure) {
        *at++ = letter;
    }
    for (const char letter : missing) {
        *at++ = letter;
    }
    return texts;
}

template <Engine engine, RecordCall call, class Texts> struct Row {
    FieldList fields;
    Texts texts;

    int32_t operator()(cJSON *obj) const { return run(obj, texts); }
    int32_t run(cJSON *obj, const Texts &with) const
    {
        // The pointer alone becomes a constant in the code. A whole FieldList would be copied from
        // memory that the loader has to relocate.
        return engine(obj, {fields.bytes}, with.text, call);
    }
};

int32_t run_query(cJSON *obj, FieldList fields, const char *failure, RecordCall call,
                  StatusAt status, FailureRule failed);

template <StatusAt status, FailureRule failed>
[[gnu::noinline]] int32_t query_engine(cJSON *obj, FieldList fields, const char *failure,
                                       RecordCall call)
{
    return run_query(obj, fields, failure, call, status, failed);
}

// A query without parameters: zeroes the record, calls the device, and replies with the fields.
// Without a failure text, the reply to a failure is only the status.
template <auto call, StatusAt status = StatusAt::kFirst, FailureRule failed = non_zero,
          class Record, size_t count, size_t keys_size>
constexpr auto query(const Fields<Record, count, keys_size> &fields, const char *failure)
{
    return Row<query_engine<status, failed>, call_with<call, Record>, OneText>{fields, {failure}};
}

// The steps before and after a device call that changes something, for handlers that copy no keys.
// The call must not be made unless there is an object for the reply and memory for the success
// reply: otherwise can_conclude() adds the failure and returns false.
bool can_conclude(cJSON *obj, const Reply &success, const char *failure);
void conclude(cJSON *obj, Reply &success, bool failed, const char *failure, size_t width);
void conclude(cJSON *obj, Reply &success, bool failed, const char *failure);

// An action without parameters.
int32_t carry_out(cJSON *obj, int32_t (*call)(), const char *failure);

template <int32_t (*call)()> struct Action {
    OneText texts;

    // cppcheck-suppress functionStatic ; rows of all types have the same interface
    int32_t run(cJSON *obj, const OneText &failure) const
    {
        return carry_out(obj, call, failure.text);
    }
};

template <auto call> constexpr auto action(const char *failure)
{
    return Action<call>{{failure}};
}

// An action that replies with the record that the device call filled.
int32_t run_reporting_action(cJSON *obj, FieldList fields, const char *failure, RecordCall call);

template <auto call, class Record, size_t count, size_t keys_size>
constexpr auto reporting_action(const Fields<Record, count, keys_size> &fields, const char *failure)
{
    return Row<run_reporting_action, call_with<call, Record>, OneText>{fields, {failure}};
}

// The steps of a setting, to be called in the order of their declarations. A step that returns
// false has added the failure reply. The success reply is allocated before the device is changed,
// so that a change that was made is never reported as failed for lack of memory.
class SettingSteps {
  public:
    // cppcheck-suppress uninitMemberVar ; find() fills it
    SettingSteps(cJSON *obj, FieldList fields, RemoveKeys when)
        : obj_(obj), fields_(fields), when_(when)
    {
    }
    // Finds the keys; false when a required one is missing.
    bool find(const MissingTexts &missing);
    // The success reply, for keys after the status.
    Reply &success() { return success_; }
    // The text in the request for the field at the position, uncut.
    const char *text(size_t position) const { return text_of(items_[position]); }
    // Copies the texts to the record; after that, the device may be called.
    bool fill_record(void *record, const char *failure, size_t width = SIZE_MAX);
    // Removes the keys from the position on, and their texts with them, for a setting that removes
    // some of its keys before the device call.
    void remove_from(size_t position);
    // After the device call: replies, and removes the keys.
    void end(bool failed, const char *failure, size_t width = SIZE_MAX);

  private:
    cJSON *obj_;
    FieldList fields_;
    RemoveKeys when_;
    cJSON *items_[kMostKeys];
    Reply success_;
};

// The same, with the type of the record checked against the table at compile time.
template <class Record> class SettingRun : public SettingSteps {
  public:
    template <size_t count, size_t keys_size>
    SettingRun(cJSON *obj, const Fields<Record, count, keys_size> &fields, RemoveKeys when)
        : SettingSteps(obj, fields, when)
    {
        static_assert(count <= kMostKeys, "make kMostKeys larger");
    }
    bool fill(Record *record, const char *failure, size_t width = SIZE_MAX)
    {
        return fill_record(record, failure, width);
    }
};

int32_t run_setting(cJSON *obj, FieldList fields, const char *failure, RecordCall call,
                    RemoveKeys when, FailureRule failed, const MissingTexts &missing);

template <RemoveKeys when, FailureRule failed>
[[gnu::noinline]] int32_t setting_engine(cJSON *obj, FieldList fields, const char *failure,
                                         RecordCall call)
{
    return run_setting(obj, fields, failure, call, when, failed, node_or_value_null());
}

template <RemoveKeys when, FailureRule failed>
[[gnu::noinline]] int32_t setting_engine_with_missing(cJSON *obj, FieldList fields,
                                                      const char *texts, RecordCall call)
{
    return run_setting(obj, fields, texts, call, when, failed, texts + strlen(texts) + 1);
}

// A setting: finds the request keys, copies them into a zeroed record, calls the device, replies,
// and removes the keys.
template <auto call, RemoveKeys when = RemoveKeys::kAfterCall, FailureRule failed = non_zero,
          class Record, size_t count, size_t keys_size>
constexpr auto setting(const Fields<Record, count, keys_size> &fields, const char *failure)
{
    static_assert(count <= kMostKeys, "make kMostKeys larger");
    return Row<setting_engine<when, failed>, call_with<call, Record>, OneText>{fields, {failure}};
}

// The same, with a separate text for a missing key.
template <auto call, RemoveKeys when = RemoveKeys::kAfterCall, FailureRule failed = non_zero,
          class Record, size_t count, size_t keys_size, size_t failure_size, size_t missing_size>
constexpr auto setting(const Fields<Record, count, keys_size> &fields,
                       const char (&failure)[failure_size], const char (&missing)[missing_size])
{
    static_assert(count <= kMostKeys, "make kMostKeys larger");
    return Row<setting_engine_with_missing<when, failed>, call_with<call, Record>,
               TwoTexts<failure_size + missing_size>>{fields, texts_of(failure, missing)};
}

// Defines a handler from a recipe, as a function with its own symbol. The texts are a constant
// separate from the row, so that the row itself needs no memory.
#define HANDLER(name, recipe)                                                                      \
    int32_t name(cJSON *obj)                                                                       \
    {                                                                                              \
        static constexpr auto kRow = recipe;                                                       \
        static constexpr auto kTexts = kRow.texts;                                                 \
        return kRow.run(obj, kTexts);                                                              \
    }

} // namespace smart_router
