// What the handlers are made of: tables of fields, bounded copies, replies, and the two recipes
// that cover every regular command. A handler that fits neither recipe is a plain function built
// from the same parts.
#pragma once

#include "commands.h"
#include "smart_router_service/device_access.h"
#include "smart_router_service/host_agent.h"

#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>

// The host's log names its sources by module. The levels are the two that it knows from us.
#define SMART_ROUTER_LOG_MODULE "libtsiotAgtd"
#define LOG_ERROR(...) ts_mod_log_printf(SMART_ROUTER_LOG_MODULE, 3, __VA_ARGS__)
#define LOG_DEBUG(...) ts_mod_log_printf(SMART_ROUTER_LOG_MODULE, 7, __VA_ARGS__)

namespace smart_router {

constexpr char kStatus[] = "Status";
constexpr char kFailReason[] = "FailReason";

// ---- Fields ------------------------------------------------------------------------------------

// One text field of a record and the JSON key that it travels under. The key is stored in place,
// not as a pointer, so that the tables need no relocation and stay in read-only memory.
struct Field {
    char key[24];
    uint16_t offset;
    uint16_t width;
};

// The same, marked with the record that it belongs to, so that a table cannot mix records.
template <class Record> struct FieldOf : Field {
};

template <class Record, size_t count> struct Fields {
    Field field[count];
};

// A table whose record the compiler has checked already.
struct FieldList {
    const Field *first;
    size_t count;

    template <class Record, size_t n>
    constexpr FieldList(const Fields<Record, n> &fields) : first(fields.field), count(n)
    {
    }
    const Field *begin() const { return first; }
    const Field *end() const { return first + count; }
};

// Never defined: reaching it while a table is built at compile time is the error message.
void this_key_stands_twice_in_the_table();

template <class T> struct TextWidth;
template <size_t width> struct TextWidth<char[width]> {
    static constexpr size_t value = width;
};

template <class Record, class Member, size_t key_size>
constexpr FieldOf<Record> field_of(const char (&key)[key_size], size_t offset)
{
    static_assert(key_size <= sizeof(Field::key), "make Field::key wide enough for this key");
    static_assert(sizeof(Record) <= UINT16_MAX, "offsets are kept in 16 bits");
    FieldOf<Record> field = {};
    for (size_t at = 0; at < key_size; ++at) {
        field.key[at] = key[at];
    }
    field.offset = static_cast<uint16_t>(offset);
    field.width = static_cast<uint16_t>(TextWidth<Member>::value);
    return field;
}

// The text member of the record under the key; the width follows from the member.
#define FIELD(Record, key, member)                                                                 \
    smart_router::field_of<Record, decltype(Record::member)>(key, offsetof(Record, member))

constexpr char lower_case(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// cJSON finds keys without regard to case, so two keys that differ only in case are the same one.
constexpr bool same_key(const char *left, const char *right)
{
    while (*left != '\0' && lower_case(*left) == lower_case(*right)) {
        ++left;
        ++right;
    }
    return lower_case(*left) == lower_case(*right);
}

template <class Record, size_t count>
constexpr Fields<Record, count> fields_of(const FieldOf<Record> (&list)[count])
{
    Fields<Record, count> fields = {};
    for (size_t at = 0; at < count; ++at) {
        for (size_t before = 0; before < at; ++before) {
            if (same_key(list[before].key, list[at].key)) {
                this_key_stands_twice_in_the_table();
            }
        }
        fields.field[at] = list[at];
    }
    return fields;
}

// ---- Requests ----------------------------------------------------------------------------------

// The item's text, or null where there is no item or it is not a text.
const char *text_of(const cJSON *item);

// Copies text into a field, cut at the field's width less one; the field always ends in NUL.
void copy_text(char *field, size_t width, const char *text);
template <size_t width> void copy_text(char (&field)[width], const char *text)
{
    copy_text(field, width, text);
}

// Takes an item that was found in obj out of it and deletes it; nothing for null.
void consume(cJSON *obj, cJSON *item);

// What a command answers when a required key is absent, and when it is there without a text.
struct MissingTexts {
    const char *absent;
    const char *no_text;

    constexpr MissingTexts(const char *either) : absent(either), no_text(either) {}
    constexpr MissingTexts(const char *absent_key, const char *key_without_text)
        : absent(absent_key), no_text(key_without_text)
    {
    }
};

constexpr MissingTexts kNodeOrValueNull = {"json node null", "value string null"};

// Finds every key of the table in obj and leaves its item in items, in the table's order; null for
// an absent one. Result: null when all are there with a text, else the text to answer. Absence is
// looked at first, over all keys.
const char *find_required(cJSON *obj, FieldList fields, const MissingTexts &missing, cJSON **items);

// Copies the items' texts into the fields of the record.
void copy_items(FieldList fields, cJSON *const *items, void *record);

// ---- Replies -----------------------------------------------------------------------------------

// Appends a text item to an object; with a width, no more than so many bytes of text are read. The
// key has to be a constant. Result: false when memory ran out, and then nothing was added.
bool add_text(cJSON *object, const char *key, const char *text);
bool add_text(cJSON *object, const char *key, const char *text, size_t width);

// Appends the record's fields in the table's order, up to the first that memory fails.
bool add_fields(cJSON *object, FieldList fields, const void *record);

// A reply under construction. It is built in an object of its own and moved over in one go, so that
// memory that runs out half-way leaves no half reply behind.
class Reply {
  public:
    Reply() { root_.type = cJSON_Object; }
    ~Reply() { cJSON_Delete(root_.child); }
    Reply(const Reply &) = delete;
    Reply &operator=(const Reply &) = delete;

    // Append to the reply. The keys have to be constants.
    void text(const char *key, const char *text)
    {
        complete_ = complete_ && add_text(&root_, key, text);
    }
    void text(const char *key, const char *text, size_t width)
    {
        complete_ = complete_ && add_text(&root_, key, text, width);
    }
    void fields(FieldList fields, const void *record)
    {
        complete_ = complete_ && add_fields(&root_, fields, record);
    }
    void success() { text(kStatus, "0"); }

    // False as soon as memory has run out for one item.
    bool complete() const { return complete_; }

    // Moves the items to the end of obj. Result: false, with obj untouched, when the reply is not
    // complete or obj is no object.
    bool join(cJSON *obj);

  private:
    cJSON root_ = {};
    bool complete_ = true;
};

// Adds "Status" "1" and the "FailReason", both or none of them; the status alone for a null reason.
void fail(cJSON *obj, const char *reason);
// The same with a reason that the device library left in a field.
void fail(cJSON *obj, const char *reason, size_t width);

// Joins the reply, or fails with the reason when it could not be built.
void answer(cJSON *obj, Reply &reply, const char *reason);

// ---- Owners ------------------------------------------------------------------------------------

// A JSON tree that has not been handed over to another one.
class JsonTree {
  public:
    explicit JsonTree(cJSON *tree) : tree_(tree) {}
    ~JsonTree() { cJSON_Delete(tree_); }
    JsonTree(const JsonTree &) = delete;
    JsonTree &operator=(const JsonTree &) = delete;

    cJSON *get() const { return tree_; }
    cJSON *release()
    {
        cJSON *tree = tree_;
        tree_ = nullptr;
        return tree;
    }

  private:
    cJSON *tree_;
};

// A text printed by cJSON; null when printing failed.
class PrintedJson {
  public:
    explicit PrintedJson(char *text) : text_(text) {}
    ~PrintedJson() { cJSON_free(text_); }
    PrintedJson(const PrintedJson &) = delete;
    PrintedJson &operator=(const PrintedJson &) = delete;

    const char *text() const { return text_; }

  private:
    char *text_;
};

// ---- Recipes -----------------------------------------------------------------------------------

// Which results of a device call are failures.
using FailureRule = bool (*)(int32_t result);
constexpr bool non_zero(int32_t result)
{
    return result != 0;
}
constexpr bool minus_one(int32_t result)
{
    return result == -1;
}

// Where a query puts its status.
enum class StatusAt { kFirst, kLast };

// When a setting takes its request keys out of the object.
enum class Consume {
    kAfterCall, // once the device was called, whatever it said
    kOnSuccess, // only when the device agreed
    kAlways,    // also when a key was missing
};

void answer_query(cJSON *obj, bool failed, FieldList fields, const void *record,
                  const char *failure, StatusAt status);

// A query without parameters: zeroes the record, calls, and replies with the fields. Without a
// failure text it answers a failure with the status alone.
template <auto call, StatusAt status = StatusAt::kFirst, FailureRule failed = non_zero,
          class Record, size_t count>
constexpr auto query(const Fields<Record, count> &fields, const char *failure)
{
    return [&fields, failure](cJSON *obj) -> int32_t {
        Record record = {};
        const int32_t result = call(&record);
        answer_query(obj, failed(result), fields, &record, failure, status);
        return result;
    };
}

// A setting on its way: what was found in the request, and the reply to success, which is allocated
// before the device is changed so that memory cannot fail a change that was made.
class SettingRun {
  public:
    SettingRun(cJSON *obj, FieldList fields, cJSON **items)
        : obj_(obj), fields_(fields), items_(items)
    {
    }

    // Result: true when the record is filled and the device may be called; else the request has
    // been answered.
    bool begin(void *record, const MissingTexts &missing, const char *failure, Consume when);
    void end(bool failed, const char *failure, Consume when);

  private:
    void consume_items();

    cJSON *obj_;
    FieldList fields_;
    cJSON **items_;
    Reply success_;
};

// A setting whose request keys are all required: finds them, copies them into a zeroed record,
// calls, replies, and takes the keys out.
template <auto call, Consume when = Consume::kAfterCall, FailureRule failed = non_zero,
          class Record, size_t count>
constexpr auto setting(const Fields<Record, count> &fields, const char *failure,
                       MissingTexts missing = kNodeOrValueNull)
{
    return [&fields, failure, missing](cJSON *obj) -> int32_t {
        Record record = {};
        cJSON *items[count];
        SettingRun run(obj, fields, items);
        if (!run.begin(&record, missing, failure, when)) {
            return -1;
        }
        const int32_t result = call(&record);
        run.end(failed(result), failure, when);
        return result;
    };
}

// Defines a handler from a recipe, with a symbol of its own.
#define HANDLER(name, recipe)                                                                      \
    int32_t name(cJSON *obj)                                                                       \
    {                                                                                              \
        return (recipe)(obj);                                                                      \
    }

} // namespace smart_router
