// SPDX-License-Identifier: MIT
// RAII guards that free a resource at the end of their scope.
#pragma once

#include <cjson/cJSON.h>
#include <stdlib.h>

namespace smart_router {

// A JSON item that is not part of a tree yet.
class JsonItem {
  public:
    explicit JsonItem(cJSON *item) : item_(item) {}
    ~JsonItem() { cJSON_Delete(item_); }
    JsonItem(const JsonItem &) = delete;
    JsonItem &operator=(const JsonItem &) = delete;

    cJSON *get() const { return item_; }
    // For adding the item to a tree, which then owns it.
    cJSON *release()
    {
        cJSON *item = item_;
        item_ = nullptr;
        return item;
    }

  private:
    cJSON *item_;
};

// Memory that a device function has allocated for its caller.
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

} // namespace smart_router
