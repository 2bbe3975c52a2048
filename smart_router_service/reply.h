// The reply of a command, which is added to the object that held the request. It is built in an
// object of its own and moved over as a whole, so that no partial reply is left when memory runs
// out. Keys must be constants: the items refer to them.
#pragma once

#include "fields.h"

#include <cjson/cJSON.h>
#include <stddef.h>
#include <stdint.h>

namespace smart_router {

inline constexpr char kStatus[] = "Status";
inline constexpr char kFailReason[] = "FailReason";

// Appends a text item to an object; no more than width bytes of the text are read. Result: false
// when memory ran out, and then nothing was added.
bool add_text(cJSON *object, const char *key, const char *text, size_t width = SIZE_MAX);

// The same for a text that is a constant too: the item refers to it.
bool add_constant(cJSON *object, const char *key, const char *text);

// Appends the fields of the record in the order of the table. Result: false when memory ran out,
// and then only the fields before that were added.
bool add_fields(cJSON *object, FieldList fields, const void *record);

// A new object with the fields of the record; null when memory ran out.
cJSON *object_of(FieldList fields, const void *record);

// Appends an object with the fields to an array that may lack one. Result: false when memory ran
// out for the object.
bool append_if_possible(cJSON *list, FieldList fields, const void *record);

// A reply under construction.
class Reply {
  public:
    Reply();
    ~Reply() { cJSON_Delete(root_.child); }
    Reply(const Reply &) = delete;
    Reply &operator=(const Reply &) = delete;

    // These append to the reply.
    void text(const char *key, const char *text);
    void text(const char *key, const char *text, size_t width);
    void fields(FieldList fields, const void *record);
    // The status must be a constant. So the reply to a setting, which is built before the device is
    // changed, needs memory for one item only.
    void status(const char *status);
    void success();

    // Appends a text for each field; set_reserved() writes it once the device has filled the
    // record. For calls that change the device: memory cannot run out after the change.
    void reserve(FieldList fields);
    void set_reserved(FieldList fields, const void *record);

    // Appends an item, which the reply takes over. Null means that memory ran out for it.
    void add(const char *key, cJSON *item);
    // Appends an empty array; null when memory has run out.
    cJSON *list(const char *key);
    // Appends an element to an array of this reply. Null means that memory ran out for it.
    void append(cJSON *list, cJSON *element);
    // Appends an object with the fields.
    void append(cJSON *list, FieldList fields, const void *record);

    // False once memory has run out for an item.
    bool complete() const { return complete_; }

    // The reply as formatted text, for a reply that is sent instead of joined; null when it is not
    // complete or memory ran out. The caller frees the text with cJSON_free().
    char *print() const { return complete_ ? cJSON_Print(&root_) : nullptr; }

    // Moves the items to the end of obj. Result: false, with obj unchanged, when the reply is not
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
// No more than width bytes of the reason are read, for a reason in a field of a record. Result:
// false when nothing could be added.
bool fail(cJSON *obj, const char *reason, size_t width);
bool fail(cJSON *obj, const char *reason);

// The same as the last step of a handler. Result: -1.
int32_t refuse(cJSON *obj, const char *reason);

// Joins the reply, or fails with the reason when it could not be built. Result: 0, or -1 when it
// failed.
int32_t answer(cJSON *obj, Reply &reply, const char *reason);

} // namespace smart_router
