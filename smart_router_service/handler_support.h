// What the handlers are made of: tables of fields, bounded copies, replies, and the recipes that
// cover every regular command. A handler that fits none of them is a plain function built from the
// same parts.
#pragma once

#include "commands.h"
#include "smart_router_service/device_access.h"
#include "smart_router_service/host_agent.h"

#include <stddef.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>

// The host's log names its sources by module. The levels are the two that it knows from us.
#define SMART_ROUTER_LOG_MODULE "libtsiotAgtd"
#define LOG_ERROR(...) ts_mod_log_printf(SMART_ROUTER_LOG_MODULE, 3, __VA_ARGS__)
#define LOG_DEBUG(...) ts_mod_log_printf(SMART_ROUTER_LOG_MODULE, 7, __VA_ARGS__)

namespace smart_router {

// The same for a text without arguments.
void log_error(const char *text);
void log_debug(const char *text);

inline constexpr char kStatus[] = "Status";
inline constexpr char kFailReason[] = "FailReason";

// ---- Fields ------------------------------------------------------------------------------------

// One field of a record, and the JSON key that it travels under, as a text in any case.
struct Field {
    const char *key;
    uint16_t offset;
    uint16_t width; // of a text field; 0 for a 32-bit number

    bool is_number() const { return width == 0; }
};

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

// Never defined: reaching it while a table is built at compile time is the error message.
void this_key_stands_twice_in_the_table();

// A table of fields as its readers walk it. The bytes hold no pointers, so that they need no
// relocation and stay in read-only memory, and no gaps, since there are hundreds of fields: the
// count, how many of them a request has to give, and the size of the record; then for each field
// its offset, its width in the low 11 bits with the length of the key above them, and the key.
struct FieldList {
    static constexpr size_t kHeaderSize = 4;
    static constexpr size_t kPlaceSize = 4;
    static constexpr int kWidthBits = 11;

    class Iterator {
      public:
        constexpr Iterator(const char *at, size_t left) : at_(at), left_(left) {}
        constexpr Field operator*() const
        {
            return {at_ + kPlaceSize, word_at(at_),
                    static_cast<uint16_t>(word_at(at_ + 2) & ((1 << kWidthBits) - 1))};
        }
        constexpr Iterator &operator++()
        {
            at_ += kPlaceSize + (static_cast<unsigned char>(at_[3]) >> (kWidthBits - 8)) + 1;
            --left_;
            return *this;
        }
        constexpr bool operator!=(const Iterator &other) const { return left_ != other.left_; }
        constexpr size_t left() const { return left_; } // fields from here to the end

      private:
        const char *at_;
        size_t left_;
    };

    constexpr size_t count() const { return static_cast<unsigned char>(bytes[0]); }
    // A request has to give the first so many of the fields, and may leave out the others.
    constexpr size_t required() const { return static_cast<unsigned char>(bytes[1]); }
    constexpr size_t record_size() const { return word_at(bytes + 2); }
    constexpr Iterator begin() const { return {bytes + kHeaderSize, count()}; }
    constexpr Iterator end() const { return {nullptr, 0}; }

    static constexpr uint16_t word_at(const char *at)
    {
        return static_cast<uint16_t>(static_cast<unsigned char>(at[0]) |
                                     static_cast<unsigned char>(at[1]) << 8);
    }

    const char *bytes;
};

// A table of fields of one record. Tables are put together from others: a single field is a table
// of one.
template <class Record, size_t count, size_t keys_size> class Fields {
  public:
    static constexpr size_t kCount = count;

    // The tables one behind the other. All fields are required, whatever the parts require.
    template <size_t... counts, size_t... keys_sizes>
    constexpr Fields(const Fields<Record, counts, keys_sizes> &...parts)
    {
        put_head();
        size_t end = FieldList::kHeaderSize;
        size_t appended = 0;
        ((end = append(parts, end, appended), appended += counts), ...);
    }
    // The table of one field. The key's size includes its NUL.
    constexpr Fields(const char (&key)[keys_size], size_t offset, size_t width)
    {
        static_assert(count == 1, "one key names one field");
        static_assert(keys_size <= 32, "the table counts a key's characters in 5 bits");
        static_assert(sizeof(Record) <= UINT16_MAX, "offsets are kept in 16 bits");
        put_head();
        put_word(FieldList::kHeaderSize, offset);
        put_word(FieldList::kHeaderSize + 2, width | (keys_size - 1) << FieldList::kWidthBits);
        char *end = bytes_ + FieldList::kHeaderSize + FieldList::kPlaceSize;
        for (const char letter : key) {
            *end++ = letter;
        }
    }
    // The same table for a request that has to give only the first fields.
    constexpr Fields requiring(size_t required) const
    {
        Fields fields = *this;
        fields.bytes_[1] = static_cast<char>(required);
        return fields;
    }
    constexpr operator FieldList() const { return {bytes_}; }

  private:
    static constexpr size_t kSize =
        FieldList::kHeaderSize + count * FieldList::kPlaceSize + keys_size;

    constexpr void put_word(size_t at, size_t word)
    {
        bytes_[at] = static_cast<char>(word & 0xff);
        bytes_[at + 1] = static_cast<char>(word >> 8);
    }
    constexpr void put_head()
    {
        bytes_[0] = bytes_[1] = static_cast<char>(count);
        put_word(2, sizeof(Record));
    }
    // Appends the part to the first fields, which end there. Result: where they end now.
    template <size_t part_count, size_t part_keys_size>
    constexpr size_t append(const Fields<Record, part_count, part_keys_size> &part, size_t end,
                            size_t appended)
    {
        for (const Field field : FieldList(part)) {
            FieldList::Iterator before(bytes_ + FieldList::kHeaderSize, appended);
            for (; before.left() != 0; ++before) {
                if (same_key((*before).key, field.key)) {
                    this_key_stands_twice_in_the_table();
                }
            }
        }
        const char *fields = FieldList(part).bytes + FieldList::kHeaderSize;
        for (size_t left = part_count * FieldList::kPlaceSize + part_keys_size; left > 0; --left) {
            bytes_[end++] = *fields++;
        }
        return end;
    }

    char bytes_[kSize] = {};
};

template <class Record, size_t... counts, size_t... keys_sizes>
Fields(Fields<Record, counts, keys_sizes>...) -> Fields<Record, (counts + ...), (keys_sizes + ...)>;

// What a table keeps as the width of a member: a text's size, and 0 for a number.
template <class Member> struct FieldWidth;
template <size_t width> struct FieldWidth<char[width]> {
    static_assert(width < 1 << FieldList::kWidthBits, "widths are kept in 11 bits");
    static constexpr size_t value = width;
};
template <> struct FieldWidth<int32_t> {
    static constexpr size_t value = 0;
};

template <class Record, class Member, size_t key_size>
constexpr Fields<Record, 1, key_size> field_of(const char (&key)[key_size], size_t offset)
{
    return {key, offset, FieldWidth<Member>::value};
}

// One field: a member of the record, under a key of the same name or of another one. FIELD_IN names
// a member of a part of the record, under its own name alone.
#define FIELD(Record, member) FIELD_AS(Record, member, #member)
#define FIELD_IN(Record, part, member) FIELD_AS(Record, part.member, #member)
#define FIELD_AS(Record, member, key)                                                              \
    smart_router::field_of<Record, decltype(Record::member)>(key, offsetof(Record, member))

// ---- Requests ----------------------------------------------------------------------------------

// The item's text, or null where there is no item or it is not a text.
[[gnu::pure]] const char *text_of(const cJSON *item);

// The text under the key, or null where there is none.
const char *text_under(const cJSON *obj, const char *key);

// The number that a decimal text begins with, as atoi() reads it; 0 where there is none, and the
// nearest 32-bit number for one that is too large.
int32_t number_of(const char *text);

// The item under the key when it is an array; anything else counts as absent.
cJSON *array_of(const cJSON *obj, const char *key);

// Copies text into a field, cut at the field's width less one; the field always ends in NUL.
void copy_text(char *field, size_t width, const char *text);
template <size_t width> void copy_text(char (&field)[width], const char *text)
{
    copy_text(field, width, text);
}

// Whether the field holds exactly this text.
bool holds(const char *field, size_t width, const char *text);
template <size_t width> bool holds(const char (&field)[width], const char *text)
{
    return holds(field, width, text);
}

// Whether the field holds exactly this text, without regard to case.
bool holds_any_case(const char *field, size_t width, const char *text);
template <size_t width> bool holds_any_case(const char (&field)[width], const char *text)
{
    return holds_any_case(field, width, text);
}

// Whether the text stands somewhere in the field.
enum class Case { kMatters, kIsIgnored };
bool contains(const char *field, size_t width, const char *text, Case letters);
template <size_t width>
bool contains(const char (&field)[width], const char *text, Case letters = Case::kMatters)
{
    return contains(field, width, text, letters);
}

// Copies a field's text and puts the NUL behind it that the device library may have left out; text
// has room for one byte more than the field.
void end_text(char *text, const char *field, size_t width);

// A field's text, ended, for functions that take no width.
template <size_t width> class Ended {
  public:
    explicit Ended(const char (&field)[width]) { end_text(text_, field, width); }
    const char *text() const { return text_; }

  private:
    char text_[width + 1];
};

// The number that a field's text begins with.
constexpr size_t kWidestNumber = 64;
int32_t number_in(const char *field, size_t width);
template <size_t width> int32_t number_in(const char (&field)[width])
{
    static_assert(width <= kWidestNumber, "make kWidestNumber larger");
    return number_in(field, width);
}

// Writes a number in decimal, cut at the width less one.
void put_number(char *field, size_t width, int32_t number);
template <size_t width> void put_number(char (&field)[width], int32_t number)
{
    put_number(field, width, number);
}

// Puts a text into its field of the record.
void store(const Field &field, void *record, const char *text);

// Takes an item that was found in obj out of it and deletes it; nothing for null.
void consume(cJSON *obj, cJSON *item);

// The most keys that a setting has.
constexpr size_t kMostKeys = 20;

// Fills a record from the keys of an item. Result: 0, or -1 when an argument is null or a required
// key has no text, and then the record is untouched.
int32_t read_record(cJSON *item, FieldList fields, void *record);

template <class Record, size_t count, size_t keys_size>
int32_t read_fields(cJSON *item, const Fields<Record, count, keys_size> &fields, Record *record)
{
    static_assert(count <= kMostKeys, "make kMostKeys larger");
    return read_record(item, fields, record);
}

// Stands in a record for a value that the request does not give: the device leaves the setting as
// it is, or takes its default.
inline constexpr char kNotGiven[] = "-1";

// Fills the fields that a request may leave out: with the key's text, or with kNotGiven.
// Found texts are taken out of obj where asked for; a key without a text stays.
enum class Found { kStays, kIsConsumed };
void copy_optional(cJSON *obj, FieldList fields, void *record, Found found);

// What a command answers when a required key is absent, and when it is there without a text.
struct MissingTexts {
    const char *absent;
    const char *no_text;

    // cppcheck-suppress noExplicitConstructor ; most commands have one text for both
    constexpr MissingTexts(const char *either) : absent(either), no_text(either) {}
    constexpr MissingTexts(const char *absent_key, const char *key_without_text)
        : absent(absent_key), no_text(key_without_text)
    {
    }
};

constexpr MissingTexts node_or_value_null()
{
    return {"json node null", "value string null"};
}

// Finds every key of the table in obj, as cJSON_GetObjectItem() would, and leaves its item in
// items, in the table's order; null for an absent one.
void find_items(const cJSON *obj, FieldList fields, cJSON **items);

// The same. Result: null when all that are required are there with a text, else the text to answer.
// Absence is looked at first, over all keys.
const char *find_required(cJSON *obj, FieldList fields, const MissingTexts &missing, cJSON **items);

// Copies the items' texts into the fields of the record, and kNotGiven where there is none.
void copy_items(FieldList fields, cJSON *const *items, void *record);

// The entries to read of an array, by a count that the device library gave.
constexpr size_t clamped(int32_t count, size_t most)
{
    if (count <= 0) {
        return 0;
    }
    return static_cast<size_t>(count) < most ? static_cast<size_t>(count) : most;
}

// ---- Replies -----------------------------------------------------------------------------------

// Appends a text item to an object; of text no more than width bytes are read. The key has to be a
// constant. Result: false when memory ran out, and then nothing was added.
bool add_text(cJSON *object, const char *key, const char *text, size_t width = SIZE_MAX);

// The same for a text that is a constant as well: the item refers to it.
bool add_constant(cJSON *object, const char *key, const char *text);

// Appends the record's fields in the table's order, up to the first that memory fails.
bool add_fields(cJSON *object, FieldList fields, const void *record);

// A new object with the record's fields; null when memory ran out.
cJSON *object_of(FieldList fields, const void *record);

// Appends an object with the fields to an array, which is not null and may be short of one. Result:
// false when memory ran out for it.
bool append_if_possible(cJSON *list, FieldList fields, const void *record);

// A reply under construction. It is built in an object of its own and moved over in one go, so that
// memory that runs out half-way leaves no half reply behind.
class Reply {
  public:
    Reply();
    ~Reply() { cJSON_Delete(root_.child); }
    Reply(const Reply &) = delete;
    Reply &operator=(const Reply &) = delete;

    // Append to the reply. The keys have to be constants.
    void text(const char *key, const char *text);
    void text(const char *key, const char *text, size_t width);
    void fields(FieldList fields, const void *record);
    // The status is a constant: so the reply that has to be there before a device is changed takes
    // no more than its item.
    void status(const char *status);
    void success();

    // Appends a text for each field, to be set once the device has filled the record: what a device
    // was changed by has to be answered, so the memory comes first.
    void reserve(FieldList fields);
    void set_reserved(FieldList fields, const void *record);

    // Appends an item, which belongs to the reply from here on; null is one that memory failed.
    void add(const char *key, cJSON *item);
    // Appends an empty array; null when memory has run out.
    cJSON *list(const char *key);
    // Appends an element to an array of this reply; null is one that memory failed.
    void append(cJSON *list, cJSON *element);
    // Appends an object with the fields.
    void append(cJSON *list, FieldList fields, const void *record);

    // False as soon as memory has run out for one item.
    bool complete() const { return complete_; }

    // The reply as formatted text, for whom it is not joined but sent; null when it is not complete
    // or memory has run out. The text belongs to the caller, to be freed with cJSON_free().
    char *print() const { return complete_ ? cJSON_Print(&root_) : nullptr; }

    // Moves the items to the end of obj. Result: false, with obj untouched, when the reply is not
    // complete or obj is no object.
    bool join(cJSON *obj);

  private:
    cJSON root_;
    bool complete_;
};

// A reply that begins with the status of success.
class SuccessReply : public Reply {
  public:
    SuccessReply();
};

// Adds "Status" "1" and the "FailReason", both or none of them; the status alone for a null reason.
// Of a reason that the device library left in a field, no more than width bytes are read. Result:
// false when nothing could be added.
bool fail(cJSON *obj, const char *reason, size_t width);
bool fail(cJSON *obj, const char *reason);

// The same as the last step of a handler. Result: -1.
int32_t refuse(cJSON *obj, const char *reason);

// Joins the reply, or fails with the reason when it could not be built. Result: 0, or -1 when it
// failed.
int32_t answer(cJSON *obj, Reply &reply, const char *reason);

// Reads one of several records that are told together even where some could not be read: one whose
// read failed is empty, whatever the failed call wrote into it. Everywhere else a record is used as
// the call left it, or not at all.
template <auto call, class Record> bool read_or_empty(Record &record)
{
    record = {};
    if (call(&record) == 0) {
        return true;
    }
    record = {};
    return false;
}

// ---- Owners ------------------------------------------------------------------------------------

// An item that is still to find its place.
class JsonItem {
  public:
    explicit JsonItem(cJSON *item) : item_(item) {}
    ~JsonItem() { cJSON_Delete(item_); }
    JsonItem(const JsonItem &) = delete;
    JsonItem &operator=(const JsonItem &) = delete;

    cJSON *get() const { return item_; }
    cJSON *release()
    {
        cJSON *item = item_;
        item_ = nullptr;
        return item;
    }

  private:
    cJSON *item_;
};

// Memory that the device library hands over.
template <class Content> class Freed {
  public:
    explicit Freed(Content *content) : content_(content) {}
    ~Freed() { free(content_); }
    Freed(const Freed &) = delete;
    Freed &operator=(const Freed &) = delete;

    Content *get() const { return content_; }

  private:
    Content *content_;
};

// A zeroed record that is too large for a small stack.
template <class Record> class Allocated {
  public:
    Allocated() : record_(static_cast<Record *>(calloc(1, sizeof(Record)))) {}
    ~Allocated() { free(record_); }
    Allocated(const Allocated &) = delete;
    Allocated &operator=(const Allocated &) = delete;

    Record *get() const { return record_; } // null when memory ran out
    Record *operator->() const { return record_; }

  private:
    Record *record_;
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

// A regular command is a row: its fields, its texts and its device call, and one engine for all
// rows of a kind, which owns the record. What the engine is given stands in the four registers that
// a call has for it, so that a row costs little more than naming its parts.
using RecordCall = int32_t (*)(void *record);
using Engine = int32_t (*)(cJSON *obj, FieldList fields, const char *texts, RecordCall call);

constexpr size_t kLargestRecord = 2048; // of the rows

template <auto call, class Record> int32_t call_with(void *record)
{
    static_assert(sizeof(Record) <= kLargestRecord, "make kLargestRecord larger");
    return call(static_cast<Record *>(record));
}

// What a row says: the failure, and where there are two, behind it what it says of a missing key.
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
        // Of the table, the pointer: a constant of the code, where a class would be copied from a
        // row in memory, which the loader has to relocate.
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

// A query without parameters: zeroes the record, calls, and replies with the fields. Without a
// failure text it answers a failure with the status alone.
template <auto call, StatusAt status = StatusAt::kFirst, FailureRule failed = non_zero,
          class Record, size_t count, size_t keys_size>
constexpr auto query(const Fields<Record, count, keys_size> &fields, const char *failure)
{
    return Row<query_engine<status, failed>, call_with<call, Record>, OneText>{fields, {failure}};
}

// What changes the device has to be answered like a setting, also without parameters that are
// copied: these are its steps around the call. It is not carried out without an object to answer in
// or without the reply to success; then the first has failed and returns false.
bool can_conclude(cJSON *obj, const Reply &success, const char *failure);
void conclude(cJSON *obj, Reply &success, bool failed, const char *failure, size_t width);
void conclude(cJSON *obj, Reply &success, bool failed, const char *failure);

// An action without parameters.
int32_t carry_out(cJSON *obj, int32_t (*call)(), const char *failure);

template <int32_t (*call)()> struct Action {
    OneText texts;

    // cppcheck-suppress functionStatic ; rows of all kinds are run alike
    int32_t run(cJSON *obj, const OneText &failure) const
    {
        return carry_out(obj, call, failure.text);
    }
};

template <auto call> constexpr auto action(const char *failure)
{
    return Action<call>{{failure}};
}

// An action that reports what it has come to.
int32_t run_reporting_action(cJSON *obj, FieldList fields, const char *failure, RecordCall call);

template <auto call, class Record, size_t count, size_t keys_size>
constexpr auto reporting_action(const Fields<Record, count, keys_size> &fields, const char *failure)
{
    return Row<run_reporting_action, call_with<call, Record>, OneText>{fields, {failure}};
}

// A setting on its way: what was found in the request, and the reply to success, which is allocated
// before the device is changed so that memory cannot fail a change that was made. The steps are
// taken in the order in which they stand here; one that returns false has answered the request.
class SettingSteps {
  public:
    // cppcheck-suppress uninitMemberVar ; find() fills it
    SettingSteps(cJSON *obj, FieldList fields, Consume when)
        : obj_(obj), fields_(fields), when_(when)
    {
    }
    // Finds the keys; false when a required one is missing.
    bool find(const MissingTexts &missing);
    // The reply to success, for what it holds beside the status.
    Reply &success() { return success_; }
    // What the request gave for the field at the position, uncut.
    const char *text(size_t position) const { return text_of(items_[position]); }
    // Once the device was called: replies, and takes the keys out.
    void end(bool failed, const char *failure, size_t width = SIZE_MAX);

    // Copies what was found into the record; after that the device may be called.
    bool fill_record(void *record, const char *failure, size_t width = SIZE_MAX);
    // Takes out the keys from the position on, where they go before the device is called; their
    // texts go with them.
    void consume_from(size_t position);

  private:
    cJSON *obj_;
    FieldList fields_;
    Consume when_;
    cJSON *items_[kMostKeys];
    Reply success_;
};

// The same with the record that the fields are of.
template <class Record> class SettingRun : public SettingSteps {
  public:
    template <size_t count, size_t keys_size>
    SettingRun(cJSON *obj, const Fields<Record, count, keys_size> &fields, Consume when)
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
                    Consume when, FailureRule failed, const MissingTexts &missing);

template <Consume when, FailureRule failed>
[[gnu::noinline]] int32_t setting_engine(cJSON *obj, FieldList fields, const char *failure,
                                         RecordCall call)
{
    return run_setting(obj, fields, failure, call, when, failed, node_or_value_null());
}

template <Consume when, FailureRule failed>
[[gnu::noinline]] int32_t setting_engine_with_missing(cJSON *obj, FieldList fields,
                                                      const char *texts, RecordCall call)
{
    return run_setting(obj, fields, texts, call, when, failed, texts + strlen(texts) + 1);
}

// A setting whose request keys are all required: finds them, copies them into a zeroed record,
// calls, replies, and takes the keys out.
template <auto call, Consume when = Consume::kAfterCall, FailureRule failed = non_zero,
          class Record, size_t count, size_t keys_size>
constexpr auto setting(const Fields<Record, count, keys_size> &fields, const char *failure)
{
    static_assert(count <= kMostKeys, "make kMostKeys larger");
    return Row<setting_engine<when, failed>, call_with<call, Record>, OneText>{fields, {failure}};
}

// The same with a text of its own for a missing key.
template <auto call, Consume when = Consume::kAfterCall, FailureRule failed = non_zero,
          class Record, size_t count, size_t keys_size, size_t failure_size, size_t missing_size>
constexpr auto setting(const Fields<Record, count, keys_size> &fields,
                       const char (&failure)[failure_size], const char (&missing)[missing_size])
{
    static_assert(count <= kMostKeys, "make kMostKeys larger");
    return Row<setting_engine_with_missing<when, failed>, call_with<call, Record>,
               TwoTexts<failure_size + missing_size>>{fields, texts_of(failure, missing)};
}

// Defines a handler from a recipe, with a symbol of its own. The texts stand apart from the row,
// which thus leaves nothing behind but the code that names its parts.
#define HANDLER(name, recipe)                                                                      \
    int32_t name(cJSON *obj)                                                                       \
    {                                                                                              \
        static constexpr auto kRow = recipe;                                                       \
        static constexpr auto kTexts = kRow.texts;                                                 \
        return kRow.run(obj, kTexts);                                                              \
    }

} // namespace smart_router
