#include "handler_support.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>

namespace smart_router {

void log_error(const char *text)
{
    LOG_ERROR("%s", text);
}

void log_debug(const char *text)
{
    LOG_DEBUG("%s", text);
}

const char *text_of(const cJSON *item)
{
    // What cJSON_IsString() asks, without calling it: every text of every request comes by here.
    // Its types are the lowest byte, and what else is noted of an item stands above.
    return item != nullptr && (item->type & 0xFF) == cJSON_String ? item->valuestring : nullptr;
}

const char *text_under(const cJSON *obj, const char *key)
{
    return text_of(cJSON_GetObjectItem(obj, key));
}

int32_t number_of(const char *text)
{
    const int digit = text[0] - '0';
    if (digit >= 0 && digit <= 9 && text[1] == '\0') {
        return digit; // as most are: switches and indexes
    }
    const long number = strtol(text, nullptr, 10);
    if (number > INT32_MAX) {
        return INT32_MAX;
    }
    return number < INT32_MIN ? INT32_MIN : static_cast<int32_t>(number);
}

cJSON *array_of(const cJSON *obj, const char *key)
{
    cJSON *item = cJSON_GetObjectItem(obj, key);
    return cJSON_IsArray(item) != 0 ? item : nullptr;
}

void copy_text(char *field, size_t width, const char *text)
{
    size_t at = 0; // most texts are too short for measuring and moving to be worth two calls
    for (; at < width - 1 && text[at] != '\0'; ++at) {
        field[at] = text[at];
    }
    field[at] = '\0';
}

bool holds(const char *field, size_t width, const char *text)
{
    const size_t length = strlen(text);
    return strnlen(field, width) == length && memcmp(field, text, length) == 0;
}

bool holds_any_case(const char *field, size_t width, const char *text)
{
    const size_t length = strlen(text);
    return strnlen(field, width) == length && strncasecmp(field, text, length) == 0;
}

bool contains(const char *field, size_t width, const char *text, Case letters)
{
    const auto compare = letters == Case::kMatters ? strncmp : strncasecmp;
    const size_t length = strlen(text);
    const size_t field_length = strnlen(field, width);
    for (size_t at = 0; at + length <= field_length; ++at) {
        if (compare(field + at, text, length) == 0) {
            return true;
        }
    }
    return false;
}

void consume(cJSON *obj, cJSON *item)
{
    if (item != nullptr) {
        cJSON_Delete(cJSON_DetachItemViaPointer(obj, item));
    }
}

// The field with the key as a request spells it; the end when the table has none.
static FieldList::Iterator field_with(const char *key, FieldList fields)
{
    auto field = fields.begin();
    while (field.left() != 0 && strcasecmp((*field).key, key) != 0) {
        ++field;
    }
    return field;
}

// Whoever writes a request keeps to the table's order and spelling more or less, so the field
// behind the last one is tried first: one comparison for most keys, where searching the object for
// each field would take many.
void find_items(const cJSON *obj, FieldList fields, cJSON **items)
{
    const size_t count = fields.count();
    for (size_t at = 0; at < count; ++at) {
        items[at] = nullptr;
    }
    auto expected = fields.begin();
    cJSON *item;
    cJSON_ArrayForEach(item, obj)
    {
        if (item->string == nullptr) {
            continue;
        }
        auto field = expected;
        if (strcmp((*field).key, item->string) != 0) {
            field = field_with(item->string, fields);
            if (field.left() == 0) {
                continue;
            }
        }
        cJSON *&found = items[count - field.left()];
        if (found == nullptr) {
            found = item; // of a repeated key the first counts
        }
        expected = field.left() != 1 ? ++field : fields.begin();
    }
}

const char *find_required(cJSON *obj, FieldList fields, const MissingTexts &missing, cJSON **items)
{
    find_items(obj, fields, items);
    const char *wrong = nullptr;
    for (size_t at = 0; at < fields.required(); ++at) {
        if (items[at] == nullptr) {
            return missing.absent;
        }
        if (text_of(items[at]) == nullptr) {
            wrong = missing.no_text;
        }
    }
    return wrong;
}

void end_text(char *text, const char *field, size_t width)
{
    const size_t length = strnlen(field, width);
    memcpy(text, field, length);
    text[length] = '\0';
}

int32_t number_in(const char *field, size_t width)
{
    char text[kWidestNumber + 1];
    end_text(text, field, width);
    return number_of(text);
}

using NumberText = char[12]; // for every 32-bit number

// Some reports hold hundreds of numbers, and a printf() costs more than the item that it is for.
void put_number(char *field, size_t width, int32_t number)
{
    NumberText text;
    char *digit = text + sizeof text - 1;
    *digit = '\0';
    auto rest = static_cast<uint32_t>(number);
    if (number < 0) {
        rest = 0 - rest;
    }
    do {
        *--digit = static_cast<char>('0' + rest % 10);
        rest /= 10;
    } while (rest != 0);
    if (number < 0) {
        *--digit = '-';
    }
    copy_text(field, width, digit);
}

void store(const Field &field, void *record, const char *text)
{
    void *place = static_cast<char *>(record) + field.offset;
    if (field.is_number()) {
        *static_cast<int32_t *>(place) = number_of(text);
    } else {
        copy_text(static_cast<char *>(place), field.width, text);
    }
}

// The text of a field of the record: in place, no longer than *width and without a NUL where it is
// that long, or in number for a number.
static const char *text_in(const Field &field, const void *record, NumberText &number,
                           size_t *width)
{
    const void *place = static_cast<const char *>(record) + field.offset;
    if (field.is_number()) {
        put_number(number, *static_cast<const int32_t *>(place));
        *width = sizeof number;
        // cppcheck-suppress CastIntegerToAddressAtReturn ; it is an array of characters
        return number;
    }
    *width = field.width;
    return static_cast<const char *>(place);
}

void copy_items(FieldList fields, cJSON *const *items, void *record)
{
    for (const Field field : fields) {
        const char *text = text_of(*items++);
        store(field, record, text != nullptr ? text : kNotGiven);
    }
}

int32_t read_record(cJSON *item, FieldList fields, void *record)
{
    cJSON *items[kMostKeys];
    if (item == nullptr || record == nullptr ||
        find_required(item, fields, node_or_value_null(), items) != nullptr) {
        return -1;
    }
    copy_items(fields, items, record);
    return 0;
}

void copy_optional(cJSON *obj, FieldList fields, void *record, Found found)
{
    for (const Field field : fields) {
        cJSON *item = cJSON_GetObjectItem(obj, field.key);
        const char *text = text_of(item);
        store(field, record, text != nullptr ? text : kNotGiven);
        if (text != nullptr && found == Found::kIsConsumed) {
            consume(obj, item);
        }
    }
}

// Appends an item that has no key yet, as cJSON_AddItemToObjectCS() would: to an item without a
// key, all that adds to appending is the key.
static void append_item(cJSON *object, const char *key, cJSON *item)
{
    item->string = const_cast<char *>(key);
    item->type |= cJSON_StringIsConst;
    cJSON_AddItemToArray(object, item);
}

// A text item with room for so many bytes, to be written by the caller, and the NUL behind them;
// null when memory ran out.
static cJSON *create_text(size_t size)
{
    cJSON *item = cJSON_CreateNull();
    char *text = static_cast<char *>(item != nullptr ? cJSON_malloc(size + 1) : nullptr);
    if (text == nullptr) {
        cJSON_Delete(item);
        return nullptr;
    }
    text[size] = '\0';
    item->type = cJSON_String;
    item->valuestring = text;
    return item;
}

// cJSON_CreateString() wants a terminated text; a record's field need not be one. Building the item
// from its length reads the field once and allocates no more than cJSON would.
bool add_text(cJSON *object, const char *key, const char *text, size_t width)
{
    const size_t length = strnlen(text, width);
    cJSON *item = create_text(length);
    if (item == nullptr) {
        return false;
    }
    memcpy(item->valuestring, text, length);
    append_item(object, key, item);
    return true;
}

bool add_constant(cJSON *object, const char *key, const char *text)
{
    cJSON *item = cJSON_CreateStringReference(text);
    if (item == nullptr) {
        return false;
    }
    append_item(object, key, item);
    return true;
}

bool add_fields(cJSON *object, FieldList fields, const void *record)
{
    for (const Field field : fields) {
        NumberText number;
        size_t width;
        const char *text = text_in(field, record, number, &width);
        if (!add_text(object, field.key, text, width)) {
            return false;
        }
    }
    return true;
}

cJSON *object_of(FieldList fields, const void *record)
{
    cJSON *object = cJSON_CreateObject();
    if (object != nullptr && !add_fields(object, fields, record)) {
        cJSON_Delete(object);
        return nullptr;
    }
    return object;
}

bool append_if_possible(cJSON *list, FieldList fields, const void *record)
{
    cJSON *object = object_of(fields, record);
    if (object == nullptr) {
        return false;
    }
    cJSON_AddItemToArray(list, object);
    return true;
}

Reply::Reply() : root_(), complete_(true)
{
    root_.type = cJSON_Object;
}

void Reply::text(const char *key, const char *text)
{
    this->text(key, text, SIZE_MAX);
}

void Reply::text(const char *key, const char *text, size_t width)
{
    complete_ = complete_ && add_text(&root_, key, text, width);
}

void Reply::fields(FieldList fields, const void *record)
{
    complete_ = complete_ && add_fields(&root_, fields, record);
}

void Reply::status(const char *status)
{
    complete_ = complete_ && add_constant(&root_, kStatus, status);
}

void Reply::success()
{
    status("0");
}

void Reply::add(const char *key, cJSON *item)
{
    complete_ = complete_ && item != nullptr;
    if (item != nullptr) {
        cJSON_AddItemToObjectCS(&root_, key, item);
    }
}

void Reply::reserve(FieldList fields)
{
    for (const Field field : fields) {
        add(field.key, create_text(field.is_number() ? sizeof(NumberText) : field.width));
    }
}

void Reply::set_reserved(FieldList fields, const void *record)
{
    for (const Field field : fields) {
        NumberText number;
        size_t width;
        const char *value = text_in(field, record, number, &width);
        char *reserved = cJSON_GetObjectItem(&root_, field.key)->valuestring;
        const size_t length = strnlen(value, width);
        memcpy(reserved, value, length);
        reserved[length] = '\0';
    }
}

void Reply::append(cJSON *list, FieldList fields, const void *record)
{
    append(list, complete_ ? object_of(fields, record) : nullptr);
}

cJSON *Reply::list(const char *key)
{
    cJSON *list = cJSON_CreateArray();
    add(key, list);
    return list;
}

void Reply::append(cJSON *list, cJSON *element)
{
    complete_ = complete_ && element != nullptr;
    if (complete_) {
        cJSON_AddItemToArray(list, element);
    } else {
        cJSON_Delete(element);
    }
}

bool Reply::join(cJSON *obj)
{
    // No null is an object either; it stands here for the analyser, which does not know cJSON.
    if (!complete_ || obj == nullptr || cJSON_IsObject(obj) == 0) {
        return false;
    }
    cJSON *first = root_.child;
    root_.child = nullptr;
    if (obj->child == nullptr) {
        obj->child = first;
    } else if (first != nullptr) {
        cJSON *last = obj->child;
        while (last->next != nullptr) {
            last = last->next;
        }
        last->next = first;
        obj->child->prev = first->prev; // where cJSON keeps the end of a list
        first->prev = last;
    }
    return true;
}

SuccessReply::SuccessReply()
{
    success();
}

bool fail(cJSON *obj, const char *reason, size_t width)
{
    Reply reply;
    reply.status("1");
    if (reason != nullptr) {
        reply.text(kFailReason, reason, width);
    }
    return reply.join(obj);
}

bool fail(cJSON *obj, const char *reason)
{
    return fail(obj, reason, SIZE_MAX);
}

int32_t refuse(cJSON *obj, const char *reason)
{
    fail(obj, reason);
    return -1;
}

int32_t answer(cJSON *obj, Reply &reply, const char *reason)
{
    return reply.join(obj) ? 0 : refuse(obj, reason);
}

void answer_query(cJSON *obj, bool failed, FieldList fields, const void *record,
                  const char *failure, StatusAt status)
{
    if (failed) {
        fail(obj, failure);
        return;
    }
    Reply reply;
    if (status == StatusAt::kFirst) {
        reply.success();
    }
    reply.fields(fields, record);
    if (status == StatusAt::kLast) {
        reply.success();
    }
    answer(obj, reply, failure);
}

// The engines' record: of whatever kind, and zeroed.
class RowRecord {
  public:
    explicit RowRecord(FieldList fields) { memset(bytes_, 0, fields.record_size()); }
    void *get() { return bytes_; }

  private:
    alignas(max_align_t) char bytes_[kLargestRecord];
};

int32_t run_query(cJSON *obj, FieldList fields, const char *failure, RecordCall call,
                  StatusAt status, FailureRule failed)
{
    RowRecord record(fields);
    const int32_t result = call(record.get());
    answer_query(obj, failed(result), fields, record.get(), failure, status);
    return result;
}

bool can_conclude(cJSON *obj, const Reply &success, const char *failure)
{
    if (cJSON_IsObject(obj) != 0 && success.complete()) {
        return true;
    }
    fail(obj, failure);
    return false;
}

void conclude(cJSON *obj, Reply &success, bool failed, const char *failure)
{
    conclude(obj, success, failed, failure, SIZE_MAX);
}

void conclude(cJSON *obj, Reply &success, bool failed, const char *failure, size_t width)
{
    if (failed) {
        fail(obj, failure, width);
    } else {
        success.join(obj);
    }
}

int32_t carry_out(cJSON *obj, int32_t (*call)(), const char *failure)
{
    SuccessReply success;
    if (!can_conclude(obj, success, failure)) {
        return -1;
    }
    const int32_t result = call();
    conclude(obj, success, result != 0, failure);
    return result;
}

int32_t run_reporting_action(cJSON *obj, FieldList fields, const char *failure, RecordCall call)
{
    RowRecord record(fields);
    SuccessReply success;
    success.reserve(fields);
    if (!can_conclude(obj, success, failure)) {
        return -1;
    }
    const int32_t result = call(record.get());
    success.set_reserved(fields, record.get());
    conclude(obj, success, result != 0, failure);
    return result;
}

bool SettingSteps::find(const MissingTexts &missing)
{
    const char *wrong = find_required(obj_, fields_, missing, items_);
    if (wrong == nullptr) {
        success_.success();
        return true;
    }
    if (when_ == Consume::kAlways) {
        consume_from(0);
    }
    fail(obj_, wrong);
    return false;
}

bool SettingSteps::fill_record(void *record, const char *failure, size_t width)
{
    if (!success_.complete()) {
        end(true, failure, width);
        return false;
    }
    copy_items(fields_, items_, record);
    return true;
}

void SettingSteps::end(bool failed, const char *failure, size_t width)
{
    if (when_ != Consume::kOnSuccess || !failed) {
        consume_from(0);
    }
    conclude(obj_, success_, failed, failure, width);
}

void SettingSteps::consume_from(size_t position)
{
    for (size_t at = position; at < fields_.count(); ++at) {
        if (at < fields_.required() || text_of(items_[at]) != nullptr) {
            consume(obj_, items_[at]);
            items_[at] = nullptr;
        }
    }
}

int32_t run_setting(cJSON *obj, FieldList fields, const char *failure, RecordCall call,
                    Consume when, FailureRule failed, const MissingTexts &missing)
{
    RowRecord record(fields);
    SettingSteps steps(obj, fields, when);
    if (!steps.find(missing) || !steps.fill_record(record.get(), failure, SIZE_MAX)) {
        return -1;
    }
    const int32_t result = call(record.get());
    steps.end(failed(result), failure);
    return result;
}

} // namespace smart_router
