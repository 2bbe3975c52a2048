// SPDX-License-Identifier: MIT
// Tables that map JSON keys to the fields of a record. A table lists fields by the names of the
// record's members; the compiler determines the offset and width of each field. A handler passes a
// table to the functions that fill a record from a request or write a record to a reply, so that no
// copy can exceed its field. A table with the fields of two records, with the same key twice, or
// with a member that is neither a text nor a 32-bit number does not compile.
//
//     constexpr auto kRebootFields = Fields{
//         FIELD(RebootInfo, GatewayRebootEnable),
//         FIELD(RebootInfo, Time),
//     };
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace smart_router {

// One field of a record, and its JSON key. In JSON every value is a string.
struct Field {
    const char *key;
    uint16_t offset;
    uint16_t width; // of a text field; 0 for a 32-bit number

    bool is_number() const { return width == 0; }
};

// A table without the type of its record, for functions that serve all records. It is a sequence of
// bytes without pointers, so that the loader has nothing to relocate and processes share the
// memory, and without padding, since there are hundreds of fields. A header of 4 bytes has the
// number of fields, the number of required fields, and the size of the record. Each field follows
// as its offset, its width in the low 11 bits and the length of its key in the 5 bits above them,
// and the key with its NUL.
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
    // The number of required fields, which are the first ones; a request may omit the others.
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

constexpr char lower_case(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

// cJSON ignores case when it searches for a key, so keys that differ only in case are the same.
constexpr bool same_key(const char *left, const char *right)
{
    while (*left != '\0' && lower_case(*left) == lower_case(*right)) {
        ++left;
        ++right;
    }
    return lower_case(*left) == lower_case(*right);
}

// Not defined: a table that calls it at compile time does not compile, and the name says why.
void this_key_stands_twice_in_the_table();

// A table with fields of one record. A single field is also a table, and a table can be built from
// smaller ones, so that fields shared by several tables are listed once.
template <class Record, size_t count, size_t keys_size> class Fields {
  public:
    static constexpr size_t kCount = count;

    // The fields of all parts, in order. All of them are required.
    template <size_t... counts, size_t... keys_sizes>
    constexpr Fields(const Fields<Record, counts, keys_sizes> &...parts)
    {
        put_head();
        size_t end = FieldList::kHeaderSize;
        size_t appended = 0;
        ((end = append(parts, end, appended), appended += counts), ...);
    }
    // A single field. The size of the key includes its NUL.
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
    // The same table with only the first fields required.
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
    // Appends the fields of a part after the fields that are already there. Result: the new end.
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

// The width of a member in a table.
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

// A member of the record as a field; its key is the member's name, or another key for FIELD_AS.
// FIELD_IN is for a member of a structure within the record.
#define FIELD(Record, member) FIELD_AS(Record, member, #member)
#define FIELD_IN(Record, part, member)                                                             \
    FIELD_AS(Record, part.member, #member) // NOLINT(bugprone-macro-parentheses)
#define FIELD_AS(Record, member, key)                                                              \
    smart_router::field_of<Record, decltype(Record::member)>(key, offsetof(Record, member))

} // namespace smart_router
