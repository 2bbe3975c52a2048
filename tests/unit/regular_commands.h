// The commands that follow one pattern, as the tests see them: key by key with its place in the
// record, so that a table in the plug-in that drifts from the protocol is found.
#pragma once

#include "recording_device.h"

#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <vector>

// What the device does with the bytes of the record.
using Body = std::function<int32_t(char *record)>;

// Makes a device function that takes one record (or buffer) run the body.
template <auto function> void program(Body body)
{
    recording_device::when<function>([body](auto *record, auto... size) {
        static_assert(sizeof...(size) <= 1);
        // A setting's record is const; its body only reads.
        return body(const_cast<char *>(reinterpret_cast<const char *>(record)));
    });
}

// As wide as no text of these tests is long: the place of a text that is handed on whole.
constexpr size_t kWhole = 1 << 17;

// The same for a device function that takes nothing but texts: the body gets them side by side,
// each in a place of its own.
template <auto function> void program_texts(Body body)
{
    recording_device::when<function>([body](auto... texts) {
        std::string places;
        (places.append(texts).resize((places.size() / kWhole + 1) * kWhole), ...);
        return body(places.data());
    });
}

struct Place {
    const char *key;
    size_t offset;
    size_t width;
};

struct RegularQuery {
    const char *command;
    const char *function;
    void (*program)(Body);
    size_t record_size;
    std::vector<Place> keys;
    const char *failure; // null where a failure gives no reason
    bool status_last = false;
    bool only_minus_one_fails = false;
};

struct RegularSetting {
    enum class Consumes { kAfterCall, kOnSuccess, kAlways };

    const char *command;
    const char *function;
    void (*program)(Body);
    size_t record_size;
    std::vector<Place> keys;
    const char *absent;
    const char *no_text; // null where the device is given none in its place
    const char *failure; // null where the device says it, in the 64 bytes at the record's end
    Consumes consumes = Consumes::kAfterCall;
    bool only_minus_one_fails = false;
    std::map<int32_t, const char *> failures_told_apart = {}; // by the device's result
    const char *then = nullptr; // what is called next when the device agreed
};

extern const std::vector<RegularQuery> kRegularQueries;
extern const std::vector<RegularSetting> kRegularSettings;

inline void PrintTo(const RegularQuery &query, std::ostream *out)
{
    *out << query.command;
}
inline void PrintTo(const RegularSetting &setting, std::ostream *out)
{
    *out << setting.command;
}
