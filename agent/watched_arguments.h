// The arguments of a call of the device library. What it may write into stands between guards
// meanwhile, and is looked at and copied back when it has answered.
#pragma once

#include "watched_records.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace agent::watch {

constexpr size_t kGuardSize = 64;
constexpr unsigned char kGuardByte = 0xa5;

using Guard = std::array<unsigned char, kGuardSize>;

inline Guard new_guard()
{
    Guard guard;
    guard.fill(kGuardByte);
    return guard;
}

inline void check_guard(const Call &call, const Guard &guard, const char *where)
{
    if (std::any_of(guard.begin(), guard.end(), [](auto byte) { return byte != kGuardByte; })) {
        call.fault(std::string("it writes ") + where + " what it is given");
    }
}

// Whether two records are the same to the last byte, padding included.
inline bool same_bytes(const void *left, const void *right, size_t size)
{
    return memcmp(left, right, size) == 0;
}

// A value between guards.
template <class Value> struct Guarded {
    Guard before = new_guard();
    Value value;
    Guard behind = new_guard();

    explicit Guarded(const Value &from) { memcpy(&value, &from, sizeof value); }
    void check(const Call &call) const
    {
        check_guard(call, before, "before");
        check_guard(call, behind, "behind");
    }
};

// What is handed over as it is.
template <class Type> class Argument {
  public:
    Argument(const Call &, Type value) : value_(value) {}
    Type handed() { return value_; }
    bool finish(const Call &, int32_t) { return false; }

  private:
    Type value_;
};

// A record to fill.
template <class Record> class Argument<Record *> {
  public:
    Argument(const Call &, Record *own) : own_(own), guarded_(*own)
    {
        memcpy(&given_, own, sizeof given_);
    }
    Record *handed() { return &guarded_.value; }
    // Result: whether anything was written.
    bool finish(const Call &call, int32_t result)
    {
        guarded_.check(call);
        const bool wrote = !same_bytes(&given_, &guarded_.value, sizeof(Record));
        if (result == 0 && !wrote && call.facts().fills && has_texts(given_)) {
            call.fault("it answers 0 and fills nothing in");
        }
        if (result == 0 || kTellsReason<Record>) {
            check_record(call, guarded_.value, result == 0 && wrote && call.facts().fills);
        }
        if constexpr (kTellsReason<Record>) {
            const char(&reason)[sizeof guarded_.value.FailReason] = guarded_.value.FailReason;
            if (result != 0 && reason[0] != '\0') {
                call.reason({reason, strnlen(reason, sizeof reason)});
            }
        }
        memcpy(own_, &guarded_.value, sizeof(Record));
        return wrote;
    }

  private:
    Record *own_;
    Record given_;
    Guarded<Record> guarded_;
};

// A record to read.
template <class Record> class Argument<const Record *> {
  public:
    Argument(const Call &, const Record *own) : guarded_(*own)
    {
        memcpy(&given_, own, sizeof given_);
    }
    const Record *handed() { return &guarded_.value; }
    bool finish(const Call &call, int32_t)
    {
        guarded_.check(call);
        if (!same_bytes(&given_, &guarded_.value, sizeof(Record))) {
            call.fault("it writes into what it may only read");
        }
        return false;
    }

  private:
    Record given_;
    Guarded<Record> guarded_;
};

template <> class Argument<const char *> {
  public:
    Argument(const Call &, const char *text) : text_(text) {}
    const char *handed() { return text_; }
    bool finish(const Call &, int32_t) { return false; }

  private:
    const char *text_;
};

// A number to write.
template <> class Argument<int32_t *> {
  public:
    Argument(const Call &, int32_t *own) : own_(own), guarded_(*own) {}
    int32_t *handed() { return &guarded_.value; }
    bool finish(const Call &call, int32_t result);

  private:
    int32_t *own_;
    Guarded<int32_t> guarded_;
};

// A text to write. Its width is the argument behind it, or stands in the description.
template <> class Argument<char *> {
  public:
    Argument(const Call &call, char *own);
    void take_size(int32_t size);
    char *handed() { return area_.data() + kGuardSize; }
    bool finish(const Call &call, int32_t result);

  private:
    char *own_;
    size_t width_;
    bool may_fill_size_; // the byte behind is the end of the text
    std::vector<char> area_;
};

// An answer of any length, from malloc().
template <> class Argument<char **> {
  public:
    Argument(const Call &, char **own) : own_(own), guarded_(*own) {}
    char **handed() { return &guarded_.value; }
    bool finish(const Call &call, int32_t result);

  private:
    char **own_;
    Guarded<char *> guarded_;
};

// Lists, whose first node is the plug-in's.
template <class Node> class ListArgument {
  public:
    ListArgument(const Call &, Node *first) : first_(first) {}
    Node *handed() { return first_; }
    bool finish(const Call &call, int32_t)
    {
        check_list(call, *first_); // the plug-in frees it also after a failure
        return false;
    }

  private:
    Node *first_;
};
template <> class Argument<TopoNode *> : public ListArgument<TopoNode> {
    using ListArgument::ListArgument;
};
template <> class Argument<NodeBaseInfo *> : public ListArgument<NodeBaseInfo> {
    using ListArgument::ListArgument;
};
template <> class Argument<const TopoNode *> {
  public:
    Argument(const Call &, const TopoNode *node) : node_(node) {}
    const TopoNode *handed() { return node_; }
    bool finish(const Call &, int32_t) { return false; }

  private:
    const TopoNode *node_;
};

} // namespace agent::watch
