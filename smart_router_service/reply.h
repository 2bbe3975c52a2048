// SPDX-License-Identifier: MIT
// The reply of a command, which is added to the object of the request. It is built in a separate
// object and moved as a whole, so that no partial reply is left when memory runs out. Keys must be
// constants: the items refer to them.
#pragma once

#include "fields.h"

#include <cjson/cJSON.h>
#include <stddef.h>
#include <stdint.h>

namespace smart_router {

inline constexpr char kStatus[] = "Status";
inline constexpr char kFailReason[] = "FailReason";

// Appends a text to an object; at most width bytes of it are read. Result: false when memory ran
// out, and then nothing was added.
bool add_text(cJSON *object, const char *key, const char *text, size_t width = SIZE_MAX);

// The same for a text that is also a constant: the item refers to it.
bool add_constant(cJSON *object, const char *key, const char *text);

// Appends the fields of the record in the order of the table. Result: false when memory ran out,
// and then only the fields before that point were added.
bool add_fields(cJSON *object, FieldList fields, const void *record);

// A new object with the fields of the record; null when memory ran out.
cJSON *object_of(FieldList fields, const void *record);

// Appends an object with the fields to an array, or leaves it out. Result: false when memory for
// the object ran out.
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
    // The status must be a constant. The reply to a setting, which is built before the device is
    // changed, therefore needs memory for only one item.
    void status(const char *status);
    void success();

    // Appends a text item for each field; set_reserved() writes the texts when the device has
    // filled the record. For calls that change the device: memory cannot run out after the change.
    void reserve(FieldList fields);
    void set_reserved(FieldList fields, const void *record);

    // Appends an item, which then belongs to the reply. Null means that memory for it ran out.
    void add(const char *key, cJSON *item);
    // Appends an empty array; null when memory has run out.
    cJSON *list(const char *key);
    // Appends an element to an array of this reply. Null means that memory for it ran out.
    void append(cJSON *list, cJSON *element);
    // Appends an object with the fields.
    void append(cJSON *list, FieldList fields, const void *record);

    // False once memory for an item has run out.
    bool complete() const { return complete_; }

    // The reply as formatted text, for a reply that is sent instead of joined; null when it is not
    // complete or memory ran out. The caller frees the text with cJSON_free().
    char *print() const { return complete_ ? cJSON_Print(&root_) : nullptr; }

    // Moves the items to the end of obj. Result: false, with obj unchanged, when the reply is not
    // complete or obj is not an object.
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

// Adds "Status" "1" and the "FailReason", both or neither; only the status for a null reason. At
// most width bytes of the reason are read, for a reason in a field of a record. Result: false when
// nothing could be added.
bool fail(cJSON *obj, const char *reason, size_t width);
bool fail(cJSON *obj, const char *reason);

// The same as the last step of a handler. Result: -1.
int32_t refuse(cJSON *obj, const char *reason);

// Joins the reply, or fails with the reason when it could not be built. Result: 0, or -1 when it
// failed.
int32_t answer(cJSON *obj, Reply &reply, const char *reason);

} // namespace smart_router
